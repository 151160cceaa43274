// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/AnalysisFrames.h"

#include "analysis/rules/ScriptAnalysis.h"
#include "analysis/rules/SweptPens.h"
#include "controls/resonance/ResonanceEngine.h"
#include "link/LinkFixture.h"

#include <gmock/gmock.h>

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class AnalysisFramesTest : public LinkFixture
{
protected:
    AnalysisFramesTest() { registerAnalysisFrames(module, analysis); }

    /// Message "v" for a pen (as it stands in its column), a pen of the capacitance and a mode.
    void want(char pen, double penClf, int mode = 1) { send(frametext::numbers('v', pen, penClf, 0, 0, 0, mode)); }

    static std::string line(PenDocument& document)
    {
        const TableScope scope(document.peGraph(), 0);
        return document.peGraph().TAText(0, 1).toStdString();
    }

    ResonanceEngine engine;
    ScriptAnalysis analysis{engine, window.active};
};

} // namespace

TEST_F(AnalysisFramesTest, MessageVAnalysesAPenOfTheActiveDocument)
{
    connectDevice();
    for (const auto type : {PenDocument::Impedance, PenDocument::Reactance}) {
        const auto document = makeDocument(type);
        activate(document);
        SweptPens::sweep(*document, 2, SweptPens::partAt(40e3));
        SweptPens::capacitor(*document, 3);
        written(); // the pens that were chosen
        want('2', 3);
        EXPECT_EQ(written(), QStringList()) << "no reply goes to the instrument";
        EXPECT_THAT(line(*document), StartsWith("3) [")) << type;
        EXPECT_THAT(line(*document), HasSubstr(": 4) [")) << type;
        EXPECT_EQ(document->peGraph().SubsetLabels(20).toStdString(), line(*document));
    }
}

TEST_F(AnalysisFramesTest, PensOutOfRangeAmplitudeDocumentsAndNoDocumentChangeNothing)
{
    connectDevice();
    want('0', 65535);
    const auto amplitude = makeDocument(PenDocument::Amplitude);
    activate(amplitude);
    const QByteArray before = amplitude->plotBytes();
    want('0', 65535);
    EXPECT_EQ(amplitude->plotBytes(), before);
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    SweptPens::sweep(*document, 0, SweptPens::partAt(40e3));
    const std::string untouched = line(*document);
    want('A', 65535); // there is no pen 10
    EXPECT_EQ(line(*document), untouched);
    want('0', 65535);
    EXPECT_THAT(line(*document), StartsWith("1) ["));
}
