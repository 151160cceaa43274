// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ui/frmAnalysis.h"

#include "analysis/rules/AnalysisBench.h"
#include "controls/resonance/ResonanceEngine.h"
#include "support/FindControl.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

class frmAnalysisTest : public ::testing::Test, protected AnalysisBench
{
protected:
    void open(PenDocument& document)
    {
        form = std::make_unique<frmAnalysis>(document, engine, preferences);
        form->show();
        QApplication::processEvents();
    }
    std::string text(const char* name) { return findControl<QLabel>(form.get(), name)->text().toStdString(); }
    QRadioButton* option(const char* name) { return findControl<QRadioButton>(form.get(), name); }
    QCheckBox* box(const char* name) { return findControl<QCheckBox>(form.get(), name); }
    QPushButton* button(const char* name) { return findControl<QPushButton>(form.get(), name); }
    void click(QAbstractButton* control)
    {
        ASSERT_TRUE(control->isEnabled());
        QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(8, control->height() / 2));
    }

    ResonanceEngine engine;
    std::unique_ptr<frmAnalysis> form;
};

std::string shownLine(PenDocument& document)
{
    return cellText(document, 0, 0, 1).toStdString();
}

} // namespace

TEST_F(frmAnalysisTest, EveryPenShowsItsFiguresOrNotAvailable)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    capacitor(*made, 1);
    open(*made);
    EXPECT_EQ(form->windowTitle(), u"Piezoelectric Transducer Analysis - Add results to graph"_s);
    EXPECT_THAT(text("lblPen0"), StartsWith("1) "));
    EXPECT_EQ(text("lblCMF0"), form->table().row(0).fr.toStdString());
    EXPECT_EQ(text("lblZr0"), "99.50");
    EXPECT_EQ(text("lblF11"), "N/A");
    EXPECT_EQ(text("lblCap1"), "1.000 nF");
    EXPECT_EQ(text("lblCapFrequency0"), "N/A");
    EXPECT_TRUE(option("optResParams0")->isChecked());
    EXPECT_TRUE(option("optCap1")->isChecked());
    EXPECT_FALSE(option("optCap0")->isEnabled());
    EXPECT_FALSE(option("optResParams9")->isEnabled());
    EXPECT_NE(findControl<QLabel>(form.get(), "lblQ0")->toolTip(), QString());
}

TEST_F(frmAnalysisTest, TheBoxesComeFromTheSettingsAndGoBackThere)
{
    const auto made = document(PenDocument::Impedance);
    open(*made);
    for (const char* name : {"chkF1", "chkF2", "chkFr"})
        EXPECT_FALSE(box(name)->isChecked()) << name;
    for (const char* name : {"chkZr", "chkQ", "chkClf"})
        EXPECT_TRUE(box(name)->isChecked()) << name;
    click(box("chkF2"));
    click(box("chkQ"));
    QTest::keyClick(form.get(), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(preferences.value(options::kAnalysisF2));
    EXPECT_FALSE(preferences.value(options::kAnalysisQ));
    open(*made);
    EXPECT_TRUE(box("chkF2")->isChecked());
    click(box("chkClf"));
    click(button("cmdOK"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(preferences.value(options::kAnalysisClf));
}

TEST_F(frmAnalysisTest, AddPutsTheLineUnderTheGraphAndRemoveTakesItAway)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    capacitor(*made, 1);
    made->setModified(false);
    open(*made);
    click(button("cmdGraph"));
    EXPECT_THAT(shownLine(*made), StartsWith("1) [Pen 1] - Zr:99.50 Ohms Q:"));
    EXPECT_THAT(shownLine(*made), ::testing::EndsWith(" Hz = 1.000 nF"));
    EXPECT_EQ(made->peGraph().SubsetLabels(20).toStdString(), shownLine(*made));
    EXPECT_TRUE(made->gbfModified());
    click(button("cmdRemove"));
    EXPECT_EQ(shownLine(*made), "Produced by Marrowick Instruments");
    EXPECT_EQ(made->peGraph().SubsetLabels(20), QString());
}

TEST_F(frmAnalysisTest, AddedTextIsSavedWithThePlot)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open(*made);
    click(button("cmdGraph"));
    QString file = path(u"a.gzd"_s);
    ASSERT_TRUE(made->fileSavePlot(file));
    const auto other = document(PenDocument::Impedance);
    ASSERT_TRUE(other->fileLoadPlot(file));
    EXPECT_EQ(shownLine(*other), shownLine(*made));
    EXPECT_EQ(other->peGraph().SubsetLabels(20), made->peGraph().SubsetLabels(20));
}

TEST_F(frmAnalysisTest, NoPenWithDataLeavesNothingToAdd)
{
    const auto made = document(PenDocument::Reactance);
    made->setModified(false);
    const std::string before = shownLine(*made);
    open(*made);
    EXPECT_EQ(text("lblF10"), "N/A");
    EXPECT_EQ(text("lblCap9"), "N/A");
    EXPECT_FALSE(button("cmdGraph")->isEnabled());
    form->cmdGraph_Click();
    EXPECT_EQ(shownLine(*made), before);
    EXPECT_FALSE(made->gbfModified());
}

TEST_F(frmAnalysisTest, APenWithoutAResonanceIsAddedAsItStands)
{
    const auto made = document(PenDocument::Impedance);
    capacitor(*made, 0);
    open(*made);
    EXPECT_FALSE(option("optResParams0")->isChecked());
    click(option("optResParams0"));
    click(button("cmdGraph"));
    EXPECT_THAT(shownLine(*made), StartsWith("1) [Pen 1] - Zr:N/A Ohms Q:N/A : 1) ["));
}

TEST_F(frmAnalysisTest, EveryOptionAndBoxIsNamedAndReachedByTheKeyboard)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open(*made);
    const auto buttons = form->findChildren<QAbstractButton*>();
    EXPECT_EQ(buttons.size(), 29);
    for (const QAbstractButton* each : buttons) {
        // Of a group the chosen one is reached, and the others from there by the arrows.
        const bool byArrows =
            each->group() != nullptr && each->group()->checkedButton() != nullptr && !each->isChecked();
        EXPECT_TRUE(byArrows || (each->focusPolicy() & Qt::TabFocus)) << each->objectName().toStdString();
        EXPECT_FALSE((each->text() + each->accessibleName()).isEmpty()) << each->objectName().toStdString();
    }
}

TEST_F(frmAnalysisTest, ADocumentThatGoesTakesTheTableWithIt)
{
    auto made = document(PenDocument::Impedance);
    open(*made);
    made.reset();
    EXPECT_FALSE(form->isVisible());
    form->cmdGraph_Click();
    form->cmdRemove_Click();
}
