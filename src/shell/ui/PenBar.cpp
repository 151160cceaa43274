// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/PenBar.h"

#include "values/Colours.h"
#include "widgets/ui/QtColour.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

PenLabel::PenLabel(int pen, QWidget* parent)
    : QAbstractButton(parent)
    , m_pen(pen)
{
    setObjectName(QStringLiteral("lblPen_%1").arg(pen));
    setToolTip(tr("Select pen %1").arg(pen + 1));
    setStatusTip(tr("Select pen %1; double click to change its colour").arg(pen + 1));
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    describe();
}

void PenLabel::setColour(std::uint32_t colour)
{
    if (colour == m_colour)
        return;
    m_colour = colour;
    update();
}

void PenLabel::setState(bool current, bool locked, bool hidden)
{
    if (current == m_current && locked == m_locked && hidden == m_hidden)
        return;
    m_current = current;
    m_locked = locked;
    m_hidden = hidden;
    describe();
    update();
}

QString PenLabel::caption() const
{
    return m_locked ? QStringLiteral("X") : QString::number(m_pen + 1);
}

std::uint32_t PenLabel::captionColour() const
{
    return colours::labelTextColour(m_colour);
}

void PenLabel::describe()
{
    QString name = tr("Pen %1").arg(m_pen + 1);
    if (m_current)
        name += tr(", current");
    if (m_locked)
        name += tr(", locked");
    if (m_hidden)
        name += tr(", hidden");
    setAccessibleName(name);
    setText(caption());
}

QSize PenLabel::sizeHint() const
{
    const int side = fontMetrics().height() + 10;
    return {side + 2, side};
}

void PenLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(0.45);

    const QRectF field = QRectF(rect()).adjusted(4, 4, -4, -4);
    const QColor fill = toQColor(m_colour);
    const QColor text = palette().color(QPalette::Active, QPalette::WindowText);
    QColor rim = text;
    rim.setAlphaF(0.45F);
    if (m_hidden) {
        // The rim of a black pen would vanish on a dark bar: a thin outline in the text colour stays around it.
        painter.setPen(QPen(rim, 1));
        painter.drawRoundedRect(field, 3, 3);
        painter.setPen(QPen(fill, 2, Qt::DashLine));
        painter.drawRoundedRect(field.adjusted(1.5, 1.5, -1.5, -1.5), 2, 2);
        painter.setPen(text);
    } else {
        painter.setPen(QPen(rim, 1));
        painter.setBrush(fill);
        painter.drawRoundedRect(field, 3, 3);
        painter.setPen(toQColor(captionColour()));
    }
    painter.setBrush(Qt::NoBrush);
    QFont face = font();
    face.setBold(m_current || m_locked);
    painter.setFont(face);
    painter.drawText(field, Qt::AlignCenter, caption());

    if (m_current) {
        painter.setPen(QPen(text, 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 4, 4);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    }
}

void PenLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton)
        Q_EMIT colourWanted();
}

void PenLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        Q_EMIT colourWanted();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

PenBar::PenBar(QWidget* parent)
    : QToolBar(tr("Pen bar"), parent)
{
    setObjectName(QStringLiteral("tbPenBar"));
    for (int i = 0; i < kPens; ++i) {
        auto* label = new PenLabel(i, this);
        addWidget(label);
        connect(label, &PenLabel::clicked, this, [this, i] { Q_EMIT penSelected(i); });
        connect(label, &PenLabel::colourWanted, this, [this, i] { Q_EMIT penColourWanted(i); });
        m_labels[static_cast<std::size_t>(i)] = label;
    }
}

void PenBar::setColour(int pen, std::uint32_t colour)
{
    if (pen >= 0 && pen < kPens)
        lblPen(pen).setColour(colour);
}

void PenBar::setPenState(int pen, bool locked, bool hidden)
{
    if (pen >= 0 && pen < kPens)
        lblPen(pen).setState(pen == m_current, locked, hidden);
}

void PenBar::setCurrentPen(int pen)
{
    m_current = pen;
    for (int i = 0; i < kPens; ++i)
        lblPen(i).setState(i == pen, lblPen(i).isLocked(), lblPen(i).isPenHidden());
}
