// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/HookUpSketch.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// The picture is drawn in units of its own and scaled to the widget.
constexpr double kWidth = 612;
constexpr double kHeight = 228;
constexpr QRectF kInstrument(30, 44, 200, 140);
constexpr QRectF kPart(430, 84, 110, 60);

struct Pens
{
    QPen line;
    QPen signal;
    QPen back;
};

Pens pensFor(const QPalette& palette)
{
    const QColor text = palette.color(QPalette::WindowText);
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    const auto pen = [](const QColor& colour, double width) {
        return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    };
    return {pen(text, 2), pen(dark ? QColor(0x5f, 0xb4, 0xff) : QColor(0x14, 0x5f, 0xb5), 3),
            pen(dark ? QColor(0xff, 0xb5, 0x47) : QColor(0xb3, 0x6b, 0x00), 3)};
}

void drawSocket(QPainter& painter, QPointF centre, const QPen& pen, const QString& name)
{
    painter.setPen(pen);
    painter.drawEllipse(centre, 8, 8);
    painter.setBrush(pen.color());
    painter.drawEllipse(centre, 2.5, 2.5);
    painter.setBrush(Qt::NoBrush);
    painter.drawText(QRectF(centre.x() - 74, centre.y() - 14, 60, 28), Qt::AlignRight | Qt::AlignVCenter, name);
}

void drawSine(QPainter& painter, QRectF field)
{
    QPainterPath wave(QPointF(field.left(), field.center().y()));
    const double quarter = field.width() / 4;
    wave.cubicTo(field.left() + quarter, field.top() - field.height() / 2, field.left() + quarter,
                 field.top() - field.height() / 2, field.left() + 2 * quarter, field.center().y());
    wave.cubicTo(field.left() + 3 * quarter, field.bottom() + field.height() / 2, field.left() + 3 * quarter,
                 field.bottom() + field.height() / 2, field.right(), field.center().y());
    painter.drawPath(wave);
}

} // namespace

HookUpSketch::HookUpSketch(QWidget* parent)
    : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setMinimumSize(306, 114);
}

void HookUpSketch::setTestType(int testType)
{
    if (testType == m_testType)
        return;
    m_testType = testType;
    setAccessibleName(testType == 1 ? tr("Hook-up: the part between output and input")
                                    : tr("Hook-up: the part across the impedance terminals"));
    update();
}

QSize HookUpSketch::sizeHint() const
{
    const int width = fontMetrics().averageCharWidth() * 60;
    return {width, heightForWidth(width)};
}

void HookUpSketch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = qMin(width() / kWidth, height() / kHeight);
    painter.translate((width() - kWidth * scale) / 2, (height() - kHeight * scale) / 2);
    painter.scale(scale, scale);

    const Pens pens = pensFor(palette());
    QFont face = font();
    face.setPixelSize(15);
    painter.setFont(face);

    painter.setPen(pens.line);
    painter.drawRoundedRect(kInstrument, 8, 8);
    painter.drawText(QRectF(kInstrument.left(), kInstrument.top() - 28, kInstrument.width(), 24), Qt::AlignCenter,
                     tr("Analyser"));
    painter.drawRoundedRect(kInstrument.adjusted(18, 34, -110, -34), 4, 4);
    painter.setPen(pens.signal);
    drawSine(painter, kInstrument.adjusted(28, 50, -120, -50));

    const QPointF upper(kInstrument.right() - 20, kPart.top() - 12);
    const QPointF lower(kInstrument.right() - 20, kPart.bottom() + 12);
    const bool through = m_testType == 1;
    drawSocket(painter, upper, pens.signal, through ? tr("Out") : tr("Z +"));
    drawSocket(painter, lower, pens.back, through ? tr("In") : tr("Z -"));

    painter.setPen(pens.line);
    painter.drawRoundedRect(kPart, 4, 4);
    painter.drawText(kPart, Qt::AlignCenter, m_testType == 3 ? tr("R + jX") : tr("Part"));

    if (through) {
        // Two-port: the signal enters on one side of the part and comes back from the other.
        painter.setPen(pens.signal);
        painter.drawPolyline(QPolygonF{upper + QPointF(8, 0), QPointF(390, upper.y()), QPointF(390, kPart.center().y()),
                                       QPointF(kPart.left(), kPart.center().y())});
        painter.setPen(pens.back);
        painter.drawPolyline(QPolygonF{QPointF(kPart.right(), kPart.center().y()), QPointF(580, kPart.center().y()),
                                       QPointF(580, lower.y() + 30), QPointF(300, lower.y() + 30),
                                       QPointF(300, lower.y()), lower + QPointF(8, 0)});
        painter.setPen(pens.line);
        const double ground = kPart.bottom() + 14;
        painter.drawLine(QPointF(kPart.center().x(), kPart.bottom()), QPointF(kPart.center().x(), ground));
        for (int i = 0; i < 3; ++i)
            painter.drawLine(QPointF(kPart.center().x() - 14 + 4 * i, ground + 5 * i),
                             QPointF(kPart.center().x() + 14 - 4 * i, ground + 5 * i));
    } else {
        // One-port: both terminals lie across the part.
        painter.setPen(pens.signal);
        painter.drawPolyline(QPolygonF{upper + QPointF(8, 0), QPointF(kPart.center().x(), upper.y()),
                                       QPointF(kPart.center().x(), kPart.top())});
        painter.setPen(pens.back);
        painter.drawPolyline(QPolygonF{lower + QPointF(8, 0), QPointF(kPart.center().x(), lower.y()),
                                       QPointF(kPart.center().x(), kPart.bottom())});
    }
}
