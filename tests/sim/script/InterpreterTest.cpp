// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/script/Interpreter.h"

#include "controls/ferrolex/DeviceRanges.h"
#include "tests/sim/script/PlayedHost.h"

#include <gtest/gtest.h>

namespace {

struct Ran
{
    std::string log;
    std::string failure;
    bool ended;
};

Ran run(const QByteArray& script)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    const bool ended = host.run(interpreter, script);
    return {host.text(), host.failure, ended};
}

} // namespace

TEST(Interpreter, WaitsForAnswerSweepAndTimeEachForItsOwn)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    const sim::Moment start{0};
    ASSERT_TRUE(
        interpreter.start("new impedance graph \"G\"\nsweep impedance\nwait 20ms\npanel \"done\"\n", host, start));
    EXPECT_EQ(host.text(), "U 1 G\n");
    interpreter.runEnded(true, start);
    EXPECT_EQ(host.text(), "U 1 G\n") << "nothing ran";
    interpreter.acknowledged(start);
    EXPECT_EQ(host.text(), "U 1 G\n> imptest\n");
    interpreter.acknowledged(start);
    EXPECT_EQ(host.log.size(), 2u) << "nothing was asked";
    interpreter.runEnded(true, start);
    ASSERT_TRUE(interpreter.nextDue());
    EXPECT_EQ(*interpreter.nextDue(), start + std::chrono::milliseconds(20));
    interpreter.advance(start + std::chrono::milliseconds(19));
    EXPECT_EQ(host.log.size(), 2u);
    interpreter.advance(start + std::chrono::milliseconds(20));
    EXPECT_EQ(host.log.back(), "r 0 done");
    EXPECT_TRUE(host.hasFinished);
    EXPECT_EQ(host.failure, "");
}

TEST(Interpreter, AMaskTestIsFollowedBySomethingAnsweredThatWritesNothing)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    ASSERT_TRUE(interpreter.start("load \"m.gzd\"\ntest mask of pen 3, tell both, stop on fail\npanel \"on\"\n", host,
                                  sim::Moment(0)));
    interpreter.acknowledged(sim::Moment(0));
    EXPECT_EQ(host.text(), "g 0 m.gzd\nq 2 1 1 1 0 0\ni 9 -\n");
    interpreter.acknowledged(sim::Moment(0));
    EXPECT_EQ(host.log.back(), "r 0 on");
}

TEST(Interpreter, ReckonsAndBranches)
{
    const char* script =
        "let a = 2 + 3 * 4 - -1\n"
        "let b = (2 + 3) * 4 mod 7\n"
        "let c = \"x\"\n"
        "panel \"{a} {b} {c}{7:3} {-2.5:2} {{}} \"\"q\"\" {round(2.5)} {max(1, min(5, 3))} {sqrt(16)}\"\n"
        "if a = 15 and not b = 7 or c = \"y\"\n  panel \"yes\"\nelse\n  panel \"no\"\nend if\n"
        "if a < 3\n  panel \"less\"\nelse if a > 14 then\n  panel \"more\"\nelse\n  panel \"between\"\nend\n"
        "if c <> \"x\"\n  panel \"other\"\nend\n";
    const Ran ran = run(script);
    EXPECT_EQ(ran.log, "r 0 15 6 x007 -02.5 {} \"q\" 2 3 4\nr 0 yes\nr 0 more\n");
    EXPECT_EQ(ran.failure, "");
}

