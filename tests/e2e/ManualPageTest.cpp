// SPDX-License-Identifier: GPL-3.0-or-later
// The manual pages of the command-line programs name what the programs have, and nothing else.
#include "cli/ExitCode.h"
#include "e2e/EndToEnd.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <gmock/gmock.h>

using namespace e2e;

namespace {

QString page(const char* name)
{
    QFile file(QStringLiteral(MG_SOURCE_DIR "/packaging/man/%1.1").arg(QLatin1String(name)));
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll()).replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

/// The text of each section by its title.
QMap<QString, QString> sections(const QString& text)
{
    QMap<QString, QString> result;
    for (const QString& section : text.split(QStringLiteral("\n.SH ")).mid(1)) {
        const qsizetype end = section.indexOf(u'\n');
        result.insert(section.left(end), section.mid(end));
    }
    return result;
}

QSet<QString> found(const QString& text, const char* pattern)
{
    QSet<QString> result;
    auto matches = QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption).globalMatch(text);
    while (matches.hasNext())
        result.insert(matches.next().captured(1));
    return result;
}

/// The long options that the paragraphs of a section begin with.
QSet<QString> describedOptions(const QString& section)
{
    QSet<QString> options;
    for (const QString& heading : found(section, "^\\.TP\\n(.*)$"))
        options += found(heading, "(--[a-z-]+)");
    return options;
}

/// The long options that a help text lists.
QSet<QString> listedOptions(const char* program, const QStringList& words)
{
    const Ended help = runProgram(QLatin1String(program), words + QStringList{QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    return found(QString::fromUtf8(help.output), "^  (?:-[a-z], )?(--[a-z-]+)");
}

std::vector<std::string> sorted(const QSet<QString>& names)
{
    std::vector<std::string> result;
    for (const QString& name : names)
        result.push_back(name.toStdString());
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace

TEST(ManualPage, EveryCommandHasItsOptionsThereAndNoOthers)
{
    const QMap<QString, QString> manual = sections(page("marrowick"));
    const QSet<QString> common = describedOptions(manual.value(QStringLiteral("COMMON OPTIONS")));
    EXPECT_EQ(sorted(common), (std::vector<std::string>{"--help", "--jobs", "--json", "--quiet"}));
    const QSet<QString> commands = found(
        QString::fromUtf8(runProgram(QStringLiteral("marrowick"), {QStringLiteral("--help")}).output), "^  ([a-z]+) ");
    ASSERT_GE(commands.size(), 3);
    QSet<QString> described = found(manual.value(QStringLiteral("DESCRIPTION")), "^\\.TP\\n\\.B ([a-z]+)$");
    EXPECT_EQ(sorted(described), sorted(commands));
    for (const QString& command : commands) {
        const QSet<QString> listed = listedOptions("marrowick", {command});
        QSet<QString> expected =
            describedOptions(manual.value(QStringLiteral("OPTIONS OF ") + command.toUpper())) + common;
        if (!listed.contains(QStringLiteral("--jobs")))
            expected.remove(QStringLiteral("--jobs"));
        EXPECT_EQ(sorted(listed), sorted(expected)) << command.toStdString();
    }
}

TEST(ManualPage, EveryExitCodeIsThereWithItsSentence)
{
    for (const char* program : {"marrowick", "marrowick-draw"}) {
        const QString status = sections(page(program)).value(QStringLiteral("EXIT STATUS"));
        const QSet<QString> numbers = found(status, "^\\.TP\\n\\.B ([0-9]+)$");
        if (QLatin1String(program) == QLatin1String("marrowick")) {
            EXPECT_EQ(numbers.size(), static_cast<qsizetype>(cli::exitCodeTexts().size()));
        }
        EXPECT_GE(numbers.size(), 3);
        for (const cli::ExitCodeText& row : cli::exitCodeTexts()) {
            const QString number = QString::number(static_cast<int>(row.code));
            if (numbers.contains(number)) {
                EXPECT_TRUE(status.contains(QStringLiteral("\n.B %1\n%2").arg(number, QLatin1String(row.sentence))))
                    << program << row.sentence;
            }
        }
    }
}

TEST(ManualPage, TheProgramThatDrawsHasItsOptionsThereAndNoOthers)
{
    EXPECT_EQ(sorted(describedOptions(sections(page("marrowick-draw")).value(QStringLiteral("OPTIONS")))),
              sorted(listedOptions("marrowick-draw", {})));
}
