// SPDX-License-Identifier: GPL-3.0-or-later
#include "architecture/Architecture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace architecture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> texts(const QStringList& list)
{
    std::vector<std::string> result;
    for (const QString& text : list)
        result.push_back(text.toStdString());
    return result;
}

/// A small source tree with a map of its own.
class ArchitectureSample : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_root.isValid()); }

    void file(const QString& path, const QByteArray& text)
    {
        const QString full = m_root.filePath(path);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(full).path()));
        QFile target(full);
        ASSERT_TRUE(target.open(QFile::WriteOnly));
        ASSERT_EQ(target.write(text), text.size());
    }

    std::vector<std::string> found(const QString& map) const
    {
        QStringList problems;
        const std::vector<Target> targets = readMap(map, problems);
        EXPECT_THAT(texts(problems), IsEmpty());
        return texts(violations(targets, m_root.path(), installedHeaders()));
    }

    QTemporaryDir m_root;
    const QString m_map = QStringLiteral("low|LOGIC|src/low|Qt6::Core\n"
                                         "high|LOGIC|src/high|low;Qt6::Gui\n"
                                         "high_ui|UI|src/high/ui|high;Qt6::Widgets\n"
                                         "program|PROGRAM|src/program|high_ui\n");
};

} // namespace

TEST(Architecture, SourcesFitTheMap)
{
    QFile mapFile(QStringLiteral(MG_BINARY_DIR "/architecture.txt"));
    ASSERT_TRUE(mapFile.open(QFile::ReadOnly));
    QStringList problems;
    const std::vector<Target> map = readMap(QString::fromUtf8(mapFile.readAll()), problems);
    EXPECT_THAT(texts(problems), IsEmpty());
    ASSERT_GT(map.size(), 10U);
    EXPECT_THAT(texts(violations(map, QStringLiteral(MG_SOURCE_DIR), installedHeaders())), IsEmpty());
}

TEST(Architecture, KnowsWhichModuleAHeaderIsOf)
{
    const HeaderOwners headers = installedHeaders();
    EXPECT_TRUE(headers.value(QStringLiteral("QApplication")).contains(QStringLiteral("Qt6::Widgets")));
    EXPECT_TRUE(headers.value(QStringLiteral("QtWidgets/qdialog.h")).contains(QStringLiteral("Qt6::Widgets")));
    EXPECT_TRUE(headers.value(QStringLiteral("QPrinter")).contains(QStringLiteral("Qt6::PrintSupport")));
    EXPECT_TRUE(headers.value(QStringLiteral("QAction")).contains(QStringLiteral("Qt6::Gui")));
    EXPECT_FALSE(headers.value(QStringLiteral("QString")).contains(QStringLiteral("Qt6::Widgets")));
}

TEST_F(ArchitectureSample, ATreeThatFitsHasNoViolation)
{
    file("src/low/Low.h", "#include <QString>\n#include <vector>\n");
    file("src/low/Low.cpp", "#include \"low/Low.h\"\n#include \"Low.moc\"\n");
    file("src/high/High.h", "#include \"low/Low.h\"\n#include <QColor>\n");
    file("src/high/ui/frmHigh.cpp", "#include \"ui_frmHigh.h\"\n#include \"high/High.h\"\n#include <QDialog>\n");
    file("src/program/main.cpp", "#include \"high/ui/frmHigh.cpp\"\n#include \"low/Low.h\"\n#include <QApplication>\n");
    EXPECT_THAT(found(m_map), IsEmpty());
}

TEST_F(ArchitectureSample, ALogicTargetMayNotIncludeWidgetHeaders)
{
    file("src/high/High.cpp", "#include <QColor>\n#include <QMessageBox>\n\n#include <QtWidgets/QWidget>\n");
    EXPECT_THAT(
        found(m_map),
        ElementsAre("src/high/High.cpp:2: <QMessageBox> is of Qt6::Widgets, which the target high does not use",
                    "src/high/High.cpp:4: <QtWidgets/QWidget> is of Qt6::Widgets, which the target high does not "
                    "use"));
}

TEST_F(ArchitectureSample, ALogicTargetMayNotIncludePrintSupport)
{
    file("src/low/Low.h", "# include <QPrinter>\n");
    EXPECT_THAT(found(m_map),
                ElementsAre("src/low/Low.h:1: <QPrinter> is of Qt6::PrintSupport, which the target low does not use"));
}

TEST_F(ArchitectureSample, ALogicTargetMayNotIncludeAForm)
{
    file("src/low/Low.cpp", "#include \"ui_frmLow.h\"\n");
    EXPECT_THAT(found(m_map), ElementsAre("src/low/Low.cpp:1: the logic target low includes the form \"ui_frmLow.h\""));
}

