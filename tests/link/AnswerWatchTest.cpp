// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/AnswerWatch.h"

#include "instrument/InstrumentEvents.h"

#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class AnswerWatchTest : public ::testing::Test
{
protected:
    AnswerWatchTest()
    {
        QObject::connect(&watch, &AnswerWatch::completed, &watch, [this] { ++completions; });
    }
    void answer()
    {
        Q_EMIT events.changed(MirrorPart::SerialNumber);
        Q_EMIT events.stateComplete();
    }

    InstrumentEvents events;
    AnswerWatch watch{events};
    int completions = 0;
};

} // namespace

TEST_F(AnswerWatchTest, WithoutAnInstrumentNothingIsAwaited)
{
    EXPECT_TRUE(watch.complete());
    EXPECT_FALSE(watch.late());
    answer();
    EXPECT_TRUE(watch.complete());
    EXPECT_EQ(completions, 0);
}

TEST_F(AnswerWatchTest, BothAnswersAreAwaitedAndTheSecondIsLate)
{
    Q_EMIT events.connected();
    EXPECT_FALSE(watch.complete());
    EXPECT_FALSE(watch.late());
    answer();
    EXPECT_FALSE(watch.complete());
    EXPECT_TRUE(watch.late());
    answer();
    EXPECT_TRUE(watch.complete());
    EXPECT_FALSE(watch.late());
    EXPECT_EQ(completions, 1);
}

TEST_F(AnswerWatchTest, ASecondOfQuietBehindTheLastFrameOfStateEndsTheWait)
{
    Q_EMIT events.connected();
    answer();
    QElapsedTimer sinceFrame;
    QTest::qWait(600);
    EXPECT_FALSE(watch.complete());
    Q_EMIT events.changed(MirrorPart::Attenuation);
    sinceFrame.start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return watch.complete(); }));
    EXPECT_GE(sinceFrame.elapsed(), AnswerWatch::kQuiet - 1);
    EXPECT_EQ(completions, 1);
    answer();
    EXPECT_EQ(completions, 1);
}

TEST_F(AnswerWatchTest, LevelsAndPointsAreNoFramesOfState)
{
    Q_EMIT events.connected();
    QElapsedTimer time;
    time.start();
    ASSERT_TRUE(QTest::qWaitFor([this] {
        Q_EMIT events.levelMeasured(1, 2, true);
        Q_EMIT events.pointStored(nullptr, 3);
        return watch.complete();
    }));
    EXPECT_LT(time.elapsed(), AnswerWatch::kLongest);
}

TEST_F(AnswerWatchTest, AnInstrumentThatNeverFallsQuietIsNotWaitedForForever)
{
    Q_EMIT events.connected();
    QElapsedTimer time;
    time.start();
    const bool complete = QTest::qWaitFor(
        [this] {
            Q_EMIT events.changed(MirrorPart::Points);
            return watch.complete();
        },
        AnswerWatch::kLongest + 5000);
    EXPECT_TRUE(complete);
    EXPECT_GE(time.elapsed(), AnswerWatch::kLongest);
}

TEST_F(AnswerWatchTest, ALostLinkEndsTheWaitAndAnotherInstrumentBeginsItAnew)
{
    Q_EMIT events.connected();
    answer();
    Q_EMIT events.lost();
    EXPECT_TRUE(watch.complete());
    EXPECT_FALSE(watch.late());
    Q_EMIT events.connected();
    EXPECT_FALSE(watch.complete());
    EXPECT_FALSE(watch.late());
    Q_EMIT events.connected(); // another one was opened without the first having been unplugged
    answer();
    EXPECT_FALSE(watch.complete());
    answer();
    EXPECT_TRUE(watch.complete());
}
