// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;
class UserMessages;

/// Asks for a bare file name. Keeps its text between uses, until clearFileName().
class frmGetFileName : public QDialog
{
    Q_OBJECT

public:
    explicit frmGetFileName(UserMessages& messages, QWidget* parent = nullptr);

    /// Takes down a message that is on the screen, then shows the caption over the middle of the owner, modally.
    /// Returns the text; empty when the window was closed or left by Escape.
    QString Dialog(QWidget* objOwner, const QString& strCaption);
    void clearFileName();

    /// The characters that never get into the text: " * / : < > ? \ |
    static bool isForbidden(QChar c);

    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void txtFileName_Edited();

    UserMessages& m_messages;
    QLineEdit* txtFileName;
    QPushButton* btnOK;
};
