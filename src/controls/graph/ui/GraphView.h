// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphProperties.h"
#include "controls/graph/ui/GraphPicture.h"

#include <QElapsedTimer>
#include <QPointF>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

class GraphModel;
class GraphGestures;
class GraphPlot;
class PointerBox;
class QMenu;
class ReadoutCursor;

/// The graph control as the user sees it: draws a model, at most once per frame of the display, and turns input into
/// the model's events.
///
/// Mouse: dragging with the left button zooms into a rectangle (Escape gives it up, a small one is a click), a double
/// click returns to full extent, moving near a data point or clicking it moves the read-out cursor, the right button
/// opens the popup. Keys: left and right walk along a curve, with page up and down by ten points, Home and End to its
/// ends, up and down change the curve, plus zooms about the cursor and minus takes it back step by step, Escape puts
/// the cursor away, Menu or Shift+F10 opens the popup. Other keys go on to the parent.
///
/// The model must outlive the view.
class GraphView : public QWidget
{
    Q_OBJECT

public:
    explicit GraphView(GraphModel& model, QWidget* parent = nullptr);
    ~GraphView() override;

    GraphModel& model() const { return m_model; }
    /// The plotting area inside the axes, in coordinates of the view.
    QRect plotArea() const;
    /// Between positions in the view and values on the axes, of a Y axis from 0 to 3. Brings the drawing up to date
    /// first.
    QPointF toPixel(double x, double y, int axis = 0);
    QPointF toGraph(const QPointF& position, int axis = 0);
    /// The point under the read-out cursor; -1 when there is no cursor.
    int cursorSubset() const;
    int cursorPoint() const;
    /// Whether a box beside the pointer shows what the curves say there; it does unless told otherwise.
    void setPointerReadout(bool on);
    /// Takes up and draws at once what waits for the next frame.
    void flush();
    /// See graph::savePicture.
    Outcome savePicture(const QString& fileName, graph::PictureFormat format, int width, int height) const;

    QSize sizeHint() const override { return {640, 480}; }
    QSize minimumSizeHint() const override { return {160, 120}; }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void requestFrame();
    void drawFrame();
    void setZoomRect(const QRect& rect);
    void cursorChanged();
    void openMenu(const QPoint& globalPosition);
    void endPan(bool take);
    bool settleGestures();
    void showPointerReadings();
    void describe();

    GraphModel& m_model;
    GraphPlot* m_plot;
    std::unique_ptr<ReadoutCursor> m_cursor;
    std::unique_ptr<GraphGestures> m_gestures;
    QTimer m_frameTimer;
    QElapsedTimer m_sinceFrame;
    PointerBox* m_pointerBox;
    bool m_hasPointerReadout = true;
    std::optional<QPoint> m_pointer; ///< over the plotting area, without a button
    QPoint m_pressed;
    bool m_dragging = false;
    QRect m_zoomRect;
    QPointer<QMenu> m_menu;
};
