// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/Commands.h"

#include "shell/ui/MainWindowHarness.h"
#include "widgets/ui/TintedIcon.h"

#include <QMenuBar>
#include <QSet>
#include <QToolBar>

namespace {

class CommandsTest : public MainWindowHarness
{};

TEST_F(CommandsTest, namesAreUnique)
{
    QSet<QString> names;
    for (const Command& command : commandTable()) {
        const QString name = QLatin1String(command.name);
        EXPECT_FALSE(names.contains(name)) << command.name;
        names.insert(name);
    }
    EXPECT_GT(names.size(), 20);
}

TEST_F(CommandsTest, keysAreUnique)
{
    QHash<QString, QString> owners;
    for (const Command& command : commandTable()) {
        if (!*command.shortcut)
            continue;
        const auto keys = QKeySequence::listFromString(QLatin1String(command.shortcut), QKeySequence::PortableText);
        for (const QKeySequence& key : keys) {
            const QString text = key.toString(QKeySequence::PortableText);
            EXPECT_FALSE(text.isEmpty()) << command.name << " has a key that cannot be read";
            EXPECT_FALSE(owners.contains(text))
                << text.toStdString() << ": " << command.name << " and " << owners.value(text).toStdString();
            owners.insert(text, QLatin1String(command.name));
        }
    }
    EXPECT_EQ(owners.value(QStringLiteral("F5")), QStringLiteral("mnuTestStart"));
    EXPECT_EQ(owners.value(QStringLiteral("Shift+F5")), QStringLiteral("mnuReRunLastTestScript"));
    EXPECT_EQ(owners.value(QStringLiteral("F6")), QStringLiteral("mnuTestStopTest"));
    EXPECT_EQ(owners.value(QStringLiteral("F8")), QStringLiteral("mnuTestDevice"));
    EXPECT_EQ(owners.value(QStringLiteral("F9")), QStringLiteral("mnuWindowTileVertical"));
    EXPECT_EQ(owners.value(QStringLiteral("F11")), QStringLiteral("mnuWindowCascade"));
    EXPECT_EQ(owners.value(QStringLiteral("F1")), QStringLiteral("mnuManual"));
    EXPECT_FALSE(owners.contains(QStringLiteral("F10")));
}

TEST_F(CommandsTest, mnemonicsAreUniqueWithinEachMenu)
{
    const auto menus = main->menuBar()->actions();
    ASSERT_EQ(menus.size(), 6);
    for (const QAction* top : menus) {
        QHash<QChar, QString> owners;
        for (const QAction* entry : top->menu()->actions()) {
            const QString text = QString(entry->text()).remove(QLatin1String("&&"));
            const qsizetype mark = text.indexOf(QLatin1Char('&'));
            if (mark < 0)
                continue;
            const QChar letter = text[mark + 1].toLower();
            EXPECT_FALSE(owners.contains(letter)) << top->text().toStdString() << ": " << text.toStdString() << " and "
                                                  << owners.value(letter).toStdString();
            owners.insert(letter, text);
        }
    }
}

TEST_F(CommandsTest, everyCommandStandsInAMenuWithStatusTipAndIcon)
{
    QSet<QString> shown;
    for (const QAction* top : main->menuBar()->actions()) {
        for (const QAction* entry : top->menu()->actions())
            shown.insert(entry->objectName());
    }
    for (const Command& command : commandTable()) {
        EXPECT_TRUE(shown.contains(QLatin1String(command.name))) << command.name;
        EXPECT_FALSE(action(command.name).statusTip().isEmpty()) << command.name;
        if (*command.icon) {
            EXPECT_FALSE(tintedIcon(QLatin1String(command.icon)).isNull()) << command.icon;
        }
    }
}

TEST_F(CommandsTest, everyToolBarKeyHasItsCommand)
{
    const std::pair<const char*, const char*> expected[] = {
        {"New", "mnuFileNew"},
        {"Open", "mnuFileOpen"},
        {"Save", "mnuFileSave"},
        {"Cut", "mnuEditCut"},
        {"Copy", "mnuEditCopy"},
        {"Paste", "mnuEditPaste"},
        {"Add Text", "mnuViewAddText"},
        {"Mark Points", "mnuViewMarkPoints"},
        {"Zoom Extents", "mnuViewZoomExtents"},
        {"Undo", "mnuEditUndo"},
        {"Redo", "mnuEditRedo"},
        {"Start Test", "mnuTestStart"},
        {"Stop Test", "mnuTestStopTest"},
        {"Repeat Test", "mnuTestRepeat"},
        {"Test Settings", "mnuTestSettings"},
        {"Connect Device", "mnuTestDevice"},
        {"Next document", "mnuNextDocument"},
        {"Previous document", "mnuPreviousDocument"},
        {"Help", "mnuManual"},
        {"Lock", "mnuPenLock"},
        {"UnlockAll", "mnuPenUnlockAll"},
        {"View", "mnuPenView"},
        {"ViewAll", "mnuPenViewAll"},
    };
    for (const auto& [key, name] : expected) {
        QAction* button = main->commands().button(QLatin1String(key));
        ASSERT_NE(button, nullptr) << key;
        EXPECT_EQ(button->objectName(), QLatin1String(name)) << key;
    }
}

TEST_F(CommandsTest, keyCompareIgnoresCase)
{
    EXPECT_EQ(main->commands().button(QStringLiteral("START TEST")), &action("mnuTestStart"));
    EXPECT_EQ(main->commands().button(QStringLiteral("unlockALL")), &action("mnuPenUnlockAll"));
    EXPECT_EQ(main->commands().button(QStringLiteral("StartTest")), nullptr);
}

TEST_F(CommandsTest, aButtonIsClickedByItsKeyWhateverTheCase)
{
    load();
    mirror.bfImpedanceTest = true;
    main->buttonClick(QStringLiteral("no such button"));
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    main->buttonClick(QStringLiteral("nEW"));
    settle();
    EXPECT_EQ(main->gcolDocuments().count(), 1);
}

TEST_F(CommandsTest, commandsOfADocumentAreDisabledWithoutOne)
{
    load();
    EXPECT_FALSE(action("mnuFileSave").isEnabled());
    EXPECT_FALSE(action("mnuEditCopy").isEnabled());
    EXPECT_TRUE(action("mnuFileNew").isEnabled());
    EXPECT_TRUE(action("mnuTestStart").isEnabled());
    newDocument(PenDocument::Impedance);
    EXPECT_TRUE(action("mnuFileSave").isEnabled());
    EXPECT_TRUE(action("mnuEditCopy").isEnabled());
    trigger("mnuFileClose");
    EXPECT_FALSE(action("mnuFileSave").isEnabled());
}

TEST_F(CommandsTest, iconsTakeTheTextColourOfTheirPalette)
{
    const auto averageLightness = [](const QImage& image) {
        double sum = 0;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                if (colour.alpha() > 200) {
                    sum += colour.lightness();
                    ++count;
                }
            }
        }
        return count > 0 ? sum / count : -1.0;
    };
    const QPalette before = QApplication::palette();
    const QIcon icon = tintedIcon(QStringLiteral("window-cascade"));

    QPalette dark = before;
    dark.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(dark);
    const double onDark = averageLightness(icon.pixmap(QSize(48, 48)).toImage());
    QPalette light = before;
    light.setColor(QPalette::WindowText, Qt::black);
    QApplication::setPalette(light);
    const double onLight = averageLightness(icon.pixmap(QSize(48, 48)).toImage());
    QApplication::setPalette(before);

    EXPECT_GT(onDark, 200);
    EXPECT_GE(onLight, 0);
    EXPECT_LT(onLight, 50);
}

TEST_F(CommandsTest, anIconThatDoesNotExistIsNull)
{
    EXPECT_TRUE(tintedIcon(QStringLiteral("no-such-icon")).isNull());
    EXPECT_FALSE(programIcon().isNull());
}

} // namespace
