// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StandardStreams.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace cli {
namespace {

Outcome failed(const QString& name, int error)
{
    const QString reason = error == EBADF   ? QCoreApplication::translate("cli", "it is closed")
                           : error == EPIPE ? QCoreApplication::translate("cli", "nobody reads it any more")
                                            : QString::fromLocal8Bit(std::strerror(error));
    return Outcome::failure(QCoreApplication::translate("cli", "Cannot write to %1: %2.").arg(name, reason));
}

} // namespace

void guardStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // The lowest free number is the one that is taken. Reading from standard input and writing to the others fail.
        if (::fcntl(descriptor, F_GETFD) < 0)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

Outcome checkStream(int descriptor, const QString& name)
{
    const int flags = ::fcntl(descriptor, F_GETFL);
    if (flags < 0 || (flags & O_ACCMODE) == O_RDONLY)
        return failed(name, EBADF);
    pollfd state = {descriptor, POLLOUT, 0};
    if (::poll(&state, 1, 0) > 0 && (state.revents & POLLERR) != 0)
        return failed(name, EPIPE);
    return Outcome::success();
}

Outcome writeStream(int descriptor, const QByteArray& bytes, const QString& name)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written > 0) {
            done += written;
        } else if (written < 0 && errno == EAGAIN) {
            // Somebody else has made the stream non-blocking.
            pollfd state = {descriptor, POLLOUT, 0};
            ::poll(&state, 1, -1);
        } else if (written == 0 || errno != EINTR) {
            return failed(name, written == 0 ? ENOSPC : errno);
        }
    }
    return Outcome::success();
}

ValueOr<QByteArray> readStandardInput(qsizetype most)
{
    constexpr qsizetype kPiece = 256 * 1024;
    QByteArray bytes;
    for (;;) {
        const qsizetype known = bytes.size();
        bytes.resize(known + kPiece);
        const ssize_t got = ::read(STDIN_FILENO, bytes.data() + known, static_cast<std::size_t>(kPiece));
        const int error = errno;
        bytes.resize(known + (got > 0 ? got : 0));
        if (got == 0)
            return bytes;
        if (got < 0 && error == EAGAIN) {
            pollfd state = {STDIN_FILENO, POLLIN, 0};
            ::poll(&state, 1, -1);
        } else if (got < 0 && error != EINTR) {
            return Outcome::failure(QCoreApplication::translate("cli", "Standard input cannot be read: %1.")
                                        .arg(QString::fromLocal8Bit(std::strerror(error))));
        }
        if (bytes.size() > most)
            return Outcome::failure(
                QCoreApplication::translate("cli", "Standard input is longer than %1 bytes.").arg(most));
    }
}

QString standardOutputName()
{
    return QCoreApplication::translate("cli", "standard output");
}

} // namespace cli
