// SPDX-License-Identifier: GPL-3.0-or-later
// The documents name what the program has.
#include "sim/Options.h"
#include "sim/port/FaultPlan.h"
#include "sim/script/FrameScript.h"
#include "tests/sim/SimBench.h"

#include <QFile>
#include <QRegularExpression>

#include <map>
#include <set>

namespace {

QString read(const char* name)
{
    QFile file(QLatin1String(MG_SOURCE_DIR "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

} // namespace

TEST(Documents, TheProtocolDescribesEveryCommandAndEveryFrameOfAnEnquiry)
{
    const QString text = read("docs/instrument-protocol.md");
    for (const QString& word : sim::Instrument::commandWords())
        EXPECT_TRUE(text.contains(QRegularExpression("\n\\| `" + word + " ?`"))) << word.toStdString();
    SimBench bench;
    std::string order;
    for (const ReadFrame& frame : bench.ask("enquire 1.28")) {
        order += frame.code;
        order += frame.code == 'l' ? std::string("(") + frame.field + ") " : " ";
        EXPECT_TRUE(text.contains(QRegularExpression(QString("\n\\| `%1` ").arg(QLatin1Char(frame.code)))))
            << frame.code;
    }
    order.insert(order.size() - 2, "[T] ");
    EXPECT_TRUE(text.contains("    " + QString::fromStdString(order).trimmed() + "\n")) << order;
}

TEST(Documents, TheProtocolTellsTheFrameThatEachCommandIsAnsweredWith)
{
    const QString text = read("docs/instrument-protocol.md");
    static const QRegularExpression row("^\\| `([a-z]+) ?` \\|.*\\|[^|`]*`(\\w)`[^|]*\\|$",
                                        QRegularExpression::MultilineOption);
    // So that a calibration has no need to tell another number of points first.
    const std::map<std::string, std::string> before{{"calibrate", "points 512\r"},
                                                    {"phasecal", "points 256\r"},
                                                    {"diagnose", "points 1007\r"},
                                                    {"run", "loadscript 3\rabc"}};
    const std::map<std::string, std::string> arguments{{"loadscript", "3\rabc"}, {"setserial", "T46-7"}};
    int rows = 0;
    const QString commands =
        text.mid(text.indexOf("\n## Commands"), text.indexOf("\n## Connecting") - text.indexOf("\n## Commands"));
    for (auto matches = row.globalMatch(commands); matches.hasNext(); ++rows) {
        const QRegularExpressionMatch match = matches.next();
        const std::string word = match.captured(1).toStdString();
        SimBench bench([](sim::Instrument::Setup& setup) {
            setup.scriptRunner = std::make_unique<sim::FrameScript>(sim::FrameScript::fromText("wait 10\n").value());
        });
        if (const auto prepared = before.find(word); prepared != before.end())
            bench.write(prepared->second);
        const auto argument = arguments.find(word);
        const std::vector<ReadFrame> answer =
            bench.ask(argument == arguments.end() ? word : word + ' ' + argument->second);
        ASSERT_FALSE(answer.empty()) << word;
        EXPECT_EQ(std::string(1, answer[0].code), match.captured(2).toStdString()) << word;
    }
    EXPECT_EQ(rows, sim::Instrument::commandWords().size());
}

TEST(Documents, TheExampleFramesOfTheProtocolAreThoseOfTheSimulator)
{
    const QString text = read("docs/instrument-protocol.md");
    for (const sim::Frame& frame :
         {sim::numberFrame('F', 1, {40000.25, 15.497, 12.375, -1, 511}),
          sim::numberFrame('s', 0, {0, 1000, 1000000, 0, 0}), sim::textFrame('V', 0, "T46-0001")}) {
        const QString line = QString::fromLatin1(frame.data(), 65);
        EXPECT_TRUE(text.contains("\n    " + (line.startsWith('V') ? line.trimmed() : line) + "\n"))
            << line.toStdString();
    }
}

TEST(Documents, TheManPageHasEveryOptionAndFault)
{
    const QString page = read("packaging/man/marrowick-sim.1").replace("\\-", "-");
    std::set<QString> options;
    auto matches =
        QRegularExpression("^  (--[a-z-]+)", QRegularExpression::MultilineOption).globalMatch(sim::Options::helpText());
    while (matches.hasNext())
        options.insert(matches.next().captured(1));
    EXPECT_GT(options.size(), 10u);
    for (const QString& option : options)
        EXPECT_TRUE(page.contains(option)) << option.toStdString();
    for (const QString& fault : sim::FaultPlan::names()) {
        sim::FaultPlan plan;
        ASSERT_TRUE(plan.add(fault).ok());
        const auto kind = static_cast<std::size_t>(sim::FaultPlan::names().indexOf(fault));
        EXPECT_TRUE(page.contains(QString(".BR %1 \" (%2)\"").arg(fault).arg(plan.everyFrames[kind])))
            << fault.toStdString();
    }
}
