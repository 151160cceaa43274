// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TextExport.h"

#include "document/PenDocument.h"
#include "document/content/PenReader.h"
#include "program/Version.h"

namespace TextExport {
namespace {

using Kind = TextStore::Kind;

std::optional<Kind> kindOf(const PenDocument& document)
{
    switch (document.pgiTestType()) {
    case plot::Amplitude:
        return Kind::Amplitude;
    case plot::Impedance:
        return Kind::Impedance;
    case plot::Reactance:
        return Kind::Reactance;
    default:
        return std::nullopt;
    }
}

void addPoint(TextStore& store, Kind kind, const GraphModel& graph, int pen, int point)
{
    const auto y = [&](int set) { return static_cast<double>(graph.YData(pen + set * plot::kPens, point)); };
    const auto frequency = static_cast<double>(graph.XData(pen, point));
    switch (kind) {
    case Kind::Amplitude:
        return store.ExportAddAmplitude(frequency, y(0), y(3), pen, point);
    case Kind::Impedance:
        return store.ExportAddImpedance(frequency, y(0), y(3), pen, point);
    case Kind::Reactance:
        return store.ExportAddReactance(frequency, y(0), y(3), y(2), y(1), pen, point);
    }
}

} // namespace

void ExportSubset(TextStore& store, const PenDocument& document, int pen)
{
    const GraphModel& graph = document.peGraph();
    store.ExportSetPenLabel(static_cast<std::int16_t>(pen), graph.SubsetLabels(pen));
    const std::optional<Kind> kind = kindOf(document);
    if (!kind || !Pens::isPen(pen))
        return;
    store.ExportSetKind(*kind);
    const int points = PenReader::pointCount(graph, pen);
    for (int point = 0; point < points; ++point)
        addPoint(store, *kind, graph, pen, point);
}

void collect(TextStore& store, const PenDocument& document, const QString& fileName, int pen, const Format& format)
{
    const GraphModel& graph = document.peGraph();
    store.ExportClear();
    store.ExportSetFile(fileName);
    store.ExportSetFormat(format.comma ? QStringLiteral(", ") : QStringLiteral("\t"),
                          format.unixEnd ? QStringLiteral("\n") : QStringLiteral("\r\n"));
    store.ExportSetHeader(format.header ? 1 : 0);
    if (format.header) {
        store.ExportSetSoftware(version::titled(version::programTitle()));
        store.ExportSetTest(graph.TXAxisLabel());
        store.ExportSetTitle(graph.MainTitle());
    }
    if (pen != TextStore::kAllPens)
        return ExportSubset(store, document, pen);
    for (int each = 0; each < TextStore::kPens; ++each)
        ExportSubset(store, document, each);
}

} // namespace TextExport
