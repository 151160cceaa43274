// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PointWriter.h"

#include "controls/polar/PolarConversion.h"

bool PointWriter::write(int pen, int point, double x, double main, double alternate, double signedOrRes,
                        double negatedOrCond)
{
    const auto frequency = static_cast<float>(x);
    return m_graph.setPoint(pen, point, frequency, static_cast<float>(main)) &&
           m_graph.setPoint(pen + plot::kPens, point, frequency, static_cast<float>(alternate)) &&
           m_graph.setPoint(pen + 3 * plot::kPens, point, frequency, static_cast<float>(signedOrRes)) &&
           m_graph.setPoint(pen + 2 * plot::kPens, point, frequency, static_cast<float>(negatedOrCond));
}

bool PointWriter::writeAmplitude(int pen, int point, double frequency, double level, double phase, double sign)
{
    return write(pen, point, frequency, level, -1.0 * level, phase * sign, -1.0 * phase);
}

bool PointWriter::writeImpedance(int pen, int point, double frequency, double modulus, double phase, double sign)
{
    return write(pen, point, frequency, modulus, 1.0 / modulus, phase * sign, -1.0 * phase);
}

bool PointWriter::writeReactance(int pen, int point, double frequency, double reactance, double resistance,
                                 double susceptance, double conductance)
{
    return write(pen, point, frequency, reactance, susceptance, resistance, conductance);
}

bool PointWriter::writePolarAsReactance(int pen, int point, double frequency, double modulus, double phase)
{
    const polar::Rectangular z = polar::toRectangular(modulus, phase);
    return writeReactance(pen, point, frequency, z.reactance, z.resistance, z.susceptance, z.conductance);
}

bool PointWriter::writeRectangularAsImpedance(int pen, int point, double frequency, double reactance, double resistance)
{
    const polar::Polar z = polar::toPolar(reactance, resistance);
    // The phase of the conversion is signed already.
    return writeImpedance(pen, point, frequency, z.modulus, z.phase, 1.0);
}
