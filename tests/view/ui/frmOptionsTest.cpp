// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the view options with its tabs, and its pages of pens, display and style.
#include "ViewWindows.h"

#include "widgets/ui/ColourLabel.h"

#include <QColorDialog>
#include <QComboBox>
#include <QLabel>

#include <map>

namespace {

using namespace Qt::StringLiterals;

class frmOptionsTest : public ViewWindowTest
{
protected:
    frmOptionsTest() { open(PenDocument::Impedance); }
};

TEST_F(frmOptionsTest, EachTabShowsThePagesOfItsType)
{
    const auto pages = [this](const char* tab) {
        showTab(tab);
        QString shown;
        for (int page = 0; page <= 8; ++page) {
            const auto* const widget = dialog->findChild<QWidget*>(u"picOptions_%1"_s.arg(page));
            shown += widget != nullptr && widget->isVisible() ? QString::number(page) : QString();
        }
        return shown.toStdString();
    };
    const auto expect = [&](const char* display, const char* axes) {
        EXPECT_EQ(pages("Pen"), "0");
        EXPECT_EQ(pages("Display"), display);
        EXPECT_EQ(pages("Axes"), axes);
        EXPECT_EQ(pages("Style"), "7");
        EXPECT_EQ(pages("Mask"), "8");
    };
    expect("15", "34");
    open(PenDocument::Amplitude);
    expect("16", "24");
    QStringList tips;
    for (int i = 0; i < tabs().count(); ++i)
        tips << tabs().tabText(i) + u" | "_s + tabs().tabToolTip(i);
    EXPECT_EQ(tips.join(u'\n'), "&Pen | Pen view options\n&Display | Graph display options\n"
                                "A&xes | Axes view options\n&Style | Viewing Style\n"
                                "&Mask | Add mask points to a graph");
}

TEST_F(frmOptionsTest, TheTabIsKeptFromOneToTheFollowing)
{
    EXPECT_EQ(tabs().currentIndex(), 0);
    showTab("Style");
    click("cmdOK");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(bench.preferences.value(options::kGraphViewOptionsTab), 4);
    reopen();
    EXPECT_EQ(tabs().currentIndex(), 3);
    bench.preferences.setValue(options::kGraphViewOptionsTab, 99);
    reopen();
    EXPECT_EQ(tabs().currentIndex(), 4);
}

TEST_F(frmOptionsTest, TheTitleNamesTheDocumentAndIsCut)
{
    EXPECT_EQ(dialog->windowTitle(), "Graph View Options: Document 1");
    document->setCaption(QString(60, u'a') + QString(50, u'b'));
    reopen();
    EXPECT_EQ(dialog->windowTitle(), "Graph View Options: ..." + QString(50, u'b'));
}

TEST_F(frmOptionsTest, AccessKeysAreUniqueOnEachTab)
{
    const auto keyOf = [](const QString& text) {
        const qsizetype mark = QString(text).remove(u"&&"_s).indexOf(u'&');
        return mark < 0 ? QChar() : QString(text).remove(u"&&"_s).at(mark + 1).toLower();
    };
    for (const auto type : {PenDocument::Impedance, PenDocument::Amplitude, PenDocument::Reactance}) {
        open(type);
        for (int tab = 0; tab < tabs().count(); ++tab) {
            tabs().setCurrentIndex(tab);
            std::map<QChar, QString> owners;
            const auto claim = [&](const QString& text) {
                const QChar key = keyOf(text);
                if (key.isNull())
                    return;
                EXPECT_TRUE(owners.emplace(key, text).second)
                    << type << ' ' << tab << ": " << text.toStdString() << " and " << owners[key].toStdString();
            };
            for (int i = 0; i < tabs().count(); ++i)
                claim(tabs().tabText(i));
            for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
                if (button->isVisible())
                    claim(button->text());
            }
            for (const QLabel* label : dialog->findChildren<QLabel*>()) {
                if (label->isVisible() && label->buddy() != nullptr)
                    claim(label->text());
            }
        }
    }
}

