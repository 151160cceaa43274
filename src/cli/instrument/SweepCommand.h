// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/OutputFile.h"

#include <QSize>

#include <cstdint>

namespace cli {

/// What "marrowick sweep" was asked to do. Frequencies in Hz, times in milliseconds unless said otherwise.
struct SweepOptions
{
    enum Direction : std::int16_t
    {
        Up = 0,
        Down = 1,
        Alternate = 2
    };

    QString device;        ///< serial number or path of a terminal device; empty: the first instrument found
    std::int16_t type = 2; ///< 1 amplitude, 2 impedance, 3 reactance
    double from = 1000;
    double to = 1000000;
    std::int16_t points = 100; ///< 2 to 1024
    std::int16_t period = 0;   ///< time a point
    double attenuation = 0;    ///< dB, not negative
    Direction direction = Up;
    bool phase = true;
    bool linear = false; ///< spacing of the frequencies
    int repeat = 1;      ///< sweeps, 1 to 10: one pen each
    OutputFile output;   ///< plot file, or a table when its name ends in .csv
    OutputFile csv;
    OutputFile picture;
    QSize pictureSize = {1280, 800};
    QString linkLog;
    double timeout = 0;   ///< seconds for everything; 0: no limit
    bool quiet = false;   ///< no progress
    bool json = false;    ///< results as one JSON object
    bool analyse = false; ///< the resonance of each sweep too

    /// Standard output carries one of the files, so the results are not told there.
    bool streams() const;
};

class SweepCommand : public Command
{
public:
    SweepCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    SweepOptions read(Arguments& arguments) const;

private:
    void refuseClashes(const SweepOptions& options, Arguments& arguments) const;

    QCommandLineOption m_device, m_type, m_from, m_to, m_points, m_period, m_attenuation, m_direction, m_noPhase,
        m_linear, m_repeat, m_output, m_csv, m_picture, m_pictureSize, m_linkLog, m_timeout, m_analyse;
};

/// Fails when it is known before the sweep that a file which the options name, or standard output, cannot be written,
/// or that nothing is there to draw a picture.
Outcome checkOutputs(const SweepOptions& options);

} // namespace cli
