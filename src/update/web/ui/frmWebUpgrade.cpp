// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/frmWebUpgrade.h"

#include "files/FileNames.h"
#include "prefs/Preferences.h"
#include "program/UserMessages.h"
#include "update/web/Installer.h"
#include "update/web/ListingPage.h"
#include "update/web/Minisign.h"
#include "update/web/PartFile.h"
#include "update/web/UpdateOffers.h"
#include "update/web/UpdateVersion.h"
#include "update/web/ui/frmSetURL.h"
#include "values/Conversions.h"
#include "widgets/ui/ShowModally.h"

#include <QCheckBox>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int kBeforeTheQuery = 100; // milliseconds, so that the window is painted
constexpr std::int16_t kFailed = 1;

QString noFile()
{
    return QStringLiteral("NO_URL");
}

} // namespace

frmWebUpgrade::frmWebUpgrade(const Context& context, QWidget* parent)
    : PicturedDialog(QStringLiteral("imgWebUpdate"), parent)
    , m_context(context)
    , m_client(new WebClient(context.limits, this))
    , Timer(new QTimer(this))
    , lblAction(new QLabel(content()))
    , chkSoftwareVersion(new QCheckBox(tr("MarrowickGraph &Software Version"), content()))
    , chkFirmwareVersion(new QCheckBox(tr("T46 &Firmware Version"), content()))
    , lblDownload(new QLabel(content()))
    , webProgressBar(new QProgressBar(content()))
    , cmdNewURL(new QPushButton(tr("&Set URL"), content()))
    , cmdNext(new QPushButton(tr("&Next >>"), content()))
    , cmdOkCancel(new QPushButton(tr("&Cancel"), content()))
{
    setObjectName(QStringLiteral("frmWebUpgrade"));
    setWindowTitle(tr("Internet Updates"));
    layOut();
    lblAction->setText(tr("Checking the internet for updates.\nPlease wait."));
    chkSoftwareVersion->hide();
    chkFirmwareVersion->hide();
    webProgressBar->hide();
    Timer->setObjectName(QStringLiteral("Timer"));
    Timer->setSingleShot(true);
    Timer->setInterval(kBeforeTheQuery);
    connect(Timer, &QTimer::timeout, this, &frmWebUpgrade::QueryWebForUpdates);
    connect(cmdNext, &QPushButton::clicked, this, &frmWebUpgrade::cmdNext_Click);
    connect(cmdOkCancel, &QPushButton::clicked, this, &frmWebUpgrade::cmdOkCancel_Click);
    connect(cmdNewURL, &QPushButton::clicked, this, &frmWebUpgrade::cmdNewURL_Click);
}

frmWebUpgrade::~frmWebUpgrade() = default;

void frmWebUpgrade::layOut()
{
    const std::pair<QWidget*, const char*> named[] = {
        {lblAction, "lblAction"},     {chkSoftwareVersion, "chkSoftwareVersion"},
        {lblDownload, "lblDownload"}, {chkFirmwareVersion, "chkFirmwareVersion"},
        {cmdNewURL, "cmdNewURL"},     {webProgressBar, "webProgressBar"},
        {cmdNext, "cmdNext"},         {cmdOkCancel, "cmdOkCancel"}};
    for (const auto& [widget, name] : named)
        widget->setObjectName(QLatin1String(name));
    for (QLabel* label : {lblAction, lblDownload}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    // Room for the longest text, so that the window keeps its size.
    lblAction->setMinimumHeight(fontMetrics().lineSpacing() * 4);
    lblAction->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    webProgressBar->setAccessibleName(tr("Progress of the download"));
    QSizePolicy kept = webProgressBar->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    webProgressBar->setSizePolicy(kept);
    for (QPushButton* button : {cmdNewURL, cmdNext, cmdOkCancel})
        button->setAutoDefault(false);
    cmdNext->setDefault(true);

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(cmdNewURL);
    buttons->addStretch();
    buttons->addWidget(cmdNext);
    buttons->addWidget(cmdOkCancel);
    for (QWidget* widget : {static_cast<QWidget*>(lblAction), static_cast<QWidget*>(chkSoftwareVersion),
                            static_cast<QWidget*>(chkFirmwareVersion), static_cast<QWidget*>(lblDownload),
                            static_cast<QWidget*>(webProgressBar)})
        column()->addWidget(widget);
    column()->addStretch();
    column()->addLayout(buttons);
}

void frmWebUpgrade::showEvent(QShowEvent* event)
{
    PicturedDialog::showEvent(event);
    if (!event->spontaneous() && giCurrentStep == 1)
        Timer->start();
}

void frmWebUpgrade::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        cmdOkCancel_Click();
    else
        PicturedDialog::keyPressEvent(event);
}

