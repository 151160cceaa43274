// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/SweepCommand.h"

#include "cli/CommandWords.h"

#include <QTemporaryDir>

using namespace cli;

namespace {

SweepOptions sweepOf(const char* words)
{
    const CommandWords<SweepCommand> sweep(words);
    EXPECT_EQ(sweep.problem(), "");
    return sweep.options();
}

std::string problemOf(const char* words)
{
    return CommandWords<SweepCommand>(words).problem();
}

} // namespace

TEST(SweepCommand, ASweepWithoutOptionsHasTheDocumentedDefaults)
{
    const SweepOptions options = sweepOf("");
    EXPECT_EQ(options.device, QString());
    EXPECT_EQ(options.type, 2);
    EXPECT_EQ(options.from, 1000);
    EXPECT_EQ(options.to, 1000000);
    EXPECT_EQ(options.points, 100);
    EXPECT_EQ(options.period, 0);
    EXPECT_EQ(options.attenuation, 0);
    EXPECT_EQ(options.direction, SweepOptions::Up);
    EXPECT_TRUE(options.phase);
    EXPECT_FALSE(options.linear);
    EXPECT_EQ(options.repeat, 1);
    EXPECT_FALSE(options.output.isNamed() || options.csv.isNamed() || options.picture.isNamed());
    EXPECT_EQ(options.pictureSize, QSize(1280, 800));
    EXPECT_EQ(options.timeout, 0);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.analyse);
}

TEST(SweepCommand, AnAnalysisIsOfImpedanceOrReactanceAndNeedsStandardOutputForItself)
{
    EXPECT_TRUE(sweepOf("--analyse").analyse);
    EXPECT_TRUE(sweepOf("--analyse --type reactance --output a.gxd --json").analyse);
    EXPECT_EQ(problemOf("--analyse --type amplitude"), "--analyse needs an impedance or reactance sweep.");
    EXPECT_EQ(problemOf("--analyse --csv -"), "--analyse prints to standard output; no file can go there beside it.");
}

TEST(SweepCommand, EveryOptionOfASweepIsRead)
{
    const SweepOptions options =
        sweepOf("--device T46-7 --type reactance --from 38k --to 4.2e4 --points 512 --period 3 --attenuation 20 "
                "--direction down --no-phase --linear --repeat 4 --output a.gxd --csv b.csv --picture c.png "
                "--picture-size 640x480 --link-log d.log --timeout 2.5 --quiet --json");
    EXPECT_EQ(options.device, QStringLiteral("T46-7"));
    EXPECT_EQ(options.type, 3);
    EXPECT_EQ(options.from, 38000);
    EXPECT_EQ(options.to, 42000);
    EXPECT_EQ(options.points, 512);
    EXPECT_EQ(options.period, 3);
    EXPECT_EQ(options.attenuation, 20);
    EXPECT_EQ(options.direction, SweepOptions::Down);
    EXPECT_FALSE(options.phase);
    EXPECT_TRUE(options.linear);
    EXPECT_EQ(options.repeat, 4);
    EXPECT_EQ(options.output.name(), QStringLiteral("a.gxd"));
    EXPECT_EQ(options.csv.name(), QStringLiteral("b.csv"));
    EXPECT_EQ(options.picture.name(), QStringLiteral("c.png"));
    EXPECT_EQ(options.pictureSize, QSize(640, 480));
    EXPECT_EQ(options.linkLog, QStringLiteral("d.log"));
    EXPECT_EQ(options.timeout, 2.5);
    EXPECT_TRUE(options.quiet);
    EXPECT_TRUE(options.json);
    EXPECT_EQ(sweepOf("--type amplitude").type, 1);
    EXPECT_EQ(sweepOf("--direction alternate").direction, SweepOptions::Alternate);
}

