// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/SettingsStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString kApp = QStringLiteral("MarrowickGraph");

QString text(const char* bytes)
{
    return QString::fromUtf8(bytes);
}

class SettingsStoreTest : public ::testing::Test
{
protected:
    QString get(const char* section, const char* key, const QVariant& fallback = {}) const
    {
        return store.GetSetting(kApp, text(section), text(key), fallback);
    }
    bool save(const char* section, const char* key, const QVariant& value)
    {
        return store.SaveSetting(kApp, text(section), text(key), value);
    }
    void writeFile(const QByteArray& bytes)
    {
        QDir().mkpath(store.folder());
        QFile file(store.fileOf(kApp));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    QByteArray fileBytes() const
    {
        QFile file(store.fileOf(kApp));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir dir;
    SettingsStore store{dir.filePath(QStringLiteral("config/marrowick"))};
};

TEST_F(SettingsStoreTest, GivesTheDefaultAsText)
{
    EXPECT_EQ(get("A", "b", true), QStringLiteral("True"));
    EXPECT_EQ(get("A", "b", false), QStringLiteral("False"));
    EXPECT_EQ(get("A", "b", 1000.5), QStringLiteral("1000.5"));
    EXPECT_EQ(get("A", "b", 0.1f), QStringLiteral("0.1"));
    EXPECT_EQ(get("A", "b", 14737632), QStringLiteral("14737632"));
    EXPECT_EQ(get("A", "b", QVariant::fromValue<std::int16_t>(-7)), QStringLiteral("-7"));
    EXPECT_EQ(get("A", "b", QStringLiteral("Tahoma")), QStringLiteral("Tahoma"));
    EXPECT_EQ(get("A", "b"), QString());
    EXPECT_FALSE(store.contains(kApp, text("A"), text("b")));
    EXPECT_FALSE(QFile::exists(store.folder())) << "asking leaves no trace";
}

TEST_F(SettingsStoreTest, SavesTheTextFormOfAValue)
{
    EXPECT_TRUE(save("A", "flag", true));
    EXPECT_TRUE(save("A", "double", 1e6));
    EXPECT_TRUE(save("A", "single", 0.1f));
    EXPECT_TRUE(save("A", "integer", 5));
    EXPECT_TRUE(save("A", "text", QStringLiteral("x")));
    EXPECT_EQ(get("A", "flag", false), QStringLiteral("True"));
    EXPECT_EQ(get("A", "double"), QStringLiteral("1000000"));
    EXPECT_EQ(get("A", "single"), QStringLiteral("0.1"));
    EXPECT_EQ(get("A", "integer"), QStringLiteral("5"));
    EXPECT_EQ(get("A", "text"), QStringLiteral("x"));
    EXPECT_TRUE(store.contains(kApp, text("A"), text("flag")));
}

TEST_F(SettingsStoreTest, KeepsAnEmptyTextApartFromAnAbsentKey)
{
    EXPECT_TRUE(save("Paths", "PlotFiles", QString()));
    EXPECT_TRUE(store.contains(kApp, text("Paths"), text("PlotFiles")));
    EXPECT_EQ(get("Paths", "PlotFiles", QStringLiteral("default")), QString());
}

TEST_F(SettingsStoreTest, HasThreeLevels)
{
    EXPECT_TRUE(save("General", "x", 1));
    EXPECT_TRUE(save("Device", "x", 2));
    EXPECT_TRUE(store.SaveSetting(QStringLiteral("MarrowickGraph1"), text("General"), text("x"), 3));
    SettingsStore restarted(store.folder());
    EXPECT_EQ(restarted.GetSetting(kApp, text("General"), text("x"), 0), QStringLiteral("1"));
    EXPECT_EQ(restarted.GetSetting(kApp, text("Device"), text("x"), 0), QStringLiteral("2"));
    EXPECT_EQ(restarted.GetSetting(QStringLiteral("MarrowickGraph1"), text("General"), text("x"), 0),
              QStringLiteral("3"));
    EXPECT_EQ(restarted.GetSetting(kApp, text("general"), text("x"), 0), QStringLiteral("0"));
}

TEST_F(SettingsStoreTest, KeepsTextsOfAnyContent)
{
    const QStringList nasty{text(" leading"),          text("50 % @Invalid, \"q\"; x=y"),
                            text("line\nline\r\n"),    text("\xce\xa9 \xf0\x9f\x8e\x9b"),
                            text("\\\\server\\new\\"), text("[a]")};
    for (const QString& one : nasty)
        ASSERT_TRUE(store.SaveSetting(kApp, one, one, one));
    SettingsStore restarted(store.folder());
    for (const QString& one : nasty)
        EXPECT_EQ(restarted.GetSetting(kApp, one, one, 0), one);
}

TEST_F(SettingsStoreTest, TakesAnyTitle)
{
    for (const QString& title : {text("../up"), text("a/b"), text(".hidden"), text(""), text("\xce\xa9")}) {
        EXPECT_TRUE(store.SaveSetting(title, text("S"), text("k"), title));
        EXPECT_EQ(store.GetSetting(title, text("S"), text("k"), 0), title);
        EXPECT_EQ(QFileInfo(store.fileOf(title)).absolutePath(), store.folder());
    }
}

TEST_F(SettingsStoreTest, ShowsAtOnceWhatAnotherCopyWrote)
{
    SettingsStore other(store.folder());
    for (int i = 10; i < 60; ++i) {
        ASSERT_TRUE(other.SaveSetting(kApp, text("A"), text("k"), i));
        ASSERT_EQ(get("A", "k").toInt(), i) << "same size, same moment";
    }
    EXPECT_TRUE(QFile::remove(store.fileOf(kApp)));
    EXPECT_EQ(get("A", "k", -1), QStringLiteral("-1"));
}

TEST_F(SettingsStoreTest, SeesAChangeOfAnOldFile)
{
    writeFile("[A]\nk=1\n");
    QFile file(store.fileOf(kApp));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
    file.close();
    EXPECT_EQ(get("A", "k"), QStringLiteral("1"));
    EXPECT_EQ(get("A", "k"), QStringLiteral("1"));
    writeFile("[A]\nk=2\n");
    EXPECT_EQ(get("A", "k"), QStringLiteral("2"));
}

TEST_F(SettingsStoreTest, LosesNoKeyOfCopiesThatWriteAtOnce)
{
    constexpr int kCopies = 4;
    constexpr int kSaves = 25;
    std::vector<pid_t> children;
    for (int copy = 0; copy < kCopies; ++copy) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            bool good = true;
            {
                SettingsStore own(store.folder());
                for (int i = 0; i < kSaves && good; ++i) {
                    const QString section = QStringLiteral("S%1").arg(copy);
                    good = own.SaveSetting(kApp, section, QStringLiteral("k%1").arg(i), i) &&
                           own.SaveSetting(kApp, section, QStringLiteral("last"), 1000 + i) &&
                           own.GetSetting(kApp, section, QStringLiteral("last"), 0) == QString::number(1000 + i);
                }
            }
            ::_exit(good ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    for (int copy = 0; copy < kCopies; ++copy) {
        for (int i = 0; i < kSaves; ++i)
            ASSERT_EQ(store.GetSetting(kApp, QStringLiteral("S%1").arg(copy), QStringLiteral("k%1").arg(i), -1),
                      QString::number(i));
        EXPECT_EQ(store.GetSetting(kApp, QStringLiteral("S%1").arg(copy), QStringLiteral("last"), -1),
                  QString::number(1000 + kSaves - 1));
    }
    EXPECT_FALSE(store.takeDamage());
}

TEST_F(SettingsStoreTest, SetsADamagedFileAsideAndTellsOnce)
{
    writeFile("[A]\nk=1\ngarbage\n");
    EXPECT_EQ(get("A", "k", 7), QStringLiteral("7"));
    const auto damage = store.takeDamage();
    ASSERT_TRUE(damage);
    const QString aside = damage->setAside;
    EXPECT_TRUE(damage->sentence().contains(aside));
    EXPECT_EQ(aside, store.fileOf(kApp) + QStringLiteral(".damaged-1"));
    EXPECT_TRUE(QFile::exists(aside));
    EXPECT_FALSE(store.takeDamage());
    EXPECT_EQ(get("A", "k", 7), QStringLiteral("7"));
    EXPECT_FALSE(store.takeDamage());

    writeFile(QByteArray(100, '\0'));
    EXPECT_TRUE(save("A", "k", 8)) << "a save finds the damage too";
    const auto again = store.takeDamage();
    ASSERT_TRUE(again);
    EXPECT_EQ(again->setAside, store.fileOf(kApp) + QStringLiteral(".damaged-2"));
    EXPECT_EQ(get("A", "k", 7), QStringLiteral("8"));
}

TEST_F(SettingsStoreTest, StartsFromAFileTruncatedAnywhere)
{
    for (int i = 0; i < 8; ++i) {
        ASSERT_TRUE(save("Device", QByteArray("value").append(QByteArray::number(i)).constData(), 1000000 + i));
        ASSERT_TRUE(
            save("Paths", QByteArray("\xce\xa9").append(QByteArray::number(i)).constData(), text("/tmp/ \xce\xa9")));
    }
    const QByteArray whole = fileBytes();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        writeFile(whole.first(size));
        SettingsStore restarted(store.folder());
        int messages = 0;
        for (int i = 0; i < 8; ++i) {
            const QString value =
                restarted.GetSetting(kApp, text("Device"), QStringLiteral("value%1").arg(i), QStringLiteral("none"));
            ASSERT_TRUE(value == QStringLiteral("none") || value == QString::number(1000000 + i)) << size;
            messages += restarted.takeDamage() ? 1 : 0;
        }
        ASSERT_LE(messages, 1) << size;
        if (size % 16 != 0)
            continue; // each save waits for the disk
        ASSERT_TRUE(restarted.SaveSetting(kApp, text("Device"), text("value0"), 5)) << size;
        ASSERT_EQ(restarted.GetSetting(kApp, text("Device"), text("value0"), 0), QStringLiteral("5")) << size;
    }
}

TEST_F(SettingsStoreTest, RefusesToSaveWhereItCannotWrite)
{
    QFile occupied(dir.filePath(QStringLiteral("file")));
    ASSERT_TRUE(occupied.open(QIODevice::WriteOnly));
    SettingsStore below(occupied.fileName() + QStringLiteral("/marrowick"));
    EXPECT_FALSE(below.SaveSetting(kApp, text("A"), text("k"), 1));
    EXPECT_EQ(below.GetSetting(kApp, text("A"), text("k"), 2), QStringLiteral("2"));
    EXPECT_FALSE(below.takeDamage());

    SettingsStore inKernel(QStringLiteral("/proc/marrowick"));
    EXPECT_FALSE(inKernel.SaveSetting(kApp, text("A"), text("k"), 1));
}

TEST_F(SettingsStoreTest, LeavesAFileAloneThatItCannotRead)
{
    ASSERT_TRUE(QDir().mkpath(store.fileOf(kApp))) << "a folder in the place of the file";
    EXPECT_EQ(get("A", "k", 1), QStringLiteral("1"));
    EXPECT_FALSE(save("A", "k", 2));
    EXPECT_FALSE(store.takeDamage());
    EXPECT_TRUE(QFileInfo(store.fileOf(kApp)).isDir());
}

TEST_F(SettingsStoreTest, KeepsTheOldFileWholeWhenTheDiskIsFull)
{
    ASSERT_TRUE(save("A", "k", QString(300, u'x')));
    const QByteArray before = fileBytes();
    // A limit on the size of files fails writes the way a full disk does, whoever runs the test.
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{200, 200};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            ::_exit(2);
        ::_exit(store.SaveSetting(kApp, text("A"), text("k2"), 1) ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the save must fail";
    EXPECT_EQ(fileBytes(), before);
    EXPECT_EQ(get("A", "k"), QString(300, u'x'));
    const QStringList left = QDir(store.folder()).entryList(QDir::Files);
    EXPECT_EQ(left.size(), 2) << "the file and its lock: " << left.join(u' ').toStdString();
    EXPECT_TRUE(save("A", "k2", 1));
}

TEST_F(SettingsStoreTest, ReadsAFileOfTheLargestSizeAndNoneAbove)
{
    constexpr qsizetype kLargest = 16 << 20;
    ASSERT_TRUE(save("A", "k", QStringLiteral("x")));
    const QString longest(kLargest - fileBytes().size() + 1, u'x');
    ASSERT_TRUE(save("A", "k", longest));
    const QByteArray largest = fileBytes();
    ASSERT_EQ(largest.size(), kLargest);
    SettingsStore atTheBound(store.folder());
    EXPECT_TRUE(atTheBound.GetSetting(kApp, text("A"), text("k"), QString()) == longest);
    EXPECT_FALSE(atTheBound.takeDamage());

    QFile file(store.fileOf(kApp));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    ASSERT_EQ(file.write(QByteArray(largest).insert(largest.indexOf("xxxx"), 'x')), kLargest + 1);
    file.close();
    SettingsStore aboveIt(store.folder());
    EXPECT_TRUE(aboveIt.GetSetting(kApp, text("A"), text("k"), QString()).isEmpty());
    EXPECT_TRUE(aboveIt.takeDamage());
}

TEST_F(SettingsStoreTest, WritesABatchTogether)
{
    ASSERT_TRUE(save("A", "k", 1));
    const QByteArray before = fileBytes();
    {
        SettingsStore::Batch batch(store);
        EXPECT_TRUE(save("A", "k", 2));
        EXPECT_TRUE(save("A", "k", 3));
        {
            SettingsStore::Batch inner(store);
            EXPECT_TRUE(store.SaveSetting(QStringLiteral("Other"), text("B"), text("k"), 4));
        }
        EXPECT_EQ(get("A", "k"), QStringLiteral("3")) << "readers see what is not written yet";
        EXPECT_TRUE(store.contains(QStringLiteral("Other"), text("B"), text("k")));
        EXPECT_EQ(fileBytes(), before);
        EXPECT_TRUE(batch.commit());
        EXPECT_NE(fileBytes(), before);
        EXPECT_TRUE(batch.commit()) << "a second time is nothing";
        EXPECT_TRUE(save("A", "k", 5));
    }
    SettingsStore restarted(store.folder());
    EXPECT_EQ(restarted.GetSetting(kApp, text("A"), text("k"), 0), QStringLiteral("5"));
    EXPECT_EQ(restarted.GetSetting(QStringLiteral("Other"), text("B"), text("k"), 0), QStringLiteral("4"));
}

TEST_F(SettingsStoreTest, TellsThatABatchCouldNotBeWritten)
{
    SettingsStore nowhere(QStringLiteral("/proc/marrowick"));
    SettingsStore::Batch batch(nowhere);
    EXPECT_TRUE(nowhere.SaveSetting(kApp, text("A"), text("k"), 1));
    EXPECT_FALSE(batch.commit());
    EXPECT_FALSE(nowhere.contains(kApp, text("A"), text("k")));
}

TEST_F(SettingsStoreTest, IsNotHeldUpByACopyThatDiedWhileSaving)
{
    ASSERT_TRUE(save("A", "k", 1));
    QFile lock(store.fileOf(kApp) + QStringLiteral(".lock"));
    ASSERT_TRUE(lock.exists());
    EXPECT_TRUE(save("A", "k", 2)) << "a lock file that nobody holds does not count";
}

/// Another copy of the program, stopped while it holds the lock of the settings.
class StoppedCopy
{
public:
    explicit StoppedCopy(const QString& lockFile)
        : m_lock(::open(QFile::encodeName(lockFile).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        EXPECT_EQ(::flock(m_lock, LOCK_EX | LOCK_NB), 0);
    }
    ~StoppedCopy() { ::close(m_lock); }
    StoppedCopy(const StoppedCopy&) = delete;
    StoppedCopy& operator=(const StoppedCopy&) = delete;

private:
    int m_lock;
};

TEST_F(SettingsStoreTest, AStoppedCopyHoldsNobodyUpAndCostsNoChange)
{
    ASSERT_TRUE(save("A", "k0", 0));
    {
        SettingsStore waiting(store.folder());
        {
            const StoppedCopy stopped(store.fileOf(kApp) + QStringLiteral(".lock"));
            QElapsedTimer timer;
            timer.start();
            for (int i = 1; i < 20; ++i)
                EXPECT_TRUE(waiting.SaveSetting(kApp, text("A"), QStringLiteral("k%1").arg(i), i));
            EXPECT_LT(timer.elapsed(), 4000) << "all of them together";
            EXPECT_EQ(waiting.GetSetting(kApp, text("A"), text("k7"), -1), QStringLiteral("7"));
            EXPECT_EQ(get("A", "k7", -1), QStringLiteral("-1"));
        }
        EXPECT_TRUE(waiting.SaveSetting(kApp, text("A"), text("k1"), 100));
        EXPECT_EQ(get("A", "k7", -1), QStringLiteral("7"));
        EXPECT_EQ(get("A", "k1", -1), QStringLiteral("100")) << "the later one";

        const StoppedCopy stopped(store.fileOf(kApp) + QStringLiteral(".lock"));
        EXPECT_TRUE(waiting.SaveSetting(kApp, text("A"), text("last"), 5));
    }
    {
        SettingsStore waiting(store.folder());
        {
            const StoppedCopy stopped(store.fileOf(kApp) + QStringLiteral(".lock"));
            EXPECT_TRUE(waiting.SaveSetting(kApp, text("A"), text("end"), 6));
        }
    }
    EXPECT_EQ(get("A", "end", -1), QStringLiteral("6")) << "written at the end of the store";
}

TEST_F(SettingsStoreTest, ADamagedFileThatCannotBeMovedIsNotCalledSetAside)
{
    writeFile("garbage\n");
    // Every name for it is taken, which refuses the move to whoever runs the test.
    for (int number = 1; number < 1000; ++number)
        ASSERT_TRUE(QDir().mkpath(store.fileOf(kApp) + QStringLiteral(".damaged-%1").arg(number)));
    EXPECT_EQ(get("A", "k", 7), QStringLiteral("7"));
    const auto damage = store.takeDamage();
    ASSERT_TRUE(damage);
    EXPECT_TRUE(damage->setAside.isEmpty());
    EXPECT_TRUE(damage->sentence().contains(store.fileOf(kApp)));
    EXPECT_FALSE(damage->sentence().contains(text("were set aside")));
    EXPECT_EQ(fileBytes(), "garbage\n");
    get("A", "k", 7);
    EXPECT_FALSE(store.takeDamage()) << "told once";
}

TEST(SettingsStore, LivesInTheUsersConfigurationFolder)
{
    const SettingsStore store;
    EXPECT_EQ(store.folder(),
              QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/marrowick"));
    EXPECT_EQ(store.fileOf(kApp), store.folder() + QStringLiteral("/MarrowickGraph.ini"));
}

TEST(SettingsStore, AsksTheSystemsFolderBehindTheUsers)
{
    QTemporaryDir system;
    ASSERT_TRUE(QDir(system.path()).mkpath(QStringLiteral("marrowick")));
    QFile file(system.filePath(QStringLiteral("marrowick/MarrowickGraph.ini")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Paths]\nManual=/usr/share/doc/manual.pdf\n[Web]\nURL=https://updates.lab.example/\n");
    file.close();
    const QByteArray before = qgetenv("XDG_CONFIG_DIRS");
    qputenv("XDG_CONFIG_DIRS", system.path().toLocal8Bit());
    SettingsStore store;
    EXPECT_EQ(store.GetSetting(kApp, text("Paths"), text("Manual"), 0), text("/usr/share/doc/manual.pdf"));
    EXPECT_TRUE(store.SaveSetting(kApp, text("Web"), text("URL"), text("https://mine.example/")));
    EXPECT_EQ(store.GetSetting(kApp, text("Web"), text("URL"), 0), text("https://mine.example/"));
    if (before.isNull())
        qunsetenv("XDG_CONFIG_DIRS");
    else
        qputenv("XDG_CONFIG_DIRS", before);
}

} // namespace
