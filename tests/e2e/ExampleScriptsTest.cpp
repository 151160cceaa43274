// SPDX-License-Identifier: GPL-3.0-or-later
// The example scripts, run by the desktop program and by the command line on a simulated instrument: both leave the
// files that the script names, the same to the byte.
#include "e2e/EndToEnd.h"
#include "prefs/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <map>
#include <sys/types.h>

using namespace e2e;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

namespace {

using namespace Qt::StringLiterals;

/// An example and the person who runs it.
struct Example
{
    const char* script;
    QStringList answers;  ///< given to the command line
    QByteArray presses;   ///< the buttons that are not the default ones, in the desktop program
    int exitCode;         ///< of the command line
    QByteArray verdict;   ///< its last line
    QStringList files;    ///< "STAMP" for date, time and serial number
    const char* stopBy{}; ///< the file behind which an endless script is stopped
};

const QString kScripts = u"" MG_SOURCE_DIR "/docs/examples/scripts/"_s;
const QString kTitle = u"MarrowickGraph"_s;

QByteArray contentOf(const QString& name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << name.toStdString();
    return file.readAll();
}

class ExampleScriptsTest : public EndToEndTest
{
protected:
    static QProcessEnvironment pinned()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LD_PRELOAD"_s, u"" MG_BINARY_DIR "/test-plugins/libtest_clock.so"_s);
        // The sanitizers, where the programs have them, are not the first to be loaded then.
        environment.insert(u"ASAN_OPTIONS"_s, qEnvironmentVariable("ASAN_OPTIONS") + u":verify_asan_link_order=0"_s);
        return environment;
    }

    QStringList instrument() const { return {u"--fast"_s, u"--idle-levels"_s, u"0"_s, u"--part"_s, m_part}; }

    QString folder(const QString& name) const
    {
        EXPECT_TRUE(QDir().mkpath(path(name)));
        return path(name);
    }

    /// The script; its first setting is made for the test where one is given.
    QString scriptOf(const Example& example) const
    {
        return m_script.isEmpty() ? kScripts + QLatin1String(example.script) + u".mgs"_s : m_script;
    }

    Ended runByCommand(const Example& example)
    {
        const Simulator simulator(m_serial, instrument());
        QStringList arguments{u"run"_s,       scriptOf(example), u"--device"_s,  m_serial,
                              u"--plots"_s,   folder(m_command), u"--exports"_s, folder(m_command),
                              u"--timeout"_s, u"50"_s,           u"--quiet"_s};
        for (const QString& answer : example.answers)
            arguments += {u"--answer"_s, answer};
        QProcess process;
        process.setProcessEnvironment(pinned());
        process.start(programPath(u"marrowick"_s), arguments);
        if (example.stopBy) {
            EXPECT_TRUE(
                waitFor([&] { return hasFile(m_command, example.stopBy) || process.state() == QProcess::NotRunning; }));
            ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        }
        Ended ended;
        if (process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit)
            ended.exitCode = process.exitCode();
        ended.output = process.readAllStandardOutput();
        ended.errors = process.readAllStandardError();
        return ended;
    }

    /// A user who has been here before: the folders are set, no window asks for anything.
    void prepareDesktop()
    {
        SettingsStore store;
        for (const char* name : {"PlotFiles", "ExportFiles", "ScriptFiles", "UpdateFiles"})
            ASSERT_TRUE(store.SaveSetting(kTitle, u"Paths"_s, QLatin1String(name), folder(m_desktop)));
        ASSERT_TRUE(store.SaveSetting(kTitle, u"Prompts"_s, u"SplashScreen"_s, 0));
        ASSERT_TRUE(store.SaveSetting(kTitle, u"Prompts"_s, u"OpenSettings"_s, false));
    }

