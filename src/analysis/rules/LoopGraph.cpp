// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/LoopGraph.h"

#include "analysis/rules/PenFeed.h"
#include "analysis/rules/ResultLine.h"
#include "controls/polar/PolarConversion.h"
#include "controls/resonance/ResonanceEngine.h"
#include "document/PenDocument.h"
#include "document/content/GraphTexts.h"
#include "values/Conversions.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

using namespace Qt::StringLiterals;

namespace {

constexpr float kAbsentX = 65536;
constexpr double kNoPhase = ResonanceEngine::kNoPhase;

double number(float value)
{
    return static_cast<double>(value);
}

} // namespace

LoopGraph::LoopGraph()
    : m_graph(plot::kPens, plot::kPoints)
{
    for (std::vector<double>& frequencies : m_dblFrequency)
        frequencies.assign(plot::kPoints, 0);
    m_bfPenSkipped.fill(true);
    nameAxes(false);
}

void LoopGraph::Extent::track(double value)
{
    least = empty ? value : std::min(least, value);
    most = empty ? value : std::max(most, value);
    empty = false;
}

void LoopGraph::nameAxes(bool impedance)
{
    m_graph.setXAxisLabel(impedance ? graphtexts::kResistance : graphtexts::kConductance);
    m_graph.setXAxisScaleControl(graph::ScaleLinear);
    m_graph.setWorkingAxis(0);
    m_graph.setYAxisLabel(impedance ? graphtexts::kReactance : graphtexts::kSusceptance);
    m_graph.setYAxisScaleControl(graph::ScaleLinear);
}

void LoopGraph::copyLook(const PenDocument& document)
{
    const GraphModel& source = document.peGraph();
    m_graph.setMarkDataPoints(source.MarkDataPoints());
    m_graph.setShowLegend(source.ShowLegend());
    m_graph.setLegendStyle(source.LegendStyle());
    m_graph.setLegendLocation(source.LegendLocation());
    m_graph.setViewingStyle(source.ViewingStyle());
    m_graph.setFontSize(source.FontSize());
    m_graph.setFontSizeGlobalCntl(source.FontSizeGlobalCntl());
    m_graph.setMainTitleFont(source.MainTitleFont());
    m_graph.setSubTitleFont(source.SubTitleFont());
    m_graph.setLabelFont(source.LabelFont());
    m_graph.setMonoGraphForeColor(source.MonoGraphForeColor());
    m_graph.setMonoGraphBackColor(source.MonoGraphBackColor());
    m_graph.setMonoTextColor(source.MonoTextColor());
    m_graph.setMonoDeskColor(source.MonoDeskColor());
    m_graph.setTickColor(source.TickColor());
    m_graph.setLineWidth(source.LineWidth());
    m_graph.setAxisUnitPrefixes(source.AxisUnitPrefixes());
    for (int pen = 0; pen < plot::kPens; ++pen) {
        m_graph.setSubsetColors(pen, source.SubsetColors(pen));
        m_graph.setSubsetLineTypes(pen, source.SubsetLineTypes(pen));
    }
    // The line of results under the plot; the other tables carry data of the document.
    const graph::TableAnnotation& table = source.properties().tables[graphtexts::kCreditTable];
    m_graph.setWorkingTable(graphtexts::kCreditTable);
    m_graph.setTARows(table.TARows);
    m_graph.setTAColumns(table.TAColumns);
    for (int row = 0; row < table.TARows; ++row) {
        for (int column = 0; column < table.TAColumns; ++column) {
            const graph::TableCell& cell =
                table.cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(table.TAColumns) +
                            static_cast<std::size_t>(column)];
            m_graph.setTAText(row, column, cell.TAText);
            m_graph.setTAJustification(row, column, cell.TAJustification);
        }
    }
    m_graph.setTATextSize(table.TATextSize);
    m_graph.setTAFonts(table.TAFonts);
    m_graph.setTALocation(table.TALocation);
    m_graph.setTAHeaderColumn(table.TAHeaderColumn);
    m_graph.setTABorder(table.TABorder);
    m_graph.setTABackColor(table.TABackColor);
    m_graph.setShowTableAnnotation(table.ShowTableAnnotation);
}

