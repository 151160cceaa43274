// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmAbout.h"

#include "ui_frmAbout.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentMirror.h"
#include "link/ui/LinkImages.h"
#include "link/ui/SystemInformation.h"
#include "link/ui/frmSystemInformation.h"
#include "program/UserMessages.h"
#include "program/Version.h"
#include "values/Conversions.h"

frmAbout::frmAbout(const KorvaLink& device, const InstrumentMirror& mirror, UserMessages& messages, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmAbout>())
    , m_device(device)
    , m_mirror(mirror)
    , m_messages(messages)
    , m_information([] { return systemInformation(); })
{
    m_ui->setupUi(this);
    for (QLabel* told : {m_ui->lblDeviceVersion, m_ui->lblSerialNumber})
        told->setTextFormat(Qt::PlainText);
    linkimages::load(*m_ui->imgProgram, QStringLiteral("marrowickgraph"));
    m_ui->lblVersion->setText(u'V' + version::text());
    connect(m_ui->cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
    connect(m_ui->cmdUpgrade, &QPushButton::clicked, this, &frmAbout::cmdUpgrade_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    // The instrument's answer comes behind the connection; DataReceived tells of it.
    connect(&m_device, &KorvaLink::DeviceConnected, this, &frmAbout::Update);
    connect(&m_device, &KorvaLink::DataReceived, this, &frmAbout::Update, Qt::QueuedConnection);
    connect(&m_device, &KorvaLink::Disconnected, this, &frmAbout::Update);
    Update();
}

frmAbout::~frmAbout() = default;

void frmAbout::Update()
{
    const bool connected = m_device.Connected();
    if (connected) {
        m_ui->lblDeviceVersion->setText(QLatin1String(m_mirror.bfDebugFirmware ? "DEBUG V" : "V") +
                                        values::decimalText(m_mirror.dblFirmwareMajor) + QLatin1Char('.') +
                                        values::decimalText(m_mirror.dblFirmwareMinor) + QLatin1Char('.') +
                                        values::decimalText(m_mirror.dblFirmwareBuild) + QLatin1String(" Hardware V") +
                                        values::decimalText(m_mirror.dblFirmwareBoard));
        m_ui->lblSerialNumber->setText(tr("SN : ") + m_mirror.strDeviceSerial);
    } else {
        m_ui->lblDeviceVersion->setText(tr("Not connected"));
        m_ui->lblSerialNumber->clear();
    }
}

void frmAbout::cmdSysInfo_Click()
{
    const QString text = m_information();
    if (text.isEmpty()) {
        m_messages.message(tr("System Information Is Unavailable At This Time"),
                           UserMessages::OkOnly | UserMessages::Information, tr("Get System Information"));
        return;
    }
    auto* const window = new frmSystemInformation(text, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->open();
}

void frmAbout::cmdUpgrade_Click()
{
    Q_EMIT upgradeWanted();
}
