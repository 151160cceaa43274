// SPDX-License-Identifier: GPL-3.0-or-later
// "marrowick sweep" judged by the instrument: what it was told when the sweep began and what it swept, against what was
// asked; and the plot file against the closed form of the part. However late, doubled or cut the answers come.
#include "e2e/EndToEnd.h"
#include "e2e/SweepJudge.h"

#include <QFileInfo>

#include <gmock/gmock.h>

using namespace e2e;
using namespace std::chrono_literals;
using played::Manners;

namespace {

class JudgedSweepTest : public EndToEndTest
{
protected:
    void sweep(const AskedSweep& asked, const Manners& manners = {}, const played::Traits& traits = {})
    {
        const played::ScriptedInstrument instrument(freshSerial(), traits, manners);
        ASSERT_EQ(instrument.problem().toStdString(), "");
        const played::Settings before = instrument.settings();
        const QString plot = path(QStringLiteral("sweep-%1.gzd").arg(++m_sweeps));
        const Ended ended =
            runProgram(QStringLiteral("marrowick"),
                       QStringList{QStringLiteral("sweep"), QStringLiteral("--device"), instrument.serial(),
                                   QStringLiteral("--output"), plot, QStringLiteral("--link-log"),
                                   path(QStringLiteral("link-%1.log").arg(m_sweeps))} +
                           asked.options());
        EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
        judgeSwept(asked, before, instrument.sweeps());
        judgePlot(asked, instrument.part(), plot);
        if (HasFailure())
            instrument.saveLog(path(QStringLiteral("instrument-%1.log").arg(m_sweeps)));
    }

