// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/frmDirSelect.h"

#include "support/RecordingMessages.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

class DirSelectTest : public ::testing::Test
{
protected:
    DirSelectTest()
    {
        QDir(dir.path()).mkpath(QStringLiteral("plots/old"));
        QFile file(dir.filePath(QStringLiteral("plots/a.gad")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    template <typename T>
    T* find(const char* name)
    {
        T* const control = window.findChild<T*>(QLatin1String(name));
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    void click(const char* name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    /// Answers the question for a folder's name; nothing is Escape.
    void makeFolder(const QString& name)
    {
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&name] {
            auto* const question = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            if (question == nullptr)
                return;
            EXPECT_EQ(question->windowTitle(), QStringLiteral("Create Directory"));
            EXPECT_EQ(question->labelText(), QStringLiteral("Enter directory to create."));
            if (name.isNull()) {
                QTest::keyClick(question, Qt::Key_Escape);
                return;
            }
            QTest::keyClicks(question->findChild<QLineEdit*>(), name);
            QTest::keyClick(question, Qt::Key_Return);
        });
        poll.start(0);
        click("btnMakeDir");
    }

    QTemporaryDir dir;
    const QString plots = dir.filePath(QStringLiteral("plots"));
    RecordingMessages messages;
    frmDirSelect window{messages};
};

TEST_F(DirSelectTest, ShowsThePathItIsSentTo)
{
    window.SetPath(plots);
    EXPECT_EQ(window.StartPath, plots);
    EXPECT_EQ(window.path(), plots);
    EXPECT_EQ(find<QLabel>("lblPath")->text(), plots);
    auto* const files = find<QListView>("File1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return files->model()->rowCount(files->rootIndex()) == 1; }));
    EXPECT_EQ(files->model()->index(0, 0, files->rootIndex()).data().toString(), QStringLiteral("a.gad"));
    EXPECT_EQ(find<QComboBox>("Drive1")->currentData().toString(), QStringLiteral("/"));
}

TEST_F(DirSelectTest, KeepsTheChosenFolderInSightWhileFoldersAreStillBeingRead)
{
    for (int i = 0; i < 200; ++i)
        QDir(plots).mkdir(QStringLiteral("n%1").arg(i));
    window.SetPath(plots + QStringLiteral("/old"));
    auto* const folders = find<QTreeView>("Dir1");
    const auto parent = folders->currentIndex().parent();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return folders->model()->rowCount(parent) == 201 &&
               folders->viewport()->rect().contains(folders->visualRect(folders->currentIndex()).center());
    }));
}

TEST_F(DirSelectTest, KeepsItsStartPathForAnEmptyText)
{
    window.SetPath(plots);
    window.SetPath(QString());
    EXPECT_EQ(window.StartPath, plots);
    EXPECT_EQ(window.path(), plots);
}

TEST_F(DirSelectTest, GoesToTheNearestFolderThatExists)
{
    window.SetPath(plots + QStringLiteral("/not/yet made"));
    EXPECT_EQ(window.StartPath, plots + QStringLiteral("/not/yet made"));
    EXPECT_EQ(window.path(), plots);
}

TEST_F(DirSelectTest, GoesBackOnReset)
{
    window.SetPath(plots);
    auto* const drives = find<QComboBox>("Drive1");
    drives->setFocus();
    QTest::keyClick(drives, Qt::Key_Home);
    EXPECT_EQ(window.path(), QDir::homePath()) << "another drive leads to its folder";
    EXPECT_EQ(find<QLabel>("lblPath")->text(), QDir::homePath());
    click("btnReset");
    EXPECT_EQ(window.path(), plots);
}

TEST_F(DirSelectTest, FollowsTheKeyboardThroughTheFolders)
{
    window.SetPath(plots);
    auto* const folders = find<QTreeView>("Dir1");
    folders->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return folders->model()->rowCount(folders->currentIndex()) == 1; }));
    QTest::keyClick(folders, Qt::Key_Down);
    EXPECT_EQ(window.path(), plots + QStringLiteral("/old"));
    EXPECT_EQ(find<QLabel>("lblPath")->text(), plots + QStringLiteral("/old"));
    QTest::keyClick(folders, Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.Status, frmDirSelect::StatusOk);
}

TEST_F(DirSelectTest, TellsOkFromClosed)
{
    click("btnOK");
    EXPECT_EQ(window.Status, 1);
    EXPECT_FALSE(window.isVisible());
    window.show();
    EXPECT_EQ(window.Status, 0);
    window.close();
    EXPECT_EQ(window.Status, 2);
    EXPECT_FALSE(window.isVisible());
    window.show();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(window.Status, 2);
}

TEST_F(DirSelectTest, MakesAFolder)
{
    window.SetPath(plots);
    makeFolder(QStringLiteral("batch 17"));
    EXPECT_TRUE(QFileInfo(plots + QStringLiteral("/batch 17")).isDir());
    EXPECT_EQ(window.path(), plots);
    EXPECT_TRUE(messages.shown.empty());
    auto* const folders = find<QTreeView>("Dir1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return folders->model()->rowCount(folders->currentIndex()) == 2; }));
}

TEST_F(DirSelectTest, MakesNoFolderWithoutAName)
{
    window.SetPath(plots);
    makeFolder(QStringLiteral("  "));
    makeFolder(QString());
    EXPECT_EQ(QDir(plots).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList(QStringLiteral("old")));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DirSelectTest, SaysThatAFolderCouldNotBeMade)
{
    window.SetPath(plots);
    makeFolder(QStringLiteral("old"));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Directory Create Error"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Could not make directory: ") + plots + QStringLiteral("/old"));
    EXPECT_EQ(messages.shown[0].style, UserMessages::Stop);
}

TEST_F(DirSelectTest, HasTheCaptionsOfItsButtons)
{
    EXPECT_EQ(find<QPushButton>("btnMakeDir")->text(), QStringLiteral("New Folder"));
    EXPECT_EQ(find<QPushButton>("btnReset")->text(), QStringLiteral("Reset"));
    EXPECT_EQ(find<QPushButton>("btnOK")->text(), QStringLiteral("OK"));
}

} // namespace
