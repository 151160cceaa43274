// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphPlot.h"

#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/TracePlottable.h"

#include <algorithm>

namespace {

constexpr int kLegendLabelLength = 32;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

QPen thinPen(const QColor& color, double width = 1)
{
    QPen pen(color, width);
    pen.setCapStyle(Qt::FlatCap);
    return pen;
}

} // namespace

GraphPlot::GraphPlot(const GraphModel& model, Look look, QWidget* parent)
    : QCustomPlot(parent)
    , m_model(model)
    , m_look(look)
    , m_traces(at(model.Subsets()), nullptr)
    , m_extents(at(model.Subsets()))
{
    setObjectName(QStringLiteral("graphPlot"));
    setAutoAddPlottableToLegend(false);
    setInteractions(QCP::iNone);
    // From below: paper, grid, axes, settled traces in one buffer; live traces; what moves. Every buffer is filled and
    // put on the screen at its full size, so an idle one costs as much as the curves.
    moveLayer(layer(QStringLiteral("legend")), layer(QStringLiteral("axes")), limAbove);
    addLayer(QStringLiteral("settled"), layer(QStringLiteral("legend")), limAbove);
    addLayer(QStringLiteral("live"), layer(QStringLiteral("settled")), limAbove);
    m_settledLayer = layer(QStringLiteral("settled"));
    m_liveLayer = layer(QStringLiteral("live"));

    plotLayout()->clear();
    m_area = new QCPAxisRect(this, false);
    m_area->setLayer(QStringLiteral("background"));
    m_area->setMinimumMargins(QMargins(10, 8, 12, 6));
    m_area->insetLayout()->setMargins(QMargins(8, 8, 8, 8));
    createAxes();
    legend = new QCPLegend;
    m_legendHolder = new LegendHolder(legend);
    m_centre = new QCPLayoutGrid;
    m_centre->setColumnSpacing(2);
    m_mainTitle = new TitleElement(this);
    m_subTitle = new TitleElement(this);
    m_topTables = new TableStrip(this);
    m_bottomTables = new TableStrip(this);
    m_overlay = new OverlayMarks(this, m_bottom);
    plotLayout()->setRowSpacing(2);
    plotLayout()->addElement(0, 0, m_mainTitle);
    plotLayout()->addElement(1, 0, m_subTitle);
    plotLayout()->addElement(2, 0, m_topTables);
    plotLayout()->addElement(3, 0, m_centre);
    plotLayout()->addElement(4, 0, m_bottomTables);
    m_centre->addElement(0, 0, m_area);
    m_centre->addElement(0, 1, m_legendHolder);
    m_legendHolder->addElement(legend, Qt::AlignCenter);
    legend->setLayer(QStringLiteral("legend"));
}

// Parts that stand outside the layout at the moment (a title without text, a hidden legend) have no other owner.
GraphPlot::~GraphPlot()
{
    for (QCPLayoutElement* part : std::initializer_list<QCPLayoutElement*>{m_mainTitle, m_subTitle, m_topTables,
                                                                           m_bottomTables, m_legendHolder}) {
        if (part->layout() == nullptr)
            delete part;
    }
}

void GraphPlot::createAxes()
{
    m_bottom = m_area->addAxis(QCPAxis::atBottom);
    m_frameTop = m_area->addAxis(QCPAxis::atTop);
    m_frameRight = m_area->addAxis(QCPAxis::atRight);
    for (QCPAxis* frame : {m_frameTop, m_frameRight}) {
        frame->setTicks(false);
        frame->setTickLabels(false);
        frame->grid()->setVisible(false);
    }
    for (int axis = 0; axis < graph::kYAxes; ++axis)
        m_values[at(axis)] = m_area->addAxis(graph::isRightAxis(axis) ? QCPAxis::atRight : QCPAxis::atLeft);
    m_bottomTicker = QSharedPointer<EngineeringTicker>::create(*m_bottom, true);
    m_bottom->setTicker(m_bottomTicker);
    for (int axis = 0; axis < graph::kYAxes; ++axis) {
        m_valueTickers[at(axis)] = QSharedPointer<EngineeringTicker>::create(*m_values[at(axis)], false);
        m_values[at(axis)]->setTicker(m_valueTickers[at(axis)]);
    }
    // First on its layer, so that major lines lie above minor ones.
    m_minor = new MinorDivisions(this);
    m_minor->addAxis(m_bottom, m_bottomTicker);
    for (int axis = 0; axis < graph::kYAxes; ++axis)
        m_minor->addAxis(m_values[at(axis)], m_valueTickers[at(axis)]);
    for (QCPAxis* axis : m_area->axes()) {
        axis->setLayer(QStringLiteral("axes"));
        axis->grid()->setLayer(QStringLiteral("grid"));
        axis->setSelectableParts(QCPAxis::spNone);
    }
}

