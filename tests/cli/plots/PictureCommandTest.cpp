// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/PictureCommand.h"

#include "cli/CommandWords.h"
#include "cli/plots/Workspace.h"
#include "controls/graph/GraphFile.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace cli;
using ::testing::HasSubstr;

namespace {

using namespace Qt::StringLiterals;
using Words = CommandWords<PictureCommand>;

class PictureCommandTest : public ::testing::Test
{
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    void plot(const QString& name)
    {
        PenDocument& document = m_workspace.newDocument(PenDocument::Impedance, true);
        document.AddImpedancePoint(1000, 5, 6, -1, 0);
        document.AddImpedancePoint(2000, 7, 8, 1, 1);
        ASSERT_TRUE(GraphFile::PEsavetofile(document.peGraph(), path(name)));
    }
    /// Draws with those words; "%" stands for the folder.
    ExitCode run(QString words)
    {
        m_results.clear();
        m_problems.clear();
        const Words command(words.replace(u"%"_s, m_folder.path()).toUtf8().constData());
        EXPECT_EQ(command.problem(), "");
        return drawPictures(command.options(), m_console);
    }
    QByteArray content(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }
    std::string results() const { return QString(m_results).replace(m_folder.path(), u"%"_s).toStdString(); }
    std::string problems() const { return QString(m_problems).replace(m_folder.path(), u"%"_s).toStdString(); }

    QTemporaryDir m_folder;
    QString m_results, m_problems;
    Console m_console{u"marrowick"_s, Console::into(m_results), Console::into(m_problems), false};
    ConsoleMessages m_messages{m_console};
    Workspace m_workspace{m_messages};
};

} // namespace

TEST_F(PictureCommandTest, EachOfTheSixKindsIsDrawnAsTheNameEnds)
{
    plot(u"a.gzd"_s);
    const std::pair<const char*, QByteArray> kinds[] = {{"png", "\x89PNG"}, {"svg", "<?xml"},
                                                        {"pdf", "%PDF"},    {"jpg", "\xff\xd8\xff"},
                                                        {"bmp", "BM"},      {"wmf", "\xd7\xcd\xc6\x9a"}};
    for (const auto& [kind, beginning] : kinds) {
        const QString name = u"b."_s + QLatin1String(kind);
        EXPECT_EQ(run(u"%/a.gzd --size 300x200 --output %/"_s + name), ExitCode::Done) << problems();
        EXPECT_TRUE(content(name).startsWith(beginning)) << kind;
        EXPECT_EQ(results(), "%/" + name.toStdString() + '\n');
    }
    EXPECT_EQ(QImage(path(u"b.png"_s)).size(), QSize(300, 200));
}

TEST_F(PictureCommandTest, PicturesOfSeveralPlotsGoBesideThemOrIntoAFolder)
{
    plot(u"a.gzd"_s);
    plot(u"b.c.gzd"_s);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"out"_s));
    EXPECT_EQ(run(u"%/a.gzd %/b.c.gzd"_s), ExitCode::Done);
    EXPECT_EQ(results(), "%/a.png\n%/b.c.png\n");
    EXPECT_EQ(run(u"%/a.gzd %/b.c.gzd --format svg --output %/out --json"_s), ExitCode::Done);
    EXPECT_TRUE(content(u"out/b.c.svg"_s).startsWith("<?xml"));
    EXPECT_THAT(results(), HasSubstr("\"pictures\""));
}

TEST_F(PictureCommandTest, APictureThatIsThereIsReplacedOnlyByForceAndTheOthersAreDrawn)
{
    plot(u"a.gzd"_s);
    plot(u"b.gzd"_s);
    QFile old(path(u"a.png"_s));
    ASSERT_TRUE(old.open(QFile::WriteOnly));
    old.write("precious");
    old.close();
    EXPECT_EQ(run(u"%/a.gzd %/b.gzd %/missing.gzd"_s), ExitCode::FileError);
    EXPECT_EQ(content(u"a.png"_s), "precious");
    EXPECT_EQ(results(), "%/b.png\n");
    EXPECT_THAT(problems(), HasSubstr("%/a.png is there already; --force replaces it."));
    EXPECT_THAT(problems(), HasSubstr("%/missing.gzd"));
    EXPECT_EQ(run(u"%/a.gzd --force"_s), ExitCode::Done);
    EXPECT_TRUE(content(u"a.png"_s).startsWith("\x89PNG"));
}

TEST(PictureOptions, WhatCannotBeCarriedOutIsRefused)
{
    EXPECT_EQ(Words("a b --output c.png").problem(), "--output c.png takes one plot, not 2; a folder takes several.");
    EXPECT_EQ(Words("a --output c.doc").problem(),
              "--output needs a folder, or a name that ends in one of .png, .jpg, .jpeg, .bmp, .wmf, .svg, .pdf, not "
              "\"c.doc\".");
    EXPECT_THAT(Words("a --format gif").problem(), HasSubstr("--format"));
    EXPECT_THAT(Words("a --size 5x5").problem(), HasSubstr("--size"));
    EXPECT_EQ(Words("a.gzd a.gad").problem(), "a.gzd and a.gad both want to write a.png.");
    EXPECT_EQ(Words("a.png").problem(), "The picture of a.png would replace the plot a.png.");
    EXPECT_EQ(Words("- --json").problem(), "--json prints to standard output; no picture can go there beside it.");
    EXPECT_EQ(Words("- --output a.svg").problem(), "");
    EXPECT_TRUE(streams(Words("-").options().files));
    EXPECT_EQ(Words("a --output - --format svg").options().format, u"svg"_s);
}
