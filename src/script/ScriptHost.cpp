// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptHost.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/MainWindowPort.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "script/ScriptPorts.h"
#include "script/ScriptWindows.h"

#include <QCoreApplication>
#include <QPointer>

/// One operation at a time.
class ScriptHost::Busy
{
public:
    explicit Busy(ScriptHost& host)
        : m_host(host.m_busy ? nullptr : &host)
    {
        if (m_host)
            m_host->m_busy = true;
    }
    ~Busy()
    {
        if (m_host)
            m_host->m_busy = false;
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    explicit operator bool() const { return m_host; }

private:
    QPointer<ScriptHost> m_host;
};

ScriptHost::ScriptHost(DeviceModule& device, TestRun& testRun, ScriptChecker& checker, ScriptWindows& windows,
                       QObject* parent)
    : QObject(parent)
    , m_device(device)
    , m_context(device.context())
    , m_testRun(testRun)
    , m_checker(checker)
    , m_windows(windows)
    , m_transfer(device.context().device, device.context().port)
{}

int ScriptHost::tell(const QString& text, int style, const QString& title)
{
    return m_context.messages.message(text, style, title);
}

bool ScriptHost::wait(int rounds, int milliseconds)
{
    const QPointer<ScriptHost> self(this);
    for (int i = 0; self && i < rounds; ++i) {
        m_context.device.Wait(milliseconds);
        m_context.port.processEvents();
    }
    return self;
}

bool ScriptHost::waitForAnswers()
{
    constexpr int kRound = 5; // ms
    const QPointer<ScriptHost> self(this);
    while (self && m_context.device.Connected() && !m_device.answers().complete()) {
        if (!wait(1, kRound))
            return false;
    }
    return self;
}

bool ScriptHost::ensureConnected(int rounds, int milliseconds)
{
    if (m_context.device.Connected())
        return true;
    const QPointer<ScriptHost> self(this);
    m_context.port.processEvents();
    if (!self)
        return false;
    m_context.port.mnuTestDevice_Click();
    if (!self || !m_context.device.Connected())
        return false;
    return wait(rounds, milliseconds);
}

QString ScriptHost::chooseFile(const QString& title)
{
    QString folder = m_context.preferences.value(options::kScriptFiles.option);
    if (folder.isEmpty())
        folder = QCoreApplication::applicationDirPath();
    return m_windows.openFileName(title, tr("MarrowickGraph script files(*.mgs)|*.mgs|All files(*.*)|*.*"), folder);
}

void ScriptHost::mnuRunTestScript_Click()
{
    const Busy busy(*this);
    if (!busy)
        return;
    const QPointer<ScriptHost> self(this);
    const ProgramState& state = m_context.state;
    if ((state.gbfPlotting || state.gbfScriptRunning) && m_testRun.QuestionTestCancel())
        return;
    if (!self || !ensureConnected(11, 1))
        return;
    const QString file = chooseFile(tr("Run Script"));
    if (!self || file.isEmpty())
        return;
    m_windows.refresh();
    check(file);
}

void ScriptHost::checkAndRun(const QString& fileName)
{
    const Busy busy(*this);
    if (busy)
        check(fileName);
}

void ScriptHost::check(const QString& fileName)
{
    const QPointer<ScriptHost> self(this);
    // Judged by what the instrument is, once it has said so.
    if (!waitForAnswers())
        return;
    InstrumentMirror& mirror = m_context.mirror;
    const std::int16_t code = m_checker.CheckScript(fileName, mirror.dblFirmwareVersion, mirror.strDeviceModel);
    if (code == ScriptChecker::Clean) {
        run(fileName);
    } else if (code == ScriptChecker::Warnings) {
        const int reply = tell(tr("Warnings encountered, do you wish to procede?"),
                               UserMessages::OkCancel | UserMessages::Exclamation, tr("Script warning messages"));
        if (!self)
            return;
        if (reply == UserMessages::ReplyOk)
            run(fileName);
        else
            m_windows.showMessages(m_checker);
    } else if (code == ScriptChecker::Errors || code == ScriptChecker::SevereErrors) {
        tell(tr("Errors found in script, click OK to view messages"), UserMessages::OkOnly | UserMessages::Stop,
             tr("Script Error messages"));
        if (self)
            m_windows.showMessages(m_checker);
    }
}

void ScriptHost::runAtStart(const QString& fileName)
{
    const Busy busy(*this);
    if (!busy || !ensureConnected(25, 10) || !m_context.device.Connected())
        return;
    m_context.device.Write(command::stop());
    const QPointer<ScriptHost> self(this);
    if (!wait(25, 10))
        return;
    check(fileName);
    if (self)
        m_context.port.processEvents();
}

bool ScriptHost::send(const QString& fileName)
{
    const QPointer<ScriptHost> self(this);
    if (!waitForAnswers())
        return false;
    m_windows.showTransfer(m_transfer);
    m_windows.refresh();
    m_transfer.DownLoadFile(fileName);
    if (self)
        m_windows.unloadTransfer();
    return self;
}

void ScriptHost::RunScriptFile(const QString& fileName)
{
    const Busy busy(*this);
    if (busy)
        run(fileName);
}

void ScriptHost::run(const QString& fileName)
{
    const QPointer<ScriptHost> self(this);
    if (!send(fileName))
        return;
    m_context.port.mnuWindowCloseAll_Click();
    if (!self || !ensureConnected(10, 10))
        return;
    m_windows.unloadSettings();
    if (!wait(10, 1))
        return;
    if (m_transfer.isHeld())
        startRun(command::run());
    else
        tell(tr("The script is not run. %1").arg(m_transfer.problem()),
             UserMessages::OkOnly | UserMessages::Exclamation, tr("Run Script"));
}

void ScriptHost::startRun(const QString& commands)
{
    m_context.state.gbfScriptRunning = true;
    m_context.device.Write(commands);
}

void ScriptHost::mnuReRunLastTestScript_Click()
{
    const Busy busy(*this);
    if (!busy)
        return;
    const QPointer<ScriptHost> self(this);
    if (m_context.state.gbfPlotting && m_testRun.QuestionTestCancel())
        return;
    if (!self || !ensureConnected(25, 10))
        return;
    m_windows.unloadSettings();
    m_context.port.mnuWindowCloseAll_Click();
    if (self)
        startRun(command::stop() + command::run());
}

void ScriptHost::mnuSendTestScript_Click()
{
    const Busy busy(*this);
    if (!busy || !ensureConnected(0, 0))
        return;
    const QPointer<ScriptHost> self(this);
    const QString file = chooseFile({});
    if (!self || file.isEmpty() || !send(file))
        return;
    const QString problem = m_transfer.problem();
    if (!problem.isEmpty() && !m_transfer.endedSilently())
        tell(problem, UserMessages::OkOnly | UserMessages::Exclamation, tr("Send Test Script"));
}
