// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/StartUpOptions.h"

#include <QCoreApplication>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("StartUp", text);
}

/// Takes "NAME VALUE" and "NAME=VALUE" out of the arguments at i, which then stands on the last one used.
bool takeOption(const QStringList& arguments, qsizetype& i, QLatin1String name, QString& value)
{
    const QString& argument = arguments[i];
    if (argument == name)
        value = i + 1 < arguments.size() ? arguments[++i] : QString();
    else if (argument.startsWith(name + QLatin1Char('=')))
        value = argument.section(QLatin1Char('='), 1);
    else
        return false;
    return true;
}

/// 1 amplitude, 2 impedance, 3 reactance; 0 for any other word.
int testTypeOf(const QString& word)
{
    const QStringList types{QStringLiteral("amplitude"), QStringLiteral("impedance"), QStringLiteral("reactance")};
    return static_cast<int>(types.indexOf(word)) + 1;
}

} // namespace

StartUpOptions StartUpOptions::parse(const QStringList& arguments)
{
    StartUpOptions options;
    QString value;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            options.help = true;
        } else if (argument == QLatin1String("--version")) {
            options.version = true;
        } else if (takeOption(arguments, i, QLatin1String("--link-log"), value)) {
            options.linkLogFile = value;
            if (value.isEmpty())
                options.problem = translated("--link-log needs the name of a file.");
        } else if (takeOption(arguments, i, QLatin1String("--test"), value)) {
            options.testType = testTypeOf(value);
            if (options.testType == 0)
                options.problem = translated("--test needs one of amplitude, impedance, reactance.");
        } else {
            options.arguments.append(argument);
        }
    }
    return options;
}

QString StartUpOptions::unknownOption() const
{
    for (const QString& argument : arguments) {
        const bool rerun = argument.contains(QLatin1String("-rerun"), Qt::CaseInsensitive);
        if (argument.size() > 1 && argument.startsWith(QLatin1Char('-')) && !rerun)
            return translated("There is no option %1; --help tells which there are.").arg(argument);
    }
    return {};
}

QString StartUpOptions::helpText()
{
    return QCoreApplication::translate("StartUp",
                                       "Usage: marrowickgraph [FILE ...] [-rerun] [--test TYPE] [--link-log FILE]\n"
                                       "\n"
                                       "Draws what a T46 or DT46 analyser measures.\n"
                                       "\n"
                                       "  FILE              a plot, opened at the start whatever it is called\n"
                                       "  -rerun            the instrument runs the script that it holds\n"
                                       "  --test TYPE       a new graph and a test into it as soon as the "
                                       "instrument has answered:\n"
                                       "                    amplitude, impedance or reactance\n"
                                       "  --link-log FILE   log everything that passes the link to the instrument\n"
                                       "  --version         print the version and end\n"
                                       "  -h, --help        print this text and end\n"
                                       "\n"
                                       "The toolkit's own options, such as -style and -platform, work too.\n");
}
