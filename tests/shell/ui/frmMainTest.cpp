// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/MainWindowHarness.h"
#include "support/WriteCounter.h"
#include "widgets/ui/WindowPosition.h"

#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusTipEvent>

namespace {

class FrmMainTest : public MainWindowHarness
{
protected:
    void drop(const QStringList& files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& file : files)
            urls.append(QUrl::fromLocalFile(file));
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(main.get(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(main.get(), &event);
        settle();
    }
    int stored(const options::Option<options::Integer>& option) { return preferences.value(option); }
};

TEST_F(FrmMainTest, withoutSplashTheWindowShowsAtOnceAndNoSplashIsTakenDown)
{
    bool taken = false;
    main->load([&taken] { taken = true; });
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(taken);
}

TEST_F(FrmMainTest, withASplashTheWindowShowsBeforeTheSplashIsTakenDown)
{
    state.gbfSplashShown = true;
    bool visibleThen = false;
    main->load([&] { visibleThen = main->isVisible(); });
    EXPECT_TRUE(visibleThen);
}

TEST_F(FrmMainTest, loadHandsThePrivilegeToTheLink)
{
    load();
    EXPECT_EQ(device.TestMode(), 0);
    preferences.setValue(options::kTestSchedule, true);
    load();
    EXPECT_EQ(device.TestMode(), 1);
}

TEST_F(FrmMainTest, theCaptionIsTheInstanceTitle)
{
    state.gstrInstanceTitle = QStringLiteral("MarrowickGraph3");
    frmMain other(ShellContext{state, preferences, devices, device, mirror, messages});
    EXPECT_EQ(other.windowTitle(), QStringLiteral("MarrowickGraph3"));
}

TEST_F(FrmMainTest, loadRestoresThePositionInTwips)
{
    preferences.setValue(options::kWindowLeft, 30 * 15);
    preferences.setValue(options::kWindowTop, 20 * 15);
    preferences.setValue(options::kWindowWidth, 640 * 15);
    preferences.setValue(options::kWindowHeight, 480 * 15);
    load();
    EXPECT_EQ(main->pos(), QPoint(30, 20));
    EXPECT_EQ(main->size(), QSize(640, 480));
    EXPECT_FALSE(main->isMaximized());
}

TEST_F(FrmMainTest, aStoredSizeBeyondAllScreensDoesNotMakeAWindowOfGigabytes)
{
    preferences.setValue(options::kWindowWidth, 32767 * 15);
    preferences.setValue(options::kWindowHeight, 32767 * 15);
    load();
    EXPECT_EQ(main->size(), main->size().boundedTo(QGuiApplication::primaryScreen()->virtualSize()));
}

TEST_F(FrmMainTest, anEmptyStoreGivesAMaximisedWindow)
{
    store.SaveSetting(state.gstrAppTitle, QStringLiteral("Window"), QStringLiteral("State"), QString());
    load();
    EXPECT_TRUE(main->isMaximized());
}

TEST_F(FrmMainTest, aNormalWindowSavesPlaceSizeAndState)
{
    load();
    main->move(45, 60);
    main->resize(700, 500);
    settle();
    WriteCounter writes(store.folder());
    main->SaveMainWindowPosition();
    EXPECT_EQ(writes.take(), 1);
    EXPECT_EQ(stored(options::kWindowState), 0);
    EXPECT_EQ(stored(options::kWindowLeft), 45 * 15);
    EXPECT_EQ(stored(options::kWindowTop), 60 * 15);
    EXPECT_EQ(stored(options::kWindowWidth), 700 * 15);
    EXPECT_EQ(stored(options::kWindowHeight), 500 * 15);
}

TEST_F(FrmMainTest, aMaximisedWindowKeepsItsEarlierNormalSize)
{
    load();
    main->showMaximized();
    settle();
    main->SaveMainWindowPosition();
    EXPECT_EQ(stored(options::kWindowState), 2);
    EXPECT_EQ(stored(options::kWindowWidth), 1200 * 15);
    EXPECT_EQ(stored(options::kWindowHeight), 800 * 15);
}

TEST_F(FrmMainTest, aMinimisedWindowSavesNothing)
{
    load();
    main->SaveMainWindowPosition();
    main->move(99, 99);
    main->showMinimized();
    settle();
    main->SaveMainWindowPosition();
    EXPECT_EQ(stored(options::kWindowState), 0);
    EXPECT_NE(stored(options::kWindowLeft), 99 * 15);
}

TEST_F(FrmMainTest, aWindowLostAtMinus245760TwipsComesBack)
{
    load();
    main->move(-245760 / 15, 40);
    main->resize(main->size() + QSize(10, 10));
    settle();
    EXPECT_EQ(main->pos(), QPoint(0, 0));
    EXPECT_EQ(main->size(), QSize(windowposition::toPixels(10000), windowposition::toPixels(8000)));
}

TEST_F(FrmMainTest, aWindowLostElsewhereStaysWhereItIs)
{
    load();
    main->move(-16000, 40);
    main->resize(640, 480);
    settle();
    EXPECT_LT(main->pos().x(), -15000);
    EXPECT_EQ(main->size(), QSize(640, 480));
}

TEST_F(FrmMainTest, eachCopyKeepsItsOwnWindowPosition)
{
    load();
    preferences.setInstanceTitle(QStringLiteral("MarrowickGraph1"));
    main->move(15, 15);
    settle();
    main->SaveMainWindowPosition();
    preferences.setInstanceTitle(QStringLiteral("MarrowickGraph"));
    EXPECT_NE(stored(options::kWindowLeft), 15 * 15);
}

TEST_F(FrmMainTest, pathsCountAsSetOnlyWhenAllFourAre)
{
    EXPECT_TRUE(main->boolArePathsSet());
    for (const options::FolderOption& path : options::kFolders) {
        preferences.setValue(path.option, QString());
        EXPECT_FALSE(main->boolArePathsSet()) << path.option.key.data();
        preferences.setValue(path.option, folder.path());
    }
}

TEST_F(FrmMainTest, panelsShowTheirTextWithTheNextFrameAndOnlyTheLastOne)
{
    load();
    auto* panel = main->findChild<QLabel*>(QStringLiteral("panel_5"));
    ASSERT_NE(panel, nullptr);
    for (int i = 1; i <= 1000; ++i)
        main->setPanel(5, std::to_string(i) + "/1000 pts");
    EXPECT_EQ(main->sbStatusBar().panelText(5), QStringLiteral("1000/1000 pts"));
    EXPECT_EQ(panel->text(), QString()) << "a thousand texts were laid out one by one";
    EXPECT_TRUE(waitFor([panel] { return panel->text() == QLatin1String("1000/1000 pts"); }));
    main->setPanel(0, "nothing");
    main->setPanel(13, "nothing");
}

TEST_F(FrmMainTest, aDroppedFileWithoutAPlotFilesNameIsIgnored)
{
    load();
    drop({folder.filePath(QStringLiteral("notes.txt")), folder.filePath(QStringLiteral("table.csv"))});
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(main->gcolDocuments().count(), 0);
}

TEST_F(FrmMainTest, aDroppedPlotIsOpenedWhateverItIsCalled)
{
    load();
    PenDocument* document = newDocument(PenDocument::Reactance);
    document->AddReactancePoint(1000, 1, 2, 3, 4, 0);
    QString file = folder.filePath(QStringLiteral("reactance"));
    ASSERT_TRUE(document->fileSavePlot(file));
    trigger("mnuFileClose");
    ASSERT_EQ(main->gcolDocuments().count(), 0);
    ASSERT_FALSE(file.contains(QLatin1String(".g")));
    drop({file});
    ASSERT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_EQ(main->activeDocument()->pgiTestType(), PenDocument::Reactance);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmMainTest, aDroppedFileThatNoReaderKnowsIsRefusedWithASentence)
{
    load();
    QFile file(folder.filePath(QStringLiteral("notes.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Dear diary");
    file.close();
    drop({file.fileName()});
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("File Load Error"));
    EXPECT_EQ(main->gcolDocuments().count(), 0);
}

TEST_F(FrmMainTest, aTipOfACommandLeavesThePanelsAlone)
{
    load();
    main->setPanel(1, "Testing");
    QStatusTipEvent tip(QStringLiteral("Save the active document"));
    QApplication::sendEvent(main.get(), &tip);
    settle();
    for (int i = 1; i <= StatusBar::kPanels; ++i)
        EXPECT_TRUE(main->findChild<QLabel*>(QStringLiteral("panel_%1").arg(i))->isVisible()) << i;
    EXPECT_EQ(main->findChild<QLabel*>(QStringLiteral("tip"))->text(), QStringLiteral("Save the active document"));
    QStatusTipEvent left((QString()));
    QApplication::sendEvent(main.get(), &left);
    EXPECT_TRUE(main->findChild<QLabel*>(QStringLiteral("tip"))->text().isEmpty());
}

TEST_F(FrmMainTest, inANarrowWindowTheReadOutStaysWhole)
{
    load();
    main->resize(640, 360);
    settle();
    ASSERT_EQ(main->width(), 640);
    for (const int whole : {1, 2, 11, 12}) {
        const auto* panel = main->findChild<QLabel*>(QStringLiteral("panel_%1").arg(whole));
        EXPECT_GE(panel->width(), panel->sizeHint().width()) << whole;
        EXPECT_LE(panel->mapTo(main.get(), QPoint(panel->width(), 0)).x(), 640) << whole;
    }
}

TEST_F(FrmMainTest, droppedNamesAreSearchedForTheExtensionAnywhereWhateverTheCase)
{
    load();
    const QString file = folder.filePath(QStringLiteral("x.GAD.bak"));
    drop({file});
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Open Error"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("File not found ") + file);
}

TEST_F(FrmMainTest, closingSavesTheInstrumentsSettingsAndTheWindowAndClosesTheLink)
{
    load();
    connectInstrument();
    mirror.iNumPoints = 321;
    main->move(75, 45);
    settle();
    const QSignalSpy unloaded(main.get(), &frmMain::unloaded);
    main->close();
    settle();
    EXPECT_EQ(unloaded.count(), 1);
    EXPECT_FALSE(device.Connected());
    EXPECT_EQ(preferences.value(QStringLiteral("Device"), options::kNumPoints, 0), 321);
    EXPECT_EQ(stored(options::kWindowLeft), 75 * 15);
}

TEST_F(FrmMainTest, aDocumentThatStaysOpenKeepsTheProgramRunning)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    ASSERT_NE(document, nullptr);
    document->SetModified();
    messages.replies = {UserMessages::ReplyCancel};
    main->close();
    settle();
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    messages.replies = {UserMessages::ReplyNo};
    main->close();
    settle();
    EXPECT_FALSE(main->isVisible());
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown[1].title, QStringLiteral("Save Document"));
    EXPECT_EQ(messages.shown[1].text, QStringLiteral("Save before closing Document 1?"));
}

TEST_F(FrmMainTest, theInstrumentCanEndTheProgram)
{
    load();
    connectInstrument();
    newDocument(PenDocument::Impedance);
    receive(frame('h'));
    EXPECT_TRUE(waitFor([this] { return !main->isVisible(); }));
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(main->gcolDocuments().count(), 0);
}

TEST_F(FrmMainTest, theTenthFunctionKeyIsSwallowed)
{
    load();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_F10, Qt::NoModifier);
    key.ignore();
    QApplication::sendEvent(main.get(), &key);
    EXPECT_TRUE(key.isAccepted());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

} // namespace
