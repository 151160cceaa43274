// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentBench.h"
#include "document/SystemClipboard.h"
#include "document/content/PenReader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTimer>

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

struct PenDocumentClipboard : ::testing::Test
{
    DocumentBench bench;

    static void fill(PenDocument& document, int pen, int points)
    {
        document.setCurrentPen(pen);
        for (int i = 0; i < points; ++i) {
            if (document.pgiTestType() == PenDocument::Amplitude)
                document.AddAmplitudePoint(1000.1 + i * 7.3, -20.7 + i * 0.01, 12.3 + i * 0.1, i % 2 ? -1 : 1, i);
            else
                document.AddImpedancePoint(1000.1 + i * 7.3, 50.7 + i * 3.1, 12.3 + i * 0.1, i % 2 ? -1 : 1, i);
        }
    }
    static void expectEqualPens(PenDocument& one, int pen, PenDocument& other, int otherPen, int points)
    {
        for (int offset = 0; offset < 40; offset += 10) {
            for (int point = 0; point < points; ++point) {
                ASSERT_EQ(one.peGraph().XData(pen + offset, point), other.peGraph().XData(otherPen + offset, point));
                ASSERT_EQ(one.peGraph().YData(pen + offset, point), other.peGraph().YData(otherPen + offset, point));
            }
        }
    }
    static bool erased(const PenDocument& document, int pen)
    {
        for (int offset = 0; offset < 40; offset += 10) {
            for (const float y : document.peGraph().yArray(pen + offset)) {
                if (y != -65536.0F)
                    return false;
            }
        }
        return true;
    }
};

TEST_F(PenDocumentClipboard, GridHasHeaderAndFiveFieldsAPoint)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->setCurrentPen(2);
    document->AddImpedancePoint(1000, 50, 12, -1, 0);
    document->AddImpedancePoint(2000.5, 0.25, 90, 1, 1);
    const QString expected = "Frequency - Hz\tPen 3\t2\r\n"
                             "1000\t50\t0.02\t-12\t-12\r\n"
                             "2000.5\t0.25\t4\t90\t-90\r\n";
    EXPECT_EQ(document->CopyLineData(2), expected);
    EXPECT_EQ(bench.clipboard.content, expected);
    EXPECT_TRUE(document->canPaste());
}

TEST_F(PenDocumentClipboard, EmptyPenCopiesJustTheHeader)
{
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(document->CopyLineData(4), "Frequency - Hz\tPen 5\t1\r\n");
    fill(*document, 4, 20);
    document->graphEraseLine(4);
    EXPECT_EQ(document->CopyLineData(4), "Frequency - Hz\tPen 5\t1\r\n");
}

TEST_F(PenDocumentClipboard, PointWithXZeroEndsACopyEvenIfPointsFollow)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 0, 10);
    document->peGraph().setXData(0, 4, 0);
    EXPECT_EQ(document->CopyLineData(0).count("\r\n"), 5);
}

TEST_F(PenDocumentClipboard, PasteIntoTheSameTypeIsExact)
{
    for (const std::int16_t type : {1, 2, 3}) {
        const auto source = bench.document(type);
        fill(*source, 1, 1024);
        source->peGraph().setSubsetLabels(1, "named");
        const QString grid = source->CopyLineData(1);
        const auto target = bench.document(type);
        target->PasteLineData(7, grid);
        expectEqualPens(*source, 1, *target, 7, 1024);
        EXPECT_EQ(target->peGraph().SubsetLabels(7), "named");
        EXPECT_EQ(target->peGraph().SubsetLabels(17), "named");
        EXPECT_TRUE(target->gbfModified());
        EXPECT_EQ(target->gCurrentPen(), 0);
    }
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentClipboard, AnySingleSurvivesTheGrid)
{
    const auto document = bench.document(PenDocument::Impedance);
    std::mt19937 random(7);
    for (int i = 0; i < 1024; ++i) {
        for (int subset = 0; subset < 40; subset += 10) {
            float value = 0;
            do {
                const std::uint32_t bits = random();
                std::memcpy(&value, &bits, sizeof value);
            } while (!std::isfinite(value) || value == -65536.0F);
            document->peGraph().setPoint(subset, i, 1.0F + static_cast<float>(i) * 0.1F, value);
        }
    }
    const QString grid = document->CopyLineData(0);
    document->PasteLineData(1, grid);
    for (int offset = 0; offset < 40; offset += 10) {
        for (int i = 0; i < 1024; ++i)
            ASSERT_EQ(document->peGraph().YData(offset, i), document->peGraph().YData(1 + offset, i));
    }
}

