// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/files/ui/FileOpener.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

const FileOpener::Reader* FileOpener::readerOf(const QString& fileName) const
{
    const auto first = [this](const auto& knows) -> const Reader* {
        const auto found = std::find_if(m_readers.begin(), m_readers.end(), knows);
        return found == m_readers.end() ? nullptr : &*found;
    };
    const bool exists = QFileInfo(fileName).isFile();
    // A pipe or a device would hold the program up.
    if (QFile file(fileName); exists && file.open(QIODevice::ReadOnly)) {
        const QByteArray head = file.read(kHead);
        if (const Reader* reader = first([&head](const Reader& candidate) { return candidate.knowsContent(head); }))
            return reader;
    }
    if (const Reader* reader = first([&fileName](const Reader& candidate) { return candidate.knowsName(fileName); }))
        return reader;
    return exists && !m_readers.empty() ? &m_readers.front() : nullptr;
}

bool FileOpener::hasOwnStart(const QString& fileName) const
{
    const Reader* reader = readerOf(fileName);
    return reader && reader->openAtStart;
}

bool FileOpener::openAtStart(const QString& fileName) const
{
    if (!hasOwnStart(fileName))
        return OpenFromCommand(fileName);
    const auto open = readerOf(fileName)->openAtStart;
    return open(fileName);
}

bool FileOpener::OpenFromCommand(const QString& fileName) const
{
    const Reader* reader = readerOf(fileName);
    if (!reader)
        return false;
    const auto open = reader->open;
    return open(fileName);
}
