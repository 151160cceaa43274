// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/file/FirmwareFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A maker of firmware: a key of its own, a folder in which it is trusted, and files signed by it.
class FirmwareMaker
{
public:
    FirmwareMaker() { trust(key, QStringLiteral("maker")); }

    QString keyFolder() const { return m_folder.filePath(QStringLiteral("keys")); }
    QString path(const QString& name) const { return m_folder.filePath(name); }

    void trust(const firmware::SigningKey& trusted, const QString& name)
    {
        ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral("keys")));
        write(QStringLiteral("keys/") + name + QStringLiteral(".pub"), trusted.publicKey().toText());
    }

    QString write(const QString& name, const QByteArray& bytes)
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }

    static firmware::Header header(int major = 1, int minor = 29, int build = 7)
    {
        firmware::Header made;
        made.model = QStringLiteral("T46");
        made.hardware = {2, 3};
        made.major = major;
        made.minor = minor;
        made.build = build;
        made.notes = QStringLiteral("Sweeps begin sooner.");
        return made;
    }

    /// Bytes without a pattern that a lost or doubled block would not change.
    static QByteArray image(qsizetype size, unsigned seed = 1)
    {
        QByteArray bytes(size, '\0');
        for (char& byte : bytes) {
            seed = seed * 1103515245U + 12345U;
            byte = static_cast<char>(seed >> 16);
        }
        return bytes;
    }

    firmware::FirmwareFile make(const firmware::Header& wanted, const QByteArray& bytes) const
    {
        firmware::FirmwareFile file = firmware::pack(wanted, bytes);
        firmware::sign(file, key);
        return file;
    }

    const firmware::SigningKey key = firmware::SigningKey::generate();

private:
    QTemporaryDir m_folder;
};
