// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/PartFile.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

PartFile::PartFile(const QString& target)
    : m_target(target)
    , m_file(target + QLatin1String(".part"))
{}

Outcome PartFile::failed(const char* what) const
{
    return Outcome::failure(
        QCoreApplication::translate("PartFile", "Cannot write %1: %2.").arg(partName(), QString::fromLocal8Bit(what)));
}

Outcome PartFile::open()
{
    if (::unlink(QFile::encodeName(partName()).constData()) != 0 && errno != ENOENT)
        return failed(std::strerror(errno));
    // A new file only, which no link can lead elsewhere; no buffer, so that each write tells of a full disk.
    if (!m_file.open(QFile::WriteOnly | QFile::NewOnly | QFile::Unbuffered))
        return failed(qPrintable(m_file.errorString()));
    constexpr QFile::Permissions kOfOthers = QFile::WriteGroup | QFile::WriteOther;
    if (!m_file.setPermissions(m_file.permissions() & ~kOfOthers))
        return failed(qPrintable(m_file.errorString()));
    return Outcome::success();
}

Outcome PartFile::write(QByteArrayView bytes)
{
    if (m_file.write(bytes.data(), bytes.size()) != bytes.size())
        return failed(qPrintable(m_file.errorString()));
    return Outcome::success();
}

Outcome PartFile::finish()
{
    if (::fsync(m_file.handle()) != 0)
        return failed(std::strerror(errno));
    m_file.close();
    if (std::rename(QFile::encodeName(partName()).constData(), QFile::encodeName(m_target).constData()) != 0)
        return failed(std::strerror(errno));
    return Outcome::success();
}
