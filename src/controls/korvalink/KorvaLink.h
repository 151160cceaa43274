// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/Transport.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>

class DeviceList;

/// The only door to an instrument: finds devices, opens one, queues commands, hands out whole frames.
///
/// Whole frames: what BytesAvailable() counts and Read() hands out ends one byte behind a carriage return. Lengths are
/// not judged here. A run without a carriage return longer than kLongestRun is dropped up to its carriage return and
/// the byte behind it.
///
/// Lives on the user-interface thread; all signals are raised there. DataReceived, WriteBufferFull and Disconnected
/// come from the event loop, never from inside a call; DeviceConnected comes from inside Open(). Inside any signal the
/// link may be closed, opened anew or destroyed.
///
/// One DataReceived shows the reader at most kPassLimit bytes; the rest is announced in later turns of the event loop,
/// after input, timers and painting have had theirs, so a device that never stops talking cannot freeze a window.
class KorvaLink : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 kLongestRun = 8192;           ///< bytes without a carriage return
    static constexpr qint64 kWriteQueueLimit = 64 * 1024; ///< bytes waiting to be written
    /// Bytes waiting to be read; past it the oldest whole frames stay and new ones are dropped.
    static constexpr qint64 kReadBufferLimit = 16 * 1024 * 1024;
    static constexpr qint64 kPassLimit = 32 * 1024; ///< bytes that one DataReceived shows; more than any one frame

    /// The list of devices is shared with the chooser; it outlives the link.
    explicit KorvaLink(DeviceList& devices, QObject* parent = nullptr);
    ~KorvaLink() override;

    /// Looks for devices anew and selects the one of that index within the class "KorvaLink", the only class there is.
    /// Closes nothing; an index without a device is told by Open().
    void Configure(const QString& deviceClass, int, int, int index);
    /// Opens the selected device; a device that was open is closed first without a signal. On success raises
    /// DeviceConnected before it returns; true when the link is then up.
    bool Open();
    /// Opens a given transport instead of a listed device (tests, command-line device paths).
    bool OpenTransport(std::unique_ptr<Transport> transport, const QString& name = {});
    /// Closes the link; raises nothing; what was not written or read is gone.
    void Close();
    bool Connected() const;
    /// Why the last Open() answered false, or why the device was lost, in a sentence for the user; empty after a
    /// success.
    QString LastError() const;
    /// Name of the open device; empty without one.
    QString ConnectedName() const;

    /// Queues the text (Latin-1) for the instrument. Without a link nothing happens. A text that does not fit into the
    /// queue is dropped whole and WriteBufferFull is raised: once for all texts dropped until it is raised, and not
    /// while a handler of it still runs.
    void Write(const QString& text);
    /// Bytes queued and not yet taken by the system.
    qint64 WritePending() const;
    /// Hands as much of the queue as possible to the system now. The link stays usable.
    void Flush();
    /// Bytes that Write() has taken over since the device was opened: who must not be interrupted sees whether others
    /// have written.
    quint64 BytesQueued() const;
    /// Another number behind every opening and every end of a link: what was learnt of one holds while it stays.
    quint64 Session() const;

    qint64 BytesAvailable() const;
    /// Copies up to count bytes, ending one byte behind a carriage return, into buffer; count becomes what was copied,
    /// 0 when the first frame is longer.
    void Read(qint64& count, QByteArray& buffer);
    /// The same without a copy by Qt: buffer has room for count bytes; returns what was copied.
    qint64 Read(char* buffer, qint64 count);

    /// DataReceived is raised whenever whole frames wait and events are enabled; after a pass that read nothing only
    /// when more frames have come. The flag belongs to the reader: opening and closing leave it alone.
    void DisableDataEvent();
    void EnableDataEvent();
    bool DataEventEnabled() const;

    /// Blocks for that time; no events are processed.
    void Wait(int milliseconds);

    /// Looks for devices anew and counts them.
    int DeviceCount() const;
    /// Name of a device of that count, cut to size - 1 characters; false when there is none of that index.
    bool GetDeviceName(int index, QString& buffer, int size = 128) const;
    /// Why a device of that count may not be opened, in a sentence for the user; empty when it may.
    QString GetDeviceProblem(int index) const;
    /// Kind of the open device as the enquire answer told: 0 none or unknown, 1 sweep oscillator, 2 sampling.
    /// Back to 0 when a link is opened or closed.
    std::int16_t DeviceType() const;
    void SetDeviceType(std::int16_t type);
    bool SamplingDevice() const { return DeviceType() == 2; }
    /// Test mode of the link: kept, and told to whoever asks.
    void SetTestMode(int value);
    int TestMode() const;

    /// Z = R + jX from modulus (Ohm) and signed phase (degrees); Y = 1/Z = G + jB (Siemens), B positive for a
    /// capacitor. What 0 Ohm gives is told in PolarConversion.h.
    void SetPolar(double modulus, double phase);
    double Resistance() const;
    double Reactance() const;
    double Conductance() const;
    double Susceptance() const;
    /// Modulus (Ohm) and signed phase (degrees, -180 to 180) from reactance and resistance (Ohm).
    void SetRectangular(double reactance, double resistance);
    double Modulus() const;
    double Phase() const;

    /// Logs every write and frame, time-stamped, to the file (format: controls/linklog/LinkLog.h); an empty name ends
    /// the log. A log that cannot be written any further ends by itself, which LogStopped tells.
    Outcome SetLogFile(const QString& fileName);

Q_SIGNALS:
    void DeviceConnected();
    void DataReceived();
    /// The device is gone without Close() having been called: the link is already closed. Raised once. Whole frames
    /// that came before are announced first, unless the reader has its event disabled; then they are lost.
    void Disconnected();
    void WriteBufferFull();
    /// A device has been plugged in. Devices are watched while something is connected to this signal.
    void DeviceAttached();
    void LogStopped(const QString& sentence);

protected:
    bool event(QEvent* event) override;
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
