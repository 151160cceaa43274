// SPDX-License-Identifier: GPL-3.0-or-later
// The documents name what the program has.
#include "sim/Options.h"
#include "sim/port/FaultPlan.h"
#include "tests/sim/SimBench.h"

#include <QFile>
#include <QRegularExpression>

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