    void runOnDesktop(const Example& example)
    {
        prepareDesktop();
        const Simulator simulator(m_serial, instrument());
        QFile presses(path(u"presses"_s));
        ASSERT_TRUE(presses.open(QFile::WriteOnly));
        presses.write(example.presses);
        presses.close();
        QProcessEnvironment environment = pinned();
        environment.insert(u"QT_PLUGIN_PATH"_s, u"" MG_BINARY_DIR "/test-plugins"_s);
        environment.insert(u"QT_QPA_GENERIC_PLUGINS"_s, u"operator"_s);
        environment.insert(u"MARROWICK_OPERATOR"_s, presses.fileName());
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(programPath(u"marrowickgraph"_s), {scriptOf(example), u"--link-log"_s, path(u"desktop.log"_s)});
        EXPECT_TRUE(waitFor([&] {
            return program.state() == QProcess::NotRunning || (example.stopBy && hasFile(m_desktop, example.stopBy)) ||
                   scriptHasEnded();
        })) << program.readAllStandardError().toStdString();
        EXPECT_EQ(program.state(), QProcess::Running) << program.readAllStandardError().toStdString();
        program.terminate();
        ASSERT_TRUE(program.waitForFinished(kPatience));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    }

    bool scriptHasEnded() const
    {
        bool ran = false;
        for (const LoggedFrame& frame : loggedFrames(path(u"desktop.log"_s))) {
            if (frame.code == 'k' && frame.flag == 0 && ran)
                return true;
            ran = ran || (frame.code == 'k' && frame.flag == 1);
        }
        return false;
    }

    QString stamped(const QString& name) const { return QString(name).replace(u"STAMP"_s, kStamp + m_serial); }
    bool hasFile(const QString& in, const QString& name) const
    {
        return QFile::exists(folder(in) + u'/' + stamped(name));
    }
    bool hasFile(const QString& in, const char* name) const { return hasFile(in, QLatin1String(name)); }

    std::map<QString, int> pressed() const
    {
        std::map<QString, int> counts;
        for (const QString& line :
             QString::fromUtf8(contentOf(path(u"presses.log"_s))).split(u'\n', Qt::SkipEmptyParts))
            ++counts[line];
        return counts;
    }

    /// Both programs run the example; their files are those that it names, and equal.
    void runByBoth(const Example& example)
    {
        const Ended ended = runByCommand(example);
        EXPECT_EQ(ended.exitCode, example.exitCode) << ended.errors.toStdString();
        EXPECT_TRUE(ended.output.endsWith('\n' + example.verdict + '\n')) << ended.output.toStdString();
        runOnDesktop(example);
        QStringList names;
        for (const QString& name : example.files)
            names.append(stamped(name));
        for (const QString& name : names) {
            const QByteArray ofCommand = contentOf(path(m_command) + u'/' + name);
            EXPECT_FALSE(ofCommand.isEmpty()) << name.toStdString();
            EXPECT_TRUE(ofCommand == contentOf(path(m_desktop) + u'/' + name)) << name.toStdString() << " differs";
        }
        if (example.stopBy)
            return; // stopped sooner or later
        for (const QString& where : {m_command, m_desktop})
            EXPECT_EQ(filesIn(where), names) << where.toStdString();
    }

    QStringList filesIn(const QString& where) const
    {
        QStringList found = QDir(path(where)).entryList(QDir::Files, QDir::Name);
        found.removeAll(u"transducer-mask.gzd"_s);
        return found;
    }

    const QString kStamp = u"20260304_050607_"_s;
    QString m_command = u"command"_s, m_desktop = u"desktop"_s;
    QString m_serial = freshSerial();
    QString m_part = u"langevin40k"_s;
    QString m_script;
};

} // namespace

TEST_F(ExampleScriptsTest, TheAttenuationSeriesLeavesItsPlotAndText)
{
    runByBoth({"attenuation-series", {}, {}, 0, "pass", {u"attenuation-series.gad"_s, u"attenuation-series.txt"_s}});
}

TEST_F(ExampleScriptsTest, TheTwoPenReportLeavesItsPlotAndPictureAndAsksForThePrint)
{
    // The command line prints nothing, says so, and is not quite done.
    runByBoth({"capacitance-and-resonance",
               {},
               "Print=Cancel\n",
               5,
               "incomplete",
               {u"capacitance-and-resonance.gzd"_s, u"capacitance-and-resonance.jpg"_s}});
    EXPECT_EQ(pressed(), (std::map<QString, int>{{u"Print=Cancel"_s, 1}}));
}

