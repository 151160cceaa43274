// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/MainWindowHarness.h"

#include <QColorDialog>
#include <QTimer>

namespace {

class FrmMainPensTest : public MainWindowHarness
{
protected:
    void SetUp() override { load(); }

    PenLabel& label(int pen) { return main->tbPenBar().lblPen(pen); }
};

TEST_F(FrmMainPensTest, labelsBearTheirToolTipsAndNames)
{
    for (int pen = 0; pen < 10; ++pen) {
        auto* found = main->findChild<PenLabel*>(QStringLiteral("lblPen_%1").arg(pen));
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->toolTip(), QStringLiteral("Select pen %1").arg(pen + 1));
        EXPECT_EQ(found->caption(), QString::number(pen + 1));
        EXPECT_FALSE(found->accessibleName().isEmpty());
    }
}

TEST_F(FrmMainPensTest, penInitialiseTakesTheStoredColours)
{
    EXPECT_EQ(label(2).colour(), 0x0000FFU);
    preferences.setValue(options::kPens[2], 0x123456U);
    main->penInitialise();
    EXPECT_EQ(label(2).colour(), 0x123456U);
    EXPECT_EQ(state.glPenColour[2], 0x123456U);
}

TEST_F(FrmMainPensTest, theNumberIsReadableOnItsColour)
{
    EXPECT_EQ(label(0).captionColour(), 0xFFFFFFU); // black pen
    EXPECT_EQ(label(4).captionColour(), 0x000000U); // yellow pen
}

TEST_F(FrmMainPensTest, aClickMakesThePenCurrent)
{
    PenDocument* document = newDocument(PenDocument::Amplitude);
    QTest::mouseClick(&label(2), Qt::LeftButton);
    EXPECT_EQ(document->gCurrentPen(), 2);
    EXPECT_TRUE(label(2).isCurrent());
    EXPECT_FALSE(label(0).isCurrent());
    EXPECT_EQ(main->sbStatusBar().panelText(2), QStringLiteral("3"));
}

TEST_F(FrmMainPensTest, thePinOfPen3OfAnAmplitudeDocumentIs23)
{
    connectInstrument();
    newDocument(PenDocument::Amplitude);
    written();
    QTest::mouseClick(&label(2), Qt::LeftButton);
    EXPECT_EQ(written(), QByteArray("setpin 23\r"));
}

TEST_F(FrmMainPensTest, thePinOfPen10OfAnImpedanceDocumentIs110)
{
    connectInstrument();
    newDocument(PenDocument::Impedance);
    written();
    QTest::mouseClick(&label(9), Qt::LeftButton);
    EXPECT_EQ(written(), QByteArray("setpin 110\r"));
}

TEST_F(FrmMainPensTest, turningToADocumentOfAnotherTypeSelectsItsPin)
{
    connectInstrument();
    newDocument(PenDocument::Amplitude);
    newDocument(PenDocument::Impedance);
    written();
    trigger("mnuPreviousDocument");
    EXPECT_EQ(written(), QByteArray("setpin 21\r"));
}

TEST_F(FrmMainPensTest, noPinIsWrittenWhileAScriptRuns)
{
    connectInstrument();
    newDocument(PenDocument::Impedance);
    written();
    state.gbfScriptRunning = true;
    QTest::mouseClick(&label(4), Qt::LeftButton);
    EXPECT_EQ(written(), QByteArray());
    EXPECT_TRUE(label(4).isCurrent());
}

TEST_F(FrmMainPensTest, withTheDeviceDisconnectedAPenChangeWritesNothing)
{
    connectInstrument();
    PenDocument* document = newDocument(PenDocument::Impedance);
    device.Close();
    peer->takeWritten();
    QTest::mouseClick(&label(4), Qt::LeftButton);
    EXPECT_EQ(document->gCurrentPen(), 4);
    EXPECT_EQ(peer->takeWritten(), QByteArray());
}

TEST_F(FrmMainPensTest, withoutDocumentAClickChangesNothing)
{
    QTest::mouseClick(&label(4), Qt::LeftButton);
    EXPECT_FALSE(label(4).isCurrent());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmMainPensTest, keysOfTheDocumentChoosePensAndTheBarFollows)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    QWidget* graph = windowOf(document)->widget();
    QTest::keyClick(graph, Qt::Key_7);
    EXPECT_EQ(document->gCurrentPen(), 6);
    EXPECT_TRUE(label(6).isCurrent());
    QTest::keyClick(graph, Qt::Key_0);
    EXPECT_TRUE(label(9).isCurrent());
    QTest::keyClick(graph, Qt::Key_L);
    EXPECT_TRUE(label(9).isLocked());
    EXPECT_EQ(label(9).caption(), QStringLiteral("X"));
    EXPECT_TRUE(action("mnuPenLock").isChecked());
    QTest::keyClick(graph, Qt::Key_V);
    EXPECT_TRUE(label(9).isPenHidden());
    EXPECT_FALSE(action("mnuPenView").isChecked());
}

