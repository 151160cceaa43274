// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/SweepRecorder.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "document/PlotFile.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "instrument/InstrumentRanges.h"
#include "link/DeviceModule.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <algorithm>
#include <limits>

namespace {

std::int16_t toInt16(std::int32_t value)
{
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, std::numeric_limits<std::int16_t>::min(),
                                                              std::numeric_limits<std::int16_t>::max()));
}

} // namespace

SweepRecorder::SweepRecorder(DeviceModule& module, QObject* parent)
    : QObject(parent)
    , m_module(module)
    , m_context(module.context())
    , m_events(module.events())
{
    using Method = bool (SweepRecorder::*)(const Frame&);
    static constexpr struct
    {
        char code;
        Method method;
    } kMethods[] = {
        {'D', &SweepRecorder::testStarted},  {'E', &SweepRecorder::testEnded},      {'F', &SweepRecorder::pointArrived},
        {'H', &SweepRecorder::pointArrived}, {'Y', &SweepRecorder::pointsFinished},
    };
    for (const auto& entry : kMethods)
        m_module.registerHandler(entry.code,
                                 [this, method = entry.method](const Frame& frame) { return (this->*method)(frame); });
    connect(&m_context.active, &ActiveDocument::changed, this, &SweepRecorder::documentActivated);
}

void SweepRecorder::expectStart(PenDocument& document)
{
    m_expected = &document;
    m_startExpected = true;
}

PenDocument* SweepRecorder::documentUnderTest() const
{
    return m_document;
}

void SweepRecorder::endRun()
{
    m_context.state.gbfSweepActive = false;
    m_startExpected = false;
    m_expected = nullptr;
    m_fallenBack.reset();
    if (m_context.state.gbfPlotting)
        GUISetViewing();
    m_document = nullptr;
    m_key.clear();
}

void SweepRecorder::documentActivated(PenDocument* document)
{
    const ProgramState& state = m_context.state;
    m_documentActive = document != nullptr && document == m_document;
    if (!state.gbfPlotting || state.gbfSweepActive || document == nullptr || m_document == nullptr ||
        document == m_document)
        return;
    m_context.device.Write(command::refuse());
    GUISetViewing();
}

void SweepRecorder::GUISetPlotting(PenDocument* document)
{
    if (document == nullptr)
        return;
    m_document = document;
    m_documentActive = document == m_context.active.get();
    m_taking = true;
    m_key = document->gstrKey;
    m_context.state.gbfPlotting = true;
    m_module.panels().show(StatusPanels::State, "Testing");
    GraphModel& peGraph = document->peGraph();
    peGraph.setTXAxisLabel(document->SetVersion());
    plotfile::showVersionInSubTitle(peGraph);
    Q_EMIT m_events.plottingChanged(true);
}

void SweepRecorder::GUISetViewing()
{
    m_context.state.gbfPlotting = false;
    m_fallenBack.reset();
    m_module.panels().show(StatusPanels::State, m_context.device.Connected() ? "Connected" : "Disconnected");
    PenDocument* const document = m_document != nullptr ? m_document.data() : m_context.active.get();
    if (document != nullptr)
        document->SetViewing();
    Q_EMIT m_events.plottingChanged(false);
}

void SweepRecorder::readStatus(const Frame& frame, std::int32_t idleOutput)
{
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfRunning = frame.number(1) != 0;
    // What no instrument can put out is a damaged field.
    if (instrumentranges::isFrequency(mirror, frame.number(2)))
        mirror.dblStartFrequency = frame.number(2);
    m_module.panels().showFrequency(StatusPanels::StartFrequency, mirror.dblStartFrequency);
    if (instrumentranges::isFrequency(mirror, frame.number(3)))
        mirror.dblEndFrequency = frame.number(3);
    m_module.panels().showFrequency(StatusPanels::EndFrequency, mirror.dblEndFrequency);
    m_context.state.gbfSweepActive = frame.number(4) != 0;
    mirror.bfIdleOutput = idleOutput != 0;
    Q_EMIT m_events.changed(MirrorPart::SweepRange);
}

PenDocument* SweepRecorder::documentOfNextSweep() const
{
    if (m_startExpected)
        return m_expected;
    // A further round of a run: its document, or none when that has been closed.
    if (m_context.state.gbfSweepActive && !m_key.isEmpty() && !m_context.state.gbfScriptRunning)
        return m_document;
    return m_context.active.get();
}

bool SweepRecorder::testStarted(const Frame& frame)
{
    PenDocument* const document = documentOfNextSweep();
    if (document == nullptr)
        return true;
    std::int32_t selector = 0, idleOutput = 0;
    if (!frame.ParseF(selector) || !frame.ParseI(idleOutput))
        return false;
    const bool furtherRound = !m_startExpected && m_context.state.gbfSweepActive && document == m_document;
    readStatus(frame, idleOutput);
    if (furtherRound && !m_penTurned && m_lastPoint + 1 >= m_context.mirror.iPointsInTest)
        turnPen(*document);
    GUISetPlotting(document);
    beginSweep();
    return true;
}

