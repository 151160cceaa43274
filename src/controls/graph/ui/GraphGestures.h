// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/ViewLimits.h"

#include <QPointF>
#include <QRectF>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

class GraphModel;
class GraphPlot;

/// Wheel and pan: while a movement lasts the plot shows it, and the model hears of it once, as one zoom, when it has
/// come to rest. So a turn of the wheel is one step of a zoom history, not twenty.
class GraphGestures : public QObject
{
public:
    /// wantsFrame is called when the plot shows something new. Model and plot must outlive the gestures.
    GraphGestures(GraphModel& model, GraphPlot& plot, std::function<void()> wantsFrame);

    /// Zooms to a rectangle of the plotting area; one too fine for single precision does nothing.
    void zoomTo(const QRectF& pixels);
    /// One step of the plus key about a position, or about the middle of the plotting area; and of the minus key, which
    /// takes back what plus did, or returns to the full extent.
    void zoomByKey(const std::optional<QPointF>& about);
    void zoomBackByKey();

    /// position: within the plotting area. turns: of the wheel, in its usual notches, away from the user. axes: of
    /// graph::AxisChoice.
    void wheel(const QPointF& position, double turns, int axes);

    void beginPan(const QPointF& position);
    void pan(const QPointF& position);
    bool isPanning() const { return m_panFrom.has_value(); }
    void endPan();

    /// A movement that has not come to rest yet does so now.
    void finish();
    /// It is taken back.
    void cancel();
    /// Gives way to a zoom that came from elsewhere meanwhile.
    void follow();

private:
    void show(const graph::ViewLimits& view);
    graph::ViewLimits shown() const;
    graph::ViewLimits full() const;

    GraphModel& m_model;
    GraphPlot& m_plot;
    std::function<void()> m_wantsFrame;
    QTimer m_rest;
    std::optional<graph::ViewLimits> m_view; ///< of the movement under way
    std::optional<QPointF> m_panFrom;
    graph::ViewLimits m_panView;
    bool m_zoomedBefore = false;
    graph::ZoomLimits m_before;

    struct KeyZoom
    {
        bool zoomedBefore;
        graph::ZoomLimits before, after;
    };
    std::vector<KeyZoom> m_keyZooms; ///< steps of the plus key that minus takes back
};