void frmWebUpgrade::cmdNext_Click()
{
    switch (giCurrentStep) {
    case 1:
        cmdNewURL->hide();
        QueryWebForUpdates();
        break;
    case 2:
        FetchSelectedUpdates();
        break;
    case 3:
        InstallUpdates();
        break;
    default:
        reject();
    }
}

void frmWebUpgrade::QueryWebForUpdates()
{
    const QPointer<frmWebUpgrade> alive = this;
    cmdNext->setEnabled(false);
    QString strFirmwareFile;
    if (const QString tag = m_context.firmware.listingTag(); !tag.isEmpty())
        strFirmwareFile = GetWebUpdateQuery(tag);
    if (!alive || m_unloaded)
        return;
    const QString strSoftwareFile = GetWebUpdateQuery(QLatin1String(updateoffers::kProgramTag));
    if (!alive || m_unloaded)
        return;
    cmdNext->setEnabled(true);
    if (strSoftwareFile == noFile()) {
        lblAction->setText(
            tr("Unable to connect to server  Please check your internet connection. Click Next to re-try."));
        return;
    }
    // What was found comes from this address.
    cmdNewURL->hide();
    const bool available = CheckForUpdates(strFirmwareFile, strSoftwareFile);
    m_context.preferences.setValue(options::kUpgradeAvailable, available);
    if (available) {
        lblAction->setText(tr("Select the updates to download and install."));
        cmdNext->show();
        giCurrentStep = 2;
    } else {
        finish(tr("The Software and firmware you are using is up to date."));
        cmdOkCancel->setText(tr("&Finish"));
    }
}

void frmWebUpgrade::finish(const QString& words)
{
    lblAction->setText(words);
    cmdNext->hide();
    giCurrentStep = 4;
}

QString frmWebUpgrade::GetWebUpdateQuery(const QString& strDevice)
{
    const QByteArray page = m_client->readPage(m_context.preferences.value(options::kWebUrl));
    const QString name = listingpage::fileWithTag(page, strDevice);
    return name.isEmpty() ? noFile() : name;
}

bool frmWebUpgrade::CheckFirmwareUpdate(const QString& strFile)
{
    const FirmwareSide& firmware = m_context.firmware;
    const double installed = updateversion::versionNumber(firmware.firmwareMajor(), firmware.firmwareMinor());
    if (!updateoffers::takeFirmware(m_context.preferences, strFile, installed))
        return false;
    chkFirmwareVersion->setText(tr("Download firmware version ") +
                                values::decimalText(updateversion::GetVersionFromFileName(strFile)));
    if (firmware.deviceConnected()) {
        chkFirmwareVersion->show();
        chkFirmwareVersion->setChecked(true);
        m_context.choices.setFirmwareUpdate(true);
    }
    return true;
}

bool frmWebUpgrade::CheckSoftwareUpdate(const QString& strFile)
{
    if (!updateoffers::takeProgram(m_context.preferences, strFile))
        return false;
    chkSoftwareVersion->setText(tr("Download software version ") +
                                values::decimalText(updateversion::GetVersionFromFileName(strFile)));
    chkSoftwareVersion->show();
    chkSoftwareVersion->setChecked(true);
    m_context.choices.setSoftwareUpdate(true);
    return true;
}

bool frmWebUpgrade::CheckForUpdates(const QString& strFirmwareFile, const QString& strSoftwareFile)
{
    const bool firmware = !strFirmwareFile.isEmpty() && CheckFirmwareUpdate(strFirmwareFile);
    const bool software = !strSoftwareFile.isEmpty() && CheckSoftwareUpdate(strSoftwareFile);
    return firmware || software;
}

bool frmWebUpgrade::sayNothingChosen()
{
    if (chkFirmwareVersion->isChecked() || chkSoftwareVersion->isChecked())
        return false;
    finish(tr("No updates have been selected. Click Cancel to continue."));
    return true;
}

void frmWebUpgrade::FetchSelectedUpdates()
{
    cmdNext->setEnabled(false);
    if (sayNothingChosen())
        return;
    std::int16_t errorNumber = 0;
    lblAction->setText(tr("Downloading the selected updates. Please wait."));
    const bool firmware = chkFirmwareVersion->isChecked(), software = chkSoftwareVersion->isChecked();
    chkFirmwareVersion->setEnabled(false);
    if (firmware &&
        !fetch(tr("Getting Firmware upgrade"), updateoffers::firmwareFile(m_context.preferences), false, errorNumber))
        return;
    chkSoftwareVersion->setEnabled(false);
    if (software &&
        !fetch(tr("Getting Software upgrade"), updateoffers::programFile(m_context.preferences), true, errorNumber))
        return;
    if (!bStopDownload && errorNumber == 0) {
        giCurrentStep = 3;
        lblAction->setText(tr("Click next to install the updates"));
        cmdNext->setEnabled(true);
    } else {
        finish(tr("An error occured during update download. Click Cancel to continue."));
    }
}

