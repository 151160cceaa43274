// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/KorvaLink.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/FrameBuffer.h"
#include "controls/korvalink/WriteQueue.h"
#include "controls/linklog/LinkLogWriter.h"
#include "controls/polar/PolarConversion.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaMethod>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <cstring>

namespace {

const QEvent::Type kDataWaits = static_cast<QEvent::Type>(QEvent::registerEventType());
const QEvent::Type kWritesDropped = static_cast<QEvent::Type>(QEvent::registerEventType());
const QEvent::Type kLogStopped = static_cast<QEvent::Type>(QEvent::registerEventType());

const QString kDeviceClass = QStringLiteral("KorvaLink");

} // namespace

struct KorvaLink::Private
{
    Private(KorvaLink& link, DeviceList& list)
        : q(link)
        , devices(list)
    {}

    bool passWanted() const { return eventsEnabled && readable && buffer.wholeBytes() > 0 && (framesCame || passRead); }
    void announce();
    bool raisePass();
    void takeBytes(const char* data, qint64 size);
    void logFrames(const char* data, qint64 size);
    void log(linklog::Entry::Kind kind, QByteArrayView bytes);
    void handOver();
    void handleLoss(const QString& sentence);
    void dropTransport();
    void forgetSession();

    KorvaLink& q;
    DeviceList& devices;
    int selected = -1;
    QString lastError;

    std::unique_ptr<Transport> transport;
    QString name;
    quint64 session = 0;   // counts opens and closes, so that code behind a signal knows whether its link still stands
    bool readable = false; // the link is up, or its last frames are being handed out
    int inTransportSignal = 0;

    FrameBuffer buffer{kLongestRun, kReadBufferLimit};
    bool eventsEnabled = true;
    bool framesCame = false; // since the last DataReceived
    bool passRead = false;   // the same
    bool passPosted = false;
    int passDepth = 0;
    qint64 passLeft = -1; // what the running pass may still show; -1 outside a pass

    WriteQueue queue{kWriteQueueLimit};
    quint64 queued = 0;
    bool handingOver = false;
    bool dropPosted = false;
    bool dropHandled = false;

    std::int16_t deviceType = 0;
    int testMode = 0;
    polar::Rectangular rectangular;
    polar::Polar polarForm;
    linklog::Writer logFile;
};

KorvaLink::KorvaLink(DeviceList& devices, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this, devices))
{}

KorvaLink::~KorvaLink()
{
    Close();
}

void KorvaLink::Configure(const QString& deviceClass, int, int, int index)
{
    d->devices.refresh();
    d->selected = deviceClass == kDeviceClass ? index : -1;
}

bool KorvaLink::Open()
{
    std::unique_ptr<Transport> transport = d->devices.makeTransport(d->selected);
    if (!transport) {
        Close();
        d->lastError = tr("No instrument was found.");
        return false;
    }
    return OpenTransport(std::move(transport), d->devices.device(d->selected).name);
}

bool KorvaLink::OpenTransport(std::unique_ptr<Transport> transport, const QString& name)
{
    Close();
    d->lastError = QString();
    const Outcome opened = transport->open();
    if (!opened) {
        d->lastError = opened.sentence();
        d->log(linklog::Entry::Remark, QByteArray("open failed: ") + d->lastError.toUtf8());
        return false;
    }
    ++d->session;
    d->queued = 0;
    d->transport = std::move(transport);
    d->name = name;
    d->readable = true;
    connect(d->transport.get(), &Transport::received, this,
            [this](const char* data, qint64 size) { d->takeBytes(data, size); });
    connect(d->transport.get(), &Transport::bytesWritten, this, [this] {
        ++d->inTransportSignal;
        const QPointer<KorvaLink> self(this);
        d->handOver();
        if (self)
            --d->inTransportSignal;
    });
    connect(d->transport.get(), &Transport::lost, this, [this](const QString& sentence) { d->handleLoss(sentence); });
    d->log(linklog::Entry::Remark, QByteArray("connected ") + name.toUtf8());

    const QPointer<KorvaLink> self(this);
    const quint64 session = d->session;
    Q_EMIT DeviceConnected();
    return self && d->session == session && Connected();
}

void KorvaLink::Close()
{
    if (!d->transport && !d->readable)
        return;
    d->log(linklog::Entry::Remark, "closed");
    d->dropTransport();
    d->forgetSession();
}

void KorvaLink::Private::dropTransport()
{
    if (!transport)
        return;
    transport->disconnect(&q);
    transport->close();
    // A transport is not destroyed under its own signal.
    if (inTransportSignal > 0)
        transport.release()->deleteLater();
    else
        transport.reset();
}

