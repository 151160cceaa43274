// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>

class WebTransfer;

/// What a server may take of time and room before it is given up.
struct WebLimits
{
    std::chrono::milliseconds silence{30'000};  ///< without a byte
    std::chrono::milliseconds page{60'000};     ///< for a whole listing
    std::chrono::milliseconds file{7'200'000};  ///< for a whole file
    qint64 pageBytes = qint64(4) * 1024 * 1024; ///< a longer listing is none
    qint64 fileBytes = qint64(1) << 30;         ///< a file that is announced longer is refused
};

/// Plain GETs by http or https: no cache, no cookies, no passwords, the agent string "VB OpenUrl", redirects only
/// within scheme, host and port. A call runs a nested event loop until the transfer has ended, within its limits;
/// whoever calls checks afterwards that what it holds still lives. An object that dies meanwhile ends its transfer. One
/// transfer at a time.
class WebClient : public QObject
{
    Q_OBJECT

public:
    explicit WebClient(const WebLimits& limits = {}, QObject* parent = nullptr);
    ~WebClient() override;

    /// The body of an answer with status 200, whole; empty in every other case.
    QByteArray readPage(const QString& address, qint64 mostBytes);
    QByteArray readPage(const QString& address) { return readPage(address, m_limits.pageBytes); }

    struct Download
    {
        enum class End
        {
            Whole,  ///< as many bytes as announced; the file bears its name
            Short,  ///< broken off by the server, the limits or stop(); what came stays as NAME.part
            Refused ///< no answer, no readable length, or a file that cannot be written
        };
        End end = End::Refused;
        qint64 received = 0;
        qint64 announced = 0;
    };
    /// Called with what has come and what was announced, which is above 0.
    using Progress = std::function<void(qint64 received, qint64 announced)>;
    Download readFile(const QString& address, const QString& target, const Progress& progress);

    /// Ends the transfer under way, if any.
    void stop();

private:
    WebLimits m_limits;
    QPointer<WebTransfer> m_transfer;
};
