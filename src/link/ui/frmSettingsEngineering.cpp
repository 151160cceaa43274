// SPDX-License-Identifier: GPL-3.0-or-later
// The second and third tab of the settings dialog: calibration, trouble-shooting, the instrument's memory, test
// schedule.
#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "document/VersionText.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/SettingsDialogHost.h"
#include "link/ui/FrequencyEdit.h"
#include "link/ui/frmSettings.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"

#include <QCheckBox>
#include <QDateTime>
#include <QLabel>
#include <QPointer>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>

namespace {

void showChecked(QAbstractButton* button, bool checked)
{
    const QSignalBlocker quiet(button);
    button->setChecked(checked);
}

void showCode(QSlider* slider, QLabel* label, int code)
{
    const QSignalBlocker quiet(slider);
    slider->setValue(code + 1);
    label->setText(QString::number(code));
}

} // namespace

void frmSettings::showEngineering()
{
    const InstrumentMirror& mirror = m_context.mirror;
    showCalibrated(mirror.bfCalibrated);
    showApplyCal(mirror.bfApplyCal);
    showLoopBack(mirror.bfLoopBack);
    showSerialNumber(mirror.strDeviceSerial);
    showCalSlope(mirror.dblCalSlope);
    showTrimCodes(mirror.iVrefCode, mirror.iVdutCode);
    showFreqComp(mirror.dblFreqComp);
}

void frmSettings::showCalibrated(bool calibrated)
{
    lblCalibration->setText(calibrated ? tr("Calibrated") : tr("Uncalibrated"));
}

void frmSettings::showApplyCal(bool on)
{
    showChecked(chkApplyCal, on);
}

void frmSettings::showLoopBack(bool on)
{
    showChecked(chkLoopBack, on);
}

void frmSettings::showSerialNumber(const QString& text)
{
    txtSerialNumber->setText(text);
}

void frmSettings::showCalSlope(double value)
{
    lblCalSlope->setText(values::decimalText(value));
}

void frmSettings::showTrimCodes(int iVrefCode, int iVdutCode)
{
    showCode(slideVREF, lblVREF, iVrefCode);
    showCode(slideVDUT, lblVDUT, iVdutCode);
}

void frmSettings::showFreqComp(double value)
{
    txtFreqComp->setText(values::decimalText(value));
}

PenDocument* frmSettings::newDocument()
{
    m_context.state.giNewDocType = PenDocument::Amplitude;
    PenDocument* const document = m_host.LoadNewDoc();
    if (document != nullptr)
        document->graphSetDefaultView();
    return document;
}

void frmSettings::cmdAmpCal_Click()
{
    const QPointer<frmSettings> self(this);
    InstrumentMirror& mirror = m_context.mirror;
    if (chkMonitor->isChecked())
        chkMonitor->setChecked(false);
    if (!m_context.device.Connected())
        return;
    if (mirror.bfCalibrated) {
        const int reply = m_context.messages.message(
            tr("The device is already calibrated. Performing calibration will take some time. Are you sure you wish to "
               "continue?"),
            UserMessages::OkCancel | UserMessages::Information, tr("Information"));
        if (reply == UserMessages::ReplyCancel || !self || !m_context.device.Connected())
            return;
    }
    SendToDevice(command::stop());
    m_context.device.Wait(10);
    const QPointer<PenDocument> document = newDocument();
    if (!self || document == nullptr)
        return;
    document->graphSetPhase(0);
    // Two dB either way around zero: the calibration curve fills the graph.
    document->graphSetAmpScale(2, -2);
    mirror.dblStartFrequency = mirror.dblAmpMinFreq;
    mirror.dblEndFrequency = mirror.dblAmpMaxFreq;
    document->peGraph().setShowLegend(false);
    document->peGraph().PEactions(0);
    m_host.showDocument(*document);
    if (!self)
        return;
    SendToDevice(settingsrules::calibrateCommand(now()));
    showCalibrated(false);
}

