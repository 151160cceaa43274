// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Names and paths as texts; nothing here looks at a disk.
namespace files {

/// All up to and including the last folder separator ("/" or "\"); empty when there is none.
QString PathOfFile(const QString& strFileName);
/// All behind the last folder separator; the whole text when there is none.
QString FileOfPath(const QString& strFileName);
/// No separator, ":", "*", "?", double quote, "<", ">" or "|" in the text. An empty text passes.
bool IsValidFileName(const QString& strFileName);
/// Every double quote is removed from the text, which is also the result.
QString RemoveQuotes(QString& strText);

} // namespace files
