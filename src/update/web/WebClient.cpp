// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/WebClient.h"

#include "update/web/PartFile.h"
#include "update/web/WebTransfer.h"

#include <QUrl>

#include <algorithm>
#include <memory>

namespace {

constexpr qsizetype kLongestLength = 20; ///< letters of a length

/// Above 0, or -1: digits alone, so that no two servers can mean two things by one header.
qint64 lengthOf(const QByteArray& text, qint64 most)
{
    const auto digit = [](char letter) { return letter >= '0' && letter <= '9'; };
    if (text.size() > kLongestLength || !std::all_of(text.begin(), text.end(), digit))
        return -1;
    bool fits = false;
    const qint64 length = text.toLongLong(&fits);
    return fits && length > 0 && length <= most ? length : -1;
}

QUrl urlOf(const QString& address)
{
    return QUrl(address.trimmed(), QUrl::TolerantMode);
}

} // namespace

WebClient::WebClient(const WebLimits& limits, QObject* parent)
    : QObject(parent)
    , m_limits(limits)
{}

WebClient::~WebClient()
{
    stop();
}

void WebClient::stop()
{
    if (m_transfer)
        m_transfer->stop();
}

QByteArray WebClient::readPage(const QString& address, qint64 mostBytes)
{
    QByteArray page;
    WebTransfer transfer({[](const QByteArray&) { return true; },
                          [&page, mostBytes](const QByteArray& bytes) {
                              page += bytes;
                              return page.size() <= mostBytes;
                          }},
                         m_limits.silence, m_limits.page);
    m_transfer = &transfer;
    return transfer.run(urlOf(address)) == WebTransfer::End::Whole ? page : QByteArray();
}

WebClient::Download WebClient::readFile(const QString& address, const QString& target, const Progress& progress)
{
    Download download;
    PartFile file(target);
    bool written = true;
    WebTransfer transfer({[&](const QByteArray& length) {
                              download.announced = lengthOf(length, m_limits.fileBytes);
                              return download.announced > 0 && file.open().ok();
                          },
                          [&](const QByteArray& bytes) {
                              written = file.write(bytes).ok();
                              download.received += bytes.size();
                              if (written)
                                  progress(download.received, download.announced);
                              return written && download.received <= download.announced;
                          }},
                         m_limits.silence, m_limits.file);
    m_transfer = &transfer;
    const WebTransfer::End end = transfer.run(urlOf(address));
    if (end == WebTransfer::End::NoAnswer || !written)
        return download;
    if (end == WebTransfer::End::Stopped || download.received != download.announced)
        download.end = Download::End::Short;
    else if (file.finish())
        download.end = Download::End::Whole;
    return download;
}
