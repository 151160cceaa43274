// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/EngineeringPage.h"

#include "instrument/Commands.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "link/TestSchedule.h"
#include "link/rules/FirmwareVersion.h"
#include "link/settings/SettingsChannel.h"
#include "link/settings/ui/FrequencyEdit.h"
#include "link/settings/ui/SettingsControls.h"
#include "prefs/Preferences.h"
#include "values/Conversions.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>

using namespace settingscontrols;

namespace {

constexpr int kHighestTrimCode = 255;
constexpr int kLongestSerialNumber = 61; // as much as a frame carries

/// The slider of a code stands one above it.
void showCode(QSlider* slider, QLabel* label, int code)
{
    const QSignalBlocker quiet(slider);
    slider->setValue(code + 1);
    label->setText(QString::number(code));
}

} // namespace

EngineeringPage::EngineeringPage(SettingsChannel& channel, SettingsDialogHost& host, QWidget* parent)
    : QWidget(parent)
    , m_channel(channel)
    , m_runs(channel, host)
{
    auto* const left = new QVBoxLayout;
    buildCalibrationFrames(*left);
    buildTrimFrame(*left);
    left->addStretch();
    auto* const right = new QVBoxLayout;
    buildTestOptionFrame(*right);
    buildInstrumentFrames(*right);
    right->addStretch();
    auto* const layout = new QHBoxLayout(this);
    layout->addLayout(left);
    layout->addLayout(right);
    connectHandlers();
}

void EngineeringPage::buildCalibrationFrames(QLayout& column)
{
    lblCalibration = make<QLabel>("lblCalibration");
    cmdAmpCal = makeButton("cmdAmpCal", tr("Calibrate &Amplitude"));
    chkApplyCal = make<QCheckBox>("chkApplyCal", tr("Apply &calibration"));
    frmCalibrate = make<QGroupBox>("frmCalibrate", tr("Calibration"));
    auto* const calibrate = new QVBoxLayout(frmCalibrate);
    calibrate->addWidget(lblCalibration);
    calibrate->addWidget(cmdAmpCal);
    calibrate->addWidget(chkApplyCal);

    cmdPhaseCal = makeButton("cmdPhaseCal", tr("&Phase"));
    cmdZeroCal = makeButton("cmdZeroCal", tr("&Slope"));
    lblCalSlope = makeValue("lblCalSlope", QStringLiteral("-00000.0000"));
    fAuto = make<QGroupBox>("fAuto", tr("Automatic"));
    auto* const automatic = new QGridLayout(fAuto);
    automatic->addWidget(cmdPhaseCal, 0, 0);
    automatic->addWidget(cmdZeroCal, 1, 0);
    automatic->addWidget(lblCalSlope, 1, 1);

    cmdDiagnose = makeButton("cmdDiagnose", tr("&Diagnose"));
    fTroubleShoot = make<QGroupBox>("fTroubleShoot", tr("Trouble-shooting"));
    auto* const trouble = new QVBoxLayout(fTroubleShoot);
    trouble->addWidget(cmdDiagnose);

    chkLoopBack = make<QCheckBox>("chkLoopBack", tr("&Loop back"));
    frmDebug = make<QGroupBox>("frmDebug", tr("Debug"));
    auto* const debug = new QVBoxLayout(frmDebug);
    debug->addWidget(chkLoopBack);

    for (QGroupBox* frame : {frmCalibrate, fAuto, fTroubleShoot, frmDebug})
        column.addWidget(frame);
}

void EngineeringPage::buildTrimFrame(QLayout& column)
{
    slideVREF = makeSlider("slideVREF", tr("Vref"));
    slideVDUT = makeSlider("slideVDUT", tr("Vdut"));
    for (QSlider* slider : {slideVREF, slideVDUT})
        slider->setRange(1, kHighestTrimCode + 1);
    lblVREF = makeValue("lblVREF", QStringLiteral("0000"));
    lblVDUT = makeValue("lblVDUT", QStringLiteral("0000"));
    fTrimVREF = make<QGroupBox>("fTrimVREF", tr("Phase Trim"));
    auto* const layout = new QGridLayout(fTrimVREF);
    layout->addWidget(makePrompt(tr("Vref"), slideVREF), 0, 0);
    layout->addWidget(slideVREF, 0, 1);
    layout->addWidget(lblVREF, 0, 2);
    layout->addWidget(makePrompt(tr("Vdut"), slideVDUT), 1, 0);
    layout->addWidget(slideVDUT, 1, 1);
    layout->addWidget(lblVDUT, 1, 2);
    column.addWidget(fTrimVREF);
}

