// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ui/frmGvsB.h"

#include "analysis/rules/PenFeed.h"
#include "analysis/ui/LoopMarks.h"
#include "controls/graph/ui/GraphView.h"
#include "controls/resonance/ResonanceEngine.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "widgets/ui/ElidingLabel.h"
#include "widgets/ui/QtColour.h"

#include <QKeyEvent>
#include <QLabel>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

constexpr int kSolveDelay = 10;

} // namespace

frmGvsB::frmGvsB(const ActiveDocument& active, ResonanceEngine& engine, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_active(active)
    , m_engine(engine)
    , m_view(new GraphView(m_loop.graph(), this))
    , m_marks(new LoopMarks(*m_view))
    , m_statusBar(new QStatusBar(this))
{
    setObjectName(QStringLiteral("frmGvsB"));
    setWindowTitle(tr("Admittance loop"));
    resize(880, 660);
    m_view->setObjectName(QStringLiteral("peGraph"));
    m_view->setAccessibleName(tr("Admittance loop"));
    m_view->setFocusPolicy(Qt::StrongFocus);
    m_view->installEventFilter(this);
    setFocusProxy(m_view);
    makeStatusBar();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_statusBar);
    m_timer.setSingleShot(true);
    m_timer.setInterval(kSolveDelay);
    connect(&m_timer, &QTimer::timeout, this, &frmGvsB::Timer_Timer);
    m_changed.setSingleShot(true);
    m_changed.setInterval(0);
    connect(&m_changed, &QTimer::timeout, this, [this] {
        if (document() != nullptr && document() == m_document)
            RefreshGraph();
    });
    GraphModel& graph = m_loop.graph();
    connect(&graph, &GraphModel::ZoomIn, this, [this] {
        m_zooms.StoreZoom();
        showMenuStates();
    });
    connect(&graph, &GraphModel::ZoomOut, this, [this] {
        m_zooms.ReturnToExtents();
        showMenuStates();
    });
    connect(&graph, &GraphModel::CursorMoved, this,
            [this](int subset, int point) { m_readOut->setText(m_loop.readOut(subset, point)); });
    connect(&graph, &GraphModel::CustomMenuClicked, this, &frmGvsB::menuClicked);
    buildMenu();
}

// The view reads the graph while it is taken down, and members go before child widgets do.
frmGvsB::~frmGvsB()
{
    delete m_view;
}

void frmGvsB::makeStatusBar()
{
    m_statusBar->setObjectName(QStringLiteral("StatusBar"));
    static constexpr std::array<const char*, kPanels> names = {QT_TR_NOOP("Pen"),
                                                               QT_TR_NOOP("Lower frequency of half the conductance"),
                                                               QT_TR_NOOP("Upper frequency of half the conductance"),
                                                               QT_TR_NOOP("Resonance"),
                                                               QT_TR_NOOP("Impedance at the resonance"),
                                                               QT_TR_NOOP("Quality factor")};
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        m_panels[i] = new QLabel(m_statusBar);
        m_panels[i]->setObjectName(QStringLiteral("panel%1").arg(i + 1));
        m_panels[i]->setTextFormat(Qt::PlainText);
        m_panels[i]->setMargin(2);
        m_panels[i]->setAccessibleName(tr(names[i]));
        m_panels[i]->setToolTip(tr(names[i]));
        m_statusBar->addWidget(m_panels[i]);
    }
    m_readOut = new ElidingLabel(m_statusBar);
    m_readOut->setObjectName(QStringLiteral("readOut"));
    m_readOut->setAccessibleName(tr("Point under the cursor"));
    m_readOut->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // What it says must not make the window wider.
    m_readOut->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_statusBar->addPermanentWidget(m_readOut, 1);
}

PenDocument* frmGvsB::document() const
{
    PenDocument* const active = m_active.get();
    return active != nullptr && penfeed::takesAnalysis(*active) ? active : nullptr;
}

void frmGvsB::setImageHandlers(std::function<void(GraphModel&)> exportImage,
                               std::function<void(GraphModel&)> printImage)
{
    m_exportImage = std::move(exportImage);
    m_printImage = std::move(printImage);
    showMenuStates();
}

