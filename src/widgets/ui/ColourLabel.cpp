// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/ColourLabel.h"

#include "widgets/ui/QtColour.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

ColourLabel::ColourLabel(QWidget* parent)
    : QLabel(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(fontMetrics().height() * 4, fontMetrics().height() * 7 / 4);
}

void ColourLabel::setColour(std::uint32_t lColour)
{
    m_colour = lColour;
    setAccessibleDescription(toQColor(lColour).name());
    update();
}

void ColourLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT changeAsked();
}

void ColourLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        Q_EMIT changeAsked();
    else
        QLabel::keyPressEvent(event);
}

void ColourLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    painter.setBrush(toQColor(m_colour));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    if (!hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}
