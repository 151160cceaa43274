// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/PenDocument.h"

#include "document/ActiveDocument.h"
#include "document/content/GraphScope.h"
#include "document/content/GraphStyle.h"
#include "document/content/GraphTexts.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"
#include "program/UserMessages.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTime>

using namespace graphtexts;

namespace {

/// Pens that carry the mask lines while masks are on.
bool isMaskPen(int pen)
{
    return pen == 8 || pen == 9;
}

} // namespace

PenDocument::PenDocument(const DocumentContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
    , m_pens(m_graph)
    , m_view(m_graph)
    , m_popup(m_graph)
    , m_zooms(m_graph)
    , m_points(m_graph)
{
    connect(&m_graph, &GraphModel::ZoomIn, this, &PenDocument::zoomedIn);
    connect(&m_graph, &GraphModel::ZoomOut, this, &PenDocument::zoomedOut);
    connect(&m_graph, &GraphModel::CustomMenuClicked, this, &PenDocument::popupClicked);
    connect(&m_graph, &GraphModel::CursorMoved, this, [this](int subset, int point) {
        const Presentation::CursorTexts texts = m_view.cursorTexts(subset, point);
        m_cursorSubset = subset;
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

void PenDocument::setModified(bool modified)
{
    if (modified == m_modified)
        return;
    m_modified = modified;
    Q_EMIT modifiedChanged(modified);
}

void PenDocument::forgetCursor(int pen)
{
    if (m_cursorSubset < 0 || (pen >= 0 && m_cursorSubset % kPens != pen))
        return;
    m_cursorSubset = -1;
    Q_EMIT cursorRead(QString(), QString());
}

// Making and reading --------------------------------------------------------------------------------------------------

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
    m_view.readTitles();
    m_view.readShownPens(m_pens);
    m_popup.build(m_view);
    setCaption(sCaption);
    m_fileName = sFile;
    setModified(false);
    const QPointer<PenDocument> self(this);
    QCoreApplication::processEvents();
    if (!self)
        return;

    m_zoomExtents = !m_graph.Zoomed();
    if (m_zoomExtents)
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
    else
        sendZoomExtent();
    if (!self)
        return;

    if (m_graph.GraphAnnotationText(kSettingsMarker) == kTestSettings) {
        bool understood = false;
        m_testSettings.InitaliseFromString(m_graph.GraphAnnotationText(kSettingsString), understood);
    }
    m_pens.readLocks();
    m_currentPen = 0;
    m_initialised = true;
    gbfSendZoom = true;
    showZoom();
    UpdateToolBars();
    Q_EMIT viewChanged();
}

// A test into the document --------------------------------------------------------------------------------------------

bool PenDocument::SetPlotting(const SweepStart& start)
{
    if (TestCurrentPenLock() && !(start.multiPen && SelectNextPen()))
        return false;
    graphEraseLine(m_currentPen);
    if (!m_pens.isNamedByUser(m_currentPen)) {
        m_pens.setName(m_currentPen, QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
        Q_EMIT pensChanged();
    }
    m_sampling = start.sampling;
    if (m_sampling)
        m_pens.setLineType(m_currentPen, graph::LinePointsJoined);
    m_graph.setVertLineAnnotationColor(0, m_pens.colour(m_currentPen));
    m_graph.setVertLineAnnotationType(0, 0);
    m_graph.setVertLineAnnotation(0, start.frequency);
    m_graph.PEactions(graph::Reinitialise);
    return true;
}

void PenDocument::SetViewing()
{
    if (m_sampling)
        m_pens.setLineType(m_currentPen, graph::LineSolid);
    m_graph.setVertLineAnnotationType(0, graph::kLineVanished);
    m_graph.setVertLineAnnotation(0, 0);
    for (const int axis : {0, 1}) {
        const AxisScope scope(m_graph, axis);
        m_graph.setPlottingMode(false);
    }
    m_graph.PEactions(graph::Reinitialise);
    SniffClipboardData();
}

PointAnswer PenDocument::taken(bool written)
{
    if (!written)
        return PointAnswer::NoRoom;
    if (m_pens.isHidden(m_currentPen))
        UpdatePenHide(m_currentPen, false);
    return PointAnswer::Taken;
}

PointAnswer PenDocument::AddAmplitudePoint(double dblFreq, double dblAmp, double dblPhase, double dblSign,
                                           std::int32_t lPoint)
{
    if (lPoint > plot::kPoints)
        return PointAnswer::TooMany;
    if (pgiTestType() != Amplitude)
        return PointAnswer::WrongType;
    if (TestCurrentPenLock())
        return PointAnswer::Locked;
    return taken(m_points.writeAmplitude(m_currentPen, lPoint, dblFreq, dblAmp, dblPhase, dblSign));
}

PointAnswer PenDocument::AddImpedancePoint(double dblFreq, double l_dblImp, double dblPhase, double dblSign,
                                           std::int32_t lPoint)
{
    if (pgiTestType() == Reactance)
        return CalculateReactance(dblFreq, l_dblImp, dblPhase, dblSign, lPoint);
    if (pgiTestType() != Impedance)
        return PointAnswer::WrongType;
    if (TestCurrentPenLock())
        return PointAnswer::Locked;
    return taken(m_points.writeImpedance(m_currentPen, lPoint, dblFreq, l_dblImp, dblPhase, dblSign));
}

PointAnswer PenDocument::CalculateReactance(double dblFreq, double dblImp, double dblPhase, double dblSign,
                                            std::int32_t lPoint)
{
    if (pgiTestType() != Reactance)
        return PointAnswer::WrongType;
    if (TestCurrentPenLock())
        return PointAnswer::Locked;
    return taken(m_points.writePolarAsReactance(m_currentPen, lPoint, dblFreq, dblImp, dblPhase * dblSign));
}

PointAnswer PenDocument::CalculateImpedance(double dblFreq, double dblReactance, double dblResistance,
                                            std::int32_t lPoint)
{
    if (pgiTestType() != Impedance)
        return PointAnswer::WrongType;
    if (TestCurrentPenLock())
        return PointAnswer::Locked;
    return taken(m_points.writeRectangularAsImpedance(m_currentPen, lPoint, dblFreq, dblReactance, dblResistance));
}

PointAnswer PenDocument::AddReactancePoint(double dblFreq, double dblReac, double dblRes, double dblSusc,
                                           double dblCond, std::int32_t lPoint)
{
    if (pgiTestType() != Reactance)
        return PointAnswer::WrongType;
    if (TestCurrentPenLock())
        return PointAnswer::Locked;
    return taken(m_points.writeReactance(m_currentPen, lPoint, dblFreq, dblReac, dblRes, dblSusc, dblCond));
}

// Pens ----------------------------------------------------------------------------------------------------------------

bool PenDocument::hasMasks() const
{
    const auto& cells = m_graph.properties().tables[kMaskTable].cells;
    return !cells.empty() && cells.front().TAText == kMask;
}

std::int16_t PenDocument::TogglePenLock(int Index)
{
    if (!Pens::isPen(Index))
        return 0;
    const PenDocument* active = m_context.active.get();
    if (isMaskPen(Index) && active != nullptr && active->hasMasks()) {
        const std::int16_t lock = GetPenLock(Index);
        m_context.messages.message(tr("Disable mask before unlocking pen"), UserMessages::Exclamation,
                                   tr("Masks Enabled"));
        return lock;
    }
    m_pens.setLocked(Index, !m_pens.isLocked(Index));
    SetModified();
    UpdateToolBars();
    return GetPenLock(Index);
}

void PenDocument::UpdatePenLock(int Index, bool bfLock)
{
    m_pens.setLocked(Index, bfLock);
    UpdateToolBars();
}

void PenDocument::LockAllPens()
{
    m_pens.setAllLocked(true);
    SetModified();
    UpdateToolBars();
}

void PenDocument::UnlockAllPens()
{
    m_pens.setAllLocked(false);
    SetModified();
    UpdateToolBars();
}

std::int16_t PenDocument::TogglePenDisplay(int Index)
{
    if (!Pens::isPen(Index))
        return 0;
    UpdatePenHide(Index, !m_pens.isHidden(Index));
    if (m_pens.areAllHidden()) {
        DisplayAllPens();
        UpdatePenHide(Index, m_pens.isHidden(Index));
    }
    return GetPenDisplay(Index);
}

void PenDocument::UpdatePenHide(int Index, bool bfHide)
{
    if (!Pens::isPen(Index))
        return;
    m_pens.setHidden(Index, bfHide);
    graphUpdateDisplayedPens();
    SetModified();
    UpdateToolBars();
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::DisplayAllPens()
{
    m_pens.setAllHidden(false);
    graphUpdateDisplayedPens();
    SetModified();
    UpdateToolBars();
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::SetPenColour(int Index, std::uint32_t Colour)
{
    if (!Pens::isPen(Index))
        return;
    m_pens.setColour(Index, Colour);
    m_graph.PEactions(graph::Reinitialise);
    SetModified();
    UpdateToolBars();
}

bool PenDocument::SelectNextPen()
{
    if (m_context.preferences.value(options::kLockPenAfterPlot))
        m_pens.setLocked(m_currentPen, true);
    const auto next = m_pens.nextUnlocked(m_currentPen);
    if (next)
        setCurrentPen(*next);
    UpdateToolBars();
    return next.has_value();
}

void PenDocument::setCurrentPen(int Index)
{
    if (!Pens::isPen(Index))
        return;
    m_currentPen = static_cast<std::int16_t>(Index);
    Q_EMIT currentPenChanged(Index);
    UpdateToolBars();
}

void PenDocument::UpdateToolBars()
{
    if (m_initialised)
        Q_EMIT pensChanged();
}

void PenDocument::graphEraseLine(int Index)
{
    if (!m_pens.isLocked(Index) && m_pens.hasData(Index))
        Q_EMIT aboutToErase(Index);
    if (!m_pens.erase(Index))
        return;
    SetModified();
    forgetCursor(Index);
    Q_EMIT dataChanged(Index);
}

void PenDocument::tellReplacing(int Index)
{
    if (m_pens.hasData(Index))
        Q_EMIT aboutToErase(Index);
}

void PenDocument::tellReplaced(int Index)
{
    m_graph.PEactions(graph::Reinitialise);
    SetModified();
    forgetCursor(Index);
    Q_EMIT dataChanged(Index);
}

void PenDocument::setPenName(int Index, const QString& name)
{
    m_pens.setName(Index, name);
    SetModified();
    UpdateToolBars();
}

void PenDocument::graphResetPenName(int Index)
{
    if (!Pens::isPen(Index))
        return;
    m_pens.resetName(Index);
    SetModified();
    UpdateToolBars();
}

void PenDocument::graphResetData()
{
    m_graph.setMainTitle(kNoTitle);
    m_graph.setSubTitle(QString());
    for (int pen = 0; pen < kPens; ++pen) {
        graphResetPenName(pen);
        graphEraseLine(pen);
    }
}

void PenDocument::KeyPressed(QChar key)
{
    if (key >= QLatin1Char('0') && key <= QLatin1Char('9'))
        setCurrentPen((key.unicode() - u'0' + kPens - 1) % kPens);
    else if (key == QLatin1Char('L') || key == QLatin1Char('l'))
        TogglePenLock(m_currentPen);
    else if (key == QLatin1Char('V') || key == QLatin1Char('v'))
        TogglePenDisplay(m_currentPen);
}