TEST_F(FrmMainPensTest, lockAndUnlockAllFollowTheDocument)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    main->buttonClick(QStringLiteral("lock"));
    settle();
    EXPECT_EQ(document->GetPenLock(0), 1);
    EXPECT_EQ(label(0).caption(), QStringLiteral("X"));
    document->LockAllPens();
    main->buttonClick(QStringLiteral("UnlockAll"));
    settle();
    for (int pen = 0; pen < 10; ++pen) {
        EXPECT_EQ(document->GetPenLock(pen), 0);
        EXPECT_EQ(label(pen).caption(), QString::number(pen + 1));
    }
    EXPECT_FALSE(action("mnuPenLock").isChecked());
}

TEST_F(FrmMainPensTest, viewTogglesTheCurrentPenAndViewAllShowsEveryPen)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    main->buttonClick(QStringLiteral("View"));
    settle();
    EXPECT_EQ(document->GetPenDisplay(0), 1);
    EXPECT_TRUE(label(0).isPenHidden());
    main->buttonClick(QStringLiteral("VIEWALL"));
    settle();
    EXPECT_EQ(document->GetPenDisplay(0), 0);
    EXPECT_FALSE(label(0).isPenHidden());
    EXPECT_TRUE(action("mnuPenView").isChecked());
}

TEST_F(FrmMainPensTest, theBarFollowsTheActiveDocument)
{
    PenDocument* first = newDocument(PenDocument::Impedance);
    QTest::mouseClick(&label(5), Qt::LeftButton);
    newDocument(PenDocument::Impedance);
    EXPECT_TRUE(label(0).isCurrent());
    trigger("mnuPreviousDocument");
    EXPECT_EQ(main->activeDocument(), first);
    EXPECT_TRUE(label(5).isCurrent());
}

TEST_F(FrmMainPensTest, theBarRestsAfterTheLastDocumentHasClosed)
{
    newDocument(PenDocument::Impedance);
    QTest::mouseClick(&label(5), Qt::LeftButton);
    main->buttonClick(QStringLiteral("Lock"));
    messages.replies = {UserMessages::ReplyNo};
    trigger("mnuWindowCloseAll");
    ASSERT_EQ(main->gcolDocuments().count(), 0);
    for (int pen = 0; pen < 10; ++pen) {
        EXPECT_FALSE(label(pen).isCurrent());
        EXPECT_FALSE(label(pen).isLocked());
    }
}

TEST_F(FrmMainPensTest, aDocumentInTheBackgroundLeavesTheBarAlone)
{
    PenDocument* background = newDocument(PenDocument::Impedance);
    newDocument(PenDocument::Impedance);
    QTest::mouseClick(&label(5), Qt::LeftButton);
    background->setCurrentPen(2);
    background->LockAllPens();
    background->SetPenColour(5, 0x123456U);
    background->UpdateToolBars();
    settle();
    EXPECT_TRUE(label(5).isCurrent());
    EXPECT_FALSE(label(5).isLocked());
    EXPECT_NE(label(5).colour(), 0x123456U);
    EXPECT_FALSE(action("mnuPenLock").isChecked());
    background->setModified(false);
    windowOf(background)->close();
    settle();
    ASSERT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_TRUE(label(5).isCurrent()) << "closing it emptied the bar";
    EXPECT_EQ(main->sbStatusBar().panelText(2), QStringLiteral("6"));
}

TEST_F(FrmMainPensTest, aDoubleClickChangesThePensColourForThisAndLaterDocuments)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    QTimer::singleShot(0, [] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->setCurrentColor(QColor(1, 2, 3));
        dialog->accept();
    });
    QTest::mouseDClick(&label(1), Qt::LeftButton);
    settle();
    EXPECT_EQ(document->peGraph().SubsetColors(1), 0x030201U);
    EXPECT_EQ(document->peGraph().SubsetColors(31), 0x030201U);
    EXPECT_EQ(label(1).colour(), 0x030201U);
    EXPECT_EQ(state.glPenColour[1], 0x030201U);
    EXPECT_EQ(preferences.value(options::kPens[1]), 0x030201U);
}

TEST_F(FrmMainPensTest, aCancelledColourStays)
{
    newDocument(PenDocument::Impedance);
    const std::uint32_t before = label(1).colour();
    QTimer::singleShot(0, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject(); });
    QTest::mouseDClick(&label(1), Qt::LeftButton);
    settle();
    EXPECT_EQ(label(1).colour(), before);
    EXPECT_FALSE(preferences.contains(options::kPens[1]));
}

TEST_F(FrmMainPensTest, penLabelsWorkFromTheKeyboard)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    EXPECT_TRUE(label(3).focusPolicy() & Qt::TabFocus);
    QTest::keyClick(&label(3), Qt::Key_Space);
    EXPECT_EQ(document->gCurrentPen(), 3);
}

TEST_F(FrmMainPensTest, thePenOfFrameAIsTheUsersNumber)
{
    connectInstrument();
    PenDocument* document = newDocument(PenDocument::Impedance);
    receive(frame('a', 4));
    EXPECT_EQ(document->gCurrentPen(), 3);
    QByteArray ten = frame('a', 0);
    ten[2] = 'A';
    receive(ten);
    EXPECT_EQ(document->gCurrentPen(), 9);
}

} // namespace
