// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TextExport.h"

#include "controls/resonance/ResonanceEngine.h"
#include "document/DocumentBench.h"
#include "export/ExportedPlots.h"
#include "program/Version.h"

#include <QDir>
#include <QRegularExpression>

#include <bit>
#include <charconv>
#include <complex>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using exported::Case;
using exported::Table;

class TextExportTest : public ::testing::Test
{
protected:
    std::string text(const PenDocument& document, int pen, const TextExport::Format& format)
    {
        TextExport::collect(m_store, document, m_bench.path(u"out.txt"_s), pen, format);
        return m_store.text(pen).toStdString();
    }

    DocumentBench m_bench;
    ExportStore m_store;
};

/// Takes a text apart as its format promises; any other layout is a failure.
Table parsed(const QByteArray& text, const Case& one)
{
    const QByteArray end = one.format.unixEnd ? "\n" : "\r\n", delimiter = one.format.comma ? ", " : "\t";
    EXPECT_EQ(text.count('\r'), one.format.unixEnd ? 0 : text.count('\n'));
    Table table;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype stop = text.indexOf(end, at);
        EXPECT_GE(stop, 0);
        if (stop < 0)
            return {};
        const QByteArray line = text.mid(at, stop - at);
        at = stop + end.size();
        if (one.format.header && line.startsWith("# ") && table.empty())
            continue;
        std::vector<float> row;
        for (qsizetype from = 0; from <= line.size();) {
            qsizetype to = line.indexOf(delimiter, from);
            to = to < 0 ? line.size() : to;
            float value = 0;
            const auto read = std::from_chars(line.constData() + from, line.constData() + to, value);
            EXPECT_TRUE(read.ec == std::errc() && read.ptr == line.constData() + to) << line.constData();
            row.push_back(value);
            from = to + delimiter.size();
        }
        table.push_back(row);
    }
    return table;
}

} // namespace

TEST_F(TextExportTest, EveryNumberOfEveryKindOfFileIsThatOfThePlot)
{
    const QList<Case> cases = exported::everyCase();
    ASSERT_EQ(cases.size(), 3 * 2 * 2 * 2 * 2);
    for (const Case& one : cases) {
        const std::unique_ptr<PenDocument> document = m_bench.document(one.type);
        exported::fill(*document);
        const Table expected = exported::tableOf(document->peGraph(), one);
        ASSERT_FALSE(expected.empty());
        const QByteArray bytes = QByteArray::fromStdString(text(*document, one.pen, one.format));
        EXPECT_EQ(bytes.contains('#'), one.format.header);
        EXPECT_EQ(exported::bits(parsed(bytes, one)), exported::bits(expected)) << exported::nameOf(one);
        ASSERT_TRUE(m_store.ExportWrite(one.pen)) << m_store.exportOutcome().sentence().toStdString();
        QFile file(m_bench.path(u"out.txt"_s));
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        EXPECT_EQ(file.readAll(), bytes);
    }
}

TEST_F(TextExportTest, UnixFormatWithCommaGivesCommaBlankAndASingleLineFeed)
{
    const auto document = m_bench.document(plot::Impedance);
    document->AddImpedancePoint(1000, 5, 6, -1, 0);
    document->AddImpedancePoint(2000, 7, 8, 1, 1);
    EXPECT_EQ(text(*document, 0, {false, true, true}), "1000, 5, -6\n2000, 7, 8\n");
    EXPECT_EQ(text(*document, 0, {false, false, false}), "1000\t5\t-6\r\n2000\t7\t8\r\n");
}

TEST_F(TextExportTest, TheHeaderHasProgramOriginTitleNamesAndColumns)
{
    const auto document = m_bench.document(plot::Reactance);
    document->peGraph().setTXAxisLabel(u"MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026"_s);
    document->peGraph().setMainTitle(u"Horn 7"_s);
    document->peGraph().setSubsetLabels(2, u"L\u00e4ngs"_s);
    document->setCurrentPen(2);
    document->AddReactancePoint(1000, -4, 3, 0.25, 0.125, 0);
    EXPECT_EQ(text(*document, 2, {true, false, true}),
              "# MarrowickGraph V" + version::text().toStdString() +
                  "\n# MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026\n# Horn 7\n# Pen 3: L\u00e4ngs\n"
                  "# Frequency (Hz)\tReactance (Ohm)\tResistance (Ohm)\tConductance (Siemens)\tSusceptance (Siemens)\n"
                  "1000\t-4\t3\t0.125\t0.25\n");
}

