// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/Questions.h"

#include "program/UserMessages.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class RecordedMessages : public UserMessages
{
public:
    int message(const QString& strMessage, int style, const QString& strTitle) override
    {
        text = strMessage;
        title = strTitle;
        lastStyle = style;
        ++count;
        return reply;
    }
    int systemBox(const QString&, int, const QString&) override { return ReplyNone; }

    QString text;
    QString title;
    int lastStyle = -1;
    int count = 0;
    int reply = ReplyNo;
};

TEST(QuestionOverwriteFile, AsksOnlyWhenTheFileExists)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plot 100%1.txt"));
    RecordedMessages messages;
    EXPECT_TRUE(questions::QuestionOverwriteFile(path, messages));
    EXPECT_EQ(messages.count, 0);

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_FALSE(questions::QuestionOverwriteFile(path, messages));
    EXPECT_EQ(messages.count, 1);
    EXPECT_EQ(messages.lastStyle, UserMessages::YesNo + UserMessages::Question);
    EXPECT_EQ(messages.title, QStringLiteral("Overwrite existing?"));
    EXPECT_EQ(messages.text, QStringLiteral("The file \"%1\" already exists.\nDo you want to replace it?").arg(path));

    messages.reply = UserMessages::ReplyYes;
    EXPECT_TRUE(questions::QuestionOverwriteFile(path, messages));
}

} // namespace
