// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentBench.h"

#include <gtest/gtest.h>

namespace {

struct PenDocumentPens : ::testing::Test
{
    DocumentBench bench;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);

    void fill(int pen, int points)
    {
        document->setCurrentPen(pen);
        for (int i = 0; i < points; ++i)
            document->AddImpedancePoint(1000 + i, 50 + i, 10, 1, i);
        document->setModified(false);
    }
};

TEST_F(PenDocumentPens, LockTogglesMarksAndRefreshes)
{
    const int updates = bench.penChanges;
    EXPECT_EQ(document->TogglePenLock(2), 1);
    EXPECT_EQ(document->GetPenLock(2), 1);
    EXPECT_TRUE(document->gbfModified());
    EXPECT_GT(bench.penChanges, updates);
    EXPECT_EQ(document->TogglePenLock(2), 0);
    EXPECT_EQ(document->GetPenLock(2), 0);
}

TEST_F(PenDocumentPens, MaskPensCannotBeToggledButUnlockAllClearsThem)
{
    document->UpdatePenLock(8, true);
    document->UpdatePenLock(9, true);
    setMasks(*document, true);
    for (const int pen : {8, 9}) {
        bench.messages.shown.clear();
        EXPECT_EQ(document->TogglePenLock(pen), 1);
        ASSERT_EQ(bench.messages.shown.size(), 1U);
        EXPECT_EQ(bench.messages.shown[0].title, "Masks Enabled");
        EXPECT_EQ(bench.messages.shown[0].text, "Disable mask before unlocking pen");
        EXPECT_EQ(document->GetPenLock(pen), 1);
    }
    EXPECT_FALSE(document->gbfModified());
    EXPECT_EQ(document->TogglePenLock(7), 1);
    document->UnlockAllPens();
    EXPECT_EQ(document->GetPenLock(8), 0);
    EXPECT_EQ(document->GetPenLock(9), 0);
    setMasks(*document, false);
    EXPECT_EQ(document->TogglePenLock(9), 1);
}

TEST_F(PenDocumentPens, MaskTestReadsTheActiveDocument)
{
    const auto other = bench.document(PenDocument::Amplitude);
    setMasks(*document, true);
    EXPECT_EQ(document->TogglePenLock(8), 1);
    EXPECT_TRUE(bench.messages.shown.empty());
    setMasks(*other, true);
    EXPECT_EQ(document->TogglePenLock(8), 1);
    EXPECT_EQ(bench.messages.shown.size(), 1U);
    bench.active.set(nullptr);
    EXPECT_EQ(document->TogglePenLock(8), 0);
}

TEST_F(PenDocumentPens, LockAllAndUnlockAll)
{
    document->LockAllPens();
    EXPECT_TRUE(document->gbfModified());
    for (int pen = 0; pen < 10; ++pen)
        EXPECT_EQ(document->GetPenLock(pen), 1);
    document->setModified(false);
    const int updates = bench.penChanges;
    document->UnlockAllPens();
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(bench.penChanges, updates + 1);
    for (int pen = 0; pen < 10; ++pen)
        EXPECT_EQ(document->GetPenLock(pen), 0);
}

TEST_F(PenDocumentPens, HidingTakesThePenOffTheListAndBack)
{
    EXPECT_EQ(document->TogglePenDisplay(3), 1);
    EXPECT_EQ(document->peGraph().RandomSubsetsToGraph(3), -1);
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(document->TogglePenDisplay(3), 0);
    EXPECT_EQ(document->peGraph().RandomSubsetsToGraph(3), 3);
}

TEST_F(PenDocumentPens, HidingTheLastShownPenShowsAllAgain)
{
    for (int pen = 0; pen < 9; ++pen)
        EXPECT_EQ(document->TogglePenDisplay(pen), 1);
    EXPECT_EQ(document->TogglePenDisplay(9), 0);
    for (int pen = 0; pen < 10; ++pen) {
        EXPECT_EQ(document->GetPenDisplay(pen), 0);
        EXPECT_EQ(document->peGraph().RandomSubsetsToGraph(pen), pen);
    }
}

