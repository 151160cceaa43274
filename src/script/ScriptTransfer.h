// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class KorvaLink;
class MainWindowPort;
class QFile;

/// Copies a script to the instrument, byte for byte, in pieces that are handed over one by one as the link takes them,
/// and knows whether what it sent last went out whole. Events are processed meanwhile; in them the link may be closed
/// or opened anew.
class ScriptTransfer : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 kPieceSize = 1024;

    enum class End
    {
        None,       ///< nothing has been sent yet, or a transfer is under way
        Whole,      ///< every byte was taken by the system, and nothing else in between
        Unreadable, ///< the file cannot be read, or not to the end that was announced
        Empty,      ///< a file without a byte: nothing was sent
        Cancelled,
        LinkLost, ///< down, or another connection than at the start
        Disturbed ///< something else was written to the instrument in the midst of it, or it took no more
    };

    /// Both outlive it.
    ScriptTransfer(KorvaLink& device, MainWindowPort& port, QObject* parent = nullptr);

    /// Returns when the transfer has ended, one way or another.
    End DownLoadFile(const QString& a_FileName);
    /// Ends the transfer that is under way: no further piece is sent.
    void cancel() { m_cancelled = true; }
    bool isRunning() const { return m_running; }

    /// The last transfer went out whole, over the connection that stands: "run" runs that script.
    bool isHeld() const;
    /// Why it is not, in a sentence for the user; empty while nothing has been sent.
    QString problem() const;
    /// It ended in a way that the user knows of: cancelled, or with the link, whose end is told elsewhere.
    bool endedSilently() const { return m_end == End::Cancelled || m_end == End::LinkLost; }

Q_SIGNALS:
    void begun(qint64 bytes);
    /// So many bytes of the script have been handed over.
    void sent(qint64 bytes);

private:
    End SendFile(QFile& file, qint64 a_lLength);
    bool sendPiece(QFile& file, qint64 bytes);
    void write(const QByteArray& bytes);
    /// Lets events run; what stands in the way of going on, or None.
    End pump();

    KorvaLink& m_device;
    MainWindowPort& m_port;
    QString m_fileName;
    QString m_readProblem;
    End m_end = End::None;
    bool m_running = false;
    bool m_cancelled = false;
    quint64 m_session = 0;
    quint64 m_queued = 0; ///< what the link has been given, if nobody else has written
};
