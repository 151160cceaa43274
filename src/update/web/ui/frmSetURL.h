// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class Preferences;
class QLineEdit;

/// Changes the address of the web folder that holds the update files. OKButton stores it; nothing else does.
class frmSetURL : public QDialog
{
    Q_OBJECT

public:
    explicit frmSetURL(Preferences& preferences, QWidget* parent = nullptr);

private:
    void OKButton_Click();

    Preferences& m_preferences;
    QLineEdit* txtURL;
};
