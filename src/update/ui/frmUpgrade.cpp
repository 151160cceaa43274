// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/ui/frmUpgrade.h"

#include "instrument/InstrumentEvents.h"
#include "link/DeviceModule.h"
#include "link/rules/FirmwareVersion.h"
#include "update/FirmwareUpgrade.h"
#include "update/ui/UpgradePicture.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

/// Width of the picture, and of what is left of the form beside it.
constexpr int kPictureShare = 2280;
constexpr int kPageShare = 6120 - kPictureShare;
constexpr int kWarningPage = 2;
constexpr char kVersionCode = 'O';
constexpr int kRounds = 11;

QString numbered(const char* name, int index)
{
    return QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index);
}

} // namespace

frmUpgrade::frmUpgrade(DeviceModule& module, FirmwareUpgrade& upgrade, OpenFile openFile, QWidget* parent)
    : QDialog(parent)
    , m_module(module)
    , m_upgrade(upgrade)
    , m_openFile(std::move(openFile))
{
    setObjectName(QStringLiteral("frmUpgrade"));
    setWindowTitle(tr("Firmware Upgrade"));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(new UpgradePicture(this), kPictureShare);
    m_pages = new QStackedWidget(this);
    row->addWidget(m_pages, kPageShare);
    for (int page = 0; page < kPages; ++page)
        m_pages->addWidget(makePage(page));

    UpGrade& loader = m_upgrade.loader();
    connect(&loader, &UpGrade::ProgressRange, this, [this](std::int16_t iTotal) {
        ProgressBar->setVisible(iTotal != 0);
        if (iTotal == 0)
            return;
        ProgressBar->setMaximum(iTotal);
        ProgressBar->setValue(0);
    });
    connect(&loader, &UpGrade::ProgressValue, this, [this](std::int16_t iValue) {
        ProgressBar->setValue(iValue);
        QCoreApplication::processEvents();
    });
    connect(&loader, &UpGrade::LinkLost, lblLinkLost, &QWidget::setVisible);
    connect(&m_module.events(), &InstrumentEvents::changed, this, [this](MirrorPart part) {
        if (part == MirrorPart::Firmware)
            showVersion();
    });

    ShowPage(0);
    txtFirmware->setText(m_upgrade.storedFile());
    CheckUpgradeFile();
    resize(fontMetrics().averageCharWidth() * 96, fontMetrics().height() * 22);
}

frmUpgrade::~frmUpgrade()
{
    m_module.setOnlyCode(0);
}

// The pages
// ------------------------------------------------------------------------------------------------------------

QLabel* frmUpgrade::label(const char* name, const QString& text)
{
    auto* const made = new QLabel(text, this);
    made->setObjectName(QLatin1String(name));
    made->setTextFormat(Qt::PlainText);
    made->setWordWrap(true);
    return made;
}

QLabel* frmUpgrade::value(const char* name)
{
    QLabel* const made = label(name);
    QFont bold = made->font();
    bold.setBold(true);
    made->setFont(bold);
    return made;
}

QPushButton* frmUpgrade::button(const char* name, const QString& text)
{
    auto* const made = new QPushButton(text, this);
    made->setObjectName(QLatin1String(name));
    made->setAutoDefault(false);
    return made;
}

QWidget* frmUpgrade::makePage(int page)
{
    auto* const widget = new QWidget(this);
    widget->setObjectName(numbered("picWizard", page));
    auto* const column = new QVBoxLayout(widget);
    fillPage(page, *column);
    if (page < kPages - 1) {
        const auto place = static_cast<std::size_t>(page);
        lblVersion[place] = value(numbered("lblVersion", page).toLatin1().constData());
        lblInformation[place] = label(numbered("lblInformation", page).toLatin1().constData());
        lblVersion[place]->setAccessibleName(tr("Version of the file"));
        lblInformation[place]->setAccessibleName(tr("Notes of the file"));
        column->addWidget(lblVersion[place]);
        column->addWidget(lblInformation[place]);
    }
    if (page == kWarningPage) {
        column->addWidget(ProgressBar);
        column->addWidget(lblLinkLost);
    }
    column->addStretch();
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    if (page == kPages - 1) {
        cmdFinish = button("cmdFinish", tr("&Finish"));
        connect(cmdFinish, &QPushButton::clicked, this, &frmUpgrade::cmdFinish_Click);
        buttons->addWidget(cmdFinish);
    } else {
        const auto place = static_cast<std::size_t>(page);
        if (page > 0) {
            cmdBack[place] = button(numbered("cmdBack", page).toLatin1().constData(), tr("< &Back"));
            connect(cmdBack[place], &QPushButton::clicked, this, [this, page] { cmdBack_Click(page); });
            buttons->addWidget(cmdBack[place]);
        }
        cmdNext[place] = button(numbered("cmdNext", page).toLatin1().constData(), tr("&Next >"));
        cmdNext[place]->setEnabled(false);
        connect(cmdNext[place], &QPushButton::clicked, this, [this, page] { cmdNext_Click(page); });
        buttons->addWidget(cmdNext[place]);
        cmdCancel[place] = button(numbered("cmdCancel", page).toLatin1().constData(), tr("&Cancel"));
        connect(cmdCancel[place], &QPushButton::clicked, this, &frmUpgrade::cmdCancel_Click);
        buttons->addWidget(cmdCancel[place]);
    }
    column->addLayout(buttons);
    return widget;
}

