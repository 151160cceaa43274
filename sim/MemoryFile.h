// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/KeptMemory.h"

#include <QString>

#include <optional>

namespace sim {

/// The file that stands for the instrument's non-volatile memory: JSON, written so that after a crash or on a full disk
/// the old memory or the new one is there, whole.
class MemoryFile
{
public:
    explicit MemoryFile(QString fileName)
        : m_fileName(std::move(fileName))
    {}
    /// Of an instrument with that serial number, in the user's state folder ($XDG_STATE_HOME, or ~/.local/state).
    static MemoryFile ofInstrument(const QByteArray& serial);

    struct Content
    {
        std::optional<KeptMemory> memory; ///< none: there was no file, or a damaged one
        QString notice;                   ///< tells that a damaged file was set aside, and as what; empty otherwise
    };
    /// A damaged memory is set aside as NAME.damaged-N, where it replaces nothing. Fails, leaving the file as it is,
    /// when it cannot be read or set aside, is of a later version, or is something else that the user has named here.
    ValueOr<Content> recall() const;
    Outcome write(const KeptMemory& memory) const;
    QString fileName() const { return m_fileName; }

private:
    MemoryFile(QString fileName, bool own)
        : m_fileName(std::move(fileName))
        , m_own(own)
    {}
    ValueOr<Content> setAside(const QString& reason) const;

    QString m_fileName;
    bool m_own = false; ///< stands where only memories stand
};

} // namespace sim
