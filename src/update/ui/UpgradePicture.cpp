// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/ui/UpgradePicture.h"

#include <QPainter>

UpgradePicture::UpgradePicture(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("imgUpgrade"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void UpgradePicture::paintEvent(QPaintEvent*)
{
    constexpr qreal kSide = 100; // the drawing's own units
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ground = palette().color(QPalette::Highlight), ink = palette().color(QPalette::HighlightedText);
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, ground);
    gradient.setColorAt(1, ground.darker(160));
    painter.fillRect(rect(), gradient);

    const qreal scale = width() / (1.4 * kSide);
    painter.translate(width() / 2.0, height() / 2.0);
    painter.scale(scale, scale);
    painter.setPen(QPen(ink, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawRoundedRect(QRectF(-30, -10, 60, 60), 6, 6);
    for (int pin = -20; pin <= 20; pin += 20) {
        painter.drawLine(QPointF(pin, 50), QPointF(pin, 60));
        painter.drawLine(QPointF(-40, pin + 20), QPointF(-30, pin + 20));
        painter.drawLine(QPointF(30, pin + 20), QPointF(40, pin + 20));
    }
    painter.setPen(QPen(ink, 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({QPointF(0, -60), QPointF(0, 30)}));
    painter.drawPolyline(QPolygonF({QPointF(-15, 14), QPointF(0, 30), QPointF(15, 14)}));
}
