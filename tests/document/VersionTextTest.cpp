// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/VersionText.h"

#include "document/DocumentBench.h"

#include <gtest/gtest.h>

namespace {

const QString kSoftware = "MarrowickGraph V1.28.0";

TEST(VersionText, FirstSaveNamesInstrumentAndDate)
{
    EXPECT_EQ(VersionText::next("", kSoftware, "T46 V1.23.4", "20 Nov 2026"),
              "MarrowickGraph V1.28.0 | T46 V1.23.4 : 20 Nov 2026");
    EXPECT_EQ(VersionText::next("no mark", kSoftware, "", "20 Nov 2026"),
              "MarrowickGraph V1.28.0 | No device connected : 20 Nov 2026");
}

TEST(VersionText, LaterSaveStampsTheProgramAndKeepsInstrumentAndDate)
{
    EXPECT_EQ(VersionText::next("MarrowickGraph V1.2.3 | T46 V1.10.1 : 1 Jan 2020", kSoftware, "DT46 V2.0.0", "today"),
              "MarrowickGraph V1.28.0 | T46 V1.10.1 : 1 Jan 2020");
}

TEST(VersionText, PlotSavedWithoutInstrumentTakesTheConnectedOneAndKeepsItsDate)
{
    const QString old = "MarrowickGraph V1.2.3 | No device connected : 1 Jan 2020";
    EXPECT_EQ(VersionText::next(old, kSoftware, "T46 V1.23.4", "today"),
              "MarrowickGraph V1.28.0 | T46 V1.23.4 : 1 Jan 2020");
    EXPECT_EQ(VersionText::next(old, kSoftware, "", "today"),
              "MarrowickGraph V1.28.0 | No device connected : 1 Jan 2020");
}

TEST(VersionText, TextWithoutDateMarkIsTheOldFormat)
{
    EXPECT_EQ(VersionText::next("MarrowickGraph V1.2.3 | T46", kSoftware, "DT46 V2.0.0", "today"),
              "MarrowickGraph V1.28.0 | Old graph format : Not available");
    const auto parts = VersionText::parts("MarrowickGraph V1.2.3 | T46");
    EXPECT_EQ(parts.software, "MarrowickGraph V1.2.3");
    EXPECT_EQ(parts.instrument, "Old graph format");
    EXPECT_EQ(parts.date, "Not available");
}

TEST(VersionText, PartsOfACompleteText)
{
    const auto parts = VersionText::parts("MarrowickGraph V1.2.3 | T46 V1.0.0 Uncalibrated : 1 Jan 2020");
    EXPECT_EQ(parts.software, "MarrowickGraph V1.2.3");
    EXPECT_EQ(parts.instrument, "T46 V1.0.0 Uncalibrated");
    EXPECT_EQ(parts.date, "1 Jan 2020");
}

TEST(VersionText, ProgramVersionIsMajorAndMinor)
{
    EXPECT_EQ(VersionText::programVersion("MarrowickGraph V1.28.0 | x : y"), "1.28");
    EXPECT_EQ(VersionText::programVersion("MarrowickGraph V1.28"), "0.0");
    EXPECT_EQ(VersionText::programVersion("MarrowickGraph"), "0.0");
    EXPECT_EQ(VersionText::programVersion(""), "0.0");
    EXPECT_EQ(VersionText::programVersion("a V12"), "0.0");
}

struct DocumentVersion : ::testing::Test
{
    DocumentBench bench;
};

TEST_F(DocumentVersion, SetVersionNamesTheConnectedInstrument)
{
    const auto document = bench.document(PenDocument::Amplitude);
    const QString today = QLocale().toString(QDate::currentDate(), QLocale::ShortFormat);
    EXPECT_TRUE(document->SetVersion().endsWith(" | No device connected : " + today));
    EXPECT_TRUE(document->SetVersion().startsWith("MarrowickGraph V"));
    bench.source.name = "T46 V1.23.4 Uncalibrated";
    EXPECT_TRUE(document->SetVersion().endsWith(" | T46 V1.23.4 Uncalibrated : " + today));
    document->peGraph().setTXAxisLabel(document->SetVersion());
    EXPECT_EQ(document->GetVersion(), document->SetVersion().section('V', 1, 1).section('.', 0, 1));
}

TEST(VersionText, SubTitlesShowBlanksInPlaceOfTheMark)
{
    const QString text = QStringLiteral("App V1.28.0 | T46 V1.2.3 : 1 Jan 21");
    EXPECT_EQ(VersionText::subTitle(text), QStringLiteral("App V1.28.0  T46 V1.2.3 : 1 Jan 21"));
    EXPECT_EQ(VersionText::diagnoseSubTitle(text), QStringLiteral("App V1.28.0 T46 V1.2.3 : 1 Jan 21"));
    EXPECT_EQ(VersionText::subTitle(QStringLiteral("no mark")), std::nullopt);
    EXPECT_EQ(VersionText::diagnoseSubTitle(QStringLiteral("no mark")), std::nullopt);
}

} // namespace
