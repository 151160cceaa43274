// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TextExport.h"

#include "controls/resonance/ResonanceEngine.h"
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

void addPoint(ExportStore& store, Kind kind, const GraphModel& graph, int pen, int point)
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

/// The measures of the pen's resonance for the header; empty where there is none.
QString measuresOf(ResonanceEngine& engine, int pen)
{
    constexpr int kDigits = 9;
    if (!engine.AnalysisSolve(pen, -1))
        return QString();
    const auto number = [](double value) { return QString::number(value, 'g', kDigits); };
    return QStringLiteral("Resonance: Fr %1 Hz, Zr %2 Ohm, Q %3, F1 %4 Hz, F2 %5 Hz")
        .arg(number(engine.ResultFr()), number(engine.ResultZr()), number(engine.ResultQ()), number(engine.ResultF1()),
             number(engine.ResultF2()));
}

void addPen(ExportStore& store, const PenDocument& document, int pen, const Format& format)
{
    ExportSubset(store, document, pen);
    if (format.header && Pens::isPen(pen))
        store.ExportSetSolution(static_cast<std::int16_t>(pen), measuresOf(store.analysis(), pen));
}

} // namespace

void ExportSubset(ExportStore& store, const PenDocument& document, int pen)
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

void collect(ExportStore& store, const PenDocument& document, const QString& fileName, int pen, const Format& format)
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
        return addPen(store, document, pen, format);
    for (int each = 0; each < TextStore::kPens; ++each)
        addPen(store, document, each, format);
}

Outcome ExportTextFile(const PenDocument& document, const QString& strFileName, bool bfSubset, bool bfPhase,
                       int iPenIndex, int iPrecision, bool bfHeader, bool bfComma, bool bfUnix)
{
    Q_UNUSED(bfSubset)
    Q_UNUSED(bfPhase)
    Q_UNUSED(iPrecision)
    ExportStore store;
    collect(store, document, strFileName, iPenIndex, {bfHeader, bfComma, bfUnix});
    store.ExportWrite(iPenIndex);
    return store.exportOutcome();
}

} // namespace TextExport
