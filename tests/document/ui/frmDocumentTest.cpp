// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmDocument.h"

#include "controls/graph/ui/GraphView.h"
#include "document/DocumentBench.h"
#include "document/ui/DocumentArea.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class FrmDocumentTest : public ::testing::Test
{
protected:
    FrmDocumentTest()
        : area(bench.context, bench.state, bench.active)
    {
        area.resize(900, 700);
        area.show();
    }

    frmDocument* open(std::int16_t type = PenDocument::Impedance)
    {
        PenDocument* document = area.createDocument();
        document->gstrKey = QStringLiteral("Doc%1").arg(++m_number);
        document->PrepareNew(type, QStringLiteral("Document %1").arg(m_number));
        area.showDocument(*document);
        QApplication::processEvents();
        return area.windowOf(*document);
    }
    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    DocumentBench bench;
    DocumentArea area;

private:
    int m_number = 0;
};

TEST_F(FrmDocumentTest, theCaptionFollowsTheDocument)
{
    frmDocument* window = open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Document 1"));
    window->document().setCaption(QStringLiteral("/plots/part 7.gzd"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("/plots/part 7.gzd"));
}

TEST_F(FrmDocumentTest, aCloseThatTheMainWindowDidNotStartIsRefusedAndAskedFor)
{
    frmDocument* window = open();
    std::vector<PenDocument*> wanted;
    QObject::connect(&area, &DocumentArea::closeWanted, &area,
                     [&wanted](PenDocument* document) { wanted.push_back(document); });
    window->close();
    EXPECT_TRUE(window->isVisible());
    settle();
    EXPECT_EQ(wanted, std::vector<PenDocument*>{&window->document()});
}

TEST_F(FrmDocumentTest, unloadDestroysTheWindowInTheEventLoop)
{
    const QPointer<frmDocument> window = open();
    EXPECT_TRUE(area.unloadDocument(window->document()));
    settle();
    EXPECT_FALSE(window);
    EXPECT_EQ(area.activeDocument(), nullptr);
    EXPECT_EQ(bench.active.get(), nullptr);
}

TEST_F(FrmDocumentTest, aRefusedUnloadLeavesTheWindowAsItWas)
{
    const QPointer<frmDocument> window = open();
    window->document().SetModified();
    bench.messages.replies = {UserMessages::ReplyCancel};
    EXPECT_FALSE(area.unloadDocument(window->document()));
    settle();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    std::vector<PenDocument*> wanted;
    QObject::connect(&area, &DocumentArea::closeWanted, &area,
                     [&wanted](PenDocument* document) { wanted.push_back(document); });
    window->close();
    settle();
    EXPECT_TRUE(window) << "the refusal was not forgotten";
    EXPECT_EQ(wanted.size(), 1U);
}

TEST_F(FrmDocumentTest, keysReachTheDocumentBeforeTheGraph)
{
    frmDocument* window = open();
    PenDocument& document = window->document();
    for (int key = 1; key <= 9; ++key) {
        QTest::keyClick(&window->view(), static_cast<Qt::Key>(Qt::Key_0 + key));
        EXPECT_EQ(document.gCurrentPen(), key - 1);
    }
    QTest::keyClick(&window->view(), Qt::Key_0);
    EXPECT_EQ(document.gCurrentPen(), 9);
    QTest::keyClick(&window->view(), 'l');
    EXPECT_EQ(document.GetPenLock(9), 1);
    QTest::keyClick(&window->view(), 'L', Qt::ShiftModifier);
    EXPECT_EQ(document.GetPenLock(9), 0);
    QTest::keyClick(&window->view(), 'V', Qt::ShiftModifier);
    EXPECT_EQ(document.GetPenDisplay(9), 1);
    QTest::keyClick(&window->view(), 'v');
    EXPECT_EQ(document.GetPenDisplay(9), 0);
}

TEST_F(FrmDocumentTest, otherKeysAndKeysWithControlDoNothingToThePens)
{
    frmDocument* window = open();
    PenDocument& document = window->document();
    QTest::keyClick(&window->view(), Qt::Key_A);
    QTest::keyClick(&window->view(), Qt::Key_5, Qt::ControlModifier);
    QTest::keyClick(&window->view(), Qt::Key_L, Qt::AltModifier);
    EXPECT_EQ(document.gCurrentPen(), 0);
    EXPECT_EQ(document.GetPenLock(0), 0);
}

TEST_F(FrmDocumentTest, keysAreIgnoredWhileATestRuns)
{
    frmDocument* window = open();
    bench.state.gbfPlotting = true;
    QTest::keyClick(&window->view(), Qt::Key_5);
    EXPECT_EQ(window->document().gCurrentPen(), 0);
}

TEST_F(FrmDocumentTest, theTenthFunctionKeyIsSwallowed)
{
    frmDocument* window = open();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_F10, Qt::NoModifier);
    QApplication::sendEvent(&window->view(), &key);
    EXPECT_TRUE(key.isAccepted());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(FrmDocumentTest, showingADocumentGivesItsGraphTheFocus)
{
    area.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&area));
    frmDocument* first = open();
    frmDocument* second = open();
    EXPECT_TRUE(second->view().hasFocus());
    area.showDocument(first->document());
    EXPECT_TRUE(first->view().hasFocus());
    EXPECT_EQ(area.activeDocument(), &first->document());
}

TEST_F(FrmDocumentTest, theShownDocumentIsTheActiveOneAtOnce)
{
    frmDocument* first = open();
    frmDocument* second = open();
    EXPECT_EQ(bench.active.get(), &second->document());
    area.showDocument(first->document());
    EXPECT_EQ(bench.active.get(), &first->document());
}

TEST_F(FrmDocumentTest, aTestThatGoesOnKeepsTheDocumentOpen)
{
    const QPointer<frmDocument> window = open();
    bool agreed = false;
    area.mayClose = [&agreed] { return agreed; };
    EXPECT_FALSE(area.unloadDocument(window->document()));
    settle();
    ASSERT_TRUE(window);
    agreed = true;
    EXPECT_TRUE(area.unloadDocument(window->document()));
}

TEST_F(FrmDocumentTest, theFirstDocumentFillsTheAreaAndATiledAreaStaysTiled)
{
    frmDocument* first = open();
    EXPECT_TRUE(first->isMaximized());
    area.tileVertically();
    EXPECT_FALSE(first->isMaximized());
    frmDocument* second = open();
    EXPECT_FALSE(second->isMaximized());
}

TEST_F(FrmDocumentTest, popupEntriesOfTheMainWindowAreHandedOn)
{
    frmDocument* window = open();
    std::vector<std::pair<PenDocument*, int>> commands;
    QObject::connect(&area, &DocumentArea::popupCommand, &area,
                     [&commands](PenDocument* document, int item, int) { commands.emplace_back(document, item); });
    Q_EMIT window->document().peGraph().CustomMenuClicked(PopupCopy, 0);
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_EQ(commands[0], std::pair(&window->document(), int(PopupCopy)));
}

} // namespace