TEST(Interpreter, RunsLoopsOfEachKind)
{
    EXPECT_EQ(run("for i from 1 to 3\npanel \"{i}\"\nend\nfor i from 3 to 1 step -2\npanel \"{i}\"\nend\n"
                  "for i from 2 to 1\npanel \"never\"\nend\nfor i from 0 to 1 step 0.5\npanel \"{i}\"\nend for\n")
                  .log,
              "r 0 1\nr 0 2\nr 0 3\nr 0 3\nr 0 1\nr 0 0\nr 0 0.5\nr 0 1\n");
    EXPECT_EQ(run("repeat 2 times\npanel \"a\"\nend\nrepeat 0 times\nend\n").log, "r 0 a\nr 0 a\n");
    EXPECT_EQ(run("let n = 0\nrepeat while n < 3, at most 2 times\nlet n = n + 1\npanel \"{n}\"\nend\n").log,
              "r 0 1\nr 0 2\n");
    EXPECT_EQ(run("let n = 0\nrepeat until n = 2 at most 9 times\nlet n = n + 1\npanel \"{n}\"\nend repeat\n").log,
              "r 0 1\nr 0 2\n");
    EXPECT_EQ(run("let n = 0\nrepeat until stopped\nlet n = n + 1\nprompt \"{n}\"\nif n = 3\nleave\nend\nend\npanel "
                  "\"out\"\n")
                  .log,
              "f 0 1\nf 0 2\nf 0 3\nr 0 out\n");
    EXPECT_EQ(run("repeat 2 times\nfor i from 1 to 9\nif i = 2\nleave\nend\npanel \"{i}\"\nend\nend\n").log,
              "r 0 1\nr 0 1\n")
        << "only the inner loop is left";
}

TEST(Interpreter, CallsProceduresWithTheirValues)
{
    EXPECT_EQ(run("let base = 10\nprocedure inner with x\npanel \"{base + x}\"\nend procedure\n"
                  "procedure outer with x2, y2\ndo inner with y2\ndo inner with x2\nend\n"
                  "do outer with 1, 2\ndo outer with base, base / 4\n")
                  .log,
              "r 0 12\nr 0 11\nr 0 12.5\nr 0 20\n");
}

TEST(Interpreter, FinishEndsTheScriptFromWithinAnything)
{
    EXPECT_EQ(run("procedure p\nrepeat 3 times\npanel \"a\"\nfinish\nend\nend\ndo p\npanel \"b\"\n").log, "r 0 a\n");
}

TEST(Interpreter, ReadsBackWhatWasMeasured)
{
    EXPECT_EQ(run("new impedance graph \"a\"\nsweep impedance\n"
                  "set start frequency of smallest * 0.9\nset end frequency of largest * 1.1\n"
                  "if smallest level < 25 Ohm and largest level > 1k\npanel \"{last level}\"\nend\n"
                  "spot amplitude 10k for 2\npanel \"{last level}\"\nsave \"a\"\n")
                  .log,
              "U 1 a\n> imptest\n> startfreq 35100\n> endfreq 45100.00000000001\nr 0 50\n> ampspot 10000\n> y\nr 0 "
              "50\nb 0 a\n");
}

TEST(Interpreter, KeepsTheExportOptionsForTheExportOfAPen)
{
    EXPECT_EQ(run("load \"a.gzd\"\nexport options pen 2, precision 6, stamp off, header on, lines unix, phase on\n"
                  "export pen 7 to \"a\"\nexport all pens to \"b\"\n")
                  .log,
              "g 0 a.gzd\nm 1 1 0 6 1 5\nm 6 1 0 6 1 5\no 0 a\nx 0 b\n");
}

TEST(Interpreter, CarriesTextsAsAFrameCan)
{
    EXPECT_EQ(run("panel \"Gr\xC3\xB6\xC3\x9F"
                  "e \xF0\x9F\x98\x80.\"\n")
                  .log,
              "r 0 Gr??e ?.\n");
    EXPECT_EQ(
        run("let n = 1\nlet n = 2\npanel \"{n} 23456789012345678901234567890123456789012345678901234567890+++\"\n").log,
        "r 0 2 23456789012345678901234567890123456789012345678901234567890\n");
}

