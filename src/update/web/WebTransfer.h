// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>

/// One GET, for WebClient.
class WebTransfer : public QObject
{
    Q_OBJECT

public:
    enum class End
    {
        Whole,    ///< the server has sent what it had
        Broken,   ///< behind its first bytes: by the server, a limit, the receiver or stop()
        NoAnswer, ///< no connection, no status 200, or the receiver refused it
        Stopped   ///< by stop() before an answer
    };
    /// Both may refuse, which ends the transfer.
    struct Receiver
    {
        /// Once, before the first bytes; the text of the length as the server sent it.
        std::function<bool(const QByteArray& length)> begin;
        std::function<bool(const QByteArray& bytes)> receive;
    };

    WebTransfer(Receiver receiver, std::chrono::milliseconds silence, std::chrono::milliseconds whole);

    /// Runs a nested event loop until the transfer has ended.
    End run(const QUrl& address);
    void stop();

Q_SIGNALS:
    void ended();

private:
    int status() const; ///< 0 before an answer
    void begin();
    void drain();
    void finished();
    void end(End end);

    QNetworkAccessManager m_manager;
    QNetworkReply* m_reply = nullptr;
    Receiver m_receiver;
    QTimer m_silence;
    QTimer m_whole;
    bool m_begun = false;
    bool m_ended = false;
    End m_end = End::NoAnswer;
};
