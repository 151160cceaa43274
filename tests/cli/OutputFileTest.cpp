// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputFile.h"

#include "cli/StandardStreams.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace cli;
using ::testing::HasSubstr;

namespace {

class OutputFileTest : public ::testing::Test
{
protected:
    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    static QByteArray content(const QString& name)
    {
        QFile file(name);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    static void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    static std::string said(const Outcome& outcome) { return outcome.sentence().toStdString(); }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(OutputFileTest, AFileIsReplacedAsAWhole)
{
    write(path("a"), "something longer than the new");
    const OutputFile file(path("a"));
    EXPECT_TRUE(file.isNamed());
    EXPECT_FALSE(file.isStandardOutput());
    EXPECT_TRUE(file.check().ok());
    EXPECT_EQ(content(path("a")), "something longer than the new") << "looking at it changes nothing";
    EXPECT_TRUE(file.write("new").ok());
    EXPECT_EQ(content(path("a")), "new");
    EXPECT_TRUE(OutputFile(path("b")).check().ok());
    EXPECT_FALSE(QFile::exists(path("b"))) << "looking at it makes nothing";
    EXPECT_FALSE(OutputFile().isNamed());
}

TEST_F(OutputFileTest, TheNamesOfStandardOutputAreStreams)
{
    for (const char* name : {"-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"})
        EXPECT_TRUE(OutputFile(QString::fromUtf8(name)).isStandardOutput()) << name;
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/stdout"), path("link")));
    EXPECT_TRUE(OutputFile(path("link")).isStandardOutput());
    for (const char* name : {"/dev/stderr", "/dev/fd/2", "./-", "/dev/null"})
        EXPECT_FALSE(OutputFile(QString::fromUtf8(name)).isStandardOutput()) << name;
    EXPECT_TRUE(OutputFile(QStringLiteral("-")).isSameAs(OutputFile(QStringLiteral("/dev/stdout"))));
}

TEST_F(OutputFileTest, AnOpenDescriptorIsWrittenToWhereItStands)
{
    write(path("all"), "before\n");
    const int descriptor = ::open(QFile::encodeName(path("all")).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    const OutputFile file(QStringLiteral("/dev/fd/%1").arg(descriptor));
    EXPECT_TRUE(file.check().ok());
    EXPECT_TRUE(file.write("behind\n").ok());
    ::close(descriptor);
    EXPECT_EQ(content(path("all")), "before\nbehind\n");
    EXPECT_FALSE(file.check().ok());
    EXPECT_THAT(said(file.write("x")), HasSubstr("it is closed"));
}

TEST_F(OutputFileTest, ADeviceIsWrittenToAndNotReplaced)
{
    const OutputFile null(QStringLiteral("/dev/null")), full(QStringLiteral("/dev/full"));
    EXPECT_TRUE(null.check().ok());
    EXPECT_TRUE(null.write("x").ok());
    EXPECT_FALSE(null.isSameAs(null)) << "it takes what comes";
    EXPECT_TRUE(full.check().ok());
    EXPECT_EQ(said(full.write("x")), "Cannot write to /dev/full: No space left on device.");
}

TEST_F(OutputFileTest, ANamedPipeIsWrittenTo)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    const OutputFile pipe(path("pipe"));
    EXPECT_TRUE(pipe.check().ok());
    QByteArray read;
    std::thread reader([&] { read = content(path("pipe")); });
    EXPECT_TRUE(pipe.write("through").ok());
    reader.join();
    EXPECT_EQ(read, "through");
}

TEST_F(OutputFileTest, WhatCannotBeWrittenIsKnownBefore)
{
    write(path("file"), "x");
    EXPECT_EQ(said(OutputFile(path("none/a")).check()),
              "Cannot write " + path("none/a").toStdString() + ": No such file or directory.");
    EXPECT_THAT(said(OutputFile(path("file/a")).check()), HasSubstr("Not a directory"));
    EXPECT_THAT(said(OutputFile(m_folder.path()).check()), HasSubstr("Is a directory"));
    EXPECT_THAT(said(OutputFile(path("sub/")).check()), HasSubstr("Is a directory"));
    EXPECT_FALSE(OutputFile(QStringLiteral("/dev/fd/987")).check().ok());
    const int readOnly = ::open(QFile::encodeName(path("file")).constData(), O_RDONLY | O_CLOEXEC);
    EXPECT_FALSE(OutputFile(QStringLiteral("/dev/fd/%1").arg(readOnly)).check().ok());
    ::close(readOnly);
}

TEST_F(OutputFileTest, APipeThatNobodyReadsIsKnownBefore)
{
    std::array<int, 2> ends = {-1, -1};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    EXPECT_TRUE(checkStream(ends[1], QStringLiteral("pipe")).ok());
    ::close(ends[0]);
    EXPECT_EQ(said(checkStream(ends[1], QStringLiteral("pipe"))), "Cannot write to pipe: nobody reads it any more.");
    ::close(ends[1]);
}

TEST_F(OutputFileTest, TwoNamesOfOneFileAreTheSame)
{
    EXPECT_TRUE(OutputFile(path("a")).isSameAs(OutputFile(path("a"))));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("sub")));
    write(path("a"), "x");
    EXPECT_TRUE(OutputFile(path("a")).isSameAs(OutputFile(path("sub/../a"))));
    ASSERT_TRUE(QFile::link(path("a"), path("link")));
    EXPECT_TRUE(OutputFile(path("a")).isSameAs(OutputFile(path("link"))));
    EXPECT_FALSE(OutputFile(path("a")).isSameAs(OutputFile(path("b"))));
    EXPECT_FALSE(OutputFile().isSameAs(OutputFile()));
}