TEST_F(PenDocumentClipboard, ShorterGridLeavesNothingOfTheOldPen)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 0, 500);
    document->PasteLineData(0, "Frequency - Hz\tshort\t2\r\n100\t1\t1\t0\t0\r\n");
    EXPECT_EQ(PenReader::pointCount(document->peGraph(), 0), 1);
    EXPECT_EQ(document->peGraph().YData(0, 1), -65536.0F);
    EXPECT_EQ(document->peGraph().YData(30, 499), -65536.0F);
}

TEST_F(PenDocumentClipboard, ImpedanceGridConvertsIntoAReactanceDocument)
{
    const auto document = bench.document(PenDocument::Reactance);
    document->setCurrentPen(1);
    document->PasteLineData(4, "Frequency - Hz\tz\t2\r\n1000\t100\t0.01\t-60\t-60\r\n");
    const GraphModel& graph = document->peGraph();
    EXPECT_FLOAT_EQ(graph.YData(34, 0), 50);
    EXPECT_FLOAT_EQ(graph.YData(4, 0), static_cast<float>(-50 * std::sqrt(3.0)));
    EXPECT_EQ(document->gCurrentPen(), 1);
    EXPECT_TRUE(erased(*document, 1));
}

TEST_F(PenDocumentClipboard, ReactanceGridConvertsIntoAnImpedanceDocument)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->PasteLineData(0, "Frequency - Hz\tx\t3\r\n1000\t-400\t0\t300\t0\r\n");
    EXPECT_FLOAT_EQ(document->peGraph().YData(0, 0), 500);
    EXPECT_FLOAT_EQ(document->peGraph().YData(30, 0), -53.130102F);
}

TEST_F(PenDocumentClipboard, GridWithoutPhaseCannotBeConverted)
{
    const auto document = bench.document(PenDocument::Reactance);
    document->PasteLineData(0, "Frequency - Hz\tz\t2\r\n1000\t100\t0.01\t30\t-30\r\n2000\t100\t0.01\t65536\t-65536\r\n"
                               "3000\t100\t0.01\t30\t-30\r\n");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].title, "Paste error");
    EXPECT_EQ(bench.messages.shown[0].text, "Cannot convert without phase data");
    EXPECT_EQ(PenReader::pointCount(document->peGraph(), 0), 1);
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(PenDocumentClipboard, OtherPairsOfTypesPasteNoData)
{
    const auto document = bench.document(PenDocument::Amplitude);
    fill(*document, 0, 10);
    document->PasteLineData(0, "Frequency - Hz\tz\t2\r\n1000\t100\t0.01\t30\t-30\r\n");
    EXPECT_TRUE(erased(*document, 0));
    EXPECT_EQ(document->peGraph().SubsetLabels(0), "z");
}

TEST_F(PenDocumentClipboard, LockedPenRefusesThePaste)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 0, 10);
    document->UpdatePenLock(0, true);
    document->setModified(false);
    document->PasteLineData(0, "Frequency - Hz\tz\t2\r\n1\t2\t3\t4\t5\r\n");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].title, "Data Paste");
    EXPECT_EQ(bench.messages.shown[0].text, "Unlock pen before paste");
    EXPECT_EQ(PenReader::pointCount(document->peGraph(), 0), 10);
    EXPECT_EQ(document->peGraph().SubsetLabels(0), "Pen 1");
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(PenDocumentClipboard, EmptyLabelPastesNothingButStillErases)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 0, 10);
    document->setModified(false);
    document->PasteLineData(0, "\tz\t2\r\n1\t2\t3\t4\t5\r\n");
    EXPECT_TRUE(erased(*document, 0));
    EXPECT_EQ(document->peGraph().SubsetLabels(0), "Pen 1");
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(PenDocumentClipboard, ALineOfOneCharacterEndsThePaste)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->PasteLineData(0, "Frequency - Hz\tz\t2\r\n1\t2\t3\t4\t5\r\n6");
    EXPECT_EQ(PenReader::pointCount(document->peGraph(), 0), 1);
    document->PasteLineData(0, "Frequency - Hz\tz\t2\r\n1\t2\t3\t4\t5\r\n6\t7\t8\t9\t10");
    EXPECT_EQ(PenReader::pointCount(document->peGraph(), 0), 2);
    EXPECT_EQ(document->peGraph().YData(20, 1), 10.0F);
}

