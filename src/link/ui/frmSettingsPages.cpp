// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the settings dialog: where they stand, what they say, what they are tied to.
#include "link/ui/FrequencyEdit.h"
#include "link/ui/frmSettings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int kHighestTrimCode = 255;
constexpr int kBoxMargins = 14;

/// A control under its name; the accessible name is given where no text of its own stands on it.
template <typename Control, typename... Arguments>
Control* make(const char* name, Arguments&&... arguments)
{
    auto* const control = new Control(std::forward<Arguments>(arguments)...);
    control->setObjectName(QLatin1String(name));
    return control;
}

QPushButton* makeButton(const char* name, const QString& text)
{
    auto* const button = make<QPushButton>(name, text);
    // Enter belongs to the boxes here.
    button->setAutoDefault(false);
    return button;
}

FrequencyEdit* makeFrequency(const char* name, const QString& accessibleName)
{
    auto* const box = make<FrequencyEdit>(name);
    box->setAccessibleName(accessibleName);
    box->setMaxLength(32);
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("50000000.0")) + kBoxMargins);
    return box;
}

QSlider* makeSlider(const char* name, const QString& accessibleName)
{
    auto* const slider = make<QSlider>(name, Qt::Horizontal);
    slider->setAccessibleName(accessibleName);
    slider->setMinimumWidth(140);
    return slider;
}

/// A label for a value, wide enough that it does not push its neighbours about.
QLabel* makeValue(const char* name, const QString& widest)
{
    auto* const label = make<QLabel>(name);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
    return label;
}

/// A label in front of a control that Alt and its letter lead to.
QLabel* makePrompt(const QString& text, QWidget* buddy)
{
    auto* const label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

QProgressBar* makeBar(const char* name, const QString& accessibleName, int highest)
{
    auto* const bar = make<QProgressBar>(name);
    bar->setAccessibleName(accessibleName);
    bar->setRange(0, highest);
    bar->setTextVisible(false);
    return bar;
}

} // namespace

void frmSettings::buildPages()
{
    SSTab1 = make<QTabWidget>("SSTab1");
    SSTab1->setAccessibleName(tr("Settings of the instrument"));
    m_testSchedulePage = buildTestSchedulePage();
    SSTab1->addTab(buildOscillatorPage(), tr("&Oscillator"));
    SSTab1->addTab(buildEngineeringPage(), tr("&Engineering"));
    SSTab1->addTab(m_testSchedulePage, tr("&Test Schedule"));
    OKButton = makeButton("OKButton", tr("OK"));

    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(OKButton);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addLayout(buttons);
}

// Oscillator
// ------------------------------------------------------------------------------------------------------------

QWidget* frmSettings::buildOscillatorPage()
{
    auto* const left = new QVBoxLayout;
    left->addWidget(buildFrequencyFrame());
    left->addWidget(buildSweepFrame());
    left->addWidget(buildIdleFrame());
    left->addStretch();
    auto* const right = new QVBoxLayout;
    right->addWidget(buildTestFrame());
    right->addWidget(buildAttenuationFrame());
    right->addWidget(buildMonitorFrame());
    right->addStretch();
    auto* const page = new QWidget;
    auto* const layout = new QHBoxLayout(page);
    layout->addLayout(left);
    layout->addLayout(right);
    return page;
}

QWidget* frmSettings::buildFrequencyFrame()
{
    txtLowFreq = makeFrequency("txtLowFreq", tr("Frequency A in hertz"));
    txtHighFreq = makeFrequency("txtHighFreq", tr("Frequency B in hertz"));
    lblLowerFreq = make<QLabel>("lblLowerFreq", tr("Frequency A (Hz)"));
    lblEndFrequency = make<QLabel>("lblEndFrequency", tr("Frequency B (Hz)"));
    cmdSetFreq = makeButton("cmdSetFreq", tr("A&pply"));
    cmdSetFreq->setToolTip(tr("Apply the frequency range for the next test"));
    chkAxisExtents = make<QCheckBox>("chkAxisExtents", tr("Use &X Axis extents"));
    chkAxisExtents->setToolTip(tr("Take the start and end frequency from the visible portion of the graph"));

    auto* const frame = make<QGroupBox>("fFrequency", tr("Frequency range"));
    auto* const layout = new QGridLayout(frame);
    layout->addWidget(lblLowerFreq, 0, 0);
    layout->addWidget(txtLowFreq, 0, 1);
    layout->addWidget(lblEndFrequency, 1, 0);
    layout->addWidget(txtHighFreq, 1, 1);
    layout->addWidget(cmdSetFreq, 2, 1);
    layout->addWidget(chkAxisExtents, 3, 0, 1, 2);
    return frame;
}