TEST_F(PenDocumentPens, ColourGoesToAllFourSubsets)
{
    document->SetPenColour(6, 0x112233);
    for (int subset = 6; subset < 40; subset += 10)
        EXPECT_EQ(document->peGraph().SubsetColors(subset), 0x112233U);
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(PenDocumentPens, NextPenSkipsLockedOnesAndWraps)
{
    bench.currentPens.clear();
    EXPECT_TRUE(document->SelectNextPen());
    EXPECT_EQ(document->gCurrentPen(), 1);
    EXPECT_EQ(bench.currentPens, QList<int>{1});
    document->setCurrentPen(8);
    document->UpdatePenLock(9, true);
    document->UpdatePenLock(0, true);
    EXPECT_TRUE(document->SelectNextPen());
    EXPECT_EQ(document->gCurrentPen(), 1);
}

TEST_F(PenDocumentPens, NextPenWithAllLockedFailsAndStays)
{
    document->setCurrentPen(4);
    document->LockAllPens();
    bench.currentPens.clear();
    EXPECT_FALSE(document->SelectNextPen());
    EXPECT_EQ(document->gCurrentPen(), 4);
    EXPECT_TRUE(bench.currentPens.isEmpty());
    EXPECT_TRUE(document->TestCurrentPenLock());
}

TEST_F(PenDocumentPens, NextPenLocksTheFinishedOneWhenThePreferencesSaySo)
{
    document->SelectNextPen();
    EXPECT_EQ(document->GetPenLock(0), 0);
    bench.preferences.setValue(options::kLockPenAfterPlot, true);
    document->SelectNextPen();
    EXPECT_EQ(document->GetPenLock(1), 1);
    EXPECT_EQ(document->gCurrentPen(), 2);
}

TEST_F(PenDocumentPens, OnlyFreePenIsItsOwnSuccessor)
{
    document->LockAllPens();
    document->UpdatePenLock(5, false);
    document->setCurrentPen(5);
    EXPECT_TRUE(document->SelectNextPen());
    EXPECT_EQ(document->gCurrentPen(), 5);
}

TEST_F(PenDocumentPens, EraseWritesTheNullValueAndKeepsX)
{
    fill(2, 1024);
    fill(3, 10);
    document->graphEraseLine(2);
    for (int subset = 2; subset < 40; subset += 10) {
        for (int point = 0; point < 1024; ++point)
            ASSERT_EQ(document->peGraph().YData(subset, point), -65536.0F);
        EXPECT_EQ(document->peGraph().XData(subset, 0), 1000.0F);
    }
    EXPECT_EQ(document->peGraph().YData(3, 0), 50.0F);
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(PenDocumentPens, EraseOfALockedPenKeepsTheData)
{
    fill(2, 10);
    document->UpdatePenLock(2, true);
    document->setModified(false);
    document->graphEraseLine(2);
    EXPECT_EQ(document->peGraph().YData(2, 9), 59.0F);
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(PenDocumentPens, ResetNamesAndData)
{
    GraphModel& graph = document->peGraph();
    fill(2, 10);
    graph.setMainTitle("My title");
    graph.setSubTitle("info");
    for (const int subset : {2, 12})
        graph.setSubsetLabels(subset, "named");
    document->graphResetPenName(2);
    EXPECT_EQ(graph.SubsetLabels(2), "Pen 3");
    EXPECT_EQ(graph.SubsetLabels(12), "Pen 3");
    EXPECT_TRUE(document->gbfModified());
    graph.setSubsetLabels(9, "named");
    document->graphResetData();
    EXPECT_EQ(graph.MainTitle(), "Title");
    EXPECT_EQ(graph.SubTitle(), "");
    EXPECT_EQ(graph.SubsetLabels(9), "Pen 10");
    EXPECT_EQ(graph.YData(2, 0), -65536.0F);
}

TEST_F(PenDocumentPens, KeysChoosePensLockAndHide)
{
    for (int digit = 1; digit <= 9; ++digit) {
        document->KeyPressed(QChar(u'0' + digit));
        EXPECT_EQ(document->gCurrentPen(), digit - 1);
    }
    document->KeyPressed('0');
    EXPECT_EQ(document->gCurrentPen(), 9);
    document->KeyPressed('l');
    EXPECT_EQ(document->GetPenLock(9), 1);
    document->KeyPressed('L');
    EXPECT_EQ(document->GetPenLock(9), 0);
    document->KeyPressed('v');
    EXPECT_EQ(document->GetPenDisplay(9), 1);
    document->KeyPressed('V');
    EXPECT_EQ(document->GetPenDisplay(9), 0);
    const int updates = bench.penChanges;
    document->KeyPressed('q');
    EXPECT_EQ(bench.penChanges, updates);
    EXPECT_EQ(document->gCurrentPen(), 9);
}

TEST_F(PenDocumentPens, BarsFollowOnlyAfterInitialisation)
{
    PenDocument fresh(bench.context);
    bench.listen(fresh);
    const int updates = bench.penChanges;
    fresh.UpdateToolBars();
    EXPECT_EQ(bench.penChanges, updates);
    document->UpdateToolBars();
    EXPECT_EQ(bench.penChanges, updates + 1);
}

TEST_F(PenDocumentPens, IndicesOutsideTheTenChangeNothing)
{
    for (const int pen : {-1, 10, 1000}) {
        EXPECT_EQ(document->GetPenLock(pen), 0);
        EXPECT_EQ(document->TogglePenLock(pen), 0);
        EXPECT_EQ(document->TogglePenDisplay(pen), 0);
        document->UpdatePenLock(pen, true);
        document->UpdatePenHide(pen, true);
        document->SetPenColour(pen, 1);
        document->graphEraseLine(pen);
        document->graphResetPenName(pen);
        document->setCurrentPen(pen);
    }
    EXPECT_EQ(document->gCurrentPen(), 0);
    EXPECT_FALSE(document->gbfModified());
}

} // namespace
