// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/EventSounds.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <array>

QString eventNameOfIcon(int icon)
{
    switch (icon) {
    case 1:
        return QStringLiteral("dialog-information");
    case 2:
        return QStringLiteral("dialog-warning");
    case 3:
        return QStringLiteral("dialog-question");
    case 4:
        return QStringLiteral("dialog-error");
    case 5:
        return QStringLiteral("desktop-login");
    case 6:
        return QStringLiteral("desktop-logout");
    default:
        return QStringLiteral("bell");
    }
}

QString DesktopSounds::soundFileOf(const QString& eventName)
{
    const QStringList roots = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (QString name = eventName; !name.isEmpty(); name = name.left(name.lastIndexOf(u'-'))) {
        for (const QString& root : roots) {
            const QString stem = root + QStringLiteral("/sounds/freedesktop/stereo/") + name;
            if (QFile::exists(stem + QStringLiteral(".disabled")))
                return {};
            for (const char* suffix : {".oga", ".ogg", ".wav"}) {
                QString file = stem + QLatin1String(suffix);
                if (QFile::exists(file))
                    return file;
            }
        }
        if (!name.contains(u'-'))
            break;
    }
    return {};
}

DesktopSounds::Command DesktopSounds::commandFor(const QString& eventName)
{
    const QString themed = QStandardPaths::findExecutable(QStringLiteral("canberra-gtk-play"));
    if (!themed.isEmpty())
        return {themed, {QStringLiteral("--id=") + eventName}};
    const QString file = soundFileOf(eventName);
    if (file.isEmpty())
        return {};
    for (const char* player : {"pw-play", "paplay"}) {
        const QString program = QStandardPaths::findExecutable(QLatin1String(player));
        if (!program.isEmpty())
            return {program, {file}};
    }
    return {};
}

void DesktopSounds::play(const QString& eventName)
{
    const Command command = commandFor(eventName);
    if (command.program.isEmpty())
        return;
    QProcess player;
    player.setProgram(command.program);
    player.setArguments(command.arguments);
    player.setStandardInputFile(QProcess::nullDevice());
    player.setStandardOutputFile(QProcess::nullDevice());
    player.setStandardErrorFile(QProcess::nullDevice());
    player.startDetached();
}
