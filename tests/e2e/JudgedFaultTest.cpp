// SPDX-License-Identifier: GPL-3.0-or-later
// Every kind of fault of a line together, unplugging included, judged by the instrument: nothing is swept that was not
// asked for, nothing counts as made that was not, and what was stored is what was measured.
#include "e2e/EndToEnd.h"
#include "e2e/RandomSweep.h"
#include "e2e/SweepJudge.h"
#include "prefs/SettingsStore.h"
#include "recovery/RecoveryStore.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <algorithm>
#include <gmock/gmock.h>
#include <utility>

using namespace e2e;
using ::testing::AnyOf;

namespace {

constexpr int kSeeds = 16;
/// An instrument that was not started by then was not heard, or did not hear; the desktop waits two seconds for it.
constexpr int kLongestStart = 8000;

/// Long runs go side by side: MARROWICK_FAULT_FIRST=501 MARROWICK_FAULT_SEEDS=500 is the second half of a thousand.
int firstSeed()
{
    return std::max(1, qEnvironmentVariableIntValue("MARROWICK_FAULT_FIRST"));
}

class JudgedFaultTest : public EndToEndTest
{
protected:
    /// Values judged and runs that counted as made, over all seeds.
    int m_judged = 0, m_made = 0;

    void fromTheCommandLine(int seed)
    {
        Dice dice(seed);
        const AskedSweep asked = someSweep(dice);
        played::Manners manners = someManners(dice);
        manners.line = someFaults(dice);
        const played::ScriptedInstrument instrument(freshSerial(), {}, manners);
        const QString plot = path(QStringLiteral("%1.gzd").arg(seed)),
                      log = path(QStringLiteral("link-%1.log").arg(seed));
        const Ended ended =
            runProgram(QStringLiteral("marrowick"),
                       QStringList{QStringLiteral("sweep"), QStringLiteral("--device"), instrument.serial(),
                                   QStringLiteral("--output"), plot, QStringLiteral("--link-log"), log} +
                           asked.options());
        SCOPED_TRACE(ended.errors.toStdString());
        // Made; no instrument; lost; refused, as by limits that were spoilt; incomplete; another sweep by a spoilt "D".
        EXPECT_THAT(ended.exitCode, AnyOf(0, 2, 3, 4, 6, 7));
        judgeBegun(asked, played::Settings(), instrument.sweeps());
        int judged = 0;
        if (QFileInfo::exists(plot))
            judged = judgeStored(asked, instrument, plot);
        if (ended.exitCode == 0) {
            ++m_made;
            EXPECT_GT(judged, 0);
            EXPECT_EQ(completeSweeps(instrument), asked.repeat);
        } else {
            EXPECT_FALSE(ended.errors.isEmpty());
        }
        m_judged += judged;
        keep(instrument, seed);
    }

    void fromTheWindow(int seed)
    {
        Dice dice(seed);
        AskedSweep asked = someSweep(dice);
        if (asked.type == QLatin1String("reactance"))
            asked.type = QStringLiteral("impedance"); // the program's command line knows two
        asked.direction = dice.oneIn(2) ? QStringLiteral("up") : QStringLiteral("down");
        asked.repeat = 1;
        asked.linear = false;
        played::Manners manners = someManners(dice);
        manners.line = someFaults(dice);
        const played::ScriptedInstrument instrument(freshSerial(), {}, manners);
        store(instrument.serial(), asked);
        // What a run leaves is its own: nothing is offered to the next one.
        const QString state = path(QStringLiteral("state-%1").arg(seed));
        qputenv("XDG_STATE_HOME", QFile::encodeName(state));

        QProcess program;
        program.start(programPath(QStringLiteral("marrowickgraph")),
                      {QStringLiteral("--test"), asked.type, QStringLiteral("--link-log"),
                       path(QStringLiteral("link-%1.log").arg(seed))});
        const auto over = [&] {
            const std::vector<played::Sweep> sweeps = instrument.sweeps();
            return instrument.hungUp() || (!sweeps.empty() && sweeps.back().end != played::Sweep::End::Running);
        };
        waitFor([&] { return over() || instrument.count("imptest") + instrument.count("amptest") > 0; }, kLongestStart);
        if (instrument.count("imptest") + instrument.count("amptest") > 0) {
            EXPECT_TRUE(waitFor(over)) << "a sweep that was started goes on to its end";
        }
        waitUntilRead(path(QStringLiteral("link-%1.log").arg(seed)));
        program.terminate();
        ASSERT_TRUE(program.waitForFinished(kPatience));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);

        // An instrument that could not say who it is has nothing stored for it.
        if (saidItsName(instrument))
            judgeBegun(asked, played::Settings(), instrument.sweeps());
        else
            ++m_nameless;
        EXPECT_EQ(stored(instrument.serial(), "dblStartFrequency"), asked.from);
        EXPECT_EQ(stored(instrument.serial(), "dblEndFrequency"), asked.to);
        EXPECT_EQ(stored(instrument.serial(), "iNumPoints"), asked.points);
        if (saidItsName(instrument))
            judgeKept(asked, instrument, state + QStringLiteral("/marrowick/recovery"));
        keep(instrument, seed);
    }

