// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/CalibrationRuns.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "document/VersionText.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/rules/SettingsRules.h"
#include "link/settings/SettingsChannel.h"
#include "link/settings/SettingsDialogHost.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <QPointer>

namespace {

constexpr int kHighestTrimCode = 255;
constexpr int kDiagnosisPens = 2;
constexpr std::int16_t kDiagnosisPoint = 1006;

/// The graph shows all that the instrument can put out.
void showWholeRange(GraphModel& graph, const InstrumentMirror& mirror)
{
    graph.setManualMinX(mirror.dblAmpMinFreq);
    graph.setManualMaxX(mirror.dblAmpMaxFreq);
}

} // namespace

CalibrationRuns::CalibrationRuns(SettingsChannel& channel, SettingsDialogHost& host, QObject* parent)
    : QObject(parent)
    , now(&QDateTime::currentDateTime)
    , m_channel(channel)
    , m_host(host)
{}

PenDocument* CalibrationRuns::newDocument()
{
    m_channel.context().state.giNewDocType = PenDocument::Amplitude;
    const QPointer<PenDocument> document = m_host.LoadNewDoc();
    if (document != nullptr)
        document->graphSetDefaultView();
    return document;
}

bool CalibrationRuns::amplitude()
{
    const LinkContext context = m_channel.context();
    if (!context.device.Connected())
        return false;
    const QPointer<CalibrationRuns> self(this);
    if (context.mirror.bfCalibrated) {
        const int reply = context.messages.message(
            tr("The device is already calibrated. Performing calibration will take some time. Are you sure you wish to "
               "continue?"),
            UserMessages::OkCancel | UserMessages::Information, tr("Information"));
        if (reply == UserMessages::ReplyCancel || !self || !context.device.Connected())
            return false;
    }
    m_channel.SendToDevice(command::stop());
    context.device.Wait(10);
    const QPointer<PenDocument> document = newDocument();
    if (!self || document == nullptr)
        return false;
    document->graphSetPhase(0);
    // Two dB either way around zero: the calibration curve fills the graph.
    document->graphSetAmpScale(2, -2);
    context.mirror.dblStartFrequency = context.mirror.dblAmpMinFreq;
    context.mirror.dblEndFrequency = context.mirror.dblAmpMaxFreq;
    GraphModel& peGraph = document->peGraph();
    showWholeRange(peGraph, context.mirror);
    peGraph.setShowLegend(false);
    peGraph.PEactions(0);
    m_host.showDocument(*document);
    if (!self)
        return false;
    m_channel.SendToDevice(settingsrules::calibrateCommand(now()));
    return true;
}

bool CalibrationRuns::phase()
{
    const LinkContext context = m_channel.context();
    if (!context.device.Connected() || context.state.gbfPlotting)
        return false;
    const QPointer<CalibrationRuns> self(this);
    const QPointer<PenDocument> document = newDocument();
    if (!self || document == nullptr)
        return false;
    document->graphSetPhase(1);
    document->graphSetAmpScale(10, -90);
    GraphModel& peGraph = document->peGraph();
    peGraph.setManualMinX(0);
    peGraph.setManualMaxX(kHighestTrimCode);
    peGraph.setXAxisLabel(QStringLiteral("Phase trim"));
    document->graphSetFrequecyLinear(true); // processes events
    if (!self || document == nullptr)
        return false;
    peGraph.setShowLegend(false);
    peGraph.PEactions(0);
    m_host.showDocument(*document);
    if (!self)
        return false;
    m_channel.SendToDevice(command::stop());
    m_channel.SendToDevice(command::phaseCal());
    return true;
}

bool CalibrationRuns::diagnose()
{
    const LinkContext context = m_channel.context();
    if (context.state.gbfPlotting)
        return false;
    const QPointer<CalibrationRuns> self(this);
    const QPointer<PenDocument> document = newDocument();
    if (!self || document == nullptr)
        return false;
    document->graphSetAmpScale(10, -90);
    GraphModel& peGraph = document->peGraph();
    // A new document says nothing yet of what measures it.
    peGraph.setTXAxisLabel(document->SetVersion());
    peGraph.setSubTitle(VersionText::diagnoseSubTitle(peGraph.TXAxisLabel()).value_or(QString()));
    peGraph.setXAxisLabel(QStringLiteral("Frequency - Hz (Diagnose)"));
    showWholeRange(peGraph, context.mirror);
    m_host.showDocument(*document);
    if (!self || document == nullptr)
        return false;
    for (int pen = kDiagnosisPens; pen < PenDocument::kPens; ++pen)
        document->UpdatePenHide(pen, true);
    context.mirror.iCurrentPoint = kDiagnosisPoint;
    m_channel.SendToDevice(command::stop());
    m_channel.SendToDevice(command::period(0));
    m_channel.SendToDevice(command::diagnose());
    return true;
}
