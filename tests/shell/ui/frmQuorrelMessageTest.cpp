// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmQuorrelMessage.h"

#include "program/EventSounds.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>

namespace {

class RecordedSounds : public EventSounds
{
public:
    void play(const QString& eventName) override { played.append(eventName); }
    QStringList played;
};

frmQuorrelMessage* shownBox()
{
    return qobject_cast<frmQuorrelMessage*>(QApplication::activeModalWidget());
}

QPushButton* button(QWidget* box, int index)
{
    return box->findChild<QPushButton*>(QStringLiteral("btnCommands_%1").arg(index));
}

QStringList buttonTexts(QWidget* box)
{
    QStringList texts;
    for (int i = 0; button(box, i) != nullptr; ++i)
        texts.append(button(box, i)->text());
    return texts;
}

class QuorrelMessageTest : public ::testing::Test
{
protected:
    /// Shows a message and acts on it as soon as it is on the screen.
    int ask(int style, const std::function<void(frmQuorrelMessage*)>& act,
            const QString& text = QStringLiteral("Go on?"), const QString& title = QStringLiteral("Title"))
    {
        QTimer poll;
        bool acted = false;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            frmQuorrelMessage* const box = shownBox();
            if (box == nullptr || !box->isVisible() || acted)
                return;
            acted = true;
            act(box);
        });
        poll.start(0);
        const int reply = frmQuorrelMessage::message(nullptr, text, style, title, &sounds);
        EXPECT_TRUE(acted);
        EXPECT_EQ(shownBox(), nullptr);
        return reply;
    }

    RecordedSounds sounds;
};

TEST_F(QuorrelMessageTest, ShowsTheButtonsOfEachSetWithTheirReplies)
{
    const struct
    {
        int remainder;
        QStringList texts;
        QList<int> replies;
    } rows[] = {
        {0, {QStringLiteral("OK")}, {1}},
        {1, {QStringLiteral("OK"), QStringLiteral("Cancel")}, {1, 2}},
        {2, {QStringLiteral("Abort"), QStringLiteral("Retry"), QStringLiteral("Ignore")}, {3, 4, 5}},
        {3, {QStringLiteral("Yes"), QStringLiteral("No"), QStringLiteral("Cancel")}, {6, 7, 2}},
        {4, {QStringLiteral("Yes"), QStringLiteral("No")}, {6, 7}},
        {5, {QStringLiteral("Retry"), QStringLiteral("Cancel")}, {4, 2}},
    };
    for (const auto& row : rows) {
        for (int i = 0; i < row.replies.size(); ++i) {
            const int reply = ask(row.remainder, [&](frmQuorrelMessage* box) {
                EXPECT_EQ(buttonTexts(box), row.texts);
                QTest::mouseClick(button(box, i), Qt::LeftButton);
            });
            EXPECT_EQ(reply, row.replies[i]) << "set " << row.remainder << " button " << i;
        }
    }
}

TEST_F(QuorrelMessageTest, Style68IsYesAndNoWithTheInformationIcon)
{
    ask(68, [](frmQuorrelMessage* box) {
        EXPECT_EQ(buttonTexts(box), QStringList({QStringLiteral("Yes"), QStringLiteral("No")}));
        const auto* icon = box->findChild<QLabel*>(QStringLiteral("picIcon"));
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->accessibleName(), QStringLiteral("Information"));
        EXPECT_FALSE(icon->pixmap().isNull());
        box->close();
    });
}

TEST_F(QuorrelMessageTest, TakesItsIconFromTheSixteenthPart)
{
    const char* names[] = {"", "Error", "Question", "Warning", "Information", "", ""};
    for (int part = 0; part < 7; ++part) {
        ask(part * 16, [&](frmQuorrelMessage* box) {
            const auto* icon = box->findChild<QLabel*>(QStringLiteral("picIcon"));
            EXPECT_EQ(icon->accessibleName(), QLatin1String(names[part]));
            EXPECT_EQ(icon->pixmap().isNull(), names[part][0] == '\0');
            box->close();
        });
    }
}

