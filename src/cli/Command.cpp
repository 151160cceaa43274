// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include "cli/NearestWord.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

QCommandLineOption helpOption()
{
    return {{u"h"_s, u"help"_s}, tr("Shows this help.")};
}

QString overview(const CommandTable& commands)
{
    qsizetype width = 0;
    for (const auto& command : commands)
        width = std::max(width, command->name().size());
    QString text = tr("Usage: marrowick COMMAND [OPTION...]\n\nCommands:\n");
    for (const auto& command : commands)
        text += u"  "_s + command->name().leftJustified(width) + u"  "_s + command->summary() + u'\n';
    return text + tr("\nmarrowick COMMAND --help tells the options of a command; --version tells the version.\n\n") +
           exitCodeHelp();
}

/// The longest name of each option: the others are letters.
QStringList longNames(const QList<QCommandLineOption>& options)
{
    QStringList names;
    for (const QCommandLineOption& option : options)
        names.append(option.names().constLast());
    return names;
}

QString helpOf(const Command& command, const QCommandLineParser& parser)
{
    QString help = parser.helpText();
    // The library names the program by the path that it was started with.
    help.replace(QCoreApplication::arguments().constFirst(), u"marrowick "_s + command.name());
    return help + u'\n' + command.exitCodes();
}

ExitCode runCommand(Command& command, const QStringList& words, Console& console)
{
    const bool takesMany = command.files() == Command::Files::Many;
    const QList<QCommandLineOption> options =
        command.options() + CommonOptions::options(takesMany) + QList<QCommandLineOption>{helpOption()};
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions(options);
    parser.setApplicationDescription(command.description());
    const bool ownWords = command.files() == Command::Files::Words;
    if (ownWords)
        parser.addPositionalArgument(u"words"_s, tr("What to do, and with which file."), command.words());
    else if (command.files() != Command::Files::None)
        parser.addPositionalArgument(u"file"_s,
                                     command.readsStandardInput()
                                         ? tr("%1; \"-\" is standard input.").arg(command.filesText())
                                         : command.filesText() + u'.',
                                     takesMany ? u"FILE..."_s : u"FILE"_s);
    const bool understood = parser.parse(words);
    if (parser.isSet(helpOption())) {
        console.result(helpOf(command, parser).trimmed());
        return ExitCode::Done;
    }
    const QString seeHelp = tr("; marrowick %1 --help lists them").arg(command.name());
    if (!parser.unknownOptionNames().isEmpty()) {
        const QString unknown = parser.unknownOptionNames().constFirst();
        return console.failed(command.refusal(), tr("There is no option --%1").arg(unknown) +
                                                     suggestion(unknown, longNames(options), u"--"_s, seeHelp + u'.'));
    }
    if (!understood)
        return console.failed(command.refusal(), parser.errorText());
    const QStringList files = parser.positionalArguments();
    const qsizetype most = takesMany || ownWords ? files.size() : command.files() == Command::Files::One ? 1 : 0;
    if (files.size() > most)
        return console.failed(command.refusal(), tr("\"%1\" has no place here").arg(files.at(most)) +
                                                     suggestion(files.at(most), longNames(options), u"--"_s,
                                                                tr("; options begin with \"--\".")));
    if (files.isEmpty() && !ownWords && command.files() != Command::Files::None)
        return console.failed(command.refusal(), command.missingFileText());
    if (files.count(u"-"_s) > 1)
        return console.failed(command.refusal(), tr("Standard input can be read once only."));

    Arguments arguments(parser);
    arguments.readCommon(takesMany);
    if (!arguments.outcome())
        return console.failed(command.refusal(), arguments.outcome().sentence());
    return command.run(arguments, console);
}

ExitCode dispatch(const CommandTable& commands, const QStringList& arguments, Console& console)
{
    const QString word = arguments.value(1);
    const QStringList help = {u"--help"_s, u"-h"_s, u"help"_s}, version = {u"--version"_s, u"-v"_s};
    if (help.contains(word) || version.contains(word)) {
        console.result(help.contains(word)
                           ? overview(commands).trimmed()
                           : QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion());
        return ExitCode::Done;
    }
    if (word.isEmpty())
        return console.failed(ExitCode::Usage, tr("A command is missing; marrowick --help lists them."));
    QStringList names;
    for (const auto& command : commands) {
        if (command->name() == word)
            return runCommand(*command, arguments.mid(1), console);
        names.append(command->name());
    }
    const QString otherwise = tr("; marrowick --help lists them.");
    if (word.startsWith(u'-'))
        return console.failed(ExitCode::Usage,
                              tr("%1 is no option of marrowick itself").arg(word) +
                                  suggestion(word, {u"--help"_s, u"--version"_s}, {}, tr("; a command comes first.")));
    return console.failed(ExitCode::Usage,
                          tr("\"%1\" is no command").arg(word) + suggestion(word, names, {}, otherwise));
}

} // namespace

QString Command::filesText() const
{
    return tr("Plot files");
}

QString Command::missingFileText() const
{
    return tr("A plot file is missing.");
}

ExitCode runCommandLine(const CommandTable& commands, const QStringList& arguments, Console& console)
{
    const ExitCode code = dispatch(commands, arguments, console);
    return code == ExitCode::Done && console.resultsLost() ? ExitCode::FileError : code;
}

} // namespace cli
