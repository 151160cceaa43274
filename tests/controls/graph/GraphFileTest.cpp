// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphFile.h"

#include "PlotFiles.h"

#include "controls/graph/GraphModel.h"

#include <QCborArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <bit>
#include <cmath>
#include <csignal>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sys/resource.h>

namespace {

using plotfiles::contentOf;
using plotfiles::envelope;
using Random = std::mt19937_64;

int pick(Random& random, int first, int last)
{
    return std::uniform_int_distribution<int>(first, last)(random);
}

double number(Random& random)
{
    const double extremes[] = {0.0, -0.0, 1e308, -1e308, 5e-324, 0.1, 1e6, std::numeric_limits<double>::max()};
    return pick(random, 0, 3) == 0 ? extremes[pick(random, 0, 7)]
                                   : std::uniform_real_distribution<double>(-1e6, 1e6)(random);
}

QString text(Random& random)
{
    static const QString pieces[] = {QStringLiteral("Pen 3"),
                                     QStringLiteral("\u03a9 \u00b5"),
                                     QStringLiteral("a|b\tc\n"),
                                     QStringLiteral("\U0001F4C8"),
                                     QString(),
                                     QString(300, QLatin1Char('x'))};
    return pieces[pick(random, 0, 5)];
}

/// Any bit pattern, so infinities and every kind of not-a-number too.
float anyFloat(Random& random)
{
    return std::bit_cast<float>(static_cast<std::uint32_t>(random()));
}

graph::Properties anyProperties(Random& random, int subsets)
{
    graph::Properties p;
    p.MainTitle = text(random);
    p.SubTitle = text(random);
    p.XAxisLabel = text(random);
    p.TXAxisLabel = text(random);
    p.XAxisScaleControl = pick(random, 1, 2);
    p.ManualScaleControlX = pick(random, 0, 1) * 3;
    p.ManualMinX = number(random);
    p.ManualMaxX = number(random);
    for (graph::YAxis& axis : p.yAxes)
        axis = {text(random),           pick(random, 1, 2), pick(random, 0, 1) * 3,
                number(random),         number(random),     static_cast<float>(pick(random, -9, 9)),
                pick(random, 0, 1) == 1};
    p.AxisUnitPrefixes = text(random);
    p.zoomed = pick(random, 0, 1) == 1;
    p.zoom = {number(random), number(random), number(random), number(random),
              number(random), number(random), number(random), number(random)};
    for (int i = pick(random, 0, 3); i > 0; --i)
        p.verticalLines.push_back(
            {number(random), pick(random, 0, 2000), static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF))});
    for (graph::TableAnnotation& table : p.tables) {
        table.TARows = pick(random, 0, 3);
        table.TAColumns = pick(random, 0, 3);
        table.cells.assign(static_cast<std::size_t>(table.TARows * table.TAColumns),
                           {text(random), pick(random, 0, 2)});
        table.TATextSize = pick(random, 1, 1000);
        table.TAFonts = text(random);
        table.TALocation = pick(random, 0, 5);
        table.ShowTableAnnotation = pick(random, 0, 1) == 1;
        table.TAHeaderColumn = pick(random, 0, 1) == 1;
        table.TABorder = pick(random, 0, 2);
        table.TABackColor = static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF));
    }
    for (int i = pick(random, 0, 4); i > 0; --i)
        p.CustomMenu.push_back({text(random), {{0, pick(random, 0, 2)}, {3, 1}}, {{2, true}}});
    for (int i = pick(random, 0, 3); i > 0; --i)
        p.MultiSubTitles.append(text(random));
    p.GraphAnnotationText[pick(random, 0, 4095)] = text(random);
    p.MarkDataPoints = pick(random, 0, 1) == 1;
    p.ShowLegend = pick(random, 0, 1) == 1;
    p.LegendStyle = pick(random, 0, 1);
    p.LegendLocation = pick(random, 0, 3);
    p.ViewingStyle = pick(random, 0, 2);
    p.FontSize = pick(random, 0, 2);
    p.FontSizeGlobalCntl = pick(random, 1, 100) / 10.0;
    p.MainTitleFont = text(random);
    p.SubTitleFont = text(random);
    p.LabelFont = text(random);
    p.MonoGraphForeColor = static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF));
    p.MonoGraphBackColor = static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF));
    p.MonoTextColor = static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF));
    p.MonoDeskColor = static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF));
    p.TickColor = static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF));
    p.LineWidth = pick(random, 0, 50);
    for (int i = 0; i < subsets; ++i) {
        p.SubsetLabels.push_back(text(random));
        p.SubsetColors.push_back(static_cast<std::uint32_t>(pick(random, 0, 0xFFFFFF)));
        p.SubsetLineTypes.push_back(pick(random, 0, 12));
        p.SubsetsToShow.push_back(pick(random, 0, 1) == 1);
        p.RandomSubsetsToGraph.push_back(pick(random, -1, subsets - 1));
    }
    return p;
}

void fillWithAnything(GraphModel& model, Random& random)
{
    const auto size = static_cast<std::size_t>(model.Subsets() * model.Points());
    std::vector<float> x(size);
    std::vector<float> y(size);
    for (std::size_t i = 0; i < size; ++i) {
        x[i] = anyFloat(random);
        y[i] = anyFloat(random);
    }
    ASSERT_TRUE(model.replaceAll(anyProperties(random, model.Subsets()), x, y));
}

std::vector<std::uint32_t> bits(const GraphModel& model, int property)
{
    std::vector<float> values(static_cast<std::size_t>(model.Subsets() * model.Points()));
    model.PEvgetEx(property, 0, static_cast<int>(values.size()), values.data());
    std::vector<std::uint32_t> result;
    for (const float value : values)
        result.push_back(std::bit_cast<std::uint32_t>(value));
    return result;
}

