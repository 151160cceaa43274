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

TEST_F(PopupTableTest, everyCommandOfThePopupNamesAnEntryOfTheTable)
{
    QSet<QString> identifiers;
    for (const PopupEntry& entry : popupTable())
        identifiers.insert(QLatin1String(entry.identifier));
    int used = 0;
    for (const Command* command : main->registry().commands()) {
        if (command->popupEntry.isEmpty())
            continue;
        ++used;
        EXPECT_TRUE(identifiers.contains(command->popupEntry)) << command->popupEntry.toStdString();
    }
    EXPECT_EQ(used, 12);
}

TEST_F(PopupTableTest, anEntryShowsAndWorksOnceAFeatureHasRegisteredIt)
{
    int calls = 0;
    main->registry().add({.name = "mnuViewLoop",
                          .menu = Command::Menu::View,
                          .place = 400,
                          .text = "&Loop...",
                          .statusTip = "Show the admittance loop",
                          .handler = [&calls] { ++calls; },
                          .rules = Command::NeedsDocument,
                          .toolBarKey = "GraphView",
                          .popupEntry = "Loop"});
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    EXPECT_EQ(document->peGraph().CustomMenuState(14), graph::MenuNormal);
    EXPECT_EQ(document->peGraph().CustomMenuState(1), graph::MenuHidden);
    Q_EMIT document->peGraph().CustomMenuClicked(14, 0);
    EXPECT_EQ(calls, 1);
    Q_EMIT document->peGraph().CustomMenuClicked(1, 0);
    EXPECT_EQ(calls, 1);
    Q_EMIT document->peGraph().CustomMenuClicked(3, 0);
    EXPECT_EQ(calls, 1);
    main->buttonClick(QStringLiteral("graphview"));
    EXPECT_EQ(calls, 2);
}

} // namespace
