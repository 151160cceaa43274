// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The only way for code below a window to speak to the user. The desktop program answers with frmQuorrelMessage; the
/// command-line program prints and takes the default; tests record.
class UserMessages
{
public:
    /// A style is one button set plus one icon.
    enum Style
    {
        OkOnly = 0,
        OkCancel = 1,
        AbortRetryIgnore = 2,
        YesNoCancel = 3,
        YesNo = 4,
        RetryCancel = 5,
        NoIcon = 0,
        Stop = 16,
        Question = 32,
        Exclamation = 48,
        Information = 64
    };
    enum Reply
    {
        ReplyNone = 0,
        ReplyOk = 1,
        ReplyCancel = 2,
        ReplyAbort = 3,
        ReplyRetry = 4,
        ReplyIgnore = 5,
        ReplyYes = 6,
        ReplyNo = 7
    };

    virtual ~UserMessages() = default;

    /// The program's own message dialog: shows the text modally and returns the reply. May run a nested event loop:
    /// the caller checks that what it holds still lives.
    virtual int message(const QString& strMessage, int style, const QString& strTitle) = 0;

    /// The same with details below the text.
    virtual int messageWithDetails(const QString& strMessage, const QString& strDetails, int style,
                                   const QString& strTitle)
    {
        return message(strDetails.isEmpty() ? strMessage : strMessage + QLatin1String("\n\n") + strDetails, style,
                       strTitle);
    }

    /// The plain system message box, used for the instrument's own notices and prompts.
    virtual int systemBox(const QString& strMessage, int style, const QString& strTitle) = 0;

    /// Takes down the program's own message dialogs that are on the screen; each gives its harmless
    /// answer: Cancel where there is one, the second button otherwise.
    virtual void dismiss() {}
};
