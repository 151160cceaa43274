// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ActiveDocument;
class KorvaLink;
class MainWindowPort;
class Preferences;
class UserMessages;
struct InstrumentMirror;
struct ProgramState;

/// What the instrument's side works with. Owned by the program's start-up code; all of it outlives every event loop.
struct LinkContext
{
    KorvaLink& device;
    InstrumentMirror& mirror;
    ProgramState& state;
    Preferences& preferences;
    UserMessages& messages;
    MainWindowPort& port;
    ActiveDocument& active;
};
