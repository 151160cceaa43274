// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/frmGetFileName.h"

#include "support/RecordingMessages.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>

namespace {

class DismissedMessages : public RecordingMessages
{
public:
    void dismiss() override { ++dismissed; }
    int dismissed = 0;
};

class GetFileNameTest : public ::testing::Test
{
protected:
    QString ask(const std::function<void(QLineEdit*)>& act, QWidget* owner = nullptr)
    {
        QTimer poll;
        bool acted = false;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            if (QApplication::activeModalWidget() != &window || acted)
                return;
            acted = true;
            act(window.findChild<QLineEdit*>(QStringLiteral("txtFileName")));
        });
        poll.start(0);
        const QString name = window.Dialog(owner, QStringLiteral("Save plot as"));
        EXPECT_TRUE(acted);
        EXPECT_FALSE(window.isVisible());
        return name;
    }

    DismissedMessages messages;
    frmGetFileName window{messages};
};

TEST_F(GetFileNameTest, EndsOnEnter)
{
    EXPECT_EQ(ask([this](QLineEdit* box) {
                  EXPECT_EQ(window.windowTitle(), QStringLiteral("Save plot as"));
                  QTest::keyClicks(box, QStringLiteral("batch 17"));
                  QTest::keyClick(box, Qt::Key_Return);
              }),
              QStringLiteral("batch 17"));
    EXPECT_EQ(messages.dismissed, 1) << "a message on the screen goes first";
}

TEST_F(GetFileNameTest, EndsOnItsButton)
{
    EXPECT_EQ(ask([this](QLineEdit* box) {
                  QTest::keyClicks(box, QStringLiteral("x"));
                  QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("btnOK")), Qt::LeftButton);
              }),
              QStringLiteral("x"));
}

TEST_F(GetFileNameTest, NeverTakesTheNineCharactersByTyping)
{
    EXPECT_EQ(ask([](QLineEdit* box) {
                  QTest::keyClicks(box, QStringLiteral("a\"*/:<>?\\|b"));
                  EXPECT_EQ(box->text(), QStringLiteral("ab"));
                  box->selectAll();
                  QTest::keyClicks(box, QStringLiteral("*"));
                  EXPECT_EQ(box->text(), QStringLiteral("ab")) << "nor lets them replace a selection";
                  QTest::keyClick(box, Qt::Key_Return);
              }),
              QStringLiteral("ab"));
}

TEST_F(GetFileNameTest, DropsThemFromPastedTextToo)
{
    QApplication::clipboard()->setText(QStringLiteral("c:\\plots/one?.gad"));
    EXPECT_EQ(ask([](QLineEdit* box) {
                  QTest::keyClicks(box, QStringLiteral("<>"));
                  QTest::keySequence(box, QKeySequence::Paste);
                  EXPECT_EQ(box->cursorPosition(), box->text().size());
                  QTest::keyClick(box, Qt::Key_Return);
              }),
              QStringLiteral("cplotsone.gad"));
}

TEST_F(GetFileNameTest, KeepsItsTextUntilItIsCleared)
{
    ask([](QLineEdit* box) {
        QTest::keyClicks(box, QStringLiteral("kept"));
        QTest::keyClick(box, Qt::Key_Return);
    });
    EXPECT_EQ(ask([](QLineEdit* box) { QTest::keyClick(box, Qt::Key_Return); }), QStringLiteral("kept"));
    window.clearFileName();
    EXPECT_EQ(ask([](QLineEdit* box) { QTest::keyClick(box, Qt::Key_Return); }), QString());
}

TEST_F(GetFileNameTest, GivesNoNameWhenItIsLeft)
{
    const auto type = [](QLineEdit* box) { QTest::keyClicks(box, QStringLiteral("half a na")); };
    EXPECT_EQ(ask([&](QLineEdit* box) {
                  type(box);
                  QTest::keyClick(box, Qt::Key_Escape);
              }),
              QString());
    EXPECT_EQ(ask([&](QLineEdit* box) {
                  type(box);
                  window.close();
              }),
              QString());
}

TEST_F(GetFileNameTest, StandsInTheMiddleOfItsOwner)
{
    QWidget owner;
    owner.setGeometry(40, 60, 700, 500);
    owner.show();
    ask(
        [&](QLineEdit* box) {
            const QRect frame = owner.frameGeometry();
            EXPECT_EQ(window.x(), frame.left() + (frame.width() - window.width()) / 2);
            EXPECT_EQ(window.y(), frame.top() + (frame.height() - window.height()) / 2);
            QTest::keyClick(box, Qt::Key_Return);
        },
        &owner);
}

} // namespace