TEST_F(frmOptionsTest, AccessKeysWorkOnTheTabOnShowAlone)
{
    QTest::keyClick(dialog.get(), Qt::Key_N, Qt::AltModifier);
    EXPECT_EQ(graph().SubTitle(), "") << "the box is on another tab";
    QTest::keyClick(dialog.get(), Qt::Key_D, Qt::AltModifier);
    ASSERT_EQ(tabs().currentIndex(), 1);
    // A button that is pressed by its key stays down for a moment.
    QTest::keyClick(dialog.get(), Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !graph().SubTitle().isEmpty(); }));
    QTest::keyClick(dialog.get(), Qt::Key_K, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return graph().MarkDataPoints(); }));
}

TEST_F(frmOptionsTest, EveryControlIsReachedByTheTabKeyAndHasAName)
{
    for (const auto type : {PenDocument::Impedance, PenDocument::Amplitude, PenDocument::Reactance}) {
        open(type);
        for (int tab = 0; tab < tabs().count(); ++tab) {
            tabs().setCurrentIndex(tab);
            if (type != PenDocument::Reactance && tab == 4 && !document->hasMasks())
                click("chkEnableMasks");
            QSet<QWidget*> reached;
            tabs().setFocus();
            for (int i = 0; i < 120; ++i) {
                QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
                reached.insert(dialog->focusWidget());
            }
            for (QWidget* widget : dialog->findChildren<QWidget*>()) {
                if (!widget->isVisible() || !widget->isEnabled() || (widget->focusPolicy() & Qt::TabFocus) == 0)
                    continue;
                // Of a group of options the chosen one is reached; arrows reach the others.
                if (const auto* const choice = qobject_cast<QRadioButton*>(widget); choice && !choice->isChecked())
                    continue;
                EXPECT_TRUE(reached.contains(widget)) << type << ' ' << tab << ' ' << qPrintable(widget->objectName());
                const auto* const button = qobject_cast<QAbstractButton*>(widget);
                EXPECT_TRUE(!widget->accessibleName().isEmpty() || (button && !button->text().isEmpty()))
                    << qPrintable(widget->objectName());
            }
        }
    }
}

TEST_F(frmOptionsTest, PensAreShownHiddenLockedAndFreed)
{
    for (const int pen : {0, 9}) {
        const std::string displayName = "chkDisplay_" + std::to_string(pen),
                          lockName = "chkLock_" + std::to_string(pen);
        const char* const display = displayName.c_str();
        const char* const lock = lockName.c_str();
        EXPECT_TRUE(isChecked(display));
        click(display);
        EXPECT_EQ(document->GetPenDisplay(pen), 1);
        EXPECT_EQ(graph().RandomSubsetsToGraph(pen), -1);
        EXPECT_TRUE(changed());
        click(lock);
        EXPECT_EQ(document->GetPenLock(pen), 1);
        EXPECT_TRUE(changed());
        click(lock);
        EXPECT_EQ(document->GetPenLock(pen), 0);
    }
    click("cmdDisplayAll");
    EXPECT_EQ(document->GetPenDisplay(0), 0);
    EXPECT_TRUE(isChecked("chkDisplay_9"));
    click("cmdLockAll");
    for (int pen = 0; pen < 10; ++pen)
        EXPECT_TRUE(isChecked(("chkLock_" + std::to_string(pen)).c_str()));
    EXPECT_EQ(document->GetPenLock(5), 1);
    click("cmdUnlockAllPens");
    EXPECT_EQ(document->GetPenLock(5), 0);
    EXPECT_FALSE(isChecked("chkLock_5"));
}

TEST_F(frmOptionsTest, ARefusedUnlockSetsTheBoxAgain)
{
    showTab("Mask");
    click("chkEnableMasks");
    showTab("Pen");
    ASSERT_TRUE(isChecked("chkLock_8"));
    bench.messages.shown.clear();
    click("chkLock_8");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].title, "Masks Enabled");
    EXPECT_TRUE(isChecked("chkLock_8"));
    EXPECT_EQ(document->GetPenLock(8), 1);
}

