// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/frmSettings.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/rules/FirmwareVersion.h"
#include "link/settings/SettingsDialogHost.h"
#include "link/settings/ui/EngineeringPage.h"
#include "link/settings/ui/MonitorGroup.h"
#include "link/settings/ui/OscillatorPage.h"
#include "link/settings/ui/PageScroller.h"
#include "link/settings/ui/SettingsControls.h"
#include "link/settings/ui/TestSchedulePage.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "values/Conversions.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace settingscontrols;

namespace {

constexpr int kTwipsPerPixel = 15;
enum Page
{
    Oscillator,
    Engineering,
    TestSchedule
};

} // namespace

frmSettings::frmSettings(DeviceModule& device, SettingsDialogHost& host, QWidget* parent)
    : QDialog(parent)
    , m_channel(device)
{
    setObjectName(QStringLiteral("frmSettings"));
    setAttribute(Qt::WA_DeleteOnClose);
    buildPages(host);
    setTabOrders();
    host.addFunctionKeys(*this);

    const InstrumentEvents* const events = &m_channel.events();
    connect(events, &InstrumentEvents::connected, this, &frmSettings::showNewInstrument);
    connect(events, &InstrumentEvents::stateComplete, this, &frmSettings::RefreshDialog);
    connect(events, &InstrumentEvents::aboutToForget, this, &frmSettings::storeSettings);
    device.setSettingsDialog(this);
    if (m_channel.context().device.Connected())
        device.DeviceSendSamples();
    RefreshDialog();
    resize(sizeHint().boundedTo(screen()->availableSize()));
    applyPosition();
}

frmSettings::~frmSettings()
{
    if (&m_channel.device().settingsDialog() == this)
        m_channel.device().setSettingsDialog(nullptr);
}

void frmSettings::buildPages(SettingsDialogHost& host)
{
    m_oscillator = new OscillatorPage(m_channel);
    m_engineering = new EngineeringPage(m_channel, host);
    m_testSchedule = new TestSchedulePage(m_channel);
    connect(m_engineering, &EngineeringPage::outputWanted, this, &frmSettings::uncheckMonitor);

    SSTab1 = make<QTabWidget>("SSTab1");
    SSTab1->setAccessibleName(tr("Settings of the instrument"));
    SSTab1->insertTab(Oscillator, new PageScroller(m_oscillator), tr("&Oscillator"));
    SSTab1->insertTab(Engineering, new PageScroller(m_engineering), tr("&Engineering"));
    SSTab1->insertTab(TestSchedule, new PageScroller(m_testSchedule), tr("&Test Schedule"));
    OKButton = makeButton("OKButton", tr("OK"));
    connect(OKButton, &QPushButton::clicked, this, &frmSettings::accept);

    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(OKButton);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addLayout(buttons);
}

void frmSettings::setTabOrders()
{
    QWidget* previous = SSTab1;
    for (QWidget* control : m_oscillator->tabOrder() + m_engineering->tabOrder() + m_testSchedule->tabOrder() +
                                QList<QWidget*>{OKButton}) {
        setTabOrder(previous, control);
        previous = control;
    }
}

void frmSettings::setClock(const std::function<QDateTime()>& now)
{
    m_engineering->runs().now = now;
}

void frmSettings::showNewInstrument()
{
    // What was monitored is gone, and its end is no command to the instrument that has come in its place.
    m_channel.setLive(false);
    uncheckMonitor();
    RefreshDialog();
}

void frmSettings::RefreshDialog()
{
    m_channel.setLive(false);
    m_stored = false;
    const bool sampling = m_channel.mirror().strDeviceModel == kSamplingModel;
    setWindowTitle(sampling ? tr("DT46 Settings") : tr("T46 Settings"));
    m_oscillator->refresh();
    m_engineering->refresh();
    m_testSchedule->refresh();
    SSTab1->setTabVisible(TestSchedule, m_testSchedule->isOffered());
    m_channel.setLive(!m_unloaded);
}

// What is asked -------------------------------------------------------------------------------------------------------

bool frmSettings::monitorChecked() const
{
    return m_oscillator->monitor().isRunning();
}

void frmSettings::uncheckMonitor()
{
    m_oscillator->monitor().end();
}

QString frmSettings::lowFrequencyText() const
{
    return m_oscillator->lowFrequencyText();
}

QString frmSettings::highFrequencyText() const
{
    return m_oscillator->highFrequencyText();
}

// Leaving -------------------------------------------------------------------------------------------------------------

void frmSettings::accept()
{
    if (m_oscillator->applyEdited())
        QDialog::accept();
    else
        SSTab1->setCurrentIndex(Oscillator);
}

void frmSettings::reject()
{
    m_oscillator->applyEdited();
    QDialog::reject();
}

void frmSettings::Unload()
{
    if (isVisible()) {
        done(Rejected);
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
    const LinkContext& context = m_channel.context();
    if (context.active.get() == nullptr)
        m_oscillator->sendRange();
    if (monitorChecked() && context.device.Connected())
        context.device.Write(QStringLiteral("x\r"));
    const SettingsStore::Batch batch(context.preferences.store());
    storeSettings();
    if (isVisible())
        storePosition();
    m_channel.setLive(false);
    m_channel.device().setSettingsDialog(nullptr);
}

void frmSettings::storeSettings()
{
    // Before an instrument has told its state the dialog shows what is not yet its own.
    if (m_stored || !m_channel.isStateKnown())
        return;
    m_stored = true;
    const SettingsStore::Batch batch(m_channel.context().preferences.store());
    m_channel.device().DeviceSaveSettings();
    m_oscillator->store();
}

// Place ---------------------------------------------------------------------------------------------------------------

void frmSettings::applyPosition()
{
    const Preferences& preferences = m_channel.context().preferences;
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
    Preferences& preferences = m_channel.context().preferences;
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
