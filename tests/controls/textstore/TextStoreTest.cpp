// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/textstore/TextStore.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>

#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

namespace {

using namespace Qt::StringLiterals;

class TextStoreTest : public ::testing::Test
{
protected:
    std::string text(int pen) const { return m_store.text(pen).toStdString(); }

    QByteArray content(const QString& name) const
    {
        QFile file(name);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    void setTexts()
    {
        m_store.ExportSetHeader(1);
        m_store.ExportSetSoftware(u"MarrowickGraph V1.28.0"_s);
        m_store.ExportSetTest(u"Origin"_s);
        m_store.ExportSetTitle(u"Title"_s);
    }

    QTemporaryDir m_folder;
    TextStore m_store;
};

/// A comma as the decimal point and a full stop between thousands, as de_DE has them.
class GermanPunctuation : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// German numbers for everything in the program that asks for a locale, until the end of the scope.
class GermanLocale
{
public:
    GermanLocale() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    ~GermanLocale()
    {
        std::locale::global(m_before);
        QLocale::setDefault(QLocale::c());
    }
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

private:
    std::locale m_before = std::locale::global(std::locale(std::locale::classic(), new GermanPunctuation));
};

} // namespace

TEST_F(TextStoreTest, WithoutAHeaderAFileIsOneRowAPoint)
{
    m_store.ExportAddAmplitude(1000, -3.25, 90, 2, 0);
    m_store.ExportAddAmplitude(2000.5, 0.1F, -90, 2, 1);
    EXPECT_EQ(text(2), "1000\t-3.25\t90\n2000.5\t0.1\t-90\n");
    EXPECT_EQ(m_store.points(2), 2);
}

TEST_F(TextStoreTest, AFileOfAllPensBeginsEachRowWithTheNumberOfThePen)
{
    m_store.ExportAddImpedance(1000, 5, 6, 9, 0);
    m_store.ExportAddImpedance(1000, 7, 8, 0, 0);
    m_store.ExportAddImpedance(2000, 9, 10, 0, 1);
    EXPECT_EQ(text(TextStore::kAllPens), "1\t1000\t7\t8\n1\t2000\t9\t10\n10\t1000\t5\t6\n");
    EXPECT_EQ(text(9), "1000\t5\t6\n");
    EXPECT_EQ(m_store.points(TextStore::kAllPens), 3);
}

TEST_F(TextStoreTest, AReactanceRowIsFrequencyReactanceResistanceConductanceSusceptance)
{
    m_store.ExportAddReactance(1000, 1, 30, 20, 10, 0, 0);
    EXPECT_EQ(text(0), "1000\t1\t30\t20\t10\n");
}

TEST_F(TextStoreTest, APenThatWasFedNothingHasNoRows)
{
    m_store.ExportSetPenLabel(1, u"empty"_s);
    m_store.ExportAddAmplitude(1000, 1, 2, 0, 0);
    EXPECT_EQ(text(1), "");
    EXPECT_EQ(text(TextStore::kAllPens), "1\t1000\t1\t2\n");
    m_store.ExportSetFile(path("empty.txt"));
    EXPECT_TRUE(m_store.ExportWrite(1));
    EXPECT_EQ(content(path("empty.txt")), "");
}

TEST_F(TextStoreTest, DelimiterAndLineEndAreAsTold)
{
    m_store.ExportAddAmplitude(1000, 1, 2, 0, 0);
    m_store.ExportAddAmplitude(2000, 3, 4, 0, 1);
    m_store.ExportSetFormat(u", "_s, u"\n"_s);
    EXPECT_EQ(text(0), "1000, 1, 2\n2000, 3, 4\n");
    m_store.ExportSetFormat(u", "_s, u"\r\n"_s);
    EXPECT_EQ(text(0), "1000, 1, 2\r\n2000, 3, 4\r\n");
    m_store.ExportSetFormat(u"\t"_s, u"\r\n"_s);
    EXPECT_EQ(text(TextStore::kAllPens), "1\t1000\t1\t2\r\n1\t2000\t3\t4\r\n");
}

TEST_F(TextStoreTest, AHeaderOfOnePenNamesProgramTestTitlePenAndColumns)
{
    setTexts();
    m_store.ExportSetPenLabel(0, u"other"_s);
    m_store.ExportSetPenLabel(3, u"L\u00e4ngs"_s);
    m_store.ExportAddImpedance(1000, 5, 6, 3, 0);
    EXPECT_EQ(text(3), "# MarrowickGraph V1.28.0\n# Origin\n# Title\n# Pen 4: L\u00e4ngs\n"
                       "# Frequency (Hz)\tImpedance (Ohm)\tPhase (degrees)\n1000\t5\t6\n");
}

TEST_F(TextStoreTest, AHeaderOfAllPensNamesThemAllAndTheirSolutions)
{
    setTexts();
    m_store.ExportSetFormat(u", "_s, u"\r\n"_s);
    for (std::int16_t pen = 0; pen < TextStore::kPens; ++pen)
        m_store.ExportSetPenLabel(pen, QString(QChar(u'a' + pen)));
    m_store.ExportSetSolution(1, u"F1 1000 Hz, Q 20"_s);
    m_store.ExportAddReactance(1000, 1, 30, 20, 10, 1, 0);
    EXPECT_EQ(
        text(TextStore::kAllPens),
        "# MarrowickGraph V1.28.0\r\n# Origin\r\n# Title\r\n# Pen 1: a\r\n# Pen 2: b\r\n# F1 1000 Hz, Q 20\r\n"
        "# Pen 3: c\r\n# Pen 4: d\r\n# Pen 5: e\r\n# Pen 6: f\r\n# Pen 7: g\r\n# Pen 8: h\r\n# Pen 9: i\r\n"
        "# Pen 10: j\r\n"
        "# Pen, Frequency (Hz), Reactance (Ohm), Resistance (Ohm), Conductance (Siemens), Susceptance (Siemens)\r\n"
        "2, 1000, 1, 30, 20, 10\r\n");
    m_store.ExportSetSolution(1, QString());
    EXPECT_EQ(text(1), "# MarrowickGraph V1.28.0\r\n# Origin\r\n# Title\r\n# Pen 2: b\r\n# Frequency (Hz), Reactance "
                       "(Ohm), Resistance (Ohm), Conductance (Siemens), Susceptance (Siemens)\r\n"
                       "1000, 1, 30, 20, 10\r\n");
}

TEST_F(TextStoreTest, TheTextsDoNotShowWithoutAHeader)
{
    setTexts();
    m_store.ExportSetPenLabel(0, u"name"_s);
    m_store.ExportSetSolution(0, u"measures"_s);
    m_store.ExportAddAmplitude(1000, 1, 2, 0, 0);
    m_store.ExportSetHeader(0);
    EXPECT_EQ(text(0), "1000\t1\t2\n");
}

TEST_F(TextStoreTest, AFileWithoutAPointNamesItsColumnsWhenTheKindWasTold)
{
    setTexts();
    EXPECT_EQ(text(0), "# MarrowickGraph V1.28.0\n# Origin\n# Title\n# Pen 1: \n");
    m_store.ExportSetKind(TextStore::Kind::Amplitude);
    EXPECT_EQ(text(0), "# MarrowickGraph V1.28.0\n# Origin\n# Title\n# Pen 1: \n"
                       "# Frequency (Hz)\tGain (dB)\tPhase (degrees)\n");
}

TEST_F(TextStoreTest, ATextOfTheHeaderCannotBreakItsLine)
{
    setTexts();
    m_store.ExportSetTitle(u"one\r\n2\t3\x2028"
                           u"4\n5"_s);
    m_store.ExportSetPenLabel(0, u"a\nb"_s);
    m_store.ExportSetSolution(0, u"c\nd"_s);
    EXPECT_EQ(text(0), "# MarrowickGraph V1.28.0\n# Origin\n# one  2 3 4 5\n# Pen 1: a b\n# c d\n");
}

TEST_F(TextStoreTest, APointTakesThePlaceOfAnEarlierOneAndRowsComeByIndex)
{
    m_store.ExportAddAmplitude(3000, 3, 0, 0, 2);
    m_store.ExportAddAmplitude(1000, 1, 0, 0, 0);
    m_store.ExportAddAmplitude(2000, 2, 0, 0, 1);
    m_store.ExportAddAmplitude(3500, 4, 0, 0, 2);
    EXPECT_EQ(text(0), "1000\t1\t0\n2000\t2\t0\n3500\t4\t0\n");
}

TEST_F(TextStoreTest, WhatHasNoPlaceIsNotTaken)
{
    m_store.ExportAddImpedance(1000, 1, 2, -1, 0);
    m_store.ExportAddImpedance(1000, 1, 2, 10, 0);
    m_store.ExportAddImpedance(1000, 1, 2, 0, -1);
    m_store.ExportSetPenLabel(-1, u"x"_s);
    m_store.ExportSetPenLabel(10, u"x"_s);
    m_store.ExportSetSolution(-1, u"x"_s);
    m_store.ExportSetSolution(10, u"x"_s);
    EXPECT_EQ(m_store.points(TextStore::kAllPens), 0);
    m_store.ExportAddImpedance(1000, 1, 2, 0, 0);
    m_store.ExportAddAmplitude(2000, 3, 4, 0, 1);
    m_store.ExportAddReactance(3000, 3, 4, 5, 6, 1, 0);
    m_store.ExportSetKind(TextStore::Kind::Reactance);
    EXPECT_EQ(text(TextStore::kAllPens), "1\t1000\t1\t2\n");
}

TEST_F(TextStoreTest, EveryNumberReadsBackBitForBit)
{
    std::mt19937 random(46);
    std::vector<float> values = {0.0F,
                                 -0.0F,
                                 1e-7F,
                                 1e15F,
                                 16777216.0F,
                                 0.1F,
                                 std::numeric_limits<float>::max(),
                                 std::numeric_limits<float>::lowest(),
                                 std::numeric_limits<float>::min(),
                                 std::numeric_limits<float>::denorm_min(),
                                 std::numeric_limits<float>::infinity(),
                                 -std::numeric_limits<float>::infinity()};
    while (values.size() < 60000) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isnan(value))
            values.push_back(value);
    }
    for (std::size_t i = 0; i < values.size(); i += 3)
        m_store.ExportAddAmplitude(values[i], values[i + 1], values[i + 2], 0, static_cast<std::int32_t>(i));
    std::size_t i = 0;
    for (const QByteArray& line : m_store.text(0).chopped(1).split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        ASSERT_EQ(fields.size(), 3);
        for (const QByteArray& field : fields) {
            float back = 0;
            const auto read = std::from_chars(field.begin(), field.end(), back);
            ASSERT_TRUE(read.ec == std::errc() && read.ptr == field.end()) << field.constData();
            ASSERT_EQ(std::bit_cast<std::uint32_t>(back), std::bit_cast<std::uint32_t>(values[i])) << field.constData();
            ++i;
        }
    }
    EXPECT_EQ(i, values.size());
}

