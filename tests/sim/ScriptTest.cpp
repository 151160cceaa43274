// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/script/FrameScript.h"
#include "sim/script/Interpreter.h"
#include "tests/sim/SimBench.h"

namespace {

/// An instrument with a script loaded that carries out these steps.
SimBench scripted(const char* steps)
{
    return SimBench([steps](sim::Instrument::Setup& setup) {
        ValueOr<sim::FrameScript> script = sim::FrameScript::fromText(steps);
        ASSERT_TRUE(script.ok()) << script.sentence().toStdString();
        setup.scriptRunner = std::make_unique<sim::FrameScript>(script.value());
    });
}

constexpr const char* kDemo = "# a demonstration\n"
                              "U 1 Transducer 17\n"
                              "> points 8\n"
                              "sweep impedance\n"
                              "Z B fresh\n"
                              "b 0 demo\n"
                              "q 0 1 1 1\n"
                              "wait 100\n"
                              "a A\n";

} // namespace

TEST(Script, TheAnnouncedBytesAreKeptWhateverTheyAre)
{
    SimBench bench;
    bench.write("loadscript 10\r");
    bench.write("run\r y\r\n");
    EXPECT_TRUE(bench.recorder.of('k').empty());
    bench.write("\x01\xff");
    EXPECT_EQ(bench.instrument->script(), QByteArray("run\r y\r\n\x01\xff"));
    EXPECT_EQ(bench.recorder.frames.back().code, 'r');
    EXPECT_EQ(bench.ask("points 9").at(0).n1, 9) << "what follows is a command again";
}

TEST(Script, AScriptInPiecesOf1024BytesArrivesWhole)
{
    SimBench bench;
    const std::string script(2500, 's');
    bench.write("loadscript 2500\r");
    for (std::size_t at = 0; at < script.size(); at += 1024)
        bench.write(script.substr(at, 1024));
    EXPECT_EQ(bench.instrument->script().size(), 2500);
    ASSERT_TRUE(bench.kept);
    EXPECT_EQ(bench.kept->script.size(), 2500);
}

TEST(Script, ACancelledTransferIsGivenUpAfterASecondOfSilence)
{
    SimBench bench;
    bench.write("loadscript 5000\r");
    bench.write("only this much");
    bench.pass(std::chrono::milliseconds(900));
    bench.write("run\r"); // still taken for bytes of the script
    bench.pass(std::chrono::milliseconds(999));
    EXPECT_TRUE(bench.recorder.of('k').empty());
    bench.pass(std::chrono::milliseconds(2));
    EXPECT_EQ(bench.recorder.of('k').at(0).field, '0');
    EXPECT_TRUE(bench.instrument->script().isEmpty());
    EXPECT_EQ(bench.ask("run").at(0).text, "No script is loaded.");
}

TEST(Script, AnEmptyOrImpossibleLengthIsAnswered)
{
    SimBench bench;
    EXPECT_EQ(bench.ask("loadscript 0").at(0).code, 'r');
    EXPECT_EQ(bench.ask("loadscript -5").at(0).code, 'T');
    EXPECT_EQ(bench.ask("loadscript lots").at(0).code, 'T');
}

TEST(Script, AScriptTooLongIsSwallowedAndRefused)
{
    SimBench bench;
    const std::string script(sim::ScriptSlot::kLongestScript + 1, 's');
    bench.ask("loadscript " + std::to_string(script.size()));
    bench.write(script);
    EXPECT_EQ(bench.recorder.frames.back().code, 'T');
    EXPECT_TRUE(bench.instrument->script().isEmpty());
}

TEST(Script, WithoutAnInterpreterTheInstrumentSaysSo)
{
    SimBench bench;
    bench.ask("loadscript 3\rabc");
    const std::vector<ReadFrame> answer = bench.ask("run");
    ASSERT_EQ(answer.size(), 2u);
    EXPECT_EQ(answer[0].code, 'T');
    EXPECT_EQ(answer[0].field, '1');
    EXPECT_EQ(answer[0].text, "This instrument keeps scripts but cannot run them.");
    EXPECT_EQ(answer[1].code, 'k');
    EXPECT_EQ(answer[1].field, '0');
}

