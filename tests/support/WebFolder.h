// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A folder that a real web server (nginx) lists and serves on a loopback port; it ends with the object. Port and
/// folder are its own.
class WebFolder
{
public:
    WebFolder();
    ~WebFolder();
    WebFolder(const WebFolder&) = delete;
    WebFolder& operator=(const WebFolder&) = delete;

    bool started() const { return m_started; }
    /// "http://127.0.0.1:PORT/updates/"
    QString url() const;
    /// Puts a file into the folder; true when it is there.
    bool add(const QString& name, const QByteArray& content);
    /// One line for each request: method, path, status, agent.
    QByteArray log() const;

private:
    bool start();

    QTemporaryDir m_folder;
    QProcess m_server;
    int m_port = 0;
    bool m_started = false;
};
