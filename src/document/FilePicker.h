// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Asks the user for the name of a file to write or to read. Windows answer with a file dialog, tests and the command
/// line with a name.
class FilePicker
{
public:
    virtual ~FilePicker() = default;

    /// filters is a list of "Text|pattern" pairs joined by "|", or empty for every file. Returns the full path as the
    /// user gave it, or an empty text when the user cancelled. Does not ask whether an existing file may be replaced:
    /// the document does. May run a nested event loop.
    virtual QString saveFileName(const QString& title, const QString& filters, const QString& folder,
                                 const QString& proposedName) = 0;
    /// An existing file to read, in the same manner.
    virtual QString openFileName(const QString& /*title*/, const QString& /*filters*/, const QString& /*folder*/)
    {
        return {};
    }
};
