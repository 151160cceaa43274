// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "program/UserMessages.h"

#include <functional>
#include <vector>

/// Records every message and answers from a list; the answer is ReplyOk when the list is empty.
class RecordingMessages : public UserMessages
{
public:
    struct Shown
    {
        QString title;
        QString text;
        int style = 0;
        bool system = false;
        QString details = {};
    };

    int message(const QString& strMessage, int style, const QString& strTitle) override
    {
        return show({strTitle, strMessage, style, false});
    }
    int messageWithDetails(const QString& strMessage, const QString& strDetails, int style,
                           const QString& strTitle) override
    {
        return show({strTitle, strMessage, style, false, strDetails});
    }
    int systemBox(const QString& strMessage, int style, const QString& strTitle) override
    {
        return show({strTitle, strMessage, style, true});
    }

    std::vector<Shown> shown;
    std::vector<int> replies;           ///< taken from the front
    int dismissed = 0;                  ///< calls of dismiss()
    std::function<void()> whileShowing; ///< what happens in the nested event loop of a message

    void dismiss() override { ++dismissed; }

private:
    int show(Shown message)
    {
        shown.push_back(std::move(message));
        int reply = ReplyOk;
        if (!replies.empty()) {
            reply = replies.front();
            replies.erase(replies.begin());
        }
        if (whileShowing)
            whileShowing();
        return reply;
    }
};
