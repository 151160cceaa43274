// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop program as it ships, without a display of its own.
#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/SerialTransport.h"
#include "e2e/EndToEnd.h"
#include "prefs/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <gmock/gmock.h>

using namespace e2e;
using ::testing::Contains;

namespace {

class DesktopTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        // A user who has been here before: the folders are set, no window asks for anything.
        SettingsStore store;
        for (const char* folder : {"PlotFiles", "ExportFiles", "ScriptFiles", "UpdateFiles"}) {
            ASSERT_TRUE(QDir().mkpath(path(QLatin1String(folder))));
            ASSERT_TRUE(
                store.SaveSetting(kTitle, QStringLiteral("Paths"), QLatin1String(folder), path(QLatin1String(folder))));
        }
        ASSERT_TRUE(store.SaveSetting(kTitle, QStringLiteral("Prompts"), QStringLiteral("SplashScreen"), 0));
        ASSERT_TRUE(store.SaveSetting(kTitle, QStringLiteral("Prompts"), QStringLiteral("OpenSettings"), false));

        // What an instrument's script does at its end: it ends the program.
        QFile script(path(QStringLiteral("script.txt")));
        ASSERT_TRUE(script.open(QFile::WriteOnly));
        script.write("wait 100\nh\n");
    }

    QStringList endingScript() const
    {
        return {QStringLiteral("--fast"), QStringLiteral("--script-frames"), path(QStringLiteral("script.txt"))};
    }

    /// Gives the instrument a script to hold, so that "-rerun" has one to run.
    static void loadScript(const Simulator& simulator)
    {
        DeviceList devices;
        KorvaLink link(devices);
        ASSERT_TRUE(link.OpenTransport(std::make_unique<SerialTransport>(simulator.devicePath())));
        const QString script = QStringLiteral("end");
        link.Write(QStringLiteral("loadscript %1\r").arg(script.size()) + script);
        link.Write(QStringLiteral("enquire 1.28\r"));
        // The answer tells that everything before it has been taken.
        ASSERT_TRUE(waitFor([&link] { return link.BytesAvailable() > 67; }));
    }

    void start(QProcess& program, const QStringList& arguments, const QString& log) const
    {
        program.start(programPath(QStringLiteral("marrowickgraph")),
                      arguments + QStringList{QStringLiteral("--link-log"), path(log)});
    }

    /// The log's lines without their times.
    std::vector<std::string> logged(const QString& name) const
    {
        std::vector<std::string> lines;
        QFile file(path(name));
        if (!file.open(QFile::ReadOnly))
            return lines;
        for (const QByteArray& line : file.readAll().split('\n'))
            lines.push_back(line.mid(line.indexOf(' ') + 1).toStdString());
        return lines;
    }

    const QString kTitle = QStringLiteral("MarrowickGraph");
};

} // namespace

TEST_F(DesktopTest, ItStartsConnectsAndEndsWhenTheInstrumentsScriptEndsIt)
{
    const Simulator simulator(freshSerial(), endingScript());
    loadScript(simulator);
    QProcess program;
    start(program, {QStringLiteral("-rerun")}, QStringLiteral("link.log"));
    ASSERT_TRUE(program.waitForFinished(kPatience)) << program.readAllStandardError().toStdString();
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    const std::vector<std::string> lines = logged(QStringLiteral("link.log"));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "> enquire 1.28\\r"), 2) << "the state is asked for twice";
    EXPECT_THAT(lines, Contains(::testing::StartsWith("< V:")));
    EXPECT_THAT(lines, Contains(::testing::StartsWith("< X:")));
    EXPECT_THAT(lines, Contains("> y\\rrun\\r"));
}

