// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

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
    QString output;      ///< plot file, or a table when its name ends in .csv; empty: none
    QString csv;
    QString picture;
    QSize pictureSize = {1280, 800};
    QString linkLog;
    double timeout = 0; ///< seconds for everything; 0: no limit
    bool quiet = false; ///< no progress
    bool json = false;  ///< results as one JSON object
};

struct DevicesOptions
{
    bool json = false;
};

/// What "marrowick show" was asked to print.
struct ShowOptions
{
    QStringList files;   ///< at least one; exactly one when points are asked for
    int pointsOfPen = 0; ///< 1 to 10: print the points of that pen instead; 0: the summary
    bool json = false;
};

struct CommandLine
{
    QString text; ///< help or version, to be printed when nothing else is asked
    std::optional<DevicesOptions> devices;
    std::optional<SweepOptions> sweep;
    std::optional<ShowOptions> show;
};

/// Understands the arguments (the first is the program's name). A failure is a sentence about the argument at fault.
/// Needs a QCoreApplication for the texts of the help.
ValueOr<CommandLine> readCommandLine(const QStringList& arguments);

/// The kind of picture that a file name asks for: "png", "jpg", "jpeg", "bmp", "svg" or "pdf"; empty for any other.
QString pictureSuffix(const QString& fileName);

} // namespace cli
