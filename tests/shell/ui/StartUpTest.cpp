// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/StartUp.h"

#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "link/ui/frmDevice.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "recovery/RecoveryJournal.h"
#include "recovery/RecoveryStore.h"
#include "shell/ui/frmMain.h"
#include "shell/ui/frmQuorrelMessage.h"
#include "shell/ui/frmSplash.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMetaObject>
#include <QSessionManager>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <cstddef>
#include <gtest/gtest.h>

namespace {

class StartUpTest : public ::testing::Test
{
protected:
    StartUpTest()
    {
        qputenv("XDG_STATE_HOME", QFile::encodeName(folder.filePath(QStringLiteral("state"))));
        set(options::kSplashScreen, false);
        for (const options::FolderOption& path : options::kFolders)
            preferences.setValue(path.option, folder.path());
        // Whatever the start opens modally is noted and dismissed.
        QObject::connect(&m_dismiss, &QTimer::timeout, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal)
                return;
            if (const auto* shown = modal->findChild<QTextEdit*>())
                text = shown->toPlainText();
            seen << QString::fromLatin1(modal->metaObject()->className()) + QLatin1Char(':') + modal->windowTitle();
            QTest::keyClick(modal, Qt::Key_Escape);
        });
        m_dismiss.start(5);
    }

    template <typename Option, typename Value>
    void set(const Option& option, const Value& value)
    {
        preferences.setValue(option, value);
    }
    static StartUpOptions arguments(const QStringList& list) { return StartUpOptions::parse(list); }

    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    /// An empty plot under that name, made by the program itself.
    QString savedPlot(const QString& name)
    {
        StartUp start(folder.path());
        start.run(arguments({}));
        PenDocument* document = start.mainWindow()->LoadNewDoc();
        QString saved = folder.filePath(QStringLiteral("saved"));
        EXPECT_TRUE(document->fileSavePlot(saved));
        document->setModified(false);
        const QString wanted = folder.filePath(name);
        EXPECT_TRUE(QFile::rename(saved, wanted));
        return wanted;
    }

    QStringList seen;
    QString text; ///< of the last message

private:
    QTimer m_dismiss;
};

/// The desktop session ends. Nothing but a session manager makes a QSessionManager, and nobody here looks at it.
void endSession()
{
    alignas(QSessionManager) static std::byte nobody[sizeof(QSessionManager)];
    ASSERT_TRUE(QMetaObject::invokeMethod(
        qGuiApp, "commitDataRequest", Qt::DirectConnection,
        QGenericArgument("QSessionManager&", static_cast<void*>(nobody)))); // a reference is passed by its address
}

TEST_F(StartUpTest, endOfTheSessionEndsItUnaskedAndKeepsWhatIsUnsaved)
{
    StartUp start(folder.path());
    start.run(arguments({}));
    seen.clear();
    PenDocument* const document = start.mainWindow()->LoadNewDoc();
    document->PrepareNew(PenDocument::Impedance, QStringLiteral("unsaved"));
    for (int i = 0; i < 20; ++i)
        document->AddImpedancePoint(1000 + i, 50 + i, 30, 1, i);
    document->SetModified();
    endSession();
    EXPECT_TRUE(start.mainWindow()->isUnloaded());
    EXPECT_EQ(seen, QStringList()) << "nobody is there to answer";
    const RecoveryStore kept(folder.filePath(QStringLiteral("state/marrowick/recovery")));
    ASSERT_TRUE(QTest::qWaitFor([&kept] { return !kept.plots().empty(); }));
    const ValueOr<QByteArray> plot = kept.read(kept.plots().front());
    ASSERT_TRUE(plot.ok()) << plot.sentence().toStdString();
    GraphModel graph;
    ASSERT_TRUE(GraphFile::PEload(graph, plot.value()).ok());
    EXPECT_EQ(graph.YData(0, 19), 69.0F);
}

TEST_F(StartUpTest, endOfTheSessionDuringTheStartWaitsForTheWindow)
{
    StartUp start(folder.path());
    endSession();
    start.run(arguments({}));
    EXPECT_TRUE(start.mainWindow()->isUnloaded());
}

TEST_F(StartUpTest, ownOptionsAreTakenOutOfTheCommandLine)
{
    const StartUpOptions options =
        arguments({QStringLiteral("--link-log"), QStringLiteral("a.gad.log"), QStringLiteral("my"),
                   QStringLiteral("plot.gzd"), QStringLiteral("-rerun")});
    EXPECT_EQ(options.linkLogFile, QStringLiteral("a.gad.log"));
    EXPECT_EQ(options.arguments,
              QStringList({QStringLiteral("my"), QStringLiteral("plot.gzd"), QStringLiteral("-rerun")}));
    EXPECT_TRUE(options.problem.isEmpty());
    EXPECT_EQ(arguments({QStringLiteral("--link-log=x")}).linkLogFile, QStringLiteral("x"));
    EXPECT_TRUE(arguments({QStringLiteral("--help")}).help);
    EXPECT_TRUE(arguments({QStringLiteral("--version")}).version);
    EXPECT_FALSE(arguments({QStringLiteral("--link-log")}).problem.isEmpty());
    EXPECT_EQ(arguments({QStringLiteral("--test"), QStringLiteral("impedance")}).testType, 2);
    EXPECT_EQ(arguments({QStringLiteral("--test=reactance")}).testType, 3);
    EXPECT_EQ(arguments({}).testType, 0);
    for (const char* wrong : {"--test", "--test=", "--test=sound"})
        EXPECT_EQ(arguments({QLatin1String(wrong)}).problem,
                  QStringLiteral("--test needs one of amplitude, impedance, reactance."));
}

