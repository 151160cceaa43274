// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmAddText.h"

#include "document/DocumentBench.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class FrmAddTextTest : public ::testing::Test
{
protected:
    template <typename Widget>
    static Widget* find(const QWidget& form, const QString& name)
    {
        auto* found = form.findChild<Widget*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    static QLineEdit* title(const QWidget& form) { return find<QLineEdit>(form, "txtMainTitle"); }
    static QLineEdit* legend(const QWidget& form, int pen)
    {
        return find<QLineEdit>(form, QString("txtPenLegend_%1").arg(pen));
    }
    static QPushButton* button(const QWidget& form, const char* name) { return find<QPushButton>(form, name); }
    /// The form on the screen with the keyboard.
    static void show(QWidget& form)
    {
        form.show();
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    }
    static void click(QWidget& form, const char* name) { QTest::mouseClick(button(form, name), Qt::LeftButton); }

    DocumentBench bench;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);
};

TEST_F(FrmAddTextTest, titleShowsTheCaptionOrItsLastFiftyCharacters)
{
    EXPECT_EQ(frmAddText(*document).windowTitle(), "Add text: Document 1");
    const QString fifty(50, 'x');
    document->setCaption(fifty);
    EXPECT_EQ(frmAddText(*document).windowTitle(), "Add text: " + fifty);
    document->setCaption("a" + fifty);
    EXPECT_EQ(frmAddText(*document).windowTitle(), "Add text: ..." + fifty);
}

TEST_F(FrmAddTextTest, loadShowsTitleNamesAndColours)
{
    document->peGraph().setMainTitle("Langevin");
    document->peGraph().setSubsetLabels(3, "Part 4");
    document->SetPenColour(3, 0x332211);
    frmAddText form(*document);
    EXPECT_EQ(title(form)->text(), "Langevin");
    EXPECT_EQ(legend(form, 0)->text(), "Pen 1");
    EXPECT_EQ(legend(form, 3)->text(), "Part 4");
    EXPECT_EQ(legend(form, 9)->text(), "Pen 10");
    EXPECT_EQ(find<QLabel>(form, "lblColourSpot_3")->palette().color(QPalette::Window), QColor(0x11, 0x22, 0x33));
    EXPECT_FALSE(button(form, "cmdApply")->isEnabled());
}

TEST_F(FrmAddTextTest, applyWritesBothSubsetsAndWaitsForTheNextEdit)
{
    frmAddText form(*document);
    show(form);
    title(form)->selectAll();
    QTest::keyClicks(title(form), "New title");
    legend(form, 7)->selectAll();
    QTest::keyClicks(legend(form, 7), "Blue one");
    EXPECT_TRUE(button(form, "cmdApply")->isEnabled());
    EXPECT_EQ(document->peGraph().MainTitle(), "Title");
    click(form, "cmdApply");
    EXPECT_EQ(document->peGraph().MainTitle(), "New title");
    EXPECT_EQ(document->peGraph().SubsetLabels(7), "Blue one");
    EXPECT_EQ(document->peGraph().SubsetLabels(17), "Blue one");
    EXPECT_EQ(document->peGraph().shownProperties().MainTitle, "New title");
    EXPECT_TRUE(document->gbfModified());
    EXPECT_FALSE(button(form, "cmdApply")->isEnabled());
    EXPECT_TRUE(form.isVisible());
    QTest::keyClicks(legend(form, 7), "!");
    EXPECT_TRUE(button(form, "cmdApply")->isEnabled());
}

TEST_F(FrmAddTextTest, okAppliesAndCloses)
{
    frmAddText form(*document);
    show(form);
    QTest::keyClicks(legend(form, 0), " again");
    click(form, "cmdOK");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(document->peGraph().SubsetLabels(10), "Pen 1 again");
}

TEST_F(FrmAddTextTest, cancelAndEscapeChangeNothing)
{
    for (const bool escape : {false, true}) {
        frmAddText form(*document);
        show(form);
        QTest::keyClicks(legend(form, 0), " again");
        if (escape)
            QTest::keyClick(&form, Qt::Key_Escape);
        else
            click(form, "cmdCancel");
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(document->peGraph().SubsetLabels(0), "Pen 1");
        EXPECT_FALSE(document->gbfModified());
    }
}

TEST_F(FrmAddTextTest, aBarTypedIntoTheTitleIsDroppedAndIntoAPenNameIsNot)
{
    frmAddText form(*document);
    show(form);
    title(form)->setCursorPosition(2);
    QTest::keyClicks(title(form), "|");
    EXPECT_EQ(title(form)->text(), "Title");
    EXPECT_EQ(title(form)->cursorPosition(), 2);
    EXPECT_FALSE(button(form, "cmdApply")->isEnabled());
    QTest::keyClicks(title(form), "a|b");
    EXPECT_EQ(title(form)->text(), "Tiabtle");
    EXPECT_EQ(title(form)->cursorPosition(), 4);
    legend(form, 0)->selectAll();
    QTest::keyClicks(legend(form, 0), "a|b");
    EXPECT_EQ(legend(form, 0)->text(), "a|b");
    click(form, "cmdOK");
    EXPECT_EQ(document->peGraph().SubsetLabels(0), "a|b");
}

TEST_F(FrmAddTextTest, enterGoesDownTheBoxesAndBackToTheTitle)
{
    frmAddText form(*document);
    show(form);
    title(form)->setFocus();
    QTest::keyClick(title(form), Qt::Key_Return);
    for (int pen = 0; pen < 10; ++pen) {
        EXPECT_EQ(form.focusWidget(), legend(form, pen)) << pen;
        QTest::keyClick(legend(form, pen), Qt::Key_Return);
    }
    EXPECT_EQ(form.focusWidget(), title(form));
    EXPECT_TRUE(form.isVisible());
}

TEST_F(FrmAddTextTest, theFormClosesWithItsDocument)
{
    frmAddText form(*document);
    show(form);
    document.reset();
    EXPECT_FALSE(form.isVisible());
    form.cmdApply_Click();
}

} // namespace
