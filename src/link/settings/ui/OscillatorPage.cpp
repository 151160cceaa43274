// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/OscillatorPage.h"

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/rules/SettingsRules.h"
#include "link/settings/SettingsChannel.h"
#include "link/settings/ui/FrequencyEdit.h"
#include "link/settings/ui/MonitorGroup.h"
#include "link/settings/ui/SettingsControls.h"
#include "link/settings/ui/SweepGroup.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPointer>

using namespace settingscontrols;

namespace {

constexpr int kIdleOff = 0;
constexpr int kIdleTestStart = -1;
constexpr int kFirstIdleFrequency = 1000;
constexpr int kLowestSweepFrequency = 1;

} // namespace

OscillatorPage::OscillatorPage(SettingsChannel& channel, QWidget* parent)
    : QWidget(parent)
    , m_channel(channel)
    , m_sweep(new SweepGroup(channel))
    , m_monitor(new MonitorGroup(channel, [this] { return apply(); }))
{
    auto* const left = new QVBoxLayout;
    left->addWidget(buildFrequencyFrame());
    left->addWidget(m_sweep);
    left->addStretch();
    auto* const right = new QVBoxLayout;
    right->addWidget(buildIdleFrame());
    right->addWidget(m_monitor);
    right->addStretch();
    auto* const layout = new QHBoxLayout(this);
    layout->addLayout(left);
    layout->addLayout(right);
    connectHandlers();
}

