// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/PenFeed.h"

#include "controls/resonance/ResonanceEngine.h"
#include "document/PenDocument.h"
#include "document/content/PenReader.h"

namespace penfeed {

bool takesAnalysis(const PenDocument& document)
{
    return document.pgiTestType() == PenDocument::Impedance || document.pgiTestType() == PenDocument::Reactance;
}

int feed(ResonanceEngine& engine, const PenDocument& document, int pen)
{
    if (pen < 0 || pen >= PenDocument::kPens || !takesAnalysis(document))
        return 0;
    const GraphModel& graph = document.peGraph();
    const bool reactance = document.pgiTestType() == PenDocument::Reactance;
    const int count = PenReader::pointCount(graph, reactance ? pen + 20 : pen);
    const auto number = [](float value) { return static_cast<double>(value); };
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t index = i;
        if (reactance)
            engine.AnalysisAddRect(number(graph.XData(pen + 20, i)), number(graph.YData(pen + 30, i)),
                                   number(graph.YData(pen, i)), number(graph.YData(pen + 10, i)),
                                   number(graph.YData(pen + 20, i)), pen, index);
        else
            engine.AnalysisAddPolar(number(graph.XData(pen, i)), number(graph.YData(pen, i)),
                                    number(graph.YData(pen + 30, i)), pen, index);
    }
    return count;
}

std::array<bool, plot::kPens> displayedPens(const PenDocument& document)
{
    std::array<bool, plot::kPens> displayed{};
    const GraphModel& graph = document.peGraph();
    const int base = document.gbfAltSubset() ? plot::kPens : 0;
    for (int i = 0; i < graph.Subsets(); ++i) {
        const int entry = graph.RandomSubsetsToGraph(i);
        // A 0 can only stand for pen 0, in front: further on the list has ended.
        if (entry == 0 && i > 0)
            break;
        if (entry >= 0 && entry < base + plot::kPens)
            displayed[static_cast<std::size_t>(entry >= plot::kPens ? entry - base : entry)] = true;
    }
    return displayed;
}

} // namespace penfeed
