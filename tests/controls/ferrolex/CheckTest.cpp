// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Ferrolex.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace std::string_literals;

struct Checked
{
    int code;
    std::string text;
};

Checked check(const QByteArray& script, const char* model = "T46", double firmware = 1.28)
{
    Ferrolex ferrolex;
    const int code = ferrolex.CheckBytes(script, firmware, QLatin1String(model));
    QString text;
    ferrolex.GetMessages(Ferrolex::kLongestMessages, text);
    return {code, text.toStdString()};
}

/// The first line of each finding, without what is shown of the script.
std::string heads(const QByteArray& script, const char* model = "T46", double firmware = 1.28)
{
    Ferrolex ferrolex;
    ferrolex.CheckBytes(script, firmware, QLatin1String(model));
    std::string lines;
    for (const ferrolex::Finding& finding : ferrolex.findings())
        lines += std::to_string(finding.line) + ":" + std::to_string(finding.column) + " " +
                 (finding.severity == ferrolex::Finding::Severity::Error ? "error: " : "warning: ") +
                 finding.sentence.toStdString() + "\n";
    return lines;
}

const QByteArray kClean = "new impedance graph \"A\"\nsweep impedance\nsave \"a\"\n";

TEST(Check, FindsNothingInACleanScript)
{
    const Checked checked = check(kClean);
    EXPECT_EQ(checked.code, 0);
    EXPECT_EQ(checked.text, "");
}

TEST(Check, ReadsAnyLineEndAndAByteOrderMark)
{
    for (const char* end : {"\n", "\r\n", "\r"}) {
        QByteArray script = "\xEF\xBB\xBF" + kClean;
        script.replace("\n", end);
        EXPECT_EQ(check(script).code, 0) << end;
        script += "x = 1";
        EXPECT_EQ(heads(script), "4:1 error: A name is given a value by \"let\".\n") << end;
    }
}

TEST(Check, ShowsTheLineWithACaretAndASuggestion)
{
    EXPECT_EQ(check("# first\n\tset  stardt 5\n").text.substr(0, 20), "2:7: error: One of \"");
    const std::string text = check("# Gr\xC3\xB6\xC3\x9F"
                                   "e\nlet a = \"\xC3\xB6\" + b\n")
                                 .text;
    EXPECT_EQ(text, "2:15: error: \"b\" has not been given a value above.\n"
                    "    let a = \"\xC3\xB6\" + b\n"
                    "                  ^\n"s);
    EXPECT_EQ(check("sweep impedanc\n").text,
              "1:7: error: One of \"impedance\", \"amplitude\" is expected, not \"impedanc\".\n"
              "    sweep impedanc\n"
              "          ^\n"
              "    Did you mean \"impedance\"?\n");
}

TEST(Check, GoesOnAfterAMistakeAndReportsInTheOrderOfTheScript)
{
    EXPECT_EQ(heads("let a = 1 +\nset start 1\nend\n"),
              "1:12 error: The line ends where a value is expected.\n"
              "2:11 error: The frequency is 1 Hz, outside 10 Hz to 50 MHz of the T46.\n"
              "3:1 error: There is no block that this \"end\" could end.\n");
}

struct Row
{
    const char* script;
    const char* expected;
};

