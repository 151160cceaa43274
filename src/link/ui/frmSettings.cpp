// SPDX-License-Identifier: GPL-3.0-or-later
// The first tab of the settings dialog, and what is common to all.
#include "link/ui/frmSettings.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/Commands.h"
#include "link/DeviceModule.h"
#include "link/FirmwareVersion.h"
#include "link/SettingsDialogHost.h"
#include "link/ui/FrequencyEdit.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "values/Conversions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QTabWidget>

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kFewestPoints = 24;
constexpr int kMostPoints = 1024;
constexpr int kMostPeriod = 1000; // ms; a longer one that was stored stretches the slider

/// Shows a value without telling the handlers.
void showText(QLineEdit* box, double value)
{
    const QSignalBlocker quiet(box);
    box->setText(values::decimalText(value));
}

void showChecked(QAbstractButton* button, bool checked)
{
    const QSignalBlocker quiet(button);
    button->setChecked(checked);
}

/// Tab leads to the chosen option of a group, the arrow keys from there to the others.
void tabToChosen(std::initializer_list<QRadioButton*> group)
{
    for (QRadioButton* option : group)
        option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

} // namespace

frmSettings::frmSettings(DeviceModule& device, SettingsDialogHost& host, QWidget* parent)
    : QDialog(parent)
    , now(&QDateTime::currentDateTime)
    , m_device(device)
    , m_context(device.context())
    , m_host(host)
{
    setObjectName(QStringLiteral("frmSettings"));
    setAttribute(Qt::WA_DeleteOnClose);
    buildPages();
    connectHandlers();
    setTabOrders();
    m_host.addFunctionKeys(*this);
    m_device.setSettingsDialog(this);
    ClearLevelDisplay();
    frmSettings::RefreshDialog();
    applyPosition();
}

frmSettings::~frmSettings()
{
    if (&m_device.settingsDialog() == this)
        m_device.setSettingsDialog(nullptr);
}

void frmSettings::Unload()
{
    if (isVisible()) {
        close();
    } else {
        unload();
        deleteLater();
    }
}

void frmSettings::done(int result)
{
    unload();
    QDialog::done(result);
}

void frmSettings::unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    const std::int32_t low = settingsrules::wholeHertz(txtLowFreq->text());
    const std::int32_t high = settingsrules::wholeHertz(txtHighFreq->text());
    if (m_context.port.activeDocument() == nullptr) {
        SendToDevice(command::text(command::kStartFreq, low));
        SendToDevice(command::text(command::kEndFreq, high));
    }
    if (chkMonitor->isChecked() && m_context.device.Connected())
        m_context.device.Write(QStringLiteral("x\r"));
    const SettingsStore::Batch batch(m_context.preferences.store());
    storeSettings();
    if (isVisible())
        storePosition();
    m_bfDialogLive = false;
    m_device.setSettingsDialog(nullptr);
}

void frmSettings::storeSettings()
{
    if (m_stored)
        return;
    m_stored = true;
    const SettingsStore::Batch batch(m_context.preferences.store());
    m_device.DeviceSaveSettings();
    saveMonitor();
    if (m_bfSamplingModel)
        m_context.preferences.setValue(m_context.mirror.strDeviceSerial, options::kSamples,
                                       lstDT46Samples->currentText().toInt());
}

void frmSettings::SendToDevice(const QString& text)
{
    if (m_bfDialogLive && m_context.device.Connected())
        m_context.device.Write(text);
}

// Place
// -----------------------------------------------------------------------------------------------------------------

void frmSettings::applyPosition()
{
    const Preferences& preferences = m_context.preferences;
    if (!preferences.contains(options::kSettingsLeft) || !preferences.contains(options::kSettingsTop))
        return;
    const auto pixels = [&preferences](const options::Option<options::Single>& option) {
        return values::roundToInt32(static_cast<double>(preferences.value(option)) / kTwipsPerPixel);
    };
    QPoint place(pixels(options::kSettingsLeft), pixels(options::kSettingsTop));
    // The dialog keeps its place beside the main window, wherever that stands now.
    if (parentWidget() != nullptr && preferences.contains(options::kSettingsMainLeft))
        place += parentWidget()->window()->pos() -
                 QPoint(pixels(options::kSettingsMainLeft), pixels(options::kSettingsMainTop));
    // A screen may have gone since.
    constexpr int kReachable = 64;
    const QRect title(place, QSize(kReachable, kReachable / 2));
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen->availableGeometry().contains(title)) {
            move(place);
            return;
        }
    }
}

