// SPDX-License-Identifier: GPL-3.0-or-later
// What a plot file may not do to its reader.
#include "AllocationMeter.h"
#include "PlotFiles.h"

#include <QCborArray>

#include <gtest/gtest.h>

namespace {

using plotfiles::envelope;
using plotfiles::leastContent;

QByteArray text(const QByteArray& utf8)
{
    return QCborValue(QString::fromUtf8(utf8)).toCbor();
}

/// A name of five letters that no other number gives.
QByteArray name(int i)
{
    return char(0x65) + QByteArray::number(i, 36).rightJustified(5, '_');
}

/// The least content with more encoded entries.
QByteArray with(const QByteArray& entries)
{
    QByteArray content = leastContent().toCborValue().toCbor();
    EXPECT_EQ(content[0], char(0xA4));
    content[0] = char(0xBF); // of unknown length
    return content + entries + char(0xFF);
}

QByteArray unknownEntries(int count)
{
    QByteArray entries;
    for (int i = 0; i < count; ++i)
        entries += name(i) + char(0x00);
    return entries;
}

QByteArray openMap(const QByteArray& entries)
{
    return char(0xBF) + entries + char(0xFF);
}

QByteArray openArray(const QByteArray& entries)
{
    return char(0x9F) + entries + char(0xFF);
}

QByteArray repeated(const QByteArray& bytes, int count)
{
    return bytes.repeated(count);
}

QByteArray chunks(char head, int count)
{
    return head + repeated(QByteArray(1, char((head & 0xE0) | 1)) + 'a', count) + char(0xFF);
}

/// Work and memory of a load are bounded by the file's size, whatever it holds.
void expectBounded(const char* what, const QByteArray& file)
{
    GraphModel model(2, 2);
    std::uint64_t items = 0;
    AllocationMeter meter;
    const bool ok = GraphFile::PEload(model, file, &items).ok();
    const std::int64_t peak = meter.peakBytes();
    const std::uint64_t allocations = meter.count();
    const auto size = static_cast<std::uint64_t>(file.size());
    // The file itself was read before and counts too.
    EXPECT_LE(peak, static_cast<std::int64_t>(4 * size + (64U << 20))) << what << (ok ? " (read)" : " (refused)");
    EXPECT_LE(items, 2 * size) << what;
    EXPECT_LE(allocations, size / 2 + 1000) << what;
    EXPECT_GT(items, 0U) << what;
}

Outcome load(const QByteArray& content)
{
    GraphModel model(2, 2);
    return GraphFile::PEload(model, envelope(content));
}

} // namespace

