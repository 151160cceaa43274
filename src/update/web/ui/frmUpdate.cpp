// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/frmUpdate.h"

#include "files/FileNames.h"
#include "prefs/Preferences.h"
#include "program/UserMessages.h"
#include "update/web/UpdateOffers.h"
#include "update/web/ui/UpdateHost.h"
#include "widgets/ui/ShowModally.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

frmUpdate::frmUpdate(const Context& context, QWidget* parent)
    : PicturedDialog(QStringLiteral("imgUpdate"), parent)
    , m_context(context)
    , lblUpdate(new QLabel(tr("Select the update operation required. Click Next to continue."), content()))
    , optWebUpdate(new QRadioButton(tr("&Check the internet for updates"), content()))
    , optInstall(new QRadioButton(tr("&Install an update"), content()))
    , chkFirmwareUpdate(new QCheckBox(tr("Instrument &Firmware update"), content()))
    , chkSoftwareUpdate(new QCheckBox(tr("MarrowickGraph &Software update"), content()))
    , cmdNext(new QPushButton(tr("&Next >>"), content()))
    , cmdCancel(new QPushButton(tr("&Cancel"), content()))
{
    setObjectName(QStringLiteral("frmUpdate"));
    setWindowTitle(tr("Update"));
    layOut();
    connect(optWebUpdate, &QRadioButton::toggled, this, &frmUpdate::optionChanged);
    connect(optInstall, &QRadioButton::toggled, this, &frmUpdate::optionChanged);
    connect(cmdNext, &QPushButton::clicked, this, &frmUpdate::cmdNext_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    optWebUpdate->setChecked(true);
    optionChanged();
}

void frmUpdate::layOut()
{
    const std::pair<QWidget*, const char*> named[] = {{lblUpdate, "lblUpdate"},
                                                      {optWebUpdate, "optWebUpdate"},
                                                      {optInstall, "optInstall"},
                                                      {chkFirmwareUpdate, "chkFirmwareUpdate"},
                                                      {chkSoftwareUpdate, "chkSoftwareUpdate"},
                                                      {cmdNext, "cmdNext"},
                                                      {cmdCancel, "cmdCancel"}};
    for (const auto& [widget, name] : named)
        widget->setObjectName(QLatin1String(name));
    lblUpdate->setWordWrap(true);
    for (QPushButton* button : {cmdNext, cmdCancel})
        button->setAutoDefault(false);
    cmdNext->setDefault(true);

    auto* const boxes = new QVBoxLayout;
    boxes->setContentsMargins(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                                  style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing),
                              0, 0, 0);
    boxes->addWidget(chkFirmwareUpdate);
    boxes->addWidget(chkSoftwareUpdate);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdNext);
    buttons->addWidget(cmdCancel);
    column()->addWidget(lblUpdate);
    column()->addSpacing(fontMetrics().height() / 2);
    column()->addWidget(optWebUpdate);
    column()->addWidget(optInstall);
    column()->addLayout(boxes);
    column()->addStretch();
    column()->addLayout(buttons);
}

void frmUpdate::setInstall()
{
    optInstall->setChecked(true);
}

void frmUpdate::setFirmwareUpdate(bool ticked)
{
    chkFirmwareUpdate->setChecked(ticked);
}

void frmUpdate::setSoftwareUpdate(bool ticked)
{
    chkSoftwareUpdate->setChecked(ticked);
}

void frmUpdate::optionChanged()
{
    chkFirmwareUpdate->setEnabled(optInstall->isChecked() && m_context.host.hasFirmwareWizard());
    chkSoftwareUpdate->setEnabled(optInstall->isChecked());
}

void frmUpdate::cmdNext_Click()
{
    // What is shown from here runs events, a second click among them.
    if (m_busy)
        return;
    const QPointer<frmUpdate> alive = this;
    m_busy = true;
    if (optWebUpdate->isChecked())
        updateFromWeb();
    else
        install();
    if (alive)
        m_busy = false;
}

void frmUpdate::updateFromWeb()
{
    const QPointer<frmUpdate> alive = this;
    showModally(new frmWebUpgrade(
        {m_context.preferences, m_context.messages, m_context.host.firmware(), *this, m_context.limits}, this));
    if (alive && !m_context.preferences.value(options::kUpgradeAvailable))
        reject();
}

void frmUpdate::install()
{
    const QPointer<frmUpdate> alive = this;
    if (chkFirmwareUpdate->isChecked() && m_context.host.hasFirmwareWizard())
        m_context.host.showFirmwareWizard(*this);
    if (alive && chkSoftwareUpdate->isChecked())
        installProgram();
    if (alive)
        reject();
}

void frmUpdate::installProgram()
{
    const QPointer<frmUpdate> alive = this;
    const int reply =
        m_context.messages.message(tr("Click OK to shutdown MarrowickGraph and run the installer"),
                                   UserMessages::OkCancel | UserMessages::Exclamation, tr("Software install"));
    if (alive && reply == UserMessages::ReplyOk && m_context.host.closeAllDocuments() && alive && SelectInstaller())
        startInstaller();
}

bool frmUpdate::SelectInstaller()
{
    const QPointer<frmUpdate> alive = this;
    const QString proposed = updateoffers::programFile(m_context.preferences);
    const QString chosen = m_context.host.openFileName(
        tr("Open Upgrade File"), tr("Executable files(*.exe)|*.exe|Debian packages(*.deb)|*.deb|All files(*.*)|*.*"),
        files::PathOfFile(proposed), files::FileOfPath(proposed));
    if (!alive || chosen.isEmpty())
        return false;
    m_context.preferences.setValue(options::kSoftwareUpgradeFile, chosen);
    return true;
}

void frmUpdate::startInstaller()
{
    const QString file = m_context.preferences.value(options::kSoftwareUpgradeFile);
    if (!QFileInfo::exists(file))
        return;
    Outcome started = m_context.host.mayStart(file);
    if (started)
        started = m_context.host.start(file);
    if (started)
        m_context.host.endProgram();
    else
        m_context.messages.message(started.sentence(), UserMessages::OkOnly | UserMessages::Exclamation,
                                   tr("Software install"));
}
