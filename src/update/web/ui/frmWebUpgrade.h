// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "update/web/WebClient.h"
#include "update/web/ui/PicturedDialog.h"

#include <cstdint>

class FirmwareSide;
class Preferences;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class UserMessages;

/// The options of the chooser, which a web update sets.
class UpdateChoices
{
public:
    virtual ~UpdateChoices() = default;
    virtual void setInstall() = 0;
    virtual void setFirmwareUpdate(bool ticked) = 0;
    virtual void setSoftwareUpdate(bool ticked) = 0;
};

/// Looks in the web folder for a newer firmware and a newer program, fetches what is ticked into the update folder and
/// hands over to the chooser. The program's signature file comes with it where the server has one.
class frmWebUpgrade : public PicturedDialog
{
    Q_OBJECT

public:
    struct Context
    {
        Preferences& preferences;
        UserMessages& messages;
        const FirmwareSide& firmware;
        UpdateChoices& choices;
        WebLimits limits = {};
    };
    /// All of the context outlives the form.
    explicit frmWebUpgrade(const Context& context, QWidget* parent = nullptr);
    ~frmWebUpgrade() override;

    std::int16_t giCurrentStep = 1; ///< 1 query, 2 choose, 3 install, 4 finished

    void QueryWebForUpdates();
    void FetchSelectedUpdates();
    void InstallUpdates();
    /// The server's name of the file with the tag, or "NO_URL".
    QString GetWebUpdateQuery(const QString& strDevice);
    /// errno is 0 after a finished transfer, whole or not.
    void DownLoadFile(const QString& url, const QString& filename, std::int16_t& errorNumber);
    bool CheckFirmwareUpdate(const QString& strFile);
    bool CheckSoftwareUpdate(const QString& strFile);
    bool CheckForUpdates(const QString& strFirmwareFile, const QString& strSoftwareFile);

    void cmdNext_Click();
    void cmdOkCancel_Click();
    void cmdNewURL_Click();
    /// The unload: every way to close the window leads here.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void layOut();
    void unload();
    bool sayNothingChosen();
    /// Fetches the file that the settings name; false when the window went down meanwhile.
    bool fetch(const QString& what, const QString& strLocalFile, bool withSignature, std::int16_t& errorNumber);
    void fetchSignature(const QString& url, const QString& filename);
    void finish(const QString& words);

    Context m_context;
    WebClient* m_client;
    QTimer* Timer;
    bool bDownloading = false;
    bool bStopDownload = false;
    bool m_unloaded = false;
    bool m_whole = false; ///< the last transfer

    QLabel* lblAction;
    QCheckBox* chkSoftwareVersion;
    QCheckBox* chkFirmwareVersion;
    QLabel* lblDownload;
    QProgressBar* webProgressBar;
    QPushButton* cmdNewURL;
    QPushButton* cmdNext;
    QPushButton* cmdOkCancel;
};
