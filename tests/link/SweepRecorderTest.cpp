// SPDX-License-Identifier: GPL-3.0-or-later
// Whose sweep it is, and what becomes of it when frames are lost.
#include "LinkFixture.h"

using frametext::numbers;

namespace {

class SweepRecorderTest : public LinkFixture
{
protected:
    void SetUp() override
    {
        setting("Prompts", "OpenSettings", 0);
        connectDevice();
        first = makeDocument(PenDocument::Impedance);
        second = makeDocument(PenDocument::Impedance);
        activate(first);
        mirror.iPointsInTest = kPoints;
        written();
    }

    static constexpr int kPoints = 4;
    static QByteArray begin(bool repeated) { return numbers('D', '0', 1, 1000, 4000, repeated ? 1 : 0); }
    static QByteArray end(bool repeated) { return numbers('E', '0', 0, 1000, 4000, repeated ? 1 : 0); }
    static QByteArray turn() { return numbers('Y', '0'); }
    static QByteArray point(int number, double ohms)
    {
        return numbers('F', '1', 1000.0 * (number + 1), ohms, 10, 1, number);
    }
    static QByteArray points(double ohms)
    {
        QByteArray all;
        for (int number = 0; number < kPoints; ++number)
            all += point(number, ohms + number);
        return all;
    }
    /// Moduli of a pen as far as they were measured.
    static std::vector<float> values(const PenDocument& document, int pen)
    {
        std::vector<float> found;
        for (int i = 0; i < kPoints && document.peGraph().YData(pen, i) != graph::kNullValue; ++i)
            found.push_back(document.peGraph().YData(pen, i));
        return found;
    }
    using Values = std::vector<float>;

    std::unique_ptr<PenDocument> first, second;
};

} // namespace

TEST_F(SweepRecorderTest, FurtherRoundsOfARunNeverGoIntoTheDocumentThatIsLookedAt)
{
    send(begin(true) + points(10) + end(true) + turn());
    activate(second);
    send(begin(true) + points(20) + end(true) + turn());
    for (int pen = 0; pen < PenDocument::kPens; ++pen)
        EXPECT_EQ(values(*second, pen), Values{}) << pen;
    EXPECT_EQ(second->gCurrentPen(), 0);
    EXPECT_FALSE(second->gbfModified());
    EXPECT_EQ(values(*first, 0), (Values{10, 11, 12, 13}));
    EXPECT_EQ(values(*first, 1), Values{}) << "a round that nobody watched is left out whole";
    activate(first);
    send(begin(true) + points(30) + end(true) + turn());
    EXPECT_EQ(values(*first, 1), (Values{30, 31, 32, 33}));
    EXPECT_EQ(values(*first, 0), (Values{10, 11, 12, 13}));
}

TEST_F(SweepRecorderTest, PointsBehindTheStopLeaveALockedPenAlone)
{
    first->LockAllPens();
    first->UpdatePenLock(0, false);
    setting("Prompts", "LockPenAfterPlot", 1);
    send(begin(true) + points(10) + end(true) + turn());
    EXPECT_EQ(first->GetPenLock(0), 1);
    send(begin(true));
    EXPECT_TRUE(written().contains(QStringLiteral("x")));
    send(points(50));
    EXPECT_EQ(values(*first, 0), (Values{10, 11, 12, 13}));
}

TEST_F(SweepRecorderTest, ASweepWhoseBeginIsLostStillErasesAndNamesThePen)
{
    first->AddImpedancePoint(1, 99, 0, 1, 3);
    first->setModified(false);
    module.recorder().expectStart(*first);
    send(point(0, 10) + point(1, 11));
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_TRUE(first->gbfModified());
    EXPECT_EQ(values(*first, 0), (Values{10, 11}));
    EXPECT_NE(first->peGraph().SubsetLabels(0), QStringLiteral("Pen 1"));
}

TEST_F(SweepRecorderTest, ALostTurnIsMadeUpForBeforeTheNextRoundErasesThePen)
{
    send(begin(true) + points(10) + end(true));
    send(begin(true) + points(20) + end(true) + turn());
    EXPECT_EQ(values(*first, 0), (Values{10, 11, 12, 13}));
    EXPECT_EQ(values(*first, 1), (Values{20, 21, 22, 23}));
    EXPECT_EQ(first->gCurrentPen(), 2);
}

TEST_F(SweepRecorderTest, TwoPointsThatBeginAnewAreANewSweepAndOneIsADamagedNumber)
{
    send(begin(true) + point(0, 10) + point(1, 11) + point(2, 12));
    send(point(0, 77));
    send(point(3, 13));
    EXPECT_EQ(values(*first, 0), (Values{10, 11, 12, 13}));
    // "E", "Y" and "D" are lost.
    send(points(20));
    EXPECT_EQ(values(*first, 0), (Values{10, 11, 12, 13}));
    EXPECT_EQ(values(*first, 1), (Values{20, 21, 22, 23}));
}

TEST_F(SweepRecorderTest, ARunEndsWithItsLink)
{
    send(begin(true) + point(0, 10));
    EXPECT_TRUE(state.gbfSweepActive);
    peer().unplug();
    settle();
    EXPECT_FALSE(state.gbfSweepActive);
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_EQ(module.recorder().documentUnderTest(), nullptr);
    EXPECT_EQ(values(*first, 0), Values{10});
}

TEST_F(SweepRecorderTest, PointsAreStoredWithoutLookingForTheActiveDocument)
{
    send(begin(false));
    const std::uint64_t before = window.active.lookUps();
    send(points(10));
    EXPECT_EQ(window.active.lookUps(), before);
    EXPECT_EQ(values(*first, 0).size(), 4U);
}

TEST_F(SweepRecorderTest, AStartBelongsToItsDocumentWhateverIsLookedAtWhenItBegins)
{
    module.recorder().expectStart(*first);
    activate(second);
    send(begin(false) + points(10));
    for (int pen = 0; pen < PenDocument::kPens; ++pen)
        EXPECT_EQ(values(*second, pen), Values{});
    EXPECT_FALSE(second->gbfModified());
}