TEST_F(PenDocumentClipboard, HostileTextTouchesOnlyItsPen)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 1, 1024);
    const auto untouched = bench.document(PenDocument::Impedance);
    fill(*untouched, 1, 1024);
    QString endless = "Frequency - Hz\tz\t2\r\n";
    for (int i = 0; i < 5000; ++i)
        endless += "1\t2\t3\t4\t5\r\n";
    for (const QString& text :
         {QString(), QString("\r\n"), QString("a\tb\t2\r\n1\t2\r\n"), QString("a\tb\t2\r\n\r\n\r\n"), endless,
          QString("a\tb\t2\r\nx\ty\t1e999\t-1e999\tnan\r\n"), QString(100000, '\t'), QString(100000, '\r'),
          QString("a\tb\t-32768\r\n1\t2\t3\t4\t5\r\n"), QString("a\tb\t2\r\n1\t2\t3\t4\t5")}) {
        document->PasteLineData(0, text);
        expectEqualPens(*document, 1, *untouched, 1, 1024);
    }
    document->PasteLineData(0, endless);
    EXPECT_EQ(PenReader::pointCount(document->peGraph(), 0), 1024);
}

TEST_F(PenDocumentClipboard, SniffTellsWhichPensFit)
{
    const auto sniff = [&](std::int16_t type, const QString& text) {
        const auto document = bench.document(type);
        bench.clipboard.content = text;
        const bool fits = document->SniffClipboardData();
        EXPECT_EQ(document->canPaste(), fits);
        EXPECT_EQ(document->peGraph().CustomMenuState(PopupPaste, 0), fits ? 0 : 1);
        return fits;
    };
    const QString amplitude = "Frequency - Hz\tPen 1\t1\r\n", impedance = "Frequency - Hz\tPen 1\t2\r\n",
                  reactance = "Frequency - Hz\tPen 1\t3\r\n";
    EXPECT_TRUE(sniff(1, amplitude));
    EXPECT_FALSE(sniff(1, impedance));
    EXPECT_FALSE(sniff(1, reactance));
    EXPECT_FALSE(sniff(2, amplitude));
    EXPECT_TRUE(sniff(2, impedance));
    EXPECT_TRUE(sniff(2, reactance));
    EXPECT_FALSE(sniff(3, amplitude));
    EXPECT_TRUE(sniff(3, impedance));
    EXPECT_TRUE(sniff(3, reactance));
    EXPECT_FALSE(sniff(2, "Frequency - Hz\tPen 1\t2"));
    EXPECT_FALSE(sniff(2, "\tPen 1\t2\r\n"));
    EXPECT_FALSE(sniff(2, ""));
    EXPECT_FALSE(sniff(2, "any text\r\n"));
}

TEST_F(PenDocumentClipboard, RowsHoldTenPensOf1024Points)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 3, 2);
    document->peGraph().setMainTitle("My plot");
    const QStringList lines = document->ExportToStringRows().split("\r\n");
    ASSERT_EQ(lines.size(), 12);
    EXPECT_EQ(lines[0], "My plot");
    EXPECT_EQ(lines[11], "");
    const QStringList fields = lines[4].split('\t');
    ASSERT_EQ(fields.size(), 1025);
    EXPECT_EQ(fields[0], "Pen 4");
    EXPECT_EQ(fields[1].toFloat(), 50.7F);
    EXPECT_EQ(fields[3], "-65536");
}

TEST_F(PenDocumentClipboard, RowsEndQuietlyWhenTheDocumentDies)
{
    auto document = bench.document(PenDocument::Impedance);
    int rounds = 0;
    QTimer round;
    QObject::connect(&round, &QTimer::timeout, [&] {
        if (++rounds == 100)
            document.reset();
    });
    round.start(0);
    EXPECT_EQ(document->ExportToStringRows(), "");
    EXPECT_EQ(document, nullptr);
}

TEST_F(PenDocumentClipboard, ColumnsHoldAllSubsetsUntilXOfTheFirstIsZero)
{
    const auto document = bench.document(PenDocument::Impedance);
    fill(*document, 0, 3);
    document->peGraph().setMainTitle("My plot");
    const QStringList lines = document->ExportToStringColumns().split("\r\n");
    ASSERT_EQ(lines.size(), 6);
    EXPECT_EQ(lines[0], "My plot");
    EXPECT_TRUE(lines[1].startsWith("Frequency - Hz\tPen 1\tPen 2\t"));
    EXPECT_EQ(lines[1].split('\t').size(), 41);
    const QStringList fields = lines[4].split('\t');
    ASSERT_EQ(fields.size(), 41);
    EXPECT_EQ(fields[0].toFloat(), document->peGraph().XData(0, 2));
    EXPECT_EQ(fields[31].toFloat(), document->peGraph().YData(30, 2));
}

TEST(SystemClipboard, LinesOfASpreadsheetEndInCrLf)
{
    SystemClipboard clipboard;
    QGuiApplication::clipboard()->setText("a\tb\t2\n1\t2\t3\t4\t5\n");
    EXPECT_EQ(clipboard.text(), "a\tb\t2\r\n1\t2\t3\t4\t5\r\n");
    clipboard.setText("a\r\nb\r\n");
    EXPECT_EQ(clipboard.text(), "a\r\nb\r\n");
}

} // namespace
