// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The version of the program that runs, and its name.
namespace version {

int majorNumber();
int minorNumber();
int revision();
/// "1.28.0"
QString text();
/// "1.28", as the instrument is told it.
QString shortText();

/// "MarrowickGraph", whatever the copy that runs is called.
QString programTitle();
/// "TITLE V1.28.0": how plots and windows name a program.
QString titled(const QString& title);

} // namespace version
