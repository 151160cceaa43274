// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHostAddress>
#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

/// A web server on loopback, in the test's own thread, that answers each path as badly as it is told.
class HostileServer : public QTcpServer
{
public:
    using Answer = std::function<void(QTcpSocket& socket)>;

    HostileServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* const socket = nextPendingConnection())
                attend(*socket);
        });
    }

    QString url(const char* path = "/updates") const
    {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(QString::fromUtf8(path));
    }

    void answer(const char* path, Answer answer) { m_answers[path] = std::move(answer); }
    /// Bytes as they stand, then the end of the connection.
    void answer(const char* path, const QByteArray& bytes)
    {
        answer(path, [bytes](QTcpSocket& socket) {
            socket.write(bytes);
            socket.disconnectFromHost();
        });
    }
    /// An answer as it should be.
    void serve(const char* path, const QByteArray& body) { answer(path, head(body.size()) + body); }
    /// A head and no more, for as long as the client waits.
    void stall(const char* path, const QByteArray& bytes)
    {
        answer(path, [bytes](QTcpSocket& socket) { socket.write(bytes); });
    }
    /// The block again and again.
    void flood(const char* path, const QByteArray& head, const QByteArray& block)
    {
        answer(path, [head, block](QTcpSocket& socket) {
            socket.write(head);
            const auto more = [&socket, block] {
                if (socket.bytesToWrite() < 256 * 1024)
                    socket.write(block);
            };
            connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
            more();
        });
    }

    static QByteArray head(qint64 length)
    {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(length) + "\r\nConnection: close\r\n\r\n";
    }
    static QByteArray listing(const QByteArray& name) { return "<a href=\"" + name + "\">a file</a>\n"; }

    QList<QByteArray> requests; ///< each head as it came
    QList<QByteArray> paths() const
    {
        QList<QByteArray> result;
        for (const QByteArray& request : requests)
            result.append(request.split(' ').value(1));
        return result;
    }

private:
    void attend(QTcpSocket& socket)
    {
        connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
        connect(&socket, &QTcpSocket::readyRead, this, [this, &socket] {
            QByteArray request = socket.property("head").toByteArray() + socket.readAll();
            socket.setProperty("head", request);
            if (!request.contains("\r\n\r\n"))
                return;
            requests.append(request);
            const auto found = m_answers.constFind(request.split(' ').value(1));
            if (found != m_answers.constEnd()) {
                (*found)(socket);
            } else {
                socket.write("HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\nConnection: close\r\n\r\nnone");
                socket.disconnectFromHost();
            }
        });
    }

    QMap<QByteArray, Answer> m_answers;
};
