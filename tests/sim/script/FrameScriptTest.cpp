// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/script/FrameScript.h"

#include "tests/sim/ReadFrame.h"

namespace {

/// An instrument reduced to what a script sees of it.
class Host : public sim::ScriptHost
{
public:
    const sim::InstrumentState& state() const override { return m_state; }
    const ferrolex::Measured& measured() const override { return m_measured; }
    void send(const sim::Frame& frame) override { log += readFrame(frame).code; }
    bool execute(std::string_view command) override
    {
        log += '<' + std::string(command) + '>';
        return command != "dance";
    }
    void finished(const Outcome& outcome) override { log += outcome ? "." : "!"; }

    std::string log;

private:
    sim::InstrumentState m_state;
    ferrolex::Measured m_measured;
};

sim::FrameScript script(const char* text)
{
    ValueOr<sim::FrameScript> made = sim::FrameScript::fromText(text);
    EXPECT_TRUE(made.ok()) << made.sentence().toStdString();
    return made.value();
}

} // namespace

TEST(FrameScript, WaitsForAcknowledgementRunAndTimeEachForItsOwn)
{
    sim::FrameScript steps = script("U 1 graph\nsweep impedance\nwait 20\nr 0 done\n");
    Host host;
    const sim::Moment start{0};
    ASSERT_TRUE(steps.start("", host, start).ok());
    EXPECT_EQ(host.log, "U");
    steps.runEnded(true, start);
    EXPECT_EQ(host.log, "U") << "nothing ran";
    steps.acknowledged(start);
    EXPECT_EQ(host.log, "U<imptest>");
    steps.acknowledged(start);
    EXPECT_EQ(host.log, "U<imptest>") << "nothing was asked";
    steps.runEnded(true, start);
    ASSERT_TRUE(steps.nextDue());
    EXPECT_EQ(*steps.nextDue(), start + std::chrono::milliseconds(20));
    steps.advance(start + std::chrono::milliseconds(19));
    EXPECT_EQ(host.log, "U<imptest>");
    steps.advance(start + std::chrono::milliseconds(20));
    EXPECT_EQ(host.log, "U<imptest>r.");
}

TEST(FrameScript, EndsWithAStoppedSweepAndAtAnUnknownCommand)
{
    Host host;
    sim::FrameScript swept = script("sweep amplitude\nr 0 never\n");
    ASSERT_TRUE(swept.start("", host, sim::Moment(0)).ok());
    swept.runEnded(false, sim::Moment(0));
    EXPECT_EQ(host.log, "<amptest>.");
    host.log.clear();
    sim::FrameScript dance = script("> dance\nr 0 never\n");
    ASSERT_TRUE(dance.start("", host, sim::Moment(0)).ok());
    EXPECT_EQ(host.log, "<dance>!");
}

TEST(FrameScript, LinesThatAreNoStepsAreNamed)
{
    for (const char* text : {"\n\nUU 1 x\n", "\n\nwait long\n", "\n\nsweep sideways\n", "\n\n>\n",
                             "\n\nm 1 2 3 4 5 6 7\n", "\n\nq zero\n", "\n\nU\n", "\n\nwait -1\n"}) {
        const ValueOr<sim::FrameScript> script = sim::FrameScript::fromText(text);
        ASSERT_FALSE(script.ok()) << text;
        EXPECT_EQ(script.sentence(),
                  QString("Line 3 of the script frames is neither a frame, a command (> ...), a sweep nor a wait."));
    }
}
