// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ClipboardPort;
class DocumentHost;
class FilePicker;
class KorvaLink;
class Preferences;
class UserMessages;
struct InstrumentMirror;
struct ProgramState;

/// What a document works with. All of it outlives the document.
struct DocumentContext
{
    KorvaLink& device;
    InstrumentMirror& mirror;
    ProgramState& state;
    Preferences& preferences;
    UserMessages& messages;
    DocumentHost& host;
    ClipboardPort* clipboard = nullptr; ///< null: there is no clipboard, copies go nowhere
    FilePicker* filePicker = nullptr;   ///< null: a question for a file name counts as cancelled
};
