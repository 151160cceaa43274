// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/EventSounds.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class EventSoundsTest : public ::testing::Test
{
protected:
    EventSoundsTest()
    {
        qputenv("XDG_DATA_HOME", dir.filePath(QStringLiteral("data")).toLocal8Bit());
        qputenv("XDG_DATA_DIRS", dir.filePath(QStringLiteral("system")).toLocal8Bit());
        qputenv("PATH", dir.filePath(QStringLiteral("bin")).toLocal8Bit());
    }
    ~EventSoundsTest() override
    {
        restore("XDG_DATA_HOME", m_home);
        restore("XDG_DATA_DIRS", m_dirs);
        restore("PATH", m_path);
    }
    QString make(const QString& name, const QByteArray& bytes = {}, bool runs = false)
    {
        const QString path = dir.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        if (runs)
            file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser);
        return path;
    }
    QString sound(const QString& name) { return make(QStringLiteral("system/sounds/freedesktop/stereo/") + name); }

    QTemporaryDir dir;

private:
    static void restore(const char* name, const QByteArray& value)
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    QByteArray m_home = qgetenv("XDG_DATA_HOME");
    QByteArray m_dirs = qgetenv("XDG_DATA_DIRS");
    QByteArray m_path = qgetenv("PATH");
};

TEST_F(EventSoundsTest, AreSilentWithoutThemeOrPlayer)
{
    EXPECT_TRUE(DesktopSounds::soundFileOf(QStringLiteral("dialog-error")).isEmpty());
    EXPECT_TRUE(DesktopSounds::commandFor(QStringLiteral("dialog-error")).program.isEmpty());
    sound(QStringLiteral("dialog-error.oga"));
    EXPECT_TRUE(DesktopSounds::commandFor(QStringLiteral("dialog-error")).program.isEmpty());
    DesktopSounds().play(QStringLiteral("dialog-error"));
}

TEST_F(EventSoundsTest, ComeFromTheThemeMostSpecificNameFirst)
{
    const QString general = sound(QStringLiteral("dialog.oga"));
    EXPECT_EQ(DesktopSounds::soundFileOf(QStringLiteral("dialog-error")), general);
    const QString own = sound(QStringLiteral("dialog-error.oga"));
    EXPECT_EQ(DesktopSounds::soundFileOf(QStringLiteral("dialog-error")), own);
    EXPECT_EQ(DesktopSounds::soundFileOf(QStringLiteral("dialog-warning")), general);
    EXPECT_TRUE(DesktopSounds::soundFileOf(QStringLiteral("bell")).isEmpty());
    make(QStringLiteral("data/sounds/freedesktop/stereo/dialog-error.disabled"));
    EXPECT_TRUE(DesktopSounds::soundFileOf(QStringLiteral("dialog-error")).isEmpty());
}

TEST_F(EventSoundsTest, GoToThePlayerThatFollowsTheDesktopFirst)
{
    const QString file = sound(QStringLiteral("bell.oga"));
    const QString plain = make(QStringLiteral("bin/paplay"), "#!/bin/sh\n", true);
    EXPECT_EQ(DesktopSounds::commandFor(QStringLiteral("bell")).program, plain);
    EXPECT_EQ(DesktopSounds::commandFor(QStringLiteral("bell")).arguments, QStringList(file));
    const QString themed = make(QStringLiteral("bin/canberra-gtk-play"), "#!/bin/sh\n", true);
    EXPECT_EQ(DesktopSounds::commandFor(QStringLiteral("bell")).program, themed);
    EXPECT_EQ(DesktopSounds::commandFor(QStringLiteral("bell")).arguments, QStringList(QStringLiteral("--id=bell")));
}

TEST_F(EventSoundsTest, NeitherWaitForTheirPlayerNorLetItPrint)
{
    const QString told = dir.filePath(QStringLiteral("told"));
    const QString hold = dir.filePath(QStringLiteral("hold"));
    make(QStringLiteral("hold"));
    make(QStringLiteral("bin/canberra-gtk-play"),
         QStringLiteral("#!/bin/sh\necho noise\necho noise >&2\necho \"$1\" > '%1.new'\n/bin/mv '%1.new' '%1'\n"
                        "while [ -e '%2' ]; do /bin/sleep 0.01; done\n")
             .arg(told, hold)
             .toUtf8(),
         true);
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    DesktopSounds().play(QStringLiteral("dialog-question"));
    EXPECT_TRUE(QFile::exists(hold)) << "the player runs as long as this file is there, and play() has returned";
    const bool played = QTest::qWaitFor([&] { return QFile::exists(told); }, 20000);
    QFile::remove(hold);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    ASSERT_TRUE(played);
    QFile file(told);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "--id=dialog-question\n");
}

} // namespace
