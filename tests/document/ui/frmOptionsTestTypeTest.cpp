// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmOptionsTestType.h"

#include "document/ui/HookUpSketch.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"

#include <QImage>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class FrmOptionsTestTypeTest : public ::testing::Test
{
protected:
    QRadioButton* option(frmOptionsTestType& form, const char* name)
    {
        auto* found = form.findChild<QRadioButton*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void storeType(const QString& text)
    {
        store.SaveSetting(QStringLiteral("MarrowickGraph"), QStringLiteral("Test"), QStringLiteral("Type"), text);
    }

    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    ProgramState state;
};

TEST_F(FrmOptionsTestTypeTest, titleAndTextsAreTheProgramsOwn)
{
    frmOptionsTestType form(state, preferences);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Test Type"));
    EXPECT_EQ(option(form, "optAmplitude")->text(), QStringLiteral("&Amplitude Vs Frequency"));
    EXPECT_EQ(option(form, "optImpedance")->text(),
              QStringLiteral("&Impedance or admittance Vs Frequency and admittance loop"));
    EXPECT_EQ(option(form, "optReactVsFreq")->text(),
              QStringLiteral("&Reactance, resistance or  conductance, susceptance  Vs Frequency and admittance loop"));
}

TEST_F(FrmOptionsTestTypeTest, loadClearsTheTypeOfTheNextDocument)
{
    state.giNewDocType = 2;
    frmOptionsTestType form(state, preferences);
    EXPECT_EQ(state.giNewDocType, 0);
}

TEST_F(FrmOptionsTestTypeTest, theSavedTypeIsProposed)
{
    const std::pair<const char*, const char*> expected[] = {
        {"1", "optAmplitude"}, {"2", "optImpedance"}, {"3", "optReactVsFreq"}, {"x", "optReactVsFreq"}};
    {
        frmOptionsTestType form(state, preferences);
        EXPECT_TRUE(option(form, "optAmplitude")->isChecked()) << "default";
    }
    for (const auto& [text, name] : expected) {
        storeType(QLatin1String(text));
        frmOptionsTestType form(state, preferences);
        EXPECT_TRUE(option(form, name)->isChecked()) << text;
    }
}

TEST_F(FrmOptionsTestTypeTest, okTakesAndSavesTheChoice)
{
    frmOptionsTestType form(state, preferences);
    form.show();
    QTest::mouseClick(option(form, "optImpedance"), Qt::LeftButton);
    QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(state.giNewDocType, 2);
    EXPECT_EQ(preferences.value(options::kTestType), 2);
}

TEST_F(FrmOptionsTestTypeTest, enterIsOkFromEveryOption)
{
    for (const auto& [name, type] : {std::pair("optAmplitude", 1), std::pair("optReactVsFreq", 3)}) {
        frmOptionsTestType form(state, preferences);
        form.show();
        option(form, name)->click();
        QTest::keyClick(option(form, name), Qt::Key_Return);
        EXPECT_EQ(state.giNewDocType, type);
        EXPECT_EQ(preferences.value(options::kTestType), type);
    }
}

TEST_F(FrmOptionsTestTypeTest, enterRightBehindAnOptionsLetterTakesThatOption)
{
    frmOptionsTestType form(state, preferences);
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    QTest::keyClick(&form, Qt::Key_R, Qt::AltModifier);
    QTest::keyClick(&form, Qt::Key_Return);
    EXPECT_EQ(state.giNewDocType, 3);
}

TEST_F(FrmOptionsTestTypeTest, escapeLeavesTheTypeAtZeroAndSavesNothing)
{
    frmOptionsTestType form(state, preferences);
    form.show();
    option(form, "optReactVsFreq")->click();
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(state.giNewDocType, 0);
    EXPECT_FALSE(preferences.contains(options::kTestType));
}

TEST_F(FrmOptionsTestTypeTest, theSketchFollowsTheOption)
{
    frmOptionsTestType form(state, preferences);
    auto* sketch = form.findChild<HookUpSketch*>(QStringLiteral("imgTestType"));
    ASSERT_NE(sketch, nullptr);
    form.show();
    EXPECT_EQ(sketch->testType(), 1);
    const QImage amplitude = sketch->grab().toImage();
    option(form, "optImpedance")->click();
    EXPECT_EQ(sketch->testType(), 2);
    const QImage impedance = sketch->grab().toImage();
    option(form, "optReactVsFreq")->click();
    const QImage reactance = sketch->grab().toImage();
    EXPECT_NE(amplitude, impedance);
    EXPECT_NE(impedance, reactance);
    EXPECT_FALSE(sketch->accessibleName().isEmpty());
}

TEST_F(FrmOptionsTestTypeTest, thePictureKeepsItsRatio)
{
    HookUpSketch sketch;
    EXPECT_EQ(sketch.heightForWidth(6120), 2280);
    EXPECT_EQ(sketch.heightForWidth(306), 114);
}

} // namespace