bool frmWebUpgrade::fetch(const QString& what, const QString& strLocalFile, bool withSignature,
                          std::int16_t& errorNumber)
{
    const QPointer<frmWebUpgrade> alive = this;
    const QString name = files::FileOfPath(strLocalFile);
    // Nothing from the web goes anywhere but into the update folder.
    const QString target = updateoffers::inUpdateFolder(m_context.preferences, name);
    if (!listingpage::isBareFileName(name) || QDir::cleanPath(strLocalFile) != QDir::cleanPath(target)) {
        errorNumber = kFailed;
        return true;
    }
    lblDownload->setText(what);
    std::int16_t ofFile = kFailed;
    DownLoadFile(name, target, ofFile);
    if (alive && !m_unloaded && withSignature && m_whole)
        fetchSignature(name, target);
    if (!alive || m_unloaded)
        return false;
    lblDownload->clear();
    if (ofFile != 0)
        errorNumber = ofFile;
    return true;
}

void frmWebUpgrade::DownLoadFile(const QString& url, const QString& filename, std::int16_t& errorNumber)
{
    m_whole = false;
    if (bStopDownload) {
        errorNumber = 0;
        return;
    }
    const QPointer<frmWebUpgrade> alive = this;
    bDownloading = true;
    const QString address = updateoffers::addressOf(m_context.preferences.value(options::kWebUrl), url);
    webProgressBar->setValue(webProgressBar->minimum());
    webProgressBar->show();
    QDir().mkpath(files::PathOfFile(filename));
    const WebClient::Download download =
        m_client->readFile(address, filename, [this](qint64 received, qint64 announced) {
            const auto percentage =
                static_cast<int>(100.0 * static_cast<double>(received) / static_cast<double>(announced));
            webProgressBar->setValue(std::min(percentage, webProgressBar->maximum()));
        });
    if (!alive || m_unloaded)
        return;
    bDownloading = false;
    m_whole = download.end == WebClient::Download::End::Whole;
    errorNumber = download.end == WebClient::Download::End::Refused ? kFailed : std::int16_t(0);
    webProgressBar->setValue(webProgressBar->maximum());
    webProgressBar->hide();
    if (download.end == WebClient::Download::End::Short)
        m_context.messages.message(tr("File:") + url + tr(" did not download correctly"),
                                   UserMessages::OkOnly | UserMessages::Stop, tr("Download Error"));
}

void frmWebUpgrade::fetchSignature(const QString& url, const QString& filename)
{
    const QPointer<frmWebUpgrade> alive = this;
    const QString address =
        updateoffers::addressOf(m_context.preferences.value(options::kWebUrl), installer::signatureOf(url));
    bDownloading = true;
    const QByteArray signature = m_client->readPage(address, minisign::kLongestSignatureFile);
    if (!alive || m_unloaded)
        return;
    bDownloading = false;
    if (signature.isEmpty())
        return;
    // Whether there is one, and whether it fits, is told before the program is started.
    PartFile file(installer::signatureOf(filename));
    if (file.open() && file.write(signature))
        static_cast<void>(file.finish().ok());
}

void frmWebUpgrade::InstallUpdates()
{
    hide();
    m_context.choices.setInstall();
    m_context.choices.setSoftwareUpdate(chkSoftwareVersion->isChecked());
    m_context.choices.setFirmwareUpdate(chkFirmwareVersion->isChecked());
    unload();
}

void frmWebUpgrade::cmdOkCancel_Click()
{
    if (!bDownloading) {
        reject();
        return;
    }
    const QPointer<frmWebUpgrade> alive = this;
    const int reply = m_context.messages.message(
        tr("Upgrade file download in proress. Are you sure you want to stop this operation?"),
        UserMessages::YesNo | UserMessages::Question, tr("Internet Updates"));
    if (alive && reply == UserMessages::ReplyYes) {
        bStopDownload = true;
        m_client->stop();
    }
}

void frmWebUpgrade::reject()
{
    if (bDownloading && !m_unloaded) {
        const QPointer<frmWebUpgrade> alive = this;
        const int reply = m_context.messages.message(
            tr("Upgrade file download in proress. Are you sure you want to stop this operation?"),
            UserMessages::OkCancel | UserMessages::Question, tr("Internet Updates"));
        if (!alive)
            return;
        if (reply != UserMessages::ReplyOk) {
            bStopDownload = true;
            m_client->stop();
            return;
        }
        m_context.choices.setFirmwareUpdate(false);
        m_context.choices.setSoftwareUpdate(false);
    }
    unload();
}

void frmWebUpgrade::unload()
{
    m_unloaded = true;
    Timer->stop();
    m_client->stop();
    QDialog::reject();
}

void frmWebUpgrade::cmdNewURL_Click()
{
    showModally(new frmSetURL(m_context.preferences, this));
}
