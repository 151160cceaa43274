// SPDX-License-Identifier: GPL-3.0-or-later
// Every entry of every menu and of the popup, and every button, pressed by mouse in the real window. What opens is
// closed by Escape. Under the address sanitizer this finds what dies under its own handler.
#include "controls/graph/ui/GraphView.h"
#include "shell/ui/MainWindowHarness.h"

#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace {

/// The menus of the window, each a test of its own.
constexpr const char* kMenus[] = {"&File", "&Edit", "&View", "&Test", "&Masks", "&Window", "&Help"};

class EveryEntryTest : public MainWindowHarness, public ::testing::WithParamInterface<const char*>
{
protected:
    enum class Situation
    {
        NoDocument,
        Document,
        Zoomed,
        Sweep
    };

    EveryEntryTest()
    {
        // No browser is started from here.
        preferences.setValue(options::kMakerUrl, QString());
        QObject::connect(&m_dismiss, &QTimer::timeout, [this] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                ++m_dialogs;
                QTest::keyClick(modal, Qt::Key_Escape);
            }
        });
        m_dismiss.start(2);
    }
    void SetUp() override
    {
        load();
        connectInstrument();
    }
    void TearDown() override { forgetChanges(); }

    void forgetChanges()
    {
        for (int i = 1; i <= main->gcolDocuments().count(); ++i)
            main->gcolDocuments().at(i)->setModified(false);
    }

    /// One document with data, if any, in that situation; nothing else open.
    void arrange(Situation situation)
    {
        if (state.gbfPlotting)
            receive(frame('E', 0, 0, 1000, 2000, 0, 0));
        forgetChanges();
        main->gcolDocuments().CloseAll();
        settle();
        if (!device.Connected())
            connectInstrument();
        messages.shown.clear();
        if (situation == Situation::NoDocument)
            return;
        PenDocument* document = newDocument(PenDocument::Impedance);
        ASSERT_NE(document, nullptr);
        for (int i = 0; i < 20; ++i)
            document->AddImpedancePoint(1000 + 100 * i, 50 + i, 30, 1, i);
        settle();
        if (situation == Situation::Zoomed)
            QTest::keyClick(&windowOf(document)->view(), Qt::Key_Plus);
        if (situation == Situation::Sweep)
            receive(frame('P', 0, 5) + frame('D', 0, 1, 1000, 2000, 0, 0));
        document->setModified(false);
        settle();
    }

    static constexpr Situation kSituations[] = {Situation::NoDocument, Situation::Document, Situation::Zoomed,
                                                Situation::Sweep};

    void press(QMenu& menu, QAction& entry)
    {
        QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(&entry).center());
        settle();
        ++m_pressed;
    }
    QMenu* openMenu(QMenu& menu)
    {
        const QPoint place = main->menuBar()->actionGeometry(menu.menuAction()).center();
        QTest::mouseClick(main->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          main->menuBar()->mapTo(main.get(), place));
        settle();
        return menu.isVisible() ? &menu : nullptr;
    }
    QMenu* openPopup()
    {
        PenDocument* document = main->activeDocument();
        if (!document)
            return nullptr;
        GraphView& view = windowOf(document)->view();
        QTest::mouseClick(main->windowHandle(), Qt::RightButton, Qt::NoModifier,
                          view.mapTo(main.get(), view.plotArea().center()));
        settle();
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static void closePopups()
    {
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        settle();
    }
    static bool canPress(const QAction& entry)
    {
        return entry.isVisible() && entry.isEnabled() && !entry.isSeparator() &&
               entry.objectName() != QLatin1String("mnuFileExit");
    }

    QTimer m_dismiss;
    int m_dialogs = 0;
    int m_pressed = 0;
};

TEST_P(EveryEntryTest, ofAMenuMayBePressed)
{
    QMenu* menu = nullptr;
    for (QAction* top : main->menuBar()->actions()) {
        if (top->text() == QLatin1String(GetParam()))
            menu = top->menu();
    }
    ASSERT_NE(menu, nullptr);
    for (const Situation situation : kSituations) {
        // The list is as it is when the menu opens: by place, since entries come and go.
        for (qsizetype i = 0; i < menu->actions().size(); ++i) {
            arrange(situation);
            ASSERT_NE(openMenu(*menu), nullptr) << "situation " << static_cast<int>(situation);
            QAction* entry = menu->actions().at(i);
            if (canPress(*entry))
                press(*menu, *entry);
            closePopups();
            EXPECT_FALSE(main->isUnloaded());
        }
    }
    EXPECT_GT(m_pressed, 5);
}

