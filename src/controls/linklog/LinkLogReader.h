// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/linklog/LinkLog.h"
#include "values/Outcome.h"

#include <QIODevice>

#include <optional>

namespace linklog {

/// Reads a link log entry by entry, from a device that is open for reading and outlives the reader. Never holds more
/// than one line.
class Reader
{
public:
    explicit Reader(QIODevice& device);

    /// The next entry; nothing at the end of the log and after a failure, which failure() then tells.
    std::optional<Entry> next();
    /// What is wrong with the log and in which line; null while all is well.
    const QString& failure() const { return m_failure; }

private:
    void fail(const QString& what);

    QIODevice& m_device;
    QString m_failure;
    qint64 m_line = 0;
};

} // namespace linklog
