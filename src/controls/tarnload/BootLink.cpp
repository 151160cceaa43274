// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/BootLink.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/Transport.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <utility>

namespace tarnload {

namespace {

/// More waiting answers than any instrument sends to one question.
constexpr std::size_t kMostAnswers = 1000;

} // namespace

BootLink::BootLink(DeviceList& devices, QObject* parent)
    : QObject(parent)
    , m_devices(devices)
    , m_link(devices)
{
    connect(&m_link, &KorvaLink::DataReceived, this, &BootLink::read);
    connect(&m_link, &KorvaLink::Disconnected, this, &BootLink::something);
}

bool BootLink::open(int index)
{
    m_answers.clear();
    // Not by the link's own choice of a device, which looks for devices anew: the index may then be another's.
    std::unique_ptr<Transport> transport = m_devices.makeTransport(index);
    return transport && m_link.OpenTransport(std::move(transport), m_devices.device(index).name);
}

void BootLink::read()
{
    qint64 count = m_link.BytesAvailable();
    QByteArray bytes;
    m_link.Read(count, bytes);
    for (qsizetype begin = 0; begin < bytes.size();) {
        const qsizetype end = bytes.indexOf('\r', begin);
        if (end < 0)
            break;
        const qsizetype length = std::min(end + 2, bytes.size()) - begin;
        const std::optional<BootAnswer> answer = BootAnswer::fromFrame(QByteArrayView(bytes).sliced(begin, length));
        if (answer && m_answers.size() < kMostAnswers)
            m_answers.push_back(*answer);
        begin += length;
    }
    Q_EMIT something();
}

void BootLink::wait(int milliseconds)
{
    QEventLoop loop;
    connect(this, &BootLink::something, &loop, &QEventLoop::quit);
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

std::optional<BootAnswer> BootLink::ask(const QByteArray& command,
                                        const std::function<bool(const BootAnswer&)>& accepted, int milliseconds)
{
    m_answers.clear();
    m_link.Write(QString::fromLatin1(command));
    const QDeadlineTimer deadline(milliseconds);
    while (true) {
        while (!m_answers.empty()) {
            const BootAnswer answer = m_answers.front();
            m_answers.pop_front();
            if (accepted(answer))
                return answer;
        }
        if (!m_link.Connected() || deadline.hasExpired())
            return {};
        wait(int(std::max<qint64>(deadline.remainingTime(), 1)));
    }
}

} // namespace tarnload
