// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/MaskShape.h"

#include "mask/MaskTest.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

constexpr auto kZ = plot::Impedance;

std::string refusal(const QByteArray& text, std::int16_t type = kZ)
{
    const auto shape = maskfile::read(text, type);
    return shape ? "read" : shape.sentence().toStdString();
}

const QByteArray kHead = "frequency_Hz upper_Ohm lower_Ohm\n";

TEST(MaskShapeTest, TheFileHasOneLineAFrequency)
{
    const MaskShape shape{{{1000, 20.5}, {2000, {}}, {3000, 30.0}}, {{1000, 1e-3}, {2500, -4.0}}};
    EXPECT_EQ(maskfile::text(shape, kZ), "# Mask lines of MarrowickGraph\n"
                                         "frequency_Hz\tupper_Ohm\tlower_Ohm\n"
                                         "1000\t20.5\t0.001\n"
                                         "2000\tgap\t-\n"
                                         "2500\t-\t-4\n"
                                         "3000\t30\t-\n");
    EXPECT_TRUE(maskfile::text({}, plot::Amplitude).endsWith("frequency_Hz\tupper_dB\tlower_dB\n"));
}

TEST(MaskShapeTest, WhatWasWrittenIsReadBack)
{
    const MaskShape shape{{{1000, 20.5}, {2000, {}}, {3000, 30.0}}, {{0.1F, 0.1F}, {2500, -4.0}}};
    for (const auto type : {plot::Impedance, plot::Amplitude}) {
        const auto read = maskfile::read(maskfile::text(shape, type), type);
        ASSERT_TRUE(read) << read.sentence().toStdString();
        EXPECT_EQ(read.value(), shape);
    }
}

TEST(MaskShapeTest, RemarksBlanksAndAnyLineEndsAreRead)
{
    const MaskShape wanted{{{1000, 5.0}}, {{1000, 2.0}, {2000, 3.0}}};
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const QByteArray text = QByteArray("\xef\xbb\xbf# a mask\n\n  frequency_Hz   upper_Ohm\tlower_Ohm # names\n"
                                           "1e3 5 2.0 # first\n2000\t-\t3")
                                    .replace("\n", end);
        const auto read = maskfile::read(text, kZ);
        ASSERT_TRUE(read) << read.sentence().toStdString();
        EXPECT_EQ(read.value(), wanted);
    }
}

TEST(MaskShapeTest, WhatIsNoMaskIsRefusedWithItsLine)
{
    EXPECT_EQ(refusal(""), "line 1: the line that names the columns is missing");
    EXPECT_EQ(refusal("1000 5 2\n"), "line 1: the columns must be named frequency_Hz upper_Ohm lower_Ohm");
    EXPECT_EQ(refusal("frequency_Hz upper_dB lower_dB\n1000 5 2\n"),
              "line 1: the limits are not in Ohm, which this plot needs");
    EXPECT_EQ(refusal(kHead + "1000 5 2\n", plot::Amplitude),
              "line 1: the limits are not in dB, which this plot needs");
    EXPECT_EQ(refusal(kHead + "1000 5\n"), "line 2: a line has three columns: frequency, upper and lower limit");
    EXPECT_EQ(refusal(kHead + "x 5 2\n"), "line 2: \"x\" is no frequency above 0");
    EXPECT_EQ(refusal(kHead + "0 5 2\n"), "line 2: \"0\" is no frequency above 0");
    EXPECT_EQ(refusal(kHead + "1e99 5 2\n"), "line 2: \"1e99\" is no frequency above 0");
    EXPECT_EQ(refusal(kHead + "1000 5,5 2\n"),
              "line 2: \"5,5\" is no limit; without a point it is \"-\", in a gap \"gap\"");
    EXPECT_EQ(refusal(kHead + "1000 -65536 2\n"),
              "line 2: \"-65536\" is no limit; without a point it is \"-\", in a gap \"gap\"");
    EXPECT_EQ(refusal(kHead + "1000 1e99 2\n"),
              "line 2: \"1e99\" is no limit; without a point it is \"-\", in a gap \"gap\"");
    EXPECT_EQ(refusal(kHead + "2000 5 2\n1000 5 2\n"), "line 3: the frequencies of a mask line must ascend");
    EXPECT_EQ(refusal(kHead + "1000 5 -\n1000 6 -\n"), "line 3: the frequencies of a mask line must ascend");
    EXPECT_EQ(refusal(kHead + "16777216 5 -\n16777217 6 -\n"), "line 3: the frequencies of a mask line must ascend")
        << "one single precision number";
}

TEST(MaskShapeTest, ALineTakesTwentyFourPoints)
{
    QByteArray text = kHead;
    for (int i = 1; i <= 24; ++i)
        text += QByteArray::number(i) + " 5 -\n";
    EXPECT_EQ(refusal(text), "read");
    EXPECT_EQ(refusal(text + "25 - 5\n"), "read") << "of the other line";
    EXPECT_EQ(refusal(text + "25 5 -\n"), "line 26: a mask line has at most 24 points");
}

TEST(MaskShapeTest, TheMaskOfAGraphHasItsGaps)
{
    GraphModel graph;
    graph.setPoint(mask::kUpper, 2, 1000, 5);
    graph.setPoint(mask::kUpper, 3, 2000, 6);
    graph.setPoint(mask::kUpper, 6, 3000, 7);
    graph.setPoint(mask::kUpper, 24, 9000, 7);
    EXPECT_EQ(MaskShape::of(graph), (MaskShape{{{1000, 5.0}, {2000, 6.0}, {2500, {}}, {3000, 7.0}}, {}}));
}

TEST(MaskShapeTest, AFileThatCannotBeReadOrIsTooLargeIsNamed)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"a.mgm"_s);
    EXPECT_EQ(maskfile::readFile(name, kZ).sentence(), name + " cannot be read: No such file or directory.");
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("nothing");
    file.close();
    EXPECT_EQ(maskfile::readFile(name, kZ).sentence(),
              name + ", line 1: a line has three columns: frequency, upper and lower limit.");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(maskfile::kLargestFile + 1, '#'));
    file.close();
    EXPECT_EQ(maskfile::readFile(name, kZ).sentence(), name + " is no mask file: it is too large.");
}

TEST(MaskShapeTest, TheExampleOfThePageIsRead)
{
    QFile page(QStringLiteral(MG_SOURCE_DIR "/docs/masks.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray example = page.readAll().replace("```\n", "\1").split('\1').value(1);
    ASSERT_TRUE(example.contains("gap"));
    const auto shape = maskfile::read(example, kZ);
    ASSERT_TRUE(shape) << shape.sentence().toStdString();
    EXPECT_EQ(shape.value().upper.size(), 5U);
    EXPECT_EQ(maskfile::text(shape.value(), kZ), example);
}

} // namespace
