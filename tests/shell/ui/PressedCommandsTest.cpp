// SPDX-License-Identifier: GPL-3.0-or-later
// The main window as a user's hands find it: mouse and keys on what is on the screen.
#include "shell/ui/MainWindowHarness.h"

#include <QClipboard>

namespace {

class PressedCommandsTest : public MainWindowHarness
{
protected:
    void SetUp() override { load(); }
};

} // namespace

TEST_F(PressedCommandsTest, aMenuEntryThatNeedsADocumentCannotBePressedWithoutOne)
{
    EXPECT_FALSE(pressMenu("mnuFileClose"));
    while (QWidget* const open = QApplication::activePopupWidget())
        open->close();
    settle();
    newDocument(PenDocument::Impedance);
    ASSERT_NE(main->activeDocument(), nullptr);
    EXPECT_TRUE(pressMenu("mnuFileClose"));
    EXPECT_EQ(main->activeDocument(), nullptr);
}

TEST_F(PressedCommandsTest, aShortcutActsOnTheActiveDocument)
{
    PenDocument* const document = newDocument(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 30, 1, 0);
    QApplication::clipboard()->clear();
    EXPECT_TRUE(pressShortcut("Ctrl+C"));
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QLatin1String("1000")));
    document->setModified(false);
}
