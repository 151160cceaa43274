// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/JournalBench.h"

#include <QSignalSpy>
#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace recovery;

namespace {

struct RecoveryJournalTest : JournalBench
{
    static mode_t modeOf(const QString& path)
    {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0) << qPrintable(path);
        return status.st_mode & 07777U;
    }
    QStringList files() const
    {
        QStringList all;
        for (const QString& session : sessions(folder))
            all += journals(folder, session);
        return all;
    }
};

TEST_F(RecoveryJournalTest, NothingIsMadeBeforeThereIsSomethingToKeep)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    keeper->follow(*document);
    Q_EMIT events.sweepEnded(nullptr);
    EXPECT_TRUE(keeper->settle());
    EXPECT_FALSE(QFileInfo::exists(folder));
}

TEST_F(RecoveryJournalTest, FolderAndFilesAreForNobodyElse)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    sweep(*document, 3);
    ASSERT_TRUE(keeper->settle());
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(QFileInfo(folder).path()), 0700U);
    ASSERT_EQ(files().size(), 1);
    EXPECT_EQ(modeOf(files().first()), 0600U);
    EXPECT_EQ(modeOf(lockFile(folder, sessions(folder).first())), 0600U);
}

TEST_F(RecoveryJournalTest, SessionRunsAsLongAsItsJournalLives)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    sweep(*document, 3);
    ASSERT_TRUE(keeper->settle());
    EXPECT_TRUE(isRunning(folder, sessions(folder).first()));
    EXPECT_TRUE(store().plots().empty());
    keeper.reset();
    EXPECT_FALSE(isRunning(folder, sessions(folder).first()));
    EXPECT_EQ(store().plots().size(), 1U);
}

TEST_F(RecoveryJournalTest, SweepThatWasNotSavedComesBackWholeWithItsName)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    document->setCurrentPen(3);
    sweep(*document, 700);
    const QString name = document->pens().name(3);
    keeper.reset();

    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    EXPECT_TRUE(plots.front().crashed);
    EXPECT_EQ(plots.front().caption, "Document 1");
    EXPECT_EQ(plots.front().testType, PenDocument::Impedance);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(PenData::of(*graph, 3), PenData::of(document->peGraph(), 3));
    EXPECT_EQ(PenData::of(*graph, 3).points(), 700);
    EXPECT_EQ(graph->SubsetLabels(3), name);
}

TEST_F(RecoveryJournalTest, SavedDocumentIsNotOffered)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    sweep(*document, 20);
    bench.picker.answer = bench.path(QStringLiteral("a"));
    ASSERT_TRUE(document->fileSave(true, true));
    keeper.reset();
    EXPECT_TRUE(store().plots().empty());
    EXPECT_TRUE(store().takeUntold().empty());
}

TEST_F(RecoveryJournalTest, SweepOverAPenKeepsTheOneBefore)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    sweep(*document, 300, 1);
    const PenData first = PenData::of(document->peGraph(), 0);
    const QString name = document->pens().name(0);
    sweep(*document, 200, 2);
    ASSERT_TRUE(keeper->settle());

    const auto pens = store().pens();
    ASSERT_EQ(pens.size(), 1U);
    EXPECT_EQ(pens.front().caption, "Document 1");
    EXPECT_EQ(pens.front().pen, 0);
    EXPECT_EQ(pens.front().name, name);
    EXPECT_EQ(pens.front().points, 300);
    const auto record = store().read(pens.front());
    ASSERT_TRUE(record.ok());
    EXPECT_EQ(record.value().data, first);
}

TEST_F(RecoveryJournalTest, PastedOverPenIsKeptAndTheNewDataComesBackAfterACrash)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    sweep(*document, 30, 1);
    const PenData before = PenData::of(document->peGraph(), 0);
    document->PasteLineData(0, QStringLiteral("Frequency - Hz\tpasted\t2\r\n1000\t50\t0.02\t-12\t12\r\n"));
    const PenData pasted = PenData::of(document->peGraph(), 0);
    ASSERT_EQ(pasted.points(), 1);
    keeper.reset();

    const auto pens = store().pens();
    ASSERT_EQ(pens.size(), 1U);
    EXPECT_EQ(store().read(pens.front()).value().data, before);
    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(PenData::of(*graph, 0), pasted);
    EXPECT_EQ(graph->SubsetLabels(0), "pasted");
}

