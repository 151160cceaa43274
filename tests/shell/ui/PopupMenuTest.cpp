// SPDX-License-Identifier: GPL-3.0-or-later
// The popup of a document and the entries that change while they are used, pressed by mouse in the real window.
#include "controls/graph/ui/GraphView.h"
#include "document/SystemClipboard.h"
#include "document/ui/frmAddText.h"
#include "shell/commands/files/ui/QuickFileMenu.h"
#include "shell/ui/MainWindowHarness.h"

#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QWindow>

namespace {

class PopupMenuTest : public MainWindowHarness
{
protected:
    void SetUp() override
    {
        load();
        document = measuredDocument();
    }
    void TearDown() override
    {
        if (document)
            document->setModified(false);
    }

    /// A click of the left button into the window that shows this menu, on this entry.
    static void press(QMenu& menu, QAction& entry)
    {
        ASSERT_TRUE(menu.windowHandle()) << "the menu is not on the screen";
        QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(&entry).center());
        settle();
    }

    /// The popup of the document's graph, opened by the right button.
    QMenu* openPopup()
    {
        GraphView& view = windowOf(document)->view();
        const QPoint place = view.mapTo(main.get(), view.plotArea().center());
        QTest::mouseClick(main->windowHandle(), Qt::RightButton, Qt::NoModifier, place);
        settle();
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }

    static QAction* entryOf(const QMenu& menu, int item, int sub)
    {
        for (QAction* entry : menu.actions()) {
            if (entry->data().toPoint() == QPoint(item, sub))
                return entry;
        }
        return nullptr;
    }

    void pressPopup(int item)
    {
        QMenu* menu = openPopup();
        ASSERT_NE(menu, nullptr);
        QAction* entry = entryOf(*menu, item, 0);
        ASSERT_NE(entry, nullptr);
        ASSERT_TRUE(entry->isEnabled());
        press(*menu, *entry);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
    void pressPopup(int item, int sub)
    {
        QMenu* menu = openPopup();
        ASSERT_NE(menu, nullptr);
        QAction* parent = entryOf(*menu, item, 0);
        ASSERT_NE(parent, nullptr);
        press(*menu, *parent);
        QMenu* subMenu = parent->menu();
        ASSERT_NE(subMenu, nullptr);
        ASSERT_TRUE(waitFor([subMenu] { return subMenu->isVisible(); }));
        press(*subMenu, *entryOf(*subMenu, item, sub));
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }

    QMenu* menuOfBar(const char* title)
    {
        for (QAction* top : main->menuBar()->actions()) {
            if (top->text() == QLatin1String(title))
                return top->menu();
        }
        return nullptr;
    }
    /// Opens a menu of the menu bar and clicks its entry of that name.
    void pressMenu(const char* title, const QString& name)
    {
        QMenu* menu = menuOfBar(title);
        ASSERT_NE(menu, nullptr);
        const QPoint place = main->menuBar()->actionGeometry(menu->menuAction()).center();
        QTest::mouseClick(main->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          main->menuBar()->mapTo(main.get(), place));
        settle();
        ASSERT_TRUE(menu->isVisible());
        for (QAction* entry : menu->actions()) {
            if (entry->objectName() == name) {
                press(*menu, *entry);
                return;
            }
        }
        FAIL() << "no entry " << name.toStdString();
    }
    void zoomIn()
    {
        QTest::keyClick(&windowOf(document)->view(), Qt::Key_Plus);
        settle();
        ASSERT_TRUE(document->canUndoZoom());
    }

    QPointer<PenDocument> document;
};

TEST_F(PopupMenuTest, copyFromThePopupFillsTheClipboard)
{
    QApplication::clipboard()->clear();
    pressPopup(PopupCopy);
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QStringLiteral("1000")));
    EXPECT_TRUE(document);
    pressPopup(PopupCopy);
}

TEST_F(PopupMenuTest, cutAndPasteFromThePopupMoveThePen)
{
    messages.replies = {UserMessages::ReplyYes};
    pressPopup(PopupCut);
    EXPECT_EQ(document->peGraph().YData(0, 0), -65536.0F);
    pressPopup(PopupPaste);
    EXPECT_EQ(document->peGraph().YData(0, 0), 50.0F);
}

TEST_F(PopupMenuTest, zoomsAreUndoneFromThePopup)
{
    zoomIn();
    pressPopup(PopupUndoZoom);
    EXPECT_FALSE(document->canUndoZoom());
    pressPopup(PopupRedoZoom);
    EXPECT_TRUE(document->canUndoZoom());
    pressPopup(PopupZoomExtents);
    EXPECT_FALSE(document->canUndoZoom());
}

TEST_F(PopupMenuTest, viewsAreSwitchedFromThePopupWhileZoomed)
{
    zoomIn();
    pressPopup(PopupView, 2);
    EXPECT_TRUE(document->gbfAltSubset());
    zoomIn();
    pressPopup(PopupPhase, 2);
    EXPECT_EQ(document->graphGetPhaseView(), 0);
    pressPopup(PopupMarkPoints);
    EXPECT_TRUE(document->peGraph().MarkDataPoints());
}

TEST_F(PopupMenuTest, aDialogOfThePopupOpensWhenTheMenuHasGone)
{
    bool seen = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<frmAddText*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        poll.stop();
        seen = true;
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "the menu still stands behind the dialog";
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    poll.start(2);
    pressPopup(PopupAddText);
    EXPECT_TRUE(waitFor([&] { return seen; }));
}

TEST_F(PopupMenuTest, aQuickFileEntryOutlivesTheOpeningOfItsFile)
{
    QString one = folder.filePath(QStringLiteral("one.gzd"));
    QString two = folder.filePath(QStringLiteral("two.gzd"));
    ASSERT_TRUE(document->fileSavePlot(one));
    ASSERT_TRUE(document->fileSavePlot(two));
    document->SetFileName({});
    main->quickFiles().UpdateQuickFileList(one);
    main->quickFiles().UpdateQuickFileList(two);
    settle();
    const QPointer<QAction> entry = main->findChild<QAction*>(QStringLiteral("mnuFileMRU_1"));
    int ended = 0;
    QObject::connect(entry, &QAction::triggered, [&ended] { ++ended; });
    pressMenu("&File", QStringLiteral("mnuFileMRU_1"));
    EXPECT_TRUE(entry) << "the entry died under its own handler";
    EXPECT_EQ(ended, 1);
    ASSERT_EQ(main->gcolDocuments().count(), 2);
    EXPECT_EQ(main->activeDocument()->GetFileName(), one);
    pressMenu("&File", QStringLiteral("mnuFileMRU_1"));
    ASSERT_EQ(main->gcolDocuments().count(), 3);
    EXPECT_EQ(main->activeDocument()->GetFileName(), two);
}

TEST_F(PopupMenuTest, anEntryOfTheWindowMenuGoesToItsDocument)
{
    newDocument(PenDocument::Amplitude);
    newDocument(PenDocument::Reactance);
    ASSERT_EQ(main->gcolDocuments().count(), 3);
    pressMenu("&Window", QStringLiteral("mnuWindowDocument_1"));
    EXPECT_EQ(main->activeDocument(), document);
    pressMenu("&Window", QStringLiteral("mnuWindowDocument_3"));
    EXPECT_EQ(main->activeDocument()->pgiTestType(), PenDocument::Reactance);
}

} // namespace
