// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/NearestWord.h"

#include <gtest/gtest.h>

using namespace cli;

namespace {

std::string nearest(const char* word)
{
    const QStringList candidates = {QStringLiteral("output"),       QStringLiteral("csv"), QStringLiteral("picture"),
                                    QStringLiteral("picture-size"), QStringLiteral("to"),  QStringLiteral("points")};
    return nearestWord(QString::fromUtf8(word), candidates).toStdString();
}

} // namespace

TEST(NearestWord, ALetterWrongMissingTooManyOrSwappedIsForgiven)
{
    EXPECT_EQ(nearest("outqut"), "output");
    EXPECT_EQ(nearest("outpt"), "output");
    EXPECT_EQ(nearest("outpuut"), "output");
    EXPECT_EQ(nearest("outptu"), "output");
    EXPECT_EQ(nearest("OUTPUT"), "output");
    EXPECT_EQ(nearest("cvs"), "csv");
    EXPECT_EQ(nearest("picturesize"), "picture-size");
}

TEST(NearestWord, ABeginningIsEnoughFromThreeLettersOn)
{
    EXPECT_EQ(nearest("out"), "output");
    EXPECT_EQ(nearest("pic"), "picture");
    EXPECT_EQ(nearest("ou"), "");
}

TEST(NearestWord, WhatIsFarFromAllIsNotGuessed)
{
    for (const char* word : {"", "x", "colour", "frequency", "ab"})
        EXPECT_EQ(nearest(word), "") << word;
    EXPECT_EQ(nearestWord(QString(100000, u'o'), {QString(100000, u'o')}), QString());
}
