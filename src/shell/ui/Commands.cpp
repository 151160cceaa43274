// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/Commands.h"

#include "shell/ui/frmMain.h"
#include "widgets/ui/TintedIcon.h"

#include <QCoreApplication>
#include <QMenu>
#include <QToolBar>

namespace {

using M = Command::Menu;
constexpr int kPlain = Command::Plain;
constexpr int kLine = Command::Separator;
constexpr int kCheck = Command::Checkable;
constexpr int kKey = Command::FunctionKey;
constexpr int kDoc = Command::NeedsDocument;

#define TEXT(text) QT_TRANSLATE_NOOP("Commands", text)

constexpr Command kCommands[] = {
    {"mnuFileNew", M::File, kPlain, TEXT("&New..."), "document-new", "Ctrl+N",
     TEXT("Create a graph document for a test"), &frmMain::mnuFileNew_Click},
    {"mnuFileOpen", M::File, kPlain, TEXT("&Open..."), "document-open", "Ctrl+O", TEXT("Open plot files"),
     &frmMain::mnuFileOpen_Click},
    {"mnuFileClose", M::File, kDoc, TEXT("&Close"), "document-close", "Ctrl+W", TEXT("Close the active document"),
     &frmMain::mnuFileClose_Click},
    {"mnuFileSave", M::File, kLine | kDoc, TEXT("&Save"), "document-save", "Ctrl+S", TEXT("Save the active document"),
     &frmMain::mnuFileSave_Click},
    {"mnuFileSaveAs", M::File, kDoc, TEXT("Save &As..."), "document-save-as", "Ctrl+Shift+S",
     TEXT("Save the active document under another name"), &frmMain::mnuFileSaveAs_Click},
    {"mnuFileSaveAll", M::File, kDoc, TEXT("Save A&ll"), "", "Ctrl+Alt+S", TEXT("Save every document with changes"),
     &frmMain::mnuFileSaveAll_Click},
    {"mnuFileProperties", M::File, kLine | kDoc, TEXT("P&roperties..."), "document-properties", "Alt+Return",
     TEXT("Show where the active document comes from"), &frmMain::mnuFileProperties_Click},
    {"mnuFileExit", M::File, kLine, TEXT("E&xit"), "", "Ctrl+Q", TEXT("Close all documents and end the program"),
     &frmMain::mnuFileExit_Click},

    {"mnuEditUndo", M::Edit, kDoc, TEXT("&Undo Zoom"), "zoom-undo", "Ctrl+Z", TEXT("Return to the zoom before"),
     &frmMain::mnuEditUndo_Click},
    {"mnuEditRedo", M::Edit, kDoc, TEXT("&Redo Zoom"), "zoom-redo", "Ctrl+Y; Ctrl+Shift+Z",
     TEXT("Go on to the zoom that was undone"), &frmMain::mnuEditRedo_Click},
    {"mnuEditCut", M::Edit, kLine | kDoc, TEXT("Cu&t"), "edit-cut", "Ctrl+X",
     TEXT("Move the current pen's data to the clipboard"), &frmMain::mnuEditCut_Click},
    {"mnuEditCopy", M::Edit, kDoc, TEXT("&Copy"), "edit-copy", "Ctrl+C",
     TEXT("Copy the current pen's data to the clipboard"), &frmMain::mnuEditCopy_Click},
    {"mnuEditPaste", M::Edit, kDoc, TEXT("&Paste"), "edit-paste", "Ctrl+V",
     TEXT("Put the clipboard's data into the current pen"), &frmMain::mnuEditPaste_Click},
    {"mnuPenLock", M::Edit, kLine | kDoc | kCheck, TEXT("&Lock Pen"), "pen-lock", "",
     TEXT("Protect the current pen against new data"), &frmMain::penLock_Click},
    {"mnuPenUnlockAll", M::Edit, kDoc, TEXT("U&nlock All Pens"), "pen-unlock-all", "",
     TEXT("Allow new data in every pen"), &frmMain::penUnlockAll_Click},
    {"mnuPreferences", M::Edit, kLine | kKey, TEXT("Pr&eferences..."), "preferences", "F2",
     TEXT("Set colours, scales, prompts and folders"), &frmMain::mnuPreferences_Click},

    {"mnuViewAddText", M::View, kDoc | kKey, TEXT("Add &Text..."), "add-text", "F4",
     TEXT("Edit the title and the names of the pens"), &frmMain::mnuViewAddText_Click},
    {"mnuViewMarkPoints", M::View, kDoc | kCheck, TEXT("&Mark Data Points"), "mark-points", "Ctrl+M",
     TEXT("Mark every measured point"), &frmMain::mnuViewMarkPoints_Click},
    {"mnuViewZoomExtents", M::View, kLine | kDoc, TEXT("&Zoom Extents"), "zoom-extents", "Ctrl+E",
     TEXT("Show the whole graph"), &frmMain::mnuViewZoomExtents_Click},
    {"mnuPenView", M::View, kLine | kDoc | kCheck, TEXT("&Show Pen"), "pen-view", "",
     TEXT("Show or hide the current pen"), &frmMain::penView_Click},
    {"mnuPenViewAll", M::View, kDoc, TEXT("Show &All Pens"), "pen-view-all", "", TEXT("Show every pen"),
     &frmMain::penViewAll_Click},

    {"mnuTestStart", M::Test, kKey, TEXT("&Start"), "test-start", "F5", TEXT("Start a test into the active document"),
     &frmMain::mnuTestStart_Click},
    {"mnuTestStopTest", M::Test, kKey, TEXT("S&top"), "test-stop", "F6", TEXT("Stop the test"),
     &frmMain::mnuTestStopTest_Click},
    {"mnuTestRepeat", M::Test, kCheck, TEXT("&Repeat"), "test-repeat", "Ctrl+R", TEXT("Repeat the test until stopped"),
     &frmMain::mnuTestRepeat_Click},
    {"mnuReRunLastTestScript", M::Test, kLine | kKey, TEXT("Re-r&un Last Test Script"), "rerun-script", "Shift+F5",
     TEXT("Run the script that the instrument holds"), &frmMain::mnuReRunLastTestScript_Click},
    {"mnuTestSettings", M::Test, kLine, TEXT("S&ettings..."), "test-settings", "Ctrl+T",
     TEXT("Set up the oscillator and the sweep"), &frmMain::mnuTestSettings_Click},
    {"mnuTestDevice", M::Test, kKey, TEXT("&Connect Device..."), "connect-device", "F8",
     TEXT("Choose the instrument to work with"), &frmMain::mnuTestDevice_Click},
    {"mnuTestDeviceProperties", M::Test, kPlain, TEXT("Device &Properties..."), "device-properties", "",
     TEXT("Show what the connected instrument is"), &frmMain::mnuTestDeviceProperties_Click},
    {"mnuTestSchedule", M::Test, kPlain, TEXT("Test Sche&dule..."), "", "", TEXT("Switch the instrument's test mode"),
     &frmMain::mnuTestSchedule_Click},

    {"mnuNextDocument", M::Window, kDoc, TEXT("&Next Document"), "document-next", "Ctrl+PgDown",
     TEXT("Go to the next document"), &frmMain::mnuNextDocument_Click},
    {"mnuPreviousDocument", M::Window, kDoc, TEXT("&Previous Document"), "document-previous", "Ctrl+PgUp",
     TEXT("Go to the previous document"), &frmMain::mnuPreviousDocument_Click},
    {"mnuWindowTileVertical", M::Window, kLine | kDoc | kKey, TEXT("Tile &Vertical"), "window-tile-vertical", "F9",
     TEXT("Arrange the documents side by side"), &frmMain::mnuWindowTileVertical_Click},
    {"mnuWindowTileHorizontal", M::Window, kDoc | kKey, TEXT("Tile &Horizontal"), "window-tile-horizontal", "F7",
     TEXT("Arrange the documents one above the other"), &frmMain::mnuWindowTileHorizontal_Click},
    {"mnuWindowCascade", M::Window, kDoc | kKey, TEXT("&Cascade"), "window-cascade", "F11",
     TEXT("Arrange the documents overlapping"), &frmMain::mnuWindowCascade_Click},
    {"mnuWindowCloseAll", M::Window, kLine | kDoc, TEXT("Close &All"), "", "Ctrl+Shift+W", TEXT("Close every document"),
     &frmMain::mnuWindowCloseAll_Click},

    {"mnuManual", M::Help, kKey, TEXT("&Manual"), "help", "F1", TEXT("Open the user manual"),
     &frmMain::mnuManual_Click},
    {"mnuInterimManual", M::Help, kPlain, TEXT("&Interim Manual"), "", "", TEXT("Open the annex to the user manual"),
     &frmMain::mnuInterimManual_Click},
    {"mnuOnLineHelp", M::Help, kPlain, TEXT("&On-line Help"), "", "", TEXT("Open the maker's web page"),
     &frmMain::mnuOnLineHelp_Click},
    {"mnuHelpAbout", M::Help, kLine, TEXT("&About MarrowickGraph..."), "about", "",
     TEXT("Show the versions of program and instrument"), &frmMain::mnuHelpAbout_Click},
};

#undef TEXT

constexpr ToolButton kToolBar[] = {
    {"New", "mnuFileNew"},
    {"Open", "mnuFileOpen"},
    {"Save", "mnuFileSave"},
    {nullptr, nullptr},
    {"Cut", "mnuEditCut"},
    {"Copy", "mnuEditCopy"},
    {"Paste", "mnuEditPaste"},
    {nullptr, nullptr},
    {"Add Text", "mnuViewAddText"},
    {"Mark Points", "mnuViewMarkPoints"},
    {"Zoom Extents", "mnuViewZoomExtents"},
    {"Undo", "mnuEditUndo"},
    {"Redo", "mnuEditRedo"},
    {nullptr, nullptr},
    {"Start Test", "mnuTestStart"},
    {"Stop Test", "mnuTestStopTest"},
    {"Repeat Test", "mnuTestRepeat"},
    {"Test Settings", "mnuTestSettings"},
    {"Connect Device", "mnuTestDevice"},
    {nullptr, nullptr},
    {"Next document", "mnuNextDocument"},
    {"Previous document", "mnuPreviousDocument"},
    {nullptr, nullptr},
    {"Help", "mnuManual"},
};

constexpr ToolButton kPenBar[] = {
    {nullptr, nullptr},     {"Lock", "mnuPenLock"},       {"UnlockAll", "mnuPenUnlockAll"},
    {"View", "mnuPenView"}, {"ViewAll", "mnuPenViewAll"},
};

QString translated(const char* text)
{
    return QCoreApplication::translate("Commands", text);
}

} // namespace

