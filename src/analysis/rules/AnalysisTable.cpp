// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/AnalysisTable.h"

#include "analysis/rules/Measures.h"
#include "analysis/rules/PenFeed.h"
#include "analysis/rules/ResultLine.h"
#include "controls/resonance/ResonanceEngine.h"
#include "document/PenDocument.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

const QString kNotAvailable = u"N/A"_s;

QString tr(const char* text)
{
    return QCoreApplication::translate("AnalysisTable", text);
}

QString measureLine(const measures::Measure& measure, const resonance::Mode& mode)
{
    return QLatin1String(measure.name) + u": "_s +
           measures::valueText(mode.*measure.figure, QLatin1String(measure.unit)) + u", "_s +
           measures::definition(measure);
}

QString tipOf(const resonance::Solution& solution)
{
    if (!solution.found)
        return tr("No resonance: %1").arg(QString::fromStdString(resonance::refusalText(solution.refusal)));
    QStringList lines;
    for (const measures::Measure& measure : measures::ofResonance())
        lines += measureLine(measure, solution.mode);
    for (const measures::Measure& measure : measures::ofCircuit())
        lines += measureLine(measure, solution.mode);
    lines += measures::coverageText(solution.mode);
    lines += measures::pointsText(solution);
    for (const QString& flag : measures::flags(solution))
        lines += tr("Flag: %1").arg(flag);
    return lines.join(u'\n');
}

} // namespace

void AnalysisTable::fill(const PenDocument& document, ResonanceEngine& engine)
{
    const std::array<bool, plot::kPens> displayed = penfeed::displayedPens(document);
    engine.AnalysisClear();
    for (int pen = 0; pen < plot::kPens; ++pen) {
        Row& row = m_rows[static_cast<std::size_t>(pen)];
        row = {};
        row.shown = displayed[static_cast<std::size_t>(pen)];
        row.label = document.peGraph().SubsetLabels(pen);
        if (!row.shown)
            continue;
        row.hasPoints = penfeed::feed(engine, document, pen) > 0;
        row.found = engine.AnalysisSolve(pen, -1);
        const auto text = [&row](double value) { return row.found ? resultline::grouped(value) : kNotAvailable; };
        row.f1 = text(engine.ResultF1());
        row.f2 = text(engine.ResultF2());
        row.fr = text(engine.ResultFr());
        row.zr = text(engine.ResultZr());
        row.q = text(engine.ResultQ());
        row.measuresTip = tipOf(engine.solution(pen));
        row.capFound = engine.AnalysisSolveClf(pen);
        row.cap = row.capFound ? ResonanceEngine::FormatEngineering(engine.ResultClf()) + u'F' : kNotAvailable;
        row.capFrequency = row.capFound ? resultline::grouped(engine.ResultClfFrequency()) : kNotAvailable;
        row.capTip = row.capFound
                         ? u"Clf: "_s + measures::capacitanceDefinition()
                         : tr("No capacitance: the part is no capacitor at its lowest frequencies, or they are "
                              "above half of its resonance");
    }
}

int AnalysisTable::firstFound() const
{
    for (int pen = 0; pen < plot::kPens; ++pen) {
        if (row(pen).found)
            return pen;
    }
    return -1;
}

int AnalysisTable::firstCap() const
{
    for (int pen = 0; pen < plot::kPens; ++pen) {
        if (row(pen).capFound)
            return pen;
    }
    return -1;
}

QString AnalysisTable::line(int resonancePen, int capPen, const Ticks& ticks) const
{
    QString resonance;
    if (resonancePen >= 0 && resonancePen < plot::kPens && row(resonancePen).hasPoints) {
        const Row& chosen = row(resonancePen);
        resultline::Measures measures;
        measures.behindQ = u" "_s;
        const auto choose = [](std::optional<QString>& text, bool ticked, const QString& value) {
            if (ticked)
                text = value;
        };
        choose(measures.f1, ticks.f1, chosen.f1);
        choose(measures.f2, ticks.f2, chosen.f2);
        choose(measures.fr, ticks.fr, chosen.fr);
        choose(measures.zr, ticks.zr, chosen.zr);
        choose(measures.q, ticks.q, chosen.q);
        resonance = resultline::resonance(resonancePen, chosen.label, measures);
    }
    QString capacitance;
    if (capPen >= 0 && capPen < plot::kPens && row(capPen).capFound && ticks.clf)
        capacitance = resultline::capacitance(capPen, row(capPen).label, row(capPen).capFrequency, row(capPen).cap);
    return resultline::joined(resonance, capacitance);
}