void frmSettings::cmdPhaseCal_Click()
{
    if (!m_context.device.Connected() || m_context.state.gbfPlotting)
        return;
    const QPointer<frmSettings> self(this);
    const QPointer<PenDocument> document = newDocument();
    if (!self || document == nullptr)
        return;
    document->graphSetPhase(1);
    document->graphSetAmpScale(10, -90);
    GraphModel& peGraph = document->peGraph();
    peGraph.setManualMinX(0);
    peGraph.setManualMaxX(255);
    peGraph.setXAxisLabel(QStringLiteral("Phase trim"));
    document->graphSetFrequecyLinear(true);
    peGraph.setShowLegend(false);
    peGraph.PEactions(0);
    m_host.showDocument(*document);
    if (!self)
        return;
    showChecked(optDefault, true);
    SendToDevice(command::stop());
    SendToDevice(command::phaseCal());
}

void frmSettings::cmdZeroCal_Click()
{
    SendToDevice(command::zeroCal());
}

void frmSettings::cmdDiagnose_Click()
{
    if (chkMonitor->isChecked())
        chkMonitor->setChecked(false);
    if (m_context.state.gbfPlotting)
        return;
    const QPointer<frmSettings> self(this);
    const QPointer<PenDocument> document = newDocument();
    if (!self || document == nullptr)
        return;
    document->graphSetAmpScale(10, -90);
    GraphModel& peGraph = document->peGraph();
    peGraph.setSubTitle(VersionText::diagnoseSubTitle(peGraph.TXAxisLabel()).value_or(QString()));
    peGraph.setXAxisLabel(QStringLiteral("Frequency - Hz (Diagnose)"));
    // It covers all that the instrument can do, whatever sweep the user has set.
    peGraph.setManualMinX(m_context.mirror.dblAmpMinFreq);
    peGraph.setManualMaxX(m_context.mirror.dblAmpMaxFreq);
    m_host.showDocument(*document);
    if (!self || document == nullptr)
        return;
    // A diagnosis fills the first two pens only.
    for (int pen = 2; pen < PenDocument::kPens; ++pen)
        document->UpdatePenHide(pen, true);
    m_context.mirror.iCurrentPoint = 1006;
    SendToDevice(command::stop());
    SendToDevice(command::period(0));
    SendToDevice(command::diagnose());
}

void frmSettings::cmdSetFreqComp_Click()
{
    SendToDevice(command::setFreqComp(settingsrules::wholeHertz(txtFreqComp->text())));
}

void frmSettings::ShowVrefCode(int sliderValue)
{
    lblVREF->setText(QString::number(sliderValue - 1));
}

void frmSettings::ShowVdutCode(int sliderValue)
{
    lblVDUT->setText(QString::number(sliderValue - 1));
}

void frmSettings::slideVREF_Scroll()
{
    const int code = slideVREF->value() - 1;
    SendToDevice(command::setVref(code));
    m_context.mirror.iVrefCode = static_cast<std::int16_t>(code);
}

void frmSettings::slideVDUT_Scroll()
{
    const int code = slideVDUT->value() - 1;
    SendToDevice(command::setVdut(code));
    m_context.mirror.iVdutCode = static_cast<std::int16_t>(code);
}

void frmSettings::testOption_Click(int hertz)
{
    SendToDevice(command::stop());
    if (hertz > 0)
        SendToDevice(command::ampSpot(hertz));
}

void frmSettings::cmdDefault_Click()
{
    SendToDevice(command::factoryDefault() + command::save());
}

void frmSettings::SaveToDevice()
{
    SendToDevice(command::save());
}

void frmSettings::chkApplyCal_Click()
{
    SendToDevice(command::calOn(chkApplyCal->isChecked()));
}

void frmSettings::chkLoopBack_Click()
{
    SendToDevice(command::loopback(testScheduleShown() && chkLoopBack->isChecked()));
}

void frmSettings::cmdSetSerial_Click()
{
    SendToDevice(command::setSerial(txtSerialNumber->text()));
}

void frmSettings::chkTestSchedule_Click()
{
    const bool checked = chkTestSchedule->isChecked();
    m_context.preferences.setValue(options::kTestSchedule, checked);
    m_context.device.SetTestMode(checked ? 1 : 0);
}
