// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/WebTransfer.h"

#include <QEventLoop>
#include <QNetworkProxyFactory>
#include <QNetworkRequest>
#include <QPointer>

#include <utility>

namespace {

/// What is kept of an answer that nobody has read yet.
constexpr qint64 kReadAhead = 256 * 1024;
constexpr int kMostRedirects = 5;
constexpr int kStatusOk = 200;

/// The proxy that the system is set up for.
class SystemProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override { return systemProxyForQuery(query); }
};

QNetworkRequest plainGet(const QUrl& address)
{
    QNetworkRequest request(address);
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArrayLiteral("VB OpenUrl"));
    // Bytes as they lie on the server, so that their number is the announced one.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("Cache-Control", "no-cache");
    request.setRawHeader("Pragma", "no-cache");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMostRedirects);
    return request;
}

} // namespace

WebTransfer::WebTransfer(Receiver receiver, std::chrono::milliseconds silence, std::chrono::milliseconds whole)
    : m_receiver(std::move(receiver))
{
    m_manager.setProxyFactory(new SystemProxies);
    m_silence.setSingleShot(true);
    m_silence.setInterval(silence);
    m_whole.setSingleShot(true);
    m_whole.setInterval(whole);
    const auto late = [this] { end(m_begun ? End::Broken : End::NoAnswer); };
    connect(&m_silence, &QTimer::timeout, this, late);
    connect(&m_whole, &QTimer::timeout, this, late);
}

WebTransfer::End WebTransfer::run(const QUrl& address)
{
    const QPointer<WebTransfer> alive = this;
    // The network library would read files of this machine as well.
    if (!address.isValid() || address.host().isEmpty() ||
        (address.scheme() != QLatin1String("http") && address.scheme() != QLatin1String("https")))
        return End::NoAnswer;
    QEventLoop loop;
    connect(this, &WebTransfer::ended, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    m_reply = m_manager.get(plainGet(address));
    m_reply->setReadBufferSize(kReadAhead);
    // The head of a redirect is not the answer's.
    connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] {
        if (status() == kStatusOk)
            begin();
    });
    connect(m_reply, &QNetworkReply::readyRead, this, &WebTransfer::drain);
    connect(m_reply, &QNetworkReply::finished, this, &WebTransfer::finished);
    m_silence.start();
    m_whole.start();
    loop.exec();
    if (!alive)
        return End::Stopped;
    // The loop ends on its own when the whole program does.
    end(End::Stopped);
    return m_end;
}

void WebTransfer::stop()
{
    end(m_begun ? End::Broken : End::Stopped);
}

int WebTransfer::status() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

void WebTransfer::begin()
{
    if (m_begun || m_ended)
        return;
    if (status() == kStatusOk && m_receiver.begin(m_reply->rawHeader("Content-Length")))
        m_begun = true;
    else
        end(End::NoAnswer);
}

void WebTransfer::drain()
{
    begin();
    if (m_ended)
        return;
    m_silence.start();
    const QByteArray bytes = m_reply->readAll();
    if (!bytes.isEmpty() && !m_receiver.receive(bytes))
        end(End::Broken);
}

void WebTransfer::finished()
{
    const bool whole = m_reply->error() == QNetworkReply::NoError;
    // An answer that breaks off may have bytes that wait.
    drain();
    if (!m_ended)
        end(whole ? End::Whole : m_begun ? End::Broken : End::NoAnswer);
}

void WebTransfer::end(End end)
{
    if (m_ended)
        return;
    m_ended = true;
    m_end = end;
    m_silence.stop();
    m_whole.stop();
    // What is still under way ends with this object.
    m_reply->disconnect(this);
    Q_EMIT ended();
}
