// SPDX-License-Identifier: GPL-3.0-or-later
// Views, zoom and the extent that a sweep follows.
#include "controls/graph/ViewLimits.h"
#include "document/PenDocument.h"
#include "document/content/GraphStyle.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"

#include <QCoreApplication>
#include <QPointer>

#include <cmath>

void PenDocument::graphConfigureTestType(std::int16_t iTestType)
{
    m_view.configureTest(iTestType, m_context.source.limits());
    m_pens.setAllHidden(false);
    graphUpdateDisplayedPens();
    for (int pen = 0; pen < kPens; ++pen)
        graphResetPenName(pen);
    m_pens.storeLocks();
}

void PenDocument::graphConfigureFrequncyView(bool Linear)
{
    m_view.configureFrequency(Linear, m_context.source.limits());
}

void PenDocument::graphSetDefaultView()
{
    const bool linearBefore = m_view.isFrequencyLinear();
    m_view.setDefaults(m_context.preferences);
    graphUpdateDisplayedPens();
    m_popup.showView(m_view);
    forgetZooms();
    const QPointer<PenDocument> self(this);
    // The view of a graph that no one has seen is no change of a zoom: what follows goes on from the full extent.
    m_graph.PEactions(graph::UndoZoom);
    if (!self)
        return;
    m_graph.PEactions(graph::Reinitialise);
    m_zoomExtents = true;
    showZoom();
    Q_EMIT viewChanged();
    if (self && m_view.isFrequencyLinear() != linearBefore)
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
}

