#pragma once

class DocumentHost;
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
};
