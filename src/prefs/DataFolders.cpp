// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/DataFolders.h"

#include "prefs/Preferences.h"

#include <QDir>
#include <QFileInfo>

namespace DataFolders {

QStringList candidates(const QString& path)
{
    QStringList result;
    qsizetype separator = 0;
    while ((separator = path.indexOf(u'/', separator + 1)) >= 0)
        result.append(path.first(separator + 1));
    result.append(path);
    return result;
}

bool MakeDefaultDirectories(const QStringList& paths, const Failed& failed)
{
    bool result = true;
    for (const QString& path : paths) {
        for (const QString& candidate : candidates(path)) {
            if (!candidate.isEmpty() && (QFileInfo(candidate).isDir() || QDir().mkdir(candidate)))
                continue;
            result = false;
            failed(candidate);
        }
    }
    return result;
}

bool boolArePathsSet(const Preferences& preferences, const Failed& failed)
{
    QStringList paths;
    for (const options::FolderOption& folder : options::kFolders)
        paths.append(preferences.value(folder.option));
    if (paths.contains(QString()))
        return false;
    MakeDefaultDirectories(paths, failed);
    return true;
}

} // namespace DataFolders
