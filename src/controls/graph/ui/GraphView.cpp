// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphView.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphMenu.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/ReadoutCursor.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLeastZoom = 6; // pixels; a smaller rectangle is a click
constexpr double kKeyZoom = 2;
constexpr double kLeastSpan = 1e-6; // of the full range: single precision has no finer detail

int frameTime(const QWidget& widget)
{
    const QScreen* screen = widget.screen();
    const double rate = screen != nullptr ? screen->refreshRate() : 60;
    return std::clamp(static_cast<int>(1000 / std::max(1.0, rate)), 4, 40);
}

} // namespace

GraphView::GraphView(GraphModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_plot(new GraphPlot(model, GraphPlot::Look::Screen, this))
    , m_cursor(std::make_unique<ReadoutCursor>(model, *m_plot, [this] { cursorChanged(); }))
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    setAccessibleName(tr("Graph"));
    m_plot->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_plot->setFocusPolicy(Qt::NoFocus);
    m_plot->setGeometry(rect());
    m_frameTimer.setSingleShot(true);
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_frameTimer, &QTimer::timeout, this, &GraphView::drawFrame);
    connect(&m_model, &GraphModel::reinitialised, this, &GraphView::requestFrame);
    connect(&m_model, &GraphModel::redrawWanted, this, &GraphView::requestFrame);
    describe();
}

GraphView::~GraphView() = default;

// Drawing ------------------------------------------------------------------------------------------------------------

void GraphView::requestFrame()
{
    if (m_frameTimer.isActive() || !isVisible())
        return;
    const qint64 since = m_sinceFrame.isValid() ? m_sinceFrame.elapsed() : frameTime(*this);
    m_frameTimer.start(std::max(0, static_cast<int>(frameTime(*this) - since)));
}

void GraphView::drawFrame()
{
    m_frameTimer.stop();
    m_sinceFrame.start();
    m_plot->refresh();
    m_cursor->place();
}

void GraphView::flush()
{
    drawFrame();
}

QRect GraphView::plotArea() const
{
    return m_plot->plotArea();
}

int GraphView::cursorSubset() const
{
    return m_cursor->subset();
}

int GraphView::cursorPoint() const
{
    return m_cursor->point();
}

QPointF GraphView::toPixel(double x, double y, int axis)
{
    flush();
    const int value = std::clamp(axis, 0, graph::kYAxes - 1);
    return {m_plot->bottomAxis().coordToPixel(x), m_plot->valueAxis(value).coordToPixel(y)};
}

QPointF GraphView::toGraph(const QPointF& position, int axis)
{
    flush();
    const int value = std::clamp(axis, 0, graph::kYAxes - 1);
    return {m_plot->bottomAxis().pixelToCoord(position.x()), m_plot->valueAxis(value).pixelToCoord(position.y())};
}

Outcome GraphView::savePicture(const QString& fileName, graph::PictureFormat format, int width, int height) const
{
    return graph::savePicture(m_model, fileName, format, width, height);
}

bool GraphView::event(QEvent* event)
{
    // A key that walks the cursor must reach the view even where a window has the same key as a shortcut.
    if (event->type() == QEvent::ShortcutOverride && m_cursor->isOn() &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::ScreenChangeInternal) {
        m_plot->invalidate();
        requestFrame();
    }
    return QWidget::event(event);
}

void GraphView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_plot->setGeometry(rect());
    requestFrame();
}

void GraphView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    drawFrame();
}

void GraphView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange || event->type() == QEvent::LanguageChange) {
        m_plot->invalidate();
        requestFrame();
    }
}

// Mouse --------------------------------------------------------------------------------------------------------------

void GraphView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !plotArea().contains(event->position().toPoint())) {
        event->ignore();
        return;
    }
    flush();
    m_pressed = event->position().toPoint();
    m_dragging = true;
}

void GraphView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    if (m_dragging && (event->buttons() & Qt::LeftButton) != 0) {
        // The rectangle stands for what a release would do: one that is too small for a zoom is not shown.
        const QRect area = QRect(m_pressed, position).normalized() & plotArea();
        setZoomRect(area.width() >= kLeastZoom && area.height() >= kLeastZoom ? area : QRect());
        return;
    }
    if (event->buttons() == Qt::NoButton && plotArea().contains(position))
        m_cursor->pick(event->position());
}

void GraphView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_dragging)
        return;
    m_dragging = false;
    const QRect area = QRect(m_pressed, event->position().toPoint()).normalized() & plotArea();
    setZoomRect(QRect());
    if (area.width() >= kLeastZoom && area.height() >= kLeastZoom)
        zoomTo(QRectF(area.left(), area.top(), area.width() - 1, area.height() - 1));
    else if (area.width() < kLeastZoom && area.height() < kLeastZoom)
        m_cursor->pick(event->position());
}

void GraphView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !plotArea().contains(event->position().toPoint())) {
        event->ignore();
        return;
    }
    m_dragging = false;
    setZoomRect(QRect());
    m_model.userZoomOut();
}

void GraphView::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    if (!hasFocus())
        m_cursor->clear();
}

void GraphView::setZoomRect(const QRect& rect)
{
    if (m_zoomRect == rect)
        return;
    m_zoomRect = rect;
    m_plot->overlay().setZoomRect(rect);
    m_plot->redrawOverlay();
}

// Zoom ---------------------------------------------------------------------------------------------------------------

