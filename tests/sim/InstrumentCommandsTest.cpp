// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Random.h"
#include "tests/sim/SimBench.h"

#include <set>

TEST(InstrumentCommands, EnquireIsAnsweredWithEverythingAndAClosingX)
{
    SimBench bench;
    EXPECT_EQ(codesOf(bench.ask("enquire 1.28")), "OVlllllllLMNABCJKPQRSstX");
    EXPECT_EQ(codesOf(bench.ask("enquire 1.28")), "OVlllllllLMNABCJKPQRSstX") << "each enquiry is answered";
    EXPECT_EQ(bench.recorder.of('V')[0].text, "T46-0042");
    const std::vector<ReadFrame> information = bench.recorder.of('l');
    for (std::size_t slot = 0; slot < 7; ++slot)
        EXPECT_EQ(information[slot].field, static_cast<char>('0' + slot));
    EXPECT_EQ(information[0].text, "T46");
    EXPECT_EQ(information[6].text, "T46");
}

TEST(InstrumentCommands, TheAnswerTellsTheLimitsAndTheVersion)
{
    SimBench bench;
    bench.ask("enquire 1.28");
    const ReadFrame version = bench.recorder.of('O')[0];
    EXPECT_EQ(version.n1, 1);
    EXPECT_EQ(version.n2, 28);
    const ReadFrame amplitude = bench.recorder.of('L')[0];
    EXPECT_EQ(amplitude.field, '1');
    EXPECT_EQ(amplitude.n1, 10);
    EXPECT_EQ(amplitude.n2, 50000000);
    EXPECT_EQ(amplitude.n3, -90);
    EXPECT_EQ(amplitude.n4, 10);
    const ReadFrame impedance = bench.recorder.of('N')[0];
    EXPECT_EQ(impedance.n3, 0.01);
    EXPECT_EQ(impedance.n4 - 1, 999999);
}

TEST(InstrumentCommands, ADt46TellsItsModelAndHasNoAttenuator)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.model = sim::Model::DT46; });
    bench.ask("enquire 1.28");
    EXPECT_EQ(bench.recorder.of('l')[6].text, "PELLFERN");
    EXPECT_EQ(bench.recorder.of('A')[0].field, '0');
    EXPECT_EQ(bench.recorder.of('A')[0].i, 0);
}

TEST(InstrumentCommands, AProgramOfAnotherVersionIsToldSoAfterTheVersionAndBeforeX)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.firmwareMinor = 23; });
    const std::string codes = codesOf(bench.ask("enquire 1.28"));
    EXPECT_EQ(codes, "OVlllllllLMNABCJKPQRSstTX");
    const ReadFrame notice = bench.recorder.of('T')[0];
    EXPECT_EQ(notice.field, '1');
    EXPECT_EQ(notice.text, "Version number mismatch. The firmware may need upgrading.");
}

TEST(InstrumentCommands, EveryChangeIsReportedByTheFrameThatCarriesIt)
{
    SimBench bench;
    const auto answer = [&bench](const std::string& command) {
        const std::vector<ReadFrame> frames = bench.ask(command);
        EXPECT_EQ(frames.size(), 1u) << command;
        return frames.empty() ? ReadFrame() : frames[0];
    };
    ReadFrame frame = answer("startfreq 20000");
    EXPECT_EQ(frame.code, 's');
    EXPECT_EQ(frame.n2, 20000);
    frame = answer("endfreq 80000");
    EXPECT_EQ(frame.code, 's');
    EXPECT_EQ(frame.n3, 80000);
    frame = answer("idlefreq -1");
    EXPECT_EQ(frame.code, 'K');
    EXPECT_EQ(frame.n1, -1);
    EXPECT_EQ(answer("idlefreq 1000").n1, 1000);
    EXPECT_EQ(answer("idlefreq 0").n1, 0);
    frame = answer("spotfreq 2500");
    EXPECT_EQ(frame.code, 'B');
    EXPECT_EQ(frame.n1, 2500);
    frame = answer("points 512");
    EXPECT_EQ(frame.code, 'P');
    EXPECT_EQ(frame.n1, 512);
    frame = answer("atten 3");
    EXPECT_EQ(frame.code, 'A');
    EXPECT_EQ(frame.n4, 3);
    EXPECT_EQ(frame.n3, 10);
    EXPECT_EQ(frame.i, 4);
    frame = answer("repeat 1");
    EXPECT_EQ(frame.code, 'P');
    EXPECT_EQ(frame.n2, 1);
    frame = answer("sweepmode 1");
    EXPECT_EQ(frame.code, 'K');
    EXPECT_EQ(frame.field, '1');
    EXPECT_EQ(frame.n2, 20000);
    EXPECT_EQ(frame.n3, 80000);
    frame = answer("period 25");
    EXPECT_EQ(frame.code, 'S');
    EXPECT_EQ(frame.n2, 25);
    frame = answer("phase 0");
    EXPECT_EQ(frame.code, 'C');
    EXPECT_EQ(frame.field, '0');
    EXPECT_EQ(answer("phase 1").field, '1');
    frame = answer("samples 64");
    EXPECT_EQ(frame.code, 'S');
    EXPECT_EQ(frame.n3, 64);
    EXPECT_EQ(answer("linear 1").n4, 1);
    EXPECT_EQ(answer("linear 0").n4, 0);
    frame = answer("setpin 23");
    EXPECT_EQ(frame.code, 'J');
    EXPECT_EQ(frame.i, 2);
    EXPECT_EQ(answer("setpin 11").i, 1);
    frame = answer("setvref 0 0");
    EXPECT_EQ(frame.code, 'C');
    EXPECT_EQ(frame.n4, 0);
    frame = answer("setvdut 200 0");
    EXPECT_EQ(frame.code, 'C');
    EXPECT_EQ(frame.i, 200);
    frame = answer("setfreqcomp 1000012");
    EXPECT_EQ(frame.code, 't');
    EXPECT_EQ(frame.n1, 1000012);
    frame = answer("calon 0");
    EXPECT_EQ(frame.code, 'R');
    EXPECT_EQ(frame.field, '0');
    EXPECT_EQ(answer("calon 1").field, '1');
    frame = answer("loopback 1");
    EXPECT_EQ(frame.code, 'J');
    EXPECT_EQ(frame.field, '1');
    EXPECT_EQ(answer("loopback 0").field, '0');
    EXPECT_EQ(answer("zerocal").code, 'B');
    EXPECT_EQ(answer("setserial T46-7").text, "T46-7");
    EXPECT_EQ(answer("save").code, 'r');
}

