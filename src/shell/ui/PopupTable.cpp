// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/PopupTable.h"

#include "document/PenDocument.h"
#include "program/CommandRegistry.h"

namespace {

constexpr PopupEntry kTable[] = {
    {"TestSettings", PopupTestSettings},
    {"ViewOptions", PopupViewOptions},
    {"AddText", PopupAddText},
    {"Analysis", PopupAnalysis},
    {"Loop", PopupLoop},
    {"MarkPoints", PopupMarkPoints},
    {"Cut", PopupCut},
    {"Copy", PopupCopy},
    {"Paste", PopupPaste},
    {"ZoomExtents", PopupZoomExtents},
    {"UndoZoom", PopupUndoZoom},
    {"RedoZoom", PopupRedoZoom},
    {"Export", PopupExport},
    {"Properties", PopupProperties},
};

} // namespace

std::span<const PopupEntry> popupTable()
{
    return kTable;
}

const Command* popupCommand(const CommandRegistry& commands, int number)
{
    for (const PopupEntry& entry : kTable) {
        if (entry.number == number)
            return commands.findPopupEntry(QLatin1String(entry.identifier));
    }
    return nullptr;
}

void hideEntriesWithoutCommand(PenDocument& document, const CommandRegistry& commands)
{
    for (const PopupEntry& entry : kTable) {
        if (!commands.findPopupEntry(QLatin1String(entry.identifier)))
            document.peGraph().setCustomMenuState(entry.number, 0, graph::MenuHidden);
    }
}
