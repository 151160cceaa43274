// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

/// A file system of its own of 256 KiB, where whoever runs the test may mount one; it goes with the object.
class SmallDisk
{
public:
    SmallDisk()
        : m_mounted(::mount("tmpfs", path().constData(), "tmpfs", 0, "size=256k") == 0)
    {}
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(path().constData(), MNT_DETACH);
        else
            ::chmod(path().constData(), 0700);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return m_mounted; }
    QString filePath(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

    /// Leaves not a byte.
    void fill() const
    {
        QFile file(filePath("filler"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray block(4096, 'f');
        while (file.write(block) == block.size()) {
        }
    }
    void empty() const { EXPECT_TRUE(QFile::remove(filePath("filler"))); }

    /// Nothing can be made or changed any more, not even by root.
    void makeReadOnly() const
    {
        if (m_mounted)
            ASSERT_EQ(::mount("tmpfs", path().constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
        else
            ASSERT_EQ(::chmod(path().constData(), 0500), 0);
    }

private:
    QByteArray path() const { return QFile::encodeName(m_folder.path()); }

    QTemporaryDir m_folder;
    bool m_mounted;
};
