// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/files/ui/RecoveryCommands.h"

#include "recovery/RecoveryJournal.h"
#include "recovery/RecoveryStore.h"
#include "shell/ui/MainWindowHarness.h"

#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

namespace {

class RecoveryCommandsTest : public MainWindowHarness
{
protected:
    void SetUp() override
    {
        load();
        connectInstrument();
        messages.shown.clear();
    }
    void TearDown() override
    {
        for (int i = 1; i <= main->gcolDocuments().count(); ++i)
            main->gcolDocuments().at(i)->setModified(false);
    }

    /// A sweep of that many points as the instrument sends it.
    void measure(int points, double first)
    {
        QByteArray frames = frame('P', 0, points) + frame('D', 0, 1, 1000, 2000, 0, 0);
        for (int i = 0; i < points; ++i)
            frames += frame('F', 0, 1000 + i, first + i, 30, 1, i);
        receive(frames + frame('E', 0, 0, 1000, 2000, 0, 0));
    }

    /// What the list shows when it comes up; then that row is agreed to.
    QList<QStringList> rows;
    void agreeTo(int row)
    {
        QTimer::singleShot(0, main.get(), [this, row] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            auto* list = dialog->findChild<QTreeWidget*>(QStringLiteral("lstRecovery"));
            ASSERT_NE(list, nullptr);
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                QStringList texts;
                for (int column = 0; column < list->columnCount(); ++column)
                    texts << list->topLevelItem(i)->text(column);
                rows << texts;
            }
            list->setCurrentItem(list->topLevelItem(row));
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("cmdBringBack")), Qt::LeftButton);
        });
    }
};

TEST_F(RecoveryCommandsTest, PenThatWasMeasuredOverComesBackIntoTheCurrentPen)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    measure(30, 100);
    const QString name = document->pens().name(0);
    measure(20, 500);
    document->setCurrentPen(4);
    agreeTo(0);
    trigger("mnuEditBringBack");
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.first().mid(1), QStringList({document->caption(), "Pen 1", name, "30"}));
    EXPECT_EQ(document->peGraph().YData(4, 0), 100.0F);
    EXPECT_EQ(document->peGraph().YData(4, 29), 129.0F);
    EXPECT_EQ(document->peGraph().YData(34, 29), 30.0F);
    EXPECT_EQ(document->peGraph().YData(0, 0), 500.0F) << "the pen it was in keeps what it has";
    EXPECT_EQ(document->pens().name(4), name);
    EXPECT_TRUE(document->gbfModified());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(RecoveryCommandsTest, UsedPenIsAskedAboutAndKeptByACancel)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    measure(30, 100);
    measure(20, 500);
    messages.replies = {UserMessages::ReplyCancel};
    agreeTo(0);
    trigger("mnuEditBringBack");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown.front().title, "Overwrite existing?");
    EXPECT_EQ(document->peGraph().YData(0, 0), 500.0F);
    messages.replies = {UserMessages::ReplyOk};
    agreeTo(0);
    trigger("mnuEditBringBack");
    EXPECT_EQ(document->peGraph().YData(0, 0), 100.0F);
    // What was overwritten can be brought back in its turn.
    rows.clear();
    messages.replies = {UserMessages::ReplyOk};
    agreeTo(0);
    trigger("mnuEditBringBack");
    EXPECT_EQ(rows.size(), 2);
    EXPECT_EQ(document->peGraph().YData(0, 0), 500.0F);
}

TEST_F(RecoveryCommandsTest, LockedPenIsNotWrittenTo)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    measure(30, 100);
    measure(20, 500);
    document->UpdatePenLock(0, true);
    agreeTo(0);
    trigger("mnuEditBringBack");
    EXPECT_EQ(document->peGraph().YData(0, 0), 500.0F);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown.front().text, "Unlock pen before paste");
}

TEST_F(RecoveryCommandsTest, PlotClosedByNoIsReopenedUnsavedWithItsCaption)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    measure(30, 100);
    const QString caption = document->caption();
    messages.replies = {UserMessages::ReplyNo};
    trigger("mnuFileClose");
    ASSERT_EQ(main->activeDocument(), nullptr);
    agreeTo(0);
    trigger("mnuFileReopenClosed");
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.first().at(1), caption);
    PenDocument* reopened = main->activeDocument();
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(reopened->caption(), caption);
    EXPECT_TRUE(reopened->gbfModified());
    EXPECT_TRUE(reopened->GetFileName().isEmpty());
    EXPECT_EQ(reopened->peGraph().YData(0, 29), 129.0F);
    EXPECT_EQ(reopened->pgiTestType(), PenDocument::Impedance);
}

TEST_F(RecoveryCommandsTest, NothingToBringBackIsSaid)
{
    newDocument(PenDocument::Impedance);
    messages.shown.clear();
    trigger("mnuFileReopenClosed");
    trigger("mnuEditBringBack");
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown.front().text, "There is nothing to bring back.");
}

TEST_F(RecoveryCommandsTest, PlotsThatACrashLeftAreOpenedAfterYes)
{
    {
        RecoveryJournal crashed(recovery::stateFolder());
        PenDocument* document = newDocument(PenDocument::Impedance);
        crashed.follow(*document);
        document->AddImpedancePoint(1000, 77, 30, 1, 0);
        document->SetModified();
        document->setCaption(QStringLiteral("Horn 7"));
        ASSERT_TRUE(crashed.settle());
    }
    main->activeDocument()->setModified(false);
    messages.shown.clear();
    messages.replies = {UserMessages::ReplyYes};
    main->recoveryCommands().offerUnsaved();
    settle();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown.front().title, "Recover");
    ASSERT_EQ(main->gcolDocuments().count(), 2);
    EXPECT_EQ(main->activeDocument()->peGraph().YData(0, 0), 77.0F);
    EXPECT_TRUE(main->activeDocument()->gbfModified());
    main->recoveryCommands().offerUnsaved();
    EXPECT_EQ(messages.shown.size(), 1U) << "asked once";
}

TEST_F(RecoveryCommandsTest, FolderThatCannotBeWrittenIsToldOnceWhenTheSweepIsOver)
{
    QFile file(folder.filePath(QStringLiteral("state")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)); // a file where the folder should be
    state.gbfPlotting = true;                     // a sweep runs
    PenDocument* document = newDocument(PenDocument::Reactance);
    document->SetModified();
    QTest::qWait(700);
    EXPECT_TRUE(messages.shown.empty());
    state.gbfPlotting = false;
    EXPECT_TRUE(waitFor([this] { return !messages.shown.empty(); }));
    measure(5, 100);
    document->graphEraseLine(0);
    QTest::qWait(700);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown.front().title, "Recovery");
}

} // namespace
