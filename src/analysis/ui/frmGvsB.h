// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/LoopGraph.h"
#include "document/content/ZoomHistory.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>

class ActiveDocument;
class GraphView;
class LoopMarks;
class QLabel;
class QStatusBar;

/// The admittance loop of the active document: susceptance against conductance, with the resonance of the current pen
/// in the status bar and on the curve. Reads the document, never writes to it.
class frmGvsB : public QWidget
{
    Q_OBJECT

public:
    enum Item
    {
        CloseItem = 0,
        QuantityItem = 1, ///< reactance documents only
        MarkPointsItem = 2,
        ZoomExtentsItem = 3,
        UndoZoomItem = 4,
        RedoZoomItem = 5,
        ExportImageItem = 6,
        PrintImageItem = 7,
        CircleItem = 8,
        EqualScaleItem = 9
    };
    static constexpr int kPanels = 6;

    /// Both outlive the window.
    frmGvsB(const ActiveDocument& active, ResonanceEngine& engine, QWidget* parent = nullptr);
    ~frmGvsB() override;

    /// Takes up the active document anew: look, curves and, 10 ms later, results.
    void RefreshGraph();
    /// The same, if another document is active than the one shown.
    void RefreshIfGraphChanged();
    void graphSetApperance();
    void UndoZoom();
    void RedoZoom();

    const QString& strDocumentKey() const { return m_documentKey; }
    int iCurrentPen() const { return m_currentPen; }
    LoopGraph& loop() { return m_loop; }
    GraphView& view() { return *m_view; }
    const LoopMarks& marks() const { return *m_marks; }
    /// False while a refresh or its results are still to come.
    bool isSettled() const { return !m_timer.isActive() && !m_changed.isActive(); }
    /// Panels 1 to 6 of the status bar.
    QString panelText(int panel) const;

    /// What "Export image" and "Print image" do with the graph; the entries are not there without.
    void setImageHandlers(std::function<void(GraphModel&)> exportImage, std::function<void(GraphModel&)> printImage);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenu();
    void showMenuStates();
    void menuClicked(int item, int sub);
    void makeStatusBar();
    void follow(PenDocument* document);
    void Timer_Timer();
    void ShowResults();
    void showMarks();
    void setAxes();
    PenDocument* document() const;

    const ActiveDocument& m_active;
    ResonanceEngine& m_engine;
    LoopGraph m_loop;
    ZoomHistory m_zooms{m_loop.graph()};
    GraphView* m_view;
    LoopMarks* m_marks;
    QStatusBar* m_statusBar;
    std::array<QLabel*, kPanels> m_panels{};
    QLabel* m_readOut = nullptr;
    QTimer m_timer;
    QTimer m_changed; ///< several changes of the document, one refresh
    QString m_documentKey;
    QPointer<PenDocument> m_document;
    int m_currentPen = 0;
    LoopGraph::Quantity m_quantity = LoopGraph::Quantity::Admittance;
    bool m_circleShown = false;
    bool m_equalScale = false;
    std::function<void(GraphModel&)> m_exportImage, m_printImage;
};
