// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/PenDocument.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentHost.h"
#include "document/GraphScope.h"
#include "document/GraphTexts.h"
#include "instrument/InstrumentMirror.h"
#include "instrument/clsTestSettings.h"
#include "program/ProgramState.h"

#include <QLocale>
#include <QPointer>
#include <QTime>

#include <algorithm>

namespace {

/// Writes the sampling kind's line type, or the plain one, into the four subsets of a pen.
void setPenLineTypes(GraphModel& graph, int pen, int type)
{
    for (int subset = pen; subset < graph.Subsets(); subset += PenDocument::kPens)
        graph.setSubsetLineTypes(subset, type);
}

} // namespace

PenDocument::PenDocument(const DocumentContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
    , gcolZooms(m_graph)
    , m_gclsTestSettings(std::make_unique<clsTestSettings>())
{
    connect(&m_graph, &GraphModel::ZoomIn, this, &PenDocument::zoomedIn);
    connect(&m_graph, &GraphModel::ZoomOut, this, &PenDocument::zoomedOut);
    connect(&m_graph, &GraphModel::CustomMenuClicked, this, &PenDocument::popupClicked);
    connect(&m_graph, &GraphModel::CursorMoved, this, [this](int subset, int point) {
        const CursorTexts texts = cursorTexts(subset, point);
        Q_EMIT cursorRead(texts.x, texts.y);
    });
}

PenDocument::~PenDocument() = default;

void PenDocument::setCaption(const QString& caption)
{
    if (caption == m_caption)
        return;
    m_caption = caption;
    Q_EMIT captionChanged(m_caption);
}

void PenDocument::SetModified()
{
    gbfModified = true;
}

void PenDocument::PrepareNew(std::int16_t testType, const QString& sCaption)
{
    graphConfigureTestType(testType);
    graphConfigureFrequncyView(false);
    graphSetDefaultApperance();
    graphUpdateStyle();
    InitialiseSettings(sCaption, QString());
}

void PenDocument::InitialiseSettings(const QString& sCaption, const QString& sFile)
{
    readViewFromTitles();
    readShownPens();
    buildPopup();
    setCaption(sCaption);
    gsFileName = sFile;
    gbfModified = false;
    const QPointer<PenDocument> self(this);
    m_context.host.processEvents();
    if (!self)
        return;

    gbfZoomExtents = !m_graph.Zoomed();
    if (gbfZoomExtents)
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
    else
        sendZoomExtent();
    if (!self)
        return;

    if (m_graph.GraphAnnotationText(graphtexts::kSettingsMarker) == graphtexts::kTestSettings) {
        bool understood = false;
        m_gclsTestSettings->InitaliseFromString(m_graph.GraphAnnotationText(graphtexts::kSettingsString), understood);
    }
    readPenLocks();
    gCurrentPen = 0;
    m_gbfInitialised = true;
    gbfSendZoom = true;
    updateZoomButtons();
}

void PenDocument::readViewFromTitles()
{
    const auto title = [this](int axis) {
        const AxisScope scope(m_graph, axis);
        return m_graph.YAxisLabel();
    };
    gbfAltSubset = false;
    const QString first = title(0);
    if (first == graphtexts::kImpedance) {
        pgiTestType = Impedance;
    } else if (first == graphtexts::kGain) {
        pgiTestType = Amplitude;
    } else if (first == graphtexts::kReactance) {
        pgiTestType = Reactance;
    } else if (first == graphtexts::kSwitchedOff) {
        gbfAltSubset = true;
        const QString second = title(1);
        if (second == graphtexts::kAdmittance)
            pgiTestType = Impedance;
        else if (second == graphtexts::kLoss)
            pgiTestType = Amplitude;
        else
            pgiTestType = Reactance;
    }
    m_graph.setWorkingAxis(0);

    gbfXLinear = m_graph.XAxisScaleControl() == graph::ScaleLinear;
    if (pgiTestType == Amplitude || pgiTestType == Impedance) {
        giPhaseView = 0;
        if (title(2) == graphtexts::kPhase)
            giPhaseView = 1;
        if (title(3) == graphtexts::kPhase)
            giPhaseView = 2;
    } else if (pgiTestType == Reactance) {
        giDisplayRG = title(3) == graphtexts::kResistance ? 1 : 2;
    }
}

void PenDocument::readShownPens()
{
    gbfPenHide.fill(true);
    const int offset = gbfAltSubset ? kPens : 0;
    for (int slot = 0; slot < kPens; ++slot) {
        int entry = m_graph.RandomSubsetsToGraph(slot);
        // The alternate view keeps its subsets in the second ten slots and leaves -1 in the first.
        if (gbfAltSubset && entry < 0)
            entry = m_graph.RandomSubsetsToGraph(slot + kPens);
        // A 0 can only stand for pen 0, in front: further on the list has ended.
        if (entry == 0 && slot > 0)
            break;
        if (entry < 0 || entry >= offset + kPens)
            continue;
        const int pen = entry >= kPens ? entry - offset : entry;
        gbfPenHide[static_cast<std::size_t>(pen)] = false;
    }
}

void PenDocument::readPenLocks()
{
    const QString text = m_graph.MultiSubTitles(0);
    for (int pen = 0; pen < kPens; ++pen)
        gbfPenLock[static_cast<std::size_t>(pen)] = pen < text.size() && text.at(pen) == QLatin1Char('X');
}

QString PenDocument::lockText() const
{
    QString text(kPens, QLatin1Char('0'));
    for (int pen = 0; pen < kPens; ++pen) {
        if (isLocked(pen))
            text[pen] = QLatin1Char('X');
    }
    return text;
}

void PenDocument::SetPlotting()
{
    if (!m_context.state.gbfPlotting)
        return;
    if (TestCurrentPenLock() && !(m_context.state.gbfSweepActive && SelectNextPen())) {
        m_context.device.Write(QStringLiteral("x\r"));
        return;
    }
    graphEraseLine(gCurrentPen);
    if (m_graph.SubsetLabels(gCurrentPen) == QStringLiteral("Pen %1").arg(gCurrentPen + 1)) {
        const QString now = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
        m_graph.setSubsetLabels(gCurrentPen, now);
        m_graph.setSubsetLabels(gCurrentPen + kPens, now);
    }
    if (m_context.device.SamplingDevice())
        setPenLineTypes(m_graph, gCurrentPen, graph::LinePointsJoined);

    // The cursor starts where the sweep does: at its upper end when it runs downward.
    const InstrumentMirror& mirror = m_context.mirror;
    const bool downward = mirror.iSweepMode == 1 || (mirror.iSweepMode != 0 && mirror.iSweepDirection == 1);
    m_graph.setVertLineAnnotationColor(0, m_graph.SubsetColors(gCurrentPen));
    m_graph.setVertLineAnnotationType(0, 0);
    m_graph.setVertLineAnnotation(0, downward ? mirror.dblEndFrequency : mirror.dblStartFrequency);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::SetViewing()
{
    if (m_context.device.SamplingDevice())
        setPenLineTypes(m_graph, gCurrentPen, graph::LineSolid);
    m_graph.setVertLineAnnotationType(0, graph::kLineVanished);
    m_graph.setVertLineAnnotation(0, 0);
    for (const int axis : {0, 1}) {
        const AxisScope scope(m_graph, axis);
        m_graph.setPlottingMode(false);
    }
    m_graph.PEactions(graph::Reinitialise);
    SniffClipboardData();
}
