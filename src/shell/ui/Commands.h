// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QHash>
#include <QString>

#include <span>

class QMenu;
class QToolBar;
class QWidget;
class frmMain;

/// The command table: one row for everything the main window can be told to do. Menus, toolbar, pen bar, function keys
/// and the popup of a document all come from it, so a command has one text, one icon, one key and one handler.
struct Command
{
    enum class Menu
    {
        File,
        Edit,
        View,
        Test,
        Window,
        Help
    };
    enum Flag
    {
        Plain = 0,
        Separator = 1,
        Checkable = 2,
        FunctionKey = 4,
        NeedsDocument = 8
    };

    const char* name;     ///< object name of the action
    Menu menu;            ///< the menu it stands in, in the order of the table
    int flags;            ///< Separator: a line in front; FunctionKey: its key works in the settings dialog too
    const char* text;     ///< as in the menu
    const char* icon;     ///< a drawing of tintedIcon(), or empty
    const char* shortcut; ///< portable text; alternatives divided by "; "
    const char* statusTip;
    void (frmMain::*handler)();
};

std::span<const Command> commandTable();

/// A button of a toolbar: its key and the command behind it. A row without key is a separator.
struct ToolButton
{
    const char* key;
    const char* command;
};

std::span<const ToolButton> toolBarButtons();
std::span<const ToolButton> penBarButtons();

/// The actions of the command table for one main window.
class CommandSet
{
public:
    /// Creates an action for every row, as children of the window; its handlers are called on that window.
    explicit CommandSet(frmMain& window);

    /// The action of that name; there is always one for a name of the table.
    QAction& action(const char* name) const;
    void fillMenu(QMenu& menu, Command::Menu which) const;
    void fillToolBar(QToolBar& bar, std::span<const ToolButton> buttons) const;
    /// The action of a toolbar button, by its key whatever the case; null for a key that no button has.
    QAction* button(const QString& key) const;
    /// Gives the widget's window the function keys.
    void addFunctionKeys(QWidget& widget) const;
    /// Commands that act on a document are disabled while none is open.
    void setDocumentOpen(bool open);

private:
    QHash<QString, QAction*> m_actions;
    QHash<QString, QAction*> m_buttons; ///< by lower-case key
};
