// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

namespace cli {

/// Where a result goes that the command line names. A file is replaced as a whole or stays as it was. "-", /dev/stdout
/// and the other names of open descriptors are written to as they stand, so that ">>" appends; a device or a named pipe
/// is opened and written to.
class OutputFile
{
public:
    OutputFile() = default;
    explicit OutputFile(const QString& name);

    bool isNamed() const { return !m_name.isEmpty(); }
    const QString& name() const { return m_name; }
    bool isStandardOutput() const;

    /// What can be known before there is anything to write: a folder that is missing or read-only, a file that may not
    /// be replaced, a stream that is closed.
    Outcome check() const;
    /// The sentence of a failure names the file and the reason.
    Outcome write(const QByteArray& bytes) const;

    /// One text for one file or stream, by whatever name; empty for a device, which takes what comes.
    QString identity() const;
    /// One would overwrite the other, or both mix in one stream.
    bool isSameAs(const OutputFile& other) const;

private:
    enum class Kind
    {
        File,
        Descriptor, ///< open already
        Device      ///< neither file nor folder: opened, not replaced
    };

    Outcome failed(int error) const;

    QString m_name;
    QString m_path; ///< absolute, links followed
    Kind m_kind = Kind::File;
    int m_descriptor = -1;
};

} // namespace cli
