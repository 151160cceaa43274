// SPDX-License-Identifier: GPL-3.0-or-later
// ./run as a newcomer calls it on a machine without a display.
#include "e2e/EndToEnd.h"

#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <gmock/gmock.h>

using namespace e2e;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

namespace {

/// Building is part of it; by the time this test runs there is nothing left to build.
constexpr int kBuildPatience = 600000;

class RunScriptTest : public EndToEndTest
{
protected:
    static Ended run(const QStringList& arguments, const QProcessEnvironment& environment)
    {
        QProcess process;
        QProcessEnvironment own = environment;
        own.insert(QStringLiteral("MARROWICK_PRESET"), QFileInfo(QStringLiteral(MG_BINARY_DIR)).fileName());
        process.setProcessEnvironment(own);
        process.start(QStringLiteral(MG_SOURCE_DIR "/run"), arguments);
        Ended ended;
        if (process.waitForFinished(kBuildPatience) && process.exitStatus() == QProcess::NormalExit)
            ended.exitCode = process.exitCode();
        ended.output = process.readAllStandardOutput();
        ended.errors = process.readAllStandardError();
        return ended;
    }

    static QProcessEnvironment withoutDisplay()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        return environment;
    }
};

} // namespace

TEST_F(RunScriptTest, WithoutADisplayItLeavesAPlotFileAPictureAndALineOfResults)
{
    const QDir output(QStringLiteral(MG_SOURCE_DIR "/build/run"));
    for (const char* name : {"sweep.gzd", "sweep.png"})
        QFile::remove(output.filePath(QLatin1String(name)));
    const Ended ended = run({QStringLiteral("--fast")}, withoutDisplay());
    ASSERT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_THAT(ended.errors.toStdString(), HasSubstr("run: no display: "));
    EXPECT_THAT(ended.output.toStdString(), HasSubstr("1024 points from 38 kHz to 42 kHz, lowest impedance "));
    EXPECT_GT(QFileInfo(output.filePath(QStringLiteral("sweep.gzd"))).size(), 0);
    EXPECT_GT(QFileInfo(output.filePath(QStringLiteral("sweep.png"))).size(), 0);
    EXPECT_TRUE(QDir(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/marrowick/devices"))
                    .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                    .isEmpty())
        << "the simulated instrument is still there";
}

TEST_F(RunScriptTest, ItNeedsNeitherARuntimeFolderNorAWorkingDisplay)
{
    QProcessEnvironment environment = withoutDisplay();
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":4711"));
    environment.insert(QStringLiteral("TMPDIR"), m_folder.path());
    const Ended ended = run({QStringLiteral("--fast")}, environment);
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_THAT(ended.errors.toStdString(), HasSubstr("run: no display: "));
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty()) << "its own runtime folder is still there";
}

TEST_F(RunScriptTest, AWrongOptionIsToldAndHelpIsGiven)
{
    const Ended wrong = run({QStringLiteral("--colour")}, withoutDisplay());
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_EQ(wrong.errors.toStdString(), "run: unknown option --colour; ./run --help lists the options\n");
    const Ended help = run({QStringLiteral("--help")}, withoutDisplay());
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output.toStdString(), HasSubstr("Usage: ./run "));
}

TEST_F(RunScriptTest, APartThatDoesNotExistIsToldByTheSimulator)
{
    const Ended ended = run({QStringLiteral("--part"), QStringLiteral("no-such-part")}, withoutDisplay());
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_THAT(ended.errors.toStdString(), HasSubstr("run: the simulated instrument did not start:\nmarrowick-sim: "));
}
