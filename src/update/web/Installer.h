// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QString>

/// The file that installs a newer program, and what must hold before it is started.
namespace installer {

/// Beside the installer: its signature.
inline QString signatureOf(const QString& file)
{
    return file + QLatin1String(".minisig");
}

/// A ".deb", which the desktop's package installer takes; anything else is a program.
bool isPackage(const QString& file);

/// Success: a regular file of this user's in a folder where nobody else can exchange it, which nobody else can write,
/// and one of the keys in the folder has signed it. Reads no more of it than its state before these hold. The sentence
/// of a failure says why it was not started.
Outcome mayStart(const QString& file, const QString& keyFolder);

/// Starts the program by itself, after it has got the right to run. It outlives this process.
Outcome run(const QString& file);

/// The folder of the keys that this machine trusts: $MARROWICK_TRUSTED_KEYS, or /etc/marrowick/trusted-keys.
QString trustedKeyFolder();

} // namespace installer
