// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Press.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

/// A widget whose popup has an entry of its own and one in a submenu.
class PopupOwner : public QWidget
{
public:
    using QWidget::QWidget;
    QStringList pressed;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override
    {
        auto* const menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        const auto add = [this](QMenu& target, const char* text) {
            return target.addAction(QLatin1String(text), this, [this, text] { pressed << QLatin1String(text); });
        };
        add(*menu, "&Copy");
        add(*menu, "Paste")->setEnabled(false);
        add(*menu->addMenu(QStringLiteral("&View")), "Grid && ticks");
        menu->popup(event->globalPos());
    }
};

class PressTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QMenu* const file = window.menuBar()->addMenu(QStringLiteral("&File"));
        add(*file, "mnuSave")->setShortcut(QKeySequence(QStringLiteral("Ctrl+S")));
        add(*file, "mnuDisabled")->setEnabled(false);
        add(*file, "mnuHidden")->setVisible(false);
        add(*file->addMenu(QStringLiteral("More")), "mnuDeep");
        owner = new PopupOwner(&window);
        window.setCentralWidget(owner);
        window.resize(400, 300);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    QAction* add(QMenu& menu, const char* name)
    {
        QAction* const action = menu.addAction(QLatin1String(name));
        action->setObjectName(QLatin1String(name));
        QObject::connect(action, &QAction::triggered, &window, [this, name] { done << QLatin1String(name); });
        return action;
    }

    QMainWindow window;
    PopupOwner* owner = nullptr;
    QStringList done;
};

} // namespace

TEST_F(PressTest, AMenuEntryIsPressedWhereverItStands)
{
    EXPECT_TRUE(press::menu(window, QStringLiteral("mnuSave")));
    EXPECT_TRUE(press::menu(window, QStringLiteral("mnuDeep")));
    EXPECT_EQ(done, QStringList({QStringLiteral("mnuSave"), QStringLiteral("mnuDeep")}));
}

TEST_F(PressTest, WhatAUserCannotPressFails)
{
    for (const char* name : {"mnuDisabled", "mnuHidden", "mnuNowhere"}) {
        const auto pressed = press::menu(window, QLatin1String(name));
        EXPECT_FALSE(pressed) << name;
        EXPECT_THAT(pressed.message(), HasSubstr(name));
        press::settle();
        while (QWidget* const open = QApplication::activePopupWidget())
            open->close();
    }
    EXPECT_EQ(done, QStringList());
}

TEST_F(PressTest, AShortcutReachesItsCommandAndTwoOwnersOfOneAreAFailure)
{
    const QKeySequence keys(QStringLiteral("Ctrl+S"));
    EXPECT_TRUE(press::shortcut(window, keys));
    EXPECT_EQ(done, QStringList{QStringLiteral("mnuSave")});
    QAction other;
    other.setShortcut(keys);
    window.addAction(&other);
    EXPECT_FALSE(press::shortcut(window, keys));
}

TEST_F(PressTest, PopupEntriesAreFoundByTheirTextsThroughSubmenus)
{
    EXPECT_TRUE(press::popup(*owner, {QStringLiteral("Copy")}));
    EXPECT_TRUE(press::popup(*owner, {QStringLiteral("View"), QStringLiteral("Grid & ticks")}));
    EXPECT_EQ(owner->pressed, QStringList({QStringLiteral("&Copy"), QStringLiteral("Grid && ticks")}));
    EXPECT_TRUE(press::popup(*owner, [](const QMenu& menu) { return menu.actions().constFirst(); }));
    EXPECT_EQ(owner->pressed.size(), 3);
    EXPECT_FALSE(press::popup(*owner, {QStringLiteral("Cut")}));
    EXPECT_FALSE(press::popup(*owner, {QStringLiteral("Paste")}));
    while (QWidget* const open = QApplication::activePopupWidget())
        open->close();
}

TEST_F(PressTest, AModalWindowIsAnsweredWhileItShows)
{
    QObject::connect(window.menuBar()->actions().constFirst()->menu()->actions().constFirst(), &QAction::triggered,
                     &window, [this] {
                         QDialog dialog(&window);
                         QPushButton button(QStringLiteral("Go on"), &dialog);
                         QObject::connect(&button, &QPushButton::clicked, &dialog, &QDialog::accept);
                         done << (dialog.exec() == QDialog::Accepted ? QStringLiteral("yes") : QStringLiteral("no"));
                     });
    const press::WhileModal answer(
        [](QWidget& dialog) { QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton); });
    EXPECT_TRUE(press::menu(window, QStringLiteral("mnuSave")));
    EXPECT_TRUE(answer.happened());
    EXPECT_EQ(done.constLast(), QStringLiteral("yes"));
}
