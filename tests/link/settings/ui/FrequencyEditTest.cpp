// SPDX-License-Identifier: GPL-3.0-or-later
// Frequencies typed into the dialog, and what becomes of a text that is none.
#include "SettingsFixture.h"

namespace {

using frametext::numbers;

class FrequencyEditTest : public SettingsFixture
{};

TEST_F(FrequencyEditTest, TypedMegaAndEnterSendTheFrequency)
{
    open();
    type("txtLowFreq", "1m");
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1M"));
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000000|endfreq 1000000"));
    EXPECT_TRUE(control<QWidget>("txtHighFreq")->hasFocus());
    type("txtHighFreq", "2M5");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000000|endfreq 2500000"));
    EXPECT_TRUE(control<QWidget>("cmdSetFreq")->hasFocus());
    EXPECT_TRUE(form->isVisible());
}

TEST_F(FrequencyEditTest, FrequencyBoxesDiscardOtherKeys)
{
    open();
    type("txtLowFreq", "1x2-e3 k", false);
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("123k"));
    QTest::keyClick(control<QLineEdit>("txtLowFreq"), Qt::Key_Backspace);
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("123"));
    type("txtParkFrequency", "", false);
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrequencyEditTest, ApplySendsSavesAndKeepsTheMonitorBoxes)
{
    open();
    type("txtLowFreq", "10k", false);
    type("txtHighFreq", "20k", false);
    click("optMonFreq_1");
    type("txtSpotFrequency_1", "3M", false);
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 10000|endfreq 20000"));
    EXPECT_EQ(saved("S1", "txtStartFrequency"), QStringLiteral("10000"));
    EXPECT_EQ(saved("S1", "txtEndFrequency"), QStringLiteral("20000"));
    EXPECT_EQ(saved("S1", "MonF1"), QStringLiteral("400000"));
    EXPECT_EQ(saved("S1", "MonF2"), QStringLiteral("3M"));
    EXPECT_EQ(saved("S1", "optMonitorF1"), QStringLiteral("False"));
    EXPECT_EQ(saved("S1", "dblEndFrequency"), QStringLiteral("20000"));
}

TEST_F(FrequencyEditTest, ApplySendsTheUserDefinedIdleFrequencyToo)
{
    mirror.dblIdleFrequency = 5000;
    open();
    type("txtParkFrequency", "7k", false);
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 1000000|idlefreq 7000"));
    EXPECT_EQ(mirror.dblIdleFrequency, 7000);
}

TEST_F(FrequencyEditTest, ACommaIsADecimalPoint)
{
    open();
    type("txtLowFreq", "38,5k");
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("38.5k"));
    EXPECT_EQ(commands(), QStringLiteral("startfreq 38500|endfreq 1000000"));
    paste("txtHighFreq", " 41,25 kHz\n");
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("41.25k"));
    QTest::keyClick(control<QLineEdit>("txtHighFreq"), Qt::Key_Return);
    EXPECT_EQ(commands(), QStringLiteral("startfreq 38500|endfreq 41250"));
}

TEST_F(FrequencyEditTest, PastedTextThatCouldMeanAnotherFrequencyLeavesTheBoxAsItIs)
{
    open();
    for (const char* text : {"1e6", "-5000", "about 40k", "inf"}) {
        paste("txtLowFreq", text);
        EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000")) << text;
    }
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrequencyEditTest, ATextThatIsNoFrequencyIsRefusedInPlaceWithTheOldOneInSight)
{
    mirror.dblIdleFrequency = 5000;
    open();
    for (const char* text : {"", "k", ".", "1.2.3", "0", "1k5k"}) {
        type("txtLowFreq", text);
        EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000")) << text;
        EXPECT_TRUE(control<QWidget>("txtLowFreq")->hasFocus()) << text;
        type("txtParkFrequency", *text == '0' ? "k" : text);
        EXPECT_EQ(boxText("txtParkFrequency"), QStringLiteral("5000")) << text;
        type("txtSpotFrequency_0", *text == '0' ? "k" : text);
        EXPECT_EQ(boxText("txtSpotFrequency_0"), QStringLiteral("400000")) << text;
        EXPECT_EQ(commands(), QString()) << text;
    }
    EXPECT_EQ(mirror.dblStartFrequency, 1000);
    EXPECT_EQ(mirror.dblIdleFrequency, 5000);
    // The other box keeps what was typed there, and goes out when both are good.
    type("txtHighFreq", "2M", false);
    type("txtLowFreq", "k", false);
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("2M"));
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 2000000|idlefreq 5000"));
}

TEST_F(FrequencyEditTest, FrequenciesTypedAndConfirmedByOkAreAppliedAsByApply)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    window.active = document.get();
    mirror.dblIdleFrequency = 5000;
    open();
    type("txtLowFreq", "20k", false);
    type("txtHighFreq", "60k", false);
    type("txtParkFrequency", "30k", false);
    click("OKButton");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 20000|endfreq 60000|idlefreq 30000"));
    EXPECT_EQ(mirror.dblStartFrequency, 20000);
    EXPECT_EQ(mirror.dblEndFrequency, 60000);
    EXPECT_EQ(saved("S1", "txtStartFrequency"), QStringLiteral("20000"));
    EXPECT_EQ(saved("S1", "dblEndFrequency"), QStringLiteral("60000"));
    EXPECT_EQ(saved("S1", "dblIdleFrequency"), QStringLiteral("30000"));
    EXPECT_FALSE(form && form->isVisible());
}

TEST_F(FrequencyEditTest, OkRefusesATextThatIsNoFrequencyAndStaysOpen)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    window.active = document.get();
    open();
    type("txtLowFreq", "k", false);
    click("OKButton");
    EXPECT_TRUE(form && form->isVisible());
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000"));
    EXPECT_EQ(commands(), QString());
    type("txtLowFreq", "k", false);
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_FALSE(form && form->isVisible());
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(saved("S1", "dblStartFrequency"), QStringLiteral("1000"));
}

TEST_F(FrequencyEditTest, WhatIsBeingTypedOutlivesAReportOfTheRange)
{
    open();
    type("txtLowFreq", "12", false);
    frame(numbers('s', '0', 0, 111, 222));
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("12"));
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("222"));
}

TEST_F(FrequencyEditTest, TheRangeOfATestIsNeverTakenFromATextThatIsNone)
{
    open();
    type("txtLowFreq", "k", false);
    EXPECT_EQ(form->lowFrequencyText(), QStringLiteral("1000"));
    type("txtLowFreq", "5k", false);
    EXPECT_EQ(form->lowFrequencyText(), QStringLiteral("5k"));
}

} // namespace
