// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QProgressBar;
class QPushButton;
class ScriptTransfer;

/// How far the transfer of a script has come, and the way to end it: button, Escape and close box alike.
class frmSendScript : public QDialog
{
    Q_OBJECT

public:
    /// The transfer outlives the form.
    explicit frmSendScript(ScriptTransfer& transfer, QWidget* parent = nullptr);

    /// From 0 to that many bytes.
    void SetupProgressBar(qint64 a_lAmount);

    void reject() override;

private:
    void showSent(qint64 bytes);

    ScriptTransfer& m_transfer;
    QProgressBar* ProgressBar;
    QPushButton* cmdCancel;
    qint64 m_unit = 1; ///< bytes a step: a bar counts to 2^31 at most
};
