// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/PlotSummary.h"

#include "document/PenDocument.h"
#include "document/content/GraphScope.h"
#include "document/content/GraphTexts.h"
#include "document/content/PenReader.h"
#include "values/Colours.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

QString tableText(GraphModel& graph, int table, const QString& fallback)
{
    const TableScope scope(graph, table);
    // Plots from before the format number have a table of another width.
    return table != graphtexts::kFormatTable || graph.TAColumns() == 2 ? graph.TAText(0, 0) : fallback;
}

double plain(double limit, int scale)
{
    return scale == graph::ScaleLogarithmic ? std::pow(10.0, limit) : limit;
}

PlotSummary::Zoom zoomOf(const graph::Properties& properties)
{
    // The left axis is 0 or, in the alternate view, 1; the right one 2 or 3.
    const auto scaleOf = [&properties](std::size_t first) {
        const bool second = properties.yAxes[first].YAxisLabel == graphtexts::kSwitchedOff;
        return properties.yAxes[second ? first + 1 : first].YAxisScaleControl;
    };
    const graph::ZoomLimits& zoom = properties.zoom;
    const int x = properties.XAxisScaleControl;
    return {plain(zoom.ZoomMinX, x),          plain(zoom.ZoomMaxX, x),           plain(zoom.ZoomMinY, scaleOf(0)),
            plain(zoom.ZoomMaxY, scaleOf(0)), plain(zoom.ZoomMinRY, scaleOf(2)), plain(zoom.ZoomMaxRY, scaleOf(2))};
}

QString harmless(QString text)
{
    for (QChar& character : text) {
        if (!character.isPrint() && !character.isSurrogate())
            character = u' ';
    }
    return text;
}

QString hertz(double frequency)
{
    return values::engineeringText(frequency, u"Hz"_s, 6);
}

QString viewText(const PlotSummary& summary)
{
    QStringList parts = summary.axes;
    parts += summary.linearFrequency ? tr("linear frequency axis") : tr("logarithmic frequency axis");
    if (summary.from && summary.to)
        parts.last() += tr(" from %1 to %2").arg(hertz(*summary.from), hertz(*summary.to));
    if (summary.zoom)
        parts += tr("zoomed to %1 to %2").arg(hertz(summary.zoom->minX), hertz(summary.zoom->maxX));
    return parts.join(u", "_s);
}

QString penText(const PlotSummary::Pen& pen, int number)
{
    QStringList parts = {harmless(pen.name), colours::colourText(pen.colour)};
    if (pen.locked)
        parts += tr("locked");
    if (pen.hidden)
        parts += tr("hidden");
    return tr("pen %1").arg(number).leftJustified(10) + parts.join(u", "_s) + u": "_s + resultLine(pen.data);
}

QJsonValue optionalText(const std::optional<QString>& text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject penObject(const PlotSummary::Pen& pen, int number)
{
    QJsonObject object{{u"pen"_s, number},
                       {u"name"_s, pen.name},
                       {u"colour"_s, colours::colourText(pen.colour)},
                       {u"locked"_s, pen.locked},
                       {u"hidden"_s, pen.hidden},
                       {u"points"_s, static_cast<qint64>(pen.data.points.size())}};
    if (const std::optional<FrequencyRange> range = frequencyRangeOf(pen.data)) {
        object.insert(u"from"_s, static_cast<double>(range->from));
        object.insert(u"to"_s, static_cast<double>(range->to));
    }
    if (const std::optional<Extremes> extremes = extremesOf(pen.data)) {
        object.insert(u"lowest"_s, extremeObject(pen.data, extremes->lowest));
        object.insert(u"highest"_s, extremeObject(pen.data, extremes->highest));
    }
    return object;
}

} // namespace

SweepResult storedPen(const PenDocument& document, int pen)
{
    constexpr float kNotMeasured = 65536;
    SweepResult result = readPen(document, pen);
    result.points.resize(static_cast<std::size_t>(PenReader::pointCount(document.peGraph(), pen)));
    result.wanted = static_cast<int>(result.points.size());
    result.phase = std::any_of(result.points.begin(), result.points.end(),
                               [](const MeasuredPoint& point) { return std::abs(point.phase) != kNotMeasured; });
    return result;
}