void EngineeringPage::buildTestOptionFrame(QLayout& column)
{
    optDefault = make<QRadioButton>("optDefault", tr("Default"));
    optDefault->setChecked(true);
    m_sweepModelOptions = {TestOption{make<QRadioButton>("optVREFTrim", tr("Vref trim (2 kHz)")), 2000},
                           TestOption{make<QRadioButton>("opt1Mhz", tr("1 MHz")), 1000000},
                           TestOption{make<QRadioButton>("opt3M2Hz", tr("3.2 MHz")), 3200000},
                           TestOption{make<QRadioButton>("opt4MHz", tr("4 MHz")), 4000000}};
    m_samplingModelOptions = {TestOption{make<QRadioButton>("opt1kHz", tr("1 kHz")), 1000},
                              TestOption{make<QRadioButton>("opt10kHz", tr("10 kHz")), 10000},
                              TestOption{make<QRadioButton>("opt100kHz", tr("100 kHz")), 100000},
                              TestOption{make<QRadioButton>("opt1MHZDT46", tr("1 MHz")), 1000000}};
    auto* const frame = make<QGroupBox>("fOscillatorTest", tr("Oscillator test"));
    auto* const layout = new QVBoxLayout(frame);
    layout->addWidget(optDefault);
    for (const auto& options : {m_sweepModelOptions, m_samplingModelOptions}) {
        for (const TestOption& test : options)
            layout->addWidget(test.option);
    }
    column.addWidget(frame);
}

void EngineeringPage::buildInstrumentFrames(QLayout& column)
{
    txtFreqComp = makeFrequency("txtFreqComp", tr("Measured frequency at 1 MHz, in hertz"));
    cmdSetFreqComp = makeButton("cmdSetFreqComp", tr("Set &frequency"));
    auto* const compensation = make<QGroupBox>("fFreqComp", tr("Measured frequency at 1MHz"));
    auto* const compensationLayout = new QHBoxLayout(compensation);
    compensationLayout->addWidget(txtFreqComp);
    compensationLayout->addWidget(cmdSetFreqComp);

    cmdDefault = makeButton("cmdDefault", tr("Default Settings"));
    cmdDefault->setToolTip(tr("Set the parameters in EEROM to default values"));
    cmdSave = makeButton("cmdSave", tr("Sa&ve Settings"));
    cmdSave->setToolTip(tr("Store the present settings in the instrument"));
    auto* const memory = make<QGroupBox>("fMemory", tr("Instrument memory"));
    auto* const memoryLayout = new QHBoxLayout(memory);
    memoryLayout->addWidget(cmdDefault);
    memoryLayout->addWidget(cmdSave);

    txtSerialNumber = make<QLineEdit>("txtSerialNumber");
    txtSerialNumber->setAccessibleName(tr("Serial number"));
    txtSerialNumber->setMaxLength(kLongestSerialNumber);
    cmdSetSerial = makeButton("cmdSetSerial", tr("Set serial &number"));
    auto* const serial = make<QGroupBox>("fSerial", tr("Serial number"));
    auto* const serialLayout = new QHBoxLayout(serial);
    serialLayout->addWidget(txtSerialNumber);
    serialLayout->addWidget(cmdSetSerial);

    for (QGroupBox* frame : {compensation, memory, serial})
        column.addWidget(frame);
}

void EngineeringPage::connectHandlers()
{
    connect(&m_channel.events(), &InstrumentEvents::changed, this, &EngineeringPage::follow);
    const auto onClick = [this](QAbstractButton* button, auto handler) {
        connect(button, &QAbstractButton::clicked, this, handler);
    };
    onClick(cmdAmpCal, [this] { cmdAmpCal_Click(); });
    onClick(cmdPhaseCal, [this] { cmdPhaseCal_Click(); });
    onClick(cmdZeroCal, [this] { m_channel.SendToDevice(QStringLiteral("zerocal\r")); });
    onClick(cmdDiagnose, [this] { cmdDiagnose_Click(); });
    onClick(cmdSetFreqComp, [this] { cmdSetFreqComp_Click(); });
    connect(txtFreqComp, &FrequencyEdit::entered, this, &EngineeringPage::cmdSetFreqComp_Click);
    onClick(cmdDefault, [this] { m_channel.SendToDevice(QStringLiteral("default\rsave\r")); });
    onClick(cmdSave, [this] { m_channel.SendToDevice(QStringLiteral("save\r")); });
    onClick(cmdSetSerial, [this] { m_channel.SendToDevice(command::setSerial(txtSerialNumber->text())); });
    onClick(chkApplyCal, [this](bool checked) { m_channel.SendToDevice(command::calOn(checked)); });
    onClick(chkLoopBack, [this] { chkLoopBack_Click(); });
    onScroll(
        slideVREF, [this](int value) { lblVREF->setText(QString::number(value - 1)); },
        [this](int value) { slideVREF_Scroll(value); });
    onScroll(
        slideVDUT, [this](int value) { lblVDUT->setText(QString::number(value - 1)); },
        [this](int value) { slideVDUT_Scroll(value); });
    onChoice(optDefault, [this] { testOption_Click(0); });
    for (const auto& options : {m_sweepModelOptions, m_samplingModelOptions}) {
        for (const TestOption& test : options)
            onChoice(test.option, [this, hertz = test.hertz] { testOption_Click(hertz); });
    }
}

