// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

#include <QCoreApplication>

class Presentation;
class ZoomHistory;

/// Entries of a document's popup menu, in their order. The numbers stand in plot files and never change.
enum PopupItem
{
    PopupTestSettings = 0,
    PopupViewOptions = 1,
    PopupAddText = 2,
    PopupAnalysis = 3,
    PopupLoop = 4,
    PopupView = 5,  ///< impedance or admittance, gain or loss; hidden for reactance
    PopupPhase = 6, ///< phase view; reactance: impedance or admittance
    PopupMarkPoints = 7,
    PopupCut = 8,
    PopupCopy = 9,
    PopupPaste = 10,
    PopupZoomExtents = 11,
    PopupUndoZoom = 12,
    PopupRedoZoom = 13,
    PopupExport = 14,
    PopupProperties = 15
};
inline constexpr int kPopupItems = PopupProperties + 1;

/// The popup menu as it stands in a graph: texts, states and check marks.
class DocumentPopup
{
    Q_DECLARE_TR_FUNCTIONS(DocumentPopup)

public:
    /// The graph outlives the popup.
    explicit DocumentPopup(GraphModel& graph)
        : m_graph(graph)
    {}

    /// Texts and first states for that type of document; Paste and the zoom steps start greyed.
    void build(const Presentation& view);
    /// Check marks of the view entries and of Mark Data Points.
    void showView(const Presentation& view);
    void showZoom(const ZoomHistory& zooms);
    void showPaste(bool possible);
    /// A plot of another format: what changes or exports it is greyed.
    void limitToViewing();
    bool isOffered(int item, int sub) const;

private:
    GraphModel& m_graph;
};