PlotSummary summaryOf(PenDocument& document, const QString& file)
{
    using namespace graphtexts;
    GraphModel& graph = document.peGraph();
    const graph::Properties& properties = graph.properties();
    PlotSummary summary;
    summary.file = file;
    summary.format = tableText(graph, kFormatTable, kCurrentFormat);
    summary.testType = document.pgiTestType();
    if (properties.MainTitle != kNoTitle)
        summary.title = properties.MainTitle;
    summary.origin = properties.TXAxisLabel;
    for (const graph::YAxis& axis : properties.yAxes) {
        if (axis.YAxisLabel != kSwitchedOff)
            summary.axes += axis.YAxisLabel;
    }
    summary.linearFrequency = document.graphGetFrequncyView();
    if (properties.ManualScaleControlX == graph::ScaleManual) {
        summary.from = properties.ManualMinX;
        summary.to = properties.ManualMaxX;
    }
    if (properties.zoomed)
        summary.zoom = zoomOf(properties);
    summary.masks = tableText(graph, kMaskTable, {}) == kMask;
    if (graph.GraphAnnotationText(kSettingsMarker) == kTestSettings)
        summary.settings = graph.GraphAnnotationText(kSettingsString);
    for (int pen = 0; pen < PenDocument::kPens; ++pen)
        summary.pens.push_back({graph.SubsetLabels(pen), graph.SubsetColors(pen), document.GetPenLock(pen) != 0,
                                document.GetPenDisplay(pen) != 0, storedPen(document, pen)});
    return summary;
}

QString summaryText(const PlotSummary& summary)
{
    QStringList lines = {harmless(summary.file)};
    const auto add = [&lines](const QString& name, const QString& text) {
        lines += name.leftJustified(10) + harmless(text);
    };
    add(tr("format"), summary.format == graphtexts::kCurrentFormat ? summary.format
                                                                   : tr("%1, may only be viewed").arg(summary.format));
    add(tr("type"), typeName(summary.testType));
    add(tr("title"), summary.title.value_or(tr("none")));
    add(tr("origin"), summary.origin.isEmpty() ? tr("not known") : summary.origin);
    add(tr("view"), viewText(summary));
    add(tr("masks"), summary.masks ? tr("on") : tr("off"));
    add(tr("settings"), summary.settings.value_or(tr("none")));
    int number = 0;
    for (const PlotSummary::Pen& pen : summary.pens) {
        ++number;
        if (!pen.data.points.empty() || pen.locked || pen.name != u"Pen %1"_s.arg(number))
            lines += penText(pen, number);
    }
    return lines.join(u'\n');
}

QJsonObject summaryObject(const PlotSummary& summary)
{
    QJsonObject view{{u"axes"_s, QJsonArray::fromStringList(summary.axes)},
                     {u"linear"_s, summary.linearFrequency},
                     {u"from"_s, summary.from ? QJsonValue(*summary.from) : QJsonValue()},
                     {u"to"_s, summary.to ? QJsonValue(*summary.to) : QJsonValue()},
                     {u"zoom"_s, QJsonValue()}};
    if (const std::optional<PlotSummary::Zoom>& zoom = summary.zoom)
        view.insert(u"zoom"_s, QJsonObject{{u"from"_s, zoom->minX},
                                           {u"to"_s, zoom->maxX},
                                           {u"left"_s, QJsonArray{zoom->minLeft, zoom->maxLeft}},
                                           {u"right"_s, QJsonArray{zoom->minRight, zoom->maxRight}}});
    QJsonArray pens;
    for (const PlotSummary::Pen& pen : summary.pens)
        pens.append(penObject(pen, static_cast<int>(pens.size()) + 1));
    return {{u"file"_s, summary.file},
            {u"format"_s, summary.format},
            {u"type"_s, typeName(summary.testType)},
            {u"unit"_s, unitOf(summary.testType)},
            {u"title"_s, optionalText(summary.title)},
            {u"origin"_s, summary.origin},
            {u"view"_s, view},
            {u"masks"_s, summary.masks},
            {u"settings"_s, optionalText(summary.settings)},
            {u"pens"_s, pens}};
}

} // namespace cli
