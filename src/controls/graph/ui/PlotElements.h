// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AxisTicks.h"
#include "controls/graph/GraphProperties.h"
#include "controls/graph/ui/PlotLibrary.h"
#include "controls/graph/ui/PlotStyle.h"

#include <optional>
#include <vector>

/// Parts of a plot that the plotting library does not have.

/// Ticks with engineering prefixes, as many as the plot has room for.
class EngineeringTicker : public QCPAxisTicker
{
public:
    EngineeringTicker(const QCPAxis& axis, bool horizontal);
    void setStyle(const QString& prefixes, bool degrees, bool logarithmic, double textSize);
    void generate(const QCPRange& range, const QLocale& locale, QChar formatChar, int precision, QVector<double>& ticks,
                  QVector<double>* subTicks, QVector<QString>* tickLabels) override;
    /// Of the last ticks made.
    const std::vector<double>& minorTicks() const { return m_minor; }
    bool isLogarithmic() const { return m_logarithmic; }

private:
    const QCPAxis& m_axis;
    bool m_horizontal;
    graph::TickStyle m_style;
    bool m_logarithmic = false;
    double m_textSize = 12;
    std::vector<double> m_minor;
};

/// The minor ticks of all visible axes and, on logarithmic ones that have a grid, their lines. The library draws them
/// one by one, which takes as long as all the curves.
class MinorDivisions : public QCPLayerable
{
public:
    explicit MinorDivisions(QCustomPlot* plot);
    void addAxis(QCPAxis* axis, QSharedPointer<EngineeringTicker> ticker);
    void setPens(const QPen& grid, const QPen& ticks);

protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(false); }
    void draw(QCPPainter* painter) override;

private:
    struct Entry
    {
        QCPAxis* axis;
        QSharedPointer<EngineeringTicker> ticker;
    };
    std::vector<Entry> m_entries;
    QPen m_gridPen;
    QPen m_tickPen;
};

/// A title across the whole width, its lines shortened in the middle where they do not fit.
class TitleElement : public QCPLayoutElement
{
public:
    explicit TitleElement(QCustomPlot* plot);
    void setText(const QString& text, const QFont& font, const QColor& color);
    QSize minimumOuterSizeHint() const override;
    QSize maximumOuterSizeHint() const override;

protected:
    void draw(QCPPainter* painter) override;

private:
    int height() const;
    QStringList m_lines;
    QFont m_font;
    QColor m_color;
};

/// The table annotations above or below the plotting area, to the left, in the middle and to the right.
class TableStrip : public QCPLayoutElement
{
public:
    explicit TableStrip(QCustomPlot* plot);
    /// Tables whose location is top (0 to 2) or bottom (3 to 5).
    void setTables(const graph::Properties& properties, const PlotStyle& style, bool top);
    bool isEmpty() const { return m_tables.empty(); }
    QSize minimumOuterSizeHint() const override;
    QSize maximumOuterSizeHint() const override;

protected:
    void draw(QCPPainter* painter) override;

private:
    struct Table
    {
        graph::TableAnnotation content;
        QFont font;
        std::vector<int> columnWidths;
        int rowHeight = 0;
        QSize size;
    };
    void drawTable(QCPPainter* painter, const Table& table, const QRect& rect) const;
    int height() const;
    std::vector<Table> m_tables;
    PlotStyle m_style;
};

/// Keeps a legend as small as its entries, in the middle of a row above or below or of a column beside the plotting
/// area.
class LegendHolder : public QCPLayoutInset
{
public:
    explicit LegendHolder(QCPLegend* legend);
    void setVertical(bool vertical) { m_vertical = vertical; }
    QSize minimumOuterSizeHint() const override;
    QSize maximumOuterSizeHint() const override;

private:
    QCPLegend* m_legend;
    bool m_vertical = true;
};

/// What moves over the finished curves: vertical line annotations, the read-out cursor, the rectangle of a zoom.
class OverlayMarks : public QCPLayerable
{
public:
    OverlayMarks(QCustomPlot* plot, QCPAxis* xAxis);
    void setLines(std::vector<graph::VerticalLine> lines, const PlotStyle& style);
    void setCursor(std::optional<QPointF> position, const QColor& color);
    void setZoomRect(const QRect& rect) { m_zoomRect = rect; }
    std::optional<QPointF> cursor() const { return m_cursor; }
    bool isEmpty() const;

protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(false); }
    QRect clipRect() const override;
    void draw(QCPPainter* painter) override;

private:
    QCPAxis* m_xAxis;
    std::vector<graph::VerticalLine> m_lines;
    bool m_monochrome = false;
    QColor m_ink;
    std::optional<QPointF> m_cursor;
    QColor m_cursorColor;
    QRect m_zoomRect;
};
