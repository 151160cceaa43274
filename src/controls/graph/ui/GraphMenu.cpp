// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphMenu.h"

#include "controls/graph/GraphModel.h"

#include <QMenu>
#include <QPoint>

QMenu* makeGraphMenu(GraphModel& model, QWidget* parent)
{
    const std::vector<graph::MenuItem>& items = model.properties().CustomMenu;
    if (items.empty())
        return nullptr;
    auto* menu = new QMenu(parent);
    menu->setObjectName(QStringLiteral("graphMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int item = 0; item < static_cast<int>(items.size()); ++item) {
        const QStringList texts = model.CustomMenu(item).split(QLatin1Char('|'));
        const int state = model.CustomMenuState(item);
        if (texts.constFirst().isEmpty() || state == graph::MenuHidden)
            continue;
        const auto addAction = [&model, item](QMenu& target, const QString& text, int sub) {
            QAction* action = target.addAction(QString(text).replace(QLatin1Char('&'), QLatin1String("&&")));
            action->setData(QPoint(item, sub));
            action->setEnabled(model.CustomMenuState(item, sub) == graph::MenuNormal);
            action->setCheckable(model.properties().CustomMenu[static_cast<std::size_t>(item)].checked.contains(sub));
            action->setChecked(model.CustomMenuChecked(item, sub));
            // From the loop: a handler may run loops of its own, in which the closed menu dies.
            QObject::connect(
                action, &QAction::triggered, &model, [&model, item, sub] { Q_EMIT model.CustomMenuClicked(item, sub); },
                Qt::QueuedConnection);
        };
        if (texts.size() == 1) {
            addAction(*menu, texts.constFirst(), 0);
            continue;
        }
        QMenu* subMenu = menu->addMenu(QString(texts.constFirst()).replace(QLatin1Char('&'), QLatin1String("&&")));
        subMenu->menuAction()->setEnabled(state == graph::MenuNormal);
        subMenu->menuAction()->setData(QPoint(item, 0));
        for (int sub = 1; sub < texts.size(); ++sub) {
            if (model.CustomMenuState(item, sub) != graph::MenuHidden)
                addAction(*subMenu, texts.at(sub), sub);
        }
    }
    if (menu->isEmpty()) {
        delete menu;
        return nullptr;
    }
    return menu;
}
