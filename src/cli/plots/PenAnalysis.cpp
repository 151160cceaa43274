// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/PenAnalysis.h"

#include "analysis/rules/Measures.h"
#include "analysis/rules/PenFeed.h"
#include "controls/resonance/ResonanceEngine.h"
#include "document/PenDocument.h"
#include "document/content/PenReader.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace cli {
namespace {

using namespace Qt::StringLiterals;
using measures::Measure;
using resonance::Mode;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

PenAnalysis analysePen(ResonanceEngine& engine, const PenDocument& document, const QString& plot, int pen, int clfPen)
{
    PenAnalysis result;
    result.plot = plot;
    result.pen = pen;
    result.clfPen = clfPen == 0 ? pen : clfPen;
    result.name = document.peGraph().SubsetLabels(pen - 1);
    engine.AnalysisClear();
    penfeed::feed(engine, document, pen - 1);
    if (result.clfPen != pen)
        penfeed::feed(engine, document, result.clfPen - 1);
    result.solution = engine.solution(pen - 1);
    if (!result.solved())
        result.reason = QString::fromStdString(resonance::refusalText(result.solution.refusal));
    if (engine.AnalysisSolveClf(result.clfPen - 1))
        result.clf = {true, engine.ResultClf(), engine.ResultClfFrequency()};
    return result;
}

QString harmless(QString text)
{
    for (QChar& character : text) {
        if (!character.isPrint() && !character.isSurrogate())
            character = u' ';
    }
    return text;
}

QString measureLine(const Measure& measure, const Mode& mode)
{
    constexpr int kNameWidth = 6;
    constexpr int kValueWidth = 34;
    return u"  "_s + QString::fromLatin1(measure.name).leftJustified(kNameWidth) +
           measures::valueText(mode.*measure.figure, QString::fromLatin1(measure.unit)).leftJustified(kValueWidth) +
           measures::definition(measure);
}

QString modeLine(const Mode& mode, int number)
{
    return tr("  mode %1: Fr %2, Q %3, R1 %4")
        .arg(QString::number(number), measures::valueText(mode.fs, u"Hz"_s), measures::valueText(mode.q, {}),
             measures::valueText(mode.r1, u"Ohm"_s));
}

QJsonValue number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonObject measuresObject(std::span<const Measure> list, const Mode& mode)
{
    QJsonObject object;
    for (const Measure& measure : list) {
        const resonance::Figure& figure = mode.*measure.figure;
        object.insert(QLatin1String(measure.key), QJsonObject{{u"value"_s, number(figure.value)},
                                                              {u"uncertainty"_s, number(figure.uncertainty)},
                                                              {u"unit"_s, QLatin1String(measure.unit)},
                                                              {u"definition"_s, measures::definition(measure)}});
    }
    return object;
}

QJsonObject modeObject(const Mode& mode, const AnalysisDetail& detail)
{
    QJsonObject object{{u"measures"_s, measuresObject(measures::ofResonance(), mode)},
                       {u"pointsPerBandwidth"_s, number(mode.pointsPerBandwidth)},
                       {u"coverageFactor"_s, number(mode.coverageFactor)}};
    if (detail.circuit)
        object.insert(u"circuit"_s, measuresObject(measures::ofCircuit(), mode));
    return object;
}

QString cell(const QString& text)
{
    if (!text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n') && !text.contains(u'\r'))
        return text;
    return u'"' + QString(text).replace(u"\""_s, u"\"\""_s) + u'"';
}

QString cell(double value)
{
    return std::isfinite(value) ? values::decimalText(value) : QString();
}

void appendColumns(QStringList& cells, std::span<const Measure> list)
{
    for (const Measure& measure : list) {
        const QString key = QLatin1String(measure.key);
        const QString unit = *measure.unit == '\0' ? QString() : u'_' + QLatin1String(measure.unit);
        cells << key + unit << u"u_"_s + key + unit;
    }
}

void appendFigures(QStringList& cells, std::span<const Measure> list, const Mode& mode)
{
    for (const Measure& measure : list) {
        const resonance::Figure& figure = mode.*measure.figure;
        cells << cell(figure.value) << cell(figure.uncertainty);
    }
}

QString row(const PenAnalysis& analysis, const AnalysisDetail& detail, int number, const Mode& mode)
{
    const bool first = number == 1;
    const resonance::Solution& solution = analysis.solution;
    QStringList cells{cell(analysis.plot), analysis.pen == 0 ? QString() : QString::number(analysis.pen),
                      cell(harmless(analysis.name)), QString::number(number), analysis.solved() ? u"yes"_s : u"no"_s};
    appendFigures(cells, measures::ofResonance(), mode);
    cells << (first ? cell(analysis.clf.capacitance) : QString()) << (first ? cell(analysis.clf.frequency) : QString());
    if (detail.circuit)
        appendFigures(cells, measures::ofCircuit(), mode);
    cells << QString::number(solution.usedPoints) << (analysis.solved() ? cell(mode.pointsPerBandwidth) : QString())
          << cell(mode.coverageFactor) << (first ? cell(measures::flags(solution).join(u"; "_s)) : QString())
          << cell(analysis.reason);
    return cells.join(u',');
}

} // namespace

std::vector<PenAnalysis> analyse(ResonanceEngine& engine, const PenDocument& document, const QString& plot, int pen,
                                 int clfPen)
{
    PenAnalysis none;
    none.plot = plot;
    none.pen = pen;
    if (!penfeed::takesAnalysis(document)) {
        none.reason = document.pgiTestType() == PenDocument::Amplitude ? tr("an amplitude plot has no resonance")
                                                                       : tr("the plot is of no known type");
        return {none};
    }
    std::vector<PenAnalysis> result;
    for (int each = 1; each <= PenDocument::kPens; ++each) {
        if (pen == 0 ? PenReader::pointCount(document.peGraph(), each - 1) > 0 : each == pen)
            result.push_back(analysePen(engine, document, plot, each, clfPen));
    }
    if (result.empty()) {
        none.reason = QString::fromStdString(resonance::refusalText(resonance::Refusal::NoPoints));
        result.push_back(none);
    }
    return result;
}

QString analysisText(const PenAnalysis& analysis, const AnalysisDetail& detail)
{
    QString head = harmless(analysis.plot);
    if (analysis.pen != 0)
        head += (head.isEmpty() ? QString() : u", "_s) + tr("pen %1").arg(analysis.pen);
    if (!analysis.name.isEmpty())
        head += u" ["_s + harmless(analysis.name) + u']';
    QStringList lines{head + u": "_s + (analysis.solved() ? tr("resonance") : tr("no resonance: ") + analysis.reason)};
    const resonance::Solution& solution = analysis.solution;
    if (analysis.solved()) {
        for (const Measure& measure : measures::ofResonance())
            lines += measureLine(measure, solution.mode);
    }
    if (analysis.clf.found) {
        QString line = tr("  Clf   %1 at %2")
                           .arg(values::engineeringText(analysis.clf.capacitance, u"F"_s, 4),
                                values::engineeringText(analysis.clf.frequency, u"Hz"_s, 6))
                           .leftJustified(42) +
                       measures::capacitanceDefinition();
        if (analysis.clfPen != analysis.pen)
            line += tr(" of pen %1").arg(analysis.clfPen);
        lines += line;
    }
    if (!analysis.solved())
        return lines.join(u'\n');
    if (detail.circuit) {
        for (const Measure& measure : measures::ofCircuit())
            lines += measureLine(measure, solution.mode);
    }
    lines += u"  "_s + measures::coverageText(solution.mode);
    lines += u"  "_s + measures::pointsText(solution);
    for (const QString& flag : measures::flags(solution))
        lines += tr("  flag: %1").arg(flag);
    for (int k = 0; detail.modes && k < solution.otherCount; ++k)
        lines += modeLine(solution.others[static_cast<std::size_t>(k)], k + 2);
    return lines.join(u'\n');
}

QJsonObject analysisObject(const PenAnalysis& analysis, const AnalysisDetail& detail)
{
    const resonance::Solution& solution = analysis.solution;
    QJsonObject object =
        analysis.solved() ? modeObject(solution.mode, detail) : QJsonObject{{u"measures"_s, QJsonValue()}};
    object.insert(u"plot"_s, analysis.plot);
    object.insert(u"pen"_s, analysis.pen == 0 ? QJsonValue() : QJsonValue(analysis.pen));
    object.insert(u"name"_s, analysis.name);
    object.insert(u"solved"_s, analysis.solved());
    object.insert(u"reason"_s, analysis.solved() ? QJsonValue() : QJsonValue(analysis.reason));
    object.insert(u"points"_s, solution.usedPoints);
    object.insert(u"pointsLeftOut"_s, solution.leftOut);
    object.insert(u"flags"_s, QJsonArray::fromStringList(measures::flags(solution)));
    object.insert(u"clf"_s, analysis.clf.found
                                ? QJsonValue(QJsonObject{{u"value"_s, analysis.clf.capacitance},
                                                         {u"unit"_s, u"F"_s},
                                                         {u"frequency"_s, analysis.clf.frequency},
                                                         {u"pen"_s, analysis.clfPen},
                                                         {u"definition"_s, measures::capacitanceDefinition()}})
                                : QJsonValue());
    if (detail.modes) {
        QJsonArray modes;
        for (int k = 0; k < solution.otherCount; ++k)
            modes.append(modeObject(solution.others[static_cast<std::size_t>(k)], detail));
        object.insert(u"modes"_s, modes);
    }
    return object;
}

QString analysisHeading(const AnalysisDetail& detail)
{
    QStringList cells{u"plot"_s, u"pen"_s, u"name"_s, u"mode"_s, u"solved"_s};
    appendColumns(cells, measures::ofResonance());
    cells << u"clf_F"_s << u"clf_frequency_Hz"_s;
    if (detail.circuit)
        appendColumns(cells, measures::ofCircuit());
    cells << u"points"_s << u"points_per_bandwidth"_s << u"coverage_factor"_s << u"flags"_s << u"reason"_s;
    return cells.join(u',');
}

QStringList analysisRows(const PenAnalysis& analysis, const AnalysisDetail& detail)
{
    QStringList rows{row(analysis, detail, 1, analysis.solution.mode)};
    for (int k = 0; detail.modes && k < analysis.solution.otherCount; ++k)
        rows += row(analysis, detail, k + 2, analysis.solution.others[static_cast<std::size_t>(k)]);
    return rows;
}

} // namespace cli
