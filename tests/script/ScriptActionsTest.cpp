// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptActions.h"

#include "script/ScriptFixture.h"
#include "script/ScriptReply.h"

namespace {

class ScriptActionsTest : public ScriptFixture
{};

TEST_F(ScriptActionsTest, PromptGoesOnWithOk)
{
    EXPECT_EQ(act(frametext::text('f', '0', "Insert part 3")), " ");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_TRUE(messages.shown[0].system) << "the plain system box";
    EXPECT_EQ(said(), QStringList{"Insert part 3 | User Prompt | 65"});
}

TEST_F(ScriptActionsTest, PromptStopsWithCancel)
{
    messages.replies = {UserMessages::ReplyCancel};
    EXPECT_EQ(act(frametext::text('f', '0', "Insert part 3")), " y\r");
}

TEST_F(ScriptActionsTest, AbortQuestionWithF1StopsOnNoAndGoesOnWithYes)
{
    messages.replies = {UserMessages::ReplyNo, UserMessages::ReplyYes};
    EXPECT_EQ(act(frametext::text('p', '1', "Measure on?")), " y\r");
    EXPECT_EQ(act(frametext::text('p', '1', "Measure on?")), " ");
    EXPECT_EQ(said().constFirst(), QStringLiteral("Measure on? | Abort MarrowickScript? | 36"));
}

TEST_F(ScriptActionsTest, AbortQuestionWithF0StopsOnYesAndGoesOnWithNo)
{
    messages.replies = {UserMessages::ReplyYes, UserMessages::ReplyNo};
    EXPECT_EQ(act(frametext::text('p', '0', "Stop now?")), " y\r");
    EXPECT_EQ(act(frametext::text('p', '0', "Stop now?")), " ");
}

TEST_F(ScriptActionsTest, AbortQuestionWhoseFieldIsNoNumberIsNeitherAskedNorAnswered)
{
    sendBroken(frametext::text('p', '?', "Stop now?"));
    EXPECT_EQ(act({}), QByteArray());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ScriptActionsTest, TheRepliesOfManyFramesComeInTheirOrder)
{
    messages.replies = {UserMessages::ReplyOk, UserMessages::ReplyCancel};
    EXPECT_EQ(act(frametext::text('f', '0', "a") + frametext::text('f', '0', "b") + frametext::text('b', '0', "c")),
              "  y\r ");
}

TEST_F(ScriptActionsTest, AnAnswerGivenAfterTheLinkHasEndedGoesNowhere)
{
    messages.whileShowing = [this] { device.Close(); };
    pty.send(frametext::text('f', '0', "Insert part 3"));
    ASSERT_TRUE(waitFor([this] { return !messages.shown.empty(); }));
    connectPty();
    EXPECT_EQ(farEnd(), QByteArray());
}

TEST_F(ScriptActionsTest, AnAnswerToOneConnectionDoesNotGoToTheNext)
{
    Pty other(Pty::HostEnd::KeptOpen);
    QByteArray toOther;
    messages.whileShowing = [&] {
        ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(other.slavePath()), QStringLiteral("2")));
        toOther = other.receive();
    };
    messages.replies = {UserMessages::ReplyCancel};
    pty.send(frametext::text('f', '0', "Insert part 3"));
    ASSERT_TRUE(waitFor([this] { return !messages.shown.empty(); }));
    device.Flush();
    settle();
    EXPECT_FALSE(other.receive().contains(" y\r"));
    EXPECT_EQ(farEnd(), QByteArray());
}

TEST_F(ScriptActionsTest, FramesThatComeWhileAPromptIsOpenWaitUntilItIsAnswered)
{
    newDocument('1');
    bool open = false;
    messages.whileShowing = [&] {
        open = true;
        pty.send(frametext::text('j', '0', ""));
        settle();
        EXPECT_EQ(documents.count(), 1);
        open = false;
    };
    EXPECT_EQ(act(frametext::text('f', '0', "a")), "  ");
    EXPECT_FALSE(open);
    EXPECT_EQ(documents.count(), 0);
}

} // namespace
