// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/WebFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

sockaddr_in loopback(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

/// One that nobody listens on at the moment.
int freePort()
{
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    const bool bound = ::bind(probe, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       ::getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(probe);
    return bound ? ntohs(address.sin_port) : 0;
}

bool answers(int port)
{
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(port);
    const bool connected = ::connect(probe, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(probe);
    return connected;
}

const char* const kConfiguration = R"(
daemon off;
master_process off;
pid FOLDER/nginx.pid;
error_log FOLDER/error.log;
events { worker_connections 64; }
http {
  log_format plain '$request_method $request_uri $status "$http_user_agent" "$http_cache_control"';
  access_log FOLDER/access.log plain;
  client_body_temp_path FOLDER/temp;
  proxy_temp_path FOLDER/temp;
  fastcgi_temp_path FOLDER/temp;
  uwsgi_temp_path FOLDER/temp;
  scgi_temp_path FOLDER/temp;
  server {
    listen 127.0.0.1:PORT;
    root FOLDER/root;
    autoindex on;
  }
}
)";

} // namespace

WebFolder::WebFolder()
{
    QDir(m_folder.path()).mkpath(QStringLiteral("root/updates"));
    // Another process may take the port between the look and the start.
    for (int attempt = 0; attempt < 5 && !m_started; ++attempt)
        m_started = start();
}

WebFolder::~WebFolder()
{
    m_server.terminate();
    if (!m_server.waitForFinished(5000))
        m_server.kill();
    m_server.waitForFinished();
}

bool WebFolder::start()
{
    m_port = freePort();
    QByteArray text = kConfiguration;
    text.replace("FOLDER", m_folder.path().toUtf8()).replace("PORT", QByteArray::number(m_port));
    QFile file(m_folder.filePath(QStringLiteral("nginx.conf")));
    if (!file.open(QFile::WriteOnly) || file.write(text) != text.size())
        return false;
    file.close();
    m_server.start(QStringLiteral("/usr/sbin/nginx"),
                   {QStringLiteral("-e"), m_folder.filePath(QStringLiteral("error.log")), QStringLiteral("-p"),
                    m_folder.path(), QStringLiteral("-c"), file.fileName()});
    QElapsedTimer patience;
    patience.start();
    while (patience.elapsed() < 20000 && !m_server.waitForFinished(20)) {
        if (m_server.state() == QProcess::Running && answers(m_port))
            return true;
        if (m_server.state() == QProcess::NotRunning)
            return false;
    }
    return false;
}

QString WebFolder::url() const
{
    return QStringLiteral("http://127.0.0.1:%1/updates/").arg(m_port);
}

bool WebFolder::add(const QString& name, const QByteArray& content)
{
    QFile file(m_folder.filePath(QStringLiteral("root/updates/") + name));
    return file.open(QFile::WriteOnly) && file.write(content) == content.size();
}

QByteArray WebFolder::log() const
{
    QFile file(m_folder.filePath(QStringLiteral("access.log")));
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}
