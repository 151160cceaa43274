// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// A pseudo-terminal whose instrument's end a test holds. The host's end is raw. For an instrument that answers by
/// itself see instrument/ScriptedInstrument.h.
class Pty
{
public:
    enum class HostEnd
    {
        Closed,  ///< bytes that are sent before a host has opened it are lost
        KeptOpen ///< nothing is lost, and nobody sees a host come or go
    };
    explicit Pty(HostEnd hostEnd = HostEnd::Closed);
    ~Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    bool isValid() const { return m_master >= 0; }
    const QString& slavePath() const { return m_slavePath; }
    int master() const { return m_master; }
    /// Sends as much as fits; returns what did.
    qint64 send(const QByteArray& bytes);
    /// What has arrived so far.
    QByteArray receive();
    /// The instrument goes away.
    void unplug();

private:
    int m_master = -1;
    int m_slave = -1;
    QString m_slavePath;
};

/// A host reduced to the least: opens a terminal device raw, writes, and keeps every byte that comes.
class PtyHost
{
public:
    /// Far beyond what anything here takes; a condition that has not come by then never will.
    static constexpr std::chrono::seconds kPatience{30};

    explicit PtyHost(const QString& device);
    ~PtyHost() { close(); }
    PtyHost(const PtyHost&) = delete;
    PtyHost& operator=(const PtyHost&) = delete;

    void close();
    /// Writes all of it; false when the other end takes no more, or is gone.
    bool write(std::string_view bytes);
    /// Reads until the condition holds. False when the other end is gone or patience is at its end before that.
    bool readUntil(const std::function<bool()>& condition);
    bool lost() const { return m_lost; }

    std::string bytes;              ///< all that has come
    std::vector<std::size_t> reads; ///< how much at a time

private:
    bool wait(short events) const;

    int m_file;
    bool m_lost = false;
};

/// Takes this process's right to open other people's files while it lives: a no-op for an ordinary user.
class OrdinaryUser
{
public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool m_changed = false;
    std::vector<gid_t> m_groups;
};

/// Number of files this process has open.
int openFiles();
