// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <span>

class CommandRegistry;
class PenDocument;
struct Command;

/// The entries of a document's popup that are commands: features name theirs by the identifier (Command::popupEntry),
/// the number is the one that stands in plot files. The two view entries (5 and 6) are the document's own.
struct PopupEntry
{
    const char* identifier;
    int number;
};

std::span<const PopupEntry> popupTable();

/// The command behind an entry; null for an entry without one and for a number that is none.
const Command* popupCommand(const CommandRegistry& commands, int number);
/// Entries whose command is not there are not shown.
void hideEntriesWithoutCommand(PenDocument& document, const CommandRegistry& commands);