void frmUpgrade::fillPage(int page, QVBoxLayout& column)
{
    if (page == 0) {
        column.addWidget(label("lblUpgradeWiz1",
                               tr("Select the version of firmware you wish to install on your Marrowick Instruments "
                                  "T-46 hardware and click Next to continue.")));
        auto* const file = new QHBoxLayout;
        txtFirmware = new QLineEdit(this);
        txtFirmware->setObjectName(QStringLiteral("txtFirmware"));
        txtFirmware->setAccessibleName(tr("Firmware file"));
        // What stands there is what was checked.
        connect(txtFirmware, &QLineEdit::editingFinished, this, &frmUpgrade::CheckUpgradeFile);
        cmdBrowse = button("cmdBrowse", QStringLiteral("..."));
        cmdBrowse->setToolTip(tr("Browse to file"));
        cmdBrowse->setAccessibleName(tr("Browse to file"));
        connect(cmdBrowse, &QPushButton::clicked, this, &frmUpgrade::cmdBrowse_Click);
        file->addWidget(txtFirmware);
        file->addWidget(cmdBrowse);
        column.addLayout(file);
    } else if (page == 1) {
        column.addWidget(label("lblInstrument", tr("Select the serial number of the instrument that you wish to "
                                                   "upgrade and click Next to continue.")));
        lstDevice = new QListWidget(this);
        lstDevice->setObjectName(QStringLiteral("lstDevice"));
        lstDevice->setAccessibleName(tr("Instruments found"));
        column.addWidget(lstDevice);
        column.addWidget(label("lblCurrentVersion", tr("To be installed:")));
    } else if (page == kWarningPage) {
        QLabel* const warning = label("lblWarning", tr("WARNING: Do not unplug the instrument during FLASH "
                                                       "programming. Click Next to continue."));
        column.addWidget(warning);
        lblSerialNumber = value("lblSerialNumber");
        lblSerialNumber->setAccessibleName(tr("Instrument"));
        column.addWidget(lblSerialNumber);
        column.addWidget(label("lblCurVersion", tr("Current version:")));
        lblCurrentVersion1 = value("lblCurrentVersion_1");
        lblCurrentVersion1->setAccessibleName(tr("Current version"));
        column.addWidget(lblCurrentVersion1);
        column.addWidget(label("lblUpgradeTo", tr("To be upgraded to:")));
        ProgressBar = new QProgressBar(this);
        ProgressBar->setObjectName(QStringLiteral("ProgressBar"));
        ProgressBar->setAccessibleName(tr("Progress of the upgrade"));
        ProgressBar->setVisible(false);
        lblLinkLost = value("lblLinkLost");
        lblLinkLost->setText(tr("The link to the instrument is lost. Plug it in again: the upgrade goes on where it "
                                "stopped."));
        lblLinkLost->setVisible(false);
    } else {
        column.addWidget(label("lblSuccess", tr("The firmware of the instrument has been upgraded successfully and the "
                                                "system has been restarted. Click Finish to return to "
                                                "MarrowickGraph.")));
    }
}

void frmUpgrade::ShowPage(int iPage)
{
    m_pages->setCurrentIndex(iPage);
    giCurrentPage = static_cast<std::int16_t>(iPage);
    m_module.setOnlyCode(iPage == kWarningPage ? kVersionCode : '\0');
    QPushButton* const next = iPage == kPages - 1 ? cmdFinish : cmdNext[static_cast<std::size_t>(iPage)];
    next->setDefault(true);
    if (iPage == 1)
        lstDevice->setFocus();
    else if (iPage > 1)
        next->setFocus();
}

// The file
// -------------------------------------------------------------------------------------------------------------