TEST(InstrumentCommands, EveryCommandWordIsAnswered)
{
    for (const QString& word : sim::Instrument::commandWords()) {
        SimBench bench;
        std::string command = word.toStdString();
        if (word == "loadscript")
            command += " 3\rabc";
        EXPECT_FALSE(bench.ask(command).empty()) << command;
        EXPECT_EQ(bench.instrument->unknownCommands(), 0) << command;
    }
}

TEST(InstrumentCommands, TheTableHoldsEveryWordOnce)
{
    const QStringList words = sim::Instrument::commandWords();
    EXPECT_EQ(std::set<QString>(words.begin(), words.end()).size(), static_cast<std::size_t>(words.size()));
    for (const char* word : {"startfreq", "endfreq", "idlefreq",    "spotfreq",  "points",  "atten",    "repeat",
                             "sweepmode", "period",  "phase",       "samples",   "linear",  "amptest",  "imptest",
                             "ampspot",   "impspot", "y",           "run",       "enquire", "setpin",   "loadscript",
                             "setvref",   "setvdut", "setfreqcomp", "setserial", "calon",   "loopback", "phasecal",
                             "calibrate", "zerocal", "diagnose",    "default",   "save",    "x"})
        EXPECT_TRUE(words.contains(QLatin1String(word))) << word;
}

TEST(InstrumentCommands, ANumberOutOfRangeIsBoundedAndTheAnswerSaysSo)
{
    SimBench bench;
    EXPECT_EQ(bench.ask("startfreq 1").at(0).n2, 10);
    EXPECT_EQ(bench.ask("endfreq 1e12").at(0).n3, 50e6);
    EXPECT_EQ(bench.ask("points 5000").at(0).n1, 1024);
    EXPECT_EQ(bench.ask("points 0").at(0).n1, 1);
    EXPECT_EQ(bench.ask("atten 99").at(0).n4, 4);
    EXPECT_EQ(bench.ask("sweepmode 7").at(0).field, '2');
    EXPECT_EQ(bench.ask("idlefreq 3").at(0).n1, 10);
    EXPECT_EQ(bench.ask("period -5").at(0).n2, 0);
    EXPECT_EQ(bench.ask("setvref 999 0").at(0).n4, 255);
}

TEST(InstrumentCommands, WhatIsNoNumberChangesNothing)
{
    SimBench bench;
    bench.ask("points 64");
    EXPECT_EQ(bench.ask("points many").at(0).n1, 64);
    EXPECT_EQ(bench.ask("points").at(0).n1, 64);
    EXPECT_EQ(bench.ask("startfreq nan").at(0).n2, 1000);
    EXPECT_EQ(bench.ask("setfreqcomp 5").at(0).n1, bench.instrument->state().constants.frequencyCompensation);
}

TEST(InstrumentCommands, GarbageIsCountedAndNotAnswered)
{
    SimBench bench;
    EXPECT_TRUE(bench.ask("hello world").empty());
    EXPECT_TRUE(bench.ask("POINTS 5").empty());
    EXPECT_EQ(bench.instrument->unknownCommands(), 2);
    sim::Random random(3);
    for (int i = 0; i < 20000; ++i) {
        std::string bytes(1 + random.below(40), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random.below(256));
        bench.write(bytes);
    }
    bench.write("\r\r");
    bench.pass(std::chrono::seconds(2));
    bench.write("y\r");
    EXPECT_EQ(bench.ask("points 77").at(0).n1, 77);
}

TEST(InstrumentCommands, AStopWithNothingRunningIsStillAnswered)
{
    SimBench bench;
    EXPECT_EQ(codesOf(bench.ask("y")), "E");
    EXPECT_EQ(codesOf(bench.ask("x")), "E");
    EXPECT_EQ(codesOf(bench.ask(" y")), "E");
}