TEST_F(ExampleScriptsTest, TheZoomLeavesOverviewResonanceAndPicture)
{
    runByBoth({"zoom-on-resonance",
               {},
               {},
               0,
               "pass",
               {u"overview_STAMP.gzd"_s, u"resonance_STAMP.bmp"_s, u"resonance_STAMP.gzd"_s}});
}

TEST_F(ExampleScriptsTest, TheLineNumbersItsPartsUntilTheOperatorSaysNo)
{
    runByBoth({"serial-numbered-line",
               {u"ok"_s, u"yes"_s, u"ok"_s, u"no"_s},
               "Abort MarrowickScript?=Yes\nAbort MarrowickScript?=No\n",
               6,
               "stopped",
               {u"part-000001_STAMP.gzd"_s, u"part-000002_STAMP.gzd"_s}});
    EXPECT_EQ(pressed(), (std::map<QString, int>{{u"User Prompt=OK"_s, 2},
                                                 {u"**Information=OK"_s, 2},
                                                 {u"Abort MarrowickScript?=Yes"_s, 1},
                                                 {u"Abort MarrowickScript?=No"_s, 1}}));
}

TEST_F(ExampleScriptsTest, TheBurnInSavesTenSweepsAPlotUntilItIsStopped)
{
    // The pause is what its user sets at its head.
    QByteArray script = contentOf(kScripts + u"burn-in.mgs"_s);
    ASSERT_EQ(script.count("let pause = 5 s "), 1);
    script.replace("let pause = 5 s ", "let pause = 50 ms ");
    QFile file(m_script = path(u"burn-in.mgs"_s));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(script);
    file.close();
    runByBoth({"burn-in", {}, {}, 6, "stopped", {u"burn-in-0001_STAMP.gzd"_s}, "burn-in-0001_STAMP.gzd"});
}

class InspectionTest : public ExampleScriptsTest
{
protected:
    /// The plot with the masks, made as the script says.
    void SetUp() override
    {
        const QString plot = path(u"transducer-mask.gzd"_s);
        {
            const Simulator simulator(m_serial, instrument());
            const Ended swept =
                runProgram(u"marrowick"_s, {u"sweep"_s, u"--device"_s, m_serial, u"--from"_s, u"35k"_s, u"--to"_s,
                                            u"45k"_s, u"--points"_s, u"400"_s, u"--output"_s, plot});
            ASSERT_EQ(swept.exitCode, 0) << swept.errors.toStdString();
        }
        const Ended masked =
            runProgram(u"marrowick"_s, {u"mask"_s, u"--set"_s, kScripts + u"transducer-mask.mgm"_s, plot});
        ASSERT_EQ(masked.exitCode, 0) << masked.errors.toStdString();
        for (const QString& where : {m_command, m_desktop})
            ASSERT_TRUE(QFile::copy(plot, folder(where) + u"/transducer-mask.gzd"_s));
    }

    static Example inspection(int exitCode, const char* verdict)
    {
        Example example{"incoming-inspection", {u"ok"_s}, {}, exitCode, verdict, {}};
        for (int part = 1; part <= 10; ++part) {
            for (const QString& extension : {u".gzd"_s, u".txt"_s})
                example.files += u"transducer-%1"_s.arg(part, 2, 10, QChar(u'0')) + extension;
        }
        return example;
    }
};

TEST_F(InspectionTest, TenGoodTransducersPassTheirMaskAndAreSavedAndExported)
{
    runByBoth(inspection(0, "pass"));
    EXPECT_EQ(pressed(), (std::map<QString, int>{{u"User Prompt=OK"_s, 10}, {u"**Information=OK"_s, 1}}));
}

TEST_F(InspectionTest, TransducersOutsideTheMaskAreToldAndTheInspectionGoesOn)
{
    m_part = u"resistor1k"_s;
    runByBoth(inspection(9, "fail"));
    EXPECT_EQ(pressed(), (std::map<QString, int>{
                             {u"User Prompt=OK"_s, 10}, {u"Mask Test Failure=OK"_s, 10}, {u"**Information=OK"_s, 1}}));
}