void KorvaLink::Private::forgetSession()
{
    ++session;
    readable = false;
    buffer.clear();
    queue.clear();
    framesCame = false;
    passRead = false;
    if (passDepth > 0)
        passLeft = 0;
    deviceType = 0;
    name = QString();
}

bool KorvaLink::Connected() const
{
    return d->transport && d->transport->isOpen();
}

QString KorvaLink::LastError() const
{
    return d->lastError;
}

QString KorvaLink::ConnectedName() const
{
    return Connected() ? d->name : QString();
}

void KorvaLink::Write(const QString& text)
{
    if (!Connected() || text.isEmpty())
        return;
    const QByteArray bytes = text.toLatin1();
    if (!d->queue.push(bytes)) {
        d->log(linklog::Entry::Remark, QByteArray("write dropped: ") + bytes.left(64));
        if (!d->dropPosted && !d->dropHandled) {
            d->dropPosted = true;
            QCoreApplication::postEvent(this, new QEvent(kWritesDropped));
        }
        return;
    }
    d->queued += static_cast<quint64>(bytes.size());
    d->log(linklog::Entry::ToInstrument, bytes);
    d->handOver();
}

quint64 KorvaLink::BytesQueued() const
{
    return d->queued;
}

quint64 KorvaLink::Session() const
{
    return d->session;
}

qint64 KorvaLink::WritePending() const
{
    return d->queue.size();
}

void KorvaLink::Flush()
{
    d->handOver();
}

void KorvaLink::Private::handOver()
{
    // A transport may report room from inside write(); the loop below sees to it anyway.
    if (handingOver)
        return;
    const QPointer<KorvaLink> self(&q);
    handingOver = true;
    while (queue.size() > 0 && transport) {
        const quint64 now = session;
        const QByteArrayView waiting = queue.waiting();
        ++inTransportSignal;
        const qint64 taken = transport->write(waiting.data(), waiting.size());
        if (!self)
            return;
        --inTransportSignal;
        // Whoever listens at the other end may have closed this link and opened another meanwhile.
        if (session != now)
            continue;
        if (taken <= 0)
            break;
        queue.drop(taken);
    }
    handingOver = false;
}

qint64 KorvaLink::BytesAvailable() const
{
    if (!d->readable)
        return 0;
    return d->passLeft >= 0 ? d->passLeft : d->buffer.wholeBytes();
}

qint64 KorvaLink::Read(char* buffer, qint64 count)
{
    const qint64 copied = d->buffer.read(buffer, std::min(count, BytesAvailable()));
    if (copied > 0) {
        d->passRead = true;
        if (d->passLeft >= 0)
            d->passLeft -= copied;
    }
    return copied;
}

void KorvaLink::Read(qint64& count, QByteArray& buffer)
{
    buffer.resize(std::clamp<qint64>(count, 0, BytesAvailable()));
    count = Read(buffer.data(), buffer.size());
    buffer.resize(count);
}

void KorvaLink::DisableDataEvent()
{
    d->eventsEnabled = false;
}

void KorvaLink::EnableDataEvent()
{
    d->eventsEnabled = true;
    d->announce();
}

bool KorvaLink::DataEventEnabled() const
{
    return d->eventsEnabled;
}

void KorvaLink::Private::announce()
{
    if (passPosted || !passWanted())
        return;
    passPosted = true;
    QCoreApplication::postEvent(&q, new QEvent(kDataWaits), Qt::LowEventPriority);
}

bool KorvaLink::Private::raisePass()
{
    const QPointer<KorvaLink> self(&q);
    framesCame = false;
    passRead = false;
    ++passDepth;
    passLeft = buffer.wholeWithin(kPassLimit);
    Q_EMIT q.DataReceived();
    if (!self)
        return false;
    // What a pass inside this one has read is gone: the outer one sees nothing more and is followed by another.
    passLeft = --passDepth > 0 ? 0 : -1;
    return true;
}

void KorvaLink::Private::takeBytes(const char* data, qint64 size)
{
    if (!readable)
        return;
    const qint64 before = buffer.wholeBytes();
    const qint64 droppedBefore = buffer.droppedBytes();
    buffer.append(data, size);
    const qint64 came = buffer.wholeBytes() - before;
    if (logFile.isOpen()) {
        logFrames(buffer.front() + before, came);
        if (const qint64 dropped = buffer.droppedBytes() - droppedBefore; dropped > 0)
            log(linklog::Entry::Remark, "dropped " + QByteArray::number(dropped) + " bytes");
    }
    if (came > 0) {
        framesCame = true;
        announce();
    }
}

void KorvaLink::Private::logFrames(const char* data, qint64 size)
{
    while (size > 0) {
        const void* found = std::memchr(data, '\r', std::size_t(size));
        const qint64 length = std::min<qint64>(static_cast<const char*>(found) - data + 2, size);
        logFile.add(linklog::Entry::FromInstrument, QByteArrayView(data, length));
        data += length;
        size -= length;
    }
    log(linklog::Entry::FromInstrument, {});
}

