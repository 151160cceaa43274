// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/DocumentPopup.h"

#include "document/content/Presentation.h"
#include "document/content/ZoomHistory.h"

#include <array>

void DocumentPopup::build(const Presentation& view)
{
    const QString impedanceViews = tr("Impedance/Admittance|Impedance|Admittance");
    QString quantity = tr("I'm gone!");
    QString phase = impedanceViews;
    if (view.testType() == plot::Impedance) {
        quantity = impedanceViews;
        phase = tr("Phase|360|Off");
    } else if (view.testType() == plot::Amplitude) {
        quantity = tr("Amplitude|Gain|Loss");
        phase = tr("Phase|180|360|Off");
    }
    const std::array<QString, kPopupItems> texts{tr("Test Settings"),
                                                 tr("Graph View Options"),
                                                 tr("Add Text"),
                                                 tr("PZT Analysis"),
                                                 tr("Admittance loop"),
                                                 quantity,
                                                 phase,
                                                 tr("Mark Data Points"),
                                                 tr("Cut"),
                                                 tr("Copy"),
                                                 tr("Paste"),
                                                 tr("Zoom Extents"),
                                                 tr("Undo Zoom"),
                                                 tr("Redo Zoom"),
                                                 tr("Export"),
                                                 tr("Properties")};
    for (int item = 0; item < kPopupItems; ++item) {
        m_graph.setCustomMenu(item, texts[static_cast<std::size_t>(item)]);
        m_graph.setCustomMenuState(item, 0, graph::MenuNormal);
    }
    // Resonance analysis and its loop are for impedance and reactance.
    if (view.testType() != plot::Impedance && view.testType() != plot::Reactance) {
        m_graph.setCustomMenuState(PopupAnalysis, 0, graph::MenuHidden);
        m_graph.setCustomMenuState(PopupLoop, 0, graph::MenuHidden);
    }
    if (view.testType() != plot::Impedance && view.testType() != plot::Amplitude)
        m_graph.setCustomMenuState(PopupView, 0, graph::MenuHidden);
    if (view.testType() == plot::NoTest)
        m_graph.setCustomMenuState(PopupPhase, 0, graph::MenuHidden);
    m_graph.setCustomMenuState(PopupPaste, 0, graph::MenuGreyed);
    m_graph.setCustomMenuState(PopupUndoZoom, 0, graph::MenuGreyed);
    m_graph.setCustomMenuState(PopupRedoZoom, 0, graph::MenuGreyed);
    showView(view);
}

void DocumentPopup::showView(const Presentation& view)
{
    const auto check = [this](int item, std::initializer_list<bool> marks) {
        int sub = 0;
        for (const bool mark : marks)
            m_graph.setCustomMenuChecked(item, ++sub, mark);
    };
    switch (view.testType()) {
    case plot::Amplitude:
        check(PopupView, {!view.isAlternate(), view.isAlternate()});
        check(PopupPhase, {view.phaseView() == plot::HalfCycle, view.phaseView() == plot::WholeCycle,
                           view.phaseView() == plot::NoPhase});
        break;
    case plot::Impedance:
        check(PopupView, {!view.isAlternate(), view.isAlternate()});
        check(PopupPhase, {view.phaseView() == plot::WholeCycle, view.phaseView() == plot::NoPhase});
        break;
    case plot::Reactance:
        check(PopupPhase, {!view.isAlternate(), view.isAlternate()});
        break;
    default:
        break;
    }
    m_graph.setCustomMenuChecked(PopupMarkPoints, 0, m_graph.MarkDataPoints());
}

void DocumentPopup::showZoom(const ZoomHistory& zooms)
{
    const auto state = [](bool enabled) { return enabled ? graph::MenuNormal : graph::MenuGreyed; };
    m_graph.setCustomMenuState(PopupZoomExtents, 0, state(zooms.canZoomExtents()));
    m_graph.setCustomMenuState(PopupUndoZoom, 0, state(m_graph.Zoomed()));
    m_graph.setCustomMenuState(PopupRedoZoom, 0, state(zooms.canRedo()));
}

void DocumentPopup::showPaste(bool possible)
{
    m_graph.setCustomMenuState(PopupPaste, 0, possible ? graph::MenuNormal : graph::MenuGreyed);
}

void DocumentPopup::limitToViewing()
{
    for (const int item :
         {PopupViewOptions, PopupAddText, PopupAnalysis, PopupView, PopupPhase, PopupCut, PopupCopy, PopupExport}) {
        if (m_graph.CustomMenuState(item, 0) != graph::MenuHidden)
            m_graph.setCustomMenuState(item, 0, graph::MenuGreyed);
    }
}

bool DocumentPopup::isOffered(int item, int sub) const
{
    return m_graph.CustomMenuState(item, 0) == graph::MenuNormal &&
           m_graph.CustomMenuState(item, sub) == graph::MenuNormal;
}