void PenDocument::graphSetDefaultApperance()
{
    graphstyle::setDefaults(m_graph, m_context.preferences);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetTickColour(std::uint32_t lColour)
{
    m_graph.setTickColor(lColour);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphUpdateStyle()
{
    graphstyle::update(m_graph);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetAlternateView(bool bfAlternate)
{
    m_view.setAlternate(bfAlternate);
    m_popup.showView(m_view);
    graphUpdateDisplayedPens();
    // The Y limits of stored zooms belong to the other quantity.
    forgetZooms();
    const QPointer<PenDocument> self(this);
    m_graph.PEactions(graph::UndoZoom);
    if (!self)
        return;
    m_zoomExtents = true;
    showZoom();
    Q_EMIT viewChanged();
}

void PenDocument::graphSetPhase(std::int16_t View)
{
    if (!m_view.setPhaseView(View))
        return;
    m_popup.showView(m_view);
    graphUpdateDisplayedPens();
    m_graph.PEactions(graph::Reinitialise);
    Q_EMIT viewChanged();
}

void PenDocument::graphSetRG(std::int16_t View)
{
    if (!m_view.setRGView(View))
        return;
    m_popup.showView(m_view);
    graphUpdateDisplayedPens();
    m_graph.PEactions(graph::Reinitialise);
    Q_EMIT viewChanged();
}

void PenDocument::graphSetAmpScale(std::int16_t iMax, std::int16_t iMin)
{
    m_view.setAmplitudeLimits(iMin, iMax);
    m_graph.PEactions(graph::Reinitialise);
    Q_EMIT viewChanged();
}

void PenDocument::graphSetFrequecyLinear(bool bfXLin)
{
    const bool changes = m_view.isFrequencyLinear() != bfXLin;
    m_view.setFrequencyLinear(bfXLin);
    // Stored X limits are exponents on one scale and plain on the other.
    forgetZooms();
    const QPointer<PenDocument> self(this);
    m_graph.PEactions(graph::UndoZoom);
    if (!self)
        return;
    m_zoomExtents = true;
    showZoom();
    Q_EMIT viewChanged();
    if (changes)
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
}

void PenDocument::graphUpdateDisplayedPens()
{
    m_view.showPens(m_pens);
}

void PenDocument::ImpedanceLinear(bool bfLinear)
{
    m_view.setImpedanceLinear(bfLinear);
    // Y limits of zooms are exponents on one scale and plain on the other.
    const QPointer<PenDocument> self(this);
    if (m_graph.Zoomed() || m_zooms.count() > 0) {
        forgetZooms();
        m_graph.PEactions(graph::UndoZoom);
        if (!self)
            return;
        m_zoomExtents = true;
        showZoom();
    }
    m_graph.PEactions(graph::Reinitialise);
    Q_EMIT viewChanged();
}

void PenDocument::setMarkDataPoints(bool on)
{
    m_graph.setMarkDataPoints(on);
    m_graph.PEactions(graph::Reinitialise);
    SetModified();
    m_popup.showView(m_view);
    showZoom();
    Q_EMIT viewChanged();
}

void PenDocument::popupClicked(int item, int sub)
{
    if (!m_popup.isOffered(item, sub))
        return;
    if (item != PopupView && item != PopupPhase) {
        Q_EMIT popupCommand(item, sub);
        return;
    }
    if (sub < 1)
        return;
    SetModified();
    const QPointer<PenDocument> self(this);
    if (item == PopupView) {
        graphSetAlternateView(sub == 2);
    } else if (pgiTestType() == Reactance) {
        graphSetRG(sub == 2 ? plot::Conductance : plot::Resistance);
        if (self)
            graphSetAlternateView(sub == 2);
    } else if (pgiTestType() == Amplitude) {
        graphSetPhase(static_cast<std::int16_t>(sub == 3 ? plot::NoPhase : sub));
    } else {
        graphSetPhase(sub == 1 ? plot::WholeCycle : plot::NoPhase);
    }
}

// Extent --------------------------------------------------------------------------------------------------------------

void PenDocument::SendGraphExtents()
{
    if (!m_graph.Zoomed() && m_context.source.followsExtent())
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
    else
        UpdateTestExtents(m_testMinFreq, m_testMaxFreq);
}

void PenDocument::UpdateTestExtents(double lMinFreq, double lMaxFreq)
{
    const QPointer<PenDocument> self(this);
    QCoreApplication::processEvents();
    if (!self || m_context.source.extentHeld())
        return;
    m_testMinFreq = lMinFreq;
    m_testMaxFreq = lMaxFreq;
    // An axis of something else, trim codes for one, has no extent to sweep, nor have exponents beyond any frequency.
    if (gbfSendZoom && m_view.isOverFrequency() && std::isfinite(lMinFreq) && std::isfinite(lMaxFreq))
        Q_EMIT testExtentChanged(lMinFreq, lMaxFreq, m_graph.XAxisScaleControl() != graph::ScaleLogarithmic);
}

void PenDocument::sendZoomExtent()
{
    const graph::ZoomLimits& limits = m_graph.zoomLimits();
    UpdateTestExtents(m_view.plainX(limits.ZoomMinX), m_view.plainX(limits.ZoomMaxX));
}

// Zoom ----------------------------------------------------------------------------------------------------------------

void PenDocument::zoomedIn()
{
    m_zoomExtents = false;
    const QPointer<PenDocument> self(this);
    sendZoomExtent();
    if (!self)
        return;
    m_zooms.StoreZoom();
    showZoom();
    gbfSendZoom = true;
}

void PenDocument::zoomedOut()
{
    const QPointer<PenDocument> self(this);
    UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
    if (!self)
        return;
    m_zoomExtents = true;
    m_zooms.ReturnToExtents();
    SetModified();
    showZoom();
}

void PenDocument::ZoomExtents()
{
    // The graph raises ZoomOut, which does the rest.
    if (m_graph.Zoomed())
        m_graph.PEactions(graph::UndoZoom);
}

bool PenDocument::FitView(int axes)
{
    const std::optional<graph::ZoomLimits> limits = graph::fittedLimits(m_graph, axes);
    if (!limits)
        return false;
    // The same view again would be a step of the history that shows nothing.
    if (!m_graph.Zoomed() || !(*limits == m_graph.zoomLimits()))
        m_graph.userZoom(*limits);
    return true;
}

void PenDocument::UndooZoom()
{
    const QPointer<PenDocument> self(this);
    const ZoomHistory::Step step = m_zooms.UndooZoom();
    if (!self)
        return;
    m_zoomExtents = step == ZoomHistory::Step::Extents;
    // Where a zoom was left for the full extent, the graph's ZoomOut has told its extent already.
    if (step == ZoomHistory::Step::Node)
        sendZoomExtent();
    if (!self)
        return;
    showZoom();
    SetModified();
}

void PenDocument::RedooZoom()
{
    if (m_zooms.RedooZoom() == ZoomHistory::Step::None)
        return;
    m_zoomExtents = false;
    const QPointer<PenDocument> self(this);
    sendZoomExtent();
    if (!self)
        return;
    showZoom();
    SetModified();
}

void PenDocument::GetZoomLimits(double& dblZoomMaxX, double& dblZoomMaxY, double& dblZoomMinX, double& dblZoomMinY,
                                double& dblZoomMaxTX, double& dblZoomMinTX) const
{
    const clsGraphZoomNode node = m_zooms.GetZoomLimits();
    dblZoomMaxX = node.dblZoomMaxX;
    dblZoomMaxY = node.dblZoomMaxY;
    dblZoomMinX = node.dblZoomMinX;
    dblZoomMinY = node.dblZoomMinY;
    dblZoomMaxTX = node.dblZoomMaxTX;
    dblZoomMinTX = node.dblZoomMinTX;
}

void PenDocument::RemoveStoredZooms(int intIndex)
{
    m_zooms.RemoveStoredZooms(intIndex);
    showZoom();
}

void PenDocument::forgetZooms()
{
    m_zooms.RemoveStoredZooms(0);
}

void PenDocument::showZoom()
{
    m_popup.showZoom(m_zooms);
    m_graph.PEactions(graph::Redraw);
    Q_EMIT zoomChanged();
}