TEST_F(StartUpTest, theWindowIsUpUnderThePlainTitle)
{
    StartUp start(folder.path());
    start.run(arguments({}));
    ASSERT_NE(start.mainWindow(), nullptr);
    EXPECT_TRUE(start.mainWindow()->isVisible());
    EXPECT_EQ(start.mainWindow()->windowTitle(), QStringLiteral("MarrowickGraph"));
    EXPECT_TRUE(seen.isEmpty()) << seen.join(QLatin1Char('\n')).toStdString();
}

TEST_F(StartUpTest, furtherCopiesAreNumbered)
{
    StartUp first(folder.path());
    first.run(arguments({}));
    StartUp second(folder.path());
    second.run(arguments({}));
    StartUp third(folder.path());
    third.run(arguments({}));
    EXPECT_EQ(second.mainWindow()->windowTitle(), QStringLiteral("MarrowickGraph1"));
    EXPECT_EQ(third.mainWindow()->windowTitle(), QStringLiteral("MarrowickGraph2"));
}

TEST_F(StartUpTest, aNumberIsFreeAgainWhenItsCopyHasEnded)
{
    StartUp first(folder.path());
    first.run(arguments({}));
    {
        StartUp second(folder.path());
        second.run(arguments({}));
    }
    StartUp third(folder.path());
    third.run(arguments({}));
    EXPECT_EQ(third.mainWindow()->windowTitle(), QStringLiteral("MarrowickGraph1"));
}

TEST_F(StartUpTest, aBareWordDoesNothing)
{
    StartUp start(folder.path());
    start.run(arguments({QStringLiteral("hello")}));
    EXPECT_EQ(start.mainWindow()->gcolDocuments().count(), 0);
    EXPECT_TRUE(seen.isEmpty());
}

TEST_F(StartUpTest, anExtensionAnywhereInTheLineIsAPlotFileRequest)
{
    StartUp start(folder.path());
    start.run(arguments({QStringLiteral("/nowhere/x.gad.bak")}));
    EXPECT_EQ(seen, QStringList{QStringLiteral("frmQuorrelMessage:Open Error")});
}

TEST_F(StartUpTest, reRunWithoutInstrumentOffersTheChooserAndEnds)
{
    StartUp start(folder.path());
    start.run(arguments({QStringLiteral("-ReRun")}));
    ASSERT_EQ(seen.size(), 1);
    EXPECT_TRUE(seen[0].startsWith(QLatin1String("frmDevice:")));
    EXPECT_TRUE(start.mainWindow()->isVisible());
}

TEST_F(StartUpTest, aPlotBesideReRunIsOpenedBehindIt)
{
    StartUp start(folder.path());
    start.run(arguments({QStringLiteral("missing.gzd"), QStringLiteral("-rerun")}));
    ASSERT_EQ(seen.size(), 2);
    EXPECT_TRUE(seen[0].startsWith(QLatin1String("frmDevice:")));
    EXPECT_EQ(seen[1], QStringLiteral("frmQuorrelMessage:Open Error"));
}

TEST_F(StartUpTest, aScriptAndReRunAreBothDoneInThatOrder)
{
    StartUp start(folder.path());
    start.run(arguments({QStringLiteral("job.mgs"), QStringLiteral("-rerun")}));
    ASSERT_EQ(seen.size(), 2) << seen.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(seen[0].startsWith(QLatin1String("frmDevice:"))) << "no instrument: the script is passed over";
    EXPECT_TRUE(seen[1].startsWith(QLatin1String("frmDevice:")));
}

TEST_F(StartUpTest, aPlotBesideReRunIsOpened)
{
    const QString plot = savedPlot(QStringLiteral("plot.gad"));
    StartUp start(folder.path());
    start.run(arguments({plot, QStringLiteral("-rerun")}));
    EXPECT_EQ(start.mainWindow()->gcolDocuments().count(), 1);
    ASSERT_EQ(seen.size(), 1) << seen.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(seen[0].startsWith(QLatin1String("frmDevice:")));
}

TEST_F(StartUpTest, plotsAreOpenedWhateverTheyAreCalled)
{
    const QString bare = savedPlot(QStringLiteral("reactance"));
    const QString blank = savedPlot(QStringLiteral("two words"));
    {
        StartUp start(folder.path());
        start.run(arguments({bare, blank}));
        EXPECT_EQ(start.mainWindow()->gcolDocuments().count(), 2);
    }
    StartUp start(folder.path());
    start.run(arguments(blank.split(QLatin1Char(' '))));
    EXPECT_EQ(start.mainWindow()->gcolDocuments().count(), 1) << "the line as a whole is a name";
    EXPECT_TRUE(seen.isEmpty()) << seen.join(QLatin1Char('\n')).toStdString();
}