TEST(Script, ActionsWaitForTheHostAndSweepsForTheirEnd)
{
    SimBench bench = scripted(kDemo);
    bench.ask("loadscript 3\rabc");
    bench.recorder.clear();
    bench.write("run\r");
    bench.pass(std::chrono::seconds(5));
    EXPECT_EQ(bench.recorder.codes(), "kU") << "nothing more before the acknowledgement";
    EXPECT_EQ(bench.recorder.frames[1].text, "Transducer 17");
    EXPECT_EQ(bench.recorder.frames[1].field, '1');
    bench.write(" ");
    bench.pass(std::chrono::milliseconds(50));
    EXPECT_EQ(bench.recorder.codes(), "kUPDFFFFFFFFEYZb");
    EXPECT_EQ(bench.recorder.of('Z')[0].field, 'B');
    bench.write(" ");
    bench.pass(std::chrono::milliseconds(20));
    EXPECT_EQ(bench.recorder.frames.back().code, 'q');
    EXPECT_EQ(bench.recorder.frames.back().n3, 1);
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kUPDFFFFFFFFEYZbqak");
    EXPECT_EQ(bench.recorder.of('a')[0].field, 'A');
    EXPECT_EQ(bench.recorder.frames.back().field, '0');
    EXPECT_FALSE(bench.instrument->scriptIsRunning());
}

TEST(Script, ABlankAndYStopsTheScript)
{
    SimBench bench = scripted(kDemo);
    bench.ask("loadscript 3\rabc");
    bench.write("run\r");
    bench.recorder.clear();
    bench.write(" y\r");
    bench.pass(std::chrono::seconds(5));
    EXPECT_EQ(bench.recorder.codes(), "kE");
    EXPECT_FALSE(bench.instrument->scriptIsRunning());
}

TEST(Script, YStopsTheSweepAndTheScriptThatRanIt)
{
    SimBench bench = scripted("> points 1000\nsweep amplitude\nb 0 never\n");
    bench.ask("loadscript 3\rabc");
    bench.recorder.clear();
    bench.write("run\r");
    bench.instrument->advance(bench.now, 10);
    bench.write("y\r");
    bench.pass(std::chrono::seconds(5));
    EXPECT_EQ(bench.recorder.codes(), "kPDHHHHHHHHHHkE");
}

TEST(Script, RunAgainNeedsNoSecondTransfer)
{
    SimBench bench = scripted("r 0 hello\n");
    bench.ask("loadscript 3\rabc");
    for (int i = 0; i < 2; ++i) {
        bench.recorder.clear();
        bench.write("y\rrun\r");
        EXPECT_EQ(bench.recorder.codes(), "Ekrk");
    }
}

TEST(Script, ACommandThatDoesNotExistEndsTheScriptWithANotice)
{
    SimBench bench = scripted("> dance 3\nb 0 never\n");
    bench.ask("loadscript 3\rabc");
    bench.recorder.clear();
    bench.write("run\r");
    EXPECT_EQ(bench.recorder.codes(), "kTk");
    EXPECT_EQ(bench.recorder.frames[1].text, "No such command: dance 3");
}

TEST(Script, AScriptCanNeitherReplaceNorRestartItself)
{
    for (const char* step : {"> run\n", "> loadscript 4\n"}) {
        SimBench bench = scripted(step);
        bench.ask("loadscript 3\rabc");
        bench.recorder.clear();
        bench.write("run\r");
        EXPECT_EQ(bench.recorder.codes(), "kTk") << step;
        EXPECT_EQ(bench.instrument->script(), QByteArray("abc"));
    }
}

TEST(Script, ASweepThatReplacesAnotherIsTheOneToWaitFor)
{
    SimBench bench = scripted("> points 4\n> amptest\nsweep impedance\nr 0 done\n");
    bench.ask("loadscript 3\rabc");
    bench.recorder.clear();
    bench.write("run\r");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kPDEDFFFFEYrk");
}