void SweepRecorder::beginSweep()
{
    m_startExpected = false;
    m_expected = nullptr;
    m_lastPoint = -1;
    m_fallenBack.reset();
    m_taking = m_document != nullptr && m_documentActive;
    if (!m_taking)
        return;
    const InstrumentMirror& mirror = m_context.mirror;
    // The cursor starts where the sweep does: at its upper end when it runs downward.
    const bool downward = mirror.iSweepMode == 1 || (mirror.iSweepMode != 0 && mirror.iSweepDirection == 1);
    PenDocument::SweepStart start;
    start.frequency = downward ? mirror.dblEndFrequency : mirror.dblStartFrequency;
    start.sampling = m_context.device.SamplingDevice();
    start.multiPen = m_context.state.gbfSweepActive;
    if (!m_document->SetPlotting(start))
        m_context.device.Write(command::refuse());
    else
        Q_EMIT m_events.sweepStarted(m_document);
}

bool SweepRecorder::testEnded(const Frame& frame)
{
    std::int32_t selector = 0, idleOutput = 0;
    if (!frame.ParseF(selector) || !frame.ParseI(idleOutput))
        return false;
    readStatus(frame, idleOutput);
    m_startExpected = m_startExpected && !m_context.state.gbfPlotting;
    GUISetViewing();
    showTestPoints();
    Q_EMIT m_events.sweepEnded(m_document);
    return true;
}

bool SweepRecorder::pointArrived(const Frame& frame)
{
    std::int32_t marker = 0, number = 0;
    if (!frame.ParseF(marker) || !frame.ParseI(number))
        return false;
    m_context.mirror.iCurrentPoint = toInt16(number);
    Point point;
    point.impedance = frame.code() == 'F';
    point.marked = marker != 0;
    point.frequency = frame.number(1);
    point.value = frame.number(2);
    point.phase = frame.number(3);
    point.sign = frame.number(4);
    point.number = number;
    if (point.impedance && point.value == 0) {
        giveUp();
        return true;
    }
    if (!m_context.state.gbfPlotting && m_startExpected && m_expected != nullptr) {
        GUISetPlotting(m_expected);
        beginSweep();
    }
    if (m_document == nullptr) {
        if (m_context.active.get() == nullptr)
            giveUp();
        return true;
    }
    if (m_taking && m_documentActive && numberMayStand(point))
        store(point);
    return true;
}

bool SweepRecorder::numberMayStand(const Point& point)
{
    if (m_fallenBack && point.number == m_fallenBack->number + 1) {
        // A sweep has begun whose "D" was lost.
        const Point first = *m_fallenBack;
        if (m_context.state.gbfSweepActive && !m_penTurned)
            turnPen(*m_document);
        beginSweep();
        store(first);
        return m_document != nullptr;
    }
    m_fallenBack.reset();
    if (!m_context.state.gbfPlotting || point.number >= m_lastPoint)
        return true;
    m_fallenBack = point;
    return false;
}

void SweepRecorder::store(const Point& point)
{
    // Nothing that is called here but a refusal runs an event loop.
    const QPointer<PenDocument> document = m_document;
    if (document == nullptr)
        return;
    const PointAnswer answer =
        point.impedance
            ? document->AddImpedancePoint(point.frequency, point.value, point.phase, point.sign, point.number)
            : document->AddAmplitudePoint(point.frequency, point.value, point.phase, point.sign, point.number);
    if (answer == PointAnswer::Taken) {
        m_lastPoint = point.number;
        m_penTurned = false;
        document->SetModified();
        Q_EMIT m_events.pointStored(document, point.number);
    } else if (answer == PointAnswer::TooMany || answer == PointAnswer::WrongType) {
        refuse(answer);
    }
    if (!point.marked || document == nullptr || document != m_document)
        return;
    document->peGraph().setVertLineAnnotation(0, point.frequency);
    m_module.panels().showProgress(m_context.mirror.iCurrentPoint + 1, m_context.mirror.iPointsInTest);
    document->peGraph().PEactions(point.impedance ? graph::Reinitialise : graph::Redraw);
    Q_EMIT m_events.pointShown(document, point.number);
}

void SweepRecorder::giveUp()
{
    m_context.device.Write(command::stop());
    Q_EMIT m_events.sweepGivenUp();
}

void SweepRecorder::refuse(PointAnswer answer)
{
    const bool wrongType = answer == PointAnswer::WrongType;
    if (wrongType)
        m_context.device.DisableDataEvent();
    giveUp();
    // The user is told once; the points that are still on their way go nowhere instead of raising the same message
    // hundreds of times.
    m_document = nullptr;
    m_key.clear();
    m_context.messages.message(wrongType ? tr("Wrong type of data for graph") : tr("Too many points!"),
                               UserMessages::Stop, tr("Add Point Error"));
}

void SweepRecorder::turnPen(PenDocument& document)
{
    m_penTurned = true;
    document.SetViewing();
    document.SelectNextPen();
}

bool SweepRecorder::pointsFinished(const Frame&)
{
    PenDocument* const document =
        m_document != nullptr || !m_key.isEmpty() ? m_document.data() : m_context.active.get();
    if (document == nullptr)
        return true;
    if (m_context.state.gbfPlotting)
        m_module.panels().showPoints(m_context.mirror.iPointsInTest);
    if (m_taking || document != m_document)
        turnPen(*document);
    Q_EMIT m_events.pointsFinished(document);
    return true;
}

void SweepRecorder::showTestPoints()
{
    m_module.showTestPoints();
}