std::span<const Command> commandTable()
{
    return kCommands;
}

std::span<const ToolButton> toolBarButtons()
{
    return kToolBar;
}

std::span<const ToolButton> penBarButtons()
{
    return kPenBar;
}

CommandSet::CommandSet(frmMain& window)
{
    for (const Command& command : commandTable()) {
        auto* action = new QAction(translated(command.text), &window);
        action->setObjectName(QLatin1String(command.name));
        action->setStatusTip(translated(command.statusTip));
        action->setCheckable((command.flags & Command::Checkable) != 0);
        if (*command.icon)
            action->setIcon(tintedIcon(QLatin1String(command.icon)));
        if (*command.shortcut)
            action->setShortcuts(
                QKeySequence::listFromString(QLatin1String(command.shortcut), QKeySequence::PortableText));
        QString plain = action->text();
        plain.remove(QLatin1Char('&')).remove(QLatin1String("..."));
        action->setToolTip(
            action->shortcut().isEmpty()
                ? plain
                : QStringLiteral("%1 (%2)").arg(plain, action->shortcut().toString(QKeySequence::NativeText)));
        const auto handler = command.handler;
        QObject::connect(action, &QAction::triggered, &window, [&window, handler] { (window.*handler)(); });
        window.addAction(action);
        m_actions.insert(QLatin1String(command.name), action);
    }
    for (const auto buttons : {toolBarButtons(), penBarButtons()}) {
        for (const ToolButton& row : buttons) {
            if (row.key)
                m_buttons.insert(QString::fromLatin1(row.key).toLower(), &action(row.command));
        }
    }
}

QAction& CommandSet::action(const char* name) const
{
    QAction* found = m_actions.value(QLatin1String(name));
    Q_ASSERT_X(found, "CommandSet::action", name);
    return *found;
}

void CommandSet::fillMenu(QMenu& menu, Command::Menu which) const
{
    for (const Command& command : commandTable()) {
        if (command.menu != which)
            continue;
        if (command.flags & Command::Separator)
            menu.addSeparator();
        menu.addAction(&action(command.name));
    }
}

void CommandSet::fillToolBar(QToolBar& bar, std::span<const ToolButton> buttons) const
{
    for (const ToolButton& row : buttons) {
        if (row.key)
            bar.addAction(&action(row.command));
        else
            bar.addSeparator();
    }
}

QAction* CommandSet::button(const QString& key) const
{
    return m_buttons.value(key.toLower());
}

void CommandSet::addFunctionKeys(QWidget& widget) const
{
    for (const Command& command : commandTable()) {
        if (command.flags & Command::FunctionKey)
            widget.addAction(&action(command.name));
    }
}

void CommandSet::setDocumentOpen(bool open)
{
    for (const Command& command : commandTable()) {
        if (command.flags & Command::NeedsDocument)
            action(command.name).setEnabled(open);
    }
}
