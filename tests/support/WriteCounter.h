// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <climits>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

/// Counts how often files of a folder are replaced, as the system tells it.
class WriteCounter
{
public:
    /// The folder must exist.
    explicit WriteCounter(const QString& folder)
        : m_queue(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        EXPECT_GE(::inotify_add_watch(m_queue, QFile::encodeName(folder).constData(), IN_MOVED_TO), 0);
    }
    ~WriteCounter() { ::close(m_queue); }
    WriteCounter(const WriteCounter&) = delete;
    WriteCounter& operator=(const WriteCounter&) = delete;

    /// Since the last call.
    int take()
    {
        int count = 0;
        alignas(inotify_event) char buffer[64 * (sizeof(inotify_event) + NAME_MAX + 1)];
        for (ssize_t size = 0; (size = ::read(m_queue, buffer, sizeof buffer)) > 0;) {
            for (ssize_t at = 0; at < size; ++count)
                at += static_cast<ssize_t>(sizeof(inotify_event)) +
                      reinterpret_cast<const inotify_event*>(buffer + at)->len;
        }
        return count;
    }

private:
    int m_queue;
};