TEST_F(RecoveryJournalTest, ErasedPenIsEmptyAfterACrashAndCanBeBroughtBack)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    sweep(*document, 30);
    document->graphEraseLine(0);
    keeper.reset();
    EXPECT_EQ(store().pens().size(), 1U);
    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    EXPECT_EQ(PenData::of(*graphOf(store().read(plots.front())), 0).points(), 0);
}

TEST_F(RecoveryJournalTest, DocumentClosedWithoutSavingIsKeptWhole)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    document->setCurrentPen(2);
    sweep(*document, 40);
    document->peGraph().setMainTitle(QStringLiteral("Filter 7"));
    document->UpdatePenLock(2, true);
    bench.messages.replies = {UserMessages::ReplyNo};
    ASSERT_TRUE(document->QueryClose());
    ASSERT_TRUE(keeper->settle());

    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    EXPECT_FALSE(plots.front().crashed);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(graph->MainTitle(), "Filter 7");
    EXPECT_EQ(graph->MultiSubTitles(0), "00X0000000");
    EXPECT_EQ(PenData::of(*graph, 2), PenData::of(document->peGraph(), 2));
    keeper.reset();
    EXPECT_EQ(store().plots().size(), 1U) << "the same plot is not offered twice";
    EXPECT_TRUE(store().takeUntold().empty()) << "its user has said no";
}

TEST_F(RecoveryJournalTest, PlotWithoutPointsIsNotOffered)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto other = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    keeper->follow(*document);
    keeper->follow(*other);
    document->SetModified();
    other->SetModified();
    bench.messages.replies = {UserMessages::ReplyNo};
    ASSERT_TRUE(other->QueryClose());
    keeper.reset();
    EXPECT_TRUE(store().plots().empty());
}

TEST_F(RecoveryJournalTest, PlotThatAFileIsLoadedOverIsKept)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    keeper->follow(*document);
    sweep(*document, 10, 1);
    bench.picker.answer = bench.path(QStringLiteral("a"));
    ASSERT_TRUE(document->fileSave(true, true));
    sweep(*document, 20, 2);
    ASSERT_TRUE(document->fileLoadPlot(bench.path(QStringLiteral("a.gzd"))).ok());
    ASSERT_TRUE(keeper->settle());
    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    EXPECT_EQ(PenData::of(*graphOf(store().read(plots.front())), 0).points(), 20);
}

TEST_F(RecoveryJournalTest, UntoldPlotsAreToldOnceAndListedStill)
{
    const auto document = bench.document(PenDocument::Impedance);
    journal().reset();
    {
        const auto keeper = journal();
        sweep(*document, 10);
        ASSERT_TRUE(keeper->settle());
        EXPECT_TRUE(store().takeUntold().empty()) << "its program runs";
    }
    EXPECT_EQ(store().takeUntold().size(), 1U);
    EXPECT_TRUE(store().takeUntold().empty());
    EXPECT_EQ(store().plots().size(), 1U);
}

TEST_F(RecoveryJournalTest, JournalGoesOnInANewFileThatStandsAlone)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal({.fileBytes = 20000});
    document->setCurrentPen(5);
    sweep(*document, 500, 1);
    document->setCurrentPen(6);
    begin(*document);
    for (int point = 0; point < 1000; ++point)
        measure(*document, point, 2);
    keeper.reset();
    const QStringList all = files();
    ASSERT_GT(all.size(), 1);
    for (const QString& file : all.first(all.size() - 1))
        ASSERT_TRUE(QFile::remove(file));

    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(PenData::of(*graph, 5), PenData::of(document->peGraph(), 5));
    EXPECT_EQ(PenData::of(*graph, 6), PenData::of(document->peGraph(), 6));
    EXPECT_EQ(PenData::of(*graph, 6).points(), 1000);
}

