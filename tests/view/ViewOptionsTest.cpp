// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ViewOptions.h"

#include "document/DocumentBench.h"
#include "mask/maskline.h"
#include "view/KeyFilter.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using End = ViewOptions::End;
using Quantity = ViewOptions::Quantity;

class ViewOptionsTest : public ::testing::Test
{
protected:
    void become(PenDocument::TestType type)
    {
        document = bench.document(type);
        view = std::make_unique<ViewOptions>(*document, bench.messages);
    }
    const graph::YAxis& axis(int number)
    {
        return document->peGraph().properties().yAxes[static_cast<std::size_t>(number)];
    }
    std::pair<double, double> limits(int number) { return {axis(number).ManualMinY, axis(number).ManualMaxY}; }
    std::pair<double, double> frequencies()
    {
        return {document->peGraph().ManualMinX(), document->peGraph().ManualMaxX()};
    }
    void zoom(const graph::ZoomLimits& zoomed) { document->peGraph().userZoom(zoomed); }
    static graph::ZoomLimits decades()
    {
        graph::ZoomLimits zoomed;
        zoomed.ZoomMinX = zoomed.ZoomMinTX = 3;
        zoomed.ZoomMaxX = zoomed.ZoomMaxTX = 4;
        zoomed.ZoomMinY = 1;
        zoomed.ZoomMaxY = 2;
        zoomed.ZoomMinRY = -90;
        zoomed.ZoomMaxRY = 90;
        return zoomed;
    }

    DocumentBench bench;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);
    std::unique_ptr<ViewOptions> view = std::make_unique<ViewOptions>(*document, bench.messages);
};

using Pair = std::pair<double, double>;

// Limits --------------------------------------------------------------------------------------------------------------

TEST_F(ViewOptionsTest, AnImpedanceLimitOfZeroIsThatOfTheInstrument)
{
    EXPECT_TRUE(view->setLimit(Quantity::Main, End::Upper, u"0"_s));
    EXPECT_TRUE(view->setLimit(Quantity::Main, End::Lower, u"0"_s));
    EXPECT_EQ(limits(0), Pair(0.01, 999999.0));
}

TEST_F(ViewOptionsTest, AnAdmittanceLimitOfZeroIsTheReciprocalOfThatOfTheInstrument)
{
    view->setAlternate(true);
    const Pair before = limits(0);
    EXPECT_TRUE(view->setLimit(Quantity::Main, End::Upper, u"0"_s));
    EXPECT_TRUE(view->setLimit(Quantity::Main, End::Lower, u"0"_s));
    EXPECT_EQ(limits(1), Pair(1.0 / 999999.0, 100.0));
    EXPECT_EQ(limits(0), before) << "impedance has limits of its own";
}

TEST_F(ViewOptionsTest, LimitsAreReadWithSuffixCommaOrExponent)
{
    const std::pair<const char*, double> cases[] = {{"4k7", 4700},      {"4,7", 4.7},   {"1E3", 1000},
                                                    {"2.5E-3", 0.0025}, {"12.5", 12.5}, {"1M", 1e6}};
    for (const auto& [text, value] : cases) {
        EXPECT_TRUE(view->setLimit(Quantity::Main, End::Upper, QLatin1String(text))) << text;
        EXPECT_EQ(axis(0).ManualMaxY, value) << text;
    }
}

