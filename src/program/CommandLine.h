// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// What a command line asks for. There is no option parser: each wish is a substring test, whatever the case, anywhere
/// in the line.
struct CommandLine
{
    bool plotFile = false;   ///< ".gzd", ".gad" or ".gxd": open strFileName
    bool scriptFile = false; ///< ".mgs": run strFileName
    bool rerun = false;      ///< "-rerun": run the script that the instrument holds
    /// The whole line without double quotes; empty when none of the tests holds.
    QString strFileName;
    /// The arguments that name a plot or script file, for callers that find no file under the whole line: a shell hands
    /// over several files, or a file and a switch, as arguments of their own.
    QStringList files;

    bool asksForSomething() const { return plotFile || scriptFile || rerun; }

    static CommandLine parse(const QString& line);
    /// The line of a program that got its arguments already split: joined by blanks.
    static CommandLine parse(const QStringList& arguments);
};

/// The wishes of one dropped or listed file, by its name.
struct FileKind
{
    static bool isPlotFile(const QString& name);
    static bool isScriptFile(const QString& name);
};
