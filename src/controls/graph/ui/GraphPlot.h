// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AxisRange.h"
#include "controls/graph/ui/PlotLibrary.h"
#include "controls/graph/ui/PlotStyle.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

class EngineeringTicker;
class MinorDivisions;
class OverlayMarks;
class PlotLegend;
class TableStrip;
class TitleElement;
class TracePlottable;

/// A graph model as a scene of the plotting library: axes, grid, titles, legend, tables and traces as the model's shown
/// properties say. It takes no input; GraphView does, GraphPicture paints it without a window.
///
/// Traces that receive data move to a layer of their own, which alone is redrawn while only they change; vertical
/// lines, cursor and zoom rectangle lie on another. The model must outlive the plot.
class GraphPlot : public QCustomPlot
{
    Q_OBJECT

public:
    enum class Look
    {
        Screen,
        Picture
    };
    explicit GraphPlot(const GraphModel& model, Look look, QWidget* parent = nullptr);
    ~GraphPlot() override;

    /// Takes up what the model shows now and redraws the layers it touches, all, the live traces, the overlay or none.
    void refresh();
    /// Redraws everything at the next refresh, as after a change of palette or screen.
    void invalidate();
    /// Takes up what the model shows without drawing.
    void prepare();

    /// Redraws so far, by what had to be redrawn.
    struct Work
    {
        std::uint64_t full = 0;
        std::uint64_t live = 0;
        std::uint64_t overlay = 0;
    };
    const Work& work() const { return m_work; }

    QRect plotArea() const;
    QCPAxis& bottomAxis() const { return *m_bottom; }
    QCPAxis& valueAxis(int axis) const { return *m_values[static_cast<std::size_t>(axis)]; }
    const std::vector<int>& drawn() const { return m_drawn; }
    /// Null for a subset that is not drawn.
    TracePlottable* trace(int subset) const;
    OverlayMarks& overlay() const { return *m_overlay; }
    void redrawOverlay();
    /// The axis a zoom of one side takes its limits from: the first visible one, else the first.
    int leadingAxis(bool right) const;
    /// The axes whose numbers and title stand at that place, of graph::AxisChoice; 0 elsewhere.
    int axesAt(const QPoint& position) const;

    /// What the axes show, and what they would show without a zoom.
    const graph::ShownRanges& ranges() const { return m_ranges; }
    graph::ShownRanges fullRanges() const;
    /// Shows these limits in place of the model's from the next refresh on, until it is told nothing.
    void setPreview(const std::optional<graph::ZoomLimits>& limits);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void createAxes();
    void applyProperties();
    void applyAxes();
    void applyTraces();
    void applyLegend();
    void arrangeLayout();
    /// Updates the traces from the data; true when ranges or the legend's entries changed.
    bool updateData(std::vector<int>& changed);
    graph::ShownRanges wantedRanges() const;
    void applyRanges();
    void makeLive(const std::vector<int>& subsets);

    const GraphModel& m_model;
    Look m_look;
    PlotStyle m_style;
    QCPAxisRect* m_area = nullptr;
    QCPAxis* m_bottom = nullptr;
    QCPAxis* m_frameTop = nullptr;
    QCPAxis* m_frameRight = nullptr;
    std::array<QCPAxis*, graph::kYAxes> m_values{};
    QSharedPointer<EngineeringTicker> m_bottomTicker;
    std::array<QSharedPointer<EngineeringTicker>, graph::kYAxes> m_valueTickers;
    MinorDivisions* m_minor = nullptr;
    QCPLayoutGrid* m_centre = nullptr;
    TitleElement* m_mainTitle = nullptr;
    TitleElement* m_subTitle = nullptr;
    TableStrip* m_topTables = nullptr;
    TableStrip* m_bottomTables = nullptr;
    std::unique_ptr<PlotLegend> m_legend;
    OverlayMarks* m_overlay = nullptr;
    QCPLayer* m_settledLayer = nullptr;
    QCPLayer* m_liveLayer = nullptr;

    std::vector<int> m_drawn;
    std::vector<TracePlottable*> m_traces; ///< by subset; null where not drawn
    std::vector<graph::Extent> m_extents;  ///< by subset
    std::vector<int> m_live;
    graph::ShownRanges m_ranges;
    std::optional<graph::ZoomLimits> m_preview;
    bool m_previewChanged = false;
    std::optional<std::uint64_t> m_shownRevision;
    std::uint64_t m_linesRevision = 0;
    bool m_stale = true;
    Work m_work;
};