TEST_F(TextStoreTest, NumbersAreTheShortestTextAndTheThreeWords)
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), infinite = std::numeric_limits<double>::infinity();
    m_store.ExportAddReactance(39987.25F, 0.3F, 1e-9F, nan, infinite, 0, 0);
    m_store.ExportAddReactance(50000000, -0.0, -infinite, -nan, 1.0 / 3, 0, 1);
    EXPECT_EQ(text(0), "39987.25\t0.3\t1e-09\tNaN\tInf\n50000000\t-0\t-Inf\tNaN\t0.33333334\n");
}

TEST_F(TextStoreTest, AGermanLocaleGivesTheSameBytes)
{
    setTexts();
    const auto fill = [this] {
        for (std::int32_t point = 0; point < 100; ++point)
            m_store.ExportAddReactance(12345.75 * (point + 1), point / 7.0, 1e9 / (point + 1), -1e-9 * point, 0.5, 4,
                                       point);
    };
    fill();
    const QByteArray plain = m_store.text(TextStore::kAllPens);
    const GermanLocale german;
    ASSERT_EQ(QLocale().toString(1.5), u"1,5"_s);
    std::ostringstream probe;
    probe << 1234.5;
    ASSERT_EQ(probe.str(), "1.234,5");
    m_store.ExportClear();
    setTexts();
    fill();
    EXPECT_EQ(m_store.text(TextStore::kAllPens), plain);
}