TEST_F(RecoveryJournalTest, FolderKeepsItsLimitOldestFirst)
{
    const auto document = bench.document(PenDocument::Impedance);
    const Limits limits{.bytes = 300'000, .fileBytes = 50'000};
    const auto keeper = journal(limits);
    for (int round = 0; round < 60; ++round)
        sweep(*document, 1000, round);
    ASSERT_TRUE(keeper->settle(std::chrono::seconds(20)));
    qint64 total = 0;
    for (const QString& file : files())
        total += QFileInfo(file).size();
    EXPECT_LT(total, limits.bytes + 3 * limits.fileBytes);
    EXPECT_GT(total, limits.bytes / 2);
    const auto pens = store().pens();
    ASSERT_GT(pens.size(), 3U);
    ASSERT_LT(pens.size(), 59U);
    // The newest is the sweep before the last.
    EXPECT_EQ(store().read(pens.front()).value().data.y[0][0], 50.125F + 58 * 100);
}

TEST_F(RecoveryJournalTest, JournalsPastTheirAgeGo)
{
    const auto document = bench.document(PenDocument::Impedance);
    {
        const auto keeper = journal();
        sweep(*document, 10);
        document->graphEraseLine(0);
    }
    ASSERT_EQ(files().size(), 1);
    const QString old = files().first();
    {
        QFile file(old);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addDays(-15), QFileDevice::FileModificationTime));
    }
    prune(folder, {});
    EXPECT_TRUE(QDir(folder).isEmpty()) << qPrintable(QDir(folder).entryList().join(' '));
    EXPECT_TRUE(RecoveryStore(folder).pens().empty());
}