void GraphView::zoomTo(const QRectF& pixels)
{
    const auto limit = [](const QCPAxis& axis, double pixel) {
        const double value = axis.pixelToCoord(pixel);
        return axis.scaleType() == QCPAxis::stLogarithmic ? std::log10(value) : value;
    };
    const QCPAxis& left = m_plot->valueAxis(m_plot->leadingAxis(false));
    const QCPAxis& right = m_plot->valueAxis(m_plot->leadingAxis(true));
    graph::ZoomLimits limits;
    limits.ZoomMinX = limit(m_plot->bottomAxis(), pixels.left());
    limits.ZoomMaxX = limit(m_plot->bottomAxis(), pixels.right());
    limits.ZoomMinY = limit(left, pixels.bottom());
    limits.ZoomMaxY = limit(left, pixels.top());
    // An axis that is not shown gets no limits: what they would cut away when it is shown nobody has seen.
    if (right.visible()) {
        limits.ZoomMinRY = limit(right, pixels.bottom());
        limits.ZoomMaxRY = limit(right, pixels.top());
    }
    limits.ZoomMinTX = limits.ZoomMinX;
    limits.ZoomMaxTX = limits.ZoomMaxX;
    const auto isFine = [](double from, double to) {
        return !(to - from > kLeastSpan * std::max({std::abs(from), std::abs(to), 1e-30}));
    };
    if (isFine(limits.ZoomMinX, limits.ZoomMaxX) || isFine(limits.ZoomMinY, limits.ZoomMaxY))
        return;
    m_model.userZoom(limits);
}

void GraphView::zoomAboutCursor(double factor)
{
    flush();
    const QRectF area(plotArea());
    if (area.width() < 2 || area.height() < 2)
        return;
    const QPointF centre = m_plot->overlay().cursor().value_or(area.center());
    const QSizeF size = area.size() / factor;
    // The point under the cursor stays where it is.
    const QPointF share((centre.x() - area.left()) / area.width(), (centre.y() - area.top()) / area.height());
    zoomTo(QRectF(QPointF(centre.x() - share.x() * size.width(), centre.y() - share.y() * size.height()), size));
}

void GraphView::zoomByKey()
{
    const graph::Properties& shown = m_model.shownProperties();
    KeyZoom step{shown.zoomed, shown.zoom, {}};
    const QPointer<GraphView> self(this);
    zoomAboutCursor(kKeyZoom);
    if (!self || !m_model.shownProperties().zoomed)
        return;
    step.after = m_model.shownProperties().zoom;
    m_keyZooms.push_back(step);
}

void GraphView::zoomBackByKey()
{
    const graph::Properties& shown = m_model.shownProperties();
    if (!shown.zoomed)
        return;
    // Another zoom has come between: then there is nothing to go back to but the full extent.
    if (m_keyZooms.empty() || !(m_keyZooms.back().after == shown.zoom))
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

// Keys and menu ------------------------------------------------------------------------------------------------------

void GraphView::keyPressEvent(QKeyEvent* event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (event->key() == Qt::Key_Menu || (event->key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier)) {
        openMenu(mapToGlobal(plotArea().center()));
        return;
    }
    if ((modifiers & ~Qt::ShiftModifier) != 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    flush();
    bool taken = true;
    switch (event->key()) {
    case Qt::Key_Left:
        taken = m_cursor->step(-1);
        break;
    case Qt::Key_Right:
        taken = m_cursor->step(1);
        break;
    case Qt::Key_PageUp:
        taken = m_cursor->step(-10);
        break;
    case Qt::Key_PageDown:
        taken = m_cursor->step(10);
        break;
    case Qt::Key_Home:
        taken = m_cursor->moveToEnd(false);
        break;
    case Qt::Key_End:
        taken = m_cursor->moveToEnd(true);
        break;
    case Qt::Key_Up:
        taken = m_cursor->changeCurve(-1);
        break;
    case Qt::Key_Down:
        taken = m_cursor->changeCurve(1);
        break;
    case Qt::Key_Plus:
        zoomByKey();
        break;
    case Qt::Key_Minus:
        zoomBackByKey();
        break;
    case Qt::Key_Escape:
        if (m_dragging) {
            m_dragging = false;
            setZoomRect(QRect());
        } else if (m_cursor->isOn()) {
            m_cursor->clear();
        } else {
            taken = false;
        }
        break;
    default:
        taken = false;
    }
    if (!taken)
        QWidget::keyPressEvent(event);
}

void GraphView::contextMenuEvent(QContextMenuEvent* event)
{
    openMenu(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(plotArea().center()) : event->globalPos());
}

// The menu runs without an event loop of its own, and an entry is told of from the loop, when the menu has gone:
// whatever a handler does, nothing here waits on the stack.
void GraphView::openMenu(const QPoint& globalPosition)
{
    if (m_menu != nullptr)
        return;
    m_menu = makeGraphMenu(m_model, this);
    if (m_menu != nullptr)
        m_menu->popup(globalPosition);
}

void GraphView::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    describe();
}

void GraphView::cursorChanged()
{
    describe();
    if (m_cursor->isOn())
        Q_EMIT m_model.CursorMoved(m_cursor->subset(), m_cursor->point());
}

// For those who cannot see the curves.
void GraphView::describe()
{
    const graph::Properties& properties = m_model.shownProperties();
    QString text = properties.MainTitle;
    if (m_cursor->isOn()) {
        const int subset = m_cursor->subset();
        const int point = m_cursor->point();
        const QString unit = graph::unitOf(properties.XAxisLabel);
        const int axis = graph::yAxisOf(subset);
        const QString yUnit = graph::unitOf(properties.yAxes[static_cast<std::size_t>(axis)].YAxisLabel);
        text = tr("%1, point %2: X %3 %4, Y %5 %6")
                   .arg(m_model.SubsetLabels(subset))
                   .arg(point + 1)
                   .arg(static_cast<double>(m_model.XData(subset, point)))
                   .arg(unit)
                   .arg(static_cast<double>(m_model.YData(subset, point)))
                   .arg(yUnit);
    }
    if (text == accessibleDescription())
        return;
    setAccessibleDescription(text);
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}
