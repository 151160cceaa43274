// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// The folder of the journals. A running program has a session: a lock, held as long as it runs, and journal files in
/// the order in which they were written. A session whose lock is free has ended, however it ended.
namespace recovery {

struct Limits
{
    qint64 bytes = 64LL * 1024 * 1024;    ///< of all journals together
    qint64 fileBytes = 8LL * 1024 * 1024; ///< where a journal goes on in a new file
    qint64 seconds = 14LL * 24 * 60 * 60; ///< age of a journal file, and of what is listed
};

/// "marrowick/recovery" under $XDG_STATE_HOME, or under ~/.local/state.
QString stateFolder();
/// Makes the folder, for nobody but its user. 0, or the error as errno.
int makeFolder(const QString& folder);

/// A name for a new session; later ones sort behind earlier ones.
QString newSession();
QString lockFile(const QString& folder, const QString& session);
/// Number from 1.
QString journalFile(const QString& folder, const QString& session, int number);

/// Sessions that have journals, the oldest first.
QStringList sessions(const QString& folder);
/// Full names of a session's journals, the oldest first.
QStringList journals(const QString& folder, const QString& session);
/// True while its program runs, whichever that is.
bool isRunning(const QString& folder, const QString& session);

/// True for the first caller of all; from then on the session counts as told. False when that cannot be noted down.
bool markTold(const QString& folder, const QString& session);
bool isTold(const QString& folder, const QString& session);

/// Takes away what is too old, then the oldest until the rest keeps the limit, and what ended sessions leave behind.
/// The last journal of a running program stays; that of an ended one of which nobody was told goes behind all others.
void prune(const QString& folder, const Limits& limits);

} // namespace recovery