TEST(InstrumentCommands, DefaultBringsTheFactorySettingsBackAndReportsThem)
{
    SimBench bench;
    for (const char* command : {"startfreq 5000", "points 7", "atten 2", "phase 0", "repeat 1", "linear 1"})
        bench.ask(command);
    EXPECT_EQ(codesOf(bench.ask("default")), "ACKPQSsJ");
    EXPECT_EQ(bench.instrument->state().settings, sim::SweepSettings());
    EXPECT_EQ(bench.recorder.of('P')[0].n1, 100);
    EXPECT_EQ(bench.recorder.of('s')[0].n2, 1000);
}

TEST(InstrumentCommands, SettingsAreKeptOnSaveOnlyAndConstantsAtOnce)
{
    SimBench bench;
    bench.ask("points 333");
    EXPECT_FALSE(bench.kept);
    bench.ask("setvref 99 0");
    ASSERT_TRUE(bench.kept);
    EXPECT_EQ(bench.kept->constants.vrefCode, 99);
    EXPECT_EQ(bench.kept->settings.points, 100);
    bench.ask("save");
    EXPECT_EQ(bench.kept->settings.points, 333);
}

TEST(InstrumentCommands, AMemoryBringsSettingsAndConstantsBack)
{
    SimBench first;
    for (const char* command : {"points 333", "setvdut 12 0", "loadscript 4\rabcd", "save"})
        first.ask(command);
    SimBench second([&first](sim::Instrument::Setup& setup) { setup.memory = first.kept; });
    EXPECT_EQ(second.instrument->state().settings.points, 333);
    EXPECT_EQ(second.instrument->state().constants.vdutCode, 12);
    EXPECT_EQ(second.instrument->script(), QByteArray("abcd"));
}

TEST(InstrumentCommands, AMemoryThatCannotBeWrittenIsToldAndNotSaidToBeSaved)
{
    SimBench bench([](sim::Instrument::Setup& setup) {
        setup.keep = [](const sim::KeptMemory&) { return Outcome::failure(QStringLiteral("disk full")); };
    });
    const std::vector<ReadFrame> frames = bench.ask("save");
    EXPECT_EQ(codesOf(frames), "T");
    EXPECT_EQ(frames.at(0).field, '1');
    EXPECT_EQ(frames.at(0).text, "The instrument could not write its memory.");
    EXPECT_EQ(bench.told, QStringList("disk full"));
    EXPECT_EQ(codesOf(bench.ask("setvref 9 0")), "TC") << "a constant is kept at once";
    EXPECT_EQ(codesOf(bench.ask("setvref 9 0")), "TC") << "and tried again when it is set again";
}

TEST(InstrumentCommands, ThePinsDigitIsFollowedDirectlyByThePensNumber)
{
    SimBench bench;
    const auto chosen = [&bench](const char* command) {
        const std::vector<ReadFrame> answer = bench.ask(command);
        EXPECT_EQ(codesOf(answer), "J") << command;
        const int pin = answer.empty() ? 0 : answer[0].i;
        EXPECT_EQ(pin, bench.instrument->state().settings.pin);
        return std::pair(pin, bench.instrument->state().pen);
    };
    EXPECT_EQ(chosen("setpin 23"), std::pair(2, 3));
    EXPECT_EQ(chosen("setpin 110"), std::pair(1, 10));
    EXPECT_EQ(chosen("setpin 21"), std::pair(2, 1));
    EXPECT_EQ(chosen("setpin 11"), std::pair(1, 1));
    EXPECT_EQ(chosen("setpin 210"), std::pair(2, 10));
    for (const char* wrong :
         {"setpin", "setpin 33", "setpin 10", "setpin 111", "setpin 20", "setpin 1 1", "setpin 12.0", "setpin x"})
        EXPECT_EQ(chosen(wrong), std::pair(2, 10)) << wrong;
    EXPECT_EQ(chosen("setpin 1"), std::pair(1, 0)) << "a pin without a pen";
    EXPECT_TRUE(bench.ask("setpin2").empty()) << "the blank belongs to the word";
}

TEST(InstrumentCommands, ASerialNumberIsRefusedWhenItIsNoneOrInUse)
{
    bool free = false;
    SimBench bench([&free](sim::Instrument::Setup& setup) {
        setup.serialChanging = [&free](const QByteArray&) {
            return free ? Outcome::success() : Outcome::failure(QStringLiteral("in use"));
        };
    });
    EXPECT_EQ(codesOf(bench.ask("setserial ../../etc/passwd")), "TV");
    EXPECT_EQ(codesOf(bench.ask("setserial ")), "TV");
    EXPECT_EQ(codesOf(bench.ask("setserial T46-9")), "TV");
    EXPECT_EQ(bench.instrument->serial(), QByteArray("T46-0042"));
    free = true;
    EXPECT_EQ(codesOf(bench.ask("setserial T46-9")), "V");
    EXPECT_EQ(bench.instrument->serial(), QByteArray("T46-9"));
}
