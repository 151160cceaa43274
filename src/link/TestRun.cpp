// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/TestRun.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/DocumentFollower.h"
#include "link/SweepRecorder.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QPointer>
#include <QScopeGuard>

namespace {

constexpr int kDeviceIndices = 10;

} // namespace

TestRun::TestRun(DeviceModule& device, QObject* parent)
    : QObject(parent)
    , m_device(device)
    , m_context(device.context())
{}

int TestRun::tell(const QString& text, int style, const QString& title)
{
    return m_context.messages.message(text, style, title);
}

bool TestRun::ensureConnected()
{
    if (!m_context.device.Connected())
        m_context.port.mnuTestDevice_Click();
    const AnswerWatch& answers = m_device.answers();
    const bool late = answers.late();
    const InstrumentMirror wanted = m_context.mirror;
    const std::optional<QString> givenTo = m_device.settingsGivenTo();
    for (int i = 0; (i < kAnswerRounds || !answers.complete()) && m_context.device.Connected(); ++i) {
        m_context.device.Wait(m_answerWait);
        m_context.port.processEvents();
    }
    if (!m_context.device.Connected())
        return false;
    // Where the instrument has been given its stored settings only now, what stood here before was nobody's.
    if (late && givenTo == m_device.settingsGivenTo())
        restoreWanted(wanted);
    return true;
}

void TestRun::restoreWanted(const InstrumentMirror& wanted)
{
    // Behind the second answer the instrument has told what it was given by the first, which may be older than what the
    // user has set meanwhile.
    InstrumentMirror& mirror = m_context.mirror;
    mirror.dblStartFrequency = wanted.dblStartFrequency;
    mirror.dblEndFrequency = wanted.dblEndFrequency;
    mirror.dblIdleFrequency = wanted.dblIdleFrequency;
    mirror.iAttenuationCode = wanted.iAttenuationCode;
    mirror.iSweepMode = wanted.iSweepMode;
}

void TestRun::mnuTestStart_Click()
{
    if (m_starting)
        return;
    m_starting = true;
    const auto done = qScopeGuard([this] { m_starting = false; });

    if (!m_context.state.gbfPlotting) {
        if (!ensureConnected())
            return;
        m_device.DeviceSaveSettings();
        SendSweepRange();
        if (m_context.active.get() == nullptr) {
            m_context.port.fileNew();
            return;
        }
    }
    startTest();
}

void TestRun::startTest()
{
    const QPointer<PenDocument> document = m_context.active.get();
    if (document == nullptr)
        return;
    if (document->gbfSendZoom)
        document->SendGraphExtents(); // processes events
    if (document == nullptr)
        return;
    if (document->peGraph().XAxisLabel().compare(QLatin1String("Frequency - Hz"), Qt::CaseInsensitive) != 0) {
        tell(tr("Graph not suitable for data!"), UserMessages::OkOnly | UserMessages::Exclamation,
             tr("Wrong graph type!"));
        return;
    }
    if (document->GetPenLock(document->gCurrentPen()) == 1 && !document->SelectNextPen()) {
        tell(tr("All pens are locked!"), UserMessages::OkOnly | UserMessages::Information, tr("Information"));
        return;
    }
    endMonitor();
    if (document->giDocumentVersion() > 1) {
        tell(tr("New data format. Please check for updates."), UserMessages::OkOnly | UserMessages::Information,
             tr("Data acquisition not possible"));
        return;
    }
    // Before the overwrite question on purpose: a refusal leaves them in force.
    writeTestSettings();
    if (!QuestionOverwritePen(*document))
        return;
    // The answer to the question was about this document and this link.
    if (document == nullptr || m_context.active.get() != document || !m_context.device.Connected())
        return;
    document->peGraph().PEactions(graph::Reinitialise);
    m_device.follower().selectPin();
    m_device.recorder().expectStart(*document);

    // The leading stop ends whatever still runs in the instrument.
    QString start = command::stop();
    switch (document->pgiTestType()) {
    case PenDocument::Amplitude:
        start += command::ampTest();
        break;
    case PenDocument::Impedance:
        start += command::impTest();
        break;
    default:
        m_context.device.Write(command::phase(true));
        start += command::impTest();
        break;
    }
    m_context.device.Write(start);
}