QWidget* frmSettings::buildSweepFrame()
{
    optAB = make<QRadioButton>("optAB", tr("&A to B"));
    optBA = make<QRadioButton>("optBA", tr("&B to A"));
    optAlternate = make<QRadioButton>("optAlternate", tr("A&lternate"));
    auto* const frame = make<QGroupBox>("fSweep", tr("Sweep"));
    auto* const layout = new QVBoxLayout(frame);
    for (QRadioButton* option : {optAB, optBA, optAlternate})
        layout->addWidget(option);
    return frame;
}

QWidget* frmSettings::buildIdleFrame()
{
    optOff = make<QRadioButton>("optOff", tr("O&ff"));
    optTestStart = make<QRadioButton>("optTestStart", tr("Test &start frequency"));
    optUserDefined = make<QRadioButton>("optUserDefined", tr("&User defined (Hz)"));
    txtParkFrequency = makeFrequency("txtParkFrequency", tr("Idle output frequency in hertz"));
    auto* const frame = make<QGroupBox>("fIdle", tr("Idle output"));
    auto* const layout = new QGridLayout(frame);
    layout->addWidget(optOff, 0, 0, 1, 2);
    layout->addWidget(optTestStart, 1, 0, 1, 2);
    layout->addWidget(optUserDefined, 2, 0);
    layout->addWidget(txtParkFrequency, 2, 1);
    return frame;
}

QWidget* frmSettings::buildTestFrame()
{
    slideTestPoints = makeSlider("slideTestPoints", tr("Number of test points"));
    lblNumPoints = makeValue("lblNumPoints", QStringLiteral("00000"));
    slidePeriod = makeSlider("slidePeriod", tr("Test period in milliseconds"));
    slidePeriod->setToolTip(tr("Delay in mS from frequency output to measurement"));
    slidePeriod->setPageStep(10);
    lblPeriod = makeValue("lblPeriod", QStringLiteral("00000 mS"));
    chkAcquirePhase = make<QCheckBox>("chkAcquirePhase", tr("Ac&quire Phase"));
    lstDT46Samples = make<QComboBox>("lstDT46Samples");
    lstDT46Samples->setAccessibleName(tr("Samples averaged per point"));
    for (const int count : settingsrules::kSampleCounts)
        lstDT46Samples->addItem(QString::number(count));
    lstDT46Samples->installEventFilter(this);
    lblSamples = makePrompt(tr("Sa&mples"), lstDT46Samples);
    lblSamples->setObjectName(QStringLiteral("lblSamples"));

    auto* const frame = make<QGroupBox>("fTest", tr("Test"));
    auto* const layout = new QGridLayout(frame);
    layout->addWidget(makePrompt(tr("Poi&nts"), slideTestPoints), 0, 0);
    layout->addWidget(slideTestPoints, 0, 1);
    layout->addWidget(lblNumPoints, 0, 2);
    layout->addWidget(makePrompt(tr("Pe&riod"), slidePeriod), 1, 0);
    layout->addWidget(slidePeriod, 1, 1);
    layout->addWidget(lblPeriod, 1, 2);
    layout->addWidget(chkAcquirePhase, 2, 0, 1, 3);
    layout->addWidget(lblSamples, 3, 0);
    layout->addWidget(lstDT46Samples, 3, 1, Qt::AlignLeft);
    return frame;
}

QWidget* frmSettings::buildAttenuationFrame()
{
    slideAttenuation = makeSlider("slideAttenuation", tr("Output attenuation"));
    lblAttenuation = makeValue("lblAttenuation", QStringLiteral("-000.0 dB"));
    fAttenuation = make<QGroupBox>("fAttenuation", tr("Output attenuation"));
    auto* const layout = new QHBoxLayout(fAttenuation);
    layout->addWidget(slideAttenuation);
    layout->addWidget(lblAttenuation);
    return fAttenuation;
}