void LoopGraph::BuildLoop(const PenDocument& document, ResonanceEngine& engine, Quantity quantity)
{
    const bool reactance = document.pgiTestType() == PenDocument::Reactance;
    m_quantity = reactance ? quantity : Quantity::Admittance;
    nameAxes(m_quantity == Quantity::Impedance);
    engine.AnalysisClear();
    m_graph.setMainTitle(document.peGraph().MainTitle());
    m_graph.setSubTitle(document.peGraph().SubTitle());
    m_x = m_y = Extent();
    const std::array<bool, plot::kPens> displayed = penfeed::displayedPens(document);
    for (int pen = 0; pen < plot::kPens; ++pen) {
        m_bfPenSkipped[at(pen)] = !displayed[at(pen)] || !penfeed::takesAnalysis(document);
        m_results[at(pen)] = {};
        m_graph.setSubsetLabels(pen, document.peGraph().SubsetLabels(pen));
        m_graph.setSubsetsToShow(pen, !m_bfPenSkipped[at(pen)]);
        if (!m_bfPenSkipped[at(pen)])
            buildPen(document, engine, pen);
    }
}

void LoopGraph::buildPen(const PenDocument& document, ResonanceEngine& engine, int pen)
{
    const GraphModel& source = document.peGraph();
    const bool reactance = document.pgiTestType() == PenDocument::Reactance;
    std::vector<double>& frequencies = m_dblFrequency[at(pen)];
    for (std::int32_t i = 0; i < m_graph.Points(); ++i) {
        const double frequency = number(source.XData(pen, i));
        const double first = number(source.YData(pen, i));
        const double fourth = number(source.YData(pen + 3 * plot::kPens, i));
        frequencies[static_cast<std::size_t>(i)] = 0;
        m_graph.setPoint(pen, i, kAbsentX, graph::kNullValue);
        if (frequency == 0 || first == number(graph::kNullValue) || fourth == number(graph::kNullValue))
            continue;
        std::int32_t index = i;
        double g = 0;
        double b = 0;
        if (reactance) {
            b = number(source.YData(pen + plot::kPens, i));
            g = number(source.YData(pen + 2 * plot::kPens, i));
            engine.AnalysisAddRect(frequency, fourth, first, b, g, pen, index);
        } else {
            engine.AnalysisAddPolar(frequency, first, fourth, pen, index);
            // Without phase there is no place in the plane.
            if (fourth == kNoPhase)
                continue;
            const polar::Rectangular point = polar::toRectangular(first, fourth);
            g = point.conductance;
            b = point.susceptance;
        }
        const QPointF place = m_quantity == Quantity::Impedance ? QPointF(fourth, first) : QPointF(g, b);
        if (!std::isfinite(place.x()) || !std::isfinite(place.y()))
            continue;
        frequencies[static_cast<std::size_t>(i)] = frequency;
        m_graph.setPoint(pen, i, static_cast<float>(place.x()), static_cast<float>(place.y()));
        m_x.track(place.x());
        m_y.track(place.y());
    }
}

void LoopGraph::solve(ResonanceEngine& engine)
{
    for (int pen = 0; pen < plot::kPens; ++pen) {
        Result& result = m_results[at(pen)];
        result = {};
        if (m_bfPenSkipped[at(pen)] || !engine.AnalysisSolve(pen, -1))
            continue;
        result.found = true;
        result.fr = engine.ResultFr();
        result.zr = engine.ResultZr();
        result.q = engine.ResultQ();
        result.f1 = engine.ResultF1();
        result.f2 = engine.ResultF2();
        result.point = engine.ResultPointIndex();
        const resonance::Solution& solution = engine.solution(pen);
        const double turn = (solution.flags & resonance::TurnedFlag) != 0 ? -1 : 1;
        const double mirror = (solution.flags & resonance::ConjugatedFlag) != 0 ? -1 : 1;
        result.radius = solution.mode.g1.value / 2;
        result.centre = {turn * (solution.mode.conductance - result.radius), turn * mirror * solution.mode.susceptance};
    }
}

double LoopGraph::frequency(int pen, int point) const
{
    if (pen < 0 || pen >= plot::kPens || point < 0 || point >= plot::kPoints)
        return 0;
    return m_dblFrequency[at(pen)][static_cast<std::size_t>(point)];
}

QString LoopGraph::readOut(int pen, int point) const
{
    const double hertz = frequency(pen, point);
    if (hertz == 0)
        return {};
    // Six digits: what is measured has no more.
    const auto text = [](float value) {
        return values::decimalText(QString::number(number(value), 'g', 6).toDouble());
    };
    const QString x = text(m_graph.XData(pen, point));
    const QString y = text(m_graph.YData(pen, point));
    const QString where = u"F:"_s + values::decimalText(static_cast<float>(hertz)) + u" Hz "_s;
    return m_quantity == Quantity::Impedance ? where + u"R:"_s + x + u" Ohms X:"_s + y + u" Ohms"_s
                                             : where + u"G:"_s + x + u" S B:"_s + y + u" S"_s;
}

