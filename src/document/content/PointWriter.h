// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/TestType.h"

/// What became of a point that was offered to a document.
enum class PointAnswer
{
    Taken,
    Locked,    ///< the pen is locked: the point goes nowhere, silently
    NoRoom,    ///< the graph does not have a point of that number
    TooMany,   ///< past the last number that an amplitude document takes
    WrongType, ///< a document of another type
};

/// Puts points into the four subsets of a pen, in single precision. Points count from 0.
class PointWriter
{
public:
    /// The graph outlives the writer.
    explicit PointWriter(GraphModel& graph)
        : m_graph(graph)
    {}

    /// Subsets p, p + 10, p + 30 and p + 20 in this order.
    bool write(int pen, int point, double x, double main, double alternate, double signedOrRes, double negatedOrCond);
    /// Level in dB, phase as magnitude in degrees with its sign, +1 or -1.
    bool writeAmplitude(int pen, int point, double frequency, double level, double phase, double sign);
    /// Modulus in Ohm; 0 gives an infinite admittance.
    bool writeImpedance(int pen, int point, double frequency, double modulus, double phase, double sign);
    /// Ohm and Siemens.
    bool writeReactance(int pen, int point, double frequency, double reactance, double resistance, double susceptance,
                        double conductance);
    /// A polar point, phase signed in degrees, into a reactance document.
    bool writePolarAsReactance(int pen, int point, double frequency, double modulus, double phase);
    /// A rectangular point in Ohm into an impedance document.
    bool writeRectangularAsImpedance(int pen, int point, double frequency, double reactance, double resistance);

private:
    GraphModel& m_graph;
};
