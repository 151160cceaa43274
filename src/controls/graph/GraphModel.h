// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphProperties.h"

#include <QObject>

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

/// The data model of the graph control: subsets of points in single precision, titles, axes, zoom, annotations, menu
/// and style, under the control's own property names. It knows no widget; GraphView draws it, GraphFile stores it.
///
/// Data writes take effect in the arrays at once and raise no signal. Everything shown follows at the next PEactions:
/// the view draws the properties as they were at that moment (shownProperties()).
///
/// Indices are checked: a read outside the graph gives 0 or an empty text, a write outside is refused (false) without
/// touching other memory. A value that a property cannot take (an unknown scale or style number, a limit that is not
/// finite) is refused too: the property keeps what it had. A text longer than graph::kLongestText is cut there.
///
/// A fresh graph holds no data: every X is 0, every Y the null value.
///
/// Y properties address the axis chosen by WorkingAxis, table properties the table chosen by WorkingTable.
class GraphModel : public QObject
{
    Q_OBJECT

public:
    static constexpr int kMaxSubsets = graph::kMaxSubsets;
    static constexpr int kMaxPoints = 65536;
    /// Sizes are held to 1 to kMaxSubsets and 1 to kMaxPoints and never change again.
    explicit GraphModel(int subsets = 40, int points = 1024, QObject* parent = nullptr);
    ~GraphModel() override;

    // Data -----------------------------------------------------------------------------------------------------------
    int Subsets() const { return m_subsets; }
    int Points() const { return m_points; }
    float XData(int subset, int point) const { return has(subset, point) ? m_x[index(subset, point)] : 0.0F; }
    float YData(int subset, int point) const { return has(subset, point) ? m_y[index(subset, point)] : 0.0F; }
    bool setXData(int subset, int point, float value)
    {
        if (!has(subset, point))
            return false;
        m_x[index(subset, point)] = value;
        touch(subset);
        return true;
    }
    bool setYData(int subset, int point, float value)
    {
        if (!has(subset, point))
            return false;
        m_y[index(subset, point)] = value;
        touch(subset);
        return true;
    }
    /// X and Y of one point.
    bool setPoint(int subset, int point, float x, float y)
    {
        if (!has(subset, point))
            return false;
        m_x[index(subset, point)] = x;
        m_y[index(subset, point)] = y;
        touch(subset);
        return true;
    }
    /// Read-only arrays of one subset, Points() long; empty for a subset the graph does not have.
    std::span<const float> xArray(int subset) const;
    std::span<const float> yArray(int subset) const;
    /// The flat stores of X and Y: subset after subset, Points() values each.
    std::span<const float> allX() const { return m_x; }
    std::span<const float> allY() const { return m_y; }
    enum BulkProperty
    {
        PEP_faXDATA = 1,
        PEP_faYDATA = 2
    };
    /// Bulk write into the flat store of X or Y: start is subset x Points() + point. Refused whole when it does not
    /// fit.
    bool PEvsetEx(int property, int start, int count, const float* source);
    /// Bulk read, the twin of PEvsetEx.
    bool PEvgetEx(int property, int start, int count, float* target) const;
    QString SubsetLabels(int subset) const;
    bool setSubsetLabels(int subset, const QString& text);
    std::uint32_t SubsetColors(int subset) const;
    bool setSubsetColors(int subset, std::uint32_t color);
    int SubsetLineTypes(int subset) const;
    bool setSubsetLineTypes(int subset, int type);
    /// The i-th subset to draw, i from 0 to Subsets() - 1. While no entry was ever written all subsets are drawn.
    int RandomSubsetsToGraph(int i) const;
    bool setRandomSubsetsToGraph(int i, int subset);
    /// A subset switched off here is not drawn, whatever RandomSubsetsToGraph names.
    bool SubsetsToShow(int subset) const;
    bool setSubsetsToShow(int subset, bool on);

    // Titles and axes ------------------------------------------------------------------------------------------------
    const QString& MainTitle() const { return m_properties.MainTitle; }
    void setMainTitle(const QString& text);
    const QString& SubTitle() const { return m_properties.SubTitle; }
    void setSubTitle(const QString& text);
    const QString& XAxisLabel() const { return m_properties.XAxisLabel; }
    void setXAxisLabel(const QString& text);
    const QString& TXAxisLabel() const { return m_properties.TXAxisLabel; }
    void setTXAxisLabel(const QString& text);
    int WorkingAxis() const { return m_workingAxis; }
    bool setWorkingAxis(int axis);
    const QString& YAxisLabel() const { return axis().YAxisLabel; }
    void setYAxisLabel(const QString& text);
    float NullDataValueY() const { return axis().NullDataValueY; }
    void setNullDataValueY(float value);
    int XAxisScaleControl() const { return m_properties.XAxisScaleControl; }
    void setXAxisScaleControl(int scale);
    int YAxisScaleControl() const { return axis().YAxisScaleControl; }
    void setYAxisScaleControl(int scale);
    int ManualScaleControlX() const { return m_properties.ManualScaleControlX; }
    void setManualScaleControlX(int control);
    int ManualScaleControlY() const { return axis().ManualScaleControlY; }
    void setManualScaleControlY(int control);
    double ManualMinX() const { return m_properties.ManualMinX; }
    void setManualMinX(double value);
    double ManualMaxX() const { return m_properties.ManualMaxX; }
    void setManualMaxX(double value);
    double ManualMinY() const { return axis().ManualMinY; }
    void setManualMinY(double value);
    double ManualMaxY() const { return axis().ManualMaxY; }
    void setManualMaxY(double value);
    bool PlottingMode() const { return axis().PlottingMode; }
    void setPlottingMode(bool on);
    const QString& AxisUnitPrefixes() const { return m_properties.AxisUnitPrefixes; }
    void setAxisUnitPrefixes(const QString& text);

