// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/UpdateOffers.h"

#include "prefs/Preferences.h"
#include "update/web/UpdateVersion.h"

#include <QCoreApplication>

namespace {

template <typename Option>
QString storedOr(const Preferences& preferences, const Option& option, const QString& fallback)
{
    const QString stored = preferences.value(option);
    return stored.isEmpty() ? fallback : stored;
}

template <typename Option>
bool take(Preferences& preferences, const Option& option, const QString& strFile, double installed)
{
    if (!(updateversion::GetVersionFromFileName(strFile) > installed))
        return false;
    preferences.setValue(option, updateoffers::inUpdateFolder(preferences, strFile));
    return true;
}

} // namespace

QString updateoffers::updateFolder(const Preferences& preferences)
{
    QString folder = storedOr(preferences, options::kUpdateFiles.option, QCoreApplication::applicationDirPath());
    while (folder.size() > 1 && folder.endsWith(u'/'))
        folder.chop(1);
    return folder;
}

QString updateoffers::inUpdateFolder(const Preferences& preferences, const QString& name)
{
    const QString folder = updateFolder(preferences);
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

QString updateoffers::firmwareFile(const Preferences& preferences)
{
    return storedOr(preferences, options::kFirmwareUpgradeFile,
                    inUpdateFolder(preferences, QLatin1String(kFirmwareFile)));
}

QString updateoffers::programFile(const Preferences& preferences)
{
    return storedOr(preferences, options::kSoftwareUpgradeFile,
                    inUpdateFolder(preferences, QLatin1String(kProgramFile)));
}

QString updateoffers::addressOf(const QString& webFolder, const QString& name)
{
    const QString folder = webFolder.trimmed();
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

bool updateoffers::takeFirmware(Preferences& preferences, const QString& strFile, double installed)
{
    return take(preferences, options::kFirmwareUpgradeFile, strFile, installed);
}

bool updateoffers::takeProgram(Preferences& preferences, const QString& strFile)
{
    return take(preferences, options::kSoftwareUpgradeFile, strFile, updateversion::programVersion());
}