TEST_F(ViewOptionsTest, ATextThatIsNoLimitIsRefusedAndChangesNothing)
{
    zoom(decades());
    document->setModified(false);
    const graph::Properties before = document->peGraph().properties();
    for (const char* text : {"", "-", "E", "1E", "k", "1E2E3", "-5"}) {
        EXPECT_FALSE(view->setLimit(Quantity::Main, End::Upper, QLatin1String(text))) << text;
        EXPECT_FALSE(text[0] != '\0' && view->setFrequencyLimit(End::Upper, QLatin1String(text))) << text;
    }
    EXPECT_TRUE(document->peGraph().properties() == before) << "still zoomed as well";
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(ViewOptionsTest, ANewLimitEndsTheZoomAndForgetsStoredOnes)
{
    zoom(decades());
    ASSERT_EQ(document->zoomHistory().count(), 1);
    document->setModified(false);
    view->setLimit(Quantity::Main, End::Upper, u"5k"_s);
    EXPECT_EQ(document->zoomHistory().count(), 0);
    EXPECT_FALSE(document->peGraph().Zoomed());
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(document->peGraph().shownProperties().yAxes[0].ManualMaxY, 5000);
}

TEST_F(ViewOptionsTest, AmplitudeLimitsMayBeZeroAndNegative)
{
    become(PenDocument::Amplitude);
    view->setLimit(Quantity::Main, End::Upper, u"0"_s);
    view->setLimit(Quantity::Main, End::Lower, u"-40"_s);
    EXPECT_EQ(limits(0), Pair(-40, 0));
}

TEST_F(ViewOptionsTest, TheFullRangeIsThatOfTheQuantityOnShow)
{
    view->setWholeExtent(Quantity::Main);
    EXPECT_EQ(limits(0), Pair(0.01, 999999.0));
    view->setAlternate(true);
    view->setWholeExtent(Quantity::Main);
    EXPECT_EQ(limits(1), Pair(1.0 / 999999.0, 1.0 / 0.01));
    become(PenDocument::Amplitude);
    view->setWholeExtent(Quantity::Main);
    EXPECT_EQ(limits(0), Pair(-90, 10));
    view->setAlternate(true);
    view->setWholeExtent(Quantity::Main);
    EXPECT_EQ(limits(1), Pair(-10, 90));
    view->setWholeFrequencyRange();
    EXPECT_EQ(frequencies(), Pair(10, 50000000));
}

TEST_F(ViewOptionsTest, TheFullRangesOfReactanceAreThoseOfBothViews)
{
    become(PenDocument::Reactance);
    document->peGraph().setWorkingAxis(2);
    view->setWholeExtent(Quantity::Reactance);
    EXPECT_EQ(limits(0), Pair(-50000, 50000));
    EXPECT_EQ(limits(1), Pair(-500, 500));
    document->peGraph().setWorkingAxis(2);
    view->setWholeExtent(Quantity::Resistance);
    EXPECT_EQ(limits(2), Pair(0, 100));
    EXPECT_EQ(limits(3), Pair(0, 500000));
    EXPECT_EQ(document->peGraph().WorkingAxis(), 0);
}

TEST_F(ViewOptionsTest, ReactanceLimitsGoToTheAxisOfTheView)
{
    become(PenDocument::Reactance);
    view->setAdmittance(false);
    view->setLimit(Quantity::Reactance, End::Upper, u"7"_s);
    view->setLimit(Quantity::Resistance, End::Upper, u"8"_s);
    EXPECT_EQ(axis(0).ManualMaxY, 7);
    EXPECT_EQ(axis(3).ManualMaxY, 8);
    view->setAdmittance(true);
    view->setLimit(Quantity::Reactance, End::Upper, u"5"_s);
    view->setLimit(Quantity::Resistance, End::Upper, u"6"_s);
    EXPECT_EQ(axis(1).ManualMaxY, 5);
    EXPECT_EQ(axis(2).ManualMaxY, 6);
    EXPECT_EQ(axis(0).ManualMaxY, 7);
    EXPECT_EQ(axis(3).ManualMaxY, 8);
}

TEST_F(ViewOptionsTest, AReactanceMayBeZeroAndAResistanceGetsItsLimit)
{
    become(PenDocument::Reactance);
    view->setAdmittance(false);
    view->setLimit(Quantity::Reactance, End::Lower, u"0"_s);
    EXPECT_EQ(axis(0).ManualMinY, 0);
    view->setLimit(Quantity::Resistance, End::Upper, u"0"_s);
    EXPECT_EQ(axis(3).ManualMaxY, 500000);
}

TEST_F(ViewOptionsTest, AutomaticLimitsHoldForBothViewsOfAQuantity)
{
    become(PenDocument::Reactance);
    view->setAutomatic(Quantity::Reactance, false);
    view->setAutomatic(Quantity::Resistance, true);
    for (int number = 0; number < 4; ++number)
        EXPECT_EQ(axis(number).ManualScaleControlY, number < 2 ? 3 : 0) << number;
    EXPECT_FALSE(view->isAutomatic(Quantity::Reactance));
    EXPECT_TRUE(view->isAutomatic(Quantity::Resistance));
}

// Frequency -----------------------------------------------------------------------------------------------------------

TEST_F(ViewOptionsTest, FrequencyLimitsAreWholeHertz)
{
    EXPECT_TRUE(view->setFrequencyLimit(End::Lower, u"1k5"_s));
    EXPECT_TRUE(view->setFrequencyLimit(End::Upper, u"40000.5"_s));
    EXPECT_EQ(frequencies(), Pair(1500, 40000));
}

TEST_F(ViewOptionsTest, AnEmptyFrequencyIsThatOfTheSweep)
{
    document->UpdateTestExtents(1234, 5678);
    view->setFrequencyLimit(End::Lower, u""_s);
    view->setFrequencyLimit(End::Upper, u" "_s);
    EXPECT_EQ(frequencies().first, 1234);
    EXPECT_EQ(frequencies().second, 5678);
}

TEST_F(ViewOptionsTest, AFrequencyOfZeroIsThatOfTheInstrument)
{
    view->setFrequencyLimit(End::Lower, u"0"_s);
    view->setFrequencyLimit(End::Upper, u"0"_s);
    EXPECT_EQ(frequencies(), Pair(10, 50000000));
}

// Zoom ----------------------------------------------------------------------------------------------------------------

TEST_F(ViewOptionsTest, LimitsOfALogarithmicZoomAreExponents)
{
    zoom(decades());
    view->setFrequencyToZoom();
    EXPECT_EQ(frequencies(), Pair(1000, 10000));
    EXPECT_FALSE(view->isZoomed());
    zoom(decades());
    view->setToZoom(Quantity::Main);
    EXPECT_EQ(limits(0), Pair(10, 100));
    EXPECT_EQ(document->zoomHistory().count(), 0);
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(ViewOptionsTest, LimitsOfALinearZoomAreTakenAsTheyStand)
{
    become(PenDocument::Amplitude);
    view->setFrequencyLinear(true);
    graph::ZoomLimits zoomed = decades();
    zoomed.ZoomMinX = zoomed.ZoomMinTX = 2000;
    zoomed.ZoomMaxX = zoomed.ZoomMaxTX = 3000;
    zoomed.ZoomMinY = -30;
    zoomed.ZoomMaxY = -10;
    zoom(zoomed);
    view->setToZoom(Quantity::Main);
    EXPECT_EQ(limits(0), Pair(-30, -10));
    zoom(zoomed);
    view->setFrequencyToZoom();
    EXPECT_EQ(frequencies(), Pair(2000, 3000));
}

TEST_F(ViewOptionsTest, AtFullExtentThereIsNoZoomToTake)
{
    const Pair before = frequencies(), y = limits(0);
    view->setFrequencyToZoom();
    view->setToZoom(Quantity::Main);
    EXPECT_EQ(frequencies(), before);
    EXPECT_EQ(limits(0), y);
    EXPECT_FALSE(document->gbfModified());
}

// Pens ----------------------------------------------------------------------------------------------------------------

TEST_F(ViewOptionsTest, APenUnderAMaskIsNotUnlockedUntilTheMaskIsOff)
{
    maskline masks(*document, bench.preferences);
    masks.enable();
    for (const int pen : {8, 9}) {
        bench.messages.shown.clear();
        view->setLock(pen, false);
        ASSERT_EQ(bench.messages.shown.size(), 1U);
        EXPECT_EQ(bench.messages.shown[0].title, "Masks Enabled");
        EXPECT_EQ(bench.messages.shown[0].text, "Disable mask before unlocking pen");
        EXPECT_EQ(document->GetPenLock(pen), 1);
    }
    view->setLock(0, true);
    view->setLock(0, false);
    EXPECT_EQ(document->GetPenLock(0), 0);
    masks.disable();
    view->setLock(8, true);
    view->setLock(8, false);
    EXPECT_EQ(document->GetPenLock(8), 0);
    EXPECT_EQ(bench.messages.shown.size(), 1U);
}

TEST_F(ViewOptionsTest, ErasingAsksAndIsRefusedForALockedPen)
{
    document->AddImpedancePoint(1000, 5, 6, 1, 0);
    view->setLock(0, true);
    view->erase(0);
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].title, "Pen Locked");
    EXPECT_EQ(bench.messages.shown[0].text, "Unlock pen before data can be erased");
    view->setLock(0, false);
    bench.messages.replies = {UserMessages::ReplyNo};
    view->erase(0);
    EXPECT_EQ(bench.messages.shown[1].title, "Erase Data");
    EXPECT_EQ(bench.messages.shown[1].text, "Delete pen 1");
    EXPECT_TRUE(document->pens().hasData(0));
    document->setPenName(0, u"Mine"_s);
    bench.messages.replies = {UserMessages::ReplyYes};
    view->erase(0);
    EXPECT_FALSE(document->pens().hasData(0));
    EXPECT_EQ(document->pens().name(0), "Pen 1");
}