TEST_F(DesktopTest, TwoCopiesRunSideBySideWithAnInstrumentEach)
{
    const Simulator first(freshSerial(), {QStringLiteral("--fast")});
    const Simulator second(freshSerial(), endingScript());
    loadScript(second);
    QProcess one, two;
    start(one, {}, QStringLiteral("one.log"));
    ASSERT_TRUE(waitFor([this] {
        const std::vector<std::string> lines = logged(QStringLiteral("one.log"));
        return std::any_of(lines.begin(), lines.end(), [](const auto& line) { return line.starts_with("< X:"); });
    }));
    start(two, {QStringLiteral("-rerun")}, QStringLiteral("two.log"));
    ASSERT_TRUE(two.waitForFinished(kPatience)) << two.readAllStandardError().toStdString();
    EXPECT_EQ(two.exitCode(), 0);
    EXPECT_EQ(one.state(), QProcess::Running);
    one.terminate();
    EXPECT_TRUE(one.waitForFinished(kPatience));
    const auto serialIn = [this](const QString& log) {
        for (const std::string& line : logged(log)) {
            if (line.starts_with("< V:"))
                return QString::fromStdString(line.substr(6)).section(QLatin1String("\\r"), 0, 0).trimmed();
        }
        return QString();
    };
    EXPECT_EQ(serialIn(QStringLiteral("one.log")), first.serial());
    EXPECT_EQ(serialIn(QStringLiteral("two.log")), second.serial());
    // The window's place is kept under the title with its number.
    EXPECT_TRUE(
        SettingsStore().contains(QStringLiteral("MarrowickGraph1"), QStringLiteral("Window"), QStringLiteral("State")));
}

TEST_F(DesktopTest, ATestAskedForOnTheCommandLineRunsToItsEnd)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    QProcess program;
    start(program, {QStringLiteral("--test"), QStringLiteral("impedance")}, QStringLiteral("link.log"));
    const auto has = [this](const char* beginning) {
        const std::vector<std::string> lines = logged(QStringLiteral("link.log"));
        return std::any_of(lines.begin(), lines.end(), [&](const auto& line) { return line.starts_with(beginning); });
    };
    EXPECT_TRUE(waitFor([&] { return has("< Y:"); }));
    EXPECT_TRUE(has("> y\\rimptest\\r"));
    EXPECT_TRUE(has("< F:"));
    EXPECT_EQ(program.state(), QProcess::Running);
    program.terminate();
    EXPECT_TRUE(program.waitForFinished(kPatience));
}

TEST_F(DesktopTest, AnOptionThatNobodyKnowsEndsItBeforeAnythingOpens)
{
    QProcess program;
    start(program, {QStringLiteral("--frobnicate")}, QStringLiteral("desktop.log"));
    ASSERT_TRUE(program.waitForFinished(10000));
    EXPECT_EQ(program.exitCode(), 2);
    const QByteArray said = program.readAllStandardError() + program.readAllStandardOutput();
    EXPECT_TRUE(said.contains("There is no option --frobnicate")) << said.toStdString();
}

TEST_F(DesktopTest, ASignalInAMeasurementStopsItAndRunsTheUnload)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const Simulator simulator(freshSerial(), {QStringLiteral("--rate"), QStringLiteral("30")});
        const QString log = QStringLiteral("signal%1.log").arg(number);
        const auto has = [&](const char* beginning) {
            const std::vector<std::string> lines = logged(log);
            return std::any_of(lines.begin(), lines.end(),
                               [&](const auto& line) { return line.starts_with(beginning); });
        };
        const QString port = QFileInfo(simulator.devicePath()).canonicalFilePath().remove(QLatin1String("/dev/"));
        const QString lock = QStringLiteral("/var/lock/LCK..") + QString(port).replace(u'/', u'_');
        const QString window = QStringLiteral("Window"), left = QStringLiteral("Left");
        ASSERT_TRUE(SettingsStore().SaveSetting(kTitle, window, left, QStringLiteral("unsaved")));
        QProcess program;
        start(program, {QStringLiteral("--test"), QStringLiteral("impedance")}, log);
        ASSERT_TRUE(waitFor([&] { return has("< F:"); }));
        EXPECT_TRUE(QFile::exists(lock)) << lock.toStdString();
        ASSERT_EQ(::kill(static_cast<pid_t>(program.processId()), number), 0);
        ASSERT_TRUE(program.waitForFinished(10000)) << number;
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit) << number;
        EXPECT_EQ(program.exitCode(), 0) << number;
        EXPECT_FALSE(QFile::exists(lock)) << number;
        EXPECT_TRUE(has("> y\\r")) << number;
        EXPECT_THAT(logged(log), Contains(::testing::HasSubstr("closed"))) << number;
        EXPECT_NE(SettingsStore().GetSetting(kTitle, window, left, QString()), QStringLiteral("unsaved")) << number;
    }
}
