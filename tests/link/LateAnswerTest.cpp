// SPDX-License-Identifier: GPL-3.0-or-later
// The state is asked for twice: between the two answers the user may already be at work, and before the first one
// nothing that the mirror holds is the instrument's.
#include "LinkFixture.h"

#include <QTest>

using frametext::numbers;
using frametext::text;

namespace {

class LateAnswer : public LinkFixture
{
protected:
    void SetUp() override
    {
        module.setSettingsDialog(&dialog);
        module.answers().setQuiet(AnswerWatch::kQuiet);
        setting("S1", "iNumPoints", 256);
        setting("S1", "dblStartFrequency", 2000);
        connectDevice();
    }

    /// What the instrument has before the host has given it anything.
    static QByteArray answer()
    {
        return text('V', '0', "S1") + numbers('A', '1', 0, 30, 10, 0, 3) + numbers('K', '2', 50, 7000, 9000) +
               numbers('s', '0', 0, 7000, 9000) + numbers('X', '2', 7000, 9000, 33, 50, 1);
    }
    /// As the settings dialog does it.
    void userSets()
    {
        mirror.dblStartFrequency = 38000;
        mirror.dblEndFrequency = 42000;
        mirror.dblIdleFrequency = 0;
        mirror.iAttenuationCode = 2;
        mirror.iSweepMode = 1;
        mirror.iNumPoints = 500;
        mirror.bfPhaseOn = false;
    }
    void expectTheUsers()
    {
        EXPECT_EQ(mirror.dblStartFrequency, 38000);
        EXPECT_EQ(mirror.dblEndFrequency, 42000);
        EXPECT_EQ(mirror.dblIdleFrequency, 0);
        EXPECT_EQ(mirror.iAttenuationCode, 2);
        EXPECT_EQ(mirror.iSweepMode, 1);
        EXPECT_EQ(mirror.iNumPoints, 500);
        EXPECT_FALSE(mirror.bfPhaseOn);
    }
};

} // namespace

TEST_F(LateAnswer, TheFirstAnswerIsGivenTheStoredSettingsOnce)
{
    send(answer());
    EXPECT_TRUE(state.gbfDeviceReady);
    EXPECT_EQ(mirror.dblStartFrequency, 2000);
    EXPECT_EQ(mirror.dblEndFrequency, 9000);
    EXPECT_TRUE(written().contains(QStringLiteral("points 256")));
    send(answer());
    EXPECT_EQ(written(), QStringList());
    EXPECT_EQ(mirror.dblStartFrequency, 2000);
}

TEST_F(LateAnswer, WhatTheUserSetMeanwhileWinsOverTheSecond)
{
    send(answer());
    userSets();
    written();
    send(answer());
    expectTheUsers();
    EXPECT_EQ(written(), QStringList());
}

TEST_F(LateAnswer, WhatTheInstrumentTellsBehindTheSecondCountsAgain)
{
    send(answer() + answer());
    send(numbers('s', '0', 0, 100, 200) + numbers('A', '1', 0, 30, 10, 3, 3) + numbers('K', '0', 0, 100, 200));
    EXPECT_EQ(mirror.dblStartFrequency, 100);
    EXPECT_EQ(mirror.dblIdleFrequency, 0);
    EXPECT_EQ(mirror.iAttenuationCode, 3);
}

TEST_F(LateAnswer, ACopyOfAnAnswerTakesNoStoredSettingBack)
{
    setting("S1", "iSweepMode", 1);
    const QByteArray complete = numbers('X', '2', 7000, 9000, 33, 50, 1);
    // Ahead of the serial number, and each twice: the instrument is given its own settings by the third.
    send(complete + complete + text('V', '0', "S1"));
    send(complete);
    ASSERT_EQ(mirror.iSweepMode, 1);
    send(complete);
    EXPECT_EQ(mirror.iSweepMode, 1);
    EXPECT_EQ(mirror.dblStartFrequency, 2000);
}

TEST_F(LateAnswer, AReportThatGetsLostLeavesWhatWasCommanded)
{
    setting("S1", "dblEndFrequency", 5000);
    send(answer() + answer());
    // Behind "startfreq"; the one behind "endfreq" does not come.
    send(numbers('s', '0', 0, 2000, 9000));
    EXPECT_EQ(mirror.dblEndFrequency, 5000);
}

TEST_F(LateAnswer, WhatTheInstrumentMakesOfACommandIsTaken)
{
    setting("S1", "dblEndFrequency", 5000);
    send(answer() + answer());
    send(numbers('s', '0', 0, 2000, 9000) + numbers('s', '0', 0, 2000, 4500));
    EXPECT_EQ(mirror.dblEndFrequency, 4500);
    // From here on the old value is a report like any other.
    send(numbers('s', '0', 0, 2000, 9000));
    EXPECT_EQ(mirror.dblEndFrequency, 9000);
}

TEST_F(LateAnswer, NothingIsStoredUnderASerialNumberBeforeItsAnswerIsComplete)
{
    send(text('V', '0', "S1"));
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("256"));
    EXPECT_EQ(saved(QStringLiteral("S1"), "dblEndFrequency"), QStringLiteral("(none)"));
    send(answer());
    mirror.iNumPoints = 77;
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("77"));
}

