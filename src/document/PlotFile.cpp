// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/PlotFile.h"

#include "controls/graph/GraphFile.h"
#include "document/VersionText.h"
#include "document/content/GraphTexts.h"
#include "values/Conversions.h"

using namespace graphtexts;

namespace plotfile {

Outcome save(GraphModel& graph, const QString& fileName, const QString& versionText)
{
    const QString titleBefore = graph.MainTitle();
    const QString versionBefore = graph.TXAxisLabel();
    if (titleBefore == kNoTitle)
        graph.setMainTitle(fileName);
    graph.setTXAxisLabel(versionText);
    graph.PEactions(graph::Reinitialise);
    Outcome saved = GraphFile::PEsavetofile(graph, fileName);
    if (!saved) {
        graph.setMainTitle(titleBefore);
        graph.setTXAxisLabel(versionBefore);
        graph.PEactions(graph::Reinitialise);
    }
    return saved;
}

Format readFormat(GraphModel& graph)
{
    graph.setWorkingTable(kFormatTable);
    if (graph.TAColumns() != 2) {
        graph.setTARows(1);
        graph.setTAColumns(2);
        graph.setTAText(0, 0, kCurrentFormat);
    }
    const QString text = graph.TAText(0, 0);
    graph.setWorkingTable(kMaskTable);
    return {values::roundToInt16(values::tolerantNumber(text)), text == kCurrentFormat};
}

void showVersionInSubTitle(GraphModel& graph)
{
    if (const auto shown = VersionText::subTitle(graph.TXAxisLabel()); shown && !graph.SubTitle().isEmpty())
        graph.setSubTitle(*shown);
}

} // namespace plotfile
