// SPDX-License-Identifier: GPL-3.0-or-later
// The loop and the table of the measures in the real window: from menu and popup, and as an instrument wants them.
#include "analysis/ui/frmAnalysis.h"
#include "analysis/ui/frmGvsB.h"
#include "controls/resonance/SyntheticPart.h"
#include "shell/ui/MainWindowHarness.h"

namespace {

using namespace Qt::StringLiterals;

class AnalysisCommandsTest : public MainWindowHarness
{
protected:
    void SetUp() override
    {
        load();
        connectInstrument();
    }
    void TearDown() override
    {
        for (int i = 1; i <= main->gcolDocuments().count(); ++i)
            main->gcolDocuments().at(i)->setModified(false);
    }

    PenDocument* sweptDocument(int type, double fs = 40e3)
    {
        PenDocument* const document = newDocument(type);
        synthetic::Part part;
        part.arms[0].fs = fs;
        std::int32_t index = 0;
        for (const double f : synthetic::linear(0.8 * fs, 1.2 * fs, 400)) {
            const std::complex<double> z = 1.0 / part(f);
            const double phase = std::arg(z) * 180 / std::numbers::pi;
            document->AddImpedancePoint(f, std::abs(z), std::abs(phase), phase < 0 ? -1 : 1, index++);
        }
        settle();
        return document;
    }

    /// The loop on the screen, or null.
    frmGvsB* loop() const
    {
        auto* const form = main->findChild<frmGvsB*>();
        return form != nullptr && form->isVisible() ? form : nullptr;
    }
    static std::string lineOf(PenDocument& document)
    {
        document.peGraph().setWorkingTable(0);
        const QString text = document.peGraph().TAText(0, 1);
        document.peGraph().setWorkingTable(1);
        return text.toStdString();
    }
};

} // namespace

TEST_F(AnalysisCommandsTest, thePopupOpensTheLoopOfTheDocument)
{
    for (const int type : {PenDocument::Impedance, PenDocument::Reactance}) {
        PenDocument* const document = sweptDocument(type);
        Q_EMIT document->peGraph().CustomMenuClicked(PopupLoop, 0);
        settle();
        ASSERT_NE(loop(), nullptr);
        EXPECT_EQ(loop()->windowTitle(), u"Admittance loop for "_s + document->caption());
        ASSERT_TRUE(QTest::qWaitFor([this] { return loop()->isSettled(); }, 30000));
        EXPECT_TRUE(loop()->panelText(4).startsWith(u"Fr:"_s));
        EXPECT_NE(loop()->panelText(4), u"Fr:N/A"_s);
        loop()->close();
    }
}

TEST_F(AnalysisCommandsTest, thePopupOpensTheTableWhichPutsItsLineUnderTheGraph)
{
    PenDocument* const document = sweptDocument(PenDocument::Impedance);
    document->setModified(false);
    const press::WhileModal modal([](QWidget& window) {
        auto* const form = qobject_cast<frmAnalysis*>(&window);
        ASSERT_NE(form, nullptr);
        form->cmdGraph_Click();
        form->close();
    });
    Q_EMIT document->peGraph().CustomMenuClicked(PopupAnalysis, 0);
    settle();
    EXPECT_TRUE(modal.happened());
    EXPECT_EQ(lineOf(*document).substr(0, 5), "1) [P");
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(AnalysisCommandsTest, amplitudeDocumentsAreOfferedNeither)
{
    PenDocument* const amplitude = newDocument(PenDocument::Amplitude);
    EXPECT_EQ(amplitude->peGraph().CustomMenuState(PopupLoop), graph::MenuHidden);
    EXPECT_EQ(amplitude->peGraph().CustomMenuState(PopupAnalysis), graph::MenuHidden);
    EXPECT_FALSE(action("mnuViewLoop").isEnabled());
    EXPECT_FALSE(action("mnuViewAnalysis").isEnabled());
    sweptDocument(PenDocument::Impedance);
    EXPECT_TRUE(action("mnuViewLoop").isEnabled());
    EXPECT_TRUE(action("mnuViewAnalysis").isEnabled());
    main->documentArea().showDocument(*amplitude);
    settle();
    EXPECT_FALSE(action("mnuViewLoop").isEnabled());
}

TEST_F(AnalysisCommandsTest, messageUShowsAndClosesTheLoop)
{
    receive(frame('u', 1));
    EXPECT_EQ(loop(), nullptr) << "without a document";
    sweptDocument(PenDocument::Reactance);
    receive(frame('u', 1));
    ASSERT_NE(loop(), nullptr);
    receive(frame('u', 0));
    EXPECT_EQ(loop(), nullptr);
    newDocument(PenDocument::Amplitude);
    receive(frame('u', 1));
    EXPECT_EQ(loop(), nullptr) << "of an amplitude document";
}

TEST_F(AnalysisCommandsTest, theEndOfAScriptClosesTheLoop)
{
    sweptDocument(PenDocument::Impedance);
    receive(frame('k', 1) + frame('u', 1));
    ASSERT_NE(loop(), nullptr);
    receive(frame('k', 0));
    EXPECT_EQ(loop(), nullptr);
}

TEST_F(AnalysisCommandsTest, theLoopFollowsTheActiveDocument)
{
    PenDocument* const first = sweptDocument(PenDocument::Impedance);
    trigger("mnuViewLoop");
    ASSERT_NE(loop(), nullptr);
    EXPECT_EQ(loop()->strDocumentKey(), first->gstrKey);
    PenDocument* const second = sweptDocument(PenDocument::Impedance, 50e3);
    settle();
    EXPECT_EQ(loop()->strDocumentKey(), second->gstrKey);
    main->documentArea().showDocument(*first);
    settle();
    EXPECT_EQ(loop()->strDocumentKey(), first->gstrKey);
}

TEST_F(AnalysisCommandsTest, messageVPutsItsLineUnderTheGraph)
{
    PenDocument* const document = sweptDocument(PenDocument::Impedance);
    const std::string before = lineOf(*document);
    receive(frame('v', 5, 65535, 0, 0, 0, 1));
    EXPECT_EQ(lineOf(*document), before) << "that pen was never swept";
    receive(frame('v', 0, 65535, 0, 0, 0, 1));
    EXPECT_EQ(lineOf(*document).substr(0, 3), "1) ");
}
