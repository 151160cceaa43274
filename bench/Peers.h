// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QStringList>

/// Peers of a bench: a Python program of this folder that waits for tasks, a line each, and times them itself. It runs
/// in a process of its own, so that what it loads does not weigh on the program under test.
class Peers
{
public:
    ~Peers() { end(); }

    /// Starts the program and times its first task; false when it cannot, see errors().
    bool start(const QString& program, const QStringList& arguments, const char* firstTask)
    {
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        QStringList{QStringLiteral(MG_SOURCE_DIR "/bench/") + program} + arguments);
        return m_process.waitForStarted() && time(firstTask) >= 0;
    }
    /// Milliseconds; negative when the peers have ended.
    double time(const char* task)
    {
        m_process.write(QByteArray(task) + '\n');
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(60000))
                return -1;
        }
        return m_process.readLine().trimmed().toDouble();
    }
    /// Ends them and tells what they said of their trouble.
    QByteArray errors()
    {
        end();
        return m_process.readAllStandardError().trimmed();
    }

private:
    void end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    QProcess m_process;
};
