// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick-draw as another program starts it.
#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

struct Ended
{
    int exitCode = -1; ///< -1: crashed or hung
    QByteArray output;
    std::string errors;
};

/// Runs the program behind a shell's redirections.
Ended draw(const QString& arguments, const QByteArray& input)
{
    constexpr int kPatience = 60000;
    QProcess process;
    process.start(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), QStringLiteral(MG_PROGRAM_DIR "/marrowick-draw ") + arguments});
    process.write(input);
    process.closeWriteChannel();
    Ended ended;
    if (process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit)
        ended.exitCode = process.exitCode();
    else
        process.kill();
    ended.output = process.readAllStandardOutput();
    ended.errors = process.readAllStandardError().toStdString();
    return ended;
}

class DrawTest : public ::testing::Test
{
protected:
    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }
    QByteArray content(const char* name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    const QByteArray m_plot = GraphFile::PEstore(GraphModel());
};

} // namespace

TEST_F(DrawTest, EveryKindOfPictureIsMadeByItsNameOrByTheOption)
{
    const std::map<QByteArray, QByteArray> beginnings = {
        {"png", "\x89PNG"},          {"jpg", "\xff\xd8\xff"}, {"jpeg", "\xff\xd8\xff"}, {"bmp", "BM"},
        {"wmf", "\xd7\xcd\xc6\x9a"}, {"svg", "<?xml"},        {"pdf", "%PDF"}};
    for (const auto& [kind, beginning] : beginnings) {
        const QByteArray name = "a." + kind;
        const Ended named = draw(QStringLiteral("--output ") + path(name.constData()), m_plot);
        EXPECT_EQ(named.exitCode, 0) << named.errors;
        EXPECT_TRUE(content(name.constData()).startsWith(beginning)) << kind.constData();
        const Ended streamed =
            draw(QStringLiteral("--output - --size 300x200 --format ") + QString::fromLatin1(kind), m_plot);
        EXPECT_EQ(streamed.exitCode, 0) << streamed.errors;
        EXPECT_TRUE(streamed.output.startsWith(beginning)) << kind.constData();
    }
}

TEST_F(DrawTest, TheSizeIsThatAskedFor)
{
    ASSERT_EQ(draw(QStringLiteral("--size 320x240 --output ") + path("a.png"), m_plot).exitCode, 0);
    EXPECT_EQ(QImage(path("a.png")).size(), QSize(320, 240));
    ASSERT_EQ(draw(QStringLiteral("--output ") + path("a.png"), m_plot).exitCode, 0);
    EXPECT_EQ(QImage(path("a.png")).size(), QSize(1280, 800));
}

TEST_F(DrawTest, WhatIsNotUnderstoodIsUsage)
{
    for (const char* arguments : {"", "--output", "--output a", "--output -", "--output a.png --size 3x3",
                                  "--output a.png --format gif", "--output a.png plot.gzd", "--outptu a.png"}) {
        const Ended ended = draw(QString::fromUtf8(arguments), m_plot);
        EXPECT_EQ(ended.exitCode, 1) << arguments;
        EXPECT_THAT(ended.errors, StartsWith("marrowick-draw: ")) << arguments;
        EXPECT_TRUE(ended.output.isEmpty()) << arguments;
    }
}

TEST_F(DrawTest, InputThatIsNoPlotLeavesTheOldPicture)
{
    QFile old(path("a.png"));
    ASSERT_TRUE(old.open(QFile::WriteOnly));
    old.write("old");
    old.close();
    for (const QByteArray& input : {QByteArray(), QByteArray("no plot"), m_plot.chopped(1), m_plot + m_plot}) {
        const Ended ended = draw(QStringLiteral("--output ") + path("a.png"), input);
        EXPECT_EQ(ended.exitCode, 5);
        EXPECT_THAT(ended.errors, StartsWith("marrowick-draw: "));
        EXPECT_EQ(content("a.png"), "old");
    }
}

TEST_F(DrawTest, OutputThatCannotBeWrittenIsTold)
{
    for (const char* arguments :
         {"--output - --format png > /dev/full", "--output - --format png >&-", "--output /dev/full --format png",
          "--output none/a.png", "--help > /dev/full", "--help >&-", "--version > /dev/full", "--version >&-"}) {
        const Ended ended = draw(QString::fromUtf8(arguments), m_plot);
        EXPECT_EQ(ended.exitCode, 5) << arguments;
        EXPECT_THAT(ended.errors, StartsWith("marrowick-draw: Cannot write ")) << arguments;
    }
}

TEST_F(DrawTest, HelpAndVersionAreGiven)
{
    const Ended help = draw(QStringLiteral("--help"), {});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* text : {"Usage: marrowick-draw ", "--output", "--format", "--size", "standard input"})
        EXPECT_THAT(help.output.toStdString(), HasSubstr(text));
    EXPECT_TRUE(draw(QStringLiteral("--version"), {}).output.startsWith("marrowick-draw 1."));
}
