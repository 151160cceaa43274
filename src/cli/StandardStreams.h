// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

/// The three streams that a program is started with.
namespace cli {

/// To be called before anything opens a file: a stream that came closed is taken by a descriptor that refuses every
/// use, so that no file or instrument gets its number and with it what was meant for the stream. A reader that goes
/// away makes a write fail from now on instead of ending the program.
void guardStandardStreams();

/// Fails when it is known before any write that nothing can be written to the descriptor: it is closed, open for
/// reading only, or nobody reads the other end of its pipe. The sentence speaks of name.
Outcome checkStream(int descriptor, const QString& name);

/// All bytes, or a sentence that speaks of name.
Outcome writeStream(int descriptor, const QByteArray& bytes, const QString& name);

/// All of standard input. Fails when it is closed, cannot be read, or holds more than that many bytes.
ValueOr<QByteArray> readStandardInput(qsizetype most);

/// "standard output"
QString standardOutputName();

} // namespace cli
