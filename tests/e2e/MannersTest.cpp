// SPDX-License-Identifier: GPL-3.0-or-later
// Bad manners of an instrument in random mixtures, against whole programs: a sweep that counts as made is the one that
// was asked for, point by point; any other is told by the exit code.
#include "e2e/EndToEnd.h"
#include "e2e/RandomSweep.h"
#include "e2e/SweepJudge.h"
#include "prefs/SettingsStore.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace e2e;
using namespace std::chrono_literals;
using played::Manners;
using ::testing::AnyOf;

namespace {

constexpr int kSeeds = 24;
/// More seeds than the suite has time for: MARROWICK_MANNERS_SEEDS=1000 build/dev/bin/test_e2e
/// --gtest_filter='MannersTest.*'. A number below kSeeds, or none, leaves it at those.
constexpr const char* kSeedsVariable = "MARROWICK_MANNERS_SEEDS";

class MannersTest : public EndToEndTest
{
protected:
    static int seeds() { return std::max(kSeeds, qEnvironmentVariableIntValue(kSeedsVariable)); }

    void sweep(int seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Dice dice(seed);
        AskedSweep asked = someSweep(dice);
        played::ScriptedInstrument instrument(freshSerial(), {}, someManners(dice));
        const bool hangsUp = dice.oneIn(5), loses = !hangsUp && dice.oneIn(5), garbles = dice.oneIn(4);
        const char point = asked.type == QLatin1String("amplitude") ? 'H' : 'F';
        if (hangsUp)
            instrument.afterFrame(point, dice.number(1, asked.points), [&] { instrument.hangUp(); });
        if (loses) {
            // Bytes that do not belong there spoil one of the points behind them.
            asked.points = std::max(asked.points, 4);
            const int at = dice.number(1, asked.points - 3);
            instrument.afterFrame(point, at, [&] { instrument.send(std::string(20, '7')); });
        }
        if (garbles)
            instrument.afterFrame('V', 1, [&] { instrument.send("~~~:~\r~"); });
        const QString plot = path(QStringLiteral("%1.gzd").arg(seed));
        const Ended ended =
            runProgram(QStringLiteral("marrowick"),
                       QStringList{QStringLiteral("sweep"), QStringLiteral("--device"), instrument.serial(),
                                   QStringLiteral("--output"), plot, QStringLiteral("--link-log"),
                                   path(QStringLiteral("link-%1.log").arg(seed))} +
                           asked.options());
        SCOPED_TRACE(ended.errors.toStdString());
        if (hangsUp) {
            // The cable may be pulled behind the last point that was wanted.
            EXPECT_THAT(ended.exitCode, AnyOf(0, 3));
        } else if (loses) {
            EXPECT_EQ(ended.exitCode, 6) << "a point is missing";
        } else {
            EXPECT_EQ(ended.exitCode, 0);
        }
        if (ended.exitCode == 0) {
            judgeSwept(asked, played::Settings(), instrument.sweeps());
            judgePlot(asked, instrument.part(), plot);
        }
        if (HasFailure())
            instrument.saveLog(path(QStringLiteral("instrument-%1.log").arg(seed)));
    }
};

} // namespace

TEST_F(MannersTest, ASweepThatCountsAsMadeIsTheOneAskedFor)
{
    RecordProperty("seeds", seeds());
    for (int seed = 1; seed <= seeds() && !HasFailure(); ++seed)
        sweep(seed);
}

TEST_F(MannersTest, TheDesktopSweepsWhatIsStoredForTheInstrumentHoweverLateItsSecondAnswer)
{
    for (const int milliseconds : {0, 150, 400}) {
        SCOPED_TRACE(milliseconds);
        Manners late;
        late.enquiryDelays = {50ms, std::chrono::milliseconds(milliseconds)};
        const played::ScriptedInstrument instrument(freshSerial(), {}, late);
        const QString title = QStringLiteral("MarrowickGraph");
        SettingsStore store;
        const auto set = [&](const QString& section, const char* key, const QVariant& value) {
            ASSERT_TRUE(store.SaveSetting(title, section, QLatin1String(key), value));
        };
        for (const char* folder : {"PlotFiles", "ExportFiles", "ScriptFiles", "UpdateFiles"})
            set(QStringLiteral("Paths"), folder, m_folder.path());
        set(QStringLiteral("Prompts"), "SplashScreen", 0);
        set(QStringLiteral("Prompts"), "OpenSettings", false);
        set(instrument.serial(), "dblStartFrequency", 38000);
        set(instrument.serial(), "dblEndFrequency", 42000);
        set(instrument.serial(), "iNumPoints", 60);
        set(instrument.serial(), "iAttenuationCode", 2);
        set(instrument.serial(), "iSweepMode", 1);
        set(instrument.serial(), "bfRepeat", false);
        set(instrument.serial(), "bfPhaseOn", true);
        set(instrument.serial(), "iTestPeriod", 1);

        QProcess program;
        program.start(programPath(QStringLiteral("marrowickgraph")),
                      {QStringLiteral("--test"), QStringLiteral("impedance"), QStringLiteral("--link-log"),
                       path(QStringLiteral("link-%1.log").arg(milliseconds))});
        const bool swept = waitFor([&] {
            const std::vector<played::Sweep> sweeps = instrument.sweeps();
            return !sweeps.empty() && sweeps.back().end == played::Sweep::End::Complete;
        });
        program.terminate(); // a killed one would leave the next a question to answer
        ASSERT_TRUE(program.waitForFinished(kPatience));
        ASSERT_TRUE(swept) << instrument.logText();
        AskedSweep asked;
        asked.points = 60;
        asked.attenuation = 20;
        asked.direction = QStringLiteral("down");
        asked.period = 1;
        judgeSwept(asked, played::Settings(), instrument.sweeps());
        if (HasFailure())
            instrument.saveLog(path(QStringLiteral("instrument-%1.log").arg(milliseconds)));
    }
}