QGroupBox* OscillatorPage::buildFrequencyFrame()
{
    txtLowFreq = makeFrequency("txtLowFreq", tr("Frequency A in hertz"), kLowestSweepFrequency);
    txtHighFreq = makeFrequency("txtHighFreq", tr("Frequency B in hertz"), kLowestSweepFrequency);
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

QGroupBox* OscillatorPage::buildIdleFrame()
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

void OscillatorPage::connectHandlers()
{
    connect(cmdSetFreq, &QPushButton::clicked, this, &OscillatorPage::apply);
    for (FrequencyEdit* box : {txtLowFreq, txtHighFreq})
        connect(box, &FrequencyEdit::entered, this, [this, box] { frequency_KeyPress(box); });
    connect(chkAxisExtents, &QCheckBox::clicked, this, &OscillatorPage::chkAxisExtents_Click);
    connect(txtParkFrequency, &FrequencyEdit::entered, this, &OscillatorPage::SendIdleFrequency);
    onChoice(optOff, [this] { setIdleFrequency(kIdleOff); });
    onChoice(optTestStart, [this] { setIdleFrequency(kIdleTestStart); });
    onChoice(optUserDefined, [this] { setIdleFrequency(kFirstIdleFrequency); });
    connect(&m_channel.events(), &InstrumentEvents::changed, this, [this](MirrorPart part) {
        if (part == MirrorPart::SweepRangeConfirmed)
            showSweepRange();
    });
}

QList<QWidget*> OscillatorPage::tabOrder() const
{
    return QList<QWidget*>{txtLowFreq, txtHighFreq, cmdSetFreq, chkAxisExtents} + m_sweep->tabOrder() +
           QList<QWidget*>{optOff, optTestStart, optUserDefined, txtParkFrequency} + m_monitor->tabOrder();
}

void OscillatorPage::refresh()
{
    const InstrumentMirror& mirror = m_channel.mirror();
    if (!mirror.strDeviceSerial.isEmpty()) {
        txtLowFreq->showFrequency(mirror.dblStartFrequency);
        txtHighFreq->showFrequency(mirror.dblEndFrequency);
    }
    showChecked(chkAxisExtents, mirror.bfGraphExtents);
    setFrequencyControlsEnabled(!mirror.bfGraphExtents);
    m_sweep->refresh();
    refreshIdleOutput();
    m_monitor->refresh();
}

void OscillatorPage::refreshIdleOutput()
{
    const double idle = m_channel.mirror().dblIdleFrequency;
    const bool userDefined = idle != kIdleOff && idle != kIdleTestStart;
    showChecked(optOff, idle == kIdleOff);
    showChecked(optTestStart, idle == kIdleTestStart);
    showChecked(optUserDefined, userDefined);
    tabToChosen({optOff, optTestStart, optUserDefined});
    txtParkFrequency->setEnabled(userDefined);
    if (userDefined)
        txtParkFrequency->showFrequency(idle);
}

void OscillatorPage::store()
{
    m_sweep->store();
    m_monitor->store();
}

QString OscillatorPage::lowFrequencyText() const
{
    return txtLowFreq->frequencyText();
}

QString OscillatorPage::highFrequencyText() const
{
    return txtHighFreq->frequencyText();
}

// Range ---------------------------------------------------------------------------------------------------------------

bool OscillatorPage::apply()
{
    if (!txtLowFreq->hertz() || !txtHighFreq->hertz()) {
        // Neither goes out without the other; the one that is good stays as it was typed.
        for (FrequencyEdit* box : {txtHighFreq, txtLowFreq}) {
            if (!box->hertz()) {
                box->take();
                box->setFocus(Qt::OtherFocusReason);
            }
        }
        return false;
    }
    const std::int32_t low = *txtLowFreq->take();
    const std::int32_t high = *txtHighFreq->take();
    InstrumentMirror& mirror = m_channel.mirror();
    Preferences& preferences = m_channel.context().preferences;
    const SettingsStore::Batch batch(preferences.store());
    m_channel.SendToDevice(command::startFreq(low));
    preferences.setValue(mirror.strDeviceSerial, options::kTxtStartFrequency, low);
    preferences.setValue(mirror.strDeviceSerial, options::kTxtEndFrequency, high);
    m_monitor->store();
    m_channel.SendToDevice(command::endFreq(high));
    // The instrument confirms both; until it does, what is saved is what was asked for.
    mirror.dblStartFrequency = low;
    mirror.dblEndFrequency = high;
    if (optUserDefined->isChecked())
        SendIdleFrequency();
    m_channel.device().DeviceSaveSettings();
    return true;
}

bool OscillatorPage::applyEdited()
{
    const auto edited = [](const FrequencyEdit* box) { return box->isEnabled() && box->isEdited(); };
    if (edited(txtLowFreq) || edited(txtHighFreq)) {
        if (!apply())
            return false;
    }
    // The idle frequency has gone out with the range, unless it was refused or the range follows the graph.
    return !edited(txtParkFrequency) || SendIdleFrequency();
}

void OscillatorPage::sendRange()
{
    const auto send = [this](QString (*command)(double), const FrequencyEdit* box) {
        if (const std::optional<std::int32_t> hertz = settingsrules::wholeHertz(box->frequencyText()))
            m_channel.SendToDevice(command(*hertz));
    };
    send(command::startFreq, txtLowFreq);
    send(command::endFreq, txtHighFreq);
}

void OscillatorPage::frequency_KeyPress(FrequencyEdit* box)
{
    if (apply())
        (box == txtLowFreq ? static_cast<QWidget*>(txtHighFreq) : cmdSetFreq)->setFocus(Qt::TabFocusReason);
}

void OscillatorPage::showSweepRange()
{
    if (chkAxisExtents->isChecked())
        return;
    const InstrumentMirror& mirror = m_channel.mirror();
    // What the user is typing stays.
    if (!txtLowFreq->isEdited())
        txtLowFreq->showFrequency(mirror.dblStartFrequency);
    if (!txtHighFreq->isEdited())
        txtHighFreq->showFrequency(mirror.dblEndFrequency);
}

void OscillatorPage::setFrequencyControlsEnabled(bool enabled)
{
    for (QWidget* control :
         std::initializer_list<QWidget*>{lblLowerFreq, lblEndFrequency, txtLowFreq, txtHighFreq, cmdSetFreq})
        control->setEnabled(enabled);
}

void OscillatorPage::chkAxisExtents_Click()
{
    if (chkAxisExtents->isChecked()) {
        followExtents();
        return;
    }
    InstrumentMirror& mirror = m_channel.mirror();
    const Preferences& preferences = m_channel.context().preferences;
    setFrequencyControlsEnabled(true);
    const double low = preferences.value(mirror.strDeviceSerial, options::kTxtStartFrequency, mirror.dblStartFrequency);
    const double high = preferences.value(mirror.strDeviceSerial, options::kTxtEndFrequency, mirror.dblEndFrequency);
    txtLowFreq->showFrequency(low);
    txtHighFreq->showFrequency(high);
    mirror.bfGraphExtents = false;
    m_channel.SendToDevice(command::startFreq(low));
    m_channel.SendToDevice(command::endFreq(high));
}

void OscillatorPage::followExtents()
{
    PenDocument* const document = m_channel.context().active.get();
    if (document == nullptr) {
        // No graph to take the extents from.
        showChecked(chkAxisExtents, false);
        return;
    }
    m_channel.mirror().bfGraphExtents = true;
    const QPointer<OscillatorPage> self(this);
    document->SendGraphExtents(); // processes events
    if (self && chkAxisExtents->isChecked())
        setFrequencyControlsEnabled(false);
}

// Idle output ---------------------------------------------------------------------------------------------------------

void OscillatorPage::setIdleFrequency(int hertz)
{
    const bool userDefined = optUserDefined->isChecked();
    txtParkFrequency->setEnabled(userDefined);
    m_channel.SendToDevice(command::idleFreq(hertz));
    m_channel.mirror().dblIdleFrequency = hertz;
    if (userDefined)
        txtParkFrequency->showFrequency(hertz);
}

bool OscillatorPage::SendIdleFrequency()
{
    const std::optional<std::int32_t> hertz = txtParkFrequency->take();
    if (!hertz)
        return false;
    InstrumentMirror& mirror = m_channel.mirror();
    mirror.dblIdleFrequency = settingsrules::clampToRange(*hertz, mirror.dblAmpMinFreq, mirror.dblAmpMaxFreq);
    txtParkFrequency->showFrequency(mirror.dblIdleFrequency);
    m_channel.SendToDevice(command::idleFreq(mirror.dblIdleFrequency));
    return true;
}