TEST_F(TextStoreTest, TheSystemsGermanLocaleGivesTheSameBytesAsC)
{
    const QString locale = path("de_DE.UTF-8");
    if (QProcess::execute(u"localedef"_s, {u"-i"_s, u"de_DE"_s, u"-f"_s, u"UTF-8"_s, locale}) != 0) {
        std::printf("left out: exports under the system's German locale (package locales)\n");
        return;
    }
    for (std::int32_t point = 0; point < 100; ++point)
        m_store.ExportAddImpedance(1234567 + point, std::exp(point - 50.0), point * -1.5e-3, 0, point);
    setTexts();
    m_store.ExportSetSolution(0, u"Resonance"_s);
    const std::string before = text(0);
    qputenv("LOCPATH", m_folder.path().toUtf8());
    const char* const set = std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::string point = set != nullptr ? std::localeconv()->decimal_point : "none was set";
    const std::string under = text(0);
    std::setlocale(LC_ALL, "C");
    qunsetenv("LOCPATH");
    EXPECT_EQ(point, ",");
    EXPECT_EQ(under, before);
}

TEST_F(TextStoreTest, ClearForgetsEverything)
{
    setTexts();
    m_store.ExportSetFile(path("a.txt"));
    m_store.ExportSetFormat(u", "_s, u"\r\n"_s);
    m_store.ExportSetPenLabel(0, u"name"_s);
    m_store.ExportSetSolution(0, u"measures"_s);
    m_store.ExportAddAmplitude(1000, 1, 2, 0, 0);
    m_store.ExportClear();
    EXPECT_EQ(text(TextStore::kAllPens), "");
    EXPECT_FALSE(m_store.ExportWrite(0)) << "no file is named";
    EXPECT_FALSE(QFileInfo::exists(path("a.txt")));
    m_store.ExportAddReactance(1000, 1, 2, 3, 4, 0, 0);
    m_store.ExportSetHeader(1);
    EXPECT_EQ(text(0), "# \n# \n# \n# Pen 1: \n# Frequency (Hz)\tReactance (Ohm)\tResistance (Ohm)\tConductance "
                       "(Siemens)\tSusceptance (Siemens)\n1000\t1\t2\t3\t4\n");
}

