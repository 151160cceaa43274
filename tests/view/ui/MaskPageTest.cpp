// SPDX-License-Identifier: GPL-3.0-or-later
// The page of the mask lines, driven in the window itself.
#include "ViewWindows.h"

#include <QLabel>

namespace {

using namespace Qt::StringLiterals;

class MaskPageTest : public ViewWindowTest
{
protected:
    MaskPageTest() { open(PenDocument::Impedance); }
};

TEST_F(MaskPageTest, MasksAreEnabledBehindAQuestionWithOkAndCancel)
{
    showTab("Mask");
    EXPECT_FALSE(isEnabled("txtUpperMaskFrequency_8"));
    bench.messages.replies = {UserMessages::ReplyCancel};
    click("chkEnableMasks");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].text, "Enable pen 9 and 10 masks?");
    EXPECT_EQ(bench.messages.shown[0].title, "Erase pen 9 10 Data");
    EXPECT_EQ(bench.messages.shown[0].style, UserMessages::OkCancel | UserMessages::Question);
    EXPECT_FALSE(isChecked("chkEnableMasks"));
    EXPECT_FALSE(document->hasMasks());
    click("chkEnableMasks");
    EXPECT_TRUE(document->hasMasks());
    EXPECT_EQ(cellText(*document, 1), "MASK");
    EXPECT_TRUE(isEnabled("txtUpperMaskFrequency_8"));
    EXPECT_TRUE(isEnabled("cmdShiftUp_9"));
    EXPECT_TRUE(changed());
    click("chkEnableMasks");
    EXPECT_EQ(cellText(*document, 1), "");
    EXPECT_EQ(document->GetPenLock(8), 0) << "switching off unlocks";
    EXPECT_FALSE(isEnabled("txtUpperMaskFrequency_9"));
    EXPECT_EQ(bench.messages.shown.size(), 2U) << "and asks nothing";
}

TEST_F(MaskPageTest, PointsAreEnteredByKeyboard)
{
    showTab("Mask");
    click("chkEnableMasks");
    EXPECT_EQ(control<QLabel>("lblDataPoint_8").text(), "Impedance in Ohms:");
    type("txtUpperMaskFrequency_8", "40k");
    enter("txtUpperMaskFrequency_8");
    EXPECT_EQ(graph().XData(8, 0), 40000);
    EXPECT_EQ(dialog->focusWidget()->objectName(), "txtUpperMaskDataPoint_8");
    type("txtUpperMaskDataPoint_8", "1e3");
    EXPECT_EQ(text("txtUpperMaskDataPoint_8"), "1E3");
    enter("txtUpperMaskDataPoint_8");
    EXPECT_EQ(graph().YData(8, 0), 1000);
    EXPECT_EQ(graph().YData(18, 0), 0.001F);
    EXPECT_EQ(control<QLabel>("lblPointIndex_8").text(), "Point Index: 2");
    EXPECT_EQ(dialog->focusWidget()->objectName(), "txtUpperMaskFrequency_8");
    EXPECT_EQ(text("txtUpperMaskDataPoint_8"), "");
    type("txtUpperMaskFrequency_9", "39k");
    type("txtUpperMaskDataPoint_9", "12,5");
    click("cmdUpperMaskStepFwd_9");
    EXPECT_EQ(graph().XData(9, 0), 39000);
    EXPECT_EQ(graph().YData(9, 0), 12.5);
    EXPECT_EQ(control<QLabel>("lblPointIndex_9").text(), "Point Index: 2");
    click("cmdUpperMaskStepBack_9");
    EXPECT_EQ(text("txtUpperMaskFrequency_9"), "39000");
    EXPECT_EQ(text("txtUpperMaskDataPoint_9"), "12.5");
    click("cmdUpperMaskStepBack_9");
    EXPECT_EQ(control<QLabel>("lblPointIndex_9").text(), "Point Index: 24");
    EXPECT_EQ(control<QLabel>("lblPointIndex_8").text(), "Point Index: 2");
}

TEST_F(MaskPageTest, AClearedValueUnsetsThePoint)
{
    showTab("Mask");
    click("chkEnableMasks");
    type("txtUpperMaskFrequency_8", "40k");
    type("txtUpperMaskDataPoint_8", "5");
    click("cmdUpperMaskStepFwd_8");
    click("cmdUpperMaskStepBack_8");
    type("txtUpperMaskDataPoint_8", "");
    click("cmdUpperMaskStepFwd_8");
    EXPECT_EQ(graph().YData(8, 0), graph::kNullValue);
    EXPECT_EQ(graph().XData(8, 0), 40000);
}

TEST_F(MaskPageTest, ALineIsShiftedByAnOffset)
{
    showTab("Mask");
    click("chkEnableMasks");
    for (const int pen : {8, 9}) {
        graph().setPoint(pen, 0, 1000, 5);
        QString prompt;
        const press::WhileModal enter([&prompt](QWidget& window) {
            prompt = findControl<QLabel>(&window, "lblPrompt")->text();
            auto* const box = findControl<QLineEdit>(&window, "txtMaskOffset");
            QTest::keyClicks(box, u"k-2,5x"_s);
            EXPECT_EQ(box->text(), "-2.5");
            QTest::keyClick(box, Qt::Key_Return);
        });
        click(pen == 8 ? "cmdShiftUp_8" : "cmdShiftUp_9");
        EXPECT_TRUE(enter.happened());
        EXPECT_EQ(prompt, pen == 8 ? "Enter upper mask offset" : "Enter lower mask offset");
        EXPECT_EQ(graph().YData(pen, 0), 2.5);
        EXPECT_EQ(text(pen == 8 ? "txtUpperMaskDataPoint_8" : "txtUpperMaskDataPoint_9"), "2.5");
    }
    const press::WhileModal escape([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
    click("cmdShiftUp_8");
    EXPECT_EQ(graph().YData(8, 0), 2.5);
}

TEST_F(MaskPageTest, APointTypedBeforeOkIsNotLost)
{
    showTab("Mask");
    click("chkEnableMasks");
    click("cmdUpperMaskStepFwd_8");
    type("txtUpperMaskFrequency_8", "40k");
    type("txtUpperMaskDataPoint_8", "5");
    click("cmdOK");
    EXPECT_EQ(graph().XData(8, 1), 40000);
    EXPECT_EQ(graph().YData(8, 1), 5);
    EXPECT_EQ(bench.preferences.value(options::kMaskUpperIndex), 1) << "and the point on show is kept";
    reopen();
    EXPECT_EQ(control<QLabel>("lblPointIndex_8").text(), "Point Index: 2");
}

} // namespace
