// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptTransfer.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/Commands.h"
#include "link/MainWindowPort.h"

#include <QFile>
#include <QPointer>

#include <algorithm>

namespace {

constexpr int kRoomWait = 1; // ms between two looks whether the link has taken the piece

} // namespace

ScriptTransfer::ScriptTransfer(KorvaLink& device, MainWindowPort& port, QObject* parent)
    : QObject(parent)
    , m_device(device)
    , m_port(port)
{}

ScriptTransfer::End ScriptTransfer::DownLoadFile(const QString& a_FileName)
{
    if (m_running)
        return End::None;
    m_running = true;
    m_cancelled = false;
    m_end = End::None;
    m_fileName = a_FileName;
    m_readProblem.clear();
    const QPointer<ScriptTransfer> self(this);
    QFile file(a_FileName);
    End end = End::Unreadable;
    if (!file.open(QIODevice::ReadOnly) || file.isSequential())
        m_readProblem = file.isOpen() ? tr("it is no ordinary file") : file.errorString();
    else if (file.size() == 0)
        end = End::Empty;
    else
        end = SendFile(file, file.size());
    if (!self)
        return End::None;
    m_running = false;
    m_end = end;
    return end;
}

void ScriptTransfer::write(const QByteArray& bytes)
{
    m_queued += static_cast<quint64>(bytes.size());
    m_device.Write(QString::fromLatin1(bytes));
}

bool ScriptTransfer::sendPiece(QFile& file, qint64 bytes)
{
    const QByteArray piece = file.read(bytes);
    if (piece.size() != bytes) {
        m_readProblem = file.error() == QFile::NoError ? tr("it has become shorter") : file.errorString();
        return false;
    }
    write(piece);
    return true;
}

ScriptTransfer::End ScriptTransfer::pump()
{
    const QPointer<ScriptTransfer> self(this);
    m_port.processEvents();
    if (!self)
        return End::LinkLost;
    if (!m_device.Connected() || m_device.Session() != m_session)
        return End::LinkLost;
    if (m_device.BytesQueued() != m_queued)
        return End::Disturbed;
    return m_cancelled ? End::Cancelled : End::None;
}

ScriptTransfer::End ScriptTransfer::SendFile(QFile& file, qint64 a_lLength)
{
    m_session = m_device.Session();
    m_queued = m_device.BytesQueued();
    Q_EMIT begun(a_lLength);
    qint64 lBytesSent = 0;
    write(command::loadScript(a_lLength).toLatin1());
    for (;;) {
        if (m_device.WritePending() == 0 && m_device.Connected()) {
            if (lBytesSent == a_lLength)
                return m_device.BytesQueued() == m_queued ? End::Whole : End::Disturbed;
            const qint64 lPieceSize = std::min(a_lLength - lBytesSent, kPieceSize);
            if (!sendPiece(file, lPieceSize))
                return End::Unreadable;
            lBytesSent += lPieceSize;
            Q_EMIT sent(lBytesSent);
        } else {
            m_device.Wait(kRoomWait);
        }
        if (const End end = pump(); end != End::None)
            return end;
    }
}

bool ScriptTransfer::isHeld() const
{
    return m_end == End::Whole && m_device.Connected() && m_device.Session() == m_session;
}

QString ScriptTransfer::problem() const
{
    switch (m_end) {
    case End::None:
        return {};
    case End::Whole:
        return isHeld() ? QString() : tr("The link to the instrument that was sent the script has ended.");
    case End::Unreadable:
        return tr("The script %1 cannot be read: %2.").arg(m_fileName, m_readProblem);
    case End::Empty:
        return tr("The script %1 is empty.").arg(m_fileName);
    case End::Cancelled:
        return tr("The sending of the script was cancelled.");
    case End::LinkLost:
        return tr("The link to the instrument went down while the script was sent.");
    case End::Disturbed:
        return tr("Something else was sent to the instrument in the midst of the script.");
    }
    return {};
}
