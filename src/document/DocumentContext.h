// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ActiveDocument;
class ClipboardPort;
class FilePicker;
class PlotSource;
class Preferences;
class UserMessages;

/// What a document works with: preferences and ways to ask. All of it outlives the document.
struct DocumentContext
{
    Preferences& preferences;
    UserMessages& messages;
    const PlotSource& source;
    const ActiveDocument& active;
    ClipboardPort* clipboard = nullptr; ///< null: there is no clipboard, copies go nowhere
    FilePicker* filePicker = nullptr;   ///< null: a question for a file name counts as cancelled
};