TEST_F(TextExportTest, AllPensOfADocumentWithEmptyPensGiveOneFileThatNamesAllTen)
{
    const auto document = m_bench.document(plot::Amplitude);
    document->setCurrentPen(6);
    document->AddAmplitudePoint(1000, -3, 45, 1, 0);
    const QString all = QString::fromStdString(text(*document, TextStore::kAllPens, {true, false, true}));
    for (int pen = 1; pen <= TextStore::kPens; ++pen)
        EXPECT_EQ(all.count(u"# Pen %1: %2\n"_s.arg(pen).arg(document->pens().name(pen - 1))), 1) << pen;
    EXPECT_TRUE(all.endsWith(u"# Pen\tFrequency (Hz)\tGain (dB)\tPhase (degrees)\n7\t1000\t-3\t45\n"_s));
    const int filesBefore = static_cast<int>(QDir(m_bench.folder.path()).entryList(QDir::Files).size());
    EXPECT_TRUE(m_store.ExportWrite(TextStore::kAllPens));
    EXPECT_EQ(QDir(m_bench.folder.path()).entryList(QDir::Files).size(), filesBefore + 1);
    EXPECT_EQ(text(*document, 0, {false, false, true}), "") << "an empty pen";
    const QString empty = QString::fromStdString(text(*document, 0, {true, false, true}));
    EXPECT_TRUE(empty.endsWith(u"# Frequency (Hz)\tGain (dB)\tPhase (degrees)\n"_s)) << empty.toStdString();
}

TEST_F(TextExportTest, APenEndsAtItsEndMark)
{
    const auto document = m_bench.document(plot::Amplitude);
    GraphModel& graph = document->peGraph();
    for (int point = 0; point < 10; ++point) {
        for (int pen : {0, 1}) {
            graph.setPoint(pen, point, static_cast<float>(1000 + point), 1);
            graph.setPoint(pen + 30, point, static_cast<float>(1000 + point), 2);
        }
    }
    graph.setXData(0, 3, 0);
    graph.setYData(1, 5, -65536);
    text(*document, TextStore::kAllPens, {});
    EXPECT_EQ(m_store.points(0), 3);
    EXPECT_EQ(m_store.points(1), 5);
    EXPECT_EQ(m_store.points(2), 0);
}

TEST_F(TextExportTest, AFullPenGivesAllItsPoints)
{
    const auto document = m_bench.document(plot::Impedance);
    for (int point = 0; point < plot::kPoints; ++point)
        document->peGraph().setPoint(9, point, static_cast<float>(point + 1), 5);
    text(*document, 9, {});
    EXPECT_EQ(m_store.points(9), plot::kPoints);
}

TEST_F(TextExportTest, TheNextExportHoldsNothingOfTheOneBefore)
{
    const auto document = m_bench.document(plot::Impedance);
    document->AddImpedancePoint(1000, 5, 6, 1, 0);
    const auto other = m_bench.document(plot::Amplitude);
    other->setCurrentPen(1);
    other->AddAmplitudePoint(2000, 7, 8, 1, 0);
    text(*document, TextStore::kAllPens, {true, true, true});
    EXPECT_EQ(text(*other, TextStore::kAllPens, {}), "2\t2000\t7\t8\r\n");
}

TEST_F(TextExportTest, ADocumentOfUnknownTypeHasNoRows)
{
    PenDocument document(m_bench.context);
    document.peGraph().setPoint(0, 0, 1000, 1);
    EXPECT_EQ(text(document, TextStore::kAllPens, {}), "");
}

namespace {

/// A series circuit that resonates at 40 kHz, with its static capacitance across.
void addResonance(PenDocument& document, int pen)
{
    constexpr double kTwoPi = 6.283185307179586;
    constexpr double kR = 15;
    constexpr double kL = 60e-3;
    constexpr double kC = 1 / (kTwoPi * 40e3 * kTwoPi * 40e3 * kL);
    constexpr double kC0 = 4e-9;
    document.setCurrentPen(pen);
    for (int point = 0; point < 400; ++point) {
        const double frequency = 39e3 + 10 * point;
        const double omega = kTwoPi * frequency;
        const std::complex<double> branch(kR, omega * kL - 1 / (omega * kC));
        const std::complex<double> z = 1.0 / (1.0 / branch + std::complex<double>(0, omega * kC0));
        const double phase = std::arg(z) * 360 / kTwoPi;
        document.AddImpedancePoint(frequency, std::abs(z), std::abs(phase), phase < 0 ? -1 : 1, point);
    }
}

} // namespace

