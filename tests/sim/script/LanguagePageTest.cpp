// SPDX-License-Identifier: GPL-3.0-or-later
// Holds docs/script-language.md and the example scripts against the parser and the interpreter.
#include "controls/ferrolex/Ferrolex.h"
#include "controls/ferrolex/StatementTable.h"
#include "sim/script/Interpreter.h"
#include "tests/sim/script/PlayedHost.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <map>

namespace {

QString contentOf(const QString& name)
{
    QFile file(QStringLiteral(MG_SOURCE_DIR) + QLatin1Char('/') + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// How the page shows a statement.
QString formOf(const ferrolex::Action& action)
{
    static const std::map<ferrolex::ArgumentType, const char*> names{
        {ferrolex::ArgumentType::Frequency, "FREQUENCY"}, {ferrolex::ArgumentType::Points, "POINTS"},
        {ferrolex::ArgumentType::Period, "PERIOD"},       {ferrolex::ArgumentType::Attenuation, "ATTENUATION"},
        {ferrolex::ArgumentType::Samples, "SAMPLES"},     {ferrolex::ArgumentType::Pen, "PEN"},
        {ferrolex::ArgumentType::Duration, "DURATION"},   {ferrolex::ArgumentType::Digits, "DIGITS"},
        {ferrolex::ArgumentType::Mode, "MODE"},           {ferrolex::ArgumentType::Text, "TEXT"},
        {ferrolex::ArgumentType::FileName, "FILE"},       {ferrolex::ArgumentType::Measures, "MEASURES"},
    };
    const auto group = [&action](const ferrolex::Action::Group& parts) {
        QStringList words;
        for (const ferrolex::Action::Part& part : parts) {
            if (part.slot < 0) {
                words.append(QString::fromStdString(part.word));
                continue;
            }
            const ferrolex::Action::Slot& slot = action.slots[static_cast<std::size_t>(part.slot)];
            QStringList choices;
            for (const auto& choice : slot.choices)
                choices.append(QString::fromStdString(choice.first));
            words.append(choices.isEmpty() ? QString::fromLatin1(names.at(slot.type)) : choices.join(QLatin1Char('|')));
        }
        return words.join(QLatin1Char(' '));
    };
    QString form = group(action.head);
    for (const ferrolex::Action::Group& option : action.options)
        form += QStringLiteral(" [") + group(option) + QLatin1Char(']');
    return form;
}

struct Example
{
    QString heading;
    QByteArray script;
    std::string frames;
};

/// Every script of the page with the frames that stand behind it.
std::vector<Example> examplesOf(const QString& page)
{
    std::vector<Example> examples;
    QString heading;
    QString* block = nullptr;
    QString script, frames;
    for (const QString& line : page.split(QLatin1Char('\n'))) {
        if (line == QLatin1String("```script")) {
            script.clear();
            block = &script;
        } else if (line == QLatin1String("```frames")) {
            frames.clear();
            block = &frames;
        } else if (line.startsWith(QLatin1String("```"))) {
            if (block == &frames)
                examples.push_back({heading, script.toUtf8(), frames.toStdString()});
            block = nullptr;
        } else if (block) {
            *block += line + QLatin1Char('\n');
        } else if (line.startsWith(QLatin1String("### "))) {
            heading = line.mid(4);
        }
    }
    return examples;
}

std::string messages(const Ferrolex& ferrolex)
{
    QString text;
    ferrolex.GetMessages(Ferrolex::kLongestMessages, text);
    return text.toStdString();
}

constexpr const char* kPage = "docs/script-language.md";
constexpr const char* kScripts = "docs/examples/scripts";

/// Runs an example script to its end, or up to its 40th answer.
std::string framesOf(const QString& name, bool& ended)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    host.stopsAt = 40;
    ended = host.run(interpreter, contentOf(QLatin1String(kScripts) + QLatin1Char('/') + name).toUtf8());
    EXPECT_EQ(host.failure, "") << name.toStdString();
    return host.text();
}

} // namespace

TEST(LanguagePage, HasEachStatementUnderAHeadingOfItsOwnWithAnExample)
{
    std::map<QString, int> examples;
    for (const Example& example : examplesOf(contentOf(QLatin1String(kPage))))
        ++examples[example.heading];
    for (const ferrolex::Action& action : ferrolex::actions())
        EXPECT_EQ(examples[QStringLiteral("`%1`").arg(formOf(action))], 1) << formOf(action).toStdString();
}

TEST(LanguagePage, EachExampleIsCleanAndCausesTheFramesThatItSays)
{
    const std::vector<Example> examples = examplesOf(contentOf(QLatin1String(kPage)));
    ASSERT_GT(examples.size(), ferrolex::actions().size());
    for (const Example& example : examples) {
        Ferrolex ferrolex;
        EXPECT_EQ(ferrolex.CheckBytes(example.script, 1.28, QStringLiteral("T46")), Ferrolex::Clean)
            << example.heading.toStdString() << '\n'
            << messages(ferrolex);
        sim::Interpreter interpreter;
        PlayedHost host;
        EXPECT_TRUE(host.run(interpreter, example.script));
        EXPECT_EQ(host.failure, "") << example.heading.toStdString();
        EXPECT_EQ(host.text(), example.frames) << example.heading.toStdString();
    }
}

TEST(ExampleScripts, AreCleanForTheModelTheyAreFor)
{
    const QStringList names = QDir(QStringLiteral(MG_SOURCE_DIR) + QLatin1Char('/') + QLatin1String(kScripts))
                                  .entryList({QStringLiteral("*.mgs")});
    EXPECT_EQ(names.size(), 6);
    for (const QString& name : names) {
        Ferrolex ferrolex;
        const QByteArray script = contentOf(QLatin1String(kScripts) + QLatin1Char('/') + name).toUtf8();
        for (const char* model : {"T46", ""})
            EXPECT_EQ(ferrolex.CheckBytes(script, 1.28, QLatin1String(model)), Ferrolex::Clean)
                << name.toStdString() << '\n'
                << messages(ferrolex);
    }
}

TEST(ExampleScripts, RunToTheirEndWithAHostThatAnswers)
{
    bool ended = false;
    EXPECT_EQ(framesOf(QStringLiteral("zoom-on-resonance.mgs"), ended),
              "> startfreq 20000\n> endfreq 100000\n> points 400\n> phase 1\n> repeat 0\n> linear 0\nU 1 Overview\n"
              "Z 0 20 kHz to 100 kHz\n> imptest\nb 0 overview\nr 0 Resonance near 39000 Hz\n> startfreq 37050\n"
              "> endfreq 40950\n> points 800\nU 1 Resonance near 39000 Hz\nZ 0 Zoom\n> imptest\nv 0 65535 0 0 0 0\n"
              "b 0 resonance\ni 2 resonance\n");
    EXPECT_TRUE(ended);
    const std::string report = framesOf(QStringLiteral("capacitance-and-resonance.mgs"), ended);
    EXPECT_TRUE(ended);
    EXPECT_NE(report.find("v 0 1 0 0 0 0\nb 0 capacitance-and-resonance\n"), std::string::npos) << report;
    const std::string series = framesOf(QStringLiteral("attenuation-series.mgs"), ended);
    EXPECT_TRUE(ended);
    EXPECT_NE(series.find("a 5 0 0 0 0 0\nZ 4 -40 dB\n> atten 4\n> amptest\nr 0 -40 dB: at most 3000 dB\n> atten 0\n"),
              std::string::npos)
        << series;
}

TEST(ExampleScripts, TheInspectionSweepsTestsSavesAndExportsEachPart)
{
    sim::Interpreter interpreter;
    PlayedHost host;
    EXPECT_TRUE(
        host.run(interpreter, contentOf(QStringLiteral("docs/examples/scripts/incoming-inspection.mgs")).toUtf8()));
    EXPECT_EQ(std::count(host.log.begin(), host.log.end(), "> imptest"), 10);
    EXPECT_EQ(std::count(host.log.begin(), host.log.end(), "q 0 0 1 0 0 0"), 10);
    for (const char* line : {"b 0 transducer-01", "o 0 transducer-01", "b 0 transducer-10", "o 0 transducer-10",
                             "m 0 0 0 6 1 3", "T 0 All 10 transducers are measured"})
        EXPECT_NE(std::find(host.log.begin(), host.log.end(), line), host.log.end()) << line;
}

TEST(ExampleScripts, TheLineAndTheBurnInGoOnUntilTheyAreStopped)
{
    bool ended = true;
    const std::string line = framesOf(QStringLiteral("serial-numbered-line.mgs"), ended);
    EXPECT_FALSE(ended);
    EXPECT_NE(line.find("T 0 Part 000002 is good\nb 0 part-000002\nj 0 0 0 0 0 0\nr 0 2 good, 0 bad\n"
                        "p 1 Go on with the next part?\nf 0 Insert part 000003\n"),
              std::string::npos)
        << line;
    const std::string burnIn = framesOf(QStringLiteral("burn-in.mgs"), ended);
    EXPECT_FALSE(ended);
    EXPECT_NE(burnIn.find("b 0 burn-in-0002\n"), std::string::npos) << burnIn;
    EXPECT_NE(burnIn.find("Z 9 Sweep 20\n> imptest\nr 0 Sweep 20: 39000 Hz\n"), std::string::npos) << burnIn;
}
