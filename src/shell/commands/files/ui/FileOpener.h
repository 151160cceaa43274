// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

/// Opens what the user names in the Open dialog, by a drop or on the command line: by what the file holds, whatever it
/// is called. Where the content leaves it open the name decides.
class FileOpener
{
public:
    /// What a feature can open.
    struct Reader
    {
        std::function<bool(const QByteArray& head)> knowsContent; ///< from the first kHead bytes, or fewer
        std::function<bool(const QString& fileName)> knowsName;
        /// Tells the user what is wrong with the file, if anything. May run nested event loops.
        std::function<bool(const QString& fileName)> open;
        /// The same for a file that the command line names; unset: no other way.
        std::function<bool(const QString& fileName)> openAtStart = {};
    };
    static constexpr int kHead = 512;

    /// Readers are asked in the order of their registration.
    void add(Reader reader) { m_readers.push_back(std::move(reader)); }

    /// False when nothing was opened. A file that no reader knows goes to the first one, which refuses it with its own
    /// sentence; a name that neither exists nor looks like one of ours is ignored.
    bool OpenFromCommand(const QString& fileName) const;
    /// The same for a file that the command line names.
    bool openAtStart(const QString& fileName) const;
    /// True when that is another way than OpenFromCommand().
    bool hasOwnStart(const QString& fileName) const;
    /// True when OpenFromCommand() would do anything.
    bool isKnown(const QString& fileName) const { return readerOf(fileName) != nullptr; }

private:
    const Reader* readerOf(const QString& fileName) const;

    std::vector<Reader> m_readers;
};