QWidget* frmSettings::buildMonitorFrame()
{
    chkMonitor = make<QCheckBox>("chkMonitor", tr("Mon&itor"));
    chkMonitor->setToolTip(tr("Generate a test signal and monitor the return level"));
    optMonitorAmplitude = make<QRadioButton>("optMonitorAmplitude", tr("Amplitu&de"));
    optMonitorImpedance = make<QRadioButton>("optMonitorImpedance", tr("Impedance"));
    optMonFreq = {make<QRadioButton>("optMonFreq_0", tr("Frequency &1 (Hz)")),
                  make<QRadioButton>("optMonFreq_1", tr("Frequency &2 (Hz)"))};
    txtSpotFrequency = {makeFrequency("txtSpotFrequency_0", tr("Monitor frequency 1 in hertz")),
                        makeFrequency("txtSpotFrequency_1", tr("Monitor frequency 2 in hertz"))};
    pbTestLevel = makeBar("pbTestLevel", tr("Level"), settingsrules::LevelBars::kHighestLevel);
    pbTestPhase = makeBar("pbTestPhase", tr("Phase"), settingsrules::LevelBars::kHighestPhase);
    lblRxLevel = makeValue("lblRxLevel", QStringLiteral("-00000.00 Ohms"));
    lblRxPhase = makeValue("lblRxPhase", QStringLiteral("-000.00 Deg"));

    auto* const kind = new QButtonGroup(this);
    kind->addButton(optMonitorAmplitude);
    kind->addButton(optMonitorImpedance);
    auto* const frequency = new QButtonGroup(this);
    frequency->addButton(optMonFreq[0]);
    frequency->addButton(optMonFreq[1]);

    auto* const frame = make<QGroupBox>("fMonitor", tr("Monitor"));
    auto* const layout = new QGridLayout(frame);
    layout->addWidget(chkMonitor, 0, 0);
    layout->addWidget(optMonitorAmplitude, 1, 0);
    layout->addWidget(optMonitorImpedance, 1, 1);
    layout->addWidget(optMonFreq[0], 2, 0);
    layout->addWidget(txtSpotFrequency[0], 2, 1, 1, 2);
    layout->addWidget(optMonFreq[1], 3, 0);
    layout->addWidget(txtSpotFrequency[1], 3, 1, 1, 2);
    layout->addWidget(new QLabel(tr("Level")), 4, 0);
    layout->addWidget(pbTestLevel, 4, 1);
    layout->addWidget(lblRxLevel, 4, 2);
    layout->addWidget(new QLabel(tr("Phase")), 5, 0);
    layout->addWidget(pbTestPhase, 5, 1);
    layout->addWidget(lblRxPhase, 5, 2);
    layout->setColumnStretch(1, 1);
    // The rows keep their height when a box is hidden.
    for (const int row : {2, 3})
        layout->setRowMinimumHeight(row, txtSpotFrequency[0]->sizeHint().height());
    return frame;
}

// Engineering
// -----------------------------------------------------------------------------------------------------------

QWidget* frmSettings::buildEngineeringPage()
{
    auto* const page = new QWidget;
    auto* const layout = new QHBoxLayout(page);
    auto* const left = new QVBoxLayout;
    left->addWidget(buildCalibrationFrames());
    left->addWidget(buildTrimFrame());
    left->addStretch();
    auto* const right = new QVBoxLayout;
    right->addWidget(buildTestOptionFrame());
    right->addWidget(buildInstrumentFrames());
    right->addStretch();
    layout->addLayout(left);
    layout->addLayout(right);
    return page;
}

QWidget* frmSettings::buildCalibrationFrames()
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

    auto* const frames = new QWidget;
    auto* const layout = new QVBoxLayout(frames);
    layout->setContentsMargins({});
    for (QGroupBox* frame : {frmCalibrate, fAuto, fTroubleShoot, frmDebug})
        layout->addWidget(frame);
    return frames;
}

QWidget* frmSettings::buildTrimFrame()
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
    return fTrimVREF;
}

