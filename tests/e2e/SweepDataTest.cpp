// SPDX-License-Identifier: GPL-3.0-or-later
// What was drawn equals what was sent: the points in the document against the frames of the link log, which are read
// here by means of their own.
#include "cli/Console.h"
#include "cli/instrument/Session.h"
#include "e2e/EndToEnd.h"

#include <bit>
#include <cmath>
#include <numbers>

using namespace e2e;

namespace {

constexpr int kPoints = 1024;

class SweepDataTest : public EndToEndTest, public ::testing::WithParamInterface<std::int16_t>
{
protected:
    /// A sweep of that type with the engine that the desktop uses; false when it did not end.
    bool sweep(PenDocument& document, cli::Session& session)
    {
        session.testRun().mnuTestStart_Click();
        return waitFor([&] { return document.gCurrentPen() == 1 && !session.state().gbfPlotting; });
    }

    /// The four Y values of a point as the description of the pens has them, before they are rounded to single.
    static std::array<double, 4> fourViews(std::int16_t testType, const LoggedFrame& frame)
    {
        const double value = frame.n2, phase = frame.n3, sign = frame.n4;
        switch (testType) {
        case PenDocument::Amplitude:
            return {value, -1.0 * value, -1.0 * phase, phase * sign};
        case PenDocument::Impedance:
            return {value, 1.0 / value, -1.0 * phase, phase * sign};
        default: {
            const double angle = phase * sign * (std::numbers::pi / 180.0);
            const double resistance = value * std::cos(angle), reactance = value * std::sin(angle);
            const double conductance = std::cos(angle) / value, susceptance = -std::sin(angle) / value;
            return {reactance, susceptance, conductance, resistance};
        }
        }
    }

    static std::uint32_t bits(float value) { return std::bit_cast<std::uint32_t>(value); }
};

} // namespace

TEST_P(SweepDataTest, EveryPointSentStandsBitForBitInAllFourViews)
{
    const std::int16_t testType = GetParam();
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast"), QStringLiteral("--seed"), QStringLiteral("7")});
    ASSERT_TRUE(simulator.started());

    QString results, problems;
    cli::Console console(QStringLiteral("marrowick"), cli::Console::into(results), cli::Console::into(problems), false);
    cli::Session session(console);
    const QString log = path(QStringLiteral("link.log"));
    ASSERT_TRUE(session.device().SetLogFile(log));
    ASSERT_TRUE(session.open(simulator.serial()));
    ASSERT_TRUE(waitFor([&] { return session.state().gbfDeviceReady; }));
    EXPECT_EQ(session.mirror().strDeviceSerial, simulator.serial());

    session.mirror().dblStartFrequency = 35000;
    session.mirror().dblEndFrequency = 45000;
    session.mirror().iNumPoints = kPoints;
    session.mirror().iSweepMode = 0;
    session.deviceModule().DeviceSendSettings();
    PenDocument& document = session.newDocument(testType);
    ASSERT_TRUE(sweep(document, session)) << problems.toStdString();
    session.device().Close();
    session.device().SetLogFile({}).ok();

    const std::vector<LoggedFrame> frames = pointsOfLastTest(log);
    ASSERT_EQ(frames.size(), static_cast<std::size_t>(kPoints));
    const GraphModel& graph = document.peGraph();
    int differing = 0;
    for (int i = 0; i < kPoints; ++i) {
        const LoggedFrame& frame = frames[static_cast<std::size_t>(i)];
        ASSERT_EQ(frame.point, i);
        ASSERT_EQ(frame.code, testType == PenDocument::Amplitude ? 'H' : 'F');
        const std::array<double, 4> expected = fourViews(testType, frame);
        for (int view = 0; view < 4; ++view) {
            const int subset = 10 * view;
            const float y = static_cast<float>(expected[static_cast<std::size_t>(view)]);
            differing += bits(graph.XData(subset, i)) != bits(static_cast<float>(frame.n1));
            differing += bits(graph.YData(subset, i)) != bits(y);
        }
    }
    EXPECT_EQ(differing, 0);
    // The sweep is one of the transducer, not of silence: it has the resonance near 40 kHz.
    EXPECT_NEAR(graph.XData(0, 0), 35000, 1);
    EXPECT_NEAR(graph.XData(0, kPoints - 1), 45000, 1);
    EXPECT_TRUE(problems.isEmpty()) << problems.toStdString();
}

INSTANTIATE_TEST_SUITE_P(EachType, SweepDataTest,
                         ::testing::Values(PenDocument::Amplitude, PenDocument::Impedance, PenDocument::Reactance),
                         [](const auto& type) {
                             return std::string(type.param == PenDocument::Amplitude   ? "Amplitude"
                                                : type.param == PenDocument::Impedance ? "Impedance"
                                                                                       : "Reactance");
                         });
