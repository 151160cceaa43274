// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

/// Writing a file so that it is never there by halves.
namespace files {

/// Makes the file hold exactly these bytes. After success they are on the disk; after a failure, a crash or a kill at
/// any moment the old file or the new one is there, whole. A file that was there keeps its permissions; a symbolic link
/// keeps pointing to the file it points to. A kill can leave one hidden file ".NAME.saving", which the next save of
/// NAME takes away, so that none gather. Two programs that save the same name at once leave the bytes of one of them.
///
/// Refused: an empty name, a folder, a device. The sentence of a failure names the file and the reason. After a failure
/// the old file is there, but for one: when only the folder cannot be brought to the disk the new one is.
Outcome writeFile(const QString& fileName, const QByteArray& bytes);

} // namespace files
