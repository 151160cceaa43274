// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/MonitorGroup.h"

#include "instrument/Commands.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "link/rules/SettingsRules.h"
#include "link/settings/SettingsChannel.h"
#include "link/settings/ui/FrequencyEdit.h"
#include "link/settings/ui/SettingsControls.h"
#include "program/ProgramState.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>

#include <utility>

using namespace settingscontrols;

MonitorGroup::MonitorGroup(SettingsChannel& channel, std::function<bool()> apply, QWidget* parent)
    : QGroupBox(parent)
    , m_channel(channel)
    , m_apply(std::move(apply))
{
    setObjectName(QStringLiteral("fMonitor"));
    setTitle(tr("Monitor"));
    build();

    Preferences& preferences = m_channel.context().preferences;
    const auto serial = [this] { return m_channel.mirror().strDeviceSerial; };
    const auto spot = [](FrequencyEdit* box, QLatin1String fallback) {
        return OptionControl{[box, fallback](const QString& text) {
                                 // A stored text that is no frequency would be refused each time it is used.
                                 box->showFrequency(settingsrules::wholeHertz(text) ? text : QString(fallback));
                             },
                             [box] { return box->frequencyText(); }};
    };
    m_options.add(optionplace::of(preferences, options::kMonF1, serial),
                  spot(txtSpotFrequency[0], options::kMonF1.defaultValue));
    m_options.add(optionplace::of(preferences, options::kMonF2, serial),
                  spot(txtSpotFrequency[1], options::kMonF2.defaultValue));
    m_options.add(optionplace::of(preferences, options::kMonitorF1, serial),
                  optioncontrol::flag(optMonFreq[0], optMonFreq[1]));
    m_kind.add(optionplace::of(preferences, options::kMonitorAmplitude, serial),
               optioncontrol::flag(optMonitorAmplitude, optMonitorImpedance));

    connect(chkMonitor, &QCheckBox::toggled, this, &MonitorGroup::chkMonitor_Click);
    for (QRadioButton* option : {optMonitorAmplitude, optMonitorImpedance})
        onChoice(option, [this] { optMonitorAmplitude_Click(); });
    for (QRadioButton* option : optMonFreq)
        onChoice(option, [this] { optMonFreq_Click(); });
    for (FrequencyEdit* box : txtSpotFrequency)
        connect(box, &FrequencyEdit::entered, this, [this] { SendSpotFrequency(); });
    connect(&m_channel.events(), &InstrumentEvents::levelMeasured, this,
            [this](double level, double phase, bool shown) {
                if (m_channel.deviceReady())
                    SetInputLevel(level, phase, shown);
            });
    ClearLevelDisplay();
}

void MonitorGroup::build()
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

    auto* const layout = new QGridLayout(this);
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
}

QList<QWidget*> MonitorGroup::tabOrder() const
{
    return {chkMonitor,          optMonitorAmplitude, optMonitorImpedance, optMonFreq[0],
            txtSpotFrequency[0], optMonFreq[1],       txtSpotFrequency[1]};
}

bool MonitorGroup::hasChoice() const
{
    const InstrumentMirror& mirror = m_channel.mirror();
    return mirror.bfAmplitudeTest && mirror.bfImpedanceTest;
}

void MonitorGroup::refresh()
{
    {
        const QSignalBlocker quiet[] = {QSignalBlocker(optMonFreq[0]), QSignalBlocker(optMonFreq[1]),
                                        QSignalBlocker(optMonitorAmplitude), QSignalBlocker(optMonitorImpedance)};
        m_options.load();
        m_kind.load();
    }
    showBox();
    optMonitorAmplitude->setVisible(hasChoice());
    optMonitorImpedance->setVisible(hasChoice());
    tabToChosen({optMonitorAmplitude, optMonitorImpedance});
    tabToChosen({optMonFreq[0], optMonFreq[1]});
}

void MonitorGroup::store()
{
    m_options.save(m_channel.context().preferences);
}

bool MonitorGroup::isRunning() const
{
    return chkMonitor->isChecked();
}

void MonitorGroup::end()
{
    chkMonitor->setChecked(false);
}

void MonitorGroup::showBox()
{
    txtSpotFrequency[0]->setVisible(optMonFreq[0]->isChecked());
    txtSpotFrequency[1]->setVisible(optMonFreq[1]->isChecked());
}

void MonitorGroup::setChoiceEnabled(bool enabled)
{
    optMonitorAmplitude->setEnabled(enabled);
    optMonitorImpedance->setEnabled(enabled);
}

void MonitorGroup::chkMonitor_Click()
{
    const bool plotting = m_channel.context().state.gbfPlotting;
    if (chkMonitor->isChecked()) {
        if (plotting)
            showChecked(chkMonitor, false);
        else
            start();
        return;
    }
    if (hasChoice())
        setChoiceEnabled(true);
    // The stop is for the monitor's signal; a test that has begun meanwhile goes on.
    if (!plotting)
        m_channel.SendToDevice(command::stop());
    ClearLevelDisplay();
}

void MonitorGroup::start()
{
    // The level is that of the frequency in the box: it is in force before the signal starts.
    if (!m_apply() || !SendSpotFrequency()) {
        showChecked(chkMonitor, false);
        return;
    }
    setChoiceEnabled(false);
    const InstrumentMirror& mirror = m_channel.mirror();
    if (mirror.bfAmplitudeTest != mirror.bfImpedanceTest) {
        showChecked(optMonitorAmplitude, mirror.bfAmplitudeTest);
        showChecked(optMonitorImpedance, mirror.bfImpedanceTest);
    }
    m_channel.SendToDevice(command::stop());
    m_channel.SendToDevice(optMonitorAmplitude->isChecked() ? command::ampSpot(mirror.dblSpotFrequency)
                                                            : command::impSpot(mirror.dblSpotFrequency));
}

void MonitorGroup::optMonFreq_Click()
{
    showBox();
    if (chkMonitor->isChecked())
        SendSpotFrequency();
}

void MonitorGroup::optMonitorAmplitude_Click()
{
    if (m_channel.isLive())
        m_kind.save(m_channel.context().preferences);
}

bool MonitorGroup::SendSpotFrequency()
{
    FrequencyEdit* const box = txtSpotFrequency[optMonFreq[0]->isChecked() ? 0 : 1];
    const std::optional<std::int32_t> hertz = box->take();
    if (!hertz)
        return false;
    InstrumentMirror& mirror = m_channel.mirror();
    mirror.dblSpotFrequency = settingsrules::clampToRange(*hertz, mirror.dblAmpMinFreq, mirror.dblAmpMaxFreq);
    box->showFrequency(mirror.dblSpotFrequency);
    m_channel.SendToDevice(command::spotFreq(mirror.dblSpotFrequency));
    return true;
}

void MonitorGroup::SetInputLevel(double level, double dblPhase, bool bfShowPhase)
{
    if (!chkMonitor->isChecked())
        ClearLevelDisplay();
    else if (optMonitorAmplitude->isChecked())
        showBars(settingsrules::amplitudeBars(level, dblPhase, bfShowPhase));
    else
        showBars(settingsrules::impedanceBars(level, dblPhase, bfShowPhase));
}

void MonitorGroup::ClearLevelDisplay()
{
    showBars({});
}

void MonitorGroup::showBars(const settingsrules::LevelBars& bars)
{
    pbTestLevel->setValue(bars.level);
    pbTestPhase->setValue(bars.phase);
    lblRxLevel->setText(bars.levelText);
    lblRxPhase->setText(bars.phaseText);
}
