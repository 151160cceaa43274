// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/FileDialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>

QStringList FileDialogs::nameFilters(const QString& filters)
{
    QStringList result;
    const QStringList parts = filters.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        // The toolkit reads the pattern from the last pair of brackets.
        QString text = parts[i];
        const QString& pattern = parts[i + 1];
        const QString named = QStringLiteral("(%1)").arg(pattern);
        text.remove(named);
        // "*.*" is every file here, also one without a dot in its name.
        const QString wanted = pattern == QLatin1String("*.*") ? QStringLiteral("*") : pattern;
        result.append(QStringLiteral("%1 (%2)").arg(text.trimmed(), wanted));
    }
    return result;
}

QString FileDialogs::withExtension(const QString& fileName, const QString& nameFilter)
{
    static const QRegularExpression pattern(QStringLiteral("\\(\\*(\\.\\w+)\\)$"));
    const QString extension = pattern.match(nameFilter).captured(1);
    return QFileInfo(fileName).suffix().isEmpty() ? fileName + extension : fileName;
}

QString FileDialogs::saveFileName(const QString& title, const QString& filters, const QString& folder,
                                  const QString& proposedName)
{
    const QPointer<QFileDialog> dialog = new QFileDialog(&m_owner, title, folder);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    if (const QStringList names = nameFilters(filters); !names.isEmpty())
        dialog->setNameFilters(names);
    dialog->selectFile(proposedName);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    const QStringList files = dialog->selectedFiles();
    const QString kind = dialog->nameFilters().size() > 1 ? dialog->selectedNameFilter() : QString();
    delete dialog;
    return accepted && !files.isEmpty() ? withExtension(files.first(), kind) : QString();
}

QStringList FileDialogs::openFileNames(const QString& title, const QString& filters, const QString& folder)
{
    return openFiles(title, filters, folder, QFileDialog::ExistingFiles);
}

QString FileDialogs::openFileName(const QString& title, const QString& filters, const QString& folder)
{
    return openFiles(title, filters, folder, QFileDialog::ExistingFile).value(0);
}

QStringList FileDialogs::openFiles(const QString& title, const QString& filters, const QString& folder, int mode)
{
    const QPointer<QFileDialog> dialog = new QFileDialog(&m_owner, title, folder);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(static_cast<QFileDialog::FileMode>(mode));
    dialog->setNameFilters(nameFilters(filters));
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    const QStringList files = dialog->selectedFiles();
    delete dialog;
    return accepted ? files : QStringList();
}
