// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/CommandRegistry.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

class CommandRegistryTest : public ::testing::Test
{
protected:
    void add(const char* name, int rules = Command::Always)
    {
        registry.add({.name = name,
                      .text = "T",
                      .statusTip = "tip",
                      .handler = [this] { ++calls; },
                      .rules = rules,
                      .toolBarKey = QLatin1String(name) + QLatin1String(" Key"),
                      .popupEntry = QLatin1String(name) + QLatin1String("Entry")});
    }

    CommandRegistry registry;
    int calls = 0;
};

TEST_F(CommandRegistryTest, aRuleHoldsWhateverElseDoes)
{
    add("document", Command::NeedsDocument);
    add("instrument", Command::NeedsInstrument);
    add("rest", Command::NotDuringTest);
    add("change", Command::NotViewOnly);
    add("both", Command::NeedsDocument | Command::NotDuringTest);
    for (int bits = 0; bits < 16; ++bits) {
        const bool document = bits & 1;
        const bool instrument = bits & 2;
        const bool testRuns = bits & 4;
        const bool viewOnly = bits & 8;
        registry.setConditions({document, instrument, testRuns, viewOnly});
        EXPECT_EQ(registry.isEnabled("document"), document) << bits;
        EXPECT_EQ(registry.isEnabled("instrument"), instrument) << bits;
        EXPECT_EQ(registry.isEnabled("rest"), !testRuns) << bits;
        EXPECT_EQ(registry.isEnabled("change"), !viewOnly) << bits;
        EXPECT_EQ(registry.isEnabled("both"), document && !testRuns) << bits;
    }
}

TEST_F(CommandRegistryTest, theOwnersWordAndTheRulesBothCount)
{
    add("paste", Command::NeedsDocument);
    registry.setEnabled("paste", false);
    registry.setConditions({.document = true});
    EXPECT_FALSE(registry.isEnabled("paste"));
    registry.setEnabled("paste", true);
    EXPECT_TRUE(registry.isEnabled("paste"));
    registry.setConditions({.document = false});
    EXPECT_FALSE(registry.isEnabled("paste"));
}

TEST_F(CommandRegistryTest, aChangeIsToldOnceAndOnlyWhenItIsOne)
{
    add("paste", Command::NeedsDocument);
    const QSignalSpy enabled(&registry, &CommandRegistry::enabledChanged);
    const QSignalSpy checked(&registry, &CommandRegistry::checkedChanged);
    registry.setEnabled("paste", true);
    registry.setConditions({.document = true});
    registry.setConditions({.document = true});
    registry.setConditions({.document = true, .instrument = true});
    EXPECT_EQ(enabled.count(), 1);
    registry.setEnabled("paste", false);
    EXPECT_EQ(enabled.count(), 2);
    registry.setChecked("paste", true);
    registry.setChecked("paste", true);
    EXPECT_EQ(checked.count(), 1);
    EXPECT_TRUE(registry.isChecked("paste"));
}

TEST_F(CommandRegistryTest, aDisabledOrUnknownCommandDoesNothing)
{
    add("save", Command::NeedsDocument);
    EXPECT_FALSE(registry.trigger("save"));
    EXPECT_FALSE(registry.trigger("unknown"));
    EXPECT_FALSE(registry.isEnabled("unknown"));
    EXPECT_EQ(calls, 0);
    registry.setConditions({.document = true});
    EXPECT_TRUE(registry.trigger("save"));
    EXPECT_EQ(calls, 1);
}

TEST_F(CommandRegistryTest, commandsAreFoundByButtonAndPopupEntry)
{
    add("cut");
    add("copy");
    ASSERT_NE(registry.findButton("COPY key"), nullptr);
    EXPECT_EQ(registry.findButton("COPY key")->name, QStringLiteral("copy"));
    EXPECT_EQ(registry.findButton(""), nullptr);
    ASSERT_NE(registry.findPopupEntry("cutEntry"), nullptr);
    EXPECT_EQ(registry.findPopupEntry("CUTENTRY"), nullptr);
    EXPECT_EQ(registry.findPopupEntry(""), nullptr);
    EXPECT_EQ(registry.commands().size(), 2U);
}

TEST_F(CommandRegistryTest, aHandlerMayEndTheRegistry)
{
    auto mortal = std::make_unique<CommandRegistry>();
    int after = 0;
    mortal->add({.name = "exit", .handler = [&] {
                     mortal.reset();
                     ++after;
                 }});
    EXPECT_TRUE(mortal->trigger("exit"));
    EXPECT_EQ(after, 1);
}

TEST_F(CommandRegistryTest, aHandlerMayAddCommands)
{
    registry.add({.name = "more", .handler = [this] {
                      for (int i = 0; i < 100; ++i)
                          add(qPrintable(QString::number(i)));
                  }});
    const Command* before = registry.find("more");
    EXPECT_TRUE(registry.trigger("more"));
    EXPECT_EQ(registry.find("more"), before);
    EXPECT_EQ(registry.commands().size(), 101U);
}

} // namespace
