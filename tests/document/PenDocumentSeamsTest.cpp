// SPDX-License-Identifier: GPL-3.0-or-later
// What a document says before its data goes, and the way back.
#include "document/DocumentBench.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

struct PenDocumentSeams : ::testing::Test
{
    DocumentBench bench;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);
    QSignalSpy erased{document.get(), &PenDocument::aboutToErase};
    QSignalSpy closing{document.get(), &PenDocument::aboutToClose};

    void fill(int pen)
    {
        document->setCurrentPen(pen);
        document->AddImpedancePoint(1000, 50, 12, 1, 0);
    }
};

TEST_F(PenDocumentSeams, EraseIsToldWhileTheDataIsStillThere)
{
    fill(4);
    float seen = 0;
    QObject::connect(document.get(), &PenDocument::aboutToErase, document.get(),
                     [&](int pen) { seen = document->peGraph().YData(pen, 0); });
    document->graphEraseLine(4);
    ASSERT_EQ(erased.count(), 1);
    EXPECT_EQ(erased.first().first().toInt(), 4);
    EXPECT_EQ(seen, 50.0F);
}

TEST_F(PenDocumentSeams, EraseOfAnEmptyOrALockedPenIsNotTold)
{
    document->graphEraseLine(3);
    fill(2);
    document->UpdatePenLock(2, true);
    document->graphEraseLine(2);
    document->graphEraseLine(10);
    document->graphEraseLine(-1);
    EXPECT_EQ(erased.count(), 0);
}

TEST_F(PenDocumentSeams, NewSweepAndPasteTellOfThePenBefore)
{
    fill(1);
    ASSERT_TRUE(document->SetPlotting({}));
    EXPECT_EQ(erased.count(), 1);
    fill(1);
    document->PasteLineData(1, QStringLiteral("Frequency - Hz\tp\t2\r\n1000\t50\t0.02\t-12\t12\r\n"));
    EXPECT_EQ(erased.count(), 2);
}

TEST_F(PenDocumentSeams, CloseSaysWhetherChangesGoWithIt)
{
    document->SetModified();
    bench.messages.replies = {UserMessages::ReplyCancel, UserMessages::ReplyNo};
    EXPECT_FALSE(document->QueryClose());
    EXPECT_EQ(closing.count(), 0);
    EXPECT_TRUE(document->QueryClose());
    ASSERT_EQ(closing.count(), 1);
    EXPECT_TRUE(closing.first().first().toBool());
    document->setModified(false);
    EXPECT_TRUE(document->QueryClose());
    ASSERT_EQ(closing.count(), 2);
    EXPECT_FALSE(closing.last().first().toBool());
}

TEST_F(PenDocumentSeams, SavedBeforeItClosesNothingIsUnsaved)
{
    document->SetModified();
    bench.messages.replies = {UserMessages::ReplyYes};
    bench.picker.answer = bench.path(QStringLiteral("a"));
    ASSERT_TRUE(document->QueryClose());
    ASSERT_EQ(closing.count(), 1);
    EXPECT_FALSE(closing.first().first().toBool());
}

TEST_F(PenDocumentSeams, RestoredPlotIsUnsavedWithItsCaptionLocksAndNoFile)
{
    fill(6);
    document->UpdatePenLock(6, true);
    const QByteArray bytes = document->plotBytes();
    const auto other = bench.document(PenDocument::Amplitude);
    ASSERT_TRUE(other->restorePlot(bytes, QStringLiteral("Document 9")).ok());
    EXPECT_EQ(other->pgiTestType(), PenDocument::Impedance);
    EXPECT_EQ(other->caption(), "Document 9");
    EXPECT_TRUE(other->GetFileName().isEmpty());
    EXPECT_TRUE(other->gbfModified());
    EXPECT_EQ(other->GetPenLock(6), 1);
    EXPECT_EQ(other->peGraph().YData(6, 0), 50.0F);
    EXPECT_TRUE(bench.quickFiles.isEmpty());
}

TEST_F(PenDocumentSeams, RestoreOfWhatIsNoPlotLeavesTheDocument)
{
    fill(6);
    document->setModified(false);
    EXPECT_FALSE(document->restorePlot("nothing", QStringLiteral("x")).ok());
    EXPECT_EQ(document->caption(), "Document 1");
    EXPECT_EQ(document->peGraph().YData(6, 0), 50.0F);
    EXPECT_FALSE(document->gbfModified());
}

} // namespace
