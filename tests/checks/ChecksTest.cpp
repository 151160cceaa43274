// SPDX-License-Identifier: GPL-3.0-or-later
// The checks of ./test find what they are there to find.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <gmock/gmock.h>

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

struct Ended
{
    int exitCode = -1;
    std::string output; ///< both streams
};

Ended check(const char* name, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(MG_SOURCE_DIR "/tests/checks/") + QLatin1String(name), arguments);
    Ended ended;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        ended.exitCode = process.exitCode();
    ended.output = process.readAllStandardOutput().toStdString();
    return ended;
}

/// A small tree of its own.
class ChecksTest : public ::testing::Test
{
protected:
    void write(const QString& name, const QByteArray& text)
    {
        const QString full = m_tree.filePath(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(full).path()));
        QFile file(full);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }

    QByteArray content(const QString& name) const
    {
        QFile file(m_tree.filePath(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_tree;
    const QByteArray m_licence = "SPDX-License-Identifier: GPL-3.0-or-later\n";
};

class TidyTest : public ChecksTest
{
protected:
    /// A stand-in for clang-tidy: finds "WRONG", writes down what it looks at, and breaks over "CRASH".
    void SetUp() override
    {
        write(QStringLiteral("tool"), "#!/bin/sh\n"
                                      "[ \"$1\" = --version ] && { echo 1; exit; }\n"
                                      "for file; do :; done\n"
                                      "echo \"${file##*/}\" >> \"$(dirname \"$0\")/seen\"\n"
                                      "grep -q CRASH \"$file\" && exit 139\n"
                                      "cat \"$file\" \"$(dirname \"$0\")\"/src/*.h | grep -q WRONG || exit 0\n"
                                      "echo \"$file:1:1: error: it is wrong [some-check]\"\n"
                                      "echo '    int WRONG;'\n"
                                      "exit 1\n");
        ASSERT_TRUE(QFile::setPermissions(m_tree.filePath(QStringLiteral("tool")),
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        write(QStringLiteral(".clang-tidy"), "Checks: '*'\n");
        write(QStringLiteral("src/a.h"), "int a;\n");
        write(QStringLiteral("src/a.cpp"), "#include \"a.h\"\n");
        write(QStringLiteral("src/b.cpp"), "int b;\n");
        write(QStringLiteral("other/c.cpp"), "int WRONG;\n");
        commands("");
    }

    void commands(const QByteArray& option)
    {
        QByteArrayList entries;
        for (const char* name : {"src/a.cpp", "src/b.cpp", "other/c.cpp"})
            entries += "{\"directory\":\".\",\"command\":\"cc " + option + "\",\"file\":\"" +
                       m_tree.filePath(QLatin1String(name)).toUtf8() + "\"}";
        write(QStringLiteral("build/compile_commands.json"), "[" + entries.join(',') + "]");
    }

    /// Runs the check; seen() tells what the tool was given.
    Ended tidy()
    {
        QFile::remove(m_tree.filePath(QStringLiteral("seen")));
        return check("tidy.py", {QStringLiteral("--root"), m_tree.path(), QStringLiteral("--build"),
                                 m_tree.filePath(QStringLiteral("build")), QStringLiteral("--tool"),
                                 m_tree.filePath(QStringLiteral("tool")), QStringLiteral("--jobs"), QStringLiteral("1"),
                                 QStringLiteral("src")});
    }

    std::string seen() const
    {
        QByteArrayList names = content(QStringLiteral("seen")).split('\n');
        names.removeAll(QByteArray());
        std::sort(names.begin(), names.end());
        return names.join(' ').toStdString();
    }
};

} // namespace

TEST_F(ChecksTest, ASourceWithoutItsLicenceIsFound)
{
    write(QStringLiteral("src/good.cpp"), "// " + m_licence);
    write(QStringLiteral("src/CMakeLists.txt"), "# " + m_licence);
    write(QStringLiteral("run"), "#!/bin/sh\n# " + m_licence);
    write(QStringLiteral("build/made.cpp"), "int made;\n");
    write(QStringLiteral("src/picture.svg"), "<svg/>\n");
    const Ended good = check("licence", {m_tree.path()});
    EXPECT_EQ(good.exitCode, 0) << good.output;
    EXPECT_THAT(good.output, IsEmpty());
    for (const char* name : {"src/bad.cpp", "src/bad.h", "bad.py", "cmake/bad.cmake", "test"}) {
        write(QLatin1String(name), "\n\n\n// " + m_licence);
        const Ended bad = check("licence", {m_tree.path()});
        EXPECT_EQ(bad.exitCode, 1) << name;
        EXPECT_THAT(bad.output, HasSubstr(std::string(name) + ": no line ")) << name;
        EXPECT_THAT(bad.output, Not(HasSubstr("good")));
        QFile::remove(m_tree.filePath(QLatin1String(name)));
    }
    const QTemporaryDir empty;
    EXPECT_EQ(check("licence", {empty.path()}).exitCode, 1) << "a check that looks at nothing is none";
}

TEST_F(ChecksTest, AMisspeltWordIsFound)
{
    write(QStringLiteral("page.md"), "The measurement is right; ParseF upTo nd are meant.\n");
    const Ended good = check("spelling", {m_tree.path()});
    EXPECT_EQ(good.exitCode, 0) << good.output;
    EXPECT_THAT(good.output, IsEmpty());
    // In two halves, or the check would find it here.
    write(QStringLiteral("src/bad.cpp"), "// The measu"
                                         "rment.\n// They are sep"
                                         "erate.\n");
    const Ended bad = check("spelling", {m_tree.path()});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_THAT(bad.output, HasSubstr("src/bad.cpp:1: measu"
                                      "rment ==> measurement"));
    EXPECT_THAT(bad.output, HasSubstr("src/bad.cpp:2: sep"
                                      "erate ==> separate"));
}

TEST_F(TidyTest, SourcesThatHaveNotChangedAreNotLookedAtAgain)
{
    EXPECT_EQ(tidy().exitCode, 0);
    EXPECT_EQ(seen(), "a.cpp b.cpp");
    EXPECT_EQ(tidy().exitCode, 0);
    EXPECT_EQ(seen(), "");
    write(QStringLiteral("src/b.cpp"), "int c;\n");
    EXPECT_EQ(tidy().exitCode, 0);
    EXPECT_EQ(seen(), "b.cpp");
    write(QStringLiteral("src/a.h"), "int d;\n");
    EXPECT_EQ(tidy().exitCode, 0);
    EXPECT_EQ(seen(), "a.cpp");
    write(QStringLiteral(".clang-tidy"), "Checks: 'x'\n");
    EXPECT_EQ(tidy().exitCode, 0);
    EXPECT_EQ(seen(), "a.cpp b.cpp");
    commands("-DX");
    EXPECT_EQ(tidy().exitCode, 0);
    EXPECT_EQ(seen(), "a.cpp b.cpp");
}

TEST_F(TidyTest, AFindingIsToldAgainUntilItIsGone)
{
    write(QStringLiteral("src/b.cpp"), "int WRONG;\n");
    for (const char* looked : {"a.cpp b.cpp", ""}) {
        const Ended bad = tidy();
        EXPECT_EQ(bad.exitCode, 1);
        EXPECT_THAT(bad.output, HasSubstr("src/b.cpp:1:1: error: it is wrong [some-check]\n    int WRONG;\n"));
        EXPECT_THAT(bad.output, HasSubstr("1 findings"));
        EXPECT_EQ(seen(), looked);
    }
    write(QStringLiteral("src/b.cpp"), "int right;\n");
    EXPECT_EQ(tidy().exitCode, 0);
}

TEST_F(TidyTest, ACheckThatCouldNotBeMadeIsNoSuccessAndIsNotRemembered)
{
    write(QStringLiteral("src/b.cpp"), "CRASH\n");
    for (int i = 0; i < 2; ++i) {
        const Ended crashed = tidy();
        EXPECT_EQ(crashed.exitCode, 2);
        EXPECT_THAT(crashed.output, HasSubstr("ended with 139"));
    }
    EXPECT_TRUE(QFile::remove(m_tree.filePath(QStringLiteral("build/compile_commands.json"))));
    EXPECT_EQ(tidy().exitCode, 2);
    write(QStringLiteral("build/compile_commands.json"), "[]");
    EXPECT_EQ(tidy().exitCode, 2) << "nothing to look at is no success";
}