QList<QWidget*> EngineeringPage::tabOrder() const
{
    QList<QWidget*> controls{cmdAmpCal,   chkApplyCal, cmdPhaseCal, cmdZeroCal, cmdDiagnose,
                             chkLoopBack, slideVREF,   slideVDUT,   optDefault};
    for (const auto& options : {m_sweepModelOptions, m_samplingModelOptions}) {
        for (const TestOption& test : options)
            controls.append(test.option);
    }
    return controls + QList<QWidget*>{txtFreqComp, cmdSetFreqComp, cmdDefault, cmdSave, txtSerialNumber, cmdSetSerial};
}

// What the instrument says --------------------------------------------------------------------------------------------

void EngineeringPage::refresh()
{
    const InstrumentMirror& mirror = m_channel.mirror();
    refreshModel();
    showCalibration();
    showTrimCodes();
    showChecked(chkLoopBack, mirror.bfLoopBack);
    lblCalSlope->setText(values::decimalText(mirror.dblCalSlope));
    txtSerialNumber->setText(mirror.strDeviceSerial);
    txtFreqComp->showFrequency(mirror.dblFreqComp);
}

void EngineeringPage::refreshModel()
{
    // The dialog may have shown an instrument of the other model before.
    const bool sampling = m_channel.mirror().strDeviceModel == kSamplingModel;
    for (QGroupBox* frame : {fTroubleShoot, frmCalibrate, fTrimVREF, fAuto, frmDebug})
        frame->setVisible(!sampling);
    for (const TestOption& test : m_sweepModelOptions)
        test.option->setVisible(!sampling);
    for (const TestOption& test : m_samplingModelOptions)
        test.option->setVisible(sampling);
}

void EngineeringPage::follow(MirrorPart part)
{
    if (!m_channel.deviceReady())
        return;
    const InstrumentMirror& mirror = m_channel.mirror();
    switch (part) {
    case MirrorPart::Calibration:
        showCalibration();
        break;
    case MirrorPart::CalibrationSlope:
        lblCalSlope->setText(values::decimalText(mirror.dblCalSlope));
        break;
    case MirrorPart::Trim:
        showTrimCodes();
        break;
    case MirrorPart::LoopBack:
        if (m_channel.context().preferences.value(options::kTestSchedule))
            showChecked(chkLoopBack, mirror.bfLoopBack);
        break;
    case MirrorPart::SerialNumber:
        txtSerialNumber->setText(mirror.strDeviceSerial);
        break;
    case MirrorPart::FrequencyCompensation:
        txtFreqComp->showFrequency(mirror.dblFreqComp);
        break;
    default:
        break;
    }
}

void EngineeringPage::showCalibration()
{
    const InstrumentMirror& mirror = m_channel.mirror();
    lblCalibration->setText(mirror.bfCalibrated ? tr("Calibrated") : tr("Uncalibrated"));
    showChecked(chkApplyCal, mirror.bfApplyCal);
}

void EngineeringPage::showTrimCodes()
{
    const InstrumentMirror& mirror = m_channel.mirror();
    showCode(slideVREF, lblVREF, mirror.iVrefCode);
    showCode(slideVDUT, lblVDUT, mirror.iVdutCode);
}

// Functions -----------------------------------------------------------------------------------------------------------

void EngineeringPage::cmdAmpCal_Click()
{
    Q_EMIT outputWanted();
    const QPointer<EngineeringPage> self(this);
    // Until the instrument says otherwise.
    if (m_runs.amplitude() && self)
        lblCalibration->setText(tr("Uncalibrated"));
}

void EngineeringPage::cmdPhaseCal_Click()
{
    const QPointer<EngineeringPage> self(this);
    if (m_runs.phase() && self)
        showChecked(optDefault, true);
}

void EngineeringPage::cmdDiagnose_Click()
{
    Q_EMIT outputWanted();
    m_runs.diagnose();
}

void EngineeringPage::cmdSetFreqComp_Click()
{
    if (const std::optional<std::int32_t> hertz = txtFreqComp->take())
        m_channel.SendToDevice(command::setFreqComp(*hertz));
}

void EngineeringPage::slideVREF_Scroll(int value)
{
    m_channel.SendToDevice(command::setVref(value - 1));
    m_channel.mirror().iVrefCode = static_cast<std::int16_t>(value - 1);
}

void EngineeringPage::slideVDUT_Scroll(int value)
{
    m_channel.SendToDevice(command::setVdut(value - 1));
    m_channel.mirror().iVdutCode = static_cast<std::int16_t>(value - 1);
}

void EngineeringPage::testOption_Click(int hertz)
{
    m_channel.SendToDevice(command::stop());
    if (hertz > 0)
        m_channel.SendToDevice(command::ampSpot(hertz));
}

void EngineeringPage::chkLoopBack_Click()
{
    const bool allowed = testschedule::isOn(m_channel.context().preferences);
    m_channel.SendToDevice(command::loopback(allowed && chkLoopBack->isChecked()));
}
