// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/frmSettings.h"
#include "shell/ui/MainWindowHarness.h"

#include <QToolBar>
#include <QToolButton>

namespace {

class FrmMainTestRunTest : public MainWindowHarness
{
protected:
    void SetUp() override
    {
        load();
        connectInstrument();
    }

    QString panel(int index) { return main->sbStatusBar().panelText(index); }
    QByteArray started(int points) { return frame('P', 0, points) + frame('D', 0, 1, 1000, 2000, 0, 0); }
    QByteArray point(int i) { return frame('F', 1, 1000 + 10.0 * i, 50 + i, 30, -1, i); }
};

TEST_F(FrmMainTestRunTest, aSweepIsDrawnPointByPointWithItsPhase)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    receive(started(5));
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(panel(1), QStringLiteral("Testing"));
    EXPECT_FALSE(main->tbPenBar().isEnabled());
    for (int i = 0; i < 5; ++i) {
        receive(point(i));
        EXPECT_EQ(document->peGraph().YData(0, i), 50.0F + static_cast<float>(i));
        EXPECT_EQ(document->peGraph().YData(30, i), -30.0F);
        EXPECT_EQ(panel(5), QStringLiteral("%1/5 pts").arg(i + 1));
    }
    receive(frame('E', 0, 0, 1000, 2000, 0, 0) + frame('Y'));
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    EXPECT_EQ(panel(3), QStringLiteral("1000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("2000 Hz"));
    EXPECT_EQ(panel(5), QStringLiteral("5 pts"));
    EXPECT_TRUE(main->tbPenBar().isEnabled());
    EXPECT_EQ(document->gCurrentPen(), 1);
    EXPECT_TRUE(main->tbPenBar().lblPen(1).isCurrent());
}

TEST_F(FrmMainTestRunTest, startWritesTheSettingsAndTheTest)
{
    newDocument(PenDocument::Impedance);
    written();
    trigger("mnuTestStart");
    EXPECT_TRUE(written().endsWith("phase 1\rsetpin 11\ry\rimptest\r"));
}

TEST_F(FrmMainTestRunTest, theFunctionKeysStartAndStop)
{
    newDocument(PenDocument::Impedance);
    written();
    main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
    QTest::keyClick(main.get(), Qt::Key_F5);
    EXPECT_TRUE(written().endsWith("y\rimptest\r"));
    QTest::keyClick(main.get(), Qt::Key_F6);
    EXPECT_EQ(written(), QByteArray("y\r"));
}

TEST_F(FrmMainTestRunTest, repeatPressesItsButtonAndTellsTheInstrument)
{
    written();
    trigger("mnuTestRepeat");
    EXPECT_EQ(written(), QByteArray("repeat 1\r"));
    EXPECT_TRUE(mirror.bfRepeat);
    EXPECT_TRUE(action("mnuTestRepeat").isChecked());
    auto* bar = main->findChild<QToolBar*>(QStringLiteral("tbToolBar"));
    ASSERT_NE(bar, nullptr);
    auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(&action("mnuTestRepeat")));
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->isChecked());
    trigger("mnuTestRepeat");
    EXPECT_EQ(written(), QByteArray("repeat 0\r"));
    EXPECT_FALSE(button->isChecked());
}

TEST_F(FrmMainTestRunTest, turningToAnotherDocumentStopsASingleSweep)
{
    newDocument(PenDocument::Impedance);
    PenDocument* tested = newDocument(PenDocument::Impedance);
    receive(started(5) + point(0));
    written();
    trigger("mnuPreviousDocument");
    EXPECT_NE(main->activeDocument(), tested);
    EXPECT_EQ(written(), QByteArray("x\rsetpin 11\r"));
    EXPECT_FALSE(state.gbfPlotting);
    receive(point(1));
    EXPECT_EQ(tested->peGraph().YData(0, 1), -65536.0F);
}

TEST_F(FrmMainTestRunTest, turningToAnotherDocumentLetsASweepOfARunGoOn)
{
    PenDocument* other = newDocument(PenDocument::Impedance);
    PenDocument* tested = newDocument(PenDocument::Impedance);
    receive(frame('P', 0, 5) + frame('D', 0, 1, 1000, 2000, 1, 0) + point(0));
    written();
    trigger("mnuPreviousDocument");
    receive(point(1));
    EXPECT_EQ(written(), QByteArray());
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(other->peGraph().YData(0, 1), -65536.0F);
    EXPECT_EQ(tested->peGraph().YData(0, 1), -65536.0F);
    trigger("mnuNextDocument");
    receive(point(2));
    EXPECT_EQ(tested->peGraph().YData(0, 2), 52.0F);
}

TEST_F(FrmMainTestRunTest, anUnpluggedInstrumentLeavesThePointsAndReturnsToViewing)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    receive(started(5) + point(0) + point(1));
    peer->unplug();
    ASSERT_TRUE(waitFor([this] { return !state.gbfPlotting; }));
    EXPECT_EQ(panel(1), QStringLiteral("Disconnected"));
    EXPECT_EQ(panel(2), QStringLiteral("1"));
    for (const int emptied : {3, 4, 5, 6, 7, 8, 9, 10})
        EXPECT_EQ(panel(emptied), QString()) << emptied;
    EXPECT_EQ(document->peGraph().YData(0, 1), 51.0F);
    EXPECT_TRUE(main->tbPenBar().isEnabled());
    connectInstrument();
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
}

TEST_F(FrmMainTestRunTest, closingTheDocumentUnderTestAsksFirst)
{
    const QPointer<PenDocument> document = newDocument(PenDocument::Impedance);
    receive(started(5) + point(0));
    messages.replies = {UserMessages::ReplyCancel};
    trigger("mnuFileClose");
    EXPECT_TRUE(document);
    EXPECT_TRUE(state.gbfPlotting);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Abort test?"));
}

TEST_F(FrmMainTestRunTest, reRunClosesTheDocumentsAndStartsTheInstrumentsScript)
{
    newDocument(PenDocument::Impedance);
    written();
    trigger("mnuReRunLastTestScript");
    EXPECT_EQ(written(), QByteArray("y\rrun\r"));
    EXPECT_TRUE(state.gbfScriptRunning);
    EXPECT_EQ(main->gcolDocuments().count(), 0);
}

TEST_F(FrmMainTestRunTest, aReRunClosesTheSettingsDialog)
{
    trigger("mnuTestSettings");
    const QPointer<frmSettings> settings = main->findChild<frmSettings*>();
    ASSERT_TRUE(settings);
    trigger("mnuReRunLastTestScript");
    EXPECT_FALSE(settings);
    EXPECT_TRUE(state.gbfScriptRunning);
}

TEST_F(FrmMainTestRunTest, theCursorReadOutFillsPanels11And12)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    receive(started(5) + point(0) + frame('E', 0, 0, 1000, 2000, 0, 0));
    Q_EMIT document->peGraph().CursorMoved(0, 0);
    EXPECT_EQ(panel(11), QStringLiteral("X: 1000 Hz"));
    EXPECT_EQ(panel(12), QStringLiteral("Y: 50 Ohms"));
}

} // namespace
