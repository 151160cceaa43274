// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <gtest/gtest.h>

class QAction;
class QMainWindow;
class QMenu;
class QTimer;

/// What a user does with mouse and keyboard, as events on the windows that are on the screen. No action is triggered
/// and no handler called behind the window's back: what is hidden, disabled or hangs together wrongly fails here.
///
/// Each answers with what was in the way, or with success; the events are through when it comes back. An entry that
/// opens a modal window comes back when that has closed: see WhileModal.
namespace press {

/// Opens the menu bar's menu that holds the command, and any submenu on the way, and clicks it.
testing::AssertionResult menu(QMainWindow& window, const QString& objectName);

/// Presses the key in the window that has the focus.
testing::AssertionResult shortcut(QWidget& window, const QKeySequence& keys);

/// Clicks the widget with the right button, at the place or in its middle, and then the entry of the popup that comes:
/// an object name or a text without its "&", behind those of the submenus that lead there.
testing::AssertionResult popup(QWidget& widget, const QStringList& path, QPoint place = {});
/// The entry is the one that the test picks.
testing::AssertionResult popup(QWidget& widget, const std::function<QAction*(const QMenu&)>& pick, QPoint place = {});

/// Runs the event loop until nothing is waiting any more; deferred deletions are carried out.
void settle();

/// Does something to the next modal window as soon as it is on the screen, such as pressing one of its buttons.
class WhileModal
{
public:
    explicit WhileModal(std::function<void(QWidget&)> action);
    ~WhileModal();
    WhileModal(const WhileModal&) = delete;
    WhileModal& operator=(const WhileModal&) = delete;

    /// A modal window has come.
    bool happened() const { return m_happened; }

private:
    QTimer* m_timer;
    bool m_happened = false;
};

} // namespace press
