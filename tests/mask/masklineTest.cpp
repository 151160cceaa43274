// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/maskline.h"

#include "document/DocumentBench.h"
#include "mask/MaskShape.h"
#include "recovery/PenText.h"
#include "recovery/RecoveryJournal.h"
#include "recovery/RecoveryStore.h"

#include <gtest/gtest.h>

using mask::kLower;
using mask::kUpper;

namespace {

using namespace Qt::StringLiterals;

constexpr float kNull = graph::kNullValue;

class MasklineTest : public ::testing::Test
{
protected:
    float x(int subset, int point) { return document->peGraph().XData(subset, point); }
    float y(int subset, int point) { return document->peGraph().YData(subset, point); }
    int lineType(int subset) { return document->peGraph().SubsetLineTypes(subset); }
    void become(PenDocument::TestType type)
    {
        document = bench.document(type);
        line = std::make_unique<maskline>(*document, bench.preferences);
    }

    DocumentBench bench;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);
    std::unique_ptr<maskline> line = std::make_unique<maskline>(*document, bench.preferences);
};

// The point on show ---------------------------------------------------------------------------------------------------

TEST_F(MasklineTest, SteppingBackFromTheFirstPointShowsTheTwentyFourth)
{
    line->maskStepUpper(-1);
    EXPECT_EQ(line->maskShowPoint(kUpper).pointIndex, "Point Index: 24");
    EXPECT_EQ(line->maskShowPoint(kLower).pointIndex, "Point Index: 1");
    line->maskStepUpper(1);
    EXPECT_EQ(line->maskShowPoint(kUpper).pointIndex, "Point Index: 1");
    line->maskStepLower(1);
    EXPECT_EQ(line->maskShowPoint(kLower).pointIndex, "Point Index: 2");
}

TEST_F(MasklineTest, TwoDocumentsShareTheSavedIndices)
{
    line->maskStepUpper(3);
    line->maskStepLower(-2);
    line->maskSaveIndices();
    const auto other = bench.document(PenDocument::Amplitude);
    maskline second(*other, bench.preferences);
    second.maskLoadIndices();
    EXPECT_EQ(second.index(kUpper), 3);
    EXPECT_EQ(second.index(kLower), 22);
}

TEST_F(MasklineTest, ASavedIndexThatIsNoneIsBroughtIntoTheMask)
{
    bench.preferences.setValue(options::kMaskUpperIndex, 24);
    bench.preferences.setValue(options::kMaskLowerIndex, -1);
    line->maskLoadIndices();
    EXPECT_EQ(line->index(kUpper), 0);
    EXPECT_EQ(line->index(kLower), 23);
}

TEST_F(MasklineTest, ThePointOnShowIsReadFromTheGraph)
{
    EXPECT_EQ(line->maskShowPoint(kUpper).frequency, "");
    EXPECT_EQ(line->maskShowPoint(kUpper).value, "");
    document->peGraph().setPoint(kUpper, 0, 40000, 12.345678F);
    EXPECT_EQ(line->maskShowPoint(kUpper).frequency, "40000");
    EXPECT_EQ(line->maskShowPoint(kUpper).value, "12.345678");
    document->peGraph().setPoint(kUpper, 0, 0, 0);
    EXPECT_EQ(line->maskShowPoint(kUpper).frequency, "");
    EXPECT_EQ(line->maskShowPoint(kUpper).value, "0");
}

TEST_F(MasklineTest, LimitsAreImpedancesOrAmplitudesByTheDocument)
{
    EXPECT_EQ(line->dataPointLabel(), "Impedance in Ohms:");
    become(PenDocument::Amplitude);
    EXPECT_EQ(line->dataPointLabel(), "Amplitude in dB:");
    become(PenDocument::Reactance);
    EXPECT_EQ(line->dataPointLabel(), "Amplitude in dB:");
}

// Points --------------------------------------------------------------------------------------------------------------

TEST_F(MasklineTest, AStoredPointHasItsReciprocalInTheAlternateViewOfImpedance)
{
    line->maskStepLower(2);
    line->maskStorePoint(40000, 8, kLower);
    EXPECT_EQ(x(kLower, 2), 40000);
    EXPECT_EQ(y(kLower, 2), 8);
    EXPECT_EQ(x(kLower + 10, 2), 40000);
    EXPECT_EQ(y(kLower + 10, 2), 0.125F);
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(y(kLower, 0), kNull);
    EXPECT_EQ(y(kUpper, 2), kNull);
}

