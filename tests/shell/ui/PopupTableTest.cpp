// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/PopupTable.h"

#include "shell/ui/MainWindowHarness.h"

#include <QSet>

namespace {

class PopupTableTest : public MainWindowHarness
{};

TEST_F(PopupTableTest, entriesKeepTheNumbersThatStandInPlotFiles)
{
    const std::pair<const char*, int> expected[] = {
        {"TestSettings", 0}, {"ViewOptions", 1}, {"AddText", 2}, {"Analysis", 3},    {"Loop", 4},
        {"MarkPoints", 7},   {"Cut", 8},         {"Copy", 9},    {"Paste", 10},      {"ZoomExtents", 11},
        {"UndoZoom", 12},    {"RedoZoom", 13},   {"Export", 14}, {"Properties", 15},
    };
    const auto table = popupTable();
    ASSERT_EQ(table.size(), std::size(expected));
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_STREQ(table[i].identifier, expected[i].first);
        EXPECT_EQ(table[i].number, expected[i].second) << table[i].identifier;
    }
}

TEST_F(PopupTableTest, everyEntryOfTheTableHasItsCommandAndEveryCommandOfThePopupItsEntry)
{
    QSet<QString> entries, commands;
    for (const PopupEntry& entry : popupTable())
        entries.insert(QLatin1String(entry.identifier));
    for (const Command* command : main->registry().commands()) {
        if (!command->popupEntry.isEmpty())
            commands.insert(command->popupEntry);
    }
    EXPECT_EQ(commands, entries);
}

TEST_F(PopupTableTest, anEntryWithoutACommandIsHidden)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    CommandRegistry registry;
    registry.add({.name = "mnuViewLoop",
                  .menu = Command::Menu::View,
                  .place = 400,
                  .text = "&Loop...",
                  .statusTip = "Show the admittance loop",
                  .handler = [] {},
                  .popupEntry = "Loop"});
    hideEntriesWithoutCommand(*document, registry);
    for (const PopupEntry& entry : popupTable()) {
        const bool hasCommand = entry.number == PopupLoop;
        EXPECT_EQ(document->peGraph().CustomMenuState(entry.number), hasCommand ? graph::MenuNormal : graph::MenuHidden)
            << entry.identifier;
        EXPECT_EQ(popupCommand(registry, entry.number) != nullptr, hasCommand) << entry.identifier;
    }
}

} // namespace
