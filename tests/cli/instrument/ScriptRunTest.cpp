// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/ScriptRun.h"

#include "support/FrameText.h"
#include "support/instrument/ScriptedInstrument.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>
#include <memory>

namespace {

using cli::ExitCode;
using ::testing::HasSubstr;

class ScriptRunTest : public ::testing::Test
{
protected:
    ScriptRunTest()
    {
        EXPECT_TRUE(instrument.problem().isEmpty()) << instrument.problem().toStdString();
        options.device = instrument.serial();
        options.plots = options.exports = folder.path();
        options.script = script("new impedance graph \"A\"\nsweep impedance\nsave \"part\"\n");
    }

    QString script(const QByteArray& content)
    {
        QFile file(folder.filePath(QStringLiteral("job.mgs")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    /// The instrument's script sends these frames and ends.
    void play(const QByteArray& frames)
    {
        instrument.onCommand("run", 1, [this, frames] {
            instrument.send(frames.toStdString());
            instrument.endScript();
        });
    }
    /// As play(), but goes on behind the frames until it is stopped.
    void playOn(const QByteArray& frames)
    {
        instrument.onCommand("run", 1, [this, frames] { instrument.send(frames.toStdString()); });
    }
    ExitCode run()
    {
        cli::Console console(QStringLiteral("marrowick"), cli::Console::into(output), cli::Console::into(errors),
                             false);
        cli::ScriptRun scriptRun(options, console);
        QTimer patience;
        QObject::connect(&patience, &QTimer::timeout, &scriptRun, &cli::ScriptRun::stop);
        patience.start(30'000);
        return scriptRun.run();
    }
    QString inFolder(const char* name) const { return folder.filePath(QLatin1String(name)); }
    static QByteArray text(char code, char f, const QByteArray& words) { return frametext::text(code, f, words); }

    const QByteArray kNoStamp = frametext::numbers('m', '0', 0, 0, 0, 1, 7);

    QTemporaryDir folder;
    played::ScriptedInstrument instrument{QStringLiteral("RUN%1").arg(QCoreApplication::applicationPid())};
    cli::RunOptions options;
    QString output, errors;
};

TEST_F(ScriptRunTest, AScriptThatEndsPassesAndLeavesTheFilesThatItNames)
{
    play(kNoStamp + text('U', '1', "Batch 12") + text('b', '0', "part") + text('x', '0', "part") + text('j', '0', ""));
    EXPECT_EQ(run(), ExitCode::Done) << errors.toStdString();
    EXPECT_TRUE(QFile::exists(inFolder("part.gzd")));
    EXPECT_TRUE(QFile::exists(inFolder("part.txt")));
    EXPECT_EQ(output, QStringLiteral("plot %1\ntext %2\npass\n").arg(inFolder("part.gzd"), inFolder("part.txt")));
    EXPECT_EQ(instrument.script(), "new impedance graph \"A\"\nsweep impedance\nsave \"part\"\n");
}

TEST_F(ScriptRunTest, EachResultIsALineOfJson)
{
    options.json = true;
    options.answers = QStringList{QStringLiteral("ok")};
    play(kNoStamp + text('U', '1', "Batch 12") + text('f', '0', "Insert part 3") + text('b', '0', "part"));
    EXPECT_EQ(run(), ExitCode::Done) << errors.toStdString();
    EXPECT_EQ(output, QStringLiteral("{\"answer\":\"ok\",\"question\":\"Insert part 3\"}\n{\"plot\":\"%1\"}\n"
                                     "{\"result\":\"pass\"}\n")
                          .arg(inFolder("part.gzd")));
}

TEST_F(ScriptRunTest, AnswersComeInTheirOrderAndNamesAreAmongThem)
{
    options.answers = QStringList{QStringLiteral("ok"), QStringLiteral("typed"), QStringLiteral("yes")};
    play(kNoStamp + text('U', '1', "") + text('f', '0', "Insert part 3") + text('b', '0', "") +
         text('p', '1', "Measure on?"));
    EXPECT_EQ(run(), ExitCode::Done) << errors.toStdString();
    EXPECT_TRUE(QFile::exists(inFolder("typed.gzd")));
}

TEST_F(ScriptRunTest, ARefusingAnswerStopsTheScript)
{
    options.answers = QStringList{QStringLiteral("cancel")};
    play(text('f', '0', "Insert part 3"));
    EXPECT_EQ(run(), ExitCode::Stopped);
    EXPECT_EQ(output, QStringLiteral("stopped\n"));
    const std::vector<std::string> commands = instrument.commands();
    EXPECT_NE(std::find(commands.begin(), commands.end(), " y"), commands.end()) << instrument.logText();
}

TEST_F(ScriptRunTest, AnAlarmMakesItFail)
{
    play(text('T', '1', "Part out of range"));
    EXPECT_EQ(run(), ExitCode::Bad);
    EXPECT_EQ(output, QStringLiteral("fail\n"));
    EXPECT_THAT(errors.toStdString(), HasSubstr("**Error: Part out of range"));
}

TEST_F(ScriptRunTest, AFileThatCannotBeWrittenIsToldAndLeavesTheRunIncomplete)
{
    options.plots = inFolder("missing");
    play(kNoStamp + text('U', '1', "") + text('b', '0', "part"));
    EXPECT_EQ(run(), ExitCode::FileError);
    EXPECT_EQ(output, QStringLiteral("incomplete\n"));
    EXPECT_THAT(errors.toStdString(), HasSubstr("Save File Error: The plot is not saved."));
}

TEST_F(ScriptRunTest, PrintAndMetafilesAreRefusedWithASentenceAndTheScriptGoesOn)
{
    play(kNoStamp + text('U', '1', "") + text('n', '0', "") + text('i', '1', "part") + text('b', '0', "part"));
    EXPECT_EQ(run(), ExitCode::FileError);
    EXPECT_THAT(errors.toStdString(), HasSubstr("Nothing can be printed here."));
    EXPECT_THAT(errors.toStdString(), HasSubstr("Metafiles are written by the desktop program only."));
    EXPECT_TRUE(QFile::exists(inFolder("part.gzd")));
}

TEST_F(ScriptRunTest, AScriptWithErrorsNeverReachesTheInstrument)
{
    script("sweeep impedance\n");
    EXPECT_EQ(run(), ExitCode::Refused);
    EXPECT_THAT(errors.toStdString(), HasSubstr("1:1: error: "));
    EXPECT_THAT(errors.toStdString(), HasSubstr("The script has errors; nothing was sent to the instrument."));
    EXPECT_EQ(instrument.count("loadscript"), 0);
}

TEST_F(ScriptRunTest, AMissingScriptIsAFileThatIsNotRead)
{
    options.script = inFolder("missing.mgs");
    options.device = QStringLiteral("nobody");
    EXPECT_EQ(run(), ExitCode::FileError);
    EXPECT_THAT(errors.toStdString(), HasSubstr("There is no script "));
    EXPECT_EQ(instrument.count("loadscript"), 0);
}

TEST_F(ScriptRunTest, WithoutThatInstrumentNothingRuns)
{
    options.device = QStringLiteral("nobody");
    EXPECT_EQ(run(), ExitCode::NoInstrument);
}

TEST_F(ScriptRunTest, AnInstrumentThatIsUnpluggedWhileItAsksEndsTheRun)
{
    instrument.onCommand("run", 1, [this] {
        instrument.send(text('U', '1', "A").toStdString());
        instrument.hangUp();
    });
    EXPECT_EQ(run(), ExitCode::Lost);
    EXPECT_EQ(output, QStringLiteral("lost\n"));
}

TEST_F(ScriptRunTest, TheTimeLimitStopsTheScriptInTheInstrument)
{
    options.timeout = 4;
    playOn(text('U', '1', "A"));
    EXPECT_EQ(run(), ExitCode::Stopped);
    EXPECT_THAT(errors.toStdString(), HasSubstr("Stopped: the time is up."));
    EXPECT_GE(instrument.count("y"), 2) << "ahead of the script, and at the limit";
}

TEST_F(ScriptRunTest, TheScriptMayEndTheProgram)
{
    playOn(text('U', '1', "A") + text('h', '0', ""));
    EXPECT_EQ(run(), ExitCode::Done) << errors.toStdString();
    EXPECT_EQ(output, QStringLiteral("pass\n"));
}

TEST(RunCommand, SpeaksOfAScriptAndOfItsOwnExitCodes)
{
    QString results, problems;
    cli::Console console(QStringLiteral("marrowick"), cli::Console::into(results), cli::Console::into(problems), false);
    cli::CommandTable table;
    table.push_back(std::make_unique<cli::RunCommand>());
    const QString program = QCoreApplication::arguments().constFirst();
    EXPECT_EQ(cli::runCommandLine(table, {program, QStringLiteral("run")}, console), ExitCode::Usage);
    EXPECT_EQ(problems, QStringLiteral("marrowick: A script is missing.\n"));
    EXPECT_EQ(cli::runCommandLine(table, {program, QStringLiteral("run"), QStringLiteral("--help")}, console),
              ExitCode::Done);
    EXPECT_THAT(results.toStdString(), HasSubstr("The script.\n"));
    EXPECT_THAT(results.toStdString(), HasSubstr("Exit codes: 0 pass, 9 fail, 6 stopped"));
    EXPECT_THAT(results.toStdString(), ::testing::Not(HasSubstr("lot file")));
}

} // namespace