TEST_F(QuorrelMessageTest, EnterPressesTheFirstButtonAndEscapeTheSecond)
{
    const int enter[] = {1, 1, 3, 6, 6, 4};
    const int escape[] = {1, 2, 4, 7, 7, 2};
    for (int set = 0; set < 6; ++set) {
        EXPECT_EQ(ask(set, [](frmQuorrelMessage* box) { QTest::keyClick(box, Qt::Key_Return); }), enter[set]);
        EXPECT_EQ(ask(set, [](frmQuorrelMessage* box) { QTest::keyClick(box, Qt::Key_Enter); }), enter[set]);
        EXPECT_EQ(ask(set, [](frmQuorrelMessage* box) { QTest::keyClick(box, Qt::Key_Escape); }), escape[set]);
    }
}

TEST_F(QuorrelMessageTest, ItsCloseBoxAnswersHarmlessly)
{
    const int harmless[] = {1, 2, 4, 2, 7, 2};
    for (int set = 0; set < 6; ++set)
        EXPECT_EQ(ask(set, [](frmQuorrelMessage* box) { box->close(); }), harmless[set]) << set;
}

TEST_F(QuorrelMessageTest, GivesTheKeyboardToItsFirstButton)
{
    ask(3, [](frmQuorrelMessage* box) {
        EXPECT_EQ(box->focusWidget(), button(box, 0));
        QTest::keyClick(box, Qt::Key_Tab);
        EXPECT_EQ(box->focusWidget(), button(box, 1));
        QTest::keyClick(box, Qt::Key_Tab);
        EXPECT_EQ(box->focusWidget(), button(box, 2));
        QTest::keyClick(box, Qt::Key_Escape);
    });
    EXPECT_EQ(ask(3,
                  [](frmQuorrelMessage* box) {
                      QTest::keyClick(box, Qt::Key_Tab);
                      QTest::keyClick(box->focusWidget(), Qt::Key_Space);
                  }),
              7);
}

TEST_F(QuorrelMessageTest, EnterWorksWhileTheTextHasTheFocus)
{
    EXPECT_EQ(ask(4,
                  [](frmQuorrelMessage* box) {
                      auto* const text = box->findChild<QTextEdit*>(QStringLiteral("txtMessage"));
                      text->setFocus();
                      QTest::keyClick(text, Qt::Key_Return);
                  }),
              6);
}

TEST_F(QuorrelMessageTest, ShowsTextAndTitleAsTheyAre)
{
    const QString text = QStringLiteral("<b>1 < 2</b> & \"x\"\nsecond line");
    ask(
        0,
        [&](frmQuorrelMessage* box) {
            EXPECT_EQ(box->findChild<QTextEdit*>(QStringLiteral("txtMessage"))->toPlainText(), text);
            EXPECT_EQ(box->windowTitle(), QStringLiteral("A & B"));
            EXPECT_EQ(box->accessibleName(), QStringLiteral("A & B"));
            EXPECT_EQ(box->accessibleDescription(), text);
            box->close();
        },
        text, QStringLiteral("A & B"));
}

TEST_F(QuorrelMessageTest, CopiesItsTextWhole)
{
    QApplication::clipboard()->clear();
    ask(0, [](frmQuorrelMessage* box) {
        QTest::keySequence(box, QKeySequence::Copy);
        box->close();
    });
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Go on?"));
}

TEST_F(QuorrelMessageTest, WrapsAndScrollsLongTexts)
{
    const auto inside = [](frmQuorrelMessage* box) {
        const QSize room = box->screen()->availableGeometry().size();
        EXPECT_LE(box->height(), room.height());
        EXPECT_LE(box->width(), room.width());
        for (int i = 0; button(box, i) != nullptr; ++i)
            EXPECT_TRUE(box->rect().contains(button(box, i)->geometry()));
    };
    ask(
        1,
        [&](frmQuorrelMessage* box) {
            inside(box);
            auto* const text = box->findChild<QTextEdit*>(QStringLiteral("txtMessage"));
            EXPECT_GT(text->verticalScrollBar()->maximum(), 0);
            EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0);
            box->close();
        },
        QStringLiteral("A sentence of some length. ").repeated(800));
    ask(
        0,
        [&](frmQuorrelMessage* box) {
            inside(box);
            auto* const text = box->findChild<QTextEdit*>(QStringLiteral("txtMessage"));
            EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0) << "a path without blanks breaks too";
            EXPECT_EQ(text->verticalScrollBar()->maximum(), 0);
            box->close();
        },
        QStringLiteral("/a-very-long-folder-name").repeated(12));
    ask(
        0,
        [&](frmQuorrelMessage* box) {
            inside(box);
            box->close();
        },
        QString());
}

