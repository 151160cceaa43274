// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphPlot.h"

#include "controls/graph/ViewLimits.h"
#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/PlotLegend.h"
#include "controls/graph/ui/TracePlottable.h"

#include <algorithm>

namespace {

constexpr int kLegendLabelLength = 32;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
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
    m_legend = std::make_unique<PlotLegend>(*legend);
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
    m_centre->addElement(0, 1, m_legend->holder());
    m_legend->holder()->addElement(legend, Qt::AlignCenter);
    legend->setLayer(QStringLiteral("legend"));
}

// Parts that stand outside the layout at the moment (a title without text, a hidden legend) have no other owner.
GraphPlot::~GraphPlot()
{
    for (QCPLayoutElement* part : std::initializer_list<QCPLayoutElement*>{m_mainTitle, m_subTitle, m_topTables,
                                                                           m_bottomTables, m_legend->holder()}) {
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
    return graph::leadingAxis(m_model.shownProperties(), m_drawn, right);
}

int GraphPlot::axesAt(const QPoint& position) const
{
    const QRect inner = m_area->rect();
    if (!m_area->outerRect().contains(position) || inner.contains(position))
        return 0;
    const bool beside = position.y() >= inner.top() && position.y() <= inner.bottom();
    if (beside && position.x() < inner.left())
        return graph::AxisLeft;
    if (beside && position.x() > inner.right())
        return m_values[at(leadingAxis(true))]->visible() ? graph::AxisRight : 0;
    const bool below = position.x() >= inner.left() && position.x() <= inner.right() && position.y() > inner.bottom();
    return below ? graph::AxisX : 0;
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
    m_legend->forget();
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
    if (changed.empty() && !m_previewChanged)
        return false;
    return entriesChange || wantedRanges() != m_ranges;
}

graph::ShownRanges GraphPlot::fullRanges() const
{
    return graph::shownRanges(m_model.shownProperties(), m_drawn, m_extents, nullptr);
}

graph::ShownRanges GraphPlot::wantedRanges() const
{
    const graph::Properties& properties = m_model.shownProperties();
    return m_preview ? graph::shownRanges(properties, m_drawn, m_extents, &*m_preview)
                     : graph::shownRanges(properties, m_drawn, m_extents);
}

void GraphPlot::setPreview(const std::optional<graph::ZoomLimits>& limits)
{
    m_preview = limits;
    m_previewChanged = true;
}

void GraphPlot::applyRanges()
{
    m_previewChanged = false;
    m_ranges = wantedRanges();
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

// Layout --------------------------------------------------------------------------------------------------------------

void GraphPlot::applyLegend()
{
    const graph::Properties& properties = m_model.shownProperties();
    if (!m_legend->setEntries(PlotLegend::entriesOf(properties, m_drawn, m_extents)))
        return;
    m_legend->setStyle(m_style);
    m_legend->arrange(properties, m_style, m_traces, viewport().width());
    arrangeLayout();
}

void GraphPlot::arrangeLayout()
{
    const graph::Properties& properties = m_model.shownProperties();
    const bool hasLegend = !m_legend->isEmpty();
    LegendHolder* holder = m_legend->holder();
    const bool inside = properties.LegendStyle == graph::LegendInsideAxis;

    if (legend->layout() != nullptr)
        legend->layout()->take(legend);
    if (holder->layout() != nullptr)
        holder->layout()->take(holder);
    if (m_area->layout() != nullptr)
        m_area->layout()->take(m_area);
    m_centre->simplify();
    const int location = properties.LegendLocation;
    const bool beside = hasLegend && !inside;
    m_centre->addElement(beside && location == graph::LegendTop ? 1 : 0,
                         beside && location == graph::LegendLeft ? 1 : 0, m_area);
    if (beside) {
        m_centre->addElement(location == graph::LegendBottom ? 1 : 0, location == graph::LegendRight ? 1 : 0, holder);
    }
    if (hasLegend && inside)
        m_area->insetLayout()->addElement(legend, Qt::AlignTop | Qt::AlignRight);
    else
        holder->addElement(legend, Qt::AlignCenter);
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
    m_legend->arrange(m_model.shownProperties(), m_style, m_traces, viewport().width());
    QCustomPlot::resizeEvent(event);
}