void frmSettings::storePosition()
{
    if (isMinimized())
        return;
    Preferences& preferences = m_context.preferences;
    const SettingsStore::Batch batch(preferences.store());
    const auto save = [&preferences](const options::Option<options::Single>& option, int pixels) {
        preferences.setValue(option, static_cast<float>(pixels * kTwipsPerPixel));
    };
    save(options::kSettingsTop, y());
    save(options::kSettingsLeft, x());
    preferences.setValue(options::kSettingsWindowState,
                         isMaximized() ? options::WindowMaximised : options::WindowNormal);
    if (parentWidget() != nullptr) {
        save(options::kSettingsMainTop, parentWidget()->window()->y());
        save(options::kSettingsMainLeft, parentWidget()->window()->x());
    }
}

// What the instrument says
// ----------------------------------------------------------------------------------------------

void frmSettings::RefreshDialog()
{
    const InstrumentMirror& mirror = m_context.mirror;
    m_bfDialogLive = false;
    m_stored = false;
    showModel();

    {
        // Setting a range moves the slider too.
        const QSignalBlocker quiet(slideTestPoints);
        slideTestPoints->setRange(kFewestPoints, kMostPoints);
        slideTestPoints->setSingleStep(1);
        slideTestPoints->setPageStep(100);
        slideTestPoints->setValue(mirror.iNumPoints);
    }
    ShowTestPoints(slideTestPoints->value());

    showChecked(optAB, mirror.iSweepMode == 0);
    showChecked(optBA, mirror.iSweepMode == 1);
    showChecked(optAlternate, mirror.iSweepMode == 2);

    if (!mirror.strDeviceSerial.isEmpty()) {
        showText(txtLowFreq, mirror.dblStartFrequency);
        showText(txtHighFreq, mirror.dblEndFrequency);
    }
    showChecked(chkAxisExtents, mirror.bfGraphExtents);
    setFrequencyControlsEnabled(!mirror.bfGraphExtents);

    const bool attenuator = mirror.bfAttenuationAvailable && mirror.iAttenuationSteps > 0;
    fAttenuation->setEnabled(attenuator);
    if (attenuator) {
        const QSignalBlocker quiet(slideAttenuation);
        slideAttenuation->setRange(1, mirror.iAttenuationSteps + 1);
        slideAttenuation->setSingleStep(1);
        slideAttenuation->setPageStep(1);
        slideAttenuation->setValue(mirror.iAttenuationCode + 1);
        ShowAttenuation(slideAttenuation->value());
    }

    {
        const QSignalBlocker quiet(slidePeriod);
        slidePeriod->setRange(0, std::max<int>(kMostPeriod, mirror.iTestPeriod));
        slidePeriod->setValue(mirror.iTestPeriod);
    }
    ShowTestPeriod(mirror.iTestPeriod);

    const bool userDefined = mirror.dblIdleFrequency != 0 && mirror.dblIdleFrequency != -1;
    showChecked(optOff, mirror.dblIdleFrequency == 0);
    showChecked(optTestStart, mirror.dblIdleFrequency == -1);
    showChecked(optUserDefined, userDefined);
    txtParkFrequency->setEnabled(userDefined);
    if (userDefined)
        showText(txtParkFrequency, mirror.dblIdleFrequency);

    showEngineering();
    SSTab1->setTabVisible(SSTab1->indexOf(m_testSchedulePage), testScheduleShown());
    showChecked(chkTestSchedule, testScheduleShown());
    showMonitorChoice();
    showChecked(chkAcquirePhase, mirror.bfPhaseOn);
    tabToChosen({optAB, optBA, optAlternate});
    tabToChosen({optOff, optTestStart, optUserDefined});
    tabToChosen({optMonitorAmplitude, optMonitorImpedance});
    tabToChosen({optMonFreq[0], optMonFreq[1]});
    m_bfDialogLive = !m_unloaded;
}