INSTANTIATE_TEST_SUITE_P(Menus, EveryEntryTest, ::testing::ValuesIn(kMenus));

class EveryButtonTest : public EveryEntryTest
{};

TEST_F(EveryButtonTest, noMenuIsLeftOut)
{
    QStringList menus, pressed;
    for (const QAction* top : main->menuBar()->actions()) {
        menus += top->text();
        ASSERT_NE(top->menu(), nullptr);
        for (const QAction* entry : top->menu()->actions())
            EXPECT_EQ(entry->menu(), nullptr)
                << "an entry of " << entry->text().toStdString() << " would not be pressed";
    }
    for (const char* const menu : kMenus)
        pressed += QLatin1String(menu);
    EXPECT_EQ(menus, pressed);
}

TEST_F(EveryButtonTest, ofTheBarsMayBePressed)
{
    for (const Situation situation : kSituations) {
        const auto bars = main->findChildren<QToolBar*>();
        ASSERT_GE(bars.size(), 2);
        for (QToolBar* const bar : bars) {
            for (QAction* action : bar->actions()) {
                arrange(situation);
                QWidget* button = bar->widgetForAction(action);
                if (!canPress(*action) || !button || !button->isVisible())
                    continue;
                QTest::mouseClick(main->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                                  button->mapTo(main.get(), button->rect().center()));
                settle();
                ++m_pressed;
            }
        }
    }
    EXPECT_GT(m_pressed, 60);
    EXPECT_GT(m_dialogs, 3);
}

TEST_F(EveryButtonTest, ofThePopupMayBePressed)
{
    for (const Situation situation : {Situation::Document, Situation::Zoomed, Situation::Sweep}) {
        arrange(situation);
        QMenu* popup = openPopup();
        ASSERT_NE(popup, nullptr);
        const qsizetype count = popup->actions().size();
        closePopups();
        for (qsizetype i = 0; i < count; ++i) {
            qsizetype ofSub = 1;
            for (qsizetype sub = 0; sub < ofSub; ++sub) {
                arrange(situation);
                popup = openPopup();
                ASSERT_NE(popup, nullptr);
                QAction* entry = popup->actions().value(i);
                if (!entry || !canPress(*entry) || (sub > 0 && !entry->menu())) {
                    closePopups();
                    break;
                }
                QMenu* subMenu = entry->menu();
                ofSub = subMenu ? subMenu->actions().size() : 1;
                press(*popup, *entry); // a menu without sub-menu dies with this
                if (subMenu) {
                    ASSERT_TRUE(waitFor([subMenu] { return subMenu->isVisible(); }));
                    if (QAction* inner = subMenu->actions().value(sub); inner && canPress(*inner))
                        press(*subMenu, *inner);
                }
                closePopups();
            }
        }
    }
    EXPECT_GT(m_pressed, 30);
}

TEST_F(EveryButtonTest, ofTheEndMayBePressed)
{
    for (const Situation situation : kSituations) {
        if (main->isUnloaded()) {
            main = std::make_unique<frmMain>(ShellContext{state, preferences, devices, device, mirror, messages});
            SetUp();
        }
        arrange(situation);
        QMenu* const menu = main->menuBar()->actions().constFirst()->menu();
        ASSERT_NE(openMenu(*menu), nullptr);
        QAction* const entry = &action("mnuFileExit");
        ASSERT_TRUE(entry->isEnabled());
        press(*menu, *entry);
        EXPECT_TRUE(main->isUnloaded()) << "situation " << static_cast<int>(situation);
    }
}

TEST_F(EveryButtonTest, ofTheKeyboardMayBePressed)
{
    for (const Situation situation : kSituations) {
        for (const Command* command : main->registry().commands()) {
            if (command->shortcut.isEmpty() || command->name == QLatin1String("mnuFileExit"))
                continue;
            arrange(situation);
            main->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
            const auto keys = QKeySequence::listFromString(command->shortcut, QKeySequence::PortableText);
            for (const QKeySequence& key : keys)
                QTest::keySequence(main.get(), key);
            settle();
            ++m_pressed;
        }
    }
    EXPECT_GT(m_pressed, 80);
    EXPECT_GT(m_dialogs, 3);
}

} // namespace