void expectSame(const GraphModel& one, const GraphModel& other)
{
    EXPECT_EQ(bits(one, GraphModel::PEP_faXDATA), bits(other, GraphModel::PEP_faXDATA));
    EXPECT_EQ(bits(one, GraphModel::PEP_faYDATA), bits(other, GraphModel::PEP_faYDATA));
    EXPECT_TRUE(one.properties() == other.properties());
}

} // namespace

TEST(GraphFile, FullSizedGraphOfAnyBitsComesBackBitForBit)
{
    Random random(1);
    GraphModel model;
    fillWithAnything(model, random);
    GraphModel loaded;
    const Outcome outcome = GraphFile::PEload(loaded, GraphFile::PEstore(model));
    ASSERT_TRUE(outcome.ok()) << qPrintable(outcome.sentence());
    expectSame(model, loaded);
}

TEST(GraphFile, TenThousandRandomGraphsComeBackBitForBit)
{
    Random random(2);
    GraphModel model(4, 3);
    GraphModel loaded(4, 3);
    for (int i = 0; i < 10000; ++i) {
        fillWithAnything(model, random);
        const Outcome outcome = GraphFile::PEload(loaded, GraphFile::PEstore(model));
        ASSERT_TRUE(outcome.ok()) << i << qPrintable(outcome.sentence());
        expectSame(model, loaded);
        if (::testing::Test::HasFailure())
            FAIL() << "graph " << i;
    }
}

TEST(GraphFile, AFileCutAtAnyByteIsRefusedAndLeavesTheGraphAsItWas)
{
    Random random(3);
    GraphModel model(4, 8);
    fillWithAnything(model, random);
    const QByteArray bytes = GraphFile::PEstore(model);
    GraphModel open(4, 8);
    fillWithAnything(open, random);
    const QByteArray before = GraphFile::PEstore(open);
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        ASSERT_FALSE(GraphFile::PEload(open, bytes.left(size)).ok()) << size;
        ASSERT_EQ(before, GraphFile::PEstore(open)) << size;
    }
    EXPECT_FALSE(GraphFile::PEload(open, bytes + '\0').ok());
}

TEST(GraphFile, AFileWithOneBitFlippedIsRefusedOrReadRight)
{
    Random random(4);
    GraphModel model(40, 64);
    fillWithAnything(model, random);
    const QByteArray bytes = GraphFile::PEstore(model);
    ASSERT_GT(bytes.size(), 1024);
    GraphModel open(40, 64);
    fillWithAnything(open, random);
    const QByteArray before = GraphFile::PEstore(open);
    for (int bit = 0; bit < 1024 * 8; ++bit) {
        QByteArray flipped = bytes;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
        const bool ok = GraphFile::PEload(open, flipped).ok();
        ASSERT_EQ(GraphFile::PEstore(open), ok ? bytes : before) << bit;
        if (ok) {
            ASSERT_TRUE(GraphFile::PEload(open, before).ok());
        }
    }
}

TEST(GraphFile, SavesToAFileAndSaysWhatFailed)
{
    QTemporaryDir folder;
    Random random(5);
    GraphModel model(4, 4);
    fillWithAnything(model, random);
    const QString name = folder.filePath(QStringLiteral("plot.gzd"));
    ASSERT_TRUE(GraphFile::PEsavetofile(model, name).ok());
    GraphModel loaded(4, 4);
    ASSERT_TRUE(GraphFile::PEloadfromfile(loaded, name).ok());
    expectSame(model, loaded);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);

    const QString nowhere = folder.filePath(QStringLiteral("missing/plot.gzd"));
    EXPECT_TRUE(GraphFile::PEsavetofile(model, nowhere).sentence().contains(nowhere));
    EXPECT_TRUE(GraphFile::PEloadfromfile(loaded, nowhere).sentence().contains(nowhere));
    EXPECT_FALSE(GraphFile::PEloadfromfile(loaded, folder.path()).ok());
    EXPECT_FALSE(GraphFile::PEloadfromfile(loaded, QStringLiteral("/dev/zero")).ok());
}

TEST(GraphFile, AFullDiskKeepsTheOldFileAndLeavesNoOther)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot.gzd"));
    GraphModel model(4, 4);
    ASSERT_TRUE(GraphFile::PEsavetofile(model, name).ok());
    const QByteArray before = GraphFile::PEstore(model);
    model.setMainTitle(QStringLiteral("new"));

    // A limit on the size of files fails a write as a full disk does.
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = unlimited;
    limit.rlim_cur = 512;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    const Outcome outcome = GraphFile::PEsavetofile(model, name);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    std::signal(SIGXFSZ, handler);

    EXPECT_FALSE(outcome.ok());
    EXPECT_TRUE(outcome.sentence().contains(name));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(GraphFile, ADeviceIsNotReplacedByAFile)
{
    const GraphModel model(4, 4);
    EXPECT_FALSE(GraphFile::PEsavetofile(model, QStringLiteral("/dev/null")).ok());
    EXPECT_FALSE(QFileInfo(QStringLiteral("/dev/null")).isFile());
}

TEST(GraphFile, AHugeFileIsRefusedUnread)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("huge.gzd"));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64(1) << 40)); // sparse
    file.close();
    GraphModel model(4, 4);
    EXPECT_EQ(GraphFile::PEloadfromfile(model, name).sentence(),
              QStringLiteral("The file is too large for a plot file."));
}
