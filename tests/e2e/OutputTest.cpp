// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick where what it has to tell or to write goes nowhere: every command, every way.
#include "e2e/EndToEnd.h"
#include "support/WebFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <csignal>
#include <gmock/gmock.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <unistd.h>

using namespace e2e;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

const QString kProgram = QStringLiteral("marrowick");

class OutputTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_web.started() && m_web.add(QStringLiteral("MGV9R9B1.deb"), "a program"));
        const Ended made =
            runProgram(kProgram, {QStringLiteral("sweep"), QStringLiteral("--device"), m_simulator.serial(),
                                  QStringLiteral("--points"), QStringLiteral("200"), QStringLiteral("--from"),
                                  QStringLiteral("39k"), QStringLiteral("--to"), QStringLiteral("41k"),
                                  QStringLiteral("--output"), plot()});
        ASSERT_EQ(made.exitCode, 0) << made.errors.toStdString();
        write("mask.mgm", "frequency_Hz upper_Ohm lower_Ohm\n1 1e30 0\n1e9 1e30 0\n");
        const Ended packed = runProgram(kProgram, {QStringLiteral("firmware"), QStringLiteral("pack"), plot(),
                                                   QStringLiteral("--hardware"), QStringLiteral("2"),
                                                   QStringLiteral("--firmware-version"), QStringLiteral("1.29"),
                                                   QStringLiteral("--output"), path(QStringLiteral("image.mfw"))});
        ASSERT_EQ(packed.exitCode, 0) << packed.errors.toStdString();
        write("clean.mgs", "wait 1\n");
        write("job.mgs", "new impedance graph \"A\"\nset points 20\nsweep impedance\nsave \"run\"\n");
    }

    /// An answer of a web folder that offers a program.
    QString updates() const { return QStringLiteral("updates --url ") + m_web.url(); }

    QString plot() const { return path(QStringLiteral("plot.gzd")); }

    /// Runs the program behind a shell's redirections.
    Ended shell(const QString& arguments, const std::function<void()>& inChild = {})
    {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        if (inChild)
            process.setChildProcessModifier(inChild);
        process.start(QStringLiteral("/bin/bash"),
                      {QStringLiteral("-c"), programPath(kProgram) + QLatin1Char(' ') + arguments});
        Ended ended;
        if (process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit)
            ended.exitCode = process.exitCode();
        else
            process.kill();
        ended.output = process.readAllStandardOutput();
        ended.errors = process.readAllStandardError();
        return ended;
    }

    QString sweep(const QString& options) const
    {
        return QStringLiteral("sweep --points 20 --device ") + m_simulator.serial() + QLatin1Char(' ') + options;
    }

    QString run(const QString& options) const
    {
        return QStringLiteral("run job.mgs --device ") + m_simulator.serial() + QLatin1Char(' ') + options;
    }

    /// A line for each command that has something to tell, by the command's name.
    QMap<QString, QStringList> telling() const
    {
        QMap<QString, QStringList> lines;
        const auto add = [&lines](const char* command, const QStringList& words) {
            lines.insert(QLatin1String(command), words);
        };
        add("analyse", {"analyse plot.gzd", "analyse --csv plot.gzd", "analyse --json plot.gzd"});
        add("check", {"check clean.mgs", "check --json clean.mgs", "check - < clean.mgs"});
        add("completion", {"completion", "completion --shell zsh"});
        add("devices", {"devices", "devices --json"});
        add("export", {"export --force plot.gzd", "export --force --json plot.gzd", "export --output - plot.gzd",
                       "export - < plot.gzd"});
        add("firmware", {"firmware show image.mfw", "firmware show --json image.mfw"});
        add("mask", {"mask --set mask.mgm plot.gzd", "mask --set mask.mgm --json plot.gzd",
                     "mask --set mask.mgm --pen 1 plot.gzd", "mask --set mask.mgm --pen 1 --json plot.gzd"});
        add("picture", {"picture --force plot.gzd", "picture --force --json plot.gzd", "picture --output - plot.gzd",
                        "picture - < plot.gzd"});
        add("recover", {"recover", "recover --json"});
        add("run", {run(QString()), run(QStringLiteral("--json"))});
        add("show", {"show plot.gzd", "show --json plot.gzd", "show --points 1 plot.gzd", "show - < plot.gzd"});
        add("sweep", {sweep(QString()), sweep(QStringLiteral("--json")),
                      sweep(QStringLiteral("--points 200 --from 39k --to 41k --analyse"))});
        add("updates", {updates(), updates() + QStringLiteral(" --json")});
        return lines;
    }

    QByteArray content(const char* name) const
    {
        QFile file(path(QString::fromUtf8(name)));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const char* name, const QByteArray& bytes)
    {
        QFile file(path(QString::fromUtf8(name)));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    /// Starts of sweeps that the instrument has reported in the link log.
    qsizetype sweepsStarted() const { return content("link.log").count(" < D:"); }

    WebFolder m_web;
    const Simulator m_simulator{freshSerial(), {QStringLiteral("--fast")}};
};

