// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/SweepGroup.h"

#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/rules/FirmwareVersion.h"
#include "link/rules/SettingsRules.h"
#include "link/settings/SettingsChannel.h"
#include "link/settings/ui/SettingsControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>

using namespace settingscontrols;

namespace {

constexpr int kFewestPoints = 24;
constexpr int kMostPoints = 1024;
constexpr int kMostPeriod = 1000; // ms; a longer one that was stored stretches the slider

void showValue(QSlider* slider, int lowest, int highest, int value)
{
    // Setting a range moves the slider too.
    const QSignalBlocker quiet(slider);
    slider->setRange(lowest, highest);
    slider->setValue(value);
}

} // namespace

SweepGroup::SweepGroup(SettingsChannel& channel, QWidget* parent)
    : QWidget(parent)
    , m_channel(channel)
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    for (QGroupBox* frame : {buildDirectionFrame(), buildTestFrame(), buildAttenuationFrame()})
        layout->addWidget(frame);
    connectHandlers();

    // What is shown is what is known, stored or reported; what is stored is what is shown.
    OptionControl samples = optioncontrol::of(lstDT46Samples);
    samples.show = [this](const QString&) {
        const std::optional<int> known = m_channel.device().knownSamples();
        lstDT46Samples->setCurrentIndex(
            known ? lstDT46Samples->findText(QString::number(settingsrules::offeredSamples(*known))) : -1);
    };
    m_options.add(optionplace::of(m_channel.context().preferences, options::kSamples,
                                  [this] { return m_channel.mirror().strDeviceSerial; }),
                  samples);
}

QGroupBox* SweepGroup::buildDirectionFrame()
{
    optAB = make<QRadioButton>("optAB", tr("&A to B"));
    optBA = make<QRadioButton>("optBA", tr("&B to A"));
    optAlternate = make<QRadioButton>("optAlternate", tr("A&lternate"));
    auto* const frame = make<QGroupBox>("fSweep", tr("Sweep"));
    auto* const layout = new QHBoxLayout(frame);
    for (QRadioButton* option : {optAB, optBA, optAlternate})
        layout->addWidget(option);
    return frame;
}