void frmGvsB::buildMenu()
{
    GraphModel& graph = m_loop.graph();
    const std::pair<Item, QString> items[] = {
        {CloseItem, tr("Close Window")},
        {QuantityItem, tr("Reactance (X)/ Conductance (G)|Reactance (X)|Conductance (G)")},
        {MarkPointsItem, tr("Mark Data Points")},
        {ZoomExtentsItem, tr("Zoom Extents")},
        {UndoZoomItem, tr("Undo Zoom")},
        {RedoZoomItem, tr("Redo Zoom")},
        {ExportImageItem, tr("Export image")},
        {PrintImageItem, tr("Print image")},
        {CircleItem, tr("Fitted Circle")},
        {EqualScaleItem, tr("Equal Scales")}};
    for (const auto& [item, text] : items)
        graph.setCustomMenu(item, text);
    showMenuStates();
}

void frmGvsB::showMenuStates()
{
    GraphModel& graph = m_loop.graph();
    const auto state = [&graph](Item item, int shown) { graph.setCustomMenuState(item, 0, shown); };
    const auto enabled = [](bool on) { return on ? graph::MenuNormal : graph::MenuGreyed; };
    const bool reactance = m_document && m_document->pgiTestType() == PenDocument::Reactance;
    state(QuantityItem, reactance ? graph::MenuNormal : graph::MenuHidden);
    graph.setCustomMenuChecked(QuantityItem, 1, m_quantity == LoopGraph::Quantity::Impedance);
    graph.setCustomMenuChecked(QuantityItem, 2, m_quantity == LoopGraph::Quantity::Admittance);
    graph.setCustomMenuChecked(MarkPointsItem, 0, graph.MarkDataPoints());
    state(ZoomExtentsItem, enabled(m_zooms.canZoomExtents()));
    state(UndoZoomItem, enabled(graph.Zoomed()));
    state(RedoZoomItem, enabled(m_zooms.canRedo()));
    state(ExportImageItem, m_exportImage ? graph::MenuNormal : graph::MenuHidden);
    state(PrintImageItem, m_printImage ? graph::MenuNormal : graph::MenuHidden);
    graph.setCustomMenuChecked(CircleItem, 0, m_circleShown);
    graph.setCustomMenuChecked(EqualScaleItem, 0, m_equalScale);
}

void frmGvsB::menuClicked(int item, int sub)
{
    GraphModel& graph = m_loop.graph();
    switch (item) {
    case CloseItem:
        close();
        return;
    case QuantityItem: {
        const auto quantity = sub == 1 ? LoopGraph::Quantity::Impedance : LoopGraph::Quantity::Admittance;
        if (quantity != m_quantity) {
            // What was zoomed to means nothing on other axes.
            m_zooms.RemoveStoredZooms(0);
            graph.setZoomed(false);
        }
        m_quantity = quantity;
        if (document() == m_document)
            RefreshGraph();
        break;
    }
    case MarkPointsItem:
        graph.setMarkDataPoints(!graph.MarkDataPoints());
        graph.PEactions(graph::Reinitialise);
        break;
    case ZoomExtentsItem:
        graph.PEactions(graph::UndoZoom);
        break;
    case UndoZoomItem:
        UndoZoom();
        break;
    case RedoZoomItem:
        RedoZoom();
        break;
    case ExportImageItem:
        if (m_exportImage)
            m_exportImage(graph);
        return;
    case PrintImageItem:
        if (m_printImage)
            m_printImage(graph);
        return;
    case CircleItem:
        m_circleShown = !m_circleShown;
        showMarks();
        setAxes();
        break;
    case EqualScaleItem:
        m_equalScale = !m_equalScale;
        setAxes();
        break;
    default:
        return;
    }
    showMenuStates();
}

void frmGvsB::UndoZoom()
{
    m_zooms.UndooZoom();
    m_loop.graph().PEactions(graph::Redraw);
    showMenuStates();
}

void frmGvsB::RedoZoom()
{
    m_zooms.RedooZoom();
    m_loop.graph().PEactions(graph::Redraw);
    showMenuStates();
}