void frmSettings::showModel()
{
    m_bfSamplingModel = m_context.mirror.strDeviceModel == kSamplingModel;
    setWindowTitle(m_bfSamplingModel ? tr("DT46 Settings") : tr("T46 Settings"));
    chkAcquirePhase->setVisible(!m_bfSamplingModel);
    lstDT46Samples->setVisible(m_bfSamplingModel);
    lblSamples->setVisible(m_bfSamplingModel);
    if (m_bfSamplingModel) {
        showSamples();
        fTroubleShoot->hide();
        frmCalibrate->hide();
    }
    for (const TestOption& test : m_samplingModelOptions)
        test.option->setVisible(m_bfSamplingModel);
    for (const TestOption& test : m_sweepModelOptions)
        test.option->setVisible(!m_bfSamplingModel);
    for (QGroupBox* frame : {fTrimVREF, fAuto, frmDebug})
        frame->setVisible(!m_bfSamplingModel);
}

void frmSettings::showSamples()
{
    // The samples frame carries the instrument's setting in this field.
    const double present = m_context.mirror.iTestParam2;
    const int samples =
        m_context.preferences.value(m_context.mirror.strDeviceSerial, options::kSamples, values::roundToInt32(present));
    const QSignalBlocker quiet(lstDT46Samples);
    lstDT46Samples->setCurrentIndex(settingsrules::sampleIndex(samples));
    if (!m_context.state.gbfScriptRunning && m_context.device.Connected())
        m_context.device.Write(command::text(command::kSamples, lstDT46Samples->currentText()));
}

void frmSettings::showMonitorChoice()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const Preferences& preferences = m_context.preferences;
    const QString& serial = mirror.strDeviceSerial;
    txtSpotFrequency[0]->setText(preferences.value(serial, options::kMonF1));
    txtSpotFrequency[1]->setText(preferences.value(serial, options::kMonF2));
    const int box = preferences.value(serial, options::kMonitorF1) ? 0 : 1;
    showChecked(optMonFreq[0], box == 0);
    showChecked(optMonFreq[1], box == 1);
    txtSpotFrequency[0]->setVisible(box == 0);
    txtSpotFrequency[1]->setVisible(box == 1);
    const bool amplitude = preferences.value(serial, options::kMonitorAmplitude);
    showChecked(optMonitorAmplitude, amplitude);
    showChecked(optMonitorImpedance, !amplitude);
    const bool choice = mirror.bfAmplitudeTest && mirror.bfImpedanceTest;
    optMonitorAmplitude->setVisible(choice);
    optMonitorImpedance->setVisible(choice);
}

bool frmSettings::testScheduleShown() const
{
    // Any number but 0: the stored text is read as it stands.
    return values::tolerantNumber(m_context.preferences.text(options::kTestSchedule)) != 0;
}

void frmSettings::showSweepRange(double start, double end)
{
    if (chkAxisExtents->isChecked())
        return;
    showText(txtLowFreq, start);
    showText(txtHighFreq, end);
}

QString frmSettings::lowFrequencyText() const
{
    return txtLowFreq->text();
}

QString frmSettings::highFrequencyText() const
{
    return txtHighFreq->text();
}

// Frequencies
// -----------------------------------------------------------------------------------------------------------

void frmSettings::cmdSetFreq_Click()
{
    InstrumentMirror& mirror = m_context.mirror;
    Preferences& preferences = m_context.preferences;
    const std::int32_t low = settingsrules::wholeHertz(txtLowFreq->text());
    SendToDevice(command::text(command::kStartFreq, low));
    const std::int32_t high = settingsrules::wholeHertz(txtHighFreq->text());
    const SettingsStore::Batch batch(preferences.store());
    preferences.setValue(mirror.strDeviceSerial, options::kTxtStartFrequency, low);
    preferences.setValue(mirror.strDeviceSerial, options::kTxtEndFrequency, high);
    saveMonitor();
    SendToDevice(command::text(command::kEndFreq, high));
    // The instrument confirms both; until it does, what is saved is what was asked for.
    mirror.dblStartFrequency = low;
    mirror.dblEndFrequency = high;
    if (optUserDefined->isChecked())
        SendIdleFrequency();
    m_device.DeviceSaveSettings();
}

void frmSettings::frequency_KeyPress(FrequencyEdit* box)
{
    cmdSetFreq_Click();
    (box == txtLowFreq ? static_cast<QWidget*>(txtHighFreq) : cmdSetFreq)->setFocus(Qt::TabFocusReason);
}

void frmSettings::setFrequencyControlsEnabled(bool enabled)
{
    for (QWidget* control :
         std::initializer_list<QWidget*>{lblLowerFreq, lblEndFrequency, txtLowFreq, txtHighFreq, cmdSetFreq})
        control->setEnabled(enabled);
}

