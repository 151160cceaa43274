// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/InstrumentState.h"
#include "values/Outcome.h"

#include <QString>

#include <optional>

namespace sim {

/// The file that stands for the instrument's non-volatile memory: JSON, written through QSaveFile, so that after a
/// crash the old memory or the new one is there, whole.
class MemoryFile
{
public:
    explicit MemoryFile(QString fileName)
        : m_fileName(std::move(fileName))
    {}

    /// Nothing when there is no file yet; a failure when there is one that cannot be read as a memory.
    ValueOr<std::optional<KeptMemory>> read() const;
    Outcome write(const KeptMemory& memory) const;
    QString fileName() const { return m_fileName; }

    /// Of an instrument with that serial number, in the user's state folder ($XDG_STATE_HOME, or ~/.local/state).
    static QString defaultFileName(const QByteArray& serial);

    static QByteArray toJson(const KeptMemory& memory);
    static ValueOr<KeptMemory> fromJson(const QByteArray& text);

private:
    QString m_fileName;
};

} // namespace sim
