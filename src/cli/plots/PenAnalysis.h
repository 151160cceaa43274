// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/Resonance.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <vector>

class PenDocument;
class ResonanceEngine;

namespace cli {

/// What is told of an analysis beside the measures.
struct AnalysisDetail
{
    bool circuit = false; ///< the equivalent circuit
    bool modes = false;   ///< the other modes
};

/// The resonance of one pen of a plot.
struct PenAnalysis
{
    QString plot;
    int pen = 0;    ///< 1 to 10; 0: of a plot that has none to analyse
    int clfPen = 0; ///< the pen that the capacitance is read from
    QString name;   ///< of the pen
    QString reason; ///< why there is no resonance; empty when there is one
    resonance::Solution solution;
    resonance::LowFrequencyCapacitance clf;

    bool solved() const { return solution.found; }
};

/// Analyses that pen (1 to 10), or with 0 each that has points; always at least one row. clfPen is 0 for the pen
/// itself.
std::vector<PenAnalysis> analyse(ResonanceEngine& engine, const PenDocument& document, const QString& plot, int pen,
                                 int clfPen);

/// Lines for a person: every measure with its definition; without the last line end. Control characters that the file
/// brings along are shown as blanks.
QString analysisText(const PenAnalysis& analysis, const AnalysisDetail& detail);
/// Everything, for other programs.
QJsonObject analysisObject(const PenAnalysis& analysis, const AnalysisDetail& detail);
/// The heading of a table with a row for each pen, values separated by commas; no line ends.
QString analysisHeading(const AnalysisDetail& detail);
/// The rows of a pen, one for each mode that is told, the resonance first.
QStringList analysisRows(const PenAnalysis& analysis, const AnalysisDetail& detail);

} // namespace cli
