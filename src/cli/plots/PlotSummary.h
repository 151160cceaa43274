// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/plots/SweepResult.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

class PenDocument;

namespace cli {

/// What a plot holds, as "marrowick show" prints it. Frequencies in Hz.
struct PlotSummary
{
    struct Pen
    {
        QString name;
        std::uint32_t colour = 0; ///< 0x00BBGGRR
        bool locked = false, hidden = false;
        SweepResult data; ///< the points in front of the end mark of the pen
    };
    struct Zoom
    {
        double minX = 0, maxX = 0;         ///< Hz
        double minLeft = 0, maxLeft = 0;   ///< in the unit of the left axis that is shown
        double minRight = 0, maxRight = 0; ///< and of the right one
    };

    QString file;
    QString format;                  ///< of the document: "1" today; a plot of any other may only be viewed
    std::int16_t testType = 0;       ///< 1 amplitude, 2 impedance, 3 reactance, 0 unknown
    std::optional<QString> title;    ///< nothing when the user never set one
    QString origin;                  ///< program, instrument and date of the first save
    QStringList axes;                ///< titles of the Y axes that are shown, the left ones first
    bool linearFrequency = false;    ///< scale of the frequency axis
    std::optional<double> from, to;  ///< limits of the frequency axis when they were set by hand
    std::optional<Zoom> zoom;        ///< nothing: the graph shows its full extent
    bool masks = false;              ///< mask lines are on
    std::optional<QString> settings; ///< sweep settings, in the text form of clsTestSettings
    std::vector<Pen> pens;           ///< all ten
};

/// The points of a pen (0 to 9) in front of its end mark. No instrument and no count that was wanted; whether the phase
/// was measured shows in the points.
SweepResult storedPen(const PenDocument& document, int pen);

/// The document must just have been loaded; file is told as it is given.
PlotSummary summaryOf(PenDocument& document, const QString& file);

/// Lines for a person, without the last line end. Control characters that the file brings along are shown as blanks, so
/// that a plot cannot steer a terminal. Pens without points, lock or name of their own are left out.
QString summaryText(const PlotSummary& summary);
/// Everything, for other programs.
QJsonObject summaryObject(const PlotSummary& summary);

} // namespace cli