TEST_F(LateAnswer, AnInstrumentWithoutASerialNumberIsGivenItsSettingsToo)
{
    send(text('V', '0', "") + numbers('X', '2', 7000, 9000, 33, 50, 1));
    EXPECT_TRUE(state.gbfDeviceReady);
    EXPECT_TRUE(written().contains(QStringLiteral("startfreq 7000")));
}

TEST_F(LateAnswer, AStartWaitsForTheSecondAndSendsWhatTheUserSet)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    send(answer());
    userSets();
    written();
    int rounds = 0;
    window.onProcessEvents = [&] {
        // Long behind the told rounds, and directly behind it what the instrument was given by the first.
        if (++rounds == 3 * TestRun::kAnswerRounds)
            peer().send(answer() + numbers('A', '1', 0, 30, 10, 0, 3) + numbers('K', '2', 50, 2000, 9000) +
                        numbers('s', '0', 0, 2000, 9000));
        EXPECT_FALSE(written().contains(QStringLiteral("imptest")));
        if (rounds > 3 * TestRun::kAnswerRounds)
            QCoreApplication::processEvents();
    };
    run.mnuTestStart_Click();
    EXPECT_GT(rounds, 3 * TestRun::kAnswerRounds);
    EXPECT_EQ(
        written(),
        QString("idlefreq 0|points 500|atten 2|repeat 0|sweepmode 1|period 0|phase 0|setpin 11|y|imptest").split(u'|'));
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("500"));
}

TEST_F(LateAnswer, AStartAheadOfTheStoredSettingsSweepsByThem)
{
    setting("S1", "iAttenuationCode", 2);
    setting("S1", "iSweepMode", 1);
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    // The state comes ahead of the serial number it belongs to: whose settings count is known by the second answer.
    const QByteArray range = numbers('A', '1', 0, 30, 10, 0, 3);
    const QByteArray complete = numbers('X', '2', 7000, 9000, 33, 50, 1);
    send(range + complete + text('V', '0', "S1"));
    written();
    int rounds = 0;
    window.onProcessEvents = [&] {
        if (++rounds == 2)
            peer().send(range + complete);
        if (rounds > 2)
            QCoreApplication::processEvents();
    };
    run.mnuTestStart_Click();
    const QStringList commands = written();
    EXPECT_EQ(
        commands.mid(commands.lastIndexOf(QStringLiteral("idlefreq 50"))).join(u'|'),
        QStringLiteral("idlefreq 50|points 256|atten 2|repeat 0|sweepmode 1|period 0|phase 1|setpin 11|y|imptest"));
    EXPECT_EQ(saved(QStringLiteral("S1"), "iAttenuationCode"), QStringLiteral("2"));
}

TEST_F(LateAnswer, ANameThatComesBehindBothStatesBringsItsStoredSettings)
{
    send(numbers('X', '2', 7000, 9000, 33, 50, 1));
    module.DeviceSaveSettings();
    send(numbers('X', '2', 7000, 9000, 33, 50, 1) + text('V', '0', "S1"));
    EXPECT_EQ(mirror.iNumPoints, 256);
    EXPECT_EQ(mirror.dblStartFrequency, 2000);
    EXPECT_TRUE(written().contains(QStringLiteral("points 256")));
    // The same name once more is no news.
    mirror.iNumPoints = 300;
    send(text('V', '0', "S1"));
    EXPECT_EQ(mirror.iNumPoints, 300);
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("300"));
}

TEST_F(LateAnswer, SettingsOfNobodyAreNotStoredUnderANameThatComesTooLate)
{
    const QByteArray complete = numbers('X', '2', 7000, 9000, 33, 50, 1);
    send(complete + complete);
    ASSERT_TRUE(QTest::qWaitFor([this] { return module.answers().complete(); }));
    mirror.iNumPoints = 100;
    send(text('V', '0', "S1"));
    EXPECT_EQ(mirror.iNumPoints, 100);
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("256"));
}

TEST_F(LateAnswer, ADamagedReportLeavesTheSettingAsItIs)
{
    setting("S1", "iAttenuationCode", 2);
    send(answer() + answer());
    ASSERT_EQ(mirror.iAttenuationCode, 2);
    const auto damaged = [](QByteArray frame, int column) { return frame.replace(column - 1, 1, "z"); };
    // In front of the number and inside it: either reads as another one.
    send(damaged(numbers('A', '1', 0, 30, 10, 1, 3), 49));
    EXPECT_EQ(mirror.iAttenuationCode, 2);
    send(damaged(numbers('s', '0', 0, 3000, 8000), 30) + damaged(numbers('K', '2', 60, 3000, 8000), 17));
    EXPECT_EQ(mirror.dblIdleFrequency, 50);
    EXPECT_EQ(mirror.dblEndFrequency, 8000);
    send(numbers('A', '1', 0, 30, 10, 1, 3));
    EXPECT_EQ(mirror.iAttenuationCode, 1);
}

TEST_F(LateAnswer, TheNextConnectionBeginsAnew)
{
    send(answer() + answer());
    peer().unplug();
    settle();
    plug();
    connectDevice(1);
    peer(1).send(answer());
    settle();
    EXPECT_TRUE(written(1).contains(QStringLiteral("points 256")));
}
