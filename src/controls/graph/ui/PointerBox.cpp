// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/PointerBox.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMargin = 6;
constexpr int kSwatch = 14; // length of the piece of line in front of a pen's name
constexpr int kGap = 8;     // between columns
constexpr int kOff = 16;    // from the pointer
constexpr int kNameLength = 24;

} // namespace

PointerBox::PointerBox(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("pointerBox"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAutoFillBackground(false);
    hide();
}

void PointerBox::showReadings(const graph::PointerReadings& readings, const std::function<QColor(int)>& colourOf,
                              const QPoint& pointer)
{
    m_text = readings.toText();
    m_heading = readings.xText;
    m_rows.clear();
    for (const graph::PenReading& pen : readings.pens) {
        Row row{colourOf(pen.curves.front().subset), {}};
        row.cells.push_back(pen.name.left(kNameLength));
        for (const graph::CurveReading& curve : pen.curves)
            row.cells.push_back(curve.text);
        if (!pen.xText.isEmpty())
            row.cells.push_back(tr("at %1").arg(pen.xText));
        m_rows.push_back(std::move(row));
    }
    setAccessibleName(m_text);
    measure();
    moveBeside(pointer);
    show();
    raise();
    update();
}

void PointerBox::measure()
{
    const QFontMetrics metrics(font());
    m_columns.clear();
    for (const Row& row : m_rows) {
        m_columns.resize(std::max(m_columns.size(), row.cells.size()), 0);
        for (std::size_t i = 0; i < row.cells.size(); ++i)
            m_columns[i] = std::max(m_columns[i], metrics.horizontalAdvance(row.cells[i]));
    }
    int width = kSwatch;
    for (const int column : m_columns)
        width += kGap + column;
    width = std::max(width, metrics.horizontalAdvance(m_heading));
    const int lines = 1 + static_cast<int>(m_rows.size());
    resize(width + 2 * kMargin, lines * metrics.lineSpacing() + 2 * kMargin);
}

// To the right below the pointer; on its other side where there is no room.
void PointerBox::moveBeside(const QPoint& pointer)
{
    const QSize room = parentWidget()->size();
    const auto place = [](int at, int length, int end) {
        if (at + kOff + length <= end)
            return at + kOff;
        return std::max(0, at - kOff - length);
    };
    move(place(pointer.x(), width(), room.width()), place(pointer.y(), height(), room.height()));
}

void PointerBox::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    QColor paper = palette().color(QPalette::ToolTipBase);
    paper.setAlpha(235);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(paper);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    const QFontMetrics metrics(font());
    const QColor ink = palette().color(QPalette::ToolTipText);
    painter.setPen(ink);
    int y = kMargin;
    painter.drawText(QRect(kMargin, y, width() - 2 * kMargin, metrics.lineSpacing()), Qt::AlignLeft, m_heading);
    for (const Row& row : m_rows) {
        y += metrics.lineSpacing();
        const double middle = y + metrics.lineSpacing() / 2.0;
        painter.setPen(QPen(row.colour, 3, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(kMargin, middle), QPointF(kMargin + kSwatch, middle));
        painter.setPen(ink);
        int x = kMargin + kSwatch + kGap;
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            const int flags = i == 0 ? Qt::AlignLeft : Qt::AlignRight;
            painter.drawText(QRect(x, y, m_columns[i], metrics.lineSpacing()), flags, row.cells[i]);
            x += m_columns[i] + kGap;
        }
    }
}