TEST_F(RecoveryJournalTest, FolderThatCannotBeMadeIsToldOnceAndHoldsNothingUp)
{
    QFile file(bench.path(QStringLiteral("state")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)); // a file where the folder should be
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    QSignalSpy failures(keeper.get(), &RecoveryJournal::failed);
    for (int round = 0; round < 5; ++round) {
        sweep(*document, 600, round);
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(keeper->settle());
    for (int round = 0; round < 500 && failures.isEmpty(); ++round)
        QTest::qWait(10);
    ASSERT_EQ(failures.count(), 1);
    EXPECT_TRUE(failures.first().first().toString().contains(folder));
    sweep(*document, 600, 7);
    QTest::qWait(20);
    EXPECT_EQ(failures.count(), 1);
    EXPECT_EQ(PenData::of(document->peGraph(), 0).points(), 600);
}

TEST_F(RecoveryJournalTest, FolderThatCanBeMadeAgainIsWrittenToAgain)
{
    const QString state = bench.path(QStringLiteral("state"));
    {
        QFile file(state);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    keeper->setRetryWait(20);
    QSignalSpy failures(keeper.get(), &RecoveryJournal::failed);
    sweep(*document, 300, 1);
    ASSERT_TRUE(QTest::qWaitFor([&failures] { return !failures.isEmpty(); }));
    ASSERT_TRUE(QFile::remove(state));
    ASSERT_TRUE(QTest::qWaitFor([&keeper] { return keeper->settle(); }));
    document->setCurrentPen(1);
    sweep(*document, 200, 2);
    ASSERT_TRUE(keeper->settle());
    EXPECT_EQ(failures.count(), 1);
    keeper.reset();
    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(PenData::of(*graph, 0), PenData::of(document->peGraph(), 0)) << "measured while nothing was kept";
    EXPECT_EQ(PenData::of(*graph, 1), PenData::of(document->peGraph(), 1));
}

TEST_F(RecoveryJournalTest, FullDiskIsToldOnceAndTheJournalGoesOnWhenThereIsRoom)
{
    // No file may grow, which looks to the journal as a disk that is full. Its thread has the signal masked.
    rlimit unlimited = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    keeper->setRetryWait(20);
    QSignalSpy failures(keeper.get(), &RecoveryJournal::failed);
    sweep(*document, 300, 1);
    ASSERT_TRUE(keeper->settle());
    const rlimit full = {static_cast<rlim_t>(QFileInfo(files().first()).size()) + 1000, unlimited.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    document->setCurrentPen(1);
    begin(*document);
    for (int point = 0; point < 1000; ++point)
        measure(*document, point, 2);
    keeper->flush();
    const bool told = QTest::qWaitFor([&failures] { return !failures.isEmpty(); });
    for (int round = 0; round < 10; ++round)
        QTest::qWait(20); // attempts, each in vain
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    EXPECT_TRUE(told);
    EXPECT_LE(files().size(), 2) << "attempts leave no files behind";
    EXPECT_EQ(PenData::of(document->peGraph(), 1).points(), 1000);

    ASSERT_TRUE(QTest::qWaitFor([&keeper] { return keeper->settle(); }));
    measure(*document, 1000, 2);
    Q_EMIT events.sweepEnded(document.get());
    ASSERT_TRUE(keeper->settle());
    EXPECT_EQ(failures.count(), 1);
    keeper.reset();
    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(PenData::of(*graph, 0), PenData::of(document->peGraph(), 0));
    EXPECT_EQ(PenData::of(*graph, 1), PenData::of(document->peGraph(), 1));
    EXPECT_EQ(PenData::of(*graph, 1).points(), 1001);
}

TEST_F(RecoveryJournalTest, WhatACrashHasLeftOutlastsTheSweepsOfOthers)
{
    const auto document = bench.document(PenDocument::Impedance);
    const Limits limits{.bytes = 300'000, .fileBytes = 50'000};
    {
        const auto crashed = journal(limits);
        sweep(*document, 700, 1);
        ASSERT_TRUE(crashed->settle());
    }
    const PenData measured = PenData::of(document->peGraph(), 0);
    const auto other = bench.document(PenDocument::Impedance);
    const auto keeper = journal(limits);
    for (int round = 0; round < 60; ++round)
        sweep(*other, 1000, round);
    ASSERT_TRUE(keeper->settle(std::chrono::seconds(20)));
    const auto untold = store().takeUntold();
    ASSERT_EQ(untold.size(), 1U);
    EXPECT_EQ(PenData::of(*graphOf(store().read(untold.front())), 0), measured);
}

TEST_F(RecoveryJournalTest, TitleThatWasChangedIsKeptWithoutASweep)
{
    const auto document = bench.document(PenDocument::Impedance);
    auto keeper = journal();
    sweep(*document, 30);
    ASSERT_TRUE(keeper->settle());
    document->peGraph().setMainTitle(QStringLiteral("Filter 7"));
    document->UpdatePenLock(0, true);
    const auto before = keeper->writer().bytesWritten();
    ASSERT_TRUE(QTest::qWaitFor([&] { return keeper->writer().bytesWritten() > before; }, 20000));
    ASSERT_TRUE(keeper->settle());
    keeper.reset();
    const auto plots = store().plots();
    ASSERT_EQ(plots.size(), 1U);
    const auto graph = graphOf(store().read(plots.front()));
    EXPECT_EQ(graph->MainTitle(), "Filter 7");
    EXPECT_EQ(graph->MultiSubTitles(0), "X000000000");
}

TEST_F(RecoveryJournalTest, WaitingPointsLeaveAfterTheLongestWait)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    begin(*document);
    ASSERT_TRUE(keeper->settle());
    const auto before = keeper->writer().bytesWritten();
    for (int point = 0; point < 10; ++point)
        measure(*document, point, 0);
    ASSERT_TRUE(keeper->writer().drain(std::chrono::seconds(1)));
    EXPECT_EQ(keeper->writer().bytesWritten(), before) << "a write for every point";
    QElapsedTimer clock;
    clock.start();
    while (keeper->writer().bytesWritten() == before && clock.elapsed() < 5000)
        QTest::qWait(5);
    EXPECT_GT(keeper->writer().bytesWritten(), before);
    EXPECT_GE(clock.elapsed(), 100);
}

TEST_F(RecoveryJournalTest, PointTakesFewBytesAndFewSystemCalls)
{
    const auto document = bench.document(PenDocument::Impedance);
    const auto keeper = journal();
    begin(*document);
    ASSERT_TRUE(keeper->settle());
    const auto bytes = keeper->writer().bytesWritten();
    const auto calls = keeper->writer().systemCalls();
    for (int point = 0; point < 1024; ++point)
        measure(*document, point, 0);
    Q_EMIT events.sweepEnded(document.get());
    ASSERT_TRUE(keeper->settle());
    EXPECT_LE(keeper->writer().bytesWritten() - bytes, 25U * 1024);
    EXPECT_LE(keeper->writer().systemCalls() - calls, 5U);
}

} // namespace