TEST_F(QuorrelMessageTest, PlaysTheSoundOfItsIconOnce)
{
    const char* events[] = {"bell",         "dialog-information", "dialog-warning", "dialog-question",
                            "dialog-error", "desktop-login",      "desktop-logout", "bell"};
    for (int icon = 0; icon < 8; ++icon) {
        sounds.played.clear();
        ask(icon * 16, [](frmQuorrelMessage* box) {
            box->hide();
            box->show();
            box->close();
        });
        EXPECT_EQ(sounds.played, QStringList(QLatin1String(events[icon])));
    }
}

TEST_F(QuorrelMessageTest, AnswersHarmlesslyWhenItsOwnerGoesDown)
{
    auto* const owner = new QWidget;
    owner->show();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (shownBox() != nullptr)
            owner->deleteLater();
    });
    poll.start(0);
    EXPECT_EQ(
        frmQuorrelMessage::message(owner, QStringLiteral("Save?"), UserMessages::YesNoCancel, QStringLiteral("T")),
        UserMessages::ReplyCancel);
}

TEST_F(QuorrelMessageTest, StandsOverItsOwner)
{
    QWidget owner;
    owner.setGeometry(100, 100, 600, 500);
    owner.show();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        frmQuorrelMessage* const box = shownBox();
        if (box == nullptr)
            return;
        EXPECT_EQ(box->parentWidget(), &owner);
        EXPECT_TRUE(box->isModal());
        box->close();
    });
    poll.start(0);
    frmQuorrelMessage::message(&owner, QStringLiteral("Hello"), 0, QStringLiteral("T"));
}

TEST_F(QuorrelMessageTest, ServesTheProgramsQuestions)
{
    QWidget mainWindow;
    mainWindow.show();
    QuorrelMessages messages(&sounds);
    messages.setMainWindow(&mainWindow);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (frmQuorrelMessage* const box = shownBox()) {
            EXPECT_EQ(box->parentWidget(), &mainWindow);
            QTest::keyClick(box, Qt::Key_Return);
        }
    });
    poll.start(0);
    EXPECT_EQ(messages.message(QStringLiteral("?"), UserMessages::YesNo + UserMessages::Question, QStringLiteral("T")),
              UserMessages::ReplyYes);
    EXPECT_EQ(sounds.played, QStringList(QStringLiteral("dialog-warning")));
}

TEST_F(QuorrelMessageTest, IsDismissedWithTheHarmlessAnswer)
{
    QuorrelMessages messages;
    messages.dismiss();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (shownBox() != nullptr)
            messages.dismiss();
    });
    poll.start(0);
    for (const int set : {UserMessages::OkCancel, UserMessages::YesNoCancel})
        EXPECT_EQ(messages.message(QStringLiteral("?"), set, QStringLiteral("T")), UserMessages::ReplyCancel);
}

TEST_F(QuorrelMessageTest, LeavesTheInstrumentsNoticesToTheSystemsBox)
{
    const struct
    {
        int style;
        QMessageBox::Icon icon;
        QMessageBox::StandardButton last;
        int lastReply;
    } rows[] = {
        {UserMessages::OkOnly, QMessageBox::NoIcon, QMessageBox::Ok, 1},
        {UserMessages::OkCancel + UserMessages::Stop, QMessageBox::Critical, QMessageBox::Cancel, 2},
        {UserMessages::AbortRetryIgnore + UserMessages::Question, QMessageBox::Question, QMessageBox::Ignore, 5},
        {UserMessages::YesNoCancel + UserMessages::Exclamation, QMessageBox::Warning, QMessageBox::No, 7},
        {UserMessages::YesNo + UserMessages::Information, QMessageBox::Information, QMessageBox::No, 7},
        {UserMessages::RetryCancel, QMessageBox::NoIcon, QMessageBox::Cancel, 2},
    };
    QuorrelMessages messages(&sounds);
    for (const auto& row : rows) {
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr)
                return;
            EXPECT_EQ(box->icon(), row.icon);
            EXPECT_EQ(box->text(), QStringLiteral("<i>notice</i>"));
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            QTest::mouseClick(box->button(row.last), Qt::LeftButton);
        });
        poll.start(0);
        EXPECT_EQ(messages.systemBox(QStringLiteral("<i>notice</i>"), row.style, QStringLiteral("T46")), row.lastReply);
    }
    EXPECT_TRUE(sounds.played.isEmpty());
}

} // namespace