QRect GraphPlot::plotArea() const
{
    return m_area->rect();
}

TracePlottable* GraphPlot::trace(int subset) const
{
    return subset >= 0 && at(subset) < m_traces.size() ? m_traces[at(subset)] : nullptr;
}

int GraphPlot::leadingAxis(bool right) const
{
    const int first = right ? 2 : 0;
    return m_values[at(first)]->visible() || !m_values[at(first + 1)]->visible() ? first : first + 1;
}

void GraphPlot::invalidate()
{
    m_stale = true;
}

void GraphPlot::prepare()
{
    std::vector<int> changed;
    if (m_stale || m_shownRevision != m_model.shownRevision()) {
        m_shownRevision = m_model.shownRevision();
        applyProperties();
    }
    updateData(changed);
    applyRanges();
    applyLegend();
    m_overlay->setLines(m_model.shownProperties().verticalLines, m_style);
    m_linesRevision = m_model.shownLinesRevision();
    const bool idle = m_overlay->isEmpty() && legend->layer() != m_overlay->layer();
    m_overlay->layer()->setMode(idle ? QCPLayer::lmLogical : QCPLayer::lmBuffered);
    m_stale = false;
}

void GraphPlot::refresh()
{
    if (bufferDevicePixelRatio() != devicePixelRatioF()) {
        setBufferDevicePixelRatio(devicePixelRatioF());
        m_stale = true;
    }
    bool full = m_stale || m_shownRevision != m_model.shownRevision();
    if (full) {
        prepare();
    } else {
        std::vector<int> changed;
        full = updateData(changed);
        if (full) {
            applyRanges();
            applyLegend();
        }
        if (std::any_of(changed.begin(), changed.end(), [this](int subset) {
                return std::find(m_live.begin(), m_live.end(), subset) == m_live.end();
            })) {
            makeLive(changed);
            full = true;
        }
        if (!full && !changed.empty()) {
            m_liveLayer->replot();
            ++m_work.live;
        }
    }
    if (m_linesRevision != m_model.shownLinesRevision()) {
        m_linesRevision = m_model.shownLinesRevision();
        m_overlay->setLines(m_model.shownProperties().verticalLines, m_style);
        if (!full)
            redrawOverlay();
    }
    if (full) {
        replot(rpQueuedRefresh);
        ++m_work.full;
    }
}

void GraphPlot::redrawOverlay()
{
    if (m_overlay->layer()->mode() == QCPLayer::lmBuffered) {
        m_overlay->layer()->replot();
        ++m_work.overlay;
        return;
    }
    // The first mark brings the layer a buffer of its own.
    m_overlay->layer()->setMode(QCPLayer::lmBuffered);
    replot(rpQueuedRefresh);
    ++m_work.full;
}

void GraphPlot::applyProperties()
{
    const graph::Properties& properties = m_model.shownProperties();
    const QPalette desktop = palette();
    m_style = plotStyle(properties, m_look == Look::Screen ? &desktop : nullptr);
    setBackground(QBrush(m_style.desk));
    m_area->setBackground(m_style.paper == m_style.desk ? QBrush(Qt::NoBrush) : QBrush(m_style.paper));
    m_mainTitle->setText(properties.MainTitle, m_style.mainTitle, m_style.text);
    m_subTitle->setText(properties.SubTitle, m_style.subTitle, m_style.text);
    m_topTables->setTables(properties, m_style, true);
    m_bottomTables->setTables(properties, m_style, false);
    m_drawn = graph::drawnSubsets(properties, m_model.Subsets());
    applyAxes();
    applyTraces();
    // Fonts, names and places may all be new.
    m_legendEntries.reset();
}