TEST_F(StartUpTest, anOptionThatNobodyKnowsIsNamed)
{
    EXPECT_TRUE(arguments({QStringLiteral("--frobnicate")}).unknownOption().contains(QLatin1String("--frobnicate")));
    EXPECT_TRUE(
        arguments({QStringLiteral("a.gad"), QStringLiteral("-x")}).unknownOption().contains(QLatin1String("-x")));
    for (const char* known : {"-rerun", "-ReRun", "plot.gad", "a-b", "-"})
        EXPECT_TRUE(arguments({QLatin1String(known)}).unknownOption().isEmpty()) << known;
}

TEST_F(StartUpTest, settingsAndFoldersThatCannotBeMadeAreOneMessage)
{
    // Below a file no folder can be made, whoever the user is.
    QFile file(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    for (const options::FolderOption& path : options::kFolders)
        preferences.setValue(path.option,
                             file.fileName() + QStringLiteral("/a/b/") + QString::fromLatin1(path.option.key));
    {
        StartUp start(folder.path());
        start.run(arguments({}));
        EXPECT_EQ(seen, QStringList{QStringLiteral("frmQuorrelMessage:Directory Create Error")});
    }
    seen.clear();
    text.clear();
    StartUp start(file.fileName() + QStringLiteral("/settings"));
    start.run(arguments({}));
    EXPECT_EQ(seen, QStringList{QStringLiteral("frmQuorrelMessage:Settings")});
    EXPECT_TRUE(text.contains(file.fileName() + QStringLiteral("/settings"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("(Not a directory)"))) << text.toStdString();
}

TEST_F(StartUpTest, theSplashIsTakenDownWhenTheWindowIsUp)
{
    set(options::kSplashScreen, true);
    StartUp start(folder.path());
    start.run(arguments({}));
    EXPECT_TRUE(start.mainWindow()->isVisible());
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        EXPECT_EQ(qobject_cast<frmSplash*>(window), nullptr);
}

TEST_F(StartUpTest, aDamagedSettingsFileIsToldInOneMessage)
{
    QFile file(store.fileOf(QStringLiteral("MarrowickGraph")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(64, '\0') + "[[[");
    file.close();
    StartUp start(folder.path());
    start.run(arguments({}));
    EXPECT_EQ(seen.filter(QStringLiteral("frmQuorrelMessage:")),
              QStringList{QStringLiteral("frmQuorrelMessage:Settings")})
        << seen.join(QLatin1Char('\n')).toStdString();
}

TEST_F(StartUpTest, aLinkLogThatCannotBeWrittenIsTold)
{
    StartUp start(folder.path());
    start.run(arguments({QStringLiteral("--link-log"), QStringLiteral("/nowhere/at/all.log")}));
    EXPECT_EQ(seen, QStringList{QStringLiteral("frmQuorrelMessage:Link log")});
}

TEST_F(StartUpTest, settingsAreReadUnderThePlainTitleAndTheWindowUnderItsOwn)
{
    StartUp first(folder.path());
    first.run(arguments({}));
    StartUp second(folder.path());
    second.run(arguments({}));
    second.mainWindow()->showNormal();
    second.mainWindow()->move(150, 90);
    second.mainWindow()->SaveMainWindowPosition();
    EXPECT_EQ(store.GetSetting(QStringLiteral("MarrowickGraph1"), QStringLiteral("Window"), QStringLiteral("Left"), 0),
              QString::number(150 * 15));
    EXPECT_EQ(store.GetSetting(QStringLiteral("MarrowickGraph"), QStringLiteral("Window"), QStringLiteral("Left"), 0),
              QStringLiteral("0"));
}

TEST_F(StartUpTest, WhatACrashLeftUnsavedIsOfferedInOneQuestionOnce)
{
    {
        // A program that never closes its documents, as far as its journal can tell.
        RecoveryJournal journal(recovery::stateFolder());
        StartUp start(folder.path());
        start.run(arguments({}));
        for (int i = 0; i < 2; ++i) {
            PenDocument* document = start.mainWindow()->LoadNewDoc();
            ASSERT_NE(document, nullptr);
            journal.follow(*document);
            document->AddAmplitudePoint(1000, -3, 30, 1, 0);
            document->SetModified();
        }
        ASSERT_TRUE(journal.settle());
        EXPECT_TRUE(seen.isEmpty()) << seen.join(u' ').toStdString();
    }
    const auto offers = [this] { return seen.filter(QStringLiteral(":Recover")).size(); };
    {
        StartUp start(folder.path());
        start.run(arguments({}));
    }
    EXPECT_GE(offers(), 1);
    EXPECT_TRUE(text.contains(QStringLiteral("Document 1"))) << text.toStdString();
    const qsizetype once = offers();
    {
        StartUp start(folder.path());
        start.run(arguments({}));
    }
    EXPECT_EQ(offers(), once);
}

} // namespace
