// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

/// Writing a file so that it is never there by halves.
namespace files {

/// Makes the file hold exactly these bytes. After success they are on the disk; after a failure, a crash or a kill at
/// any moment the old file or the new one is there, whole. A file that was there keeps its permissions; symbolic links,
/// one behind the other as well, stay and lead to the new bytes. Any name that the file system takes will do.
///
/// A kill, or a disk that no longer lets anything be removed, can leave a hidden file ".NAME.saving" or
/// ".NAME.DIGITS.saving" (of a long name only a number derived from it); the next save of NAME takes them away, so that
/// none gather. Two programs that save the same name at once leave the bytes of one of them.
///
/// Refused: an empty name, a folder, a device. The sentence of a failure names the file and the reason. After a failure
/// the old file is there, but for one: when the new one is in place and only its last way to the disk failed, which the
/// sentence says.
Outcome writeFile(const QString& fileName, const QByteArray& bytes);

} // namespace files
