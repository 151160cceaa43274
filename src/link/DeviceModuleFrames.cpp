// SPDX-License-Identifier: GPL-3.0-or-later
// What the instrument does and asks for: its tests, notices and wishes. Its state is read by StatusFrames. Each handler
// reads its fields first: a field that fails leaves the mirror as it was.
#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/Commands.h"
#include "link/DeviceModule.h"
#include "link/NoticeRules.h"
#include "prefs/Preferences.h"
#include "program/MainModule.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <limits>

namespace {

/// Past this number an amplitude document refuses a point.
constexpr std::int32_t kLastAmplitudePoint = 1024;

bool flag(double number)
{
    return number != 0;
}

std::int16_t toInt16(std::int32_t value)
{
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, std::numeric_limits<std::int16_t>::min(),
                                                              std::numeric_limits<std::int16_t>::max()));
}

} // namespace

void DeviceModule::registerOwnHandlers()
{
    static constexpr struct
    {
        char code;
        Method method;
    } kMethods[] = {
        {'D', &DeviceModule::testStarted},    {'E', &DeviceModule::testEnded},     {'F', &DeviceModule::impedancePoint},
        {'H', &DeviceModule::amplitudePoint}, {'T', &DeviceModule::notice},        {'Y', &DeviceModule::pointsFinished},
        {'a', &DeviceModule::activePen},      {'c', &DeviceModule::extentsWanted}, {'h', &DeviceModule::endOfProgram},
        {'k', &DeviceModule::scriptState},    {'r', &DeviceModule::stateText},     {'u', &DeviceModule::loopView},
    };
    for (const auto& entry : kMethods)
        registerHandler(entry.code,
                        [this, method = entry.method](const Frame& frame) { return (this->*method)(frame); });
    // Recognised, and nothing to do: "*", "#", "&", "@", "^", "!" and "W" need no entry, no more than unknown codes.
}

PenDocument* DeviceModule::documentUnderTest() const
{
    PenDocument* const document = m_context.port.activeDocument();
    return document != nullptr && document->gstrKey == m_context.state.gstrPlotKey ? document : nullptr;
}

void DeviceModule::showTestPoints()
{
    const InstrumentMirror& mirror = m_context.mirror;
    if (m_context.state.gbfPlotting)
        m_panels.showProgress(mirror.iCurrentPoint + 1, mirror.iPointsInTest);
    else
        m_panels.showPoints(mirror.iPointsInTest);
}

void DeviceModule::readStatus(const Frame& frame, std::int32_t bfIdleOutput)
{
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfRunning = flag(frame.number(1));
    mirror.dblStartFrequency = frame.number(2);
    m_panels.showFrequency(StatusPanels::StartFrequency, mirror.dblStartFrequency);
    mirror.dblEndFrequency = frame.number(3);
    m_panels.showFrequency(StatusPanels::EndFrequency, mirror.dblEndFrequency);
    m_context.state.gbfSweepActive = flag(frame.number(4));
    mirror.bfIdleOutput = bfIdleOutput != 0;
}

bool DeviceModule::testStarted(const Frame& frame)
{
    if (m_context.port.activeDocument() == nullptr)
        return true;
    std::int32_t selector = 0, idleOutput = 0;
    if (!frame.ParseF(selector) || !frame.ParseI(idleOutput))
        return false;
    readStatus(frame, idleOutput);
    m_plotState.GUISetPlotting();
    if (PenDocument* const document = m_context.port.activeDocument())
        document->SetPlotting();
    return true;
}

bool DeviceModule::testEnded(const Frame& frame)
{
    std::int32_t selector = 0, idleOutput = 0;
    if (!frame.ParseF(selector) || !frame.ParseI(idleOutput))
        return false;
    readStatus(frame, idleOutput);
    m_plotState.GUISetViewing();
    showTestPoints();
    return true;
}

bool DeviceModule::impedancePoint(const Frame& frame)
{
    std::int32_t marker = 0, point = 0;
    if (!frame.ParseF(marker) || !frame.ParseI(point))
        return false;
    m_context.mirror.iCurrentPoint = toInt16(point);
    const double frequency = frame.number(1);
    const double impedance = frame.number(2);
    if (impedance == 0 || m_context.port.activeDocument() == nullptr) {
        m_context.device.Write(command::text(command::kStop));
        return true;
    }
    PenDocument* document = documentUnderTest();
    if (document == nullptr)
        return true;
    const bool accepted = document->pgiTestType != PenDocument::Amplitude;
    document->AddImpedancePoint(frequency, impedance, frame.number(3), frame.number(4), point);
    if (!accepted)
        endOfPoints();
    if (marker == 0)
        return true;
    // A refused point shows a message, and any document may be gone behind it.
    document = documentUnderTest();
    if (document == nullptr)
        return true;
    showMeasured(*document, frequency, 0);
    m_context.port.refreshLoopView();
    return true;
}

