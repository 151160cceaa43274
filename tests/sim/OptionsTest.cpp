// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Options.h"

#include <gtest/gtest.h>

using sim::Options;

namespace {

Options parsed(const QStringList& arguments)
{
    ValueOr<Options> options = Options::parse(arguments);
    EXPECT_TRUE(options.ok()) << options.sentence().toStdString();
    return options.value();
}

QString complaint(const QStringList& arguments)
{
    const ValueOr<Options> options = Options::parse(arguments);
    EXPECT_FALSE(options.ok()) << arguments.join(' ').toStdString();
    return options.sentence();
}

} // namespace

TEST(Options, WithoutAnyItIsAT46WithATransducer)
{
    const Options options = parsed({});
    EXPECT_EQ(options.model, sim::Model::T46);
    EXPECT_EQ(options.part, QString("langevin40k"));
    EXPECT_EQ(options.pace.kind, sim::Pace::Kind::Honest);
    EXPECT_FALSE(options.serial);
    EXPECT_FALSE(options.memory);
    EXPECT_FALSE(options.faults.any());
}

TEST(Options, EachIsTakenOver)
{
    const Options options = parsed({"--model",    "dt46",          "--serial=DT46-9",
                                    "--part",     "open",          "--rate",
                                    "50",         "--seed",        "18446744073709551615",
                                    "--fault",    "lost",          "--fault=split:5",
                                    "--memory",   "m.json",        "--script-frames",
                                    "s.txt",      "--idle-levels", "0",
                                    "--firmware", "1.23",          "--noise",
                                    "0.5",        "--status",      "--not-on=/dev/pts/7"});
    EXPECT_EQ(options.model, sim::Model::DT46);
    EXPECT_EQ(*options.serial, QByteArray("DT46-9"));
    EXPECT_EQ(options.part, QString("open"));
    EXPECT_EQ(options.pace.kind, sim::Pace::Kind::Rate);
    EXPECT_EQ(options.pace.pointsPerSecond, 50);
    EXPECT_EQ(options.seed, 18446744073709551615u);
    EXPECT_EQ(options.faults.every(sim::Fault::SplitWrites), 5u);
    EXPECT_NE(options.faults.every(sim::Fault::LostBytes), 0u);
    EXPECT_EQ(*options.memory, QString("m.json"));
    EXPECT_EQ(options.scriptFrames, QString("s.txt"));
    EXPECT_EQ(options.idleLevelsPerSecond, 0);
    EXPECT_EQ(options.firmwareMinor, 23);
    EXPECT_EQ(*options.noise, 0.5);
    EXPECT_TRUE(options.status);
    EXPECT_EQ(options.notOn, QByteArray("/dev/pts/7"));
}

TEST(Options, TheFirmwareIsAsOldAsTheProgramUnlessItIsChosen)
{
    EXPECT_EQ(parsed({}).firmwareMajor, 1);
    EXPECT_EQ(parsed({}).firmwareMinor, 28);
}

TEST(Options, RateZeroIsThePaceOfARealInstrument)
{
    EXPECT_EQ(parsed({"--rate", "0"}).pace.kind, sim::Pace::Kind::Honest);
}

TEST(Options, NoMemoryIsAnEmptyFileName)
{
    EXPECT_EQ(*parsed({"--no-memory"}).memory, QString());
}

TEST(Options, MistakesAreAnsweredWithWhatToWriteInstead)
{
    EXPECT_EQ(complaint({"--model", "T47"}), QString("The model is T46 or DT46, not \"T47\"."));
    EXPECT_EQ(complaint({"--serial", "a/b"}),
              QString("\"a/b\" is no serial number: it has up to 32 letters, digits, dots, dashes and underscores."));
    EXPECT_EQ(complaint({"--rate", "-1"}),
              QString("Behind --rate stands the number of points a second, from 0.01 to 1000000, "
                      "or 0 for the pace of a real instrument, not \"-1\"."));
    EXPECT_EQ(complaint({"--seed", "x"}), QString("Behind --seed stands a whole number of 0 or more, not \"x\"."));
    EXPECT_EQ(complaint({"--firmware", "1"}), QString("Behind --firmware stands a version such as 1.28, not \"1\"."));
    EXPECT_EQ(complaint({"--idle-levels", "many"}),
              QString("Behind --idle-levels stands a number from 0 to 100, not \"many\"."));
    EXPECT_EQ(complaint({"--not-on", "3"}),
              QString("Behind --not-on stands a terminal device such as /dev/pts/3, not \"3\"."));
    EXPECT_EQ(complaint({"--noise", "loud"}), QString("Behind --noise stands a number from 0 to 1000, not \"loud\"."));
    EXPECT_EQ(complaint({"--rate", "5", "--fast"}), QString("Choose one of --rate and --fast."));
    EXPECT_EQ(complaint({"--part", "open", "--replay", "x"}), QString("Choose one of --part and --replay."));
    EXPECT_EQ(complaint({"--memory", "x", "--no-memory"}), QString("Choose one of --memory and --no-memory."));
    EXPECT_EQ(complaint({"open"}), QString("\"open\" is no option. See marrowick-sim --help."));
    EXPECT_TRUE(complaint({"--nosuch"}).endsWith("See marrowick-sim --help."));
    EXPECT_TRUE(complaint({"--part"}).endsWith("See marrowick-sim --help."));
}

TEST(Options, TheHelpNamesEveryOptionAndFaultWithinEightyColumns)
{
    const QString help = Options::helpText();
    for (const char* word :
         {"--model",       "--serial",   "--not-on", "--part",    "--list-parts", "--replay",    "--rate",
          "--fast",        "--seed",     "--noise",  "--fault",   "--memory",     "--no-memory", "--script-frames",
          "--idle-levels", "--firmware", "--status", "--version", "--help",       "garbage",     "non-numeric"})
        EXPECT_TRUE(help.contains(QLatin1String(word))) << word;
    for (const QString& line : help.split('\n'))
        EXPECT_LE(line.size(), 80) << line.toStdString();
}
