// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/files/ui/QuickFileMenu.h"

#include "shell/commands/ui/CommandSet.h"

#include <QAction>
#include <QWidget>

namespace {

constexpr int kPlace = 800;

} // namespace

QuickFileMenu::QuickFileMenu(QWidget& window, CommandSet& commands, Preferences& preferences,
                             const std::function<void(const QString& fileName)>& open)
    : m_list(preferences)
{
    for (std::size_t i = 0; i < mnuFileMRU.size(); ++i) {
        auto* action = new QAction(&window);
        action->setObjectName(QStringLiteral("mnuFileMRU_%1").arg(i));
        QObject::connect(action, &QAction::triggered, &window, [action, open] { open(action->data().toString()); });
        commands.insert(Command::Menu::File, kPlace + static_cast<int>(i), *action);
        mnuFileMRU[i] = action;
    }
    mnuFileBar4 = commands.line(Command::Menu::File, kPlace);
    mnuFileBar4->setObjectName(QStringLiteral("mnuFileBar4"));
    show();
}

void QuickFileMenu::UpdateQuickFileList(const QString& strFilePathName)
{
    m_list.UpdateQuickFileList(strFilePathName);
    show();
}

void QuickFileMenu::show()
{
    const QStringList& files = m_list.entries();
    mnuFileBar4->setVisible(!files.isEmpty());
    for (std::size_t i = 0; i < mnuFileMRU.size(); ++i) {
        QAction& action = *mnuFileMRU[i];
        const QString file = files.value(static_cast<qsizetype>(i));
        action.setVisible(!file.isEmpty());
        action.setData(file);
        action.setStatusTip(tr("Open %1").arg(file));
        QString shown = file;
        shown.replace(QLatin1Char('&'), QLatin1String("&&"));
        action.setText(QStringLiteral("&%1 %2").arg(i + 1).arg(shown));
    }
}