bool DeviceModule::amplitudePoint(const Frame& frame)
{
    std::int32_t marker = 0, point = 0;
    if (!frame.ParseF(marker) || !frame.ParseI(point))
        return false;
    m_context.mirror.iCurrentPoint = toInt16(point);
    const double frequency = frame.number(1);
    if (m_context.port.activeDocument() == nullptr) {
        m_context.device.Write(command::text(command::kStop));
        return true;
    }
    PenDocument* document = documentUnderTest();
    if (document == nullptr)
        return true;
    const bool accepted = document->pgiTestType == PenDocument::Amplitude && point <= kLastAmplitudePoint;
    document->AddAmplitudePoint(frequency, frame.number(2), frame.number(3), frame.number(4), point);
    if (!accepted)
        endOfPoints();
    if (marker == 0)
        return true;
    document = documentUnderTest();
    if (document != nullptr)
        showMeasured(*document, frequency, 3);
    return true;
}

void DeviceModule::endOfPoints()
{
    // The user was told once and the test is being stopped; the points that are still on their way go nowhere instead
    // of raising the same message hundreds of times.
    m_context.state.gstrPlotKey.clear();
}

void DeviceModule::showMeasured(PenDocument& document, double frequency, int action)
{
    document.peGraph().setVertLineAnnotation(0, frequency);
    m_panels.showProgress(m_context.mirror.iCurrentPoint + 1, m_context.mirror.iPointsInTest);
    document.peGraph().PEactions(action);
}

bool DeviceModule::notice(const Frame& frame)
{
    std::int32_t severity = 0;
    if (!frame.ParseF(severity))
        return false;
    const InstrumentMirror& mirror = m_context.mirror;
    const QString text = frame.text();
    if (noticerules::isDiscarded(text, severity, mirror.dblFirmwareMajor, mirror.dblFirmwareMinor, MG_VERSION_MAJOR,
                                 MG_VERSION_MINOR))
        return true;
    if (severity == 1)
        m_context.messages.systemBox(text, UserMessages::OkOnly | UserMessages::Stop, tr("**Error"));
    else
        m_context.messages.systemBox(text, UserMessages::OkOnly | UserMessages::Information, tr("**Information"));
    return true;
}

bool DeviceModule::pointsFinished(const Frame&)
{
    const QPointer<PenDocument> document = m_context.port.activeDocument();
    if (document == nullptr)
        return true;
    if (m_context.state.gbfPlotting)
        m_panels.showPoints(m_context.mirror.iPointsInTest);
    document->SetViewing();
    if (document != nullptr)
        document->SelectNextPen();
    return true;
}

bool DeviceModule::activePen(const Frame& frame)
{
    std::int32_t pen = 0;
    if (!frame.ParseF(pen))
        return false;
    if (pen >= 1 && pen <= PenDocument::kPens)
        m_context.port.penSetActive(pen);
    return true;
}

bool DeviceModule::extentsWanted(const Frame&)
{
    if (PenDocument* const document = m_context.port.activeDocument())
        document->gbfSendZoom = true;
    if (!m_context.state.gbfPlotting)
        m_plotState.GUISetViewing();
    return true;
}

bool DeviceModule::endOfProgram(const Frame&)
{
    m_context.port.mnuWindowCloseAll_Click();
    m_context.port.endProgram();
    return true;
}

bool DeviceModule::scriptState(const Frame& frame)
{
    std::int32_t running = 0;
    if (!frame.ParseF(running))
        return false;
    m_context.state.gbfScriptRunning = running != 0;
    if (running == 0)
        m_context.port.closeLoopView();
    return true;
}

bool DeviceModule::stateText(const Frame& frame)
{
    const QByteArray text = frame.text().toUtf8();
    m_panels.show(StatusPanels::State, {text.constData(), static_cast<std::size_t>(text.size())});
    return true;
}

bool DeviceModule::loopView(const Frame& frame)
{
    std::int32_t show = 0;
    if (!frame.ParseF(show))
        return false;
    if (show == 0) {
        m_context.port.closeLoopView();
        return true;
    }
    const PenDocument* const document = m_context.port.activeDocument();
    if (document != nullptr &&
        (document->pgiTestType == PenDocument::Impedance || document->pgiTestType == PenDocument::Reactance))
        m_context.port.showLoopView();
    return true;
}
