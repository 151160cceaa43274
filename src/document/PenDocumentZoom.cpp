// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/GraphTexts.h"
#include "document/PenDocument.h"

#include <QPointer>

#include <cmath>

namespace {

/// 10 to the power of a zoom limit; the last digits, noise of the power, are rounded away.
double hertz(double exponent)
{
    const double value = std::pow(10.0, exponent);
    if (!std::isfinite(value) || value == 0.0)
        return value;
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 11.0);
    const double rounded = std::round(value / unit) * unit;
    // Whole hertz come out exactly, whatever the unit's own rounding.
    const double whole = std::round(rounded);
    return std::abs(rounded - whole) < unit ? whole : rounded;
}

} // namespace

double PenDocument::plainX(double zoomLimit) const
{
    const bool exponent =
        m_graph.XAxisLabel() == graphtexts::kFrequency && m_graph.XAxisScaleControl() == graph::ScaleLogarithmic;
    return exponent ? hertz(zoomLimit) : zoomLimit;
}

void PenDocument::sendZoomExtent()
{
    const graph::ZoomLimits& limits = m_graph.zoomLimits();
    UpdateTestExtents(plainX(limits.ZoomMinX), plainX(limits.ZoomMaxX));
}

void PenDocument::zoomedIn()
{
    gbfZoomExtents = false;
    const QPointer<PenDocument> self(this);
    sendZoomExtent();
    if (!self)
        return;
    gcolZooms.StoreZoom();
    updateZoomButtons();
    gbfSendZoom = true;
}

void PenDocument::zoomedOut()
{
    const QPointer<PenDocument> self(this);
    UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
    if (!self)
        return;
    gbfZoomExtents = true;
    gbfModified = true;
    updateZoomButtons();
}

void PenDocument::ZoomExtents()
{
    if (!m_graph.Zoomed())
        return;
    // The graph raises ZoomOut, which does the rest.
    m_graph.PEactions(graph::UndoZoom);
}

void PenDocument::UndooZoom()
{
    const QPointer<PenDocument> self(this);
    const ZoomHistory::Step step = gcolZooms.UndooZoom();
    if (!self)
        return;
    gbfZoomExtents = step == ZoomHistory::Step::Extents;
    // Where a zoom was left for the full extent, the graph's ZoomOut has told the instrument already.
    if (step == ZoomHistory::Step::Node)
        sendZoomExtent();
    if (!self)
        return;
    updateZoomButtons();
    gbfModified = true;
}

void PenDocument::RedooZoom()
{
    if (gcolZooms.RedooZoom() == ZoomHistory::Step::None)
        return;
    gbfZoomExtents = false;
    const QPointer<PenDocument> self(this);
    sendZoomExtent();
    if (!self)
        return;
    updateZoomButtons();
    gbfModified = true;
}

void PenDocument::GetZoomLimits(double& dblZoomMaxX, double& dblZoomMaxY, double& dblZoomMinX, double& dblZoomMinY,
                                double& dblZoomMaxTX, double& dblZoomMinTX) const
{
    const clsGraphZoomNode node = gcolZooms.GetZoomLimits();
    dblZoomMaxX = node.dblZoomMaxX;
    dblZoomMaxY = node.dblZoomMaxY;
    dblZoomMinX = node.dblZoomMinX;
    dblZoomMinY = node.dblZoomMinY;
    dblZoomMaxTX = node.dblZoomMaxTX;
    dblZoomMinTX = node.dblZoomMinTX;
}

void PenDocument::RemoveStoredZooms(int intIndex)
{
    gcolZooms.RemoveStoredZooms(intIndex);
    updateZoomButtons();
}

void PenDocument::updateZoomButtons()
{
    const auto state = [](bool enabled) { return enabled ? graph::MenuNormal : graph::MenuGreyed; };
    m_graph.setCustomMenuState(PopupZoomExtents, 0, state(canZoomExtents()));
    m_graph.setCustomMenuState(PopupUndoZoom, 0, state(canUndoZoom()));
    m_graph.setCustomMenuState(PopupRedoZoom, 0, state(canRedoZoom()));
    m_graph.setCustomMenuChecked(PopupMarkPoints, 0, m_graph.MarkDataPoints());
    m_graph.PEactions(graph::Redraw);
    UpdateToolBars();
}
