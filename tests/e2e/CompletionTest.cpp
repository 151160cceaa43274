// SPDX-License-Identifier: GPL-3.0-or-later
// What a shell completes, asked of the shell itself.
#include "e2e/EndToEnd.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <gmock/gmock.h>

using namespace e2e;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class CompletionTest : public EndToEndTest
{
protected:
    QString script(const QString& shell)
    {
        const Ended ended =
            runProgram(QStringLiteral("marrowick"), {QStringLiteral("completion"), QStringLiteral("--shell"), shell});
        EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
        QFile file(path(shell));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(ended.output);
        return path(shell);
    }

    /// What bash offers for the last word.
    std::vector<std::string> completed(const QStringList& words)
    {
        QStringList quoted;
        for (const QString& word : words)
            quoted.append(u'\'' + word + u'\'');
        QProcess bash;
        bash.setWorkingDirectory(m_folder.path());
        bash.start(QStringLiteral("bash"),
                   {QStringLiteral("--norc"), QStringLiteral("-c"),
                    QStringLiteral(
                        "source '%1'; COMP_WORDS=(%2); COMP_CWORD=%3; _marrowick; printf '%s\\n' \"${COMPREPLY[@]}\"")
                        .arg(script(QStringLiteral("bash")), quoted.join(u' '), QString::number(words.size() - 1))});
        EXPECT_TRUE(bash.waitForFinished(kPatience));
        EXPECT_EQ(bash.readAllStandardError().toStdString(), "");
        std::vector<std::string> offers;
        for (const QByteArray& line : bash.readAllStandardOutput().split('\n')) {
            if (!line.isEmpty())
                offers.push_back(line.toStdString());
        }
        return offers;
    }
};

std::vector<std::string> listed(const QStringList& words, const char* pattern)
{
    const Ended help = runProgram(QStringLiteral("marrowick"), words + QStringList{QStringLiteral("--help")});
    std::vector<std::string> found;
    auto matches = QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption)
                       .globalMatch(QString::fromUtf8(help.output));
    while (matches.hasNext())
        found.push_back(matches.next().captured(1).toStdString());
    return found;
}

} // namespace

TEST_F(CompletionTest, EveryCommandAndEveryOptionOfItsHelpIsOffered)
{
    const std::vector<std::string> commands = listed({}, "^  ([a-z]+)  ");
    ASSERT_THAT(commands, Contains("sweep"));
    const std::vector<std::string> offered = completed({QStringLiteral("marrowick"), QString()});
    for (const std::string& command : commands) {
        EXPECT_THAT(offered, Contains(command));
        const QString word = QString::fromStdString(command);
        const std::vector<std::string> options = completed({QStringLiteral("marrowick"), word, QStringLiteral("--")});
        for (const std::string& option : listed({word}, "^  (?:-[a-z], )?(--[a-z-]+)"))
            EXPECT_THAT(options, Contains(option)) << command;
    }
}

TEST_F(CompletionTest, ABeginningIsCompleted)
{
    EXPECT_THAT(completed({QStringLiteral("marrowick"), QStringLiteral("sw")}), ElementsAre("sweep"));
    EXPECT_THAT(completed({QStringLiteral("marrowick"), QStringLiteral("sweep"), QStringLiteral("--att")}),
                ElementsAre("--attenuation"));
}

TEST_F(CompletionTest, FilesAreOfferedWhereFilesAreMeantAndNowhereElse)
{
    QFile plot(path(QStringLiteral("one.gzd")));
    ASSERT_TRUE(plot.open(QFile::WriteOnly));
    plot.close();
    const auto offers = [this](const QStringList& words) {
        return completed(QStringList{QStringLiteral("marrowick")} + words);
    };
    EXPECT_THAT(offers({QStringLiteral("show"), QStringLiteral("on")}), ElementsAre("one.gzd"));
    EXPECT_THAT(offers({QStringLiteral("sweep"), QStringLiteral("--output"), QStringLiteral("on")}),
                ElementsAre("one.gzd"));
    EXPECT_THAT(offers({QStringLiteral("sweep"), QStringLiteral("--from"), QStringLiteral("on")}), IsEmpty());
    EXPECT_THAT(offers({QStringLiteral("devices"), QStringLiteral("on")}), Not(Contains("one.gzd")));
}

TEST_F(CompletionTest, TheOtherShellsReadTheirScriptsToo)
{
    for (const QString& shell : {QStringLiteral("zsh"), QStringLiteral("fish")}) {
        const QString file = script(shell);
        QFile text(file);
        ASSERT_TRUE(text.open(QFile::ReadOnly));
        const QByteArray all = text.readAll();
        EXPECT_TRUE(all.contains("attenuation")) << shell.toStdString();
        QProcess reader;
        reader.start(shell, {QStringLiteral("-n"), file});
        ASSERT_TRUE(reader.waitForFinished(kPatience));
        EXPECT_EQ(reader.exitCode(), 0) << shell.toStdString() << reader.readAllStandardError().toStdString();
    }
}