TEST(Check, TellsEachKindOfMistake)
{
    const Row rows[] = {
        {"", "1:1 error: The script has no statements.\n"},
        {"# nothing\n\n", "1:1 error: The script has no statements.\n"},
        {"measrue", "1:1 error: No statement begins with \"measrue\".\n"},
        {"wait 12q", "1:6 error: \"12q\" is no number.\n"},
        {"notice \"a", "1:8 error: The text has no closing quote.\n"},
        {"notice \"{1\"", "1:9 error: The opening brace has no closing one.\n"},
        {"notice \"1}\"", "1:10 error: The closing brace has no opening one.\n"},
        {"notice \"{1:x}\"", "1:11 error: Behind the colon stands the number of digits, 1 to 15.\n"},
        {"wait 1 $", "1:8 error: The character \"$\" has no meaning here.\n"},
        {"wait (1", "1:8 error: The line ends where a closing bracket is expected.\n"},
        {"wait \"1\"", "1:6 error: This is not a number, which is expected here.\n"},
        {"wait 1 = 1", "1:6 error: This is not a number, which is expected here.\n"},
        {"if 1\nend", "1:4 error: This is not a condition, which is expected here.\n"},
        {"let a = 1 = 1", "1:1 error: A name stands for a number or a text, not for a condition.\n"},
        {"let max = 1", "1:5 error: \"max\" is a word of the language and cannot be a name.\n"},
        {"let a = 1\nlet a = \"b\"", "2:5 error: \"a\" stands for a number since line 1.\n"},
        {"wait a", "1:6 error: \"a\" has not been given a value above.\n"},
        {"if 1 < 2\nlet a = 1\nend\nwait a", "4:6 error: \"a\" is not known here: it was first given a value inside "
                                             "the block of line 2 and ended with it.\n"},
        {"wait 1/0", "1:6 error: This divides by zero.\n"},
        {"wait smallest level", "1:6 error: Nothing has been measured above this line.\n"},
        {"if 1 < 2\nwait 1", "1:1 error: The block that \"if\" begins has no \"end\".\n"},
        {"else\nwait 1", "1:1 error: There is no \"if\" that this \"else\" belongs to.\n"},
        {"if 1<2\nwait 1\nelse\nelse\nend", "4:1 error: This \"if\" has an \"else\" already.\n"},
        {"repeat 2 times\nwait 1\nend if",
         "3:5 error: The block of line 1 was begun by \"repeat\" and ends with \"end\" or \"end repeat\".\n"},
        {"leave\n", "1:1 error: There is no loop to leave here.\n"},
        {"repeat 2000000 times\nwait 1\nend", "1:8 error: A loop runs 0 to 1000000 times.\n"},
        {"for i from 1 to 2 step 0\nwait 1\nend", "1:24 error: With a step of 0 the loop never ends.\n"},
        {"for i from 1 to 2\nlet i = 3\nend", "2:5 error: \"i\" is counted by its loop and cannot be changed in it.\n"},
        {"do x", "1:4 error: There is no procedure \"x\" above.\n"},
        {"procedure x\ndo x\nend\ndo x", "2:4 error: A procedure cannot call itself.\n"},
        {"procedure x\nprocedure y\nwait 1\nend\ndo y\ndo x\nend\ndo x\ndo y",
         "2:1 error: A procedure cannot stand inside a block.\n5:4 error: There is no procedure \"y\" above.\n"
         "6:4 error: A procedure cannot call itself.\n"},
        {"procedure x with a\nwait a\nend\ndo x", "4:4 error: \"x\" takes 1 values, not 0.\n"},
        {"procedure x\nwait 1\nend\nprocedure x\nwait 1\nend\ndo x",
         "4:11 error: There is a procedure \"x\" already.\n"},
        {"repeat until stopped\nwait 1\nend",
         "1:1 error: This loop has no bound, and neither a measurement nor a question in it.\n"},
        {"let a = 1\nlet a = 2\nrepeat while a < 3\nwait 1\nend",
         "3:1 error: This loop has no bound, and neither a measurement nor a question in it.\n"},
        {"new impedance graph \"a\"\ntest mask of pen 1\nsave \"a\"",
         "2:1 error: There is no mask to test against: nothing above loads a plot.\n"},
        {"load \"m.gzd\"\nnew impedance graph \"a\"\ntest mask of pen 1\nsave \"a\"",
         "3:1 error: There is no mask to test against: the active graph is a new one.\n"},
        {"new impedance graph \"a\"\nsave \"a/b\"", "2:6 error: A file name cannot have a \"/\".\n"},
        {"new impedance graph \"a\"\nsave \"\"", "2:6 error: The name is empty.\n"},
        {"for i from 1 to 2\nnew impedance graph \"a\"\nsave \"a{i}:b\"\nend",
         "3:6 error: A file name cannot have a \":\".\n"},
        {"use pen 11", "1:9 error: The pen is 11, outside 1 to 10.\n"},
        {"use pen 0", "1:9 error: The pen is 0, outside 1 to 10.\n"},
        {"use pen 1.5", "1:9 error: The pen is 1.5, which is no whole number.\n"},
        {"needs model \"T47\"\nwait 1", "1:13 error: There is no model \"T47\".\n"},
        {"needs model \"DT46\"\nwait 1", "1:13 error: The script is for the DT46; a T46 is connected.\n"},
        {"needs firmware 1.3\nwait 1", "1:16 error: The script needs firmware 1.3; the instrument has 1.28.\n"},
        {"export options header on header off", "1:26 error: \"header\" stands twice.\n"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(heads(row.script), row.expected) << row.script;
}

TEST(Check, WarnsOfWhatIsMeantOtherwise)
{
    const Row rows[] = {
        {"new impedance graph \"a\"\nsweep impedance",
         "2:1 warning: The results of this sweep are never saved, exported or printed.\n"},
        {"new impedance graph \"a\"\nsweep impedance\nclose graph",
         "3:1 warning: The graph is closed before its results are saved, exported or printed.\n"},
        {"sweep impedance\nsave \"a\"", "1:1 warning: There is no graph that this sweep could go to.\n"},
        {"save \"a\"", "1:1 warning: There is no graph yet; without one this does nothing.\n"},
        {"notice \"Gr\xC3\xB6\xC3\x9F"
         "e\"",
         "1:8 warning: Characters outside ASCII reach the host as \"?\".\n"},
        {"notice \"1234567890123456789012345678901234567890123456789012345678901+\"",
         "1:8 warning: Of this text only the first 61 characters reach the host: "
         "\"1234567890123456789012345678901234567890123456789012345678901\".\n"},
        {"new reactance graph \"a\"\nsave \"a\"\nload \"a\"",
         "3:1 warning: The reactance plot was saved under this very name, and the host refuses to load a name without "
         "an "
         "extension.\n"},
        {"load \"a\"", "1:1 warning: The host loads only names with \".gad\", \".gzd\" or \".gxd\".\n"},
        {"finish\nwait 1", "2:1 warning: This statement is never reached.\n"},
        {"quit program\nwait 1", "2:1 warning: This statement is never reached.\n"},
        {"if 1 > 2\nwait 1\nend", "2:1 warning: This statement is never reached.\n"},
        {"repeat until stopped\nprompt \"a\"\nend\nwait 1", "4:1 warning: This statement is never reached.\n"},
        {"procedure x\nwait 1\nend\nwait 1", "1:1 warning: This procedure is never called.\n"},
        {"set repeat on\nnew impedance graph \"a\"\nsweep impedance\nsave \"a\"",
         "3:1 warning: With repeat on this sweep never ends by itself.\n"},
        {"set start 10k\nset end 100k\nset points 100\nnew impedance graph \"a\"\nsweep impedance\nanalyse pen 1\nsave "
         "\"a\"",
         "6:1 warning: The sweep is too coarse for this analysis: its points are 2.4 % of the frequency apart, where 1 "
         "% "
         "is wanted.\n"},
        {"new amplitude graph \"a\"\nsweep amplitude\nanalyse pen 1\nsave \"a\"",
         "3:1 warning: An amplitude graph is not analysed.\n"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(heads(row.script), row.expected) << row.script;
        EXPECT_EQ(check(row.script).code, 1) << row.script;
    }
}

TEST(Check, DoesNotWarnWhereTheRunDecides)
{
    for (const char* script : {
             "repeat until stopped\nprompt \"a\"\nleave\nend\nwait 1",
             "new impedance graph \"a\"\nsweep impedance\nif last level > 3\nsave \"a\"\nend",
             "procedure p\nload \"m.gzd\"\nend\ndo p\ntest mask of pen 1\nexport all pens to \"a\"",
             "for i from 1 to 2\nload \"m.gzd\"\ntest mask of pen i\nend",
             "load \"m.gzd\"\nnew impedance graph \"a\"\nclose graph\ntest mask of pen 1",
             "spot impedance 1k\nif last level > 2\nload \"m.gzd\"\nend\ntest mask of pen 1",
             "let verbose = 0\nif verbose = 1\nwait 1\nend\nrepeat verbose times\nwait 1\nend",
             "set start 10k\nset end 11k\nset points 100\nnew impedance graph \"a\"\nsweep impedance\nanalyse pen "
             "1\nsave \"a\"",
         })
        EXPECT_EQ(heads(script), "") << script;
}

TEST(Check, HoldsRangesAgainstTheConnectedModel)
{
    const QByteArray script = "set end 6M\nset attenuation 2\n";
    EXPECT_EQ(heads(script, "T46"), "");
    EXPECT_EQ(heads(script, "PELLFERN"), "1:9 error: The frequency is 6 MHz, outside 10 Hz to 5 MHz of the DT46.\n"
                                         "2:17 error: The attenuation step is 2, outside 0 to 0 of the DT46.\n");
    EXPECT_EQ(heads(script, ""), "");
    EXPECT_EQ(heads("set end 60M\n", ""), "1:9 error: The frequency is 60 MHz, outside 10 Hz to 50 MHz (no known "
                                          "instrument is connected, so the widest model, the T46, was taken).\n");
    EXPECT_EQ(heads("needs firmware 1.3\nwait 1\n", "T46", 0), "") << "an unknown firmware is no old one";
}

TEST(Check, FollowsNamesThatHaveOneValueOnly)
{
    EXPECT_EQ(heads("let top = 60M\nset end top\n"),
              "2:9 error: The frequency is 60 MHz, outside 10 Hz to 50 MHz of the T46.\n");
    EXPECT_EQ(heads("let top = 60M\nlet top = 1M\nset end top\n"), "");
}

TEST(Check, ReadsNumbersAsPeopleOfTheFieldWriteThem)
{
    for (const char* number : {"4k7", "4.7k", "4700", "4.7 kHz", "4k7Hz", "4.7e3", "47c", "0.0047M"})
        EXPECT_EQ(heads("set start " + QByteArray(number) + "\nrepeat 4700 - " + number + " times\nwait 1\nend\n"),
                  "3:1 warning: This statement is never reached.\n")
            << number;
    EXPECT_EQ(heads("set period 250ms\nset period 250 ms\nwait 250m\n"), "");
    EXPECT_EQ(heads("set period 33\n"), "1:12 error: The period is 33 s, outside 0 s to 32.767 s.\n");
}

TEST(Check, RefusesWhatIsNoScript)
{
    EXPECT_EQ(check(QByteArray(1024 * 1024 + 1, '\n')).text,
              "1:1: error: The script is larger than 1 MiB; split it into several.\n");
    EXPECT_EQ(check(QByteArray("a\0b", 3)).text, "1:1: error: This is no script: it holds bytes that no text has.\n");
    EXPECT_EQ(check("\xff\xfe").text, "1:1: error: The script is no UTF-8 text; save it with the encoding UTF-8.\n");
    EXPECT_EQ(check("\xff\xfe").code, Ferrolex::Unreadable);
    EXPECT_EQ(check(QByteArray(1024 * 1024, '\n')).code, Ferrolex::Errors) << "the largest is read";
}

TEST(Check, ReadsFiles)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("a.mgs");
    Ferrolex ferrolex;
    EXPECT_EQ(ferrolex.CheckScript(name, 1.28, "T46"), Ferrolex::Unreadable);
    EXPECT_NE(ferrolex.findings().at(0).sentence.indexOf(name), -1);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kClean);
    file.close();
    EXPECT_EQ(ferrolex.CheckScript(name, 1.28, "T46"), Ferrolex::Clean);
}

TEST(Check, NeverExceedsItsMessagesAndCountsTheRest)
{
    Ferrolex ferrolex;
    EXPECT_EQ(ferrolex.CheckBytes(QByteArray("oops\n").repeated(3000), 1.28, "T46"), Ferrolex::Errors);
    QString text;
    ferrolex.GetMessages(31200, text);
    EXPECT_LE(text.size(), 31200);
    EXPECT_GT(text.size(), 31000);
    const auto shown = text.count("error:");
    EXPECT_TRUE(text.endsWith(QString("%1 further messages are left out.\n").arg(3000 - shown)))
        << text.right(80).toStdString();
    ferrolex.GetMessages(100, text);
    EXPECT_EQ(text, "3000 further messages are left out.\n");
    ferrolex.GetMessages(1'000'000, text);
    EXPECT_LE(text.size(), 31200);
    ferrolex.GetMessages(5, text);
    EXPECT_LE(text.size(), 5);
}

TEST(Check, TellsWhichMeasuresTheAnalysesShow)
{
    Ferrolex ferrolex;
    const auto measures = [&ferrolex] {
        return QList<int>{ferrolex.ShowF1(), ferrolex.ShowF2(), ferrolex.ShowFr(), ferrolex.ShowZr(), ferrolex.ShowQ()};
    };
    EXPECT_EQ(measures(), (QList<int>{0, 0, 0, 0, 0}));
    ferrolex.CheckBytes("load \"a.gzd\"\nanalyse pen 1 showing F1, Q\nanalyse pen 2 mode 3 showing Zr and F1\n", 1.28,
                        "");
    EXPECT_EQ(measures(), (QList<int>{1, 0, 0, 1, 1}));
    ferrolex.CheckBytes("load \"a.gzd\"\nanalyse pen 1\n", 1.28, "");
    EXPECT_EQ(measures(), (QList<int>{1, 1, 1, 1, 1}));
    ferrolex.CheckBytes("wait 1\n", 1.28, "");
    EXPECT_EQ(measures(), (QList<int>{0, 0, 0, 0, 0}));
    ferrolex.SetAnalysisMode(7);
    EXPECT_EQ(ferrolex.AnalysisMode(), 7);
}

TEST(Check, SurvivesScriptsThatNestWithoutEnd)
{
    EXPECT_EQ(check(QByteArray("if 1 < 2\n").repeated(100000)).code, 2);
    EXPECT_EQ(check("wait " + QByteArray("(").repeated(500000)).code, 2);
    EXPECT_EQ(check("wait " + QByteArray("- ").repeated(400000) + "1").code, 2);
    EXPECT_EQ(check("wait 1" + QByteArray("+1").repeated(400000)).code, 2);
    EXPECT_EQ(check("notice \"" + QByteArray("{1}").repeated(300)).code, 2);
    EXPECT_EQ(check("if 1 < 2\n" + QByteArray("else if 1 < 2\n").repeated(60000) + "end\n").code, 2);
}

} // namespace
