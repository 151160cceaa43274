// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include <gtest/gtest.h>

using namespace cli;

namespace {

QStringList arguments(const char* text)
{
    return QStringList(QStringLiteral("marrowick")) + QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

SweepOptions sweepOf(const char* text)
{
    const ValueOr<CommandLine> result = readCommandLine(arguments(text));
    EXPECT_TRUE(result) << result.sentence().toStdString();
    SweepOptions wrong;
    wrong.points = -1;
    return result && result.value().sweep ? *result.value().sweep : wrong;
}

std::string problemOf(const char* text)
{
    return readCommandLine(arguments(text)).sentence().toStdString();
}

} // namespace

TEST(CommandLine, ASweepWithoutOptionsHasTheDocumentedDefaults)
{
    const SweepOptions options = sweepOf("sweep");
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
    EXPECT_TRUE(options.output.isEmpty() && options.csv.isEmpty() && options.picture.isEmpty());
    EXPECT_EQ(options.pictureSize, QSize(1280, 800));
    EXPECT_EQ(options.timeout, 0);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.json);
}

TEST(CommandLine, EveryOptionOfASweepIsRead)
{
    const SweepOptions options =
        sweepOf("sweep --device T46-7 --type reactance --from 38k --to 4.2e4 --points 512 --period 3 --attenuation 20 "
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
    EXPECT_EQ(options.output, QStringLiteral("a.gxd"));
    EXPECT_EQ(options.csv, QStringLiteral("b.csv"));
    EXPECT_EQ(options.picture, QStringLiteral("c.png"));
    EXPECT_EQ(options.pictureSize, QSize(640, 480));
    EXPECT_EQ(options.linkLog, QStringLiteral("d.log"));
    EXPECT_EQ(options.timeout, 2.5);
    EXPECT_TRUE(options.quiet);
    EXPECT_TRUE(options.json);
    EXPECT_EQ(sweepOf("sweep --type amplitude").type, 1);
    EXPECT_EQ(sweepOf("sweep --direction alternate").direction, SweepOptions::Alternate);
}

TEST(CommandLine, AWrongValueIsToldWithItsOptionAndWhatIsWanted)
{
    EXPECT_EQ(problemOf("sweep --points 1"), "--points needs a whole number from 2 to 1024, not \"1\".");
    EXPECT_EQ(problemOf("sweep --points 1025"), "--points needs a whole number from 2 to 1024, not \"1025\".");
    EXPECT_EQ(problemOf("sweep --points 10.5"), "--points needs a whole number from 2 to 1024, not \"10.5\".");
    EXPECT_EQ(problemOf("sweep --type gain"), "--type needs one of amplitude, impedance, reactance, not \"gain\".");
    EXPECT_EQ(problemOf("sweep --direction left"), "--direction needs one of up, down, alternate, not \"left\".");
    EXPECT_EQ(problemOf("sweep --from 0"), "--from needs a frequency above 0, not \"0\".");
    EXPECT_EQ(problemOf("sweep --to fast"), "--to needs a frequency above 0, not \"fast\".");
    EXPECT_EQ(problemOf("sweep --period 32768"), "--period needs a whole number from 0 to 32767, not \"32768\".");
    EXPECT_EQ(problemOf("sweep --attenuation=-3"), "--attenuation needs a number of dB from 0, not \"-3\".");
    EXPECT_EQ(problemOf("sweep --repeat 11"), "--repeat needs a whole number from 1 to 10, not \"11\".");
    EXPECT_EQ(problemOf("sweep --timeout soon"), "--timeout needs a number of seconds from 0, not \"soon\".");
    EXPECT_EQ(problemOf("sweep --picture-size 99x800"),
              "--picture-size needs a width and a height from 100 to 16384, as 1280x800, not \"99x800\".");
    EXPECT_EQ(problemOf("sweep --picture sweep.doc"),
              "--picture needs a name that ends in one of .png, .jpg, .jpeg, .bmp, .svg, .pdf, not \"sweep.doc\".");
    EXPECT_EQ(problemOf("sweep --output="), "--output needs a file name, not \"\".");
}

TEST(CommandLine, TheRangeMustRise)
{
    EXPECT_EQ(problemOf("sweep --from 2k --to 2k"), "--from must be below --to; --direction down sweeps downward.");
    EXPECT_EQ(problemOf("sweep --from 2M"), "--from must be below --to; --direction down sweeps downward.");
}

TEST(CommandLine, UnknownWordsAreRefused)
{
    EXPECT_EQ(problemOf(""), "A command is missing; marrowick --help lists them.");
    EXPECT_EQ(problemOf("measure"), "\"measure\" is no command; marrowick --help lists them.");
    EXPECT_EQ(problemOf("sweep 38k"), "\"38k\" has no place here; options begin with \"--\".");
    EXPECT_EQ(problemOf("devices --points 3"), "Unknown option 'points'.");
    EXPECT_FALSE(problemOf("sweep --device").empty());
}

TEST(CommandLine, DevicesKnowsItsOwnOption)
{
    const ValueOr<CommandLine> plain = readCommandLine(arguments("devices"));
    ASSERT_TRUE(plain && plain.value().devices);
    EXPECT_FALSE(plain.value().devices->json);
    const ValueOr<CommandLine> json = readCommandLine(arguments("devices --json"));
    ASSERT_TRUE(json && json.value().devices);
    EXPECT_TRUE(json.value().devices->json);
    EXPECT_FALSE(json.value().sweep);
}

TEST(CommandLine, ShowTakesFilesAndAPen)
{
    const ValueOr<CommandLine> many = readCommandLine(arguments("show a.gzd --json b.gad"));
    ASSERT_TRUE(many && many.value().show);
    EXPECT_EQ(many.value().show->files, (QStringList{QStringLiteral("a.gzd"), QStringLiteral("b.gad")}));
    EXPECT_TRUE(many.value().show->json);
    EXPECT_EQ(many.value().show->pointsOfPen, 0);
    const ValueOr<CommandLine> points = readCommandLine(arguments("show --points 10 a.gzd"));
    ASSERT_TRUE(points && points.value().show);
    EXPECT_EQ(points.value().show->pointsOfPen, 10);
    EXPECT_FALSE(points.value().show->json);
    EXPECT_FALSE(points.value().sweep || points.value().devices);

    EXPECT_EQ(problemOf("show"), "A plot file is missing.");
    for (const char* pen : {"0", "11", "-1", "two", "1.5"})
        EXPECT_EQ(problemOf((std::string("show a.gzd --points=") + pen).c_str()),
                  std::string("--points needs a pen from 1 to 10, not \"") + pen + "\".");
    EXPECT_EQ(problemOf("show a.gzd --points 1 --json"), "--points prints a table; --json has no place beside it.");
    EXPECT_EQ(problemOf("show a.gzd b.gzd --points 1"), "--points takes one plot file, not 2.");
    const ValueOr<CommandLine> help = readCommandLine(arguments("show --help"));
    ASSERT_TRUE(help);
    EXPECT_TRUE(help.value().text.startsWith(QStringLiteral("Usage: marrowick show ")));
    EXPECT_TRUE(help.value().text.contains(QStringLiteral("FILE...")));
}

TEST(CommandLine, HelpListsEveryOptionOfTheCommandAndTheExitCodes)
{
    const ValueOr<CommandLine> sweep = readCommandLine(arguments("sweep --help --points 3"));
    ASSERT_TRUE(sweep);
    EXPECT_FALSE(sweep.value().sweep);
    for (const char* text :
         {"--device",       "--type",     "--from",    "--to",     "--points", "--period",  "--attenuation",
          "--direction",    "--no-phase", "--linear",  "--repeat", "--output", "--csv",     "--picture ",
          "--picture-size", "--link-log", "--timeout", "--quiet",  "--json",   "Exit codes"})
        EXPECT_TRUE(sweep.value().text.contains(QLatin1String(text))) << text;
    EXPECT_TRUE(sweep.value().text.startsWith(QStringLiteral("Usage: marrowick sweep ")));
    const ValueOr<CommandLine> overview = readCommandLine(arguments("--help"));
    ASSERT_TRUE(overview);
    for (const char* command : {"devices", "sweep", "show"})
        EXPECT_TRUE(overview.value().text.contains(QLatin1String(command))) << command;
}