TEST_F(frmOptionsTest, PensAreErasedBehindAQuestion)
{
    document->AddImpedancePoint(1000, 5, 6, 1, 0);
    bench.messages.replies = {UserMessages::ReplyYes};
    click("cmdErase_0");
    EXPECT_FALSE(document->pens().hasData(0));
    document->AddImpedancePoint(1000, 5, 6, 1, 0);
    bench.messages.replies = {UserMessages::ReplyYes};
    click("cmdEraseAll");
    EXPECT_FALSE(document->pens().hasData(0));
}

TEST_F(frmOptionsTest, AColourIsThatOfThisGraphAlone)
{
    const auto before = bench.preferences.value(options::kPens[2]);
    graph().setSubsetColors(2, 0x123456);
    reopen();
    auto& label = control<ColourLabel>("lblColour_2");
    EXPECT_EQ(label.colour(), 0x123456U);
    const press::WhileModal choose([](QWidget& window) {
        auto* const colours = qobject_cast<QColorDialog*>(&window);
        ASSERT_NE(colours, nullptr);
        colours->setCurrentColor(QColor(0, 0, 255));
        colours->accept();
    });
    QTest::mouseDClick(&label, Qt::LeftButton);
    press::settle();
    EXPECT_TRUE(choose.happened());
    for (const int subset : {2, 12, 22, 32})
        EXPECT_EQ(graph().SubsetColors(subset), 0xff0000U) << subset;
    EXPECT_EQ(label.colour(), 0xff0000U);
    EXPECT_EQ(bench.preferences.value(options::kPens[2]), before);
    EXPECT_TRUE(changed());
}

TEST_F(frmOptionsTest, MarksAndTestInformationAreSwitched)
{
    showTab("Display");
    click("chkMarkPoints");
    EXPECT_TRUE(graph().MarkDataPoints());
    EXPECT_TRUE(changed());
    click("chkMarkPoints");
    EXPECT_FALSE(graph().MarkDataPoints());
    graph().setTXAxisLabel(u"Program | T46 : 1/1/2026"_s);
    document->setModified(false);
    click("chkInformation");
    EXPECT_EQ(graph().SubTitle(), "Program  T46 : 1/1/2026");
    EXPECT_TRUE(changed());
    click("chkInformation");
    EXPECT_EQ(graph().SubTitle(), "");
}

TEST_F(frmOptionsTest, ThePhaseViewIsChosen)
{
    showTab("Display");
    click("optHalfCycle");
    EXPECT_EQ(document->graphGetPhaseView(), plot::HalfCycle);
    EXPECT_EQ(axis(2).YAxisLabel, "Phase - Degrees");
    EXPECT_TRUE(changed());
    click("optWholeCycle");
    EXPECT_EQ(document->graphGetPhaseView(), plot::WholeCycle);
    click("optOff");
    EXPECT_EQ(document->graphGetPhaseView(), plot::NoPhase);
    EXPECT_EQ(axis(3).YAxisLabel, "X");
}

TEST_F(frmOptionsTest, AdmittanceRenamesTheFramesOfItsAxis)
{
    const auto titles = [this] {
        return (title("fZScale") + u'|' + title("fZScaleControl") + u'|' + title("fZRange")).toStdString();
    };
    EXPECT_EQ(titles(), "Impedance axis scale|Impedance scale limits|Impedance manual scale limits");
    showTab("Display");
    click("optMhos");
    EXPECT_TRUE(document->gbfAltSubset());
    EXPECT_EQ(axis(1).YAxisLabel, "Modulus of Admittance - Siemens");
    EXPECT_EQ(titles(), "Admittance axis scale|Admittance scale limits|Admittance manual scale limits");
    EXPECT_TRUE(changed());
    click("optOhms");
    EXPECT_FALSE(document->gbfAltSubset());
    EXPECT_EQ(titles(), "Impedance axis scale|Impedance scale limits|Impedance manual scale limits");
}