QWidget* frmSettings::buildTestOptionFrame()
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
    return frame;
}

QWidget* frmSettings::buildInstrumentFrames()
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
    txtSerialNumber->setMaxLength(61); // as much as a frame carries
    cmdSetSerial = makeButton("cmdSetSerial", tr("Set serial &number"));
    auto* const serial = make<QGroupBox>("fSerial", tr("Serial number"));
    auto* const serialLayout = new QHBoxLayout(serial);
    serialLayout->addWidget(txtSerialNumber);
    serialLayout->addWidget(cmdSetSerial);

    auto* const frames = new QWidget;
    auto* const layout = new QVBoxLayout(frames);
    layout->setContentsMargins({});
    for (QGroupBox* frame : {compensation, memory, serial})
        layout->addWidget(frame);
    return frames;
}

QWidget* frmSettings::buildTestSchedulePage()
{
    chkTestSchedule = make<QCheckBox>("chkTestSchedule", tr("Run the test schedule"));
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    layout->addWidget(chkTestSchedule);
    layout->addStretch();
    return page;
}

// Ties
// ------------------------------------------------------------------------------------------------------------------

void frmSettings::connectSlider(QSlider* slider, void (frmSettings::*follow)(int), void (frmSettings::*commit)())
{
    // The label follows the drag; the command waits until the slider is let go. Keys and clicks beside it count at
    // once.
    connect(slider, &QSlider::valueChanged, this, [this, slider, follow, commit](int value) {
        (this->*follow)(value);
        if (m_bfDialogLive && !slider->isSliderDown())
            (this->*commit)();
    });
    connect(slider, &QSlider::sliderReleased, this, [this, commit] { (this->*commit)(); });
}

void frmSettings::connectHandlers()
{
    connect(OKButton, &QPushButton::clicked, this, &QDialog::accept);

    connect(cmdSetFreq, &QPushButton::clicked, this, &frmSettings::cmdSetFreq_Click);
    for (FrequencyEdit* box : {txtLowFreq, txtHighFreq})
        connect(box, &FrequencyEdit::entered, this, [this, box] { frequency_KeyPress(box); });
    connect(chkAxisExtents, &QCheckBox::clicked, this, &frmSettings::chkAxisExtents_Click);

    connectSlider(slideTestPoints, &frmSettings::ShowTestPoints, &frmSettings::slideTestPoints_Scroll);
    connectSlider(slidePeriod, &frmSettings::ShowTestPeriod, &frmSettings::slidePeriod_Scroll);
    connectSlider(slideAttenuation, &frmSettings::ShowAttenuation, &frmSettings::slideAttenuation_Scroll);
    connectSlider(slideVREF, &frmSettings::ShowVrefCode, &frmSettings::slideVREF_Scroll);
    connectSlider(slideVDUT, &frmSettings::ShowVdutCode, &frmSettings::slideVDUT_Scroll);

    const auto onChoice = [this](QRadioButton* option, auto handler) {
        connect(option, &QRadioButton::toggled, this, [handler](bool chosen) {
            if (chosen)
                handler();
        });
    };
    onChoice(optAB, [this] { sweepOption_Click(0); });
    onChoice(optBA, [this] { sweepOption_Click(1); });
    onChoice(optAlternate, [this] { sweepOption_Click(2); });
    onChoice(optOff, [this] { optOff_Click(); });
    onChoice(optTestStart, [this] { optTestStart_Click(); });
    onChoice(optUserDefined, [this] { optUserDefined_Click(); });
    onChoice(optMonFreq[0], [this] { optMonFreq_Click(0); });
    onChoice(optMonFreq[1], [this] { optMonFreq_Click(1); });
    onChoice(optMonitorAmplitude, [this] { optMonitorAmplitude_Click(); });
    onChoice(optMonitorImpedance, [this] { optMonitorAmplitude_Click(); });
    onChoice(optDefault, [this] { testOption_Click(0); });
    for (const auto& options : {m_sweepModelOptions, m_samplingModelOptions}) {
        for (const TestOption& test : options)
            onChoice(test.option, [this, hertz = test.hertz] { testOption_Click(hertz); });
    }

    connect(txtParkFrequency, &FrequencyEdit::entered, this, &frmSettings::SendIdleFrequency);
    for (FrequencyEdit* box : txtSpotFrequency)
        connect(box, &FrequencyEdit::entered, this, &frmSettings::SendSpotFrequency);
    connect(chkAcquirePhase, &QCheckBox::clicked, this, &frmSettings::chkAcquirePhase_Click);
    connect(lstDT46Samples, &QComboBox::activated, this, &frmSettings::lstDT46Samples_Click);
    connect(chkMonitor, &QCheckBox::toggled, this, &frmSettings::chkMonitor_Click);

    connect(cmdAmpCal, &QPushButton::clicked, this, &frmSettings::cmdAmpCal_Click);
    connect(cmdPhaseCal, &QPushButton::clicked, this, &frmSettings::cmdPhaseCal_Click);
    connect(cmdZeroCal, &QPushButton::clicked, this, &frmSettings::cmdZeroCal_Click);
    connect(cmdDiagnose, &QPushButton::clicked, this, &frmSettings::cmdDiagnose_Click);
    connect(txtFreqComp, &FrequencyEdit::entered, this, &frmSettings::cmdSetFreqComp_Click);
    connect(cmdSetFreqComp, &QPushButton::clicked, this, &frmSettings::cmdSetFreqComp_Click);
    connect(cmdDefault, &QPushButton::clicked, this, &frmSettings::cmdDefault_Click);
    connect(cmdSave, &QPushButton::clicked, this, &frmSettings::SaveToDevice);
    connect(chkApplyCal, &QCheckBox::clicked, this, &frmSettings::chkApplyCal_Click);
    connect(chkLoopBack, &QCheckBox::clicked, this, &frmSettings::chkLoopBack_Click);
    connect(cmdSetSerial, &QPushButton::clicked, this, &frmSettings::cmdSetSerial_Click);
    connect(chkTestSchedule, &QCheckBox::clicked, this, &frmSettings::chkTestSchedule_Click);
}

void frmSettings::setTabOrders()
{
    QWidget* previous = SSTab1;
    for (QWidget* control : std::initializer_list<QWidget*>{txtLowFreq,
                                                            txtHighFreq,
                                                            cmdSetFreq,
                                                            chkAxisExtents,
                                                            optAB,
                                                            optBA,
                                                            optAlternate,
                                                            optOff,
                                                            optTestStart,
                                                            optUserDefined,
                                                            txtParkFrequency,
                                                            slideTestPoints,
                                                            slidePeriod,
                                                            chkAcquirePhase,
                                                            lstDT46Samples,
                                                            slideAttenuation,
                                                            chkMonitor,
                                                            optMonitorAmplitude,
                                                            optMonitorImpedance,
                                                            optMonFreq[0],
                                                            txtSpotFrequency[0],
                                                            optMonFreq[1],
                                                            txtSpotFrequency[1],
                                                            cmdAmpCal,
                                                            chkApplyCal,
                                                            cmdPhaseCal,
                                                            cmdZeroCal,
                                                            cmdDiagnose,
                                                            chkLoopBack,
                                                            slideVREF,
                                                            slideVDUT,
                                                            optDefault}) {
        setTabOrder(previous, control);
        previous = control;
    }
    for (const auto& options : {m_sweepModelOptions, m_samplingModelOptions}) {
        for (const TestOption& test : options) {
            setTabOrder(previous, test.option);
            previous = test.option;
        }
    }
    for (QWidget* control : std::initializer_list<QWidget*>{txtFreqComp, cmdSetFreqComp, cmdDefault, cmdSave,
                                                            txtSerialNumber, cmdSetSerial, chkTestSchedule, OKButton}) {
        setTabOrder(previous, control);
        previous = control;
    }
}

bool frmSettings::eventFilter(QObject* watched, QEvent* event)
{
    // Typing chooses nothing in the list of samples: a slip of the hand would reach the instrument.
    if (watched == lstDT46Samples && event->type() == QEvent::KeyPress) {
        const QString typed = static_cast<QKeyEvent*>(event)->text();
        if (!typed.isEmpty() && typed.at(0).isPrint() && typed.at(0) != QLatin1Char(' '))
            return true;
    }
    return QDialog::eventFilter(watched, event);
}
