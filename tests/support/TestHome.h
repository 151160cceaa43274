// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <clocale>

/// Offscreen platform, C locale, UTC and a home of its own for a test program, so that a test can neither see nor
/// change anything of the person who runs it. Made before the application; the home goes with the object.
class TestHome
{
public:
    TestHome()
    {
        folder("HOME", "home");
        folder("XDG_CONFIG_HOME", "home/.config");
        folder("XDG_DATA_HOME", "home/.local/share");
        folder("XDG_STATE_HOME", "home/.local/state");
        folder("XDG_CACHE_HOME", "home/.cache");
        folder("XDG_DOCUMENTS_DIR", "home/Documents");
        folder("XDG_RUNTIME_DIR", "run");
        QFile::setPermissions(QDir(m_home.path()).filePath(QStringLiteral("run")),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("LC_ALL", "C.UTF-8");
        qputenv("TZ", "UTC");
        std::setlocale(LC_ALL, "C.UTF-8");
    }

    bool isValid() const { return m_home.isValid(); }

private:
    void folder(const char* variable, const char* name)
    {
        QDir(m_home.path()).mkpath(QLatin1String(name));
        qputenv(variable, QDir(m_home.path()).filePath(QLatin1String(name)).toLocal8Bit());
    }

    QTemporaryDir m_home;
};
