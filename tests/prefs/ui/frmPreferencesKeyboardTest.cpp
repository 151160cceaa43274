// SPDX-License-Identifier: GPL-3.0-or-later
// Keyboard, screen reader, fonts and place of the preferences window.
#include "PreferencesWindow.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFontDatabase>
#include <QPushButton>
#include <QScreen>

namespace {

TEST_F(PreferencesWindowTest, ListsItsTabsInOrderAndWrapsWithControlTab)
{
    setFolders();
    open();
    auto* const tabs = find<QTabWidget>("SSTab1");
    QStringList texts;
    for (int i = 0; i < tabs->count(); ++i)
        texts.append(tabs->tabText(i));
    EXPECT_EQ(texts.join(QLatin1Char('|')), QStringLiteral("Pen Colours|Amplitude|Impedance|Reactance|General"));
    auto* const button = find<QPushButton>("cmdOK");
    button->setFocus();
    for (const int expected : {1, 2, 3, 4, 0, 1}) {
        QTest::keyClick(button, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(tabs->currentIndex(), expected);
    }
    for (const int expected : {0, 4, 3}) {
        QTest::keyClick(button, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(tabs->currentIndex(), expected);
    }
    auto* const inside = find<QWidget>("optXFreqLog");
    inside->setFocus();
    QTest::keyClick(inside, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), 4);
}

TEST_F(PreferencesWindowTest, OpensOnAChosenPage)
{
    open();
    window->selectPage(5);
    EXPECT_EQ(find<QTabWidget>("SSTab1")->tabText(find<QTabWidget>("SSTab1")->currentIndex()),
              QStringLiteral("General"));
}

TEST_F(PreferencesWindowTest, SelectsAFontByItsExactNameOnly)
{
    const QString font = QFontDatabase::families().value(0);
    const QString otherCase = font.toLower() == font ? font.toUpper() : font.toLower();
    open();
    auto* const list = find<QComboBox>("combFontSelection");
    EXPECT_EQ(list->count() > 0, true);
    window->PopulateTheFontSelectWindow();
    EXPECT_EQ(list->currentIndex(), -1);
    window->SetCurrentFont(otherCase);
    EXPECT_EQ(list->currentIndex(), -1) << "case counts";
    window->SetCurrentFont(font);
    EXPECT_EQ(list->currentText(), font);
    window->SetCurrentFont(QStringLiteral("No Such Font"));
    EXPECT_EQ(list->currentText(), font) << "no find leaves the selection";
}

TEST_F(PreferencesWindowTest, KeepsAStoredFontThatIsNotInstalled)
{
    store_("Preferences", "DefaultFont", "No Such Font");
    open();
    EXPECT_EQ(find<QComboBox>("combFontSelection")->placeholderText(), QStringLiteral("No Such Font (not installed)"));
    pressOk();
    EXPECT_EQ(stored("Preferences", "DefaultFont"), QStringLiteral("No Such Font"));
}

TEST_F(PreferencesWindowTest, DropsWhatIsTypedIntoTheFontList)
{
    setFolders();
    open();
    window->selectPage(5);
    auto* const list = find<QComboBox>("combFontSelection");
    ASSERT_GE(list->count(), 2);
    list->setCurrentIndex(0);
    list->setFocus();
    const QString last = list->itemText(list->count() - 1);
    QTest::keyClicks(list, last);
    EXPECT_EQ(list->currentIndex(), 0);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(list->currentIndex(), 1) << "the arrows still choose";
}

TEST_F(PreferencesWindowTest, StandsInTheMiddleOfTheMainWindowOrTheScreen)
{
    setFolders();
    open();
    constexpr int kFrame = 8; // how wide a frame the window system adds is known only afterwards
    const QPoint middle = window->screen()->availableGeometry().center();
    EXPECT_LE((window->frameGeometry().center() - middle).manhattanLength(), kFrame);
    escape();
    host.area = QRect(20, 30, 300, 200);
    open();
    EXPECT_LE((window->frameGeometry().center() - host.area.center()).manhattanLength(), kFrame);
}

TEST_F(PreferencesWindowTest, NamesEveryControlForScreenReaders)
{
    open();
    for (const QWidget* control : window->findChildren<QWidget*>()) {
        if (control->window() != window.get() || control->focusPolicy() == Qt::NoFocus ||
            control->objectName().startsWith(QStringLiteral("qt_")))
            continue;
        const auto* const button = qobject_cast<const QAbstractButton*>(control);
        const bool named = !control->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty());
        EXPECT_TRUE(named || control->parentWidget()->inherits("QComboBox") ||
                    control->parentWidget()->inherits("QTabWidget") || control->inherits("QGroupBox"))
            << control->metaObject()->className() << " " << control->objectName().toStdString();
    }
}

TEST_F(PreferencesWindowTest, IsWalkedThroughByTabInReadingOrder)
{
    setFolders();
    open();
    find<QTabWidget>("SSTab1")->setCurrentIndex(0);
    find<QWidget>("lblColour_0")->setFocus();
    QStringList order;
    for (int i = 0; i < 12; ++i) {
        order.append(window->focusWidget()->objectName());
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
    QStringList expected;
    for (int pen = 0; pen < 10; ++pen)
        expected.append(QStringLiteral("lblColour_%1").arg(pen));
    expected.append({QStringLiteral("cmdDefault"), QStringLiteral("cmdOK")});
    EXPECT_EQ(order, expected) << order.join(QLatin1Char(' ')).toStdString();

    window->selectPage(5);
    find<QWidget>("txtFilePaths_0")->setFocus();
    order.clear();
    for (int i = 0; i < 9; ++i) {
        order.append(window->focusWidget()->objectName());
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.join(QLatin1Char(' ')).toStdString(), "txtFilePaths_0 btnSetPath_0 txtFilePaths_1 btnSetPath_1 "
                                                          "txtFilePaths_2 btnSetPath_2 txtFilePaths_3 btnSetPath_3 "
                                                          "cmdDefault");
}

} // namespace