    // Zoom and actions -----------------------------------------------------------------------------------------------
    bool Zoomed() const { return m_properties.zoomed; }
    void setZoomed(bool zoomed);
    const graph::ZoomLimits& zoomLimits() const { return m_properties.zoom; }
    void setZoomLimits(const graph::ZoomLimits& limits);
    void setZoomMinX(double value);
    void setZoomMaxX(double value);
    void setZoomMinY(double value);
    void setZoomMaxY(double value);
    void setZoomMinRY(double value);
    void setZoomMaxRY(double value);
    void setZoomMinTX(double value);
    void setZoomMaxTX(double value);
    /// 0 reinitialise and redraw, 3 redraw, 19 undo all zoom; any other code does nothing. All three make the
    /// properties set so far the shown ones. 19 raises ZoomOut if the graph was zoomed.
    void PEactions(int action);
    /// What the view calls when the user has zoomed or returned to full extent: takes the limits, which are shown at
    /// once, and raises the event. Limits that are not finite or leave no span do nothing, nor does a zoom out of full
    /// extent.
    void userZoom(const graph::ZoomLimits& limits);
    void userZoomOut();

    // Annotations, legend, menu --------------------------------------------------------------------------------------
    double VertLineAnnotation(int i) const;
    void setVertLineAnnotation(int i, double position); ///< i from 0 to 99; grows the list
    int VertLineAnnotationType(int i) const;
    void setVertLineAnnotationType(int i, int type);
    std::uint32_t VertLineAnnotationColor(int i) const;
    void setVertLineAnnotationColor(int i, std::uint32_t color);
    int WorkingTable() const { return m_workingTable; }
    bool setWorkingTable(int table);
    int TARows() const { return table().TARows; }
    void setTARows(int rows); ///< 0 to 1000; cells that stay keep their text
    int TAColumns() const { return table().TAColumns; }
    void setTAColumns(int columns); ///< 0 to 100
    QString TAText(int row, int column) const;
    bool setTAText(int row, int column, const QString& text);
    int TAJustification(int row, int column) const;
    bool setTAJustification(int row, int column, int justification);
    int TATextSize() const { return table().TATextSize; }
    void setTATextSize(int percent);
    QString TAFonts() const { return table().TAFonts; }
    void setTAFonts(const QString& font);
    int TALocation() const { return table().TALocation; }
    void setTALocation(int location);
    bool TAHeaderColumn() const { return table().TAHeaderColumn; }
    void setTAHeaderColumn(bool on);
    int TABorder() const { return table().TABorder; }
    void setTABorder(int border);
    std::uint32_t TABackColor() const { return table().TABackColor; }
    void setTABackColor(std::uint32_t color);
    bool ShowTableAnnotation() const { return table().ShowTableAnnotation; }
    void setShowTableAnnotation(bool on);
    QString CustomMenu(int i) const;
    void setCustomMenu(int i, const QString& text); ///< i from 0 to 63; grows the list
    int CustomMenuState(int i, int sub = 0) const;
    void setCustomMenuState(int i, int sub, int state);
    bool CustomMenuChecked(int i, int sub) const;
    void setCustomMenuChecked(int i, int sub, bool checked);
    QString MultiSubTitles(int i) const;
    void setMultiSubTitles(int i, const QString& text); ///< i from 0 to 63
    QString GraphAnnotationText(int i) const;
    void setGraphAnnotationText(int i, const QString& text); ///< i from 0 to 4095
    bool MarkDataPoints() const { return m_properties.MarkDataPoints; }
    void setMarkDataPoints(bool on);
    bool ShowLegend() const { return m_properties.ShowLegend; }
    void setShowLegend(bool on);
    int LegendStyle() const { return m_properties.LegendStyle; }
    void setLegendStyle(int style);
    int LegendLocation() const { return m_properties.LegendLocation; }
    void setLegendLocation(int location);
    int ViewingStyle() const { return m_properties.ViewingStyle; }
    void setViewingStyle(int style);
    int FontSize() const { return m_properties.FontSize; }
    void setFontSize(int size);
    double FontSizeGlobalCntl() const { return m_properties.FontSizeGlobalCntl; }
    void setFontSizeGlobalCntl(double factor);
    const QString& MainTitleFont() const { return m_properties.MainTitleFont; }
    void setMainTitleFont(const QString& font);
    const QString& SubTitleFont() const { return m_properties.SubTitleFont; }
    void setSubTitleFont(const QString& font);
    const QString& LabelFont() const { return m_properties.LabelFont; }
    void setLabelFont(const QString& font);
    std::uint32_t MonoGraphForeColor() const { return m_properties.MonoGraphForeColor; }
    void setMonoGraphForeColor(std::uint32_t color);
    std::uint32_t MonoGraphBackColor() const { return m_properties.MonoGraphBackColor; }
    void setMonoGraphBackColor(std::uint32_t color);
    std::uint32_t MonoTextColor() const { return m_properties.MonoTextColor; }
    void setMonoTextColor(std::uint32_t color);
    std::uint32_t MonoDeskColor() const { return m_properties.MonoDeskColor; }
    void setMonoDeskColor(std::uint32_t color);
    std::uint32_t TickColor() const { return m_properties.TickColor; }
    void setTickColor(std::uint32_t color);
    double LineWidth() const { return m_properties.LineWidth; }
    void setLineWidth(double width);

