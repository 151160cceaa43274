// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/SystemInformation.h"

#include "program/Version.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QStringList>
#include <QStyle>
#include <QSysInfo>
#include <QThread>
#include <QTimeZone>

namespace {

// The value behind the first "key<separator>" at the start of a line.
QString valueIn(const QString& text, const QString& key, QChar separator)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (line.section(separator, 0, 0).trimmed() == key) {
            QString value = line.section(separator, 1).trimmed();
            if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"')))
                value = value.mid(1, value.size() - 2);
            return value;
        }
    }
    return {};
}

QString contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(1024 * 1024)) : QString();
}

QString screens()
{
    QStringList all;
    const QList<QScreen*> present = QGuiApplication::screens();
    for (const QScreen* screen : present) {
        const QSize size = screen->size() * screen->devicePixelRatio();
        all += QStringLiteral("%1 x %2 at %3 %")
                   .arg(size.width())
                   .arg(size.height())
                   .arg(qRound(100 * screen->devicePixelRatio()));
    }
    return all.join(QStringLiteral(", "));
}

} // namespace

QString systemInformation(const QString& root)
{
    const QDir folder(root);
    const QString release = contentOf(folder.filePath(QStringLiteral("etc/os-release")));
    const QString processor = contentOf(folder.filePath(QStringLiteral("proc/cpuinfo")));
    const QString memory = contentOf(folder.filePath(QStringLiteral("proc/meminfo")));
    if (release.isEmpty() && processor.isEmpty() && memory.isEmpty())
        return {};

    QString text;
    const auto add = [&text](const char* name, const QString& value) {
        if (!value.isEmpty())
            text += QLatin1String(name) + QStringLiteral(": ") + value + QLatin1Char('\n');
    };
    add("Program", version::programTitle() + u' ' + version::text());
    add("Qt", QStringLiteral("%1, built with %2, platform %3")
                  .arg(QLatin1String(qVersion()), QStringLiteral(QT_VERSION_STR), QGuiApplication::platformName()));
    add("Operating system", valueIn(release, QStringLiteral("PRETTY_NAME"), QLatin1Char('=')));
    add("Kernel", QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion());
    QString model = valueIn(processor, QStringLiteral("model name"), QLatin1Char(':'));
    if (model.isEmpty())
        model = QSysInfo::currentCpuArchitecture();
    add("Processor", QStringLiteral("%1, %2 threads").arg(model).arg(QThread::idealThreadCount()));
    const qint64 kibibytes =
        valueIn(memory, QStringLiteral("MemTotal"), QLatin1Char(':')).section(QLatin1Char(' '), 0, 0).toLongLong();
    if (kibibytes > 0)
        add("Memory", QLocale::c().formattedDataSize(kibibytes * 1024, 1));
    add("Screens", screens());
    add("Desktop", qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    add("Session", qEnvironmentVariable("XDG_SESSION_TYPE"));
    add("Locale", QStringLiteral("%1, decimal sign \"%2\"").arg(QLocale().name(), QLocale().decimalPoint()));
    add("Time zone", QString::fromUtf8(QTimeZone::systemTimeZoneId()));
    return text;
}
