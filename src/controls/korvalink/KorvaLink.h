#pragma once

#include "controls/korvalink/Transport.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class DeviceList;

/// The only door to an instrument: finds devices, opens one, queues commands, hands out whole frames.
///
/// Whole frames: what BytesAvailable() counts and Read() hands out ends one byte behind a carriage return. Lengths are
/// not judged here. A run without a carriage return longer than kLongestRun is dropped up to its carriage return.
///
/// Lives on the user-interface thread; all signals are raised there. Objects may be destroyed inside a signal.
class KorvaLink : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 kLongestRun = 8192;          ///< bytes without a carriage return
    static constexpr qint64 kWriteQueueLimit = 64 * 1024; ///< bytes waiting to be written
    static constexpr qint64 kReadBufferLimit = 16 * 1024 * 1024; ///< bytes waiting to be read; past it the oldest whole frames stay and new ones are dropped

    /// The list of devices is shared with the chooser; it outlives the link.
    explicit KorvaLink(DeviceList& devices, QObject* parent = nullptr);
    ~KorvaLink() override;

    /// Selects the device of that index within the class "KorvaLink". Closes nothing.
    void Configure(const QString& deviceClass, int, int, int index);
    /// Opens the selected device; a device that was open is closed first without a signal. On success raises
    /// DeviceConnected before it returns.
    bool Open();
    /// Opens a given transport instead of a listed device (tests, command-line device paths).
    bool OpenTransport(std::unique_ptr<Transport> transport, const QString& name = {});
    /// Closes the link; raises nothing; what was not written or read is gone.
    void Close();
    bool Connected() const;
    /// Why the last Open() answered false.
    QString LastError() const;

    /// Queues the text (Latin-1) for the instrument. Without a link nothing happens. A text that does not fit into the
    /// queue is dropped whole and WriteBufferFull is raised.
    void Write(const QString& text);
    /// Bytes queued and not yet taken by the system.
    qint64 WritePending() const;
    /// Hands as much of the queue as possible to the system now. The link stays usable.
    void Flush();

    qint64 BytesAvailable() const;
    /// Copies up to count bytes, ending one byte behind a carriage return, into buffer; count becomes what was copied.
    void Read(qint64& count, QByteArray& buffer);
    /// The same without a copy by Qt: buffer has room for count bytes.
    qint64 Read(char* buffer, qint64 count);

    /// DataReceived is raised whenever whole frames wait and events are enabled; after a pass that read nothing only when
    /// more bytes have come.
    void DisableDataEvent();
    void EnableDataEvent();
    bool DataEventEnabled() const;

    /// Blocks for that time; no events are processed.
    void Wait(int milliseconds);

    int DeviceCount() const;
    bool GetDeviceName(int index, QString& buffer, int size = 128) const;
    /// Kind of the open device as the enquire answer told: 0 none or unknown, 1 sweep oscillator, 2 sampling.
    std::int16_t DeviceType() const;
    void SetDeviceType(std::int16_t type);
    bool SamplingDevice() const { return DeviceType() == 2; }
    /// Test mode of the link: kept, and told to whoever asks.
    void SetTestMode(int value);
    int TestMode() const;

    /// Z = R + jX from modulus (Ohm) and signed phase (degrees); Y = 1/Z = G + jB (Siemens), B positive for a capacitor.
    void SetPolar(double modulus, double phase);
    double Resistance() const;
    double Reactance() const;
    double Conductance() const;
    double Susceptance() const;
    /// Modulus (Ohm) and signed phase (degrees, -180 to 180) from reactance and resistance (Ohm).
    void SetRectangular(double reactance, double resistance);
    double Modulus() const;
    double Phase() const;

    /// Logs every write and frame, time-stamped, to the file; an empty name ends the log.
    Outcome SetLogFile(const QString& fileName);

Q_SIGNALS:
    void DeviceConnected();
    void DataReceived();
    /// The device is gone without Close() having been called: the link is already closed. Raised once.
    void Disconnected();
    void WriteBufferFull();
    /// A device has appeared that was not listed before.
    void DeviceAttached();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
