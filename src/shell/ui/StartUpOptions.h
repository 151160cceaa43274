// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// What was said on the command line beside the toolkit's own options.
struct StartUpOptions
{
    QStringList arguments; ///< the command line without the options below
    QString linkLogFile;   ///< log of the link; empty for none
    int testType = 0;      ///< 1 amplitude, 2 impedance, 3 reactance: a document of that type and a test; 0 for none
    bool help = false;
    bool version = false;
    QString problem; ///< one sentence when an option lacks its value; empty otherwise

    /// From the arguments behind the program's name.
    static StartUpOptions parse(const QStringList& arguments);
    /// One sentence about an argument that looks like an option and is none of ours; empty when there is none. To be
    /// asked when the toolkit has taken its own options out.
    QString unknownOption() const;
    static QString helpText();
};
