// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Completion.h"

#include <QCoreApplication>
#include <QJsonObject>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

const QStringList& shells()
{
    static const QStringList names = {u"bash"_s, u"zsh"_s, u"fish"_s};
    return names;
}

QList<QCommandLineOption> allOptions(const Command& command)
{
    return command.options() + CommonOptions::options(command.files() == Command::Files::Many) +
           QList<QCommandLineOption>{{{u"h"_s, u"help"_s}, tr("Shows this help.")}};
}

QString longName(const QCommandLineOption& option)
{
    return u"--"_s + option.names().constLast();
}

bool takesValue(const QCommandLineOption& option)
{
    return !option.valueName().isEmpty();
}

bool takesFile(const QCommandLineOption& option)
{
    return option.valueName().contains("file"_L1) || option.valueName().contains("path"_L1) ||
           option.valueName().contains("folder"_L1);
}

/// The text in single quotes, as every shell here takes it.
QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', "'\\''"_L1) + u'\'';
}

QString bashScript(const CommandTable& commands)
{
    QStringList names;
    QString cases;
    for (const auto& command : commands) {
        names.append(command->name());
        QStringList options, valued, files;
        for (const QCommandLineOption& option : allOptions(*command)) {
            options.append(longName(option));
            if (takesValue(option))
                (takesFile(option) ? files : valued).append(longName(option));
        }
        cases += u"    %1) options='%2' valued='%3' files='%4' operands=%5 ;;\n"_s.arg(
            command->name(), options.join(u' '), valued.join(u' '), files.join(u' '),
            QString::number(static_cast<int>(command->files() != Command::Files::None)));
    }
    return uR"(# bash completion for marrowick; read it, or put it into the folder of bash-completion.
_marrowick()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local options='' valued='' files='' operands=0
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W '%1 --help --version' -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
%2    esac
    case " $valued " in *" $before "*) return ;; esac
    case " $files " in
    *" $before "*)
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        compopt -o filenames 2> /dev/null
        return
        ;;
    esac
    case $word in
    -*) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word") ;;
    *)
        if [ "$operands" -eq 1 ]; then
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            compopt -o filenames 2> /dev/null
        else
            mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        fi
        ;;
    esac
}
complete -F _marrowick marrowick
)"_s.arg(names.join(u' '), cases);
}

/// Brackets and colons mean something in the words that zsh's _arguments reads.
QString zshText(QString text)
{
    for (const char16_t mark : {u'\\', u'[', u']', u':'})
        text.replace(QChar(mark), QString(u'\\') + QChar(mark));
    return text;
}

QString zshScript(const CommandTable& commands)
{
    QString list, cases;
    for (const auto& command : commands) {
        list += u"        "_s + quoted(zshText(command->name()) + u':' + zshText(command->summary())) + u'\n';
        cases += u"    %1)\n        _arguments"_s.arg(command->name());
        for (const QCommandLineOption& option : allOptions(*command)) {
            QString word = longName(option) + u'[' + zshText(option.description()) + u']';
            if (takesValue(option))
                word += u':' + zshText(option.valueName()) + (takesFile(option) ? u":_files"_s : u": "_s);
            cases += u" \\\n            "_s + quoted(word);
        }
        if (command->files() != Command::Files::None)
            cases += u" \\\n            '*:file:_files'"_s;
        cases += u"\n        ;;\n"_s;
    }
    return uR"(#compdef marrowick
# zsh completion for marrowick; put it as _marrowick into a folder of fpath.
local -a commands
commands=(
%1)
if (( CURRENT == 2 )); then
    _describe 'command' commands
    return
fi
local command=${words[2]}
shift words
(( CURRENT-- ))
case $command in
%2esac
)"_s.arg(list, cases);
}

QString fishScript(const CommandTable& commands)
{
    QString text = u"# fish completion for marrowick; put it as marrowick.fish into a folder of completions.\n"
                   "complete -c marrowick -f\n"_s;
    for (const auto& command : commands)
        text += u"complete -c marrowick -n __fish_use_subcommand -a %1 -d %2\n"_s.arg(command->name(),
                                                                                      quoted(command->summary()));
    for (const auto& command : commands) {
        const QString seen =
            u"complete -c marrowick -n "_s + quoted(u"__fish_seen_subcommand_from "_s + command->name());
        if (command->files() != Command::Files::None)
            text += seen + u" -F\n"_s;
        for (const QCommandLineOption& option : allOptions(*command)) {
            text += seen + u" -l "_s + option.names().constLast();
            if (takesValue(option))
                text += takesFile(option) ? u" -r -F"_s : u" -x"_s;
            text += u" -d "_s + quoted(option.description()) + u'\n';
        }
    }
    return text;
}

} // namespace

QString completionScript(const CommandTable& commands, const QString& shell)
{
    if (shell == "bash"_L1)
        return bashScript(commands);
    if (shell == "zsh"_L1)
        return zshScript(commands);
    return shell == "fish"_L1 ? fishScript(commands) : QString();
}

CompletionCommand::CompletionCommand(const CommandTable& commands)
    : m_commands(commands)
    , m_shell(u"shell"_s, tr("bash, zsh or fish (bash)."), u"shell"_s, u"bash"_s)
{}

QString CompletionCommand::name() const
{
    return u"completion"_s;
}

QString CompletionCommand::summary() const
{
    return tr("prints a script that makes a shell complete commands and options");
}

QString CompletionCommand::description() const
{
    return tr("Prints a script that makes a shell complete the commands and options of marrowick.");
}

ExitCode CompletionCommand::run(Arguments& arguments, Console& console)
{
    const int shell = arguments.choice(m_shell, shells());
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    const QString script = completionScript(m_commands, shells().at(shell));
    if (arguments.common().json)
        console.result(QJsonObject{{u"shell"_s, shells().at(shell)}, {u"script"_s, script}});
    else
        console.result(script.trimmed());
    return ExitCode::Done;
}

} // namespace cli