    /// Nothing more comes out of the terminal: the link log does not grow any longer. Only for having more to judge.
    static void waitUntilRead(const QString& linkLog)
    {
        qint64 size = -1;
        for (int round = 0; round < 20 && std::exchange(size, QFileInfo(linkLog).size()) != QFileInfo(linkLog).size();
             ++round)
            QThread::msleep(100);
    }

    /// What the window was showing when it was ended, out of the journal.
    void judgeKept(const AskedSweep& asked, const played::ScriptedInstrument& instrument, const QString& folder)
    {
        const RecoveryStore store(folder);
        for (const RecoveryStore::Plot& plot : store.plots()) {
            const ValueOr<QByteArray> bytes = store.read(plot);
            ASSERT_TRUE(bytes.ok()) << bytes.sentence().toStdString();
            QFile file(path(QStringLiteral("kept.gzd")));
            ASSERT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
            ASSERT_EQ(file.write(bytes.value()), bytes.value().size());
            file.close();
            const int judged = judgeStored(asked, instrument, file.fileName());
            m_judged += judged;
            m_made += judged > 0 ? 1 : 0;
        }
    }

    static int completeSweeps(const played::ScriptedInstrument& instrument)
    {
        int complete = 0;
        for (const played::Sweep& sweep : instrument.sweeps())
            complete += sweep.end == played::Sweep::End::Complete ? 1 : 0;
        return complete;
    }

    /// A whole "V" has gone over the line, and nothing spoilt one.
    static bool saidItsName(const played::ScriptedInstrument& instrument)
    {
        for (const played::LogEntry& entry : instrument.log()) {
            if (!entry.received && entry.text.size() == 67 && entry.text.compare(0, 4, "V:0 ") == 0 &&
                entry.text[65] == '\r')
                return true;
        }
        return false;
    }

    void store(const QString& serial, const AskedSweep& asked)
    {
        const QString title = QStringLiteral("MarrowickGraph");
        SettingsStore settings;
        const auto set = [&](const QString& section, const char* key, const QVariant& value) {
            ASSERT_TRUE(settings.SaveSetting(title, section, QLatin1String(key), value));
        };
        for (const char* folder : {"PlotFiles", "ExportFiles", "ScriptFiles", "UpdateFiles"})
            set(QStringLiteral("Paths"), folder, m_folder.path());
        set(QStringLiteral("Prompts"), "SplashScreen", 0);
        set(QStringLiteral("Prompts"), "OpenSettings", false);
        set(serial, "dblStartFrequency", asked.from);
        set(serial, "dblEndFrequency", asked.to);
        set(serial, "iNumPoints", asked.points);
        set(serial, "iAttenuationCode", static_cast<int>(asked.attenuation / 10));
        set(serial, "iSweepMode", asked.direction == QLatin1String("down") ? 1 : 0);
        set(serial, "bfRepeat", false);
        set(serial, "bfPhaseOn", asked.phase);
        set(serial, "iTestPeriod", asked.period);
    }
    static double stored(const QString& serial, const char* key)
    {
        return SettingsStore().GetSetting(QStringLiteral("MarrowickGraph"), serial, QLatin1String(key), -1).toDouble();
    }

    void keep(const played::ScriptedInstrument& instrument, int seed) const
    {
        if (HasFailure())
            instrument.saveLog(path(QStringLiteral("instrument-%1.log").arg(seed)));
        else
            QFile::remove(path(QStringLiteral("link-%1.log").arg(seed)));
    }

    int m_nameless = 0;
};

} // namespace

TEST_F(JudgedFaultTest, FromTheCommandLineNothingButTheAskedSweepIsMadeOrStored)
{
    const int seeds = faultSeeds(kSeeds), first = firstSeed();
    for (int seed = first; seed < first + seeds && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        fromTheCommandLine(seed);
    }
    RecordProperty("judged", m_judged);
    RecordProperty("made", m_made);
    std::printf("%d seeds, %d runs made, %d values judged\n", seeds, m_made, m_judged);
    EXPECT_GT(m_judged, 20 * seeds) << "hardly anything was judged";
    EXPECT_GT(m_made, 0);
}

TEST_F(JudgedFaultTest, FromTheWindowNothingButTheAskedSweepIsMadeOrStored)
{
    const int seeds = faultSeeds(kSeeds), first = firstSeed();
    for (int seed = first; seed < first + seeds && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        fromTheWindow(seed);
    }
    RecordProperty("judged", m_judged);
    RecordProperty("nameless", m_nameless);
    std::printf("%d seeds, %d with points, %d nameless, %d values judged\n", seeds, m_made, m_nameless, m_judged);
    EXPECT_GT(m_judged, 20 * seeds) << "hardly anything was judged";
    EXPECT_LT(m_nameless, seeds / 4);
}