QGroupBox* SweepGroup::buildTestFrame()
{
    slideTestPoints = makeSlider("slideTestPoints", tr("Number of test points"));
    slideTestPoints->setSingleStep(1);
    slideTestPoints->setPageStep(100);
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

QGroupBox* SweepGroup::buildAttenuationFrame()
{
    slideAttenuation = makeSlider("slideAttenuation", tr("Output attenuation"));
    slideAttenuation->setSingleStep(1);
    slideAttenuation->setPageStep(1);
    lblAttenuation = makeValue("lblAttenuation", QStringLiteral("-000.0 dB"));
    fAttenuation = make<QGroupBox>("fAttenuation", tr("Output attenuation"));
    auto* const layout = new QHBoxLayout(fAttenuation);
    layout->addWidget(slideAttenuation);
    layout->addWidget(lblAttenuation);
    return fAttenuation;
}

void SweepGroup::connectHandlers()
{
    onChoice(optAB, [this] { sweepOption_Click(0); });
    onChoice(optBA, [this] { sweepOption_Click(1); });
    onChoice(optAlternate, [this] { sweepOption_Click(2); });
    onScroll(
        slideTestPoints, [this](int points) { lblNumPoints->setText(QString::number(points)); },
        [this](int points) { slideTestPoints_Scroll(points); });
    onScroll(
        slidePeriod, [this](int milliseconds) { ShowTestPeriod(milliseconds); },
        [this](int milliseconds) { slidePeriod_Scroll(milliseconds); });
    onScroll(
        slideAttenuation, [this](int value) { ShowAttenuation(value); },
        [this](int value) { slideAttenuation_Scroll(value); });
    connect(chkAcquirePhase, &QCheckBox::clicked, this, &SweepGroup::chkAcquirePhase_Click);
    connect(lstDT46Samples, &QComboBox::activated, this, &SweepGroup::lstDT46Samples_Click);
}

QList<QWidget*> SweepGroup::tabOrder() const
{
    return {optAB,       optBA,           optAlternate,   slideTestPoints,
            slidePeriod, chkAcquirePhase, lstDT46Samples, slideAttenuation};
}

bool SweepGroup::samplingModel() const
{
    return m_channel.mirror().strDeviceModel == kSamplingModel;
}

void SweepGroup::refresh()
{
    const InstrumentMirror& mirror = m_channel.mirror();
    showChecked(optAB, mirror.iSweepMode == 0);
    showChecked(optBA, mirror.iSweepMode == 1);
    showChecked(optAlternate, mirror.iSweepMode == 2);
    tabToChosen({optAB, optBA, optAlternate});

    showValue(slideTestPoints, kFewestPoints, kMostPoints, mirror.iNumPoints);
    lblNumPoints->setText(QString::number(slideTestPoints->value()));
    showValue(slidePeriod, 0, std::max<int>(kMostPeriod, mirror.iTestPeriod), mirror.iTestPeriod);
    ShowTestPeriod(mirror.iTestPeriod);
    refreshAttenuation();

    const bool sampling = samplingModel();
    chkAcquirePhase->setVisible(!sampling);
    showChecked(chkAcquirePhase, mirror.bfPhaseOn);
    lstDT46Samples->setVisible(sampling);
    lblSamples->setVisible(sampling);
    const QSignalBlocker quiet(lstDT46Samples);
    m_options.load();
}

void SweepGroup::refreshAttenuation()
{
    const InstrumentMirror& mirror = m_channel.mirror();
    const bool attenuator = mirror.bfAttenuationAvailable && mirror.iAttenuationSteps > 0;
    fAttenuation->setEnabled(attenuator);
    if (!attenuator)
        return;
    showValue(slideAttenuation, 1, mirror.iAttenuationSteps + 1, mirror.iAttenuationCode + 1);
    ShowAttenuation(slideAttenuation->value());
}

void SweepGroup::store()
{
    if (samplingModel())
        m_options.save(m_channel.context().preferences);
}

void SweepGroup::sweepOption_Click(int iSweepMode)
{
    if (!m_channel.isLive())
        return;
    m_channel.SendToDevice(command::sweepMode(iSweepMode));
    m_channel.mirror().iSweepMode = static_cast<std::int16_t>(iSweepMode);
}

void SweepGroup::chkAcquirePhase_Click()
{
    if (!m_channel.isLive())
        return;
    m_channel.mirror().bfPhaseOn = chkAcquirePhase->isChecked();
    m_channel.SendToDevice(command::phase(chkAcquirePhase->isChecked()));
}

void SweepGroup::lstDT46Samples_Click()
{
    m_channel.SendToDevice(command::samples(lstDT46Samples->currentText().toInt()));
    // At once: the next complete state sends what is stored.
    store();
}

void SweepGroup::slideTestPoints_Scroll(int points)
{
    m_channel.SendToDevice(command::points(points));
    m_channel.mirror().iNumPoints = static_cast<std::int16_t>(points);
}

void SweepGroup::slidePeriod_Scroll(int milliseconds)
{
    m_channel.SendToDevice(command::period(milliseconds));
    m_channel.mirror().iTestPeriod = static_cast<std::int16_t>(milliseconds);
}

void SweepGroup::slideAttenuation_Scroll(int value)
{
    m_channel.SendToDevice(command::atten(value - 1));
    m_channel.mirror().iAttenuationCode = static_cast<std::int16_t>(value - 1);
}

void SweepGroup::ShowTestPeriod(int milliseconds)
{
    lblPeriod->setText(QString::number(milliseconds) + QLatin1String(" mS"));
}

void SweepGroup::ShowAttenuation(int value)
{
    lblAttenuation->setText(settingsrules::attenuationText(value - 1, m_channel.mirror().dblAttenuationStep));
}

bool SweepGroup::eventFilter(QObject* watched, QEvent* event)
{
    // Typing chooses nothing in the list of samples: a slip of the hand would reach the instrument.
    if (watched == lstDT46Samples && event->type() == QEvent::KeyPress) {
        const QString typed = static_cast<QKeyEvent*>(event)->text();
        if (!typed.isEmpty() && typed.at(0).isPrint() && typed.at(0) != QLatin1Char(' '))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}
