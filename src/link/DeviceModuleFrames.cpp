// SPDX-License-Identifier: GPL-3.0-or-later
// What the instrument does and asks for: its tests, notices and wishes. Its state is read by StatusFrames. Each handler
// reads its fields first: a field that fails leaves the mirror as it was.
#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/SweepRecorder.h"
#include "link/rules/NoticeRules.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "program/Version.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <limits>

namespace {} // namespace

void DeviceModule::registerOwnHandlers()
{
    static constexpr struct
    {
        char code;
        Method method;
    } kMethods[] = {
        {'T', &DeviceModule::notice},       {'a', &DeviceModule::activePen},   {'c', &DeviceModule::extentsWanted},
        {'h', &DeviceModule::endOfProgram}, {'k', &DeviceModule::scriptState}, {'r', &DeviceModule::stateText},
        {'u', &DeviceModule::loopView},
    };
    for (const auto& entry : kMethods)
        registerHandler(entry.code,
                        [this, method = entry.method](const Frame& frame) { return (this->*method)(frame); });
    // Recognised, and nothing to do: "*", "#", "&", "@", "^", "!" and "W" need no entry, no more than unknown codes.
}

void DeviceModule::showTestPoints()
{
    const InstrumentMirror& mirror = m_context.mirror;
    if (m_context.state.gbfPlotting)
        m_panels.showProgress(mirror.iCurrentPoint + 1, mirror.iPointsInTest);
    else
        m_panels.showPoints(mirror.iPointsInTest);
}

bool DeviceModule::notice(const Frame& frame)
{
    std::int32_t severity = 0;
    if (!frame.ParseF(severity))
        return false;
    const InstrumentMirror& mirror = m_context.mirror;
    const QString text = frame.text();
    if (noticerules::isDiscarded(text, severity, mirror.dblFirmwareMajor, mirror.dblFirmwareMinor,
                                 version::majorNumber(), version::minorNumber()))
        return true;
    if (severity == 1)
        m_context.messages.systemBox(text, UserMessages::OkOnly | UserMessages::Stop, tr("**Error"));
    else
        m_context.messages.systemBox(text, UserMessages::OkOnly | UserMessages::Information, tr("**Information"));
    return true;
}

bool DeviceModule::endOfProgram(const Frame&)
{
    m_context.port.mnuWindowCloseAll_Click();
    m_context.port.endProgram();
    return true;
}

bool DeviceModule::stateText(const Frame& frame)
{
    const QByteArray text = frame.text().toUtf8();
    m_panels.show(StatusPanels::State, {text.constData(), static_cast<std::size_t>(text.size())});
    return true;
}

bool DeviceModule::activePen(const Frame& frame)
{
    std::int32_t pen = 0;
    if (!frame.ParseF(pen))
        return false;
    if (PenDocument* const document = m_context.active.get())
        document->setCurrentPen(pen - 1);
    return true;
}

bool DeviceModule::extentsWanted(const Frame&)
{
    if (PenDocument* const document = m_context.active.get())
        document->gbfSendZoom = true;
    if (!m_context.state.gbfPlotting)
        m_recorder->GUISetViewing();
    return true;
}

bool DeviceModule::scriptState(const Frame& frame)
{
    std::int32_t running = 0;
    if (!frame.ParseF(running))
        return false;
    m_context.state.gbfScriptRunning = running != 0;
    Q_EMIT m_events.scriptRunning(running != 0);
    return true;
}

bool DeviceModule::loopView(const Frame& frame)
{
    std::int32_t show = 0;
    if (!frame.ParseF(show))
        return false;
    const PenDocument* const document = m_context.active.get();
    const bool hasLoop = document != nullptr &&
                         (document->pgiTestType() == plot::Impedance || document->pgiTestType() == plot::Reactance);
    if (show == 0 || hasLoop)
        Q_EMIT m_events.loopViewWanted(show != 0);
    return true;
}