TEST(SweepCommand, AWrongValueIsToldWithItsOptionAndWhatIsWanted)
{
    EXPECT_EQ(problemOf("--points 1"), "--points needs a whole number from 2 to 1024, not \"1\".");
    EXPECT_EQ(problemOf("--points 1025"), "--points needs a whole number from 2 to 1024, not \"1025\".");
    EXPECT_EQ(problemOf("--points 10.5"), "--points needs a whole number from 2 to 1024, not \"10.5\".");
    EXPECT_EQ(problemOf("--type gain"), "--type needs one of amplitude, impedance, reactance, not \"gain\".");
    EXPECT_EQ(problemOf("--direction left"), "--direction needs one of up, down, alternate, not \"left\".");
    EXPECT_EQ(problemOf("--from 0"), "--from needs a frequency above 0, not \"0\".");
    EXPECT_EQ(problemOf("--to fast"), "--to needs a frequency above 0, not \"fast\".");
    EXPECT_EQ(problemOf("--period 32768"), "--period needs a whole number from 0 to 32767, not \"32768\".");
    EXPECT_EQ(problemOf("--attenuation=-3"), "--attenuation needs a number of dB from 0, not \"-3\".");
    EXPECT_EQ(problemOf("--repeat 11"), "--repeat needs a whole number from 1 to 10, not \"11\".");
    EXPECT_EQ(problemOf("--timeout soon"), "--timeout needs a number of seconds from 0, not \"soon\".");
    EXPECT_EQ(problemOf("--picture-size 99x800"),
              "--picture-size needs a width and a height from 100 to 16384, as 1280x800, not \"99x800\".");
    EXPECT_EQ(
        problemOf("--picture sweep.doc"),
        "--picture needs a name that ends in one of .png, .jpg, .jpeg, .bmp, .wmf, .svg, .pdf, not \"sweep.doc\".");
    EXPECT_EQ(problemOf("--output="), "--output needs a file name, not \"\".");
}

TEST(SweepCommand, TheRangeMustRise)
{
    EXPECT_EQ(problemOf("--from 2k --to 2k"), "--from must be below --to; --direction down sweeps downward.");
    EXPECT_EQ(problemOf("--from 2M"), "--from must be below --to; --direction down sweeps downward.");
}

TEST(SweepCommand, StandardOutputTakesOneThing)
{
    EXPECT_TRUE(sweepOf("--csv -").streams());
    EXPECT_TRUE(sweepOf("--output /dev/stdout").streams());
    EXPECT_TRUE(sweepOf("--picture -").streams());
    EXPECT_FALSE(sweepOf("--csv a.csv --output a.gzd --picture a.png").streams());
    EXPECT_EQ(problemOf("--csv - --output -"), "--output and --csv both want to write standard output.");
    EXPECT_EQ(problemOf("--csv - --picture -"), "--csv and --picture both want to write standard output.");
    EXPECT_EQ(problemOf("--json --csv /dev/stdout"),
              "--json prints to standard output; no file can go there beside it.");
    EXPECT_EQ(problemOf("--output a.csv --csv ./a.csv"), "--output and --csv both want to write a.csv.");
    EXPECT_EQ(problemOf("--output a.png --picture a.png"), "--output and --picture both want to write a.png.");
    EXPECT_EQ(problemOf("--link-log -"), "--link-log needs a file name, not \"-\".");
}

TEST(SweepCommand, OutputsThatCannotBeWrittenAreFoundOutWithoutASweep)
{
    const QTemporaryDir folder;
    SweepOptions options;
    EXPECT_TRUE(checkOutputs(options).ok());
    options.output = OutputFile(folder.filePath(QStringLiteral("a.gzd")));
    EXPECT_TRUE(checkOutputs(options).ok());
    const OutputFile bad(folder.filePath(QStringLiteral("none/a.png")));
    for (OutputFile SweepOptions::*const member : {&SweepOptions::output, &SweepOptions::csv, &SweepOptions::picture}) {
        SweepOptions wrong = options;
        wrong.*member = bad;
        EXPECT_EQ(checkOutputs(wrong).sentence(),
                  QStringLiteral("Cannot write %1: No such file or directory.").arg(bad.name()));
    }
}