void TestRun::endMonitor()
{
    SettingsDialogPort& dialog = m_device.settingsDialog();
    if (dialog.monitorChecked())
        dialog.uncheckMonitor();
}

void TestRun::writeTestSettings()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const QString commands[] = {
        command::idleFreq(mirror.dblIdleFrequency), command::points(mirror.iNumPoints),
        command::atten(mirror.iAttenuationCode),    command::repeat(mirror.bfRepeat),
        command::sweepMode(mirror.iSweepMode),      command::period(mirror.iTestPeriod),
        command::phase(mirror.bfPhaseOn),
    };
    for (const QString& text : commands)
        m_context.device.Write(text);
}

void TestRun::SendSweepRange()
{
    if (!m_context.mirror.bfGraphExtents)
        return;
    const SettingsDialogPort& dialog = m_device.settingsDialog();
    const QString lowText = dialog.lowFrequencyText();
    const QString highText = dialog.highFrequencyText();
    // Without a settings dialog there are no texts, and no limits to take from them.
    const auto send = [this](const QString& text, QString (*command)(double), double present) {
        if (text.isEmpty())
            return;
        QString trimmed = text;
        const double value = values::tolerantNumber(values::ParseEngineeringValue(trimmed));
        if (value != present)
            m_context.device.Write(command(value));
    };
    send(lowText, command::startFreq, m_context.mirror.dblStartFrequency);
    send(highText, command::endFreq, m_context.mirror.dblEndFrequency);
}

bool TestRun::QuestionOverwritePen(PenDocument& document)
{
    // Never equal: a lock reads as 1 or 0. The start has dealt with locked pens before.
    constexpr int kTrue = -1;
    if (document.GetPenLock(document.gCurrentPen()) == kTrue)
        return false;
    if (!m_context.preferences.value(options::kPromptOverwrite))
        return true;
    if (!document.pens().hasData(document.gCurrentPen()))
        return true;
    return tell(tr("Do you want to overwrite this pen?"), UserMessages::OkCancel | UserMessages::Question,
                tr("Overwrite existing?")) != UserMessages::ReplyCancel;
}

void TestRun::mnuTestStopTest_Click()
{
    if (!m_context.device.Connected())
        OpenFirstDeviceFound();
    endMonitor();
    m_context.device.Write(command::stop());
    m_context.state.gbfScriptRunning = false;
    if (PenDocument* const document = m_context.active.get())
        document->gbfSendZoom = true;
}

void TestRun::mnuTestRepeat_Click(bool bfChecked)
{
    m_context.device.Write(command::repeat(!bfChecked));
    m_context.mirror.bfRepeat = !bfChecked;
    m_device.DeviceSaveSettings();
    Q_EMIT m_device.events().changed(MirrorPart::Repeat);
}

bool TestRun::QuestionTestCancel()
{
    const int reply = tell(tr("This action will stop the test, click Cancel to continue testing"),
                           UserMessages::OkCancel | UserMessages::Question, tr("Abort test?"));
    if (reply == UserMessages::ReplyOk) {
        mnuTestStopTest_Click();
        m_context.port.processEvents();
        m_device.recorder().GUISetViewing();
        m_context.port.processEvents();
        return false;
    }
    m_context.device.EnableDataEvent();
    m_context.port.processEvents();
    return true;
}

bool TestRun::OpenFirstDeviceFound()
{
    KorvaLink& device = m_context.device;
    for (int index = 0; index < kDeviceIndices; ++index) {
        device.Configure(QStringLiteral("KorvaLink"), 1, 0, index);
        if (device.Open())
            return true;
        device.Close();
    }
    return false;
}