TEST_F(TextExportTest, TheHeaderNamesTheResonanceOfAPenThatHasOne)
{
    for (const std::int16_t type : {plot::Impedance, plot::Reactance}) {
        const auto document = m_bench.document(type);
        addResonance(*document, 4);
        const QString whole = QString::fromStdString(text(*document, TextStore::kAllPens, {true, false, true}));
        const QString line = whole.section(u"# Pen 5"_s, 1).section(u'\n', 1, 1);
        static const QRegularExpression expected(
            u"^# Resonance: Fr (\\S+) Hz, Zr (\\S+) Ohm, Q (\\S+), F1 (\\S+) Hz, F2 (\\S+) Hz$"_s);
        const QRegularExpressionMatch match = expected.match(line);
        ASSERT_TRUE(match.hasMatch()) << line.toStdString();
        EXPECT_NEAR(match.captured(1).toDouble(), 40e3, 10) << type;
        EXPECT_NEAR(match.captured(2).toDouble(), 15, 1) << type;
        EXPECT_EQ(whole.count(u"# Resonance"_s), 1) << "empty pens have none";
        EXPECT_EQ(text(*document, 4, {false, false, true}).find('#'), std::string::npos);
    }
}

TEST_F(TextExportTest, PointsAddedAreThoseThatTheAnalysisSolves)
{
    for (const std::int16_t type : {plot::Impedance, plot::Reactance}) {
        const auto document = m_bench.document(type);
        addResonance(*document, 4);
        m_store.ExportClear();
        TextExport::ExportSubset(m_store, *document, 4);
        ASSERT_TRUE(m_store.analysis().AnalysisSolve(4, -1)) << type;
        EXPECT_NEAR(m_store.analysis().ResultFr(), 40e3, 10) << type;
        EXPECT_NEAR(m_store.analysis().ResultZr(), 15, 1) << type;
        EXPECT_EQ(m_store.analysis().solution(4).usedPoints, m_store.points(4));
        EXPECT_FALSE(m_store.analysis().hasPoints(3)) << "a pen that is fed nothing has no set";
    }
}

TEST_F(TextExportTest, ExportClearForgetsTheSetsOfTheAnalysisToo)
{
    const auto document = m_bench.document(plot::Impedance);
    addResonance(*document, 4);
    TextExport::ExportSubset(m_store, *document, 4);
    ASSERT_TRUE(m_store.analysis().hasPoints(4));
    m_store.ExportClear();
    EXPECT_EQ(m_store.points(4), 0);
    EXPECT_FALSE(m_store.analysis().hasPoints(4));
    EXPECT_FALSE(m_store.analysis().AnalysisSolve(4, -1));

    // The next export of another document: nothing of the one before is solved or named.
    text(*document, 4, {true, false, true});
    const auto other = m_bench.document(plot::Impedance);
    other->setCurrentPen(4);
    for (int point = 0; point < 20; ++point)
        other->AddImpedancePoint(39e3 + 10 * point, 5 + point, 6, 1, point);
    EXPECT_EQ(QString::fromStdString(text(*other, 4, {true, false, true})).count(u"# Resonance"_s), 0);
    EXPECT_EQ(m_store.analysis().solution(4).usedPoints, 20);
}

TEST_F(TextExportTest, ScriptsWriteTheFileAndWhatTheyPassOfSubsetPhaseAndPrecisionHasNoEffect)
{
    const auto document = m_bench.document(plot::Impedance);
    document->AddImpedancePoint(1000, 5, 6, -1, 0);
    const auto content = [this](const char* name) {
        QFile file(m_bench.path(QLatin1String(name)));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    };
    ASSERT_TRUE(TextExport::ExportTextFile(*document, m_bench.path(u"a.txt"_s), false, false, 10, 0, true, true, true));
    ASSERT_TRUE(TextExport::ExportTextFile(*document, m_bench.path(u"b.txt"_s), true, true, 10, 7, true, true, true));
    EXPECT_EQ(content("a.txt"), content("b.txt"));
    EXPECT_TRUE(content("a.txt").endsWith("1, 1000, 5, -6\n"));
    ASSERT_TRUE(
        TextExport::ExportTextFile(*document, m_bench.path(u"a.txt"_s), false, false, 0, 0, false, false, false));
    EXPECT_EQ(content("a.txt"), "1000\t5\t-6\r\n") << "replaced without a word";
    EXPECT_TRUE(m_bench.messages.shown.empty());
    const Outcome failed =
        TextExport::ExportTextFile(*document, u"/nowhere/a.txt"_s, false, false, 0, 0, false, false, false);
    ASSERT_FALSE(failed);
    EXPECT_TRUE(failed.sentence().contains(u"/nowhere/a.txt"_s));
}