void GraphPlot::applyAxes()
{
    const graph::Properties& properties = m_model.shownProperties();
    const auto style = [&](QCPAxis* axis, EngineeringTicker& ticker, const QString& title, int scale) {
        const bool logarithmic = scale == graph::ScaleLogarithmic;
        const QString unit = graph::unitOf(title);
        const bool prefixed = graph::takesPrefix(unit);
        ticker.setStyle(prefixed ? properties.AxisUnitPrefixes : QString(),
                        !prefixed && unit.startsWith(QLatin1Char('D')), logarithmic, m_style.textSize);
        axis->setScaleType(logarithmic ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
        axis->setLabel(title);
        axis->setLabelFont(m_style.axisTitle);
        axis->setLabelColor(m_style.text);
        axis->setLabelPadding(4);
        axis->setTickLabelFont(m_style.tickLabels);
        axis->setTickLabelColor(m_style.text);
        axis->setTickLabelPadding(4);
        axis->setTickLength(5);
        axis->setSubTicks(false);
        axis->grid()->setPen(thinPen(m_style.grid));
        axis->grid()->setZeroLinePen(thinPen(m_style.grid.darker(135)));
    };
    m_minor->setPens(thinPen(m_style.minorGrid), thinPen(m_style.frame));
    style(m_bottom, *m_bottomTicker, properties.XAxisLabel, properties.XAxisScaleControl);
    m_bottom->grid()->setVisible(true);
    bool gridTaken = false;
    bool rightVisible = false;
    for (int i = 0; i < graph::kYAxes; ++i) {
        const graph::YAxis& y = properties.yAxes[at(i)];
        QCPAxis* axis = m_values[at(i)];
        const bool visible = graph::isAxisVisible(properties, m_drawn, i);
        style(axis, *m_valueTickers[at(i)], y.YAxisLabel == QLatin1String("X") ? QString() : y.YAxisLabel,
              y.YAxisScaleControl);
        axis->setVisible(visible);
        // One axis owns the horizontal lines; two sets that do not meet would be unreadable.
        axis->grid()->setVisible(visible && !gridTaken);
        gridTaken = gridTaken || visible;
        rightVisible = rightVisible || (visible && graph::isRightAxis(i));
    }
    m_frameRight->setVisible(!rightVisible);
    for (QCPAxis* axis : m_area->axes()) {
        const QPen pen = thinPen(m_style.frame);
        axis->setBasePen(pen);
        axis->setTickPen(pen);
    }
}

void GraphPlot::applyTraces()
{
    const graph::Properties& properties = m_model.shownProperties();
    for (int subset = 0; subset < m_model.Subsets(); ++subset) {
        TracePlottable*& trace = m_traces[at(subset)];
        const bool wanted = std::find(m_drawn.begin(), m_drawn.end(), subset) != m_drawn.end();
        if (!wanted && trace != nullptr) {
            removePlottable(trace);
            trace = nullptr;
        }
        if (!wanted)
            continue;
        if (trace == nullptr) {
            trace = new TracePlottable(m_bottom, m_values[at(graph::yAxisOf(subset))], m_model, subset);
            trace->setLayer(m_settledLayer);
        }
        trace->setPen(tracePen(properties, m_style, subset));
        trace->setName(properties.SubsetLabels[at(subset)].left(kLegendLabelLength));
        const bool every =
            properties.MarkDataPoints || properties.SubsetLineTypes[at(subset)] == graph::LinePointsJoined;
        trace->setMarks(m_style.symbols ? TracePlottable::Marks::Symbols
                        : every         ? TracePlottable::Marks::Every
                                        : TracePlottable::Marks::None);
    }
    std::erase_if(m_live, [this](int subset) { return m_traces[at(subset)] == nullptr; });
}

bool GraphPlot::updateData(std::vector<int>& changed)
{
    const graph::Properties& properties = m_model.shownProperties();
    bool entriesChange = false;
    for (const int subset : m_drawn) {
        TracePlottable* trace = m_traces[at(subset)];
        if (!trace->update(graph::PointFilter(properties, subset)))
            continue;
        changed.push_back(subset);
        entriesChange = entriesChange || m_extents[at(subset)].empty != trace->extent().empty;
        m_extents[at(subset)] = trace->extent();
    }
    if (changed.empty())
        return false;
    return entriesChange || graph::shownRanges(properties, m_drawn, m_extents) != m_ranges;
}

void GraphPlot::applyRanges()
{
    m_ranges = graph::shownRanges(m_model.shownProperties(), m_drawn, m_extents);
    m_bottom->setRange(m_ranges.x.lower, m_ranges.x.upper);
    for (std::size_t i = 0; i < m_values.size(); ++i)
        m_values[i]->setRange(m_ranges.y[i].lower, m_ranges.y[i].upper);
}

void GraphPlot::makeLive(const std::vector<int>& subsets)
{
    for (const int subset : m_live)
        m_traces[at(subset)]->setLayer(m_settledLayer);
    m_live = subsets;
    for (const int subset : m_live)
        m_traces[at(subset)]->setLayer(m_liveLayer);
    m_liveLayer->setMode(m_live.empty() ? QCPLayer::lmLogical : QCPLayer::lmBuffered);
}

// Legend and layout --------------------------------------------------------------------------------------------------

// One entry a pen: a curve on the right stands for its pen only where the pen has none on the left. (Labels of right
// subsets may also carry texts that are not names.)
void GraphPlot::applyLegend()
{
    const graph::Properties& properties = m_model.shownProperties();
    const auto isEntry = [&](int subset) {
        return !m_extents[at(subset)].empty && !properties.SubsetLabels[at(subset)].isEmpty();
    };
    std::vector<int> entries;
    std::array<bool, 10> hasLeft{};
    for (const int subset : m_drawn) {
        if (isEntry(subset) && !graph::isRightAxis(graph::yAxisOf(subset))) {
            entries.push_back(subset);
            hasLeft[at(subset % 10)] = true;
        }
    }
    for (const int subset : m_drawn) {
        if (isEntry(subset) && graph::isRightAxis(graph::yAxisOf(subset)) && !hasLeft[at(subset % 10)]) {
            entries.push_back(subset);
            hasLeft[at(subset % 10)] = true;
        }
    }
    if (!properties.ShowLegend)
        entries.clear();
    std::sort(entries.begin(), entries.end());
    if (entries == m_legendEntries)
        return;
    m_legendEntries = entries;
    legend->setVisible(!entries.empty());
    legend->setFont(m_style.legend);
    legend->setTextColor(m_style.ink);
    legend->setBrush(m_style.paper);
    legend->setBorderPen(thinPen(m_style.grid.darker(115)));
    legend->setIconSize(static_cast<int>(m_style.textSize * 2), static_cast<int>(m_style.textSize));
    legend->setMargins(QMargins(7, 4, 7, 4));
    legend->setRowSpacing(1);
    legend->setColumnSpacing(14);
    m_legendWrap = -1;
    arrangeLegend();
    arrangeLayout();
}

void GraphPlot::arrangeLegend()
{
    const graph::Properties& properties = m_model.shownProperties();
    const bool inside = properties.LegendStyle == graph::LegendInsideAxis;
    const bool sideways =
        !inside && (properties.LegendLocation == graph::LegendTop || properties.LegendLocation == graph::LegendBottom);
    int wrap = 0;
    if (sideways) {
        double widest = 1;
        const QFontMetrics metrics(m_style.legend);
        for (const int subset : *m_legendEntries)
            widest = std::max(widest, m_style.textSize * 2 + 7.0 +
                                          metrics.horizontalAdvance(m_traces[at(subset)]->name()) + 14);
        wrap = std::max(1, static_cast<int>((viewport().width() - 40) / widest));
    }
    if (wrap == m_legendWrap)
        return;
    m_legendWrap = wrap;
    legend->clearItems();
    legend->setFillOrder(sideways ? QCPLayoutGrid::foColumnsFirst : QCPLayoutGrid::foRowsFirst);
    legend->setWrap(wrap);
    for (const int subset : *m_legendEntries)
        m_traces[at(subset)]->addToLegend(legend);
    m_legendHolder->setVertical(!sideways);
}

void GraphPlot::arrangeLayout()
{
    const graph::Properties& properties = m_model.shownProperties();
    const bool hasLegend = m_legendEntries && !m_legendEntries->empty();
    const bool inside = properties.LegendStyle == graph::LegendInsideAxis;

    if (legend->layout() != nullptr)
        legend->layout()->take(legend);
    if (m_legendHolder->layout() != nullptr)
        m_legendHolder->layout()->take(m_legendHolder);
    if (m_area->layout() != nullptr)
        m_area->layout()->take(m_area);
    m_centre->simplify();
    const int location = properties.LegendLocation;
    const bool beside = hasLegend && !inside;
    m_centre->addElement(beside && location == graph::LegendTop ? 1 : 0,
                         beside && location == graph::LegendLeft ? 1 : 0, m_area);
    if (beside) {
        m_centre->addElement(location == graph::LegendBottom ? 1 : 0, location == graph::LegendRight ? 1 : 0,
                             m_legendHolder);
    }
    if (hasLegend && inside)
        m_area->insetLayout()->addElement(legend, Qt::AlignTop | Qt::AlignRight);
    else
        m_legendHolder->addElement(legend, Qt::AlignCenter);
    // Inside the plotting area it must cover live traces too.
    legend->setLayer(inside ? QStringLiteral("overlay") : QStringLiteral("legend"));
    for (int i = 0; i < legend->itemCount(); ++i)
        legend->item(i)->setLayer(legend->layer());

    // A row without content would still cost its spacing.
    struct Part
    {
        QCPLayoutElement* element;
        bool shown;
    };
    const Part parts[] = {{m_mainTitle, !properties.MainTitle.isEmpty()},
                          {m_subTitle, !properties.SubTitle.isEmpty()},
                          {m_topTables, !m_topTables->isEmpty()},
                          {m_centre, true},
                          {m_bottomTables, !m_bottomTables->isEmpty()}};
    for (const Part& part : parts) {
        if (part.element->layout() != nullptr)
            plotLayout()->take(part.element);
    }
    plotLayout()->simplify();
    int row = 0;
    for (const Part& part : parts) {
        part.element->setVisible(part.shown);
        if (part.shown)
            plotLayout()->addElement(row++, 0, part.element);
    }
    plotLayout()->setMargins(QMargins(4, 6, 4, 4));
}

void GraphPlot::resizeEvent(QResizeEvent* event)
{
    setViewport(rect());
    if (m_legendEntries)
        arrangeLegend();
    QCustomPlot::resizeEvent(event);
}
