// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/MemoryFile.h"

#include "files/SafeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace sim {

namespace {

constexpr qint64 kLongestFile = 4 * 1024 * 1024;
constexpr int kMostSetAside = 1000;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::MemoryFile", text);
}

} // namespace

MemoryFile MemoryFile::ofInstrument(const QByteArray& serial)
{
    QString folder = QFile::decodeName(qgetenv("XDG_STATE_HOME"));
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::homePath() + QLatin1String("/.local/state");
    return {folder + QLatin1String("/marrowick/instruments/") + QString::fromLatin1(serial) + QLatin1String(".json"),
            true};
}

ValueOr<MemoryFile::Content> MemoryFile::recall() const
{
    QFile file(m_fileName);
    if (!file.exists())
        return Content();
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("The memory file \"%1\" cannot be read: %2.").arg(m_fileName, file.errorString()));
    const QByteArray text = file.read(kLongestFile + 1);
    if (file.error() != QFileDevice::NoError)
        return Outcome::failure(tr("The memory file \"%1\" cannot be read: %2.").arg(m_fileName, file.errorString()));
    file.close();
    const ValueOr<KeptMemory> memory = KeptMemory::fromJson(text);
    if (memory)
        return Content{memory.value(), {}};
    switch (KeptMemory::judge(text)) {
    case KeptMemory::Unreadable::Damaged:
        return setAside(memory.sentence());
    case KeptMemory::Unreadable::SomethingElse:
        if (m_own)
            return setAside(memory.sentence());
        break;
    case KeptMemory::Unreadable::OtherVersion:
        break;
    }
    return Outcome::failure(tr("\"%1\": %2 Choose another file with --memory.").arg(m_fileName, memory.sentence()));
}

ValueOr<MemoryFile::Content> MemoryFile::setAside(const QString& reason) const
{
    for (int number = 1; number <= kMostSetAside; ++number) {
        const QString aside = m_fileName + QStringLiteral(".damaged-%1").arg(number);
        if (QFileInfo::exists(aside) || QFileInfo(aside).isSymLink())
            continue;
        QFile file(m_fileName);
        if (!file.rename(aside))
            return Outcome::failure(tr("The memory file \"%1\" is damaged and cannot be set aside as \"%2\": %3.")
                                        .arg(m_fileName, aside, file.errorString()));
        return Content{{},
                       tr("The memory file \"%1\" is damaged and was set aside as \"%2\": %3 The instrument begins "
                          "as a new one.")
                           .arg(m_fileName, aside, reason)};
    }
    return Outcome::failure(
        tr("The memory file \"%1\" is damaged, and too many damaged ones stand beside it.").arg(m_fileName));
}

Outcome MemoryFile::write(const KeptMemory& memory) const
{
    const QString folder = QFileInfo(m_fileName).path();
    if (!QDir().mkpath(folder))
        return Outcome::failure(
            tr("The memory file \"%1\" cannot be written: its folder cannot be made.").arg(m_fileName));
    return files::writeFile(m_fileName, memory.toJson());
}

} // namespace sim