TEST_F(ViewOptionsTest, ErasingAllLeavesLockedPens)
{
    for (const int pen : {0, 1}) {
        document->setCurrentPen(pen);
        document->AddImpedancePoint(1000, 5, 6, 1, 0);
        document->setPenName(pen, u"Mine"_s);
    }
    view->setLock(1, true);
    bench.messages.replies = {UserMessages::ReplyNo};
    view->eraseAll();
    EXPECT_EQ(bench.messages.shown[0].title, "Erase Data");
    EXPECT_EQ(bench.messages.shown[0].text, "Erase all?");
    EXPECT_TRUE(document->pens().hasData(0));
    bench.messages.replies = {UserMessages::ReplyYes};
    view->eraseAll();
    EXPECT_FALSE(document->pens().hasData(0));
    EXPECT_TRUE(document->pens().hasData(1));
    EXPECT_EQ(document->pens().name(1), "Mine");
}

TEST_F(ViewOptionsTest, ADocumentClosedUnderTheQuestionIsLeftAlone)
{
    document->AddImpedancePoint(1000, 5, 6, 1, 0);
    bench.messages.replies = {UserMessages::ReplyYes};
    bench.messages.whileShowing = [this] { document.reset(); };
    view->erase(0);
    view->eraseAll();
    view->setLimit(Quantity::Main, End::Upper, u"5"_s);
    view->setFrequencyLimit(End::Upper, u"5"_s);
    view->setWholeExtent(Quantity::Main);
    view->setAlternate(true);
    view->SetNewFont(u"x"_s);
    EXPECT_EQ(view->document(), nullptr);
}

