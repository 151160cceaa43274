// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/DeviceModule.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/DocumentFollower.h"
#include "link/SweepRecorder.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "program/Version.h"

#include <algorithm>
#include <cstring>

namespace {

/// Stands in while no settings dialog is open.
SettingsDialogPort& noDialog()
{
    static SettingsDialogPort none;
    return none;
}

/// As many bytes as can wait without a whole frame being there.
constexpr qint64 kLessThanAFrame = static_cast<qint64>(Frame::kLength) - 1;

constexpr int kLongestSilence = 5000; // ms; an instrument answers within one

} // namespace

DeviceModule::DeviceModule(const LinkContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
    , m_panels(context.port)
    , m_dialog(&noDialog())
    , m_statusFrames(*this)
{
    m_panels.follow(m_events, m_context.mirror, m_context.state);
    registerOwnHandlers();
    m_recorder = std::make_unique<SweepRecorder>(*this);
    m_follower = std::make_unique<DocumentFollower>(m_context, m_events);
    m_silence.setSingleShot(true);
    m_silence.setInterval(kLongestSilence);
    connect(&m_silence, &QTimer::timeout, this, &DeviceModule::tellSilence);
    KorvaLink* const device = &m_context.device;
    connect(device, &KorvaLink::DeviceConnected, this, &DeviceModule::deviceConnected);
    connect(device, &KorvaLink::DataReceived, this, &DeviceModule::DeviceReadInput);
    connect(device, &KorvaLink::Disconnected, this, &DeviceModule::deviceDisconnected);
    connect(device, &KorvaLink::DeviceAttached, this, &DeviceModule::deviceAttached);
    connect(device, &KorvaLink::WriteBufferFull, this, &DeviceModule::writeBufferFull);
}

DeviceModule::~DeviceModule() = default;

void DeviceModule::setSettingsDialog(SettingsDialogPort* dialog)
{
    m_dialog = dialog != nullptr ? dialog : &noDialog();
}

void DeviceModule::registerHandler(char code, Handler handler)
{
    m_handlers[static_cast<unsigned char>(code)] = std::move(handler);
}

void DeviceModule::DeviceReadInput()
{
    KorvaLink& device = m_context.device;
    device.DisableDataEvent();
    // An inner pass begins with what the outer one has read and not handled yet: frames keep their order.
    bool good = handleBuffered();
    qint64 n = device.BytesAvailable();
    while (good && n > kLessThanAFrame) {
        n = device.Read(m_strRxBuffer.data(), std::min<qint64>(n, kRxBufferSize - 1));
        if (n <= 0)
            break;
        m_rxBegin = 0;
        m_rxEnd = static_cast<std::size_t>(n);
        good = handleBuffered();
        n = device.BytesAvailable();
    }
    device.EnableDataEvent();
}

bool DeviceModule::handleBuffered()
{
    // Handlers may run an inner pass or lose the link: the buffer's bounds are read anew for each frame.
    while (m_rxBegin < m_rxEnd) {
        const char* const first = m_strRxBuffer.data() + m_rxBegin;
        const std::size_t waiting = m_rxEnd - m_rxBegin;
        const void* const found = std::memchr(first, '\r', waiting);
        if (found == nullptr) {
            m_rxBegin = m_rxEnd;
            break;
        }
        const auto p = static_cast<std::size_t>(static_cast<const char*>(found) - first) + 1;
        m_rxBegin += std::min(p + 1, waiting);
        if (!DeviceFrameReceived(first, p + 1)) {
            m_rxBegin = m_rxEnd = 0;
            return false;
        }
    }
    return true;
}

bool DeviceModule::DeviceFrameReceived(const char* bytes, std::size_t p1)
{
    if (p1 != Frame::kLength || bytes[0] == ':' || bytes[1] != ':')
        return true;
    if (m_onlyCode != 0 && bytes[0] != m_onlyCode)
        return true;
    return DeviceDispatch(Frame(bytes));
}

bool DeviceModule::DeviceDispatch(const Frame& frame)
{
    const Handler& handler = m_handlers[static_cast<unsigned char>(frame.code())];
    return !handler || handler(frame);
}

void DeviceModule::DeviceEnquire()
{
    DeviceSendSettings();
    const QString enquire = command::enquire(version::shortText());
    // Twice on purpose: the first may be eaten by what the instrument still has in its own input.
    for (int i = 0; i < 2; ++i) {
        m_context.device.Flush();
        m_context.device.Write(enquire);
    }
}

void DeviceModule::DeviceInitialise()
{
    m_context.mirror.reset();
    m_context.device.SetDeviceType(0);
    m_context.state.gbfDeviceReady = false;
    DeviceLoadSettings();
}

void DeviceModule::DeviceReset()
{
    m_context.device.Close();
    m_rxBegin = m_rxEnd = 0;
    m_context.state.gbfDeviceReady = false;
    DeviceInitialise();
}

void DeviceModule::answerComplete()
{
    showTestPoints();
    // Behind the first answer the instrument is told what to do, and the user may be setting it: a second one is older
    // than that.
    if (m_settingsGivenTo != m_context.mirror.strDeviceSerial) {
        m_context.state.gbfDeviceReady = true;
        m_silence.stop();
        if (m_silenceTold)
            m_panels.show(StatusPanels::State, "Connected");
        m_silenceTold = false;
        giveSettings();
    }
    Q_EMIT m_events.stateComplete();
}

void DeviceModule::serialNumberTold()
{
    // The state has come ahead of the name: whose settings count is known only now. Behind both answers it is too late,
    // a sweep may be under way.
    if (m_settingsGivenTo == InstrumentMirror().strDeviceSerial && !m_answers.complete())
        giveSettings();
}

void DeviceModule::giveSettings()
{
    m_settingsGivenTo = m_context.mirror.strDeviceSerial;
    DeviceLoadSettings();
    DeviceSendSettings();
    DeviceSendSamples();
}

void DeviceModule::deviceConnected()
{
    m_rxBegin = m_rxEnd = 0;
    m_settingsGivenTo.reset();
    m_statusFrames.forgetReports();
    if (m_context.mirror.strDeviceSerial != InstrumentMirror().strDeviceSerial) {
        // Another instrument was opened without the first having been unplugged: nothing of the first goes to it.
        if (m_context.state.gbfDeviceReady) {
            DeviceSaveSettings();
            Q_EMIT m_events.aboutToForget();
        }
        m_context.state.gbfScriptRunning = false;
        m_recorder->endRun();
        DeviceInitialise();
    }
    Q_EMIT m_events.connected();
    m_silence.start();
    DeviceEnquire();
    m_context.port.unloadDeviceChooser();
    // A wizard that listens to one code alone has the instrument for itself.
    if (m_onlyCode == 0 && m_context.preferences.value(options::kOpenSettings))
        m_context.port.showSettings();
}

void DeviceModule::deviceDisconnected()
{
    m_silence.stop();
    m_silenceTold = false;
    // What a message has kept waiting came before the loss.
    if (m_rxBegin < m_rxEnd)
        DeviceReadInput();
    if (m_context.device.Connected())
        return; // a handler has opened another one
    if (m_context.state.gbfDeviceReady)
        Q_EMIT m_events.aboutToForget();
    m_context.device.Close();
    m_recorder->endRun();
    m_context.state.gbfScriptRunning = false;
    DeviceReset();
    Q_EMIT m_events.lost();
    m_context.port.unloadDeviceWindows();
    if (m_context.preferences.value(options::kNotifyDevice))
        m_context.messages.message(tr("Device link disconnected"), UserMessages::OkOnly | UserMessages::Information,
                                   tr("Device disconnected"));
    else
        m_context.port.processEvents();
}

void DeviceModule::deviceAttached()
{
    if (m_onlyCode == 0 && m_context.preferences.value(options::kPromptDevice))
        m_context.port.mnuTestDevice_Click();
}

void DeviceModule::tellSilence()
{
    if (!m_context.device.Connected() || m_context.state.gbfPlotting || m_onlyCode != 0)
        return;
    m_silenceTold = true;
    m_panels.show(StatusPanels::State, "No answer");
}

void DeviceModule::writeBufferFull()
{
    m_context.messages.message(tr("Device_WriteBufferFull"), UserMessages::OkOnly | UserMessages::Exclamation,
                               tr("Device Communications"));
}