void frmSettings::chkAxisExtents_Click()
{
    InstrumentMirror& mirror = m_context.mirror;
    if (chkAxisExtents->isChecked()) {
        PenDocument* const document = m_context.port.activeDocument();
        if (document == nullptr) {
            // No graph to take the extents from.
            showChecked(chkAxisExtents, false);
            return;
        }
        mirror.bfGraphExtents = true;
        const QPointer<frmSettings> self(this);
        document->SendGraphExtents(); // processes events
        if (self && chkAxisExtents->isChecked())
            setFrequencyControlsEnabled(false);
        return;
    }
    setFrequencyControlsEnabled(true);
    const double low =
        m_context.preferences.value(mirror.strDeviceSerial, options::kTxtStartFrequency, mirror.dblStartFrequency);
    const double high =
        m_context.preferences.value(mirror.strDeviceSerial, options::kTxtEndFrequency, mirror.dblEndFrequency);
    showText(txtLowFreq, low);
    showText(txtHighFreq, high);
    mirror.bfGraphExtents = false;
    SendToDevice(command::text(command::kStartFreq, low));
    SendToDevice(command::text(command::kEndFreq, high));
}

// Sliders, sweep, idle output
// -------------------------------------------------------------------------------------------

void frmSettings::slideTestPoints_Scroll()
{
    const int points = slideTestPoints->value();
    SendToDevice(command::text(command::kPoints, points));
    m_context.mirror.iNumPoints = static_cast<std::int16_t>(points);
}

void frmSettings::slidePeriod_Scroll()
{
    const int period = slidePeriod->value();
    SendToDevice(command::text(command::kPeriod, period));
    m_context.mirror.iTestPeriod = static_cast<std::int16_t>(period);
}

void frmSettings::slideAttenuation_Scroll()
{
    const int code = slideAttenuation->value() - 1;
    SendToDevice(command::text(command::kAtten, code));
    m_context.mirror.iAttenuationCode = static_cast<std::int16_t>(code);
}

void frmSettings::ShowTestPoints(int points)
{
    lblNumPoints->setText(QString::number(points));
}

void frmSettings::ShowAttenuation(int sliderValue)
{
    lblAttenuation->setText(settingsrules::attenuationText(sliderValue, m_context.mirror.dblAttenuationStep));
}

void frmSettings::ShowTestPeriod(int milliseconds)
{
    lblPeriod->setText(QString::number(milliseconds) + QLatin1String(" mS"));
}

void frmSettings::sweepOption_Click(int iSweepMode)
{
    if (!m_bfDialogLive)
        return;
    SendToDevice(command::text(command::kSweepMode, iSweepMode));
    m_context.mirror.iSweepMode = static_cast<std::int16_t>(iSweepMode);
}

void frmSettings::optOff_Click()
{
    txtParkFrequency->setEnabled(false);
    SendToDevice(command::text(command::kIdleFreq, 0));
    m_context.mirror.dblIdleFrequency = 0;
}

void frmSettings::optTestStart_Click()
{
    txtParkFrequency->setEnabled(false);
    SendToDevice(command::text(command::kIdleFreq, -1));
    m_context.mirror.dblIdleFrequency = -1;
}

void frmSettings::optUserDefined_Click()
{
    constexpr int kFirstIdleFrequency = 1000;
    txtParkFrequency->setEnabled(true);
    SendToDevice(command::text(command::kIdleFreq, kFirstIdleFrequency));
    m_context.mirror.dblIdleFrequency = kFirstIdleFrequency;
    showText(txtParkFrequency, kFirstIdleFrequency);
}

void frmSettings::SendIdleFrequency()
{
    InstrumentMirror& mirror = m_context.mirror;
    mirror.dblIdleFrequency = settingsrules::clampToRange(settingsrules::wholeHertz(txtParkFrequency->text()),
                                                          mirror.dblAmpMinFreq, mirror.dblAmpMaxFreq);
    showText(txtParkFrequency, mirror.dblIdleFrequency);
    SendToDevice(command::text(command::kIdleFreq, mirror.dblIdleFrequency));
}

void frmSettings::chkAcquirePhase_Click()
{
    if (!m_bfDialogLive)
        return;
    m_context.mirror.bfPhaseOn = chkAcquirePhase->isChecked();
    SendToDevice(command::text(command::kPhase, m_context.mirror.bfPhaseOn));
}

