// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/RecoverCommand.h"

#include "cli/Console.h"
#include "recovery/JournalBench.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace cli;

namespace {

struct RecoverPlots : JournalBench
{
    QString results, problems;
    Console console{QStringLiteral("marrowick"), Console::into(results), Console::into(problems), false};
    QString target = bench.path(QStringLiteral("out"));

    RecoverPlots() { QDir().mkpath(target); }

    /// A plot that is not saved, and a pen of it that was measured over.
    void leaveSomething()
    {
        const auto document = bench.document(PenDocument::Impedance);
        const auto keeper = journal();
        sweep(*document, 30, 1);
        sweep(*document, 20, 2);
    }
    qsizetype filesIn() const { return QDir(target).entryList(QDir::Files).size(); }
    float firstValue(const QString& name) const
    {
        GraphModel graph;
        const Outcome loaded = GraphFile::PEloadfromfile(graph, QDir(target).filePath(name));
        EXPECT_TRUE(loaded.ok()) << qPrintable(loaded.sentence());
        return graph.YData(0, 0);
    }
};

TEST_F(RecoverPlots, ListNamesPlotsAndPensAndWritesNothing)
{
    leaveSomething();
    EXPECT_EQ(recoverPlots(folder, {}, console), ExitCode::Done);
    const QStringList lines = results.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.at(0).endsWith(QStringLiteral("\tplot\tDocument 1\tnot closed, its program had ended")));
    EXPECT_TRUE(lines.at(1).contains(QStringLiteral("\tpen 1\tDocument 1\t30 points of \"")));
    EXPECT_TRUE(problems.isEmpty());
    EXPECT_EQ(filesIn(), 0);
}

TEST_F(RecoverPlots, OutputWritesAPlotForEachAndReplacesNone)
{
    leaveSomething();
    EXPECT_EQ(recoverPlots(folder, {target, false, false}, console), ExitCode::Done);
    QStringList names = QDir(target).entryList({QStringLiteral("recovered-*.gzd")}, QDir::Files, QDir::Name);
    ASSERT_EQ(names.size(), 2);
    EXPECT_EQ(results, QDir(target).filePath(names.at(0)) + '\n' + QDir(target).filePath(names.at(1)) + '\n');
    EXPECT_EQ(firstValue(names.at(0)), 250.125F);
    EXPECT_EQ(firstValue(names.at(1)), 150.125F);
    EXPECT_EQ(recoverPlots(folder, {target, false, false}, console), ExitCode::Done);
    EXPECT_EQ(filesIn(), 4);
}

TEST_F(RecoverPlots, JsonHoldsWhatTheListTells)
{
    leaveSomething();
    EXPECT_EQ(recoverPlots(folder, {target, true, true}, console), ExitCode::Done);
    const QJsonObject all = QJsonDocument::fromJson(results.toUtf8()).object();
    const QJsonObject plot = all.value("plots").toArray().first().toObject();
    EXPECT_EQ(plot.value("caption").toString(), "Document 1");
    EXPECT_EQ(plot.value("type").toString(), "impedance");
    EXPECT_TRUE(plot.value("file").isNull());
    EXPECT_TRUE(plot.value("crashed").toBool());
    EXPECT_TRUE(QFileInfo::exists(plot.value("written").toString()));
    const QJsonObject pen = all.value("pens").toArray().first().toObject();
    EXPECT_EQ(pen.value("pen").toInt(), 1);
    EXPECT_EQ(pen.value("points").toInt(), 30);
    EXPECT_TRUE(QFileInfo::exists(pen.value("written").toString()));
}

TEST_F(RecoverPlots, MissingFolderIsAFileError)
{
    leaveSomething();
    EXPECT_EQ(recoverPlots(folder, {bench.path(QStringLiteral("nowhere")), false, false}, console),
              ExitCode::FileError);
    EXPECT_TRUE(problems.contains(QStringLiteral("there is no such folder")));
}

TEST_F(RecoverPlots, NothingKeptIsSaid)
{
    EXPECT_EQ(recoverPlots(folder, {}, console), ExitCode::Done);
    EXPECT_EQ(results, "There is nothing to recover.\n");
    EXPECT_FALSE(QFileInfo::exists(folder)) << "looking makes nothing";
}

} // namespace