TEST_F(MasklineTest, AStoredPointIsNegatedInTheAlternateViewOfAmplitude)
{
    become(PenDocument::Amplitude);
    line->maskStorePoint(40000, -20, kUpper);
    EXPECT_EQ(y(kUpper, 0), -20);
    EXPECT_EQ(y(kUpper + 10, 0), 20);
}

TEST_F(MasklineTest, AnUnsetLimitLeavesItsReciprocalInTheAlternateSubset)
{
    line->maskStorePoint(0, mask::kNone, kUpper);
    EXPECT_EQ(y(kUpper, 0), kNull);
    EXPECT_EQ(y(kUpper + 10, 0), static_cast<float>(1.0 / -65536));
    become(PenDocument::Amplitude);
    line->maskStorePoint(0, mask::kNone, kUpper);
    EXPECT_EQ(y(kUpper + 10, 0), 65536);
}

TEST_F(MasklineTest, ALimitOfZeroHasNoPlaceInTheAdmittanceView)
{
    line->maskStorePoint(40000, 0, kLower);
    EXPECT_EQ(y(kLower, 0), 0);
    EXPECT_EQ(y(kLower + 10, 0), kNull);
}

TEST_F(MasklineTest, FrequenciesAreWholeHertzTiesToEven)
{
    const std::pair<const char*, float> cases[] = {{"1000.4", 1000}, {"1000.5", 1000}, {"1001.5", 1002},  {"4k7", 4700},
                                                   {"40,5k", 40500}, {"1.5E3", 1500},  {"1e3", 1000},     {"", 0},
                                                   {"k", 0},         {"1E", 0},        {"3G", 2147483646}};
    for (const auto& [text, hertz] : cases) {
        line->storeTexts(QLatin1String(text), u"5"_s, kUpper);
        EXPECT_EQ(x(kUpper, 0), hertz) << text;
    }
}

TEST_F(MasklineTest, AValueThatIsEmptyOrNoNumberUnsetsThePoint)
{
    const std::pair<const char*, float> cases[] = {{"12.5", 12.5F},  {"12,5", 12.5F}, {"1k2", 1200}, {"-3", -3},
                                                   {"2E-3", 0.002F}, {"", kNull},     {" ", kNull},  {"-", kNull},
                                                   {"E", kNull},     {"1E2E3", kNull}};
    for (const auto& [text, value] : cases) {
        line->storeTexts(u"1000"_s, QLatin1String(text), kUpper);
        EXPECT_EQ(y(kUpper, 0), value) << text;
        EXPECT_EQ(x(kUpper, 0), 1000) << text;
    }
}

TEST_F(MasklineTest, ShiftingMovesSetPointsAndSkipsTheOthers)
{
    line->maskStorePoint(1000, 8, kUpper);
    line->maskStepUpper(2);
    line->maskStorePoint(2000, 4, kUpper);
    document->peGraph().setPoint(kUpper, 24, 3000, 5);
    document->setModified(false);
    line->maskShift(kUpper, 12);
    EXPECT_EQ(y(kUpper, 0), 20);
    EXPECT_EQ(y(kUpper + 10, 0), 0.05F);
    EXPECT_EQ(x(kUpper, 0), 1000);
    EXPECT_EQ(y(kUpper, 1), kNull);
    EXPECT_EQ(y(kUpper, 2), 16);
    EXPECT_EQ(y(kUpper, 24), 5) << "behind the mask";
    EXPECT_TRUE(document->gbfModified());
    line->maskShift(kUpper, 0);
    EXPECT_EQ(y(kUpper, 0), 20);
}

TEST_F(MasklineTest, ClearingKeepsTheFirstPointsAndTheRestOfTheLowerAlternate)
{
    GraphModel& graph = document->peGraph();
    for (const int pen : {kUpper, kLower}) {
        for (int point : {0, 23, 24, 1023}) {
            for (int subset = pen; subset < 40; subset += 10)
                graph.setPoint(subset, point, 1000, 5);
        }
    }
    line->maskClear();
    for (const int subset : {8, 9, 18, 19}) {
        EXPECT_EQ(y(subset, 0), 5) << subset;
        EXPECT_EQ(y(subset, 23), 5) << subset;
        EXPECT_EQ(y(subset, 24), subset == 19 ? 5 : kNull) << subset;
        EXPECT_EQ(y(subset, 1023), subset == 19 ? 5 : kNull) << subset;
    }
    for (const int subset : {28, 29, 38, 39}) {
        for (const int point : {0, 23, 24, 1023})
            EXPECT_EQ(y(subset, point), kNull) << subset << ' ' << point;
    }
}

// On and off ----------------------------------------------------------------------------------------------------------

