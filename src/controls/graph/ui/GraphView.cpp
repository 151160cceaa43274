// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphView.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ViewLimits.h"
#include "controls/graph/ui/GraphGestures.h"
#include "controls/graph/ui/GraphMenu.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/PointerBox.h"
#include "controls/graph/ui/ReadoutCursor.h"
#include "controls/graph/ui/TracePlottable.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLeastZoom = 6;  // pixels; a smaller rectangle is a click
constexpr double kNotch = 120; // of a wheel, as told by its events

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
    , m_gestures(std::make_unique<GraphGestures>(model, *m_plot, [this] { requestFrame(); }))
    , m_pointerBox(new PointerBox(this))
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
    m_gestures->follow();
    m_plot->refresh();
    m_cursor->place();
    showPointerReadings();
}

// New data and another view change what stands under a pointer that rests.
void GraphView::showPointerReadings()
{
    if (!m_pointer || !m_hasPointerReadout) {
        m_pointerBox->hide();
        return;
    }
    const QCPRange range = m_plot->bottomAxis().range();
    const bool logarithmic = m_plot->bottomAxis().scaleType() == QCPAxis::stLogarithmic;
    const double span = logarithmic ? std::log10(range.upper / range.lower) : range.size();
    const auto readings =
        graph::readingsAt(m_model, m_plot->drawn(), m_plot->bottomAxis().pixelToCoord(m_pointer->x()), span);
    if (!readings) {
        m_pointerBox->hide();
        return;
    }
    const auto colourOf = [this](int subset) {
        const TracePlottable* trace = m_plot->trace(subset);
        return trace != nullptr ? trace->pen().color() : palette().color(QPalette::WindowText);
    };
    m_pointerBox->showReadings(*readings, colourOf, *m_pointer);
}

void GraphView::setPointerReadout(bool on)
{
    m_hasPointerReadout = on;
    showPointerReadings();
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
    if (event->type() == QEvent::ShortcutOverride && (m_cursor->isOn() || m_gestures->isPanning()) &&
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
    const bool takes = event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton;
    if (!takes || !plotArea().contains(event->position().toPoint())) {
        event->ignore();
        return;
    }
    const QPointF position = event->position();
    if (!settleGestures())
        return;
    flush();
    if (event->button() == Qt::MiddleButton) {
        m_gestures->beginPan(position);
        setCursor(Qt::ClosedHandCursor);
        return;
    }
    m_pressed = event->position().toPoint();
    m_dragging = true;
}

void GraphView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    m_pointer.reset();
    if (event->buttons() == Qt::NoButton && plotArea().contains(position))
        m_pointer = position;
    showPointerReadings();
    if (m_gestures->isPanning()) {
        m_gestures->pan(event->position());
        return;
    }
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
    if (event->button() == Qt::MiddleButton) {
        endPan(true);
        return;
    }
    if (event->button() != Qt::LeftButton || !m_dragging)
        return;
    m_dragging = false;
    const QRect area = QRect(m_pressed, event->position().toPoint()).normalized() & plotArea();
    setZoomRect(QRect());
    if (area.width() >= kLeastZoom && area.height() >= kLeastZoom)
        m_gestures->zoomTo(QRectF(area.left(), area.top(), area.width() - 1, area.height() - 1));
    else if (area.width() < kLeastZoom && area.height() < kLeastZoom)
        m_cursor->pick(event->position());
}

void GraphView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const int axes = m_plot->axesAt(position);
    if (event->button() != Qt::LeftButton || (axes == 0 && !plotArea().contains(position))) {
        event->ignore();
        return;
    }
    m_dragging = false;
    setZoomRect(QRect());
    if (!settleGestures())
        return;
    if (axes == 0)
        m_model.userZoomOut();
    else if (const std::optional<graph::ZoomLimits> limits = graph::fittedLimits(m_model, axes))
        m_model.userZoom(*limits);
}

void GraphView::wheelEvent(QWheelEvent* event)
{
    const QPoint position = event->position().toPoint();
    const int axesHere = m_plot->axesAt(position);
    const QPoint delta = event->angleDelta();
    const double turns = (delta.y() != 0 ? delta.y() : delta.x()) / kNotch;
    if (turns == 0 || (axesHere == 0 && !plotArea().contains(position))) {
        event->ignore();
        return;
    }
    int axes = axesHere != 0 ? axesHere : graph::AxisAll;
    if (event->modifiers().testFlag(Qt::ShiftModifier))
        axes = graph::AxisX;
    else if (event->modifiers().testFlag(Qt::ControlModifier))
        axes = graph::AxisLeft | graph::AxisRight;
    flush();
    m_gestures->wheel(event->position(), turns, axes);
    event->accept();
}

void GraphView::endPan(bool take)
{
    if (!m_gestures->isPanning())
        return;
    setCursor(Qt::CrossCursor);
    if (take)
        m_gestures->endPan();
    else
        m_gestures->cancel();
}

// What the wheel has turned so far becomes a zoom before anything else is done to the view. False when a listener of
// that zoom has closed the view.
bool GraphView::settleGestures()
{
    const QPointer<GraphView> self(this);
    m_gestures->finish();
    return !self.isNull();
}

void GraphView::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    m_pointer.reset();
    showPointerReadings();
    if (!hasFocus())
        m_cursor->clear();
    if (!m_gestures->isPanning())
        m_gestures->finish();
}

void GraphView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_pointer.reset();
    showPointerReadings();
    endPan(false);
    m_gestures->cancel();
}

void GraphView::setZoomRect(const QRect& rect)
{
    if (m_zoomRect == rect)
        return;
    m_zoomRect = rect;
    m_plot->overlay().setZoomRect(rect);
    m_plot->redrawOverlay();
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
    if (event->key() != Qt::Key_Escape && !settleGestures())
        return;
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
        m_gestures->zoomByKey(m_plot->overlay().cursor());
        break;
    case Qt::Key_Minus:
        m_gestures->zoomBackByKey();
        break;
    case Qt::Key_Escape:
        if (m_gestures->isPanning()) {
            endPan(false);
        } else if (m_dragging) {
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