/// The commands that "marrowick --help" lists.
QStringList listedCommands()
{
    const QString help = QString::fromUtf8(runProgram(kProgram, {QStringLiteral("--help")}).output);
    QStringList commands;
    auto lines =
        QRegularExpression(QStringLiteral("^  ([a-z]+) "), QRegularExpression::MultilineOption).globalMatch(help);
    while (lines.hasNext())
        commands += lines.next().captured(1);
    return commands;
}

} // namespace

TEST_F(OutputTest, EveryCommandTellsThatItsResultsWereLost)
{
    QStringList commands = listedCommands(), lines = {QStringLiteral("--help"), QStringLiteral("--version")};
    commands.sort();
    ASSERT_EQ(telling().keys(), commands) << "each command has its line here";
    for (const auto& [command, ofCommand] : telling().asKeyValueRange())
        lines += ofCommand + QStringList{command + QStringLiteral(" --help")};
    for (const QString& line : lines) {
        EXPECT_EQ(shell(line).exitCode, 0) << line.toStdString();
        const Ended full = shell(line + QStringLiteral(" > /dev/full"));
        EXPECT_EQ(full.exitCode, 5) << line.toStdString();
        EXPECT_EQ(full.errors.toStdString(), "marrowick: Cannot write to standard output: No space left on device.\n")
            << line.toStdString();
        const Ended closed = shell(line + QStringLiteral(" >&-"));
        EXPECT_EQ(closed.exitCode, 5) << line.toStdString();
        EXPECT_EQ(closed.errors.toStdString(), "marrowick: Cannot write to standard output: it is closed.\n")
            << line.toStdString();
        // The reader has gone before the program starts, in place of a race with one that is about to go.
        const Ended gone = shell(QStringLiteral("--version > /dev/null; exec 3> >(exec 0<&-); wait $!; ") +
                                 programPath(kProgram) + QLatin1Char(' ') + line + QStringLiteral(" >&3"));
        EXPECT_EQ(gone.exitCode, 5) << line.toStdString();
        EXPECT_EQ(gone.errors.toStdString(), "marrowick: Cannot write to standard output: nobody reads it any more.\n")
            << line.toStdString();
    }
}

TEST_F(OutputTest, AStandardOutputThatIsClosedIsFoundOutBeforeTheSweep)
{
    const Ended closed = shell(sweep(QStringLiteral("--link-log link.log >&-")));
    EXPECT_EQ(closed.exitCode, 5);
    EXPECT_EQ(sweepsStarted(), 0);
    const Ended open = shell(sweep(QStringLiteral("--link-log link.log")));
    EXPECT_EQ(open.exitCode, 0) << open.errors.toStdString();
    EXPECT_EQ(sweepsStarted(), 1) << "the log tells of sweeps";
}

TEST_F(OutputTest, NothingElseIsTakenForAClosedStream)
{
    // With all three closed the first files that are opened would get their numbers.
    const Ended ended = shell(sweep(QStringLiteral("--link-log link.log --csv out.csv <&- 2>&-")));
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_TRUE(content("out.csv").startsWith("sweep,frequency_Hz,"));
    EXPECT_FALSE(content("link.log").contains("points from"));
    EXPECT_EQ(shell(sweep(QStringLiteral("--csv out.csv <&- >&- 2>&-"))).exitCode, 5);
    EXPECT_EQ(shell(QStringLiteral("show - <&-")).exitCode, 5);
}

TEST_F(OutputTest, AFileThatCannotBeWrittenIsFoundOutBeforeTheSweep)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("readonly")));
    write("locked.png", "old");
    ASSERT_TRUE(QFile::setPermissions(path(QStringLiteral("readonly")), QFile::ReadOwner | QFile::ExeOwner));
    ASSERT_TRUE(QFile::setPermissions(path(QStringLiteral("locked.png")), QFile::ReadOwner));
    // Permissions bind the administrator as well, or this would test nothing when run by one.
    const auto bound = [] {
        if (::geteuid() == 0 && ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE) != 0)
            ::_exit(99);
    };
    const QList<std::pair<QString, const char*>> wrong = {
        {QStringLiteral("none/a.png"), "No such file or directory"},
        {QStringLiteral("plot.gzd/a.png"), "Not a directory"},
        {QStringLiteral("readonly/a.png"), "Permission denied"},
        {QStringLiteral("locked.png"), "Permission denied"},
    };
    for (const char* option : {"--output", "--csv", "--picture"}) {
        for (const auto& [file, reason] : wrong) {
            const Ended ended =
                shell(sweep(QStringLiteral("--link-log link.log %1 %2").arg(QLatin1String(option), file)), bound);
            EXPECT_EQ(ended.exitCode, 5) << option << file.toStdString();
            EXPECT_EQ(ended.errors.toStdString(),
                      "marrowick: Cannot write " + file.toStdString() + ": " + reason + ".\n");
            EXPECT_THAT(ended.output.toStdString(), IsEmpty());
        }
    }
    EXPECT_EQ(sweepsStarted(), 0);
    EXPECT_EQ(content("locked.png"), "old");
    const Ended log = shell(sweep(QStringLiteral("--link-log none/link.log")));
    EXPECT_EQ(log.exitCode, 5);
    EXPECT_THAT(log.errors.toStdString(), StartsWith("marrowick: "));
}

