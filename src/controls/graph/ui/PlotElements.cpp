// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/PlotElements.h"

#include "widgets/ui/QtColour.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr qsizetype kMostTitleLines = 8; // the rest would leave no room for the curves
constexpr int kCellPadding = 5;

template <typename T>
QVector<T> toVector(const std::vector<T>& list)
{
    return QVector<T>(list.begin(), list.end());
}

} // namespace

// Ticks --------------------------------------------------------------------------------------------------------------

EngineeringTicker::EngineeringTicker(const QCPAxis& axis, bool horizontal)
    : m_axis(axis)
    , m_horizontal(horizontal)
{}

void EngineeringTicker::setStyle(const QString& prefixes, bool degrees, bool logarithmic, double textSize)
{
    m_style.prefixes = prefixes;
    m_style.degrees = degrees;
    m_logarithmic = logarithmic;
    m_textSize = textSize;
}

// The room is taken from the whole plot and not from the axis, whose length depends on the width of these very labels.
void EngineeringTicker::generate(const QCPRange& range, const QLocale& locale, QChar formatChar, int precision,
                                 QVector<double>& ticks, QVector<double>* subTicks, QVector<QString>* tickLabels)
{
    Q_UNUSED(locale)
    Q_UNUSED(formatChar)
    Q_UNUSED(precision)
    const QRect viewport = m_axis.parentPlot()->viewport();
    const double room =
        m_horizontal ? viewport.width() * 0.82 / (m_textSize * 6.5) : viewport.height() * 0.76 / (m_textSize * 4.5);
    m_style.wanted = std::clamp(static_cast<int>(room), 2, 14);
    const graph::Range stretch{range.lower, range.upper};
    graph::AxisTicks made =
        m_logarithmic ? graph::logarithmicTicks(stretch, m_style) : graph::linearTicks(stretch, m_style);
    ticks = toVector(made.major);
    if (subTicks != nullptr)
        *subTicks = toVector(made.minor);
    if (tickLabels != nullptr)
        *tickLabels = toVector(made.labels);
    m_minor = std::move(made.minor);
}

MinorDivisions::MinorDivisions(QCustomPlot* plot)
    : QCPLayerable(plot, QStringLiteral("grid"))
{}

void MinorDivisions::addAxis(QCPAxis* axis, QSharedPointer<EngineeringTicker> ticker)
{
    m_entries.push_back({axis, std::move(ticker)});
}

void MinorDivisions::setPens(const QPen& grid, const QPen& ticks)
{
    m_gridPen = grid;
    m_tickPen = ticks;
}

void MinorDivisions::draw(QCPPainter* painter)
{
    constexpr int kTickLength = 3;
    QVector<QLine> grid;
    QVector<QLine> ticks;
    for (const Entry& entry : m_entries) {
        const QCPAxis& axis = *entry.axis;
        if (!axis.visible())
            continue;
        const QRect area = axis.axisRect()->rect();
        const bool lines = axis.grid()->visible() && entry.ticker->isLogarithmic();
        const int left = area.left() - (axis.axisType() == QCPAxis::atLeft ? axis.offset() : 0);
        const int right = area.right() + 1 + (axis.axisType() == QCPAxis::atRight ? axis.offset() : 0);
        for (const double tick : entry.ticker->minorTicks()) {
            const int at = static_cast<int>(std::lround(axis.coordToPixel(tick)));
            if (axis.axisType() == QCPAxis::atBottom) {
                ticks.append(QLine(at, area.bottom(), at, area.bottom() - kTickLength));
                if (lines)
                    grid.append(QLine(at, area.top(), at, area.bottom()));
            } else {
                if (axis.axisType() == QCPAxis::atLeft)
                    ticks.append(QLine(left, at, left + kTickLength, at));
                else
                    ticks.append(QLine(right, at, right - kTickLength, at));
                if (lines)
                    grid.append(QLine(area.left(), at, area.right(), at));
            }
        }
    }
    // Upright lines painted as narrow rectangles take a third of the time; vectors stay lines.
    const bool asRectangles = !painter->modes().testFlag(QCPPainter::pmVectorized);
    const auto drawAll = [&](const QVector<QLine>& lines, const QPen& pen) {
        painter->setPen(pen);
        if (!asRectangles) {
            painter->drawLines(lines);
            return;
        }
        for (const QLine& line : lines)
            painter->fillRect(QRect(line.p1(), line.p2()).normalized(), pen.color());
    };
    drawAll(grid, m_gridPen);
    drawAll(ticks, m_tickPen);
}

// Titles -------------------------------------------------------------------------------------------------------------

TitleElement::TitleElement(QCustomPlot* plot)
    : QCPLayoutElement(plot)
{
    setLayer(QStringLiteral("axes"));
}