TEST_F(TextStoreTest, WritingReplacesTheFileAndFollowsLinks)
{
    QFile old(path("real.txt"));
    ASSERT_TRUE(old.open(QFile::WriteOnly));
    old.write("old and much longer than what comes\n");
    old.close();
    ASSERT_TRUE(QFile::link(path("real.txt"), path("link.txt")));
    m_store.ExportSetFile(path("link.txt"));
    m_store.ExportAddAmplitude(1000, 1, 2, 0, 0);
    EXPECT_TRUE(m_store.ExportWrite(0));
    EXPECT_TRUE(m_store.exportOutcome());
    EXPECT_EQ(content(path("real.txt")), "1000\t1\t2\n");
    EXPECT_TRUE(QFileInfo(path("link.txt")).isSymLink());
    EXPECT_TRUE(m_store.ExportWrite(TextStore::kAllPens));
    EXPECT_EQ(content(path("real.txt")), "1\t1000\t1\t2\n");
}

TEST_F(TextStoreTest, AFailureToWriteIsFalseAndSaysWhy)
{
    m_store.ExportSetFile(path("none/a.txt"));
    EXPECT_FALSE(m_store.ExportWrite(0));
    EXPECT_TRUE(m_store.exportOutcome().sentence().contains(u"none/a.txt"_s));
    m_store.ExportSetFile(m_folder.path());
    EXPECT_FALSE(m_store.ExportWrite(0));
    m_store.ExportSetFile(path("a.txt"));
    for (const int pen : {-1, 11}) {
        EXPECT_FALSE(m_store.ExportWrite(pen));
        EXPECT_EQ(m_store.exportOutcome().sentence(), u"There is no pen %1 to export."_s.arg(pen + 1));
    }
    EXPECT_FALSE(QFileInfo::exists(path("a.txt")));
    EXPECT_TRUE(m_store.ExportWrite(0));
    EXPECT_TRUE(m_store.exportOutcome());
}
