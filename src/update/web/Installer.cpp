// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/Installer.h"

#include "update/web/Minisign.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;

QString tr(const char* text)
{
    return QCoreApplication::translate("Installer", text);
}

Outcome notStarted(const QString& file, const QString& reason)
{
    return Outcome::failure(tr("%1 was not started. %2").arg(QFileInfo(file).fileName(), reason));
}

/// Nobody else can put another file in this one's place.
bool isSafeFolder(const QString& path)
{
    struct stat state = {};
    if (::stat(QFile::encodeName(path).constData(), &state) != 0)
        return false;
    const bool trustedOwner = state.st_uid == ::geteuid() || state.st_uid == 0;
    return trustedOwner && ((state.st_mode & kWritableByOthers) == 0 || (state.st_mode & S_ISVTX) != 0);
}

/// All folders from the file's to the root, as links lead.
bool isInSafeFolder(const QString& file)
{
    QDir folder(QFileInfo(QFileInfo(file).absolutePath()).canonicalFilePath());
    bool safe = isSafeFolder(folder.path());
    while (safe && folder.cdUp())
        safe = isSafeFolder(folder.path());
    return safe;
}

/// Why the open file may not be started, whatever its content; empty when it may.
QString objection(int descriptor)
{
    struct stat state = {};
    if (::fstat(descriptor, &state) != 0 || !S_ISREG(state.st_mode))
        return tr("It is no regular file.");
    if (state.st_uid != ::geteuid())
        return tr("It belongs to another user.");
    if ((state.st_mode & kWritableByOthers) != 0)
        return tr("Other users may write it. Take that right away and check where it came from.");
    return {};
}

/// A file that is closed at the end of its life; a link, a pipe or a device is not followed or waited for.
class OpenFile
{
public:
    explicit OpenFile(const QString& name)
        : m_descriptor(::open(QFile::encodeName(name).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK))
    {}
    ~OpenFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace

bool installer::isPackage(const QString& file)
{
    return file.endsWith(QLatin1String(".deb"), Qt::CaseInsensitive);
}

Outcome installer::mayStart(const QString& file, const QString& keyFolder)
{
    const OpenFile opened(file);
    if (const QString reason = objection(opened.descriptor()); !reason.isEmpty())
        return notStarted(file, reason);
    if (!isInSafeFolder(file))
        return notStarted(file, tr("Other users may change the folder that it lies in. Move it to a folder of yours."));
    const std::vector<minisign::PublicKey> keys = minisign::keysOfFolder(keyFolder);
    if (keys.empty())
        return notStarted(file, tr("No key for program updates is trusted here: %1 has none.").arg(keyFolder));
    QFile signatureFile(signatureOf(file));
    if (!QFileInfo(signatureFile).isFile() || !signatureFile.open(QFile::ReadOnly))
        return notStarted(file, tr("Its signature %1 is not beside it.").arg(QFileInfo(signatureFile).fileName()));
    const auto signature = minisign::readSignature(signatureFile.read(minisign::kLongestSignatureFile + 1));
    if (!signature)
        return notStarted(file,
                          tr("%1 is no signature of the minisign program.").arg(QFileInfo(signatureFile).fileName()));
    QFile content;
    if (!content.open(opened.descriptor(), QFile::ReadOnly))
        return notStarted(file, tr("It cannot be read as a whole."));
    if (const Outcome fits = minisign::verify(content, signature.value(), keys); !fits)
        return notStarted(file, fits.sentence());
    return Outcome::success();
}

Outcome installer::run(const QString& file)
{
    const QString full = QFileInfo(file).absoluteFilePath();
    QFile program(full);
    if (program.setPermissions(program.permissions() | QFile::ExeOwner) &&
        QProcess::startDetached(full, {}, QFileInfo(full).absolutePath()))
        return Outcome::success();
    return notStarted(file, tr("The system could not run it."));
}

QString installer::trustedKeyFolder()
{
    const QByteArray chosen = qgetenv("MARROWICK_TRUSTED_KEYS");
    return chosen.isEmpty() ? QStringLiteral("/etc/marrowick/trusted-keys") : QFile::decodeName(chosen);
}
