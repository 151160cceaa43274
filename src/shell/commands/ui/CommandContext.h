// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

class ActiveDocument;
class CommandRegistry;
class DeviceList;
class DeviceModule;
class DeviceWindows;
class DocumentArea;
class DocumentList;
class FileDialogs;
class KorvaLink;
class PenDocument;
class Preferences;
class SystemClipboard;
class TestRun;
class UserMessages;
struct InstrumentMirror;
struct ProgramState;

/// What the main window works with. All of it outlives the window.
struct ShellContext
{
    ProgramState& state;
    Preferences& preferences;
    DeviceList& devices;
    KorvaLink& device;
    InstrumentMirror& mirror;
    UserMessages& messages;
};

/// What the main window's commands work with; all of it lives as long as the window.
struct CommandContext
{
    ShellContext program;
    QWidget& window;
    CommandRegistry& commands;
    ActiveDocument& active;
    DocumentArea& area;
    DocumentList& documents;
    TestRun& testRun;
    DeviceWindows& deviceWindows;
    FileDialogs& fileDialogs;
    SystemClipboard& clipboard;

    /// Null when none is open.
    PenDocument* activeDocument() const;
    /// The program's message dialog with an OK button and that icon.
    void tell(const QString& text, int icon, const QString& title) const;
    /// True for a document of the present format; otherwise the user is told under that title.
    bool formatAllows(const PenDocument& document, const QString& title) const;
    /// A test runs and the user wants it to go on: the command gives up. Otherwise it has been stopped.
    bool testGoesOn() const;
    /// Behind anything that runs events: the window and all of this may have gone.
    QPointer<QWidget> guard() const { return &window; }
};