    int m_sweeps = 0;
};

AskedSweep with(const std::function<void(AskedSweep&)>& change)
{
    AskedSweep asked;
    change(asked);
    return asked;
}

struct Case
{
    const char* name;
    AskedSweep asked;
};

const Case kSweeps[] = {
    {"Up", {}},
    {"Down", with([](AskedSweep& s) { s.direction = QStringLiteral("down"); })},
    {"Alternate", with([](AskedSweep& s) { s.direction = QStringLiteral("alternate"); })},
    {"LinearDown", with([](AskedSweep& s) {
         s.linear = true;
         s.direction = QStringLiteral("down");
     })},
    {"WideLogarithmic", with([](AskedSweep& s) {
         s.from = 100;
         s.to = 10e6;
         s.points = 1024;
     })},
    {"Attenuated", with([](AskedSweep& s) { s.attenuation = 20; })},
    {"Amplitude", with([](AskedSweep& s) {
         s.type = QStringLiteral("amplitude");
         s.attenuation = 30;
     })},
    {"Reactance", with([](AskedSweep& s) {
         s.type = QStringLiteral("reactance");
         s.phase = false; // measured all the same: it is needed
     })},
    {"WithoutPhase", with([](AskedSweep& s) { s.phase = false; })},
    {"ThreeInTurn", with([](AskedSweep& s) {
         s.repeat = 3;
         s.points = 31;
         s.direction = QStringLiteral("down");
     })},
    {"WithAPeriod", with([](AskedSweep& s) {
         s.period = 12;
         s.points = 7;
     })},
};

std::ostream& operator<<(std::ostream& out, const Case& shown)
{
    return out << shown.name;
}

std::string nameOf(const ::testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

class EachSweep : public JudgedSweepTest, public ::testing::WithParamInterface<Case>
{};

/// The sweep whose every option differs from what a fresh host would send.
AskedSweep farFromDefaults()
{
    return with([](AskedSweep& s) {
        s.direction = QStringLiteral("down");
        s.attenuation = 20;
        s.linear = true;
        s.points = 40;
        s.period = 1;
    });
}

class EachDelay : public JudgedSweepTest, public ::testing::WithParamInterface<int>
{};

class EachPiece : public JudgedSweepTest, public ::testing::WithParamInterface<int>
{};

} // namespace

TEST_P(EachSweep, IsSweptAsAskedAndStoredAsMeasured)
{
    sweep(GetParam().asked);
}

INSTANTIATE_TEST_SUITE_P(JudgedSweep, EachSweep, ::testing::ValuesIn(kSweeps), nameOf);

TEST_P(EachSweep, IsSweptAsAskedWhenTheSecondAnswerComesLate)
{
    Manners late;
    late.enquiryDelays = {0ms, 200ms};
    sweep(GetParam().asked, late);
}

TEST_P(EachDelay, OfTheSecondAnswerChangesNothing)
{
    Manners late;
    late.enquiryDelays = {0ms, std::chrono::milliseconds(GetParam())};
    sweep(farFromDefaults(), late);
}

TEST_P(EachDelay, OfBothAnswersChangesNothing)
{
    Manners late;
    late.enquiryDelays = {std::chrono::milliseconds(GetParam()), std::chrono::milliseconds(GetParam())};
    sweep(farFromDefaults(), late);
}

TEST_P(EachDelay, OfTheSecondAnswerChangesNothingWhereAnswersComeTwice)
{
    Manners late;
    late.copies = 2;
    late.enquiryDelays = {0ms, std::chrono::milliseconds(GetParam())};
    sweep(farFromDefaults(), late);
}

INSTANTIATE_TEST_SUITE_P(JudgedSweep, EachDelay, ::testing::Values(100, 250, 400));

TEST_P(EachPiece, InWhichAnswersComeGivesTheSameSweep)
{
    Manners cut;
    cut.piece = static_cast<std::size_t>(GetParam());
    cut.pause = GetParam() < 8 ? 20us : 1000us;
    sweep(farFromDefaults(), cut);
}

INSTANTIATE_TEST_SUITE_P(JudgedSweep, EachPiece, ::testing::Values(1, 7, 64));

TEST_F(JudgedSweepTest, ACompleteSweepWhoseEndIsLostIsComplete)
{
    Manners endless;
    endless.leftOut = "E";
    sweep(farFromDefaults(), endless);
}

TEST_F(JudgedSweepTest, AnswersThatComeTwiceChangeNothing)
{
    Manners twice;
    twice.copies = 2;
    sweep(farFromDefaults(), twice);
}

TEST_F(JudgedSweepTest, AnInstrumentThatIsSlowInEverythingIsWaitedFor)
{
    Manners slow;
    slow.delay = 40ms;
    slow.enquiryDelays = {100ms, 300ms};
    sweep(farFromDefaults(), slow);
}

TEST_F(JudgedSweepTest, AnAnswerInAnotherOrderIsAnAnswerToo)
{
    Manners turned;
    turned.order = Manners::Order::XFirst;
    turned.enquiryDelays = {0ms, 150ms};
    sweep(farFromDefaults(), turned);
}

TEST_F(JudgedSweepTest, WithOneAnswerLostTheSweepIsTheOneAskedFor)
{
    played::ScriptedInstrument instrument(freshSerial());
    Manners deaf;
    deaf.silent = true;
    // The second enquiry is taken and its answer never comes.
    instrument.afterFrame('X', 1, [&] { instrument.setManners(deaf); });
    instrument.onCommand("startfreq", 3, [&] { instrument.setManners({}); });
    const AskedSweep asked = farFromDefaults();
    const QString plot = path(QStringLiteral("sweep.gzd"));
    const Ended ended = runProgram(QStringLiteral("marrowick"),
                                   QStringList{QStringLiteral("sweep"), QStringLiteral("--device"), instrument.serial(),
                                               QStringLiteral("--output"), plot, QStringLiteral("--link-log"),
                                               path(QStringLiteral("link.log"))} +
                                       asked.options());
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    judgeSwept(asked, played::Settings(), instrument.sweeps());
    judgePlot(asked, instrument.part(), plot);
    if (HasFailure())
        instrument.saveLog(path(QStringLiteral("instrument.log")));
}

TEST_F(JudgedSweepTest, ASamplingInstrumentKeepsItsCountOfSamples)
{
    played::Traits sampling;
    sampling.sampling = true;
    sampling.settings.attenuation = 0;
    sampling.settings.samples = 64;
    sweep({}, {}, sampling);
}

TEST_F(JudgedSweepTest, AnInstrumentThatSweepsSomethingElseIsToldOn)
{
    // Somebody turns the range at the instrument between the commands and the start.
    played::ScriptedInstrument instrument(freshSerial());
    instrument.onStart([](played::Settings& settings) { settings.end = 43000; });
    const QString csv = path(QStringLiteral("sweep.csv"));
    const Ended ended =
        runProgram(QStringLiteral("marrowick"), QStringList{QStringLiteral("sweep"), QStringLiteral("--device"),
                                                            instrument.serial(), QStringLiteral("--csv"), csv} +
                                                    farFromDefaults().options());
    EXPECT_EQ(ended.exitCode, 7);
    EXPECT_EQ(ended.errors.toStdString(), "marrowick: The instrument swept 38 kHz to 43 kHz, not 38 kHz to 42 kHz.\n");
    EXPECT_GT(QFileInfo(csv).size(), 0) << "what was measured is kept";
}

TEST_F(JudgedSweepTest, ASweepThatIsGivenUpIsStoppedInTheInstrument)
{
    Manners unheard;
    unheard.leftOut = "DEFY";
    unheard.pointTime = 100ms;
    const played::ScriptedInstrument instrument(freshSerial(), {}, unheard);
    const Ended ended = runProgram(QStringLiteral("marrowick"),
                                   {QStringLiteral("sweep"), QStringLiteral("--device"), instrument.serial()});
    EXPECT_EQ(ended.exitCode, 4) << ended.errors.toStdString();
    const std::vector<std::string> commands = instrument.commands();
    ASSERT_FALSE(commands.empty());
    EXPECT_EQ(commands.back(), "y") << instrument.logText();
}

TEST_F(JudgedSweepTest, AnInstrumentThatSaysItIsAnotherIsNotMeasured)
{
    const played::ScriptedInstrument instrument(freshSerial());
    const QString other = freshSerial();
    ASSERT_TRUE(QFile::link(instrument.devicePath(), QFileInfo(instrument.entryPath()).absolutePath() + u'/' + other));
    const Ended ended =
        runProgram(QStringLiteral("marrowick"), {QStringLiteral("sweep"), QStringLiteral("--device"), other});
    QFile::remove(QFileInfo(instrument.entryPath()).absolutePath() + u'/' + other);
    EXPECT_EQ(ended.exitCode, 2) << ended.errors.toStdString();
    EXPECT_TRUE(ended.errors.contains(instrument.serial().toLatin1())) << ended.errors.toStdString();
    EXPECT_TRUE(instrument.sweeps().empty());
}