TEST_F(ArchitectureSample, ALogicTargetMayNotBeLinkedToWidgetsByWayOfOthers)
{
    EXPECT_THAT(found(QStringLiteral("face|UI|src/face|Qt6::Widgets\ncore|LOGIC|src/core|face\n")),
                ElementsAre("the logic target core is linked to Qt6::Widgets"));
}

TEST_F(ArchitectureSample, AnArrowMayNotRunTheWrongWay)
{
    file("src/high/High.h", "");
    file("src/high/ui/frmHigh.h", "");
    file("src/low/Low.cpp", "#include \"high/High.h\"\n");
    file("src/high/High.cpp", "#include \"ui/frmHigh.h\"\n");
    EXPECT_THAT(found(m_map),
                ElementsAre("src/high/High.cpp:1: \"ui/frmHigh.h\" is of high_ui, which the target high does not use",
                            "src/low/Low.cpp:1: \"high/High.h\" is of high, which the target low does not use"));
}

TEST_F(ArchitectureSample, ALibraryMayNotIncludeWhatItsLineDoesNotName)
{
    file("src/low/Low.h", "");
    file("src/high/ui/frmHigh.cpp", "#include \"low/Low.h\"\n");
    EXPECT_THAT(
        found(m_map),
        ElementsAre("src/high/ui/frmHigh.cpp:1: \"low/Low.h\" is of low, which the target high_ui does not use"));
}

TEST_F(ArchitectureSample, TheSimulatorIsLookedAtToo)
{
    file("src/high/High.h", "");
    file("sim/Sim.cpp", "#include \"high/High.h\"\n#include \"sim/Sim.h\"\n");
    EXPECT_THAT(found(m_map + QStringLiteral("sim|LOGIC|sim|low\n")),
                ElementsAre("sim/Sim.cpp:1: \"high/High.h\" is of high, which the target sim does not use",
                            "sim/Sim.cpp:2: \"sim/Sim.h\" is nowhere in the tree"));
}

TEST_F(ArchitectureSample, TargetsMayNotUseEachOtherInACircle)
{
    EXPECT_THAT(found(QStringLiteral("a|LOGIC|src/a|b\nb|LOGIC|src/b|c\nc|LOGIC|src/c|a\nd|LOGIC|src/d|a\n")),
                ElementsAre("the target a uses itself by way of others", "the target b uses itself by way of others",
                            "the target c uses itself by way of others"));
}

TEST_F(ArchitectureSample, ATargetMayNotUseAProgramOrAStranger)
{
    EXPECT_THAT(
        found(QStringLiteral("main|PROGRAM|src/main|\nlib|LOGIC|src/lib|main;nobody\n")),
        ElementsAre("the target lib uses nobody, which is not in the map", "the target lib uses the program main"));
}

TEST_F(ArchitectureSample, EverySourceBelongsToATarget)
{
    file("src/high/deep/Lost.cpp", "#include \"low/Low.h\"\n");
    EXPECT_THAT(found(m_map), ElementsAre("src/high/deep/Lost.cpp belongs to no target of the map"));
}

TEST(Architecture, IncludesInCommentsDoNotCount)
{
    const std::vector<Include> includes =
        readIncludes(QStringLiteral("a.cpp"), QStringLiteral("// #include <QWidget>\n"
                                                             "/* one\n#include <QDialog>\n*/ #include <QString>\n"
                                                             "const char* text = \"/*\";\n"
                                                             "#include \"b.h\" // */\n"
                                                             "const char* raw = R\"x(\n)\" //)x\";\n"
                                                             "#include <QList>\n"));
    ASSERT_EQ(includes.size(), 3U);
    EXPECT_EQ(includes[0].path, QStringLiteral("QString"));
    EXPECT_EQ(includes[0].line, 4);
    EXPECT_EQ(includes[1].path, QStringLiteral("b.h"));
    EXPECT_EQ(includes[1].line, 6);
    EXPECT_FALSE(includes[1].angled);
    EXPECT_EQ(includes[2].path, QStringLiteral("QList"));
    EXPECT_EQ(includes[2].line, 9);
}

TEST(Architecture, ALineOfTheMapThatNamesNoTargetIsReported)
{
    QStringList problems;
    EXPECT_TRUE(readMap(QStringLiteral("a|LOGIC|src/a\nb|OTHER|src/b|\n"), problems).empty());
    EXPECT_EQ(problems.size(), 2);
}
