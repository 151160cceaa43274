// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>
#include <vector>

/// A pseudo-terminal whose master a test holds, as an instrument would. The slave side is raw.
class Pty
{
public:
    Pty();
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
    QString m_slavePath;
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
