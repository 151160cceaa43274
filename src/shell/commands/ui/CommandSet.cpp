// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/CommandSet.h"

#include "widgets/ui/TintedIcon.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <optional>

namespace {

constexpr const char* kToolBar[] = {
    "New",
    "Open",
    "Save",
    "Export Data",
    "Print",
    "",
    "Cut",
    "Copy",
    "Paste",
    "",
    "GraphView",
    "Add Text",
    "Mark Points",
    "Zoom Extents",
    "Fit",
    "Undo",
    "Redo",
    "",
    "Start Test",
    "Stop Test",
    "Repeat Test",
    "Test Settings",
    "Connect Device",
    "",
    "Next document",
    "Previous document",
    "",
    "Help",
};

constexpr const char* kPenBar[] = {"", "Lock", "UnlockAll", "View", "ViewAll"};

constexpr int kHundred = 100;

/// In front of every entry of the hundred.
int placeOfLine(int place)
{
    return place / kHundred * kHundred - 1;
}

/// Name and key, and what the command does: a narrow window has no room for that at its foot.
QString toolTipOf(const QAction& action)
{
    QString name = action.text();
    name.remove(QLatin1Char('&')).remove(QLatin1String("..."));
    if (!action.shortcut().isEmpty())
        name = QStringLiteral("%1 (%2)").arg(name, action.shortcut().toString(QKeySequence::NativeText));
    return name + QLatin1Char('\n') + action.statusTip();
}

} // namespace

std::span<const char* const> toolBarKeys()
{
    return kToolBar;
}

std::span<const char* const> penBarKeys()
{
    return kPenBar;
}

CommandSet::CommandSet(QWidget& window, CommandRegistry& registry, QMenuBar& menuBar, QToolBar& toolBar,
                       QToolBar& penBar)
    : m_window(window)
    , m_registry(registry)
{
    const std::pair<Command::Menu, QString> titles[] = {
        {Command::Menu::File, tr("&File")},   {Command::Menu::Edit, tr("&Edit")},
        {Command::Menu::View, tr("&View")},   {Command::Menu::Test, tr("&Test")},
        {Command::Menu::Masks, tr("&Masks")}, {Command::Menu::Window, tr("&Window")},
        {Command::Menu::Help, tr("&Help")},
    };
    for (const auto& [which, title] : titles)
        m_menus[which].menu = menuBar.addMenu(title);
    m_bars = {{&toolBar, toolBarKeys(), {}}, {&penBar, penBarKeys(), {}}};
    for (const Command* command : registry.commands())
        add(*command);
    connect(&registry, &CommandRegistry::added, this, [this](const QString& name) { add(*m_registry.find(name)); });
    connect(&registry, &CommandRegistry::enabledChanged, this,
            [this](const QString& name, bool enabled) { m_actions.value(name)->setEnabled(enabled); });
    connect(&registry, &CommandRegistry::checkedChanged, this,
            [this](const QString& name, bool checked) { m_actions.value(name)->setChecked(checked); });
}

void CommandSet::add(const Command& command)
{
    auto* action = new QAction(command.text, &m_window);
    action->setObjectName(command.name);
    action->setStatusTip(command.statusTip);
    action->setCheckable(command.checkable);
    action->setChecked(command.checkable && m_registry.isChecked(command.name));
    action->setEnabled(m_registry.isEnabled(command.name));
    if (!command.icon.isEmpty())
        action->setIcon(tintedIcon(command.icon));
    if (!command.shortcut.isEmpty())
        action->setShortcuts(QKeySequence::listFromString(command.shortcut, QKeySequence::PortableText));
    action->setToolTip(toolTipOf(*action));
    connect(action, &QAction::triggered, this, [this, name = command.name] { trigger(name); });
    m_window.addAction(action);
    m_actions.insert(command.name, action);

    insert(command.menu, command.place, *action);
    for (Bar& bar : m_bars)
        insertButton(bar, command, *action);
    if (command.functionKey) {
        for (const QPointer<QWidget>& window : m_functionKeyWindows) {
            if (window)
                window->addAction(action);
        }
    }
}

void CommandSet::trigger(const QString& name)
{
    // A click has changed the check mark of its action already; what it shows is the registry's word.
    const QPointer<QAction> action = m_actions.value(name);
    const QPointer<CommandSet> self(this);
    m_registry.trigger(name);
    if (self && action && action->isCheckable())
        action->setChecked(m_registry.isChecked(name));
}

void CommandSet::insert(Command::Menu which, int place, QAction& entry)
{
    Menu& menu = m_menus.at(which);
    const auto insertAt = [&menu](int at, QAction* action) {
        const auto next = menu.entries.upper_bound(at);
        menu.menu->insertAction(next == menu.entries.end() ? nullptr : next->second, action);
        menu.entries.emplace_hint(next, at, action);
    };
    // Lines that nothing stands in front of are not drawn by the menu.
    if (!line(which, place)) {
        auto* separator = new QAction(menu.menu);
        separator->setSeparator(true);
        insertAt(placeOfLine(place), separator);
    }
    insertAt(place, &entry);
}

QAction* CommandSet::line(Command::Menu which, int place) const
{
    const auto& entries = m_menus.at(which).entries;
    const auto found = entries.find(placeOfLine(place));
    return found == entries.end() ? nullptr : found->second;
}

void CommandSet::insertButton(Bar& bar, const Command& command, QAction& action)
{
    if (command.toolBarKey.isEmpty())
        return;
    for (std::size_t i = 0; i < bar.keys.size(); ++i) {
        if (command.toolBarKey.compare(QLatin1String(bar.keys[i]), Qt::CaseInsensitive) != 0)
            continue;
        const auto next = bar.entries.upper_bound(i);
        bar.bar->insertAction(next == bar.entries.end() ? nullptr : next->second, &action);
        bar.entries.emplace(i, &action);
        showLines(bar);
        return;
    }
}

// A line stands between two groups that have buttons; the first line of the pen bar behind its labels.
void CommandSet::showLines(Bar& bar)
{
    std::optional<std::size_t> line;
    for (std::size_t i = 0; i < bar.keys.size(); ++i) {
        if (*bar.keys[i] == '\0') {
            if (i == 0 || bar.entries.begin()->first < i)
                line = i;
        } else if (const auto here = bar.entries.find(i); here != bar.entries.end() && line) {
            if (!bar.entries.contains(*line))
                bar.entries.emplace(*line, bar.bar->insertSeparator(here->second));
            line.reset();
        }
    }
}

QAction& CommandSet::action(const char* name) const
{
    QAction* found = m_actions.value(QLatin1String(name));
    Q_ASSERT_X(found, "CommandSet::action", name);
    return *found;
}

QAction* CommandSet::button(const QString& key) const
{
    const Command* command = m_registry.findButton(key);
    return command ? m_actions.value(command->name) : nullptr;
}

void CommandSet::addFunctionKeys(QWidget& widget)
{
    std::erase_if(m_functionKeyWindows, [](const QPointer<QWidget>& window) { return !window; });
    m_functionKeyWindows.emplace_back(&widget);
    for (const Command* command : m_registry.commands()) {
        if (command->functionKey)
            widget.addAction(m_actions.value(command->name));
    }
}
