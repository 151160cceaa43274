// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ListingPage.h"

#include <gtest/gtest.h>

using listingpage::fileWithTag;
using listingpage::isBareFileName;

TEST(ListingPage, TheFirstQuotedTextThatBeginsWithTheTagWins)
{
    const QByteArray page = "<a href=\"../\">..</a> \"T46V9R9B9.mfw\" 'MGV0R1B1' <a href=\"MGV1R2B3.exe\">MGV7R7B7</a>"
                            "<a href=\"MGV9R9B9.exe\">";
    EXPECT_EQ(fileWithTag(page, "MG").toStdString(), "MGV1R2B3.exe");
    EXPECT_EQ(fileWithTag(page, "T46").toStdString(), "T46V9R9B9.mfw");
}

TEST(ListingPage, WithoutAQuotedNameThatBeginsWithTheTagThereIsNone)
{
    for (const char* page : {"", "MGV1R2B3.exe", "'MGV1R2B3.exe'", "\"aMGV1R2B3.exe\"", "\"mgV1R2B3.exe\"", "\" MGV1\"",
                             "\"DT46V1R2B3.mfw\"", "\"", "\"M"})
        EXPECT_EQ(fileWithTag(page, "MG").toStdString(), "") << page;
    EXPECT_EQ(fileWithTag("\"DT46V1R2B3.mfw\"", "T46").toStdString(), "");
}

TEST(ListingPage, ANameThatIsNotClosedIsNone)
{
    EXPECT_EQ(fileWithTag("<a href=\"MGV1R2B3.exe", "MG").toStdString(), "");
}

TEST(ListingPage, BlanksAroundANameAreNoPartOfIt)
{
    EXPECT_EQ(fileWithTag("\"MGV1R2B3.exe  \"", "MG").toStdString(), "MGV1R2B3.exe");
}

TEST(ListingPage, ANameThatLeadsElsewhereIsNoneAndNoOtherIsLookedAt)
{
    for (const char* name : {"MG/../../etc/passwd", "MG/x", "MG\\x", "MG..", "MG..x", "MG\nx", "MG\rx", "MG\tx",
                             "MG\x7fx", "MG\xc2\x80x", "MG\xe2\x80\xaex", "MG\xe2\x80\xa8x", "MG\xff", "MG\xc0\xaf"})
        EXPECT_EQ(fileWithTag("\"" + QByteArray(name) + "\" \"MGV1R2B3.exe\"", "MG").toStdString(), "") << name;
    const QByteArray zero("\"MG\0x\" \"MGV1R2B3.exe\"", 22);
    EXPECT_EQ(fileWithTag(zero, "MG").toStdString(), "");
}

TEST(ListingPage, ANameMayHaveLettersBeyondAscii)
{
    EXPECT_EQ(fileWithTag("\"MG\xc3\xa9V1R2B3.exe\"", "MG").toStdString(), "MG\xc3\xa9V1R2B3.exe");
}

TEST(ListingPage, ANameHasAtMost255Bytes)
{
    EXPECT_TRUE(isBareFileName(QString(255, u'M')));
    EXPECT_FALSE(isBareFileName(QString(256, u'M')));
    EXPECT_TRUE(isBareFileName(QString(127, QChar(0xe9))));
    EXPECT_FALSE(isBareFileName(QString(128, QChar(0xe9)))) << "two bytes a letter";
}

TEST(ListingPage, ALeadingDotOrNothingIsNoName)
{
    EXPECT_FALSE(isBareFileName(".hidden"));
    EXPECT_FALSE(isBareFileName("."));
    EXPECT_FALSE(isBareFileName(""));
    EXPECT_TRUE(isBareFileName("a.b"));
    EXPECT_FALSE(isBareFileName(QString(QChar(0xd800)))) << "half a letter";
}