QStringList LoopGraph::resultTexts(int pen) const
{
    const bool found = pen >= 0 && pen < plot::kPens && m_results[at(pen)].found;
    if (!found)
        return {u"F1:N/A"_s, u"F2:N/A"_s, u"Fr:N/A"_s, u"Zr:N/A"_s, u"Q:N/A"_s};
    const Result& result = m_results[at(pen)];
    return {u"F1:"_s + resultline::plain(result.f1) + u" Hz"_s, u"F2:"_s + resultline::plain(result.f2) + u" Hz"_s,
            u"Fr:"_s + resultline::plain(result.fr) + u" Hz"_s, u"Zr:"_s + resultline::plain(result.zr) + u" Ohms"_s,
            u"Q:"_s + resultline::plain(result.q)};
}

/// On the line between the points on either side of the frequency, whichever way the sweep went.
std::optional<QPointF> LoopGraph::placeOf(int pen, double frequency) const
{
    const std::vector<double>& frequencies = m_dblFrequency[at(pen)];
    for (int i = 0; i + 1 < plot::kPoints; ++i) {
        const double from = frequencies[static_cast<std::size_t>(i)];
        const double to = frequencies[static_cast<std::size_t>(i) + 1];
        if (from == 0 || to == 0 || from == to || (frequency - from) * (frequency - to) > 0)
            continue;
        const double share = (frequency - from) / (to - from);
        const QPointF begin(number(m_graph.XData(pen, i)), number(m_graph.YData(pen, i)));
        const QPointF end(number(m_graph.XData(pen, i + 1)), number(m_graph.YData(pen, i + 1)));
        return begin + share * (end - begin);
    }
    return std::nullopt;
}

std::vector<LoopGraph::Mark> LoopGraph::marks() const
{
    std::vector<Mark> marks;
    for (int pen = 0; pen < plot::kPens; ++pen) {
        const Result& result = m_results[at(pen)];
        if (!result.found)
            continue;
        for (const auto& [name, frequency] :
             {std::pair(u"Fr"_s, result.fr), std::pair(u"F1"_s, result.f1), std::pair(u"F2"_s, result.f2)}) {
            if (const std::optional<QPointF> place = placeOf(pen, frequency))
                marks.push_back({pen, name, *place});
        }
    }
    return marks;
}

QPointF LoopGraph::shown(double conductance, double susceptance) const
{
    if (m_quantity == Quantity::Admittance)
        return {conductance, susceptance};
    const std::complex<double> z = 1.0 / std::complex<double>(conductance, susceptance);
    return {z.real(), z.imag()};
}

std::vector<QPointF> LoopGraph::circle(int pen) const
{
    constexpr int kCorners = 180;
    std::vector<QPointF> line;
    const Result& result = m_results[at(pen)];
    if (!result.found)
        return line;
    for (int i = 0; i <= kCorners; ++i) {
        const double angle = 2 * std::numbers::pi * (i % kCorners) / kCorners;
        const QPointF place = shown(result.centre.x() + result.radius * std::cos(angle),
                                    result.centre.y() + result.radius * std::sin(angle));
        if (std::isfinite(place.x()) && std::isfinite(place.y()))
            line.push_back(place);
    }
    return line;
}

void LoopGraph::SetLoopAxes(std::optional<double> proportion, bool withCircles)
{
    constexpr double kMargin = 0.05;
    Extent x = m_x;
    Extent y = m_y;
    for (int pen = 0; withCircles && pen < plot::kPens; ++pen) {
        for (const QPointF& place : circle(pen)) {
            x.track(place.x());
            y.track(place.y());
        }
    }
    const bool manual = !x.empty && x.most > x.least && y.most > y.least;
    m_graph.setManualScaleControlX(manual ? graph::ScaleManual : graph::ScaleAutomatic);
    m_graph.setWorkingAxis(0);
    m_graph.setManualScaleControlY(manual ? graph::ScaleManual : graph::ScaleAutomatic);
    if (manual) {
        const auto margined = [](const Extent& extent) {
            const double margin = (extent.most - extent.least) * kMargin;
            return std::pair(extent.least - margin, extent.most + margin);
        };
        auto [left, right] = margined(x);
        auto [bottom, top] = margined(y);
        if (proportion && *proportion > 0) {
            const double wider = std::max(0.0, (top - bottom) * *proportion - (right - left)) / 2;
            const double higher = std::max(0.0, (right - left) / *proportion - (top - bottom)) / 2;
            left -= wider;
            right += wider;
            bottom -= higher;
            top += higher;
        }
        m_graph.setManualMinX(left);
        m_graph.setManualMaxX(right);
        m_graph.setManualMinY(bottom);
        m_graph.setManualMaxY(top);
    }
    m_graph.PEactions(graph::Reinitialise);
}
