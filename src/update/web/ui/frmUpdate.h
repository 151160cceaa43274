// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "update/web/ui/PicturedDialog.h"
#include "update/web/ui/frmWebUpgrade.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;
class UpdateHost;

/// The chooser from which all updating starts: fetch updates from the web, or install files that are there.
class frmUpdate : public PicturedDialog, public UpdateChoices
{
    Q_OBJECT

public:
    struct Context
    {
        Preferences& preferences;
        UserMessages& messages;
        UpdateHost& host;
        WebLimits limits = {};
    };
    /// All of the context outlives the form.
    explicit frmUpdate(const Context& context, QWidget* parent = nullptr);

    void setInstall() override;
    void setFirmwareUpdate(bool ticked) override;
    void setSoftwareUpdate(bool ticked) override;

    void cmdNext_Click();

private:
    void layOut();
    void optionChanged();
    void updateFromWeb();
    void install();
    void installProgram();
    bool SelectInstaller();
    void startInstaller();

    Context m_context;
    bool m_busy = false;

    QLabel* lblUpdate;
    QRadioButton* optWebUpdate;
    QRadioButton* optInstall;
    QCheckBox* chkFirmwareUpdate;
    QCheckBox* chkSoftwareUpdate;
    QPushButton* cmdNext;
    QPushButton* cmdCancel;
};