void TitleElement::setText(const QString& text, const QFont& font, const QColor& color)
{
    m_lines = text.split(QLatin1Char('\n')).mid(0, kMostTitleLines);
    m_font = font;
    m_color = color;
}

int TitleElement::height() const
{
    return QFontMetrics(m_font).lineSpacing() * static_cast<int>(m_lines.size()) + 2;
}

QSize TitleElement::minimumOuterSizeHint() const
{
    return {20, height()};
}

QSize TitleElement::maximumOuterSizeHint() const
{
    return {QWIDGETSIZE_MAX, height()};
}

void TitleElement::draw(QCPPainter* painter)
{
    const QFontMetrics metrics(m_font);
    painter->setFont(m_font);
    painter->setPen(QPen(m_color));
    QRect line = rect();
    line.setHeight(metrics.lineSpacing());
    for (const QString& text : m_lines) {
        painter->drawText(line, Qt::AlignCenter | Qt::TextSingleLine,
                          metrics.elidedText(text, Qt::ElideMiddle, line.width()));
        line.translate(0, metrics.lineSpacing());
    }
}

// Tables -------------------------------------------------------------------------------------------------------------

TableStrip::TableStrip(QCustomPlot* plot)
    : QCPLayoutElement(plot)
{
    setLayer(QStringLiteral("axes"));
}

void TableStrip::setTables(const graph::Properties& properties, const PlotStyle& style, bool top)
{
    m_style = style;
    m_tables.clear();
    for (const graph::TableAnnotation& content : properties.tables) {
        if (!content.ShowTableAnnotation || content.cells.empty() || (content.TALocation < 3) != top)
            continue;
        Table table;
        table.content = content;
        table.font = style.legend;
        if (!content.TAFonts.isEmpty())
            table.font.setFamily(content.TAFonts);
        table.font.setPixelSize(
            std::clamp(static_cast<int>(std::lround(style.textSize * 0.92 * content.TATextSize / 100)), 5, 200));
        QFont header = table.font;
        header.setBold(true);
        const QFontMetrics metrics(table.font);
        const QFontMetrics headerMetrics(header);
        table.rowHeight = metrics.height() + 2;
        for (int column = 0; column < content.TAColumns; ++column) {
            int width = 0;
            for (int row = 0; row < content.TARows; ++row) {
                const QString& text =
                    content
                        .cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(content.TAColumns) +
                               static_cast<std::size_t>(column)]
                        .TAText;
                const bool isHeader = column == 0 && content.TAHeaderColumn;
                width = std::max(width, (isHeader ? headerMetrics : metrics).horizontalAdvance(text));
            }
            // A column that only carries empty cells takes no room.
            table.columnWidths.push_back(width == 0 ? 0 : width + 2 * kCellPadding);
        }
        table.size = {std::accumulate(table.columnWidths.begin(), table.columnWidths.end(), 0),
                      table.rowHeight * content.TARows};
        if (table.size.width() > 0)
            m_tables.push_back(std::move(table));
    }
}

int TableStrip::height() const
{
    int height = 0;
    for (const Table& table : m_tables)
        height = std::max(height, table.size.height() + 6);
    return height;
}

QSize TableStrip::minimumOuterSizeHint() const
{
    return {20, height()};
}

QSize TableStrip::maximumOuterSizeHint() const
{
    return {QWIDGETSIZE_MAX, height()};
}

void TableStrip::draw(QCPPainter* painter)
{
    int left = rect().left() + 8;
    int right = rect().right() - 8;
    for (const Table& table : m_tables) {
        const int width = std::min(table.size.width(), std::max(20, right - left));
        QRect place(0, rect().top() + 2, width, table.size.height());
        switch (table.content.TALocation % 3) {
        case 0:
            place.moveLeft(left);
            left = place.right() + 8;
            break;
        case 1:
            place.moveLeft(std::clamp(rect().center().x() - width / 2, left, std::max(left, right - width)));
            break;
        default:
            place.moveRight(right);
            right = place.left() - 8;
        }
        drawTable(painter, table, place);
    }
}

