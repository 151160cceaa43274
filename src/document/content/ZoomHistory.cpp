// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/ZoomHistory.h"

#include <algorithm>

clsGraphZoomNode ZoomHistory::nodeOf(const graph::ZoomLimits& limits)
{
    clsGraphZoomNode node;
    node.dblZoomMinX = limits.ZoomMinX;
    node.dblZoomMaxX = limits.ZoomMaxX;
    node.dblZoomMinY = limits.ZoomMinY;
    node.dblZoomMaxY = limits.ZoomMaxY;
    node.dblZoomMinRY = limits.ZoomMinRY;
    node.dblZoomMaxRY = limits.ZoomMaxRY;
    node.dblZoomMaxTX = limits.ZoomMaxTX;
    node.dblZoomMinTX = limits.ZoomMinTX;
    return node;
}

void ZoomHistory::StoreZoom()
{
    // A new zoom ends what could be redone; at position 0 that is the whole list.
    RemoveStoredZooms(m_index);
    m_nodes.push_back(nodeOf(m_graph.zoomLimits()));
    m_index = count();
}

void ZoomHistory::RemoveStoredZooms(int intIndex)
{
    const auto kept = static_cast<std::size_t>(std::max(intIndex, 0));
    if (m_nodes.size() > kept)
        m_nodes.resize(kept);
    if (intIndex <= 0)
        m_index = 0;
    // The position never names a node that is gone.
    m_index = std::min(m_index, count());
}

ZoomHistory::Step ZoomHistory::UndooZoom()
{
    if (m_index > 0)
        --m_index;
    if (m_index < 1) {
        m_graph.PEactions(graph::UndoZoom);
        return Step::Extents;
    }
    m_graph.setZoomMaxX(node().dblZoomMaxX);
    m_graph.setZoomMaxY(node().dblZoomMaxY);
    m_graph.setZoomMinX(node().dblZoomMinX);
    m_graph.setZoomMinY(node().dblZoomMinY);
    m_graph.setZoomMaxTX(node().dblZoomMaxTX);
    m_graph.setZoomMinTX(node().dblZoomMinTX);
    m_graph.setZoomed(true);
    return Step::Node;
}

ZoomHistory::Step ZoomHistory::RedooZoom()
{
    if (!canRedo())
        return Step::None;
    ++m_index;
    m_graph.setZoomMaxX(node().dblZoomMaxX);
    m_graph.setZoomMinX(node().dblZoomMinX);
    m_graph.setZoomMaxY(node().dblZoomMaxY);
    m_graph.setZoomMinY(node().dblZoomMinY);
    m_graph.setZoomMaxTX(node().dblZoomMaxTX);
    m_graph.setZoomMinTX(node().dblZoomMinTX);
    m_graph.setZoomed(true);
    return Step::Node;
}

clsGraphZoomNode ZoomHistory::GetZoomLimits() const
{
    return m_index > 0 ? node() : nodeOf(m_graph.zoomLimits());
}
