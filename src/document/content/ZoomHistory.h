// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

#include <vector>

/// One stored zoom: the limits of the bottom X, left Y, right Y and top X axes.
struct clsGraphZoomNode
{
    double dblZoomMinX = 0, dblZoomMaxX = 0;
    double dblZoomMinY = 0, dblZoomMaxY = 0;
    double dblZoomMinRY = 0, dblZoomMaxRY = 0;
    double dblZoomMaxTX = 0, dblZoomMinTX = 0;
};

/// The zooms that the user made on a graph, with a position in them. Position 0 is the full extent and is not stored;
/// position n is node n. The list has no limit. Steps write the graph's zoom; redrawing and everything that follows
/// from a new extent is the caller's.
class ZoomHistory
{
public:
    /// The graph outlives the history.
    explicit ZoomHistory(GraphModel& graph)
        : m_graph(graph)
    {}

    /// After a zoom made on the graph: the graph's limits become the next node; what could be redone is gone.
    void StoreZoom();
    /// Nodes past the first intIndex go; 0 empties the list and returns to position 0.
    void RemoveStoredZooms(int intIndex);
    /// The graph has gone to its full extent on its own: position 0, from which every stored zoom can be redone.
    void ReturnToExtents() { m_index = 0; }
    enum class Step
    {
        None,    ///< nothing to step to
        Extents, ///< the graph was told to undo all zoom
        Node     ///< a node's limits were put into the graph
    };
    /// One position back; at 0 or 1 the graph's own undo of all zoom.
    Step UndooZoom();
    /// One position on, if there is one.
    Step RedooZoom();
    /// The node on screen, or the graph's present zoom limits at position 0.
    clsGraphZoomNode GetZoomLimits() const;

    int giZoomIndex() const { return m_index; }
    int count() const { return static_cast<int>(m_nodes.size()); }
    bool canZoomExtents() const { return m_graph.Zoomed() || !m_nodes.empty(); }
    bool canRedo() const { return m_index < count(); }

private:
    static clsGraphZoomNode nodeOf(const graph::ZoomLimits& limits);
    const clsGraphZoomNode& node() const { return m_nodes[static_cast<std::size_t>(m_index) - 1]; }

    GraphModel& m_graph;
    std::vector<clsGraphZoomNode> m_nodes;
    int m_index = 0;
};
