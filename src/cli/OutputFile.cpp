// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputFile.h"

#include "cli/StandardStreams.h"
#include "files/SafeFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

/// The descriptor that the path names in the folder of this program's open descriptors; -1 for any other path.
int descriptorOf(const QFileInfo& path)
{
    static const QString own = u"/proc/%1/fd"_s.arg(::getpid());
    bool isNumber = false;
    const int descriptor = path.fileName().toInt(&isNumber);
    return isNumber && descriptor >= 0 && QFileInfo(path.path()).canonicalFilePath() == own ? descriptor : -1;
}

/// One text for one file, whether it is there or not.
QString identityOf(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? info.canonicalFilePath()
                         : QFileInfo(info.path()).canonicalFilePath() + u'/' + info.fileName();
}

} // namespace

OutputFile::OutputFile(const QString& name)
    : m_name(name)
    , m_path(QFileInfo(name).absoluteFilePath())
{
    if (name == "-"_L1) {
        m_kind = Kind::Descriptor;
        m_descriptor = STDOUT_FILENO;
        return;
    }
    // Link by link: the last one would lead from a descriptor to the file that is open there.
    constexpr int kMostLinks = 40;
    for (int links = 0; links < kMostLinks; ++links) {
        const QFileInfo info(m_path);
        m_descriptor = descriptorOf(info);
        if (m_descriptor >= 0) {
            m_kind = Kind::Descriptor;
            return;
        }
        if (!info.isSymLink())
            break;
        m_path = info.symLinkTarget();
    }
    struct stat state = {};
    if (::stat(QFile::encodeName(m_path).constData(), &state) == 0 && !S_ISREG(state.st_mode) &&
        !S_ISDIR(state.st_mode))
        m_kind = Kind::Device;
}

bool OutputFile::isStandardOutput() const
{
    return m_kind == Kind::Descriptor && m_descriptor == STDOUT_FILENO;
}

Outcome OutputFile::check() const
{
    if (m_kind == Kind::Descriptor)
        return checkStream(m_descriptor, isStandardOutput() ? standardOutputName() : m_name);
    const QFileInfo info(m_path);
    if (info.isDir() || info.fileName().isEmpty())
        return failed(EISDIR);
    const QFileInfo folder(info.absolutePath());
    if (folder.exists() && !folder.isDir())
        return failed(ENOTDIR);
    if ((m_kind == Kind::Device || info.exists()) && ::access(QFile::encodeName(m_path).constData(), W_OK) != 0)
        return failed(errno);
    if (m_kind == Kind::File && ::access(QFile::encodeName(folder.filePath()).constData(), W_OK | X_OK) != 0)
        return failed(errno);
    return Outcome::success();
}

Outcome OutputFile::write(const QByteArray& bytes) const
{
    if (m_kind == Kind::Descriptor)
        return writeStream(m_descriptor, bytes, isStandardOutput() ? standardOutputName() : m_name);
    if (m_kind == Kind::File)
        return files::writeFile(m_name, bytes);
    const int descriptor = ::open(QFile::encodeName(m_path).constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return failed(errno);
    Outcome written = writeStream(descriptor, bytes, m_name);
    if (::close(descriptor) != 0 && written)
        return failed(errno);
    return written;
}

QString OutputFile::identity() const
{
    switch (m_kind) {
    case Kind::File:
        return identityOf(m_path);
    case Kind::Descriptor:
        return u"descriptor %1"_s.arg(m_descriptor);
    case Kind::Device:
        break;
    }
    return {};
}

bool OutputFile::isSameAs(const OutputFile& other) const
{
    return isNamed() && other.isNamed() && !identity().isEmpty() && identity() == other.identity();
}

Outcome OutputFile::failed(int error) const
{
    return Outcome::failure(QCoreApplication::translate("cli", "Cannot write %1: %2.")
                                .arg(m_name, QString::fromLocal8Bit(std::strerror(error))));
}

} // namespace cli