TEST_F(OutputTest, AFullDiskLeavesTheOldFileAndTheResultsAreTold)
{
    // No file may grow beyond what a lock file takes, which looks to a program as a disk that is full.
    const auto full = [] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit little = {300, 300};
        ::setrlimit(RLIMIT_FSIZE, &little);
    };
    for (const char* option : {"--output", "--csv", "--picture"}) {
        write("old.png", "old");
        const Ended ended = shell(sweep(QLatin1String(option) + QStringLiteral(" old.png")), full);
        EXPECT_EQ(ended.exitCode, 5) << option;
        EXPECT_THAT(ended.errors.toStdString(), HasSubstr("marrowick: Cannot save old.png: ")) << option;
        EXPECT_THAT(ended.output.toStdString(), StartsWith("20 points from ")) << option;
        EXPECT_EQ(content("old.png"), "old") << option;
    }
    EXPECT_EQ(QDir(m_folder.path()).entryList({QStringLiteral("*.saving")}, QDir::Files | QDir::Hidden), QStringList());
    for (const char* option : {"--output", "--csv"}) {
        const Ended ended = shell(sweep(QLatin1String(option) + QStringLiteral(" /dev/full")));
        EXPECT_EQ(ended.exitCode, 5) << option;
        EXPECT_EQ(ended.errors.toStdString(), "marrowick: Cannot write to /dev/full: No space left on device.\n");
        EXPECT_THAT(ended.output.toStdString(), StartsWith("20 points from ")) << option;
    }
}

TEST_F(OutputTest, ATableOnStandardOutputIsAppendedAndStandsAlone)
{
    write("all.csv", "before\n");
    for (const char* name : {"-", "/dev/stdout"}) {
        const Ended ended = shell(sweep(QLatin1String("--csv ") + QLatin1String(name) + QLatin1String(" >> all.csv")));
        EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    }
    const QList<QByteArray> lines = content("all.csv").split('\n');
    ASSERT_EQ(lines.size(), 1 + 2 * 21 + 1);
    EXPECT_EQ(lines[0], "before");
    for (const int heading : {1, 22})
        EXPECT_EQ(lines[heading], "sweep,frequency_Hz,impedance_Ohm,phase_deg");
    EXPECT_FALSE(QFileInfo::exists(path(QStringLiteral("-"))));
    const Ended full = shell(sweep(QStringLiteral("--csv - > /dev/full")));
    EXPECT_EQ(full.exitCode, 5);
    EXPECT_EQ(full.errors.toStdString(), "marrowick: Cannot write to standard output: No space left on device.\n");
}

TEST_F(OutputTest, PlotsAndPicturesGoThroughPipes)
{
    const Ended piped =
        shell(sweep(QStringLiteral("--output - | ")) + programPath(kProgram) + QStringLiteral(" show --points 1 -"));
    EXPECT_EQ(piped.exitCode, 0) << piped.errors.toStdString();
    EXPECT_EQ(piped.output.count('\n'), 21);
    const Ended picture = shell(sweep(QStringLiteral("--picture - --picture-size 200x100")));
    EXPECT_EQ(picture.exitCode, 0) << picture.errors.toStdString();
    EXPECT_TRUE(picture.output.startsWith("\x89PNG"));
    EXPECT_EQ(shell(sweep(QStringLiteral("--picture - > /dev/full"))).exitCode, 5);
}

TEST_F(OutputTest, ASweepWithoutAPointLeavesTheOldFiles)
{
    for (const int end : {SIGINT, 0}) {
        const QStringList names = {QStringLiteral("kept.gzd"), QStringLiteral("kept.csv"), QStringLiteral("kept.png")};
        for (const QString& name : names)
            write(name.toLatin1().constData(), "old");
        Simulator simulator(freshSerial(), {QStringLiteral("--rate"), QStringLiteral("0.2")});
        QProcess process;
        process.start(programPath(kProgram), {QStringLiteral("sweep"), QStringLiteral("--device"), simulator.serial(),
                                              QStringLiteral("--link-log"), path(QStringLiteral("end.log")),
                                              QStringLiteral("--output"), path(names[0]), QStringLiteral("--csv"),
                                              path(names[1]), QStringLiteral("--picture"), path(names[2])});
        ASSERT_TRUE(waitFor([this] { return content("end.log").contains(" < D:"); }));
        if (end == SIGINT)
            ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        else
            EXPECT_TRUE(simulator.end());
        ASSERT_TRUE(process.waitForFinished(kPatience));
        EXPECT_EQ(process.exitCode(), end == SIGINT ? 6 : 3);
        EXPECT_THAT(process.readAllStandardError().toStdString(), HasSubstr(" after 0 of 100 points"));
        for (const QString& name : names)
            EXPECT_EQ(content(name.toLatin1().constData()), "old") << name.toStdString();
        QFile::remove(path(QStringLiteral("end.log")));
    }
}
