// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmTestSchedule.h"

#include "../LinkFixture.h"
#include "support/FindControl.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTest>

namespace {

class frmTestScheduleTest : public LinkFixture
{
protected:
    void show()
    {
        form = std::make_unique<frmTestSchedule>(device, preferences);
        form->show();
    }
    QCheckBox* box() { return findControl<QCheckBox>(form.get(), "chkTestSchedule"); }
    QString savedValue() { return saved("privilege", "TestSchedule"); }
    void click() { QTest::mouseClick(box(), Qt::LeftButton, {}, QPoint(8, box()->height() / 2)); }

    std::unique_ptr<frmTestSchedule> form;
};

TEST_F(frmTestScheduleTest, OpensWithTheSavedStateAndChangesNothingByThat)
{
    device.SetTestMode(5);
    show();
    EXPECT_FALSE(box()->isChecked());
    EXPECT_EQ(savedValue(), "(none)");
    for (const char* text : {"1", "2", "-1", "0.5"}) {
        ASSERT_TRUE(setting("privilege", "TestSchedule", text));
        show();
        EXPECT_TRUE(box()->isChecked()) << text;
        EXPECT_EQ(savedValue(), text);
    }
    for (const char* text : {"0", "", "no number"}) {
        ASSERT_TRUE(setting("privilege", "TestSchedule", text));
        show();
        EXPECT_FALSE(box()->isChecked()) << text;
    }
    EXPECT_EQ(device.TestMode(), 5);
}

TEST_F(frmTestScheduleTest, AClickTakesEffectAndIsSavedAtOnce)
{
    show();
    click();
    EXPECT_TRUE(box()->isChecked());
    EXPECT_EQ(savedValue(), "1");
    EXPECT_EQ(device.TestMode(), 1);
    click();
    EXPECT_FALSE(box()->isChecked());
    EXPECT_EQ(savedValue(), "0");
    EXPECT_EQ(device.TestMode(), 0);
}

TEST_F(frmTestScheduleTest, ApplyingTheSavedStateAgainChangesNothing)
{
    show();
    click();
    show();
    EXPECT_TRUE(box()->isChecked());
    click();
    click();
    EXPECT_EQ(savedValue(), "1");
    EXPECT_EQ(device.TestMode(), 1);
}

TEST_F(frmTestScheduleTest, OkOnlyCloses)
{
    show();
    QTest::mouseClick(findControl<QPushButton>(form.get(), "cmdOK"), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(savedValue(), "(none)");
}

} // namespace
