// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "program/UserMessages.h"

#include <QDialog>
#include <QList>
#include <QPointer>

#include <array>

class EventSounds;
class QLabel;
class QPushButton;
class QTextEdit;

/// The program's own message box. A style is a button set (its remainder by 16) and an icon (its sixteenth part): stop,
/// question, exclamation, information; from 5 up no icon.
///
/// Enter presses the first button unless another has the focus, Escape the second; with one button both press that. The
/// window's close box, dismissal and the end of the owner are no answer of the user's: they give the harmless one,
/// Cancel where there is one and the second button otherwise. The text is plain, wraps, scrolls when it is long and can
/// be selected; the copy key copies it whole when nothing is selected.
class frmQuorrelMessage : public QDialog
{
    Q_OBJECT

public:
    /// Shows the message modally over the owner (null: over the active window) and returns the reply. When the owner
    /// goes down with the message on the screen, the reply is the harmless one.
    static int message(QWidget* objOwner, const QString& strMessage, int style, const QString& strTitle,
                       EventSounds* sounds = nullptr);

    frmQuorrelMessage(QWidget* objOwner, const QString& strMessage, int style, const QString& strTitle,
                      EventSounds* sounds = nullptr);

    /// The button pressed; ReplyNone as long as none was.
    int reply() const { return m_reply; }
    static int harmlessReply(int style);
    void answerHarmlessly();

    /// Escape.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Button
    {
        const char* text;
        int reply;
    };
    static QList<Button> buttonSet(int style);
    static int harmlessButton(const QList<Button>& buttons);

    void setupformlayout(int intNum);
    void setCommandButtons();
    void btnCommands_Click(int index);
    void showIcon();
    void fitText();
    void copyText();

    QLabel* picIcon = nullptr;
    QTextEdit* txtMessage = nullptr;
    std::array<QPushButton*, 3> btnCommands{};

    QList<Button> m_buttons;
    int m_icon;
    int m_reply = UserMessages::ReplyNone;
    EventSounds* m_sounds;
    bool m_announced = false;
};

/// Answers the program's questions with frmQuorrelMessage and the system's box, over whatever window is on top.
class QuorrelMessages : public UserMessages
{
public:
    /// The sounds outlive this; null for silence.
    explicit QuorrelMessages(EventSounds* sounds = nullptr);

    /// The window that messages appear over when no other window of the program is active. Not owned.
    void setMainWindow(QWidget* window) { m_mainWindow = window; }

    int message(const QString& strMessage, int style, const QString& strTitle) override;
    int systemBox(const QString& strMessage, int style, const QString& strTitle) override;
    void dismiss() override;

private:
    QWidget* owner() const;

    EventSounds* m_sounds;
    QPointer<QWidget> m_mainWindow;
};
