// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// The page on which a web server lists the files of a folder; it comes from outside and may hold anything.
namespace listingpage {

/// A name that means a file of one folder and nothing else: not empty, at most 255 bytes as the file system counts
/// them, no folder separator of any system, no "..", no leading dot, no character that steers a text.
bool isBareFileName(const QString& name);

/// The first text in double quotes that begins with the tag, without blanks at its ends. Only the first is looked at:
/// empty when there is none or when it is no bare file name in UTF-8. The tag is not empty.
QString fileWithTag(const QByteArray& page, const QString& tag);

} // namespace listingpage
