// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/files/ui/FileCommands.h"

#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/PlotFileNames.h"
#include "document/ui/DocumentArea.h"
#include "document/ui/frmFileProperties.h"
#include "document/ui/frmOptionsTestType.h"
#include "instrument/InstrumentMirror.h"
#include "prefs/Preferences.h"
#include "program/CommandRegistry.h"
#include "program/ProgramState.h"
#include "shell/commands/files/ui/FileOpener.h"
#include "shell/commands/ui/FileDialogs.h"
#include "widgets/ui/ShowModally.h"

#include <QApplication>

FileCommands::FileCommands(const CommandContext& context, const FileOpener& opener)
    : m_context(context)
    , m_opener(opener)
{
    registerCommands();
}

void FileCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuFileNew",
                  .menu = Command::Menu::File,
                  .place = 100,
                  .text = tr("&New..."),
                  .icon = "document-new",
                  .shortcut = "Ctrl+N",
                  .statusTip = tr("Create a graph document for a test"),
                  .handler = [this] { mnuFileNew_Click(); },
                  .toolBarKey = "New"});
    commands.add({.name = "mnuFileOpen",
                  .menu = Command::Menu::File,
                  .place = 110,
                  .text = tr("&Open..."),
                  .icon = "document-open",
                  .shortcut = "Ctrl+O",
                  .statusTip = tr("Open plot files"),
                  .handler = [this] { mnuFileOpen_Click(); },
                  .toolBarKey = "Open"});
    commands.add({.name = "mnuFileClose",
                  .menu = Command::Menu::File,
                  .place = 120,
                  .text = tr("&Close"),
                  .icon = "document-close",
                  .shortcut = "Ctrl+W",
                  .statusTip = tr("Close the active document"),
                  .handler = [this] { mnuFileClose_Click(); },
                  .rules = Command::NeedsDocument});
    commands.add({.name = "mnuFileSave",
                  .menu = Command::Menu::File,
                  .place = 200,
                  .text = tr("&Save"),
                  .icon = "document-save",
                  .shortcut = "Ctrl+S",
                  .statusTip = tr("Save the active document"),
                  .handler = [this] { fileSave(false); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Save"});
    commands.add({.name = "mnuFileSaveAs",
                  .menu = Command::Menu::File,
                  .place = 210,
                  .text = tr("Save &As..."),
                  .icon = "document-save-as",
                  .shortcut = "Ctrl+Shift+S",
                  .statusTip = tr("Save the active document under another name"),
                  .handler = [this] { fileSave(true); },
                  .rules = Command::NeedsDocument});
    commands.add({.name = "mnuFileSaveAll",
                  .menu = Command::Menu::File,
                  .place = 220,
                  .text = tr("Save A&ll"),
                  .shortcut = "Ctrl+Alt+S",
                  .statusTip = tr("Save every document with changes"),
                  .handler = [this] { mnuFileSaveAll_Click(); },
                  .rules = Command::NeedsDocument});
    commands.add({.name = "mnuFileProperties",
                  .menu = Command::Menu::File,
                  .place = 400,
                  .text = tr("P&roperties..."),
                  .icon = "document-properties",
                  .shortcut = "Alt+Return",
                  .statusTip = tr("Show where the active document comes from"),
                  .handler = [this] { mnuFileProperties_Click(); },
                  .rules = Command::NeedsDocument,
                  .popupEntry = "Properties"});
    commands.add({.name = "mnuFileExit",
                  .menu = Command::Menu::File,
                  .place = 900,
                  .text = tr("E&xit"),
                  .shortcut = "Ctrl+Q",
                  .statusTip = tr("Close all documents and end the program"),
                  .handler = [this] { m_context.window.close(); }});
}

void FileCommands::chooseTestType()
{
    ProgramState& state = m_context.program.state;
    const InstrumentMirror& mirror = m_context.program.mirror;
    if (mirror.bfAmplitudeTest && !mirror.bfImpedanceTest)
        state.giNewDocType = PenDocument::Amplitude;
    else if (mirror.bfImpedanceTest && !mirror.bfAmplitudeTest)
        state.giNewDocType = PenDocument::Impedance;
    else
        showModally(new frmOptionsTestType(state, m_context.program.preferences, &m_context.window));
}

void FileCommands::mnuFileNew_Click()
{
    const QPointer<QWidget> alive = m_context.guard();
    if (m_context.testGoesOn() || !alive)
        return;
    chooseTestType();
    if (!alive)
        return;
    QApplication::processEvents();
    if (!alive || m_context.program.state.giNewDocType == PenDocument::NoTest)
        return;
    const QPointer<PenDocument> document = m_context.documents.LoadNewDoc();
    if (!alive || !document)
        return;
    document->gbfSendZoom = true;
    document->graphSetDefaultView();
    m_context.area.showDocument(*document);
}

void FileCommands::mnuFileOpen_Click()
{
    const QPointer<QWidget> alive = m_context.guard();
    if (m_context.testGoesOn() || !alive)
        return;
    const QString folder = m_context.program.preferences.value(options::kPlotFiles.option);
    const QStringList files =
        m_context.fileDialogs.openFileNames(tr("Open Plot file"), PlotFileNames::openFilter(), folder);
    for (const QString& file : files) {
        if (!alive)
            return;
        m_opener.OpenFromCommand(file);
    }
}

void FileCommands::fileSave(bool bfAs)
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (!document || !m_context.formatAllows(*document, tr("File save not possible")))
        return;
    if (m_context.testGoesOn())
        return;
    if (document)
        document->fileSave(bfAs, false);
}

void FileCommands::mnuFileSaveAll_Click()
{
    const QPointer<QWidget> alive = m_context.guard();
    if (m_context.testGoesOn() || !alive)
        return;
    QList<QPointer<PenDocument>> documents;
    for (int i = 1; i <= m_context.documents.count(); ++i)
        documents.append(m_context.documents.at(i));
    for (const QPointer<PenDocument>& document : documents) {
        if (document && document->gbfModified() && m_context.formatAllows(*document, tr("File save not possible")) &&
            document)
            document->fileSave(false, false);
        if (!alive)
            return;
    }
}

void FileCommands::mnuFileClose_Click()
{
    if (PenDocument* document = m_context.activeDocument())
        closeDocument(*document);
}

bool FileCommands::closeDocument(PenDocument& document)
{
    return m_context.area.unloadDocument(document);
}

void FileCommands::mnuFileProperties_Click()
{
    const PenDocument* document = m_context.activeDocument();
    if (!document)
        return;
    auto* form = new frmFileProperties(&m_context.window);
    form->ShowDetails(*document);
    showModally(form);
}
