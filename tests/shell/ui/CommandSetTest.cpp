// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/CommandSet.h"

#include "shell/ui/MainWindowHarness.h"
#include "widgets/ui/TintedIcon.h"

#include <QClipboard>
#include <QMenuBar>
#include <QSet>
#include <QToolBar>

namespace {

class CommandSetTest : public MainWindowHarness
{
protected:
    std::vector<const Command*> all() const { return main->registry().commands(); }
    static QStringList namesOf(const QMenu& menu)
    {
        QStringList names;
        for (const QAction* entry : menu.actions()) {
            if (entry->isVisible())
                names.append(entry->isSeparator() ? QStringLiteral("-") : entry->objectName());
        }
        return names;
    }
    QStringList buttonsOf(const char* bar) const
    {
        QStringList names;
        for (const QAction* entry : main->findChild<QToolBar*>(QLatin1String(bar))->actions())
            names.append(entry->isSeparator() ? QStringLiteral("-") : entry->objectName());
        return names;
    }
};

TEST_F(CommandSetTest, keysAreUnique)
{
    QHash<QString, QString> owners;
    for (const Command* command : all()) {
        if (command->shortcut.isEmpty())
            continue;
        const auto keys = QKeySequence::listFromString(command->shortcut, QKeySequence::PortableText);
        for (const QKeySequence& key : keys) {
            const QString text = key.toString(QKeySequence::PortableText);
            EXPECT_FALSE(text.isEmpty()) << command->name.toStdString() << " has a key that cannot be read";
            EXPECT_FALSE(owners.contains(text)) << text.toStdString() << ": " << command->name.toStdString() << " and "
                                                << owners.value(text).toStdString();
            owners.insert(text, command->name);
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

TEST_F(CommandSetTest, everyCommandHasTextTipHandlerAndAPlaceOfItsOwn)
{
    QSet<std::pair<int, int>> places;
    EXPECT_GT(all().size(), 35U);
    for (const Command* command : all()) {
        const std::string name = command->name.toStdString();
        EXPECT_FALSE(command->text.isEmpty()) << name;
        EXPECT_FALSE(command->statusTip.isEmpty()) << name;
        EXPECT_FALSE(command->statusTip.endsWith(QLatin1Char('.'))) << name;
        EXPECT_TRUE(command->handler) << name;
        EXPECT_TRUE(action(name.c_str()).toolTip().endsWith(QLatin1Char('\n') + command->statusTip)) << name;
        const std::pair place(static_cast<int>(command->menu), command->place);
        EXPECT_FALSE(places.contains(place)) << name << " stands where another command does";
        places.insert(place);
        if (!command->icon.isEmpty()) {
            EXPECT_FALSE(tintedIcon(command->icon).isNull()) << name;
        }
        if (!command->toolBarKey.isEmpty()) {
            EXPECT_FALSE(command->icon.isEmpty()) << name << " has a button without a drawing";
        }
    }
}

TEST_F(CommandSetTest, menusKeepTheirOrder)
{
    EXPECT_EQ(
        namesOf(main->commands().menu(Command::Menu::File)).filter(QStringLiteral("mnu")).join(u' '),
        QStringLiteral("mnuFileNew mnuFileOpen mnuFileClose mnuFileReopenClosed mnuFileSave mnuFileSaveAs "
                       "mnuFileSaveAll mnuFileExport mnuFileExportPicture mnuFilePrint mnuFileProperties mnuFileExit"));
    EXPECT_EQ(namesOf(main->commands().menu(Command::Menu::Edit)).join(u' '),
              QStringLiteral("- mnuEditUndo mnuEditRedo - mnuEditCut mnuEditCopy mnuEditCopyPicture mnuEditPaste "
                             "mnuEditBringBack - mnuPenLock mnuPenUnlockAll - mnuPreferences"));
    EXPECT_EQ(namesOf(main->commands().menu(Command::Menu::Test)).join(u' '),
              QStringLiteral("- mnuTestStart mnuTestStopTest mnuTestRepeat - mnuRunTestScript mnuReRunLastTestScript "
                             "mnuSendTestScript - mnuTestSettings "
                             "mnuTestDevice mnuTestDeviceProperties mnuTestSchedule"));
    EXPECT_EQ(namesOf(main->commands().menu(Command::Menu::Masks)).join(u' '),
              QStringLiteral("- mnuCheckMask - mnuMaskRead mnuMaskSave"));
    EXPECT_EQ(
        namesOf(main->commands().menu(Command::Menu::Help)).join(u' '),
        QStringLiteral("- mnuManual mnuInterimManual mnuOnLineHelp - mnuHelpUpdate mnuHelpFirmware - mnuHelpAbout"));
    EXPECT_EQ(
        buttonsOf("tbToolBar").join(u' '),
        QStringLiteral("mnuFileNew mnuFileOpen mnuFileSave mnuFileExport mnuFilePrint - mnuEditCut mnuEditCopy "
                       "mnuEditPaste - mnuViewOptions mnuViewAddText mnuViewMarkPoints mnuViewZoomExtents mnuViewFit "
                       "mnuEditUndo mnuEditRedo - "
                       "mnuTestStart mnuTestStopTest mnuTestRepeat mnuTestSettings mnuTestDevice - "
                       "mnuNextDocument mnuPreviousDocument - mnuManual"));
}

TEST_F(CommandSetTest, aCommandThatComesLaterTakesItsPlaceInItsMenu)
{
    int calls = 0;
    main->registry().add({.name = "mnuViewLater",
                          .menu = Command::Menu::View,
                          .place = 115,
                          .text = "Later...",
                          .icon = "about",
                          .shortcut = "Ctrl+Shift+L",
                          .statusTip = "Come later",
                          .handler = [&calls] { ++calls; }});
    EXPECT_TRUE(namesOf(main->commands().menu(Command::Menu::View))
                    .join(u' ')
                    .contains(QStringLiteral("mnuViewAddText mnuViewLater mnuViewMarkPoints")));
    action("mnuViewLater").trigger();
    EXPECT_EQ(calls, 1);
}

TEST_F(CommandSetTest, mnemonicsAreUniqueWithinEachMenu)
{
    const auto menus = main->menuBar()->actions();
    ASSERT_EQ(menus.size(), 7);
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

TEST_F(CommandSetTest, everyCommandStandsInAMenu)
{
    QSet<QString> shown;
    for (const QAction* top : main->menuBar()->actions()) {
        for (const QAction* entry : top->menu()->actions())
            shown.insert(entry->objectName());
    }
    for (const Command* command : all())
        EXPECT_TRUE(shown.contains(command->name)) << command->name.toStdString();
}

TEST_F(CommandSetTest, everyToolBarKeyHasItsCommand)
{
    const std::pair<const char*, const char*> expected[] = {
        {"New", "mnuFileNew"},
        {"Open", "mnuFileOpen"},
        {"Save", "mnuFileSave"},
        {"Export Data", "mnuFileExport"},
        {"Print", "mnuFilePrint"},
        {"Cut", "mnuEditCut"},
        {"Copy", "mnuEditCopy"},
        {"Paste", "mnuEditPaste"},
        {"GraphView", "mnuViewOptions"},
        {"Add Text", "mnuViewAddText"},
        {"Mark Points", "mnuViewMarkPoints"},
        {"Zoom Extents", "mnuViewZoomExtents"},
        {"Fit", "mnuViewFit"},
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
    QSet<QString> keys;
    for (const auto& [key, name] : expected) {
        keys.insert(QLatin1String(key));
        QAction* button = main->commands().button(QLatin1String(key));
        ASSERT_NE(button, nullptr) << key;
        EXPECT_EQ(button->objectName(), QLatin1String(name)) << key;
        const QToolBar* bar = main->findChild<QToolBar*>(QLatin1String("tbToolBar"));
        const QToolBar* penBar = main->findChild<QToolBar*>(QLatin1String("tbPenBar"));
        EXPECT_TRUE(bar->actions().contains(button) || penBar->actions().contains(button)) << key;
    }
    for (const Command* command : all())
        EXPECT_TRUE(command->toolBarKey.isEmpty() || keys.contains(command->toolBarKey))
            << command->toolBarKey.toStdString();
}

TEST_F(CommandSetTest, keyCompareIgnoresCase)
{
    EXPECT_EQ(main->commands().button(QStringLiteral("START TEST")), &action("mnuTestStart"));
    EXPECT_EQ(main->commands().button(QStringLiteral("unlockALL")), &action("mnuPenUnlockAll"));
    EXPECT_EQ(main->commands().button(QStringLiteral("StartTest")), nullptr);
}

TEST_F(CommandSetTest, aButtonIsClickedByItsKeyWhateverTheCase)
{
    load();
    mirror.bfImpedanceTest = true;
    main->buttonClick(QStringLiteral("no such button"));
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    main->buttonClick(QStringLiteral("nEW"));
    settle();
    EXPECT_EQ(main->gcolDocuments().count(), 1);
}

TEST_F(CommandSetTest, commandsOfADocumentAreDisabledWithoutOne)
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

TEST_F(CommandSetTest, commandsThatNeedAnInstrumentAreDisabledWithoutOne)
{
    load();
    EXPECT_FALSE(action("mnuTestRepeat").isEnabled());
    EXPECT_FALSE(action("mnuTestDeviceProperties").isEnabled());
    EXPECT_TRUE(action("mnuTestStart").isEnabled()) << "it offers the chooser";
    connectInstrument();
    EXPECT_TRUE(action("mnuTestRepeat").isEnabled());
    EXPECT_TRUE(action("mnuTestDeviceProperties").isEnabled());
    peer->unplug();
    EXPECT_TRUE(waitFor([this] { return !action("mnuTestDeviceProperties").isEnabled(); }));
    EXPECT_FALSE(action("mnuTestRepeat").isEnabled());
}

TEST_F(CommandSetTest, lockAndShowPenRestDuringATest)
{
    load();
    connectInstrument();
    PenDocument* document = newDocument(PenDocument::Impedance);
    receive(frame('P', 0, 5) + frame('D', 0, 1, 1000, 2000, 0, 0));
    ASSERT_TRUE(state.gbfPlotting);
    for (const char* name : {"mnuPenLock", "mnuPenUnlockAll", "mnuPenView", "mnuPenViewAll"})
        EXPECT_FALSE(action(name).isEnabled()) << name;
    trigger("mnuPenLock");
    EXPECT_EQ(document->GetPenLock(0), 0);
    receive(frame('E', 0, 0, 1000, 2000, 0, 0));
    for (const char* name : {"mnuPenLock", "mnuPenUnlockAll", "mnuPenView", "mnuPenViewAll"})
        EXPECT_TRUE(action(name).isEnabled()) << name;
}

TEST_F(CommandSetTest, aDocumentOfAStrangeFormatIsViewedOnly)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    GraphModel& graph = document->peGraph();
    graph.setWorkingTable(2);
    graph.setTARows(1);
    graph.setTAColumns(2);
    graph.setTAText(0, 0, QStringLiteral("0.5"));
    QString file = folder.filePath(QStringLiteral("strange.gzd"));
    ASSERT_TRUE(document->fileSavePlot(file));
    trigger("mnuFileClose");
    ASSERT_TRUE(main->gcolDocuments().LoadExistingDocument(file));
    settle();
    ASSERT_TRUE(main->activeDocument()->isViewOnly());
    for (const char* name : {"mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuViewOptions", "mnuViewAddText"})
        EXPECT_FALSE(action(name).isEnabled()) << name;
    EXPECT_TRUE(action("mnuFileProperties").isEnabled());
}

TEST_F(CommandSetTest, statesAreRightWhenADocumentArrivesWhileAnotherWindowHasTheKeyboard)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    QString file = folder.filePath(QStringLiteral("plot.gzd"));
    ASSERT_TRUE(document->fileSavePlot(file));
    trigger("mnuFileClose");
    QApplication::clipboard()->clear();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    ASSERT_TRUE(main->gcolDocuments().LoadExistingDocument(file));
    settle();
    ASSERT_FALSE(main->isActiveWindow());
    EXPECT_TRUE(action("mnuFileSave").isEnabled());
    for (const char* name : {"mnuEditUndo", "mnuEditRedo", "mnuEditPaste"})
        EXPECT_FALSE(action(name).isEnabled()) << name;
    EXPECT_TRUE(action("mnuPenView").isChecked());
    EXPECT_TRUE(main->tbPenBar().lblPen(0).isCurrent());
}

TEST_F(CommandSetTest, statesAreRightWhenAWindowIsActivatedBeforeItsPlotIsLoaded)
{
    load();
    QString file = folder.filePath(QStringLiteral("plot.gzd"));
    ASSERT_TRUE(newDocument(PenDocument::Impedance)->fileSavePlot(file));
    trigger("mnuFileClose");
    QApplication::clipboard()->clear();
    PenDocument* document = main->gcolDocuments().LoadNewCleanDoc();
    ASSERT_NE(document, nullptr);
    Q_EMIT main->documentArea().subWindowActivated(windowOf(document));
    ASSERT_TRUE(document->fileLoadPlot(file));
    main->documentArea().showDocument(*document);
    settle();
    EXPECT_TRUE(action("mnuFileSave").isEnabled());
    for (const char* name : {"mnuEditUndo", "mnuEditRedo", "mnuEditPaste"})
        EXPECT_FALSE(action(name).isEnabled()) << name;
    EXPECT_TRUE(action("mnuPenView").isChecked());
}

TEST_F(CommandSetTest, theKeyOfFileCloseClosesTheActiveDocument)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    newDocument(PenDocument::Impedance);
    main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
    QTest::keyClick(main->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    settle();
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_EQ(main->activeDocument(), document);
    QTest::keyClick(main->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    settle();
    EXPECT_EQ(main->gcolDocuments().count(), 0);
}

TEST_F(CommandSetTest, iconsTakeTheTextColourOfTheirPalette)
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

TEST_F(CommandSetTest, aHighlightedIconKeepsItsWholeGlyph)
{
    const auto pixelsUnlike = [](const QIcon& icon, QIcon::Mode mode, const QColor& ground) {
        const QImage image = icon.pixmap(QSize(48, 48), mode).toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                const int distance = qAbs(colour.red() - ground.red()) + qAbs(colour.green() - ground.green()) +
                                     qAbs(colour.blue() - ground.blue());
                if (colour.alpha() > 200 && distance > 120)
                    ++count;
            }
        }
        return count;
    };
    const QColor highlight = QApplication::palette().color(QPalette::Highlight);
    const QColor ground = QApplication::palette().color(QPalette::Window);
    for (const Command* command : all()) {
        if (command->icon.isEmpty())
            continue;
        const QIcon icon = tintedIcon(command->icon);
        const int whole = pixelsUnlike(icon, QIcon::Normal, ground);
        ASSERT_GT(whole, 20) << command->icon.toStdString();
        EXPECT_GE(pixelsUnlike(icon, QIcon::Active, highlight), whole * 9 / 10) << command->icon.toStdString();
        EXPECT_GE(pixelsUnlike(icon, QIcon::Active, ground), whole * 9 / 10) << "on a button under the mouse";
    }
}

TEST_F(CommandSetTest, anIconThatDoesNotExistIsNull)
{
    EXPECT_TRUE(tintedIcon(QStringLiteral("no-such-icon")).isNull());
    EXPECT_FALSE(programIcon().isNull());
}

} // namespace