TEST(Script, ANewTransferStopsTheScriptThatRuns)
{
    SimBench bench = scripted("f 0 ready?\nr 0 never\n");
    bench.ask("loadscript 3\rabc");
    bench.write("run\r");
    bench.recorder.clear();
    bench.write("loadscript 2\rxy");
    bench.write(" ");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kr");
}

TEST(Script, AHostThatLeavesStopsTheScript)
{
    SimBench bench = scripted(kDemo);
    bench.ask("loadscript 3\rabc");
    bench.write("run\r");
    bench.instrument->hostLeft();
    EXPECT_FALSE(bench.instrument->scriptIsRunning());
    bench.instrument->hostArrived(bench.now);
    bench.recorder.clear();
    bench.write(" ");
    bench.pass(std::chrono::seconds(1));
    EXPECT_TRUE(bench.recorder.frames.empty());
}

namespace {

/// An instrument as it is delivered, with this script loaded.
SimBench loaded(const std::string& script)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.scriptRunner = std::make_unique<sim::Interpreter>(); });
    bench.write("loadscript " + std::to_string(script.size()) + "\r" + script);
    bench.recorder.clear();
    return bench;
}

} // namespace

TEST(Script, RunsTheLoadedScriptWithItsSweepsAndAnswers)
{
    SimBench bench = loaded("set points 8\n"
                            "new impedance graph \"Transducer\"\n"
                            "sweep impedance\n"
                            "panel \"{frequency of smallest}\"\n"
                            "save \"t\"\n");
    bench.write("run\r");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kPU") << "nothing more before the acknowledgement";
    bench.write(" ");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kPUDFFFFFFFFEYrb");
    const std::vector<ReadFrame> points = bench.recorder.of('F');
    const auto smallest = std::min_element(points.begin(), points.end(),
                                           [](const ReadFrame& a, const ReadFrame& b) { return a.n2 < b.n2; });
    EXPECT_NEAR(std::stod(bench.recorder.of('r')[0].text), smallest->n1, 1e-6 * smallest->n1);
    bench.write(" ");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kPUDFFFFFFFFEYrbk");
    EXPECT_EQ(bench.recorder.frames.back().field, '0');
}

TEST(Script, TellsAFaultAndEnds)
{
    SimBench bench = loaded("let p = 9\nrepeat 3 times\nlet p = p + 1\nuse pen p\nend\n");
    bench.write("run\r");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "kaTk");
    EXPECT_EQ(bench.recorder.of('T')[0].field, '1');
    EXPECT_EQ(bench.recorder.of('T')[0].text, "Line 4: The pen is 11, outside 1 to 10.");
    EXPECT_FALSE(bench.instrument->scriptIsRunning());
}

TEST(Script, NothingIsReadBackFromAnEarlierRun)
{
    SimBench bench = loaded("if 1 < 2\nstart impedance\nstop sweep\nend\npanel \"{smallest level}\"\n");
    bench.write("imptest\r");
    bench.finishRun();
    bench.recorder.clear();
    bench.write("run\r");
    bench.pass(std::chrono::seconds(1));
    ASSERT_EQ(bench.recorder.of('T').size(), 1u);
    EXPECT_EQ(bench.recorder.of('T')[0].text, "Line 5: No sweep has been made yet.");
}

TEST(Script, AStoppedSweepOfTheScriptsOwnDoesNotEndTheNextOne)
{
    SimBench bench = loaded("set points 5\nstart impedance\nstop sweep\nsweep impedance\npanel \"done\"\n");
    bench.write("run\r");
    bench.pass(std::chrono::seconds(2));
    EXPECT_EQ(bench.recorder.codes(), "kPDEDFFFFFEYrk");
}

TEST(Script, AStopInTheMiddleOfALoopWithoutWaitsIsObeyed)
{
    SimBench bench = loaded("repeat until stopped\nwait for end\nend\n");
    bench.write("run\r");
    bench.pass(std::chrono::milliseconds(50));
    EXPECT_TRUE(bench.instrument->scriptIsRunning());
    bench.write("y\r");
    EXPECT_EQ(bench.recorder.codes(), "kkE");
    EXPECT_FALSE(bench.instrument->scriptIsRunning());
}