    // For the view and the file --------------------------------------------------------------------------------------
    const graph::Properties& properties() const { return m_properties; }
    /// The properties as they were at the last PEactions.
    const graph::Properties& shownProperties() const { return m_shown; }
    /// Grows with every change of the shown properties, except those that only moved vertical lines.
    std::uint64_t shownRevision() const { return m_shownRevision; }
    /// Grows with every change of the shown vertical line annotations.
    std::uint64_t shownLinesRevision() const { return m_shownLinesRevision; }
    /// Replaces the whole graph, as after a load, and shows it; WorkingAxis and WorkingTable become 0. The arrays hold
    /// Subsets() x Points() floats (in memory at any address) and every property a value that its setter takes; false
    /// and unchanged otherwise.
    bool replaceAll(graph::Properties properties, std::span<const float> x, std::span<const float> y);
    bool replaceAll(graph::Properties properties, std::span<const std::byte> x, std::span<const std::byte> y);
    /// Subsets with data written since the last call (bit s for subset s, from 0), and forgets them. Up to 64 subsets.
    std::uint64_t takeDirtySubsets();
    /// Grows with every data write: tells the view whether mapped coordinates are still good.
    std::uint64_t dataRevision(int subset) const;

Q_SIGNALS:
    /// The shown properties are new (PEactions 0 and 19, a load): the view must be rebuilt where they differ.
    void reinitialised();
    /// PEactions 3 or a zoom of the user: as above, where most often only data and vertical lines have changed.
    void redrawWanted();
    /// Events of the user, raised through the view.
    void ZoomIn();
    void ZoomOut();
    void CursorMoved(int subset, int point);
    void CustomMenuClicked(int item, int sub);

private:
    bool has(int subset, int point) const
    {
        return subset >= 0 && subset < m_subsets && point >= 0 && point < m_points;
    }
    void touch(int subset)
    {
        ++m_revisions[static_cast<std::size_t>(subset)];
        m_dirty |= std::uint64_t{1} << subset;
    }
    std::size_t index(int subset, int point) const
    {
        return static_cast<std::size_t>(subset) * static_cast<std::size_t>(m_points) + static_cast<std::size_t>(point);
    }
    graph::YAxis& axis() { return m_properties.yAxes[static_cast<std::size_t>(m_workingAxis)]; }
    const graph::YAxis& axis() const { return m_properties.yAxes[static_cast<std::size_t>(m_workingAxis)]; }
    graph::TableAnnotation& table() { return m_properties.tables[static_cast<std::size_t>(m_workingTable)]; }
    const graph::TableAnnotation& table() const
    {
        return m_properties.tables[static_cast<std::size_t>(m_workingTable)];
    }

    template <typename T>
    void assign(T& member, T value)
    {
        if (member == value)
            return;
        member = std::move(value);
        m_changed = true;
    }
    void assign(QString& member, const QString& text);
    graph::VerticalLine* verticalLine(int i);
    graph::MenuItem* menuItem(int i);
    void resizeTable(int rows, int columns);
    void show();

    int m_subsets;
    int m_points;
    int m_workingAxis = 0;
    int m_workingTable = 0;
    std::vector<float> m_x;
    std::vector<float> m_y;
    std::vector<std::uint64_t> m_revisions;
    std::uint64_t m_dirty = 0;
    graph::Properties m_properties;
    graph::Properties m_shown;
    std::uint64_t m_shownRevision = 0;
    std::uint64_t m_shownLinesRevision = 0;
    bool m_changed = false;      ///< properties differ from the shown ones by more than vertical lines
    bool m_linesChanged = false; ///< vertical lines differ from the shown ones
};