void frmGvsB::follow(PenDocument* document)
{
    if (m_document == document)
        return;
    if (m_document)
        m_document->disconnect(this);
    m_document = document;
    m_zooms.RemoveStoredZooms(0);
    m_loop.graph().setZoomed(false);
    m_quantity = LoopGraph::Quantity::Admittance;
    const auto changed = [this] { m_changed.start(); };
    connect(document, &PenDocument::dataChanged, this, changed);
    connect(document, &PenDocument::pensChanged, this, changed);
    connect(document, &PenDocument::currentPenChanged, this, changed);
    connect(document, &QObject::destroyed, this, &QWidget::close);
}

void frmGvsB::graphSetApperance()
{
    const bool marked = m_loop.graph().MarkDataPoints();
    const bool again = m_document && m_document->gstrKey == m_documentKey;
    if (m_document)
        m_loop.copyLook(*m_document);
    // Marks are this window's own once the document has lent them.
    if (again)
        m_loop.graph().setMarkDataPoints(marked);
}

void frmGvsB::RefreshGraph()
{
    PenDocument* const shown = document();
    if (shown == nullptr)
        return;
    follow(shown);
    m_currentPen = shown->gCurrentPen();
    setWindowTitle(tr("Admittance loop for %1").arg(shown->caption()));
    graphSetApperance();
    m_documentKey = shown->gstrKey;
    m_loop.BuildLoop(*shown, m_engine, m_quantity);
    m_readOut->clear();
    setAxes();
    showMenuStates();
    if (!m_timer.isActive())
        m_timer.start();
}

void frmGvsB::RefreshIfGraphChanged()
{
    const PenDocument* const active = document();
    if (active != nullptr && active->gstrKey != m_documentKey)
        RefreshGraph();
}

void frmGvsB::setAxes()
{
    m_loop.SetLoopAxes({}, m_circleShown);
    // Other limits have labels of other width, which changes the area once more.
    constexpr int kRounds = 2;
    for (int round = 0; m_equalScale && round < kRounds; ++round) {
        m_view->flush();
        const QRect area = m_view->plotArea();
        if (area.height() > 0)
            m_loop.SetLoopAxes(static_cast<double>(area.width()) / area.height(), m_circleShown);
    }
}

void frmGvsB::Timer_Timer()
{
    // Another reader may have had the engine meanwhile.
    if (m_document)
        m_loop.BuildLoop(*m_document, m_engine, m_quantity);
    m_loop.solve(m_engine);
    m_panels[0]->setText(QString::number(m_currentPen + 1));
    ShowResults();
    showMarks();
    if (m_circleShown)
        setAxes();
}

void frmGvsB::ShowResults()
{
    const QStringList texts = m_loop.resultTexts(m_currentPen);
    for (std::size_t i = 1; i < m_panels.size(); ++i)
        m_panels[i]->setText(texts.at(static_cast<qsizetype>(i) - 1));
}

void frmGvsB::showMarks()
{
    const GraphModel& graph = m_loop.graph();
    std::vector<LoopMarks::Mark> marks;
    for (const LoopGraph::Mark& mark : m_loop.marks())
        marks.push_back(
            {mark.name, mark.place, toQColor(graph.SubsetColors(mark.pen)), mark.name == QLatin1String("Fr")});
    m_marks->setMarks(std::move(marks));
    std::vector<LoopMarks::Circle> circles;
    for (int pen = 0; m_circleShown && pen < plot::kPens; ++pen) {
        if (std::vector<QPointF> line = m_loop.circle(pen); !line.empty())
            circles.push_back({std::move(line), toQColor(graph.SubsetColors(pen))});
    }
    m_marks->setCircles(std::move(circles));
}

QString frmGvsB::panelText(int panel) const
{
    return panel >= 1 && panel <= kPanels ? m_panels[static_cast<std::size_t>(panel) - 1]->text() : QString();
}

void frmGvsB::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_equalScale)
        setAxes();
}

void frmGvsB::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

bool frmGvsB::eventFilter(QObject* watched, QEvent* event)
{
    // The view would take the first one for its cursor.
    if (watched == m_view && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        close();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