TEST(GraphFileLimits, WorkAndMemoryOfALoadAreBoundedByTheSizeOfTheFile)
{
    constexpr int kMega = 1'000'000;
    const QByteArray cell = openMap({});
    const QByteArray cells = text("Cells") + openArray(repeated(cell, 100'000));
    const QByteArray otherCells = text("Cells") + openArray(repeated(openMap(unknownEntries(20)), 99'000));
    const QByteArray lettered = text("Cells") + openArray(repeated(openMap(text("TAText") + text("ab")), 100'000));
    const QByteArray rows = text("TARows") + QCborValue(1000).toCbor() + text("TAColumns") + QCborValue(100).toCbor();
    const QByteArray table = openMap(rows + cells);
    const QByteArray letteredTable = openMap(rows + lettered);
    QByteArray states;
    for (int i = 0; i < 60'000; ++i)
        states += QCborValue(i).toCbor() + char(0x00);
    const QByteArray menu = openMap(text("States") + openMap(states));
    const std::pair<const char*, QByteArray> hostile[] = {
        {"unknown entries", with(unknownEntries(1'700'000))},
        {"unknown entries of an axis", with(text("YAxes") + openArray(repeated(openMap(unknownEntries(150'000)), 4)))},
        {"an unknown list of numbers", with(name(0) + openArray(QByteArray(4 * kMega, '\0')))},
        {"an unknown list of lists", with(name(0) + openArray(repeated("\x81\x81\x81\x80", kMega)))},
        {"an unknown entry nested deep", with(name(0) + QByteArray(5 * kMega, char(0x81)))},
        {"an unknown entry tagged often", with(name(0) + QByteArray(5 * kMega, char(0xC1)))},
        {"unknown entries of long texts", with([] {
             QByteArray entries;
             for (int i = 0; i < 250; ++i)
                 entries += name(i) + text(QByteArray(60'000, 'x'));
             return entries;
         }())},
        {"a long title", with(text("MainTitle") + text(QByteArray(15 * kMega, 'x')))},
        {"a title in chunks", with(text("MainTitle") + chunks(char(0x7F), 2 * kMega))},
        {"a long name", with(text(QByteArray(5 * kMega, 'x')) + char(0x00))},
        {"empty cells", with(text("Tables") + openArray(repeated(table, 3)))},
        {"cells of two letters", with(text("Tables") + openArray(repeated(letteredTable, 3)))},
        {"cells with unknown entries", with(text("Tables") + openArray(openMap(otherCells)))},
        {"empty menu entries", with(text("CustomMenu") + openArray(repeated(openMap({}), 2 * kMega)))},
        {"menu states", with(text("CustomMenu") + openArray(repeated(menu, 64)))},
        {"annotations", with(text("GraphAnnotationText") + openMap(states))},
        {"labels", with(text("SubsetLabels") + openArray(QByteArray(4 * kMega, char(0x60))))},
        {"a list that promises to be long", with(text("SubsetColors") + QByteArray::fromHex("9b7fffffffffffffff"))},
        {"a text that promises to be long", with(text("SubTitle") + QByteArray::fromHex("7b7fffffffffffffff"))},
    };
    for (const auto& [what, content] : hostile)
        expectBounded(what, envelope(content));
    expectBounded("content in chunks", [] {
        QByteArray file = envelope(QByteArray());
        // Tag 24 in front of an empty byte string becomes one of many chunks.
        file.replace(QByteArray::fromHex("d81840"), QByteArray::fromHex("d818") + chunks(char(0x5F), 2 * kMega));
        return file;
    }());
}

TEST(GraphFileLimits, TheLargestTablesAreReadWithinTheBound)
{
    GraphModel model;
    for (int table = 0; table < graph::kTables; ++table) {
        model.setWorkingTable(table);
        model.setTARows(graph::kMaxTableRows);
        model.setTAColumns(graph::kMaxTableColumns);
    }
    const QByteArray file = GraphFile::PEstore(model);
    GraphModel loaded;
    AllocationMeter meter;
    ASSERT_TRUE(GraphFile::PEload(loaded, file).ok());
    EXPECT_LE(meter.peakBytes(), 4 * file.size() + (64 << 20));
    EXPECT_EQ(loaded.properties(), model.properties());
}

TEST(GraphFileLimits, TheLongestTextIsReadAndALongerOneRefused)
{
    const auto titled = [](const QString& title) {
        QCborMap content = leastContent();
        content[QStringLiteral("MainTitle")] = title;
        return content.toCborValue().toCbor();
    };
    // Letters of three bytes, and of four that are two units.
    for (const QString& longest : {QString(graph::kLongestText, QChar(0x2126)),
                                   QStringLiteral("\U0001F4C8").repeated(graph::kLongestText / 2)}) {
        EXPECT_TRUE(load(titled(longest)).ok());
        EXPECT_EQ(load(titled(longest + QLatin1Char('x'))).sentence(),
                  QStringLiteral("The plot file is not valid: \"MainTitle\" is longer than in any graph."));
    }
}

TEST(GraphFileLimits, ATextSetTooLongIsCutSoThatItsFileCanBeRead)
{
    GraphModel model(2, 2);
    model.setMainTitle(QLatin1Char('x') + QStringLiteral("\U0001F4C8").repeated(graph::kLongestText));
    EXPECT_EQ(model.MainTitle().size(), graph::kLongestText - 1); // no half of a letter
    model.setSubsetLabels(1, QString(graph::kLongestText + 1, QLatin1Char('y')));
    EXPECT_EQ(model.SubsetLabels(1).size(), graph::kLongestText);
    GraphModel loaded(2, 2);
    ASSERT_TRUE(GraphFile::PEload(loaded, GraphFile::PEstore(model)).ok());
    EXPECT_EQ(loaded.MainTitle(), model.MainTitle());
}

TEST(GraphFileLimits, AGraphWhoseFileCouldNotBeReadIsNotSaved)
{
    GraphModel model(2, 2);
    for (int i = 0; i < graph::kMaxGraphAnnotations; ++i)
        model.setGraphAnnotationText(i, QString(5000, QLatin1Char('x')));
    const Outcome outcome = GraphFile::PEsavetofile(model, QStringLiteral("/tmp/never-written.gzd"));
    EXPECT_EQ(outcome.sentence(), QStringLiteral("Cannot save /tmp/never-written.gzd: its texts make it larger than a "
                                                 "plot file can be."));
}

TEST(GraphFileLimits, UnknownEntriesAreReadUpToTheirNumberInEachMap)
{
    EXPECT_TRUE(load(with(unknownEntries(256))).ok());
    EXPECT_EQ(load(with(unknownEntries(257))).sentence(),
              QStringLiteral("The plot file is not valid: \"___74\" is one unknown entry too many."));
    const auto zoom = [](int count) { return with(text("Zoom") + openMap(unknownEntries(count))); };
    EXPECT_TRUE(load(zoom(256)).ok());
    EXPECT_EQ(load(zoom(257)).sentence(),
              QStringLiteral("The plot file is not valid: \"Zoom, ___74\" is one unknown entry too many."));
}

TEST(GraphFileLimits, UnknownEntriesAreReadUpToTheirDepth)
{
    const auto nested = [](int lists) { return with(name(0) + QByteArray(lists, char(0x81)) + char(0x00)); };
    EXPECT_TRUE(load(nested(32)).ok());
    EXPECT_EQ(load(nested(33)).sentence(), QStringLiteral("The plot file is not valid: \"____0\" is nested too deep."));
}

TEST(GraphFileLimits, BytesThatAreNoCborAreRefusedAlsoWhereNobodyKnowsTheEntry)
{
    for (const char* hex : {"1c",
                            "3e",
                            "5d",
                            "7c",
                            "dc",
                            "fc",
                            "ff",
                            "1f",
                            "df",
                            "f800",
                            "f81f",
                            "61ff",
                            "62c328",
                            "7f4161ff",
                            "5f6161ff",
                            "5f5f4161ffff",
                            "a101",
                            "bf01ff",
                            "1b0000",
                            "5bffffffffffffffff",
                            "9bffffffffffffffff"}) {
        const Outcome outcome = load(with(name(0) + QByteArray::fromHex(hex)));
        EXPECT_EQ(outcome.sentence(),
                  QStringLiteral("The plot file is not valid: the encoding of \"____0\" is broken."))
            << hex;
    }
}
