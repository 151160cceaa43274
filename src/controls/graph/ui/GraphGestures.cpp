// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphGestures.h"

#include "controls/graph/ui/GraphPlot.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kRest = 400; // milliseconds without a turn after which the wheel has come to rest
constexpr double kKeyZoom = 2;
constexpr double kPerTurn = 1.25;  // magnification of one notch
constexpr double kMostTurns = 100; // of one event: a wheel without notches may tell anything

QPointF shareOf(const QRectF& area, const QPointF& position)
{
    return {(position.x() - area.left()) / area.width(), (area.bottom() - position.y()) / area.height()};
}

} // namespace

GraphGestures::GraphGestures(GraphModel& model, GraphPlot& plot, std::function<void()> wantsFrame)
    : m_model(model)
    , m_plot(plot)
    , m_wantsFrame(std::move(wantsFrame))
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(kRest);
    connect(&m_rest, &QTimer::timeout, this, &GraphGestures::finish);
}

graph::ViewLimits GraphGestures::shown() const
{
    return m_view ? *m_view : graph::limitsOf(m_model.shownProperties(), m_plot.drawn(), m_plot.ranges());
}

graph::ViewLimits GraphGestures::full() const
{
    return graph::limitsOf(m_model.shownProperties(), m_plot.drawn(), m_plot.fullRanges());
}

void GraphGestures::show(const graph::ViewLimits& view)
{
    if (!m_view) {
        m_zoomedBefore = m_model.shownProperties().zoomed;
        m_before = m_model.shownProperties().zoom;
    }
    m_view = view;
    m_plot.setPreview(view.asZoom());
    m_wantsFrame();
}

void GraphGestures::zoomTo(const QRectF& pixels)
{
    const QRectF area(m_plot.plotArea());
    const QPointF least = shareOf(area, pixels.bottomLeft());
    const QPointF most = shareOf(area, pixels.topRight());
    const graph::ViewLimits view = graph::partOf(shown(), least, most);
    if (!graph::isTooFine(view.x) && !graph::isTooFine(view.left))
        m_model.userZoom(view.asZoom());
}

void GraphGestures::zoomByKey(const std::optional<QPointF>& about)
{
    const QRectF area(m_plot.plotArea());
    if (area.width() < 2 || area.height() < 2)
        return;
    const graph::Properties& properties = m_model.shownProperties();
    KeyZoom step{properties.zoomed, properties.zoom, {}};
    const graph::ViewLimits view =
        graph::magnified(shown(), shareOf(area, about.value_or(area.center())), kKeyZoom, graph::AxisAll, full());
    if (view == shown())
        return;
    const QPointer<GraphGestures> self(this);
    m_model.userZoom(view.asZoom());
    if (!self || !m_model.shownProperties().zoomed)
        return;
    step.after = m_model.shownProperties().zoom;
    m_keyZooms.push_back(step);
}

void GraphGestures::zoomBackByKey()
{
    const graph::Properties& properties = m_model.shownProperties();
    if (!properties.zoomed)
        return;
    // Another zoom has come between: then there is nothing to go back to but the full extent.
    if (m_keyZooms.empty() || !(m_keyZooms.back().after == properties.zoom))
        m_keyZooms.clear();
    if (m_keyZooms.empty() || !m_keyZooms.back().zoomedBefore) {
        m_keyZooms.clear();
        m_model.userZoomOut();
        return;
    }
    const graph::ZoomLimits before = m_keyZooms.back().before;
    m_keyZooms.pop_back();
    m_model.userZoom(before);
}

void GraphGestures::wheel(const QPointF& position, double turns, int axes)
{
    const QRectF area(m_plot.plotArea());
    if (isPanning() || !std::isfinite(turns) || area.width() < 2 || area.height() < 2)
        return;
    const double factor = std::pow(kPerTurn, std::clamp(turns, -kMostTurns, kMostTurns));
    const graph::ViewLimits before = shown();
    const graph::ViewLimits view = graph::magnified(before, shareOf(area, position), factor, axes, full());
    if (view != before)
        show(view);
    if (m_view)
        m_rest.start();
}

void GraphGestures::beginPan(const QPointF& position)
{
    finish();
    m_panFrom = position;
    m_panView = shown();
}

void GraphGestures::pan(const QPointF& position)
{
    const QRectF area(m_plot.plotArea());
    if (!m_panFrom || area.width() < 2 || area.height() < 2)
        return;
    const QPointF shares = shareOf(area, *m_panFrom) - shareOf(area, position);
    const graph::ViewLimits view = graph::moved(m_panView, shares, full());
    if (view != shown())
        show(view);
}

void GraphGestures::endPan()
{
    m_panFrom.reset();
    finish();
}

void GraphGestures::finish()
{
    m_rest.stop();
    if (!m_view)
        return;
    const graph::ViewLimits view = *std::exchange(m_view, std::nullopt);
    m_plot.setPreview(std::nullopt);
    m_wantsFrame();
    // The model tells others, who may do anything: nothing of this object is used behind it.
    if (view == full())
        m_model.userZoomOut();
    else
        m_model.userZoom(view.asZoom());
}

void GraphGestures::cancel()
{
    m_rest.stop();
    m_panFrom.reset();
    if (!std::exchange(m_view, std::nullopt))
        return;
    m_plot.setPreview(std::nullopt);
    m_wantsFrame();
}

void GraphGestures::follow()
{
    if (!m_view)
        return;
    const graph::Properties& properties = m_model.shownProperties();
    if (properties.zoomed != m_zoomedBefore || (properties.zoomed && !(properties.zoom == m_before)))
        cancel();
}
