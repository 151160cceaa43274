// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/linklog/LinkLog.h"

#include "controls/linklog/LinkLogReader.h"
#include "controls/linklog/LinkLogWriter.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <random>

namespace {

using linklog::Entry;

QByteArray allBytes()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += char(byte);
    return bytes;
}

std::vector<Entry> entriesOf(QByteArray text, QString* failure = nullptr)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    linklog::Reader reader(buffer);
    std::vector<Entry> entries;
    while (const std::optional<Entry> entry = reader.next())
        entries.push_back(*entry);
    if (failure)
        *failure = reader.failure();
    else
        EXPECT_TRUE(reader.failure().isNull()) << reader.failure().toStdString();
    return entries;
}

TEST(LinkLogTest, WritesALineAsDocumented)
{
    EXPECT_EQ(linklog::lineOf({412, Entry::ToInstrument, "enquire 1.28\r"}), "0.000412 > enquire 1.28\\r");
    EXPECT_EQ(linklog::lineOf({3'003'020, Entry::FromInstrument, "V:1 a\\b\r\n"}), "3.003020 < V:1 a\\\\b\\r\\n");
    EXPECT_EQ(linklog::lineOf({0, Entry::Remark, "connected \xc3\xa9"}), "0.000000 ! connected \\xc3\\xa9");
    EXPECT_EQ(linklog::lineOf({1, Entry::ToInstrument, " "}), "0.000001 > \\x20");
}

TEST(LinkLogTest, EveryByteComesBack)
{
    EXPECT_EQ(linklog::unescaped(linklog::escaped(allBytes())), allBytes());
    for (char byte : linklog::escaped(allBytes()))
        EXPECT_TRUE(byte >= 0x20 && byte <= 0x7e);
}

TEST(LinkLogTest, RefusesBrokenEscapes)
{
    for (const char* text : {"\\", "\\x", "\\x1", "\\x1g", "\\q", "a\tb", "caf\xe9"})
        EXPECT_FALSE(linklog::unescaped(text)) << text;
    EXPECT_EQ(linklog::unescaped("\\x1F\\x1f"), "\x1f\x1f");
}

TEST(LinkLogTest, RefusesWhatIsNoEntry)
{
    for (const char* line :
         {"", "x", "1 > a", "1.5 > a", "1.0000000 > a", ".000000 > a", "-1.000000 > a", "1.000000 = a", "1.000000 >a",
          "1.000000", "1.000000 ", "1.000000> a", "99999999999999999999.000000 > a"})
        EXPECT_FALSE(linklog::entryOf(line)) << line;
    EXPECT_EQ(linklog::entryOf("12.000007 > a  b")->bytes, "a  b");
    EXPECT_EQ(linklog::entryOf("12.000007 > a")->microseconds, 12'000'007);
    EXPECT_EQ(linklog::entryOf("12.000007 !")->bytes, "");
}

TEST(LinkLogTest, ALogWrittenIsReadBackEntryByEntry)
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath("link.log");
    linklog::Writer writer;
    ASSERT_TRUE(writer.open(fileName));
    std::mt19937 random(3);
    std::vector<Entry> written;
    for (int i = 0; i < 500; ++i) {
        QByteArray bytes;
        for (unsigned n = random() % 90; n > 0; --n)
            bytes += char(random() % 256);
        written.push_back({0, Entry::Kind(random() % 3), bytes});
        writer.add(written.back().kind, bytes);
    }
    writer.close();

    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_TRUE(text.startsWith("# marrowick link log 1\n# started 20"));
    std::vector<Entry> read = entriesOf(text);
    ASSERT_EQ(read.size(), written.size());
    qint64 last = 0;
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_GE(read[i].microseconds, last);
        last = read[i].microseconds;
        read[i].microseconds = 0;
        EXPECT_EQ(read[i], written[i]) << i;
    }
}

TEST(LinkLogTest, WhatWasFlushedCanBeReadWhileTheLogGoesOn)
{
    QTemporaryDir folder;
    linklog::Writer writer;
    ASSERT_TRUE(writer.open(folder.filePath("link.log")));
    writer.add(Entry::ToInstrument, "y\r");
    writer.flush();
    QFile file(folder.filePath("link.log"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(entriesOf(file.readAll()).size(), 1u);
}

TEST(LinkLogTest, SkipsCommentsAndEmptyLinesAndForeignLineEnds)
{
    const std::vector<Entry> entries = entriesOf("# marrowick link log 1\r\n\r\n# a remark\r\n0.000001 > y\\r\r\n");
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].bytes, "y\r");
}

TEST(LinkLogTest, DoesNotReadALastLineThatWasCutOff)
{
    const QByteArray text = "# marrowick link log 1\n0.000001 > startfreq 10\\r\n0.000002 > endfreq 20000\\r\n";
    for (qsizetype cut = text.indexOf("\n0.000002") + 1; cut < text.size(); ++cut)
        EXPECT_EQ(entriesOf(text.first(cut)).size(), 1u) << cut;
    EXPECT_EQ(entriesOf(text).size(), 2u);
}

TEST(LinkLogTest, SaysInWhichLineALogIsBroken)
{
    QString failure;
    EXPECT_EQ(entriesOf("# marrowick link log 1\n0.000001 > y\\r\nnonsense\n0.000002 > y\\r\n", &failure).size(), 1u);
    EXPECT_EQ(failure, "The link log cannot be read, line 3: the line is no entry.");
    entriesOf("0.000001 > y\\r\n", &failure);
    EXPECT_EQ(failure, "The link log cannot be read, line 1: this is no link log of a version known here.");
    entriesOf("# marrowick link log 2\n", &failure);
    EXPECT_EQ(failure, "The link log cannot be read, line 1: this is no link log of a version known here.");
    entriesOf("", &failure);
    EXPECT_EQ(failure, "The link log cannot be read, line 1: the file is empty.");
    entriesOf("# marrowick link log 1\n0.000001 > " + QByteArray(linklog::kLongestLine, 'a') + "\n", &failure);
    EXPECT_EQ(failure, "The link log cannot be read, line 2: the line is too long.");
}

TEST(LinkLogTest, SaysWhyALogCannotBeWritten)
{
    linklog::Writer writer;
    const Outcome missing = writer.open("/nowhere/at/all/link.log");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.sentence(),
              "The link log /nowhere/at/all/link.log cannot be written: No such file or directory.");
    // A full disk.
    const Outcome full = writer.open("/dev/full");
    ASSERT_FALSE(full);
    EXPECT_EQ(full.sentence(), "The link log /dev/full cannot be written: No space left on device.");
    EXPECT_FALSE(writer.isOpen());
    EXPECT_EQ(writer.failure(), full.sentence());
}

} // namespace