TEST_F(MasklineTest, EnablingLocksMarksAndBeginsWithWhatThePensHeld)
{
    line->maskStepUpper(5);
    line->maskSaveIndices();
    document->peGraph().setPoint(kUpper, 3, 1000, 5);
    document->peGraph().setPoint(kUpper, 30, 2000, 5);
    document->setModified(false);
    line->enable();
    EXPECT_TRUE(line->isOn());
    EXPECT_EQ(cellText(*document, 1), "MASK");
    EXPECT_EQ(document->GetPenLock(8), 1);
    EXPECT_EQ(document->GetPenLock(9), 1);
    EXPECT_EQ(document->GetPenLock(7), 0);
    for (const int subset : {8, 9, 18, 19})
        EXPECT_EQ(lineType(subset), 1) << subset;
    EXPECT_EQ(line->index(kUpper), 0);
    EXPECT_EQ(bench.preferences.value(options::kMaskUpperIndex), 0);
    EXPECT_EQ(y(kUpper, 3), 5);
    EXPECT_EQ(y(kUpper, 30), kNull);
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(MasklineTest, DisablingUnlocksAndKeepsTheData)
{
    line->enable();
    line->maskStorePoint(1000, 5, kUpper);
    document->setModified(false);
    line->disable();
    EXPECT_FALSE(line->isOn());
    EXPECT_EQ(cellText(*document, 1), "");
    EXPECT_EQ(document->GetPenLock(8), 0);
    EXPECT_EQ(document->GetPenLock(9), 0);
    for (const int subset : {8, 9, 18, 19})
        EXPECT_EQ(lineType(subset), 12) << subset;
    EXPECT_EQ(y(kUpper, 0), 5);
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(MasklineTest, TheMaskIsSavedWithThePlotAndReadBack)
{
    line->enable();
    line->maskStorePoint(1000, 5, kUpper);
    const auto loaded = bench.document(PenDocument::Impedance);
    ASSERT_TRUE(loaded->restorePlot(document->plotBytes(), u"again"_s));
    EXPECT_TRUE(loaded->hasMasks());
    EXPECT_EQ(loaded->peGraph().YData(8, 0), 5);
    EXPECT_EQ(loaded->GetPenLock(8), 1);
}

TEST_F(MasklineTest, WhatEnablingTakesFromThePensCanBeBroughtBack)
{
    document->setCurrentPen(9);
    for (int i = 0; i < 30; ++i)
        document->AddImpedancePoint(1000 + i, 100 + i, 30, 1, i);
    {
        RecoveryJournal journal(bench.path(u"recovery"_s));
        journal.follow(*document);
        line->enable();
        ASSERT_TRUE(journal.settle());
    }
    EXPECT_EQ(y(kLower, 29), kNull);
    const RecoveryStore store(bench.path(u"recovery"_s));
    const auto pens = store.pens();
    ASSERT_EQ(pens.size(), 1U) << "only the pen that held data";
    EXPECT_EQ(pens[0].pen, 9);
    EXPECT_EQ(pens[0].points, 30);
    const auto record = store.read(pens[0]);
    ASSERT_TRUE(record);
    document->PasteLineData(0, recovery::penText(record.value()));
    EXPECT_EQ(y(0, 29), 129);
    EXPECT_EQ(y(30, 29), 30) << "with its phase";
}

TEST_F(MasklineTest, AReplacedMaskIsWholeAndOn)
{
    line->enable();
    for (int i = 0; i < mask::kPoints; ++i) {
        line->maskStorePoint(1000 + i, 5, kUpper);
        line->maskStepUpper(1);
    }
    line->replace({{{100, 10.0}, {150, {}}, {200, 20.0}}, {}});
    EXPECT_EQ(x(kUpper, 0), 100);
    EXPECT_EQ(y(kUpper, 0), 10);
    EXPECT_EQ(y(kUpper, 1), kNull);
    EXPECT_EQ(x(kUpper, 2), 200);
    EXPECT_EQ(y(kUpper + 10, 2), 0.05F);
    for (int i = 3; i < mask::kPoints; ++i)
        EXPECT_EQ(y(kUpper, i), kNull) << i;
    EXPECT_TRUE(line->isOn());
}

TEST_F(MasklineTest, NothingHappensBehindADocumentThatHasGone)
{
    document.reset();
    line->enable();
    line->disable();
    line->maskClear();
    line->maskShift(kUpper, 1);
    line->storeTexts(u"1"_s, u"2"_s, kUpper);
    line->replace({});
    EXPECT_FALSE(line->isOn());
    EXPECT_EQ(line->maskShowPoint(kUpper).value, "");
}

} // namespace