TEST_F(ViewOptionsTest, TestInformationIsTheOriginOfThePlot)
{
    document->peGraph().setTXAxisLabel(u"MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026"_s);
    view->setInformation(true);
    EXPECT_EQ(document->peGraph().SubTitle(), "MarrowickGraph V1.28.0  T46 V1.2.3 : 21/11/2026");
    view->setInformation(false);
    EXPECT_EQ(document->peGraph().SubTitle(), "");
    document->peGraph().setTXAxisLabel(QString());
    view->setInformation(true);
    EXPECT_FALSE(document->peGraph().SubTitle().isEmpty()) << "of a graph that was never saved";
}

// Keys ----------------------------------------------------------------------------------------------------------------

TEST(KeyFilterTest, EachBoxTakesItsCharacters)
{
    const QString typed = u"0123456789-.,+ cCeEgGkKmMtTuUnpaxZ"_s;
    EXPECT_EQ(keyfilter::filtered(typed, keyfilter::large), "0123456789-..cCEgGkKMMtT");
    EXPECT_EQ(keyfilter::filtered(typed, keyfilter::small), "0123456789-..cCEgGkKmmtTuu");
    EXPECT_EQ(keyfilter::filtered(typed, keyfilter::mask), "0123456789-..cCEEgGkKMMtTuu");
    EXPECT_EQ(keyfilter::filtered(typed, keyfilter::offset), "0123456789-..");
}

} // namespace
