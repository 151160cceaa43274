// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/DeviceEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <unistd.h>

using sim::DeviceEntry;

namespace {

QString devices()
{
    return QFile::decodeName(DeviceEntry::runtimeFolder().value()) + "/devices";
}

QByteArray targetOf(const QByteArray& path)
{
    char target[256];
    const ssize_t length = ::readlink(path.constData(), target, sizeof target);
    return length < 0 ? QByteArray() : QByteArray(target, static_cast<qsizetype>(length));
}

bool nothingLeft()
{
    const QString base = QFile::decodeName(DeviceEntry::runtimeFolder().value());
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir(base + "/devices").entryList(all).isEmpty() && QDir(base + "/locks").entryList(all).isEmpty();
}

} // namespace

TEST(DeviceEntry, IsALinkUnderTheSerialNumberForAsLongAsItLives)
{
    {
        DeviceEntry entry;
        ASSERT_TRUE(entry.claim("T46-1").ok());
        EXPECT_EQ(QFile::decodeName(entry.linkPath()), devices() + "/T46-1");
        EXPECT_EQ(targetOf(entry.linkPath()), QByteArray()) << "claimed, not yet published";
        ASSERT_TRUE(entry.publish("/dev/pts/77").ok());
        EXPECT_EQ(targetOf(entry.linkPath()), QByteArray("/dev/pts/77"));
    }
    EXPECT_TRUE(nothingLeft());
}

TEST(DeviceEntry, ReplacesOneLeftBehind)
{
    QDir().mkpath(devices());
    const QByteArray path = QFile::encodeName(devices() + "/T46-2");
    ASSERT_EQ(::symlink("/dev/pts/9999", path.constData()), 0);
    {
        DeviceEntry entry;
        ASSERT_TRUE(entry.claim("T46-2").ok());
        ASSERT_TRUE(entry.publish("/dev/pts/78").ok());
        EXPECT_EQ(targetOf(path), QByteArray("/dev/pts/78"));
    }
    EXPECT_TRUE(nothingLeft());
}

TEST(DeviceEntry, RefusesANumberThatIsInUse)
{
    DeviceEntry first, second;
    ASSERT_TRUE(first.claim("T46-3").ok());
    ASSERT_TRUE(first.publish("/dev/pts/1").ok());
    EXPECT_EQ(
        second.claim("T46-3").sentence(),
        QString("An instrument with the serial number \"T46-3\" is already running. Choose another with --serial."));
    EXPECT_EQ(targetOf(first.linkPath()), QByteArray("/dev/pts/1"));
    ASSERT_TRUE(second.claim("T46-4").ok());
    EXPECT_FALSE(second.claim("T46-3").ok());
    EXPECT_EQ(second.serial(), QByteArray("T46-4")) << "everything as it was";
}

TEST(DeviceEntry, ANewNumberTakesThePublishedEntryAlong)
{
    DeviceEntry entry;
    ASSERT_TRUE(entry.claim("T46-5").ok());
    ASSERT_TRUE(entry.publish("/dev/pts/5").ok());
    const QByteArray before = entry.linkPath();
    ASSERT_TRUE(entry.claim("T46-6").ok());
    EXPECT_EQ(targetOf(before), QByteArray());
    EXPECT_EQ(targetOf(entry.linkPath()), QByteArray("/dev/pts/5"));
    DeviceEntry other;
    EXPECT_TRUE(other.claim("T46-5").ok()) << "the old number is free again";
}

TEST(DeviceEntry, WithdrawnAtAnUnpluggingTheNumberStaysReserved)
{
    DeviceEntry entry, other;
    ASSERT_TRUE(entry.claim("T46-7").ok());
    ASSERT_TRUE(entry.publish("/dev/pts/5").ok());
    entry.withdraw();
    EXPECT_EQ(targetOf(entry.linkPath()), QByteArray());
    EXPECT_FALSE(other.claim("T46-7").ok());
    EXPECT_TRUE(entry.publish("/dev/pts/6").ok());
}

TEST(DeviceEntry, LeavesAloneWhatSomebodyElseHasPutInItsPlace)
{
    QByteArray path;
    {
        DeviceEntry entry;
        ASSERT_TRUE(entry.claim("T46-8").ok());
        ASSERT_TRUE(entry.publish("/dev/pts/5").ok());
        path = entry.linkPath();
        ASSERT_EQ(::unlink(path.constData()), 0);
        ASSERT_EQ(::symlink("/dev/pts/6", path.constData()), 0);
    }
    EXPECT_EQ(targetOf(path), QByteArray("/dev/pts/6"));
    EXPECT_EQ(::unlink(path.constData()), 0);
}

TEST(DeviceEntry, WithoutARuntimeFolderThatIsTheUsersOwnItIsRefused)
{
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray temporary = qgetenv("TMPDIR");
    // Neither the one set nor the one in the folder for temporary files can be made.
    qputenv("XDG_RUNTIME_DIR", "/nonexistent/run");
    qputenv("TMPDIR", "/nonexistent/tmp");
    DeviceEntry entry;
    EXPECT_EQ(entry.claim("T46-9").sentence(),
              QString("There is no runtime folder in which hosts could find the instrument. Set XDG_RUNTIME_DIR to a "
                      "folder of your own with mode 0700."));
    qputenv("XDG_RUNTIME_DIR", "relative-run");
    EXPECT_FALSE(entry.claim("T46-9").ok()) << "relative to wherever the program happens to stand";
    qputenv("XDG_RUNTIME_DIR", before);
    if (temporary.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", temporary);
    EXPECT_EQ(QDir::root().entryList({"marrowick", "runtime-*"}, QDir::AllEntries), QStringList());
    EXPECT_FALSE(QFile::exists("relative-run")) << "made nowhere";
    EXPECT_TRUE(entry.claim("T46-9").ok());
}
