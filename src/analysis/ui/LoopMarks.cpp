// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ui/LoopMarks.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphView.h"
#include "widgets/ui/QtColour.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

LoopMarks::LoopMarks(GraphView& view)
    : QWidget(&view)
    , m_view(view)
{
    setObjectName(QStringLiteral("loopMarks"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(view.rect());
    view.installEventFilter(this);
    const auto repaint = [this] { update(); };
    connect(&view.model(), &GraphModel::reinitialised, this, repaint);
    connect(&view.model(), &GraphModel::redrawWanted, this, repaint);
    raise();
}

void LoopMarks::setMarks(std::vector<Mark> marks)
{
    m_marks = std::move(marks);
    update();
}

void LoopMarks::setCircles(std::vector<Circle> circles)
{
    m_circles = std::move(circles);
    update();
}

bool LoopMarks::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_view && event->type() == QEvent::Resize)
        setGeometry(m_view.rect());
    return QWidget::eventFilter(watched, event);
}

void LoopMarks::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    if (m_marks.empty() && m_circles.empty())
        return;
    constexpr double kMainRadius = 5.0;
    constexpr double kRadius = 3.5;
    constexpr int kGap = 4;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(m_view.plotArea());
    for (const Circle& circle : m_circles) {
        QPainterPath path;
        for (std::size_t i = 0; i < circle.line.size(); ++i) {
            const QPointF pixel = m_view.toPixel(circle.line[i].x(), circle.line[i].y());
            i == 0 ? path.moveTo(pixel) : path.lineTo(pixel);
        }
        painter.setPen(QPen(circle.colour, 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(path);
    }
    const graph::Properties& properties = m_view.model().shownProperties();
    const QColor paper =
        properties.ViewingStyle == graph::StyleColour ? QColor(Qt::white) : toQColor(properties.MonoGraphBackColor);
    for (const Mark& mark : m_marks) {
        const QPointF pixel = m_view.toPixel(mark.place.x(), mark.place.y());
        const double radius = mark.main ? kMainRadius : kRadius;
        painter.setPen(QPen(mark.colour, 1.5));
        painter.setBrush(mark.main ? mark.colour : paper);
        painter.drawEllipse(pixel, radius, radius);
        painter.drawText(pixel + QPointF(radius + kGap, -kGap), mark.name);
    }
}
