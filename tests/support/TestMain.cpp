// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of every test program: offscreen platform, C locale, UTC and a home of its own, so that a test can neither see
// nor change anything of the person who runs it.
#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <clocale>
#include <cstdlib>
#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    QTemporaryDir home;
    if (!home.isValid())
        return EXIT_FAILURE;
    const auto folder = [&home](const char* variable, const char* name) {
        QDir(home.path()).mkpath(QLatin1String(name));
        qputenv(variable, QDir(home.path()).filePath(QLatin1String(name)).toLocal8Bit());
    };
    folder("HOME", "home");
    folder("XDG_CONFIG_HOME", "home/.config");
    folder("XDG_DATA_HOME", "home/.local/share");
    folder("XDG_STATE_HOME", "home/.local/state");
    folder("XDG_CACHE_HOME", "home/.cache");
    folder("XDG_DOCUMENTS_DIR", "home/Documents");
    folder("XDG_RUNTIME_DIR", "run");
    QFile::setPermissions(QDir(home.path()).filePath(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "UTC");
    std::setlocale(LC_ALL, "C.UTF-8");

    ::testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale::c());
    return RUN_ALL_TESTS();
}
