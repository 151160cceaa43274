// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/CommandLine.h"

#include "files/FileNames.h"

#include <algorithm>
#include <array>

bool FileKind::isPlotFile(const QString& name)
{
    constexpr std::array kSuffixes{QLatin1String(".gzd"), QLatin1String(".gad"), QLatin1String(".gxd")};
    return std::any_of(kSuffixes.begin(), kSuffixes.end(),
                       [&name](QLatin1String suffix) { return name.contains(suffix, Qt::CaseInsensitive); });
}

bool FileKind::isScriptFile(const QString& name)
{
    return name.contains(QLatin1String(".mgs"), Qt::CaseInsensitive);
}

CommandLine CommandLine::parse(const QString& line)
{
    CommandLine result;
    result.plotFile = FileKind::isPlotFile(line);
    result.scriptFile = FileKind::isScriptFile(line);
    result.rerun = line.contains(QLatin1String("-rerun"), Qt::CaseInsensitive);
    if (result.asksForSomething()) {
        result.strFileName = line;
        files::RemoveQuotes(result.strFileName);
    }
    if (result.plotFile || result.scriptFile)
        result.files.append(result.strFileName);
    return result;
}

CommandLine CommandLine::parse(const QStringList& arguments)
{
    CommandLine result = parse(arguments.join(u' '));
    result.files.clear();
    for (const QString& argument : arguments) {
        if (FileKind::isPlotFile(argument) || FileKind::isScriptFile(argument))
            result.files.append(QString(argument).remove(u'"'));
    }
    return result;
}
