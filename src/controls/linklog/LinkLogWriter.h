// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/linklog/LinkLog.h"
#include "values/Outcome.h"

#include <QElapsedTimer>
#include <QFile>
#include <QString>

namespace linklog {

/// Writes a link log as it happens. A log that cannot be written any further (full disk) ends by itself; failure() says
/// why.
class Writer
{
public:
    /// Starts a new log, replacing a file of that name.
    Outcome open(const QString& fileName);
    void close();
    bool isOpen() const { return m_file.isOpen(); }

    void add(Entry::Kind kind, QByteArrayView bytes);
    /// Hands to the system what was added, so that a crash loses nothing of it.
    void flush();
    /// Why the log ended by itself; null while it goes on.
    const QString& failure() const { return m_failure; }

private:
    void write(QByteArrayView text);

    QFile m_file;
    QElapsedTimer m_clock;
    QString m_failure;
};

} // namespace linklog
