// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QObject>
#include <QString>

/// Moves bytes between KorvaLink and one instrument.
///
/// To add a transport: 1. derive from Transport; 2. list its devices in a DeviceSource (DeviceList.h); 3. hand that
/// source to the DeviceList that KorvaLink is given. The contract:
/// - open() reports exactly once, by its return value; it never raises a dialog and never blocks for long.
/// - write() hands bytes to the system without waiting: it takes the whole chunk or part of it and returns how many
/// bytes
///   it took, 0 when there is no room or no link; after a chunk not wholly taken bytesWritten() tells when more fit.
/// - received() hands over bytes as they come, in order, in chunks of any size.
/// - lost() is raised at most once per open(), when the other end or the cable is gone; KorvaLink then calls close().
/// - close() may be called at any time, also inside a signal, and raises nothing.
class Transport : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual Outcome open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    virtual qint64 write(const char* data, qint64 size) = 0;

Q_SIGNALS:
    void received(const char* data, qint64 size);
    void bytesWritten();
    void lost(const QString& sentence);
};