TEST(Interpreter, AFaultEndsTheScriptWithItsLine)
{
    const std::pair<const char*, const char*> rows[] = {
        {"let a = 0\nlet a = 0\nwait 1 / a\n", "Line 3: This divides by zero."},
        {"let p = 10\nlet p = 11\nuse pen p\n", "Line 3: The pen is 11, outside 1 to 10."},
        {"let f = 1\nlet f = 1\nset start f\n", "Line 3: The frequency is 1 Hz, outside 10 Hz to 50 MHz of the T46."},
        {"let n = -1\nlet n = -1\nrepeat n times\nend\n", "Line 3: A loop runs 0 to 1000000 times."},
        {"let s = 0\nlet s = 0\nfor i from 1 to 2 step s\nend\n", "Line 3: With a step of 0 the loop never ends."},
        {"for i from 1 to 10M\nend\n", "Line 1: The loop runs more than 1000000 times."},
        {"let t = \"a\"\nrepeat 20 times\nlet t = \"{t}{t}\"\nend\n",
         "Line 3: The text becomes longer than 1000 bytes."},
        {"start impedance\nstop sweep\nset start frequency of smallest\n", "Line 3: No sweep has been made yet."},
        {"let x = 1e300\nlet x = x * x\n", "Line 2: The result is no number, or too large for one."},
        {"let x = -1\nlet x = sqrt(x)\n", "Line 2: The result is no number, or too large for one."},
        {"swep impedance\n", "Line 1: No statement begins with \"swep\"."},
        {"needs firmware 1.3\nwait 1\n", "Line 1: The script needs firmware 1.3; the instrument has 1.28."},
        {"\xff", "The script is no UTF-8 text; save it with the encoding UTF-8."},
        {"repeat until stopped\nend\n",
         "Line 1: This loop has no bound, and neither a measurement nor a question in it."},
    };
    for (const auto& [script, sentence] : rows) {
        sim::Interpreter interpreter;
        PlayedHost host;
        host.sweep = nullptr;
        EXPECT_TRUE(host.run(interpreter, script)) << script;
        EXPECT_EQ(host.failure, sentence) << script;
    }
}

TEST(Interpreter, AScriptThatNeverWaitsLeavesTimeForEverythingElse)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    const sim::Moment start{0};
    ASSERT_TRUE(interpreter.start("repeat until stopped\nwait for end\nend\n", host, start));
    ASSERT_TRUE(interpreter.nextDue());
    EXPECT_GT(*interpreter.nextDue(), start);
    interpreter.advance(*interpreter.nextDue());
    ASSERT_TRUE(interpreter.nextDue());
    interpreter.stop();
    EXPECT_FALSE(interpreter.nextDue());
    interpreter.advance(start + std::chrono::hours(1));
    EXPECT_FALSE(host.hasFinished);
}

TEST(Interpreter, NothingFollowsAStopAndItCanBeginAgain)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    host.stopsAt = 2;
    EXPECT_FALSE(host.run(interpreter, "prompt \"a\"\nprompt \"b\"\nprompt \"c\"\n"));
    EXPECT_EQ(host.text(), "f 0 a\nf 0 b\n");
    interpreter.acknowledged(sim::Moment(0));
    EXPECT_EQ(host.log.size(), 2u);
    PlayedHost again;
    EXPECT_TRUE(again.run(interpreter, "let n = 5\nprompt \"{n}\"\n"));
    EXPECT_EQ(again.text(), "f 0 5\n");
}

TEST(Interpreter, EndsWithASweepThatIsStopped)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    ASSERT_TRUE(interpreter.start("sweep amplitude\npanel \"never\"\n", host, sim::Moment(0)));
    interpreter.runEnded(false, sim::Moment(0));
    EXPECT_EQ(host.text(), "> amptest\n");
    EXPECT_TRUE(host.hasFinished);
    EXPECT_EQ(host.failure, "");
}

TEST(Interpreter, TheCheckerKnowsTheRangesOfTheSimulatedModels)
{
    for (const sim::Model model : {sim::Model::T46, sim::Model::DT46}) {
        const sim::ModelFacts& facts = sim::ModelFacts::of(model);
        const ferrolex::DeviceRanges ranges{QLatin1String(facts.modelText)};
        EXPECT_FALSE(ranges.isWidest());
        EXPECT_EQ(ranges.modelName(), QLatin1String(facts.name));
        EXPECT_EQ(ranges.of(ferrolex::ArgumentType::Frequency)->lowest, facts.minFrequency);
        EXPECT_EQ(ranges.of(ferrolex::ArgumentType::Frequency)->highest, facts.maxFrequency);
        EXPECT_EQ(ranges.of(ferrolex::ArgumentType::Attenuation)->highest, facts.attenuationSteps);
        EXPECT_EQ(ranges.of(ferrolex::ArgumentType::Points)->highest, sim::kMostPoints);
        EXPECT_EQ(ranges.of(ferrolex::ArgumentType::Samples)->highest, sim::kMostSamples);
        EXPECT_DOUBLE_EQ(ranges.of(ferrolex::ArgumentType::Period)->highest * 1000, sim::kLongestPeriod);
    }
}