void TableStrip::drawTable(QCPPainter* painter, const Table& table, const QRect& rect) const
{
    const graph::TableAnnotation& content = table.content;
    painter->setAntialiasing(false);
    const bool transparent = content.TABackColor == 1;
    const QColor back = m_style.monochrome ? m_style.paper : toQColor(content.TABackColor);
    if (content.TABorder == 2 && !transparent)
        painter->fillRect(rect.translated(2, 2), QColor(0, 0, 0, 70));
    if (!transparent)
        painter->fillRect(rect, back);
    if (content.TABorder > 0) {
        painter->setPen(QPen(m_style.frame, content.TABorder == 2 && transparent ? 1.5 : 1.0));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(rect);
    }
    const QColor text = transparent ? m_style.text : back.lightness() > 127 ? m_style.ink : QColor(Qt::white);
    painter->setPen(QPen(text));
    const double shrink = table.size.width() > 0 ? static_cast<double>(rect.width()) / table.size.width() : 1;
    double x = rect.left();
    for (int column = 0; column < content.TAColumns; ++column) {
        const double width = table.columnWidths[static_cast<std::size_t>(column)] * shrink;
        QFont font = table.font;
        font.setBold(column == 0 && content.TAHeaderColumn);
        painter->setFont(font);
        const QFontMetrics metrics(font);
        for (int row = 0; row < content.TARows; ++row) {
            const graph::TableCell& cell =
                content.cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(content.TAColumns) +
                              static_cast<std::size_t>(column)];
            const QRectF place(x + kCellPadding, rect.top() + row * table.rowHeight, width - 2 * kCellPadding,
                               table.rowHeight);
            const Qt::Alignment alignment = cell.TAJustification == 1   ? Qt::AlignHCenter
                                            : cell.TAJustification == 2 ? Qt::AlignRight
                                                                        : Qt::AlignLeft;
            const int room = static_cast<int>(std::ceil(place.width())) + 1;
            painter->drawText(place, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                              metrics.elidedText(cell.TAText, Qt::ElideRight, room));
        }
        x += width;
    }
}

// Legend -------------------------------------------------------------------------------------------------------------

LegendHolder::LegendHolder(QCPLegend* legend)
    : m_legend(legend)
{}

QSize LegendHolder::minimumOuterSizeHint() const
{
    const QSize legend = m_legend->minimumOuterSizeHint();
    return m_vertical ? QSize(legend.width() + 4, 20) : QSize(20, legend.height() + 4);
}

QSize LegendHolder::maximumOuterSizeHint() const
{
    const QSize least = minimumOuterSizeHint();
    return m_vertical ? QSize(least.width(), QWIDGETSIZE_MAX) : QSize(QWIDGETSIZE_MAX, least.height());
}

// Overlay ------------------------------------------------------------------------------------------------------------

OverlayMarks::OverlayMarks(QCustomPlot* plot, QCPAxis* xAxis)
    : QCPLayerable(plot, QStringLiteral("overlay"))
    , m_xAxis(xAxis)
{}

void OverlayMarks::setLines(std::vector<graph::VerticalLine> lines, const PlotStyle& style)
{
    m_lines = std::move(lines);
    m_monochrome = style.monochrome;
    m_ink = style.ink;
}

void OverlayMarks::setCursor(std::optional<QPointF> position, const QColor& color)
{
    m_cursor = position;
    m_cursorColor = color;
}

bool OverlayMarks::isEmpty() const
{
    return !m_cursor && m_zoomRect.isEmpty() &&
           std::all_of(m_lines.begin(), m_lines.end(),
                       [](const graph::VerticalLine& line) { return line.type == graph::kLineVanished; });
}

QRect OverlayMarks::clipRect() const
{
    return m_xAxis->axisRect()->rect();
}

void OverlayMarks::draw(QCPPainter* painter)
{
    const QRect area = clipRect();
    painter->setAntialiasing(false);
    painter->setBrush(Qt::NoBrush);
    for (const graph::VerticalLine& line : m_lines) {
        const bool onScale = m_xAxis->scaleType() == QCPAxis::stLinear || line.position > 0;
        if (line.type == graph::kLineVanished || !onScale)
            continue;
        const double x = std::round(m_xAxis->coordToPixel(line.position));
        if (!(x >= area.left() - 1 && x <= area.right() + 2))
            continue;
        painter->setPen(QPen(m_monochrome ? m_ink : toQColor(line.color), 1, penStyleOf(line.type)));
        painter->drawLine(QLineF(x, area.top(), x, area.bottom()));
    }
    if (m_cursor) {
        const QPointF at(std::round(m_cursor->x()), std::round(m_cursor->y()));
        painter->setPen(QPen(QColor(m_ink.red(), m_ink.green(), m_ink.blue(), 110), 1, Qt::DashLine));
        painter->drawLine(QLineF(at.x(), area.top(), at.x(), area.bottom()));
        painter->drawLine(QLineF(area.left(), at.y(), area.right(), at.y()));
        painter->setAntialiasing(true);
        painter->setPen(QPen(m_cursorColor, 1.5));
        painter->setBrush(QColor(255, 255, 255, 200));
        painter->drawEllipse(*m_cursor, 4, 4);
        painter->setAntialiasing(false);
    }
    if (!m_zoomRect.isEmpty()) {
        const QColor edge = m_monochrome ? m_ink : QColor(0x2A, 0x6F, 0xC0);
        painter->setPen(QPen(edge, 1));
        painter->setBrush(QColor(edge.red(), edge.green(), edge.blue(), 32));
        painter->drawRect(m_zoomRect.adjusted(0, 0, -1, -1));
    }
}
