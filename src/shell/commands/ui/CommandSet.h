// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "program/CommandRegistry.h"

#include <QHash>
#include <QPointer>
#include <QString>

#include <map>
#include <span>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

/// Keys of the buttons of the toolbar and of the pen bar, in their order; an empty key is a line. A button shows when
/// its command is there.
std::span<const char* const> toolBarKeys();
std::span<const char* const> penBarKeys();

/// The registered commands as the main window offers them: an action each, in its menu, toolbar and key. Follows the
/// registry: a command that a feature adds later takes its place, and states go to the actions.
class CommandSet : public QObject
{
    Q_OBJECT

public:
    /// Fills the menu bar with the program's menus and the two bars with their buttons. Actions are children of the
    /// window; all of it outlives this.
    CommandSet(QWidget& window, CommandRegistry& registry, QMenuBar& menuBar, QToolBar& toolBar, QToolBar& penBar);

    /// The action of that command; there must be one.
    QAction& action(const char* name) const;
    /// The action of a button, by its key whatever the case; null for a key without command.
    QAction* button(const QString& key) const;

    QMenu& menu(Command::Menu which) const { return *m_menus.at(which).menu; }
    /// An entry that is no command, at its place among those that are.
    void insert(Command::Menu which, int place, QAction& entry);
    /// The line in front of the entries of that hundred; it is there as soon as one of them is.
    QAction* line(Command::Menu which, int place) const;

    /// Gives a window the function keys.
    void addFunctionKeys(QWidget& widget);

private:
    /// Entries by their place; a line has the place in front of its hundred.
    struct Menu
    {
        QMenu* menu = nullptr;
        std::multimap<int, QAction*> entries;
    };
    struct Bar
    {
        QToolBar* bar = nullptr;
        std::span<const char* const> keys;
        std::map<std::size_t, QAction*> entries; ///< by the index of their key
    };
    void add(const Command& command);
    void insertButton(Bar& bar, const Command& command, QAction& action);
    static void showLines(Bar& bar);
    void trigger(const QString& name);

    QWidget& m_window;
    CommandRegistry& m_registry;
    QHash<QString, QAction*> m_actions;
    std::map<Command::Menu, Menu> m_menus;
    std::vector<Bar> m_bars;
    std::vector<QPointer<QWidget>> m_functionKeyWindows;
};
