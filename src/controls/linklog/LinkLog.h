// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// The link log: everything that went over a link, in time, as plain ASCII text that can be read, mailed and replayed.
///
///     # marrowick link log 1
///     # started 2026-03-01T09:30:00.000Z
///     0.000000 ! connected T46-000123
///     0.000412 > enquire 1.28\r
///     0.003020 < V:1 T46-000123 ...\r\n
///
/// Every line ends with a line feed; a last line without one was cut off and is not read.
/// The first line names format and version; lines that begin with "#" and empty lines say nothing to a reader. Every
/// other line is seconds since the start with six decimals, a blank, the direction, a blank, and the bytes: ">" host to
/// instrument, one line a write; "<" instrument to host, one line a frame; "!" a remark on the link itself.
///
/// Bytes 0x20 to 0x7e stand for themselves, but for the backslash, written "\\", and a blank at the end of a line,
/// written
/// "\x20". Carriage return, line feed and tab are "\r", "\n" and "\t", every other byte is "\x" and two hexadecimal
/// digits.
namespace linklog {

inline constexpr char kHeader[] = "# marrowick link log 1";

/// Longest line a reader accepts.
inline constexpr qint64 kLongestLine = 256 * 1024;

struct Entry
{
    enum Kind
    {
        ToInstrument,
        FromInstrument,
        Remark
    };

    qint64 microseconds = 0; ///< since the start of the log
    Kind kind = Remark;
    QByteArray bytes;

    bool operator==(const Entry&) const = default;
};

QByteArray escaped(QByteArrayView bytes);
/// Nothing when the text has a broken escape or a byte that would have been escaped.
std::optional<QByteArray> unescaped(QByteArrayView text);

/// The line of an entry, without its line feed.
QByteArray lineOf(const Entry& entry);
/// Nothing when the line is none; never called with a comment.
std::optional<Entry> entryOf(QByteArrayView line);

} // namespace linklog
