// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/FilePicker.h"

#include <QStringList>

class QWidget;

/// The file dialogs of the program over its main window.
class FileDialogs : public FilePicker
{
public:
    explicit FileDialogs(QWidget& owner)
        : m_owner(owner)
    {}

    /// Where there are several filters, a name without an extension gets that of the chosen one.
    QString saveFileName(const QString& title, const QString& filters, const QString& folder,
                         const QString& proposedName) override;
    QString openFileName(const QString& title, const QString& filters, const QString& folder) override;
    /// Existing files; empty when the user cancelled.
    QStringList openFileNames(const QString& title, const QString& filters, const QString& folder);

    /// "Text|pattern|Text|pattern" as the dialogs of the toolkit want it. A text that does not name its pattern keeps
    /// it in brackets behind it.
    static QStringList nameFilters(const QString& filters);
    /// The name with the extension of a filter "Text (*.abc)", unless it has one.
    static QString withExtension(const QString& fileName, const QString& nameFilter);

private:
    /// mode: QFileDialog::FileMode.
    QStringList openFiles(const QString& title, const QString& filters, const QString& folder, int mode);

    QWidget& m_owner;
};