void KorvaLink::Private::log(linklog::Entry::Kind kind, QByteArrayView bytes)
{
    if (!logFile.isOpen())
        return;
    if (!bytes.isEmpty())
        logFile.add(kind, bytes);
    logFile.flush();
    if (!logFile.isOpen())
        QCoreApplication::postEvent(&q, new QEvent(kLogStopped));
}

void KorvaLink::Private::handleLoss(const QString& sentence)
{
    if (!transport)
        return;
    ++inTransportSignal;
    log(linklog::Entry::Remark, QByteArray("lost: ") + sentence.toUtf8());
    dropTransport();
    queue.clear();
    lastError = sentence;
    --inTransportSignal;

    // Points that came before the cable went still belong to the test, also when a message in front of them has kept
    // them waiting.
    const quint64 now = session;
    const auto framesWait = [this] { return readable && buffer.wholeBytes() > 0 && (framesCame || passRead); };
    while (framesWait()) {
        if (!raisePass() || session != now)
            return;
    }
    forgetSession();
    Q_EMIT q.Disconnected();
}

bool KorvaLink::event(QEvent* event)
{
    if (event->type() == kDataWaits) {
        d->passPosted = false;
        if (d->passWanted() && d->raisePass())
            d->announce();
        return true;
    }
    if (event->type() == kWritesDropped) {
        d->dropPosted = false;
        d->dropHandled = true;
        const QPointer<KorvaLink> self(this);
        Q_EMIT WriteBufferFull();
        if (self)
            d->dropHandled = false;
        return true;
    }
    if (event->type() == kLogStopped) {
        Q_EMIT LogStopped(d->logFile.failure());
        return true;
    }
    return QObject::event(event);
}

void KorvaLink::Wait(int milliseconds)
{
    QThread::msleep(static_cast<unsigned long>(std::max(milliseconds, 0)));
}

int KorvaLink::DeviceCount() const
{
    d->devices.refresh();
    return d->devices.count();
}

bool KorvaLink::GetDeviceName(int index, QString& buffer, int size) const
{
    if (index < 0 || index >= d->devices.count())
        return false;
    buffer = d->devices.device(index).name.left(std::max(size - 1, 0));
    return true;
}

QString KorvaLink::GetDeviceProblem(int index) const
{
    return d->devices.device(index).problem;
}

std::int16_t KorvaLink::DeviceType() const
{
    return d->deviceType;
}

void KorvaLink::SetDeviceType(std::int16_t type)
{
    d->deviceType = type;
}

void KorvaLink::SetTestMode(int value)
{
    d->testMode = value;
}

int KorvaLink::TestMode() const
{
    return d->testMode;
}

void KorvaLink::SetPolar(double modulus, double phase)
{
    d->rectangular = polar::toRectangular(modulus, phase);
}

double KorvaLink::Resistance() const
{
    return d->rectangular.resistance;
}

double KorvaLink::Reactance() const
{
    return d->rectangular.reactance;
}

double KorvaLink::Conductance() const
{
    return d->rectangular.conductance;
}

double KorvaLink::Susceptance() const
{
    return d->rectangular.susceptance;
}

void KorvaLink::SetRectangular(double reactance, double resistance)
{
    d->polarForm = polar::toPolar(reactance, resistance);
}

double KorvaLink::Modulus() const
{
    return d->polarForm.modulus;
}

double KorvaLink::Phase() const
{
    return d->polarForm.phase;
}

Outcome KorvaLink::SetLogFile(const QString& fileName)
{
    if (fileName.isEmpty()) {
        d->logFile.close();
        return Outcome::success();
    }
    Outcome opened = d->logFile.open(fileName);
    if (opened && Connected())
        d->log(linklog::Entry::Remark, QByteArray("connected ") + d->name.toUtf8());
    return opened;
}

void KorvaLink::connectNotify(const QMetaMethod& signal)
{
    if (signal != QMetaMethod::fromSignal(&KorvaLink::DeviceAttached))
        return;
    connect(&d->devices, &DeviceList::deviceAppeared, this, &KorvaLink::DeviceAttached, Qt::UniqueConnection);
    d->devices.startWatching();
}

void KorvaLink::disconnectNotify(const QMetaMethod& signal)
{
    // An invalid method stands for a disconnect of everything.
    if (signal.isValid() && signal != QMetaMethod::fromSignal(&KorvaLink::DeviceAttached))
        return;
    // Who is still connected can only be asked when the disconnecting is over.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!isSignalConnected(QMetaMethod::fromSignal(&KorvaLink::DeviceAttached)))
                d->devices.stopWatching();
        },
        Qt::QueuedConnection);
}