TEST_F(frmOptionsTest, GainAndLossAreChosen)
{
    open(PenDocument::Amplitude);
    showTab("Display");
    EXPECT_TRUE(isChecked("optGain"));
    click("optLoss");
    EXPECT_TRUE(document->gbfAltSubset());
    EXPECT_TRUE(changed());
    click("optGain");
    EXPECT_FALSE(document->gbfAltSubset());
}

TEST_F(frmOptionsTest, TheLegendIsPlacedOrHidden)
{
    showTab("Style");
    const std::pair<const char*, int> places[] = {{"optTop", graph::LegendTop},
                                                  {"optBottom", graph::LegendBottom},
                                                  {"optLeft", graph::LegendLeft},
                                                  {"optRight", graph::LegendRight}};
    for (const auto& [name, place] : places) {
        click("optInsideAxis");
        EXPECT_EQ(graph().LegendStyle(), graph::LegendInsideAxis);
        click("optHide");
        EXPECT_FALSE(graph().ShowLegend());
        click(name);
        EXPECT_TRUE(graph().ShowLegend());
        EXPECT_EQ(graph().LegendStyle(), graph::LegendOutside);
        EXPECT_EQ(graph().LegendLocation(), place);
        EXPECT_TRUE(changed());
        reopen();
        EXPECT_TRUE(isChecked(name));
        showTab("Style");
    }
}

TEST_F(frmOptionsTest, SizesAndColoursAreChosen)
{
    showTab("Style");
    click("optSmall");
    EXPECT_EQ(graph().FontSize(), graph::FontSmall);
    EXPECT_TRUE(changed());
    click("optLarge");
    EXPECT_EQ(graph().FontSize(), graph::FontLarge);
    click("optMedium");
    EXPECT_EQ(graph().FontSize(), graph::FontMedium);
    click("optMonochrome");
    EXPECT_EQ(graph().ViewingStyle(), graph::StyleMonochrome);
    EXPECT_TRUE(changed());
    click("optMonoSymbol");
    EXPECT_EQ(graph().ViewingStyle(), graph::StyleMonochromeSymbols);
    click("optColour");
    EXPECT_EQ(graph().ViewingStyle(), graph::StyleColour);
}

TEST_F(frmOptionsTest, AFontIsChosenAndNotTyped)
{
    showTab("Style");
    auto& fonts = control<QComboBox>("combFontSelection");
    ASSERT_GT(fonts.count(), 1);
    const int before = fonts.currentIndex();
    const int other = before == 0 ? 1 : 0;
    fonts.setFocus();
    QTest::keyClick(&fonts, fonts.itemText(other).at(0).toLatin1());
    EXPECT_EQ(fonts.currentIndex(), before);
    QTest::keyClick(&fonts, other > before ? Qt::Key_Down : Qt::Key_Up);
    press::settle();
    EXPECT_EQ(graph().MainTitleFont(), fonts.currentText());
    EXPECT_EQ(graph().LabelFont(), fonts.currentText());
    EXPECT_EQ(graph().SubTitleFont(), fonts.currentText());
    QString font;
    dialog->GetFontFromGraph(font);
    EXPECT_EQ(font, fonts.currentText());
    EXPECT_TRUE(changed());
}

TEST_F(frmOptionsTest, AFontThatIsNotInstalledIsShownAllTheSame)
{
    dialog->SetNewFont(u"No Such Font"_s);
    reopen();
    EXPECT_EQ(control<QComboBox>("combFontSelection").currentText(), "No Such Font");
}

TEST_F(frmOptionsTest, WhatHappensToTheDocumentMeanwhileIsShown)
{
    document->UpdatePenLock(3, true);
    EXPECT_TRUE(isChecked("chkLock_3"));
    document->graphSetPhase(plot::HalfCycle);
    EXPECT_TRUE(isChecked("optHalfCycle"));
    showTab("Axes");
    click("optManualZScale");
    type("txtLimits_0", "12");
    document->UpdatePenLock(3, false);
    EXPECT_EQ(text("txtLimits_0"), "12") << "what is being typed stays";
}

TEST_F(frmOptionsTest, ItClosesWithItsDocument)
{
    document.reset();
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace
