// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmDevice.h"

#include "ui_frmDevice.h"

#include "controls/korvalink/KorvaLink.h"
#include "prefs/Preferences.h"
#include "program/UserMessages.h"
#include "widgets/ui/PlainTip.h"

#include <QDesktopServices>
#include <QPointer>
#include <QStyle>
#include <QUrl>

namespace {

constexpr int kProblemRole = Qt::UserRole;
constexpr int kSettlingRounds = 11;
constexpr int kNameSize = 128;
const QString kDeviceClass = QStringLiteral("KorvaLink");

} // namespace

frmDevice::frmDevice(KorvaLink& device, Preferences& preferences, UserMessages& messages, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmDevice>())
    , m_device(device)
    , m_preferences(preferences)
    , m_messages(messages)
{
    m_ui->setupUi(this);
    connect(m_ui->cmdRefresh, &QPushButton::clicked, this, &frmDevice::cmdRefresh_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmDevice::cmdOK_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &frmDevice::cmdCancel_Click);
    connect(m_ui->cmdBrowseTo, &QPushButton::clicked, this, &frmDevice::cmdBrowseTo_Click);
    connect(m_ui->lstDevice, &QListWidget::itemDoubleClicked, this, &frmDevice::lstDevice_DblClick);
    connect(m_ui->lstDevice, &QListWidget::itemSelectionChanged, this, &frmDevice::showSelection);
    showSelection();
}

frmDevice::~frmDevice() = default;

void frmDevice::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    // From the loop: the scan runs events, and a window must not do that in the middle of being shown.
    if (!m_scanned)
        QMetaObject::invokeMethod(this, &frmDevice::ScanBus, Qt::QueuedConnection);
    m_scanned = true;
}

void frmDevice::ScanBus()
{
    if (m_scanning)
        return;
    m_scanning = true;
    m_ui->cmdRefresh->setEnabled(false);
    const QPointer<frmDevice> self(this);
    for (int round = 0; round < kSettlingRounds; ++round) {
        m_device.Wait(1);
        QCoreApplication::processEvents();
        if (!self)
            return;
    }
    fillList();
    m_ui->cmdRefresh->setEnabled(true);
    m_scanning = false;
}

void frmDevice::fillList()
{
    const QListWidgetItem* const chosen = m_ui->lstDevice->currentItem();
    const QString chosenName = chosen ? chosen->text() : QString();
    m_ui->lstDevice->clear();
    const int count = m_device.DeviceCount();
    for (int index = 0; index < count; ++index) {
        QString name;
        if (!m_device.GetDeviceName(index, name, kNameSize))
            continue;
        auto* const item = new QListWidgetItem(name.section(QChar(u'\0'), 0, 0), m_ui->lstDevice);
        const QString problem = m_device.GetDeviceProblem(index);
        item->setData(kProblemRole, problem);
        if (!problem.isEmpty()) {
            item->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this));
            item->setToolTip(plainTip(problem));
            item->setData(Qt::AccessibleDescriptionRole, problem);
        }
        if (item->text() == chosenName)
            m_ui->lstDevice->setCurrentItem(item);
    }
    if (!m_ui->lstDevice->currentItem())
        m_ui->lstDevice->setCurrentRow(0);
    showSelection();
}

void frmDevice::showSelection()
{
    const QListWidgetItem* const item = m_ui->lstDevice->currentItem();
    m_ui->cmdOK->setEnabled(item != nullptr);
    if (item)
        m_ui->lblProblem->setText(item->data(kProblemRole).toString());
    else
        m_ui->lblProblem->setText(tr("No instrument was found. Connect one, switch it on and press Refresh."));
}

void frmDevice::cmdRefresh_Click()
{
    ScanBus();
}

void frmDevice::cmdOK_Click()
{
    const QListWidgetItem* const item = m_ui->lstDevice->currentItem();
    if (!item || m_scanning)
        return;
    // Devices may have come and gone since the list was filled: the name is what the user chose, the index follows it.
    const QString chosen = item->text();
    const int count = m_device.DeviceCount();
    int index = -1;
    for (int i = 0; i < count && index < 0; ++i) {
        QString name;
        if (m_device.GetDeviceName(i, name, kNameSize) && name == chosen)
            index = i;
    }
    const QPointer<frmDevice> self(this);
    if (index < 0) {
        m_messages.message(tr("The instrument %1 is not there any more.").arg(chosen),
                           UserMessages::OkOnly | UserMessages::Exclamation, windowTitle());
        if (self)
            ScanBus();
        return;
    }
    m_device.Configure(kDeviceClass, 1, 0, index);
    const bool opened = m_device.Open();
    if (!self)
        return;
    if (opened)
        accept();
    else
        m_messages.message(m_device.LastError(), UserMessages::OkOnly | UserMessages::Exclamation, windowTitle());
}

void frmDevice::cmdCancel_Click()
{
    reject();
}

void frmDevice::cmdBrowseTo_Click()
{
    const QString address = m_preferences.value(options::kMakerUrl);
    if (!QDesktopServices::openUrl(QUrl(address)))
        m_messages.message(tr("The web page %1 cannot be opened.").arg(address),
                           UserMessages::OkOnly | UserMessages::Exclamation, windowTitle());
}

void frmDevice::lstDevice_DblClick()
{
    cmdOK_Click();
}