void frmUpgrade::CheckUpgradeFile()
{
    QString fileName = txtFirmware->text();
    const std::optional<FirmwareUpgrade::Verdict> verdict = m_upgrade.CheckUpgradeFile(fileName);
    if (!verdict)
        return;
    txtFirmware->setText(fileName);
    cmdNext[0]->setEnabled(verdict->valid);
    for (std::size_t page = 0; page < (verdict->valid ? lblVersion.size() : 1); ++page) {
        lblVersion[page]->setText(verdict->version);
        lblInformation[page]->setText(verdict->information);
    }
}

void frmUpgrade::cmdBrowse_Click()
{
    const QPointer<frmUpgrade> self(this);
    const QString chosen =
        m_openFile(tr("Open Upgrade File"), tr("T46 upgrade files(*.mfw)|*.mfw"), m_upgrade.browseFolder());
    if (!self || chosen.isEmpty())
        return;
    txtFirmware->setText(chosen);
    m_upgrade.storeFile(chosen);
    CheckUpgradeFile();
}

// The steps
// ------------------------------------------------------------------------------------------------------------

void frmUpgrade::cmdNext_Click(int Index)
{
    if (m_working)
        return;
    const QPointer<frmUpgrade> self(this);
    m_working = true;
    if (Index == 0)
        nextFromFile();
    else if (Index == 1)
        nextFromInstrument();
    else
        nextFromWarning();
    if (self)
        m_working = false;
}

void frmUpgrade::nextFromFile()
{
    const QPointer<frmUpgrade> self(this);
    m_upgrade.takeAway();
    m_upgrade.wait(6, 2);
    if (self)
        FillDeviceList();
    if (self)
        ShowPage(1);
}

void frmUpgrade::FillDeviceList()
{
    const QPointer<frmUpgrade> self(this);
    lstDevice->clear();
    cmdNext[1]->setEnabled(false);
    const QStringList serials = m_upgrade.findInstruments();
    if (!self)
        return;
    lstDevice->addItems(serials);
    lstDevice->setCurrentRow(serials.isEmpty() ? -1 : 0);
    cmdNext[1]->setEnabled(!serials.isEmpty());
}

void frmUpgrade::nextFromInstrument()
{
    const QPointer<frmUpgrade> self(this);
    m_upgrade.takeAway();
    ShowPage(kWarningPage);
    const QListWidgetItem* const item = lstDevice->currentItem();
    const QString serial = item ? item->text() : QString();
    lblSerialNumber->setText(serial);
    m_upgrade.wait(kRounds, 10);
    if (!self || giCurrentPage != kWarningPage || !m_upgrade.open(serial) || !self)
        return;
    m_upgrade.wait(kRounds, 10);
    if (self && giCurrentPage == kWarningPage)
        cmdNext[2]->setEnabled(true);
}

void frmUpgrade::showVersion()
{
    if (giCurrentPage == kWarningPage)
        lblCurrentVersion1->setText(firmwareVersionText(m_module.context().mirror));
}

void frmUpgrade::nextFromWarning()
{
    const QPointer<frmUpgrade> self(this);
    for (QPushButton* control : {cmdBack[1], cmdBack[2], cmdNext[2], cmdCancel[2]})
        control->setEnabled(false);
    const std::int16_t iDeviceIndex = m_upgrade.openIndex();
    m_upgrade.takeAway();
    m_upgrade.wait(kRounds, 10);
    if (!self)
        return;
    const bool upgraded = RunUpgrade(iDeviceIndex);
    if (!self)
        return;
    if (upgraded)
        ShowPage(3);
    else
        reject();
}

bool frmUpgrade::RunUpgrade(std::int16_t iDeviceIndex)
{
    const QPointer<frmUpgrade> self(this);
    const QString fileName = txtFirmware->text();
    const QMetaObject::Connection shown = connect(&m_upgrade, &FirmwareUpgrade::fileJudged, this,
                                                  [this](const QString& version, const QString& information) {
                                                      lblVersion[2]->setText(version);
                                                      lblInformation[2]->setText(information);
                                                  });
    const bool done = m_upgrade.RunUpgrade(fileName, iDeviceIndex);
    if (self)
        disconnect(shown);
    return done;
}

void frmUpgrade::cmdBack_Click(int Index)
{
    if (m_upgrade.loader().Busy())
        return;
    if (Index == kWarningPage) {
        cmdNext[2]->setEnabled(false);
        lblCurrentVersion1->clear();
    }
    ShowPage(giCurrentPage - 1);
}

void frmUpgrade::cmdCancel_Click()
{
    reject();
}

void frmUpgrade::cmdFinish_Click()
{
    accept();
}

void frmUpgrade::done(int result)
{
    if (m_upgrade.loader().Busy())
        return;
    const QPointer<frmUpgrade> self(this);
    m_module.setOnlyCode(0);
    QDialog::done(result);
    if (self)
        m_upgrade.giveBack();
}
