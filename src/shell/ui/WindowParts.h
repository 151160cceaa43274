// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/ui/AnalysisWindows.h"
#include "document/ActiveDocument.h"
#include "document/DocumentContext.h"
#include "document/DocumentList.h"
#include "document/SystemClipboard.h"
#include "document/ui/DocumentArea.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/TestRun.h"
#include "link/ui/DeviceWindows.h"
#include "mask/MaskCommands.h"
#include "mask/link/MaskFrame.h"
#include "program/CommandRegistry.h"
#include "recovery/RecoveryJournal.h"
#include "script/ScriptActions.h"
#include "script/ScriptSwitches.h"
#include "script/ui/ScriptCommands.h"
#include "script/ui/ScriptQuestions.h"
#include "shell/commands/files/ui/FileCommands.h"
#include "shell/commands/files/ui/FileOpener.h"
#include "shell/commands/files/ui/QuickFileMenu.h"
#include "shell/commands/files/ui/RecoveryCommands.h"
#include "shell/commands/ui/CommandContext.h"
#include "shell/commands/ui/CommandSet.h"
#include "shell/commands/ui/EditCommands.h"
#include "shell/commands/ui/ExportCommands.h"
#include "shell/commands/ui/FileDialogs.h"
#include "shell/commands/ui/HelpCommands.h"
#include "shell/commands/ui/PenCommands.h"
#include "shell/commands/ui/PreferencesCommands.h"
#include "shell/commands/ui/TestCommands.h"
#include "shell/commands/ui/UpdateCommands.h"
#include "shell/commands/ui/WindowCommands.h"
#include "shell/ui/DocumentBars.h"
#include "shell/ui/PenBar.h"
#include "shell/ui/ScriptOutputs.h"
#include "shell/ui/StatusBar.h"
#include "update/ui/FirmwareFeature.h"
#include "view/ui/ViewCommands.h"

class QToolBar;
class frmMain;

/// What the main window is made of, in the order in which one thing needs another. The area, the bars and the actions
/// are child widgets of the window; the window deletes the area before this goes.
struct WindowParts
{
    /// The window is under construction: nothing here calls it yet.
    WindowParts(frmMain& window, const ShellContext& context);

    CommandRegistry registry;
    SystemClipboard clipboard;
    FileDialogs fileDialogs;
    ActiveDocument active;
    InstrumentPlotSource plotSource;
    DocumentContext documentContext;
    DocumentArea& area;
    PenBar& penBar;
    StatusBar& statusBar;
    QToolBar& toolBar;
    DocumentList documents;
    DeviceModule deviceModule;
    RecoveryJournal journal;
    TestRun testRun;
    DeviceWindows deviceWindows;
    ScriptQuestions scriptQuestions;
    ScriptActions scriptActions;
    AnalysisWindows analysis;
    DocumentBars bars;
    FileOpener opener;

    CommandContext commandContext;
    FileCommands file;
    EditCommands edit;
    PenCommands pens;
    TestCommands test;
    ScriptCommands scripts;
    WindowCommands windows;
    HelpCommands help;
    PreferencesCommands preferences;
    RecoveryCommands recovery;
    MaskFrame maskFrame;
    MaskCommands masks;
    ExportCommands exports;
    FirmwareFeature firmware;
    UpdateCommands updates;
    ViewCommands view;
    ScriptOutputs scriptOutputs;
    ScriptSwitches scriptSwitches;

    CommandSet commands;
    QuickFileMenu quickFiles;
};
