// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/QuickFileList.h"

#include <QCoreApplication>

#include <array>
#include <functional>

class CommandSet;
class QAction;
class QWidget;

/// The quick file list in the File menu: `mnuFileMRU_0` and so on behind `mnuFileBar4`, which show while they have a
/// name. The entries live as long as the window, so that one may be rebuilt while its file is being opened.
class QuickFileMenu
{
    Q_DECLARE_TR_FUNCTIONS(QuickFileMenu)

public:
    /// The handler opens a file; it runs from the event loop.
    QuickFileMenu(QWidget& window, CommandSet& commands, Preferences& preferences,
                  const std::function<void(const QString& fileName)>& open);

    /// Puts the file on top; an empty name reads the saved entries.
    void UpdateQuickFileList(const QString& strFilePathName);

private:
    void show();

    QuickFileList m_list;
    std::array<QAction*, QuickFileList::kCapacity> mnuFileMRU{};
    QAction* mnuFileBar4 = nullptr;
};