void frmSettings::lstDT46Samples_Click()
{
    SendToDevice(command::text(command::kSamples, lstDT46Samples->currentText()));
}

// Monitor
// ---------------------------------------------------------------------------------------------------------------

bool frmSettings::monitorChecked() const
{
    return chkMonitor->isChecked();
}

void frmSettings::uncheckMonitor()
{
    chkMonitor->setChecked(false);
}

int frmSettings::monitorBox() const
{
    return optMonFreq[0]->isChecked() ? 0 : 1;
}

void frmSettings::saveMonitor()
{
    Preferences& preferences = m_context.preferences;
    const QString& serial = m_context.mirror.strDeviceSerial;
    const SettingsStore::Batch batch(preferences.store());
    preferences.setValue(serial, options::kMonF1, txtSpotFrequency[0]->text());
    preferences.setValue(serial, options::kMonF2, txtSpotFrequency[1]->text());
    preferences.setValue(serial, options::kMonitorF1, optMonFreq[0]->isChecked());
}

void frmSettings::setMonitorChoiceEnabled(bool enabled)
{
    optMonitorAmplitude->setEnabled(enabled);
    optMonitorImpedance->setEnabled(enabled);
}

void frmSettings::chkMonitor_Click()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const bool plotting = m_context.state.gbfPlotting;
    if (!chkMonitor->isChecked()) {
        if (mirror.bfAmplitudeTest && mirror.bfImpedanceTest)
            setMonitorChoiceEnabled(true);
        // The stop is for the monitor's signal; a test that has begun meanwhile goes on.
        if (!plotting)
            SendToDevice(command::text(command::kStop));
        ClearLevelDisplay();
        return;
    }
    if (plotting) {
        showChecked(chkMonitor, false);
        return;
    }
    setMonitorChoiceEnabled(false);
    cmdSetFreq_Click();
    if (mirror.bfAmplitudeTest != mirror.bfImpedanceTest) {
        showChecked(optMonitorAmplitude, mirror.bfAmplitudeTest);
        showChecked(optMonitorImpedance, mirror.bfImpedanceTest);
    }
    SendToDevice(command::text(command::kStop));
    SendToDevice(command::text(optMonitorAmplitude->isChecked() ? command::kAmpSpot : command::kImpSpot,
                               mirror.dblSpotFrequency));
}

void frmSettings::optMonitorAmplitude_Click()
{
    if (m_bfDialogLive)
        m_context.preferences.setValue(m_context.mirror.strDeviceSerial, options::kMonitorAmplitude,
                                       optMonitorAmplitude->isChecked());
}

void frmSettings::optMonFreq_Click(int index)
{
    const auto shown = static_cast<std::size_t>(index);
    txtSpotFrequency[shown]->setVisible(true);
    txtSpotFrequency[1 - shown]->setVisible(false);
    if (chkMonitor->isChecked())
        SendSpotFrequency();
}

void frmSettings::SendSpotFrequency()
{
    InstrumentMirror& mirror = m_context.mirror;
    FrequencyEdit* const box = txtSpotFrequency[static_cast<std::size_t>(monitorBox())];
    mirror.dblSpotFrequency =
        settingsrules::clampToRange(settingsrules::wholeHertz(box->text()), mirror.dblAmpMinFreq, mirror.dblAmpMaxFreq);
    showText(box, mirror.dblSpotFrequency);
    SendToDevice(command::text(command::kSpotFreq, mirror.dblSpotFrequency));
}

void frmSettings::SetInputLevel(double dblAmpIn_dB, double dblPhase, bool bfShowPhase)
{
    if (!chkMonitor->isChecked())
        ClearLevelDisplay();
    else if (optMonitorAmplitude->isChecked())
        showBars(settingsrules::amplitudeBars(dblAmpIn_dB, dblPhase, bfShowPhase));
    else
        showBars(settingsrules::impedanceBars(dblAmpIn_dB, dblPhase, bfShowPhase));
}

void frmSettings::ClearLevelDisplay()
{
    showBars({});
}

void frmSettings::showBars(const settingsrules::LevelBars& bars)
{
    pbTestLevel->setValue(bars.level);
    pbTestPhase->setValue(bars.phase);
    lblRxLevel->setText(bars.levelText);
    lblRxPhase->setText(bars.phaseText);
}
