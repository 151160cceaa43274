// SPDX-License-Identifier: GPL-3.0-or-later
// What the built programs load when they start.
#include <QProcess>
#include <QString>

#include <gmock/gmock.h>
#include <string>
#include <vector>

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// Every library that the program needs, those needed by others among them.
std::string librariesOf(const char* program)
{
    QProcess ldd;
    ldd.start(QStringLiteral("ldd"), {QStringLiteral(MG_PROGRAM_DIR "/") + QLatin1String(program)});
    EXPECT_TRUE(ldd.waitForFinished() && ldd.exitCode() == 0) << program;
    return ldd.readAllStandardOutput().toStdString();
}

/// Every function and class that the program takes from a library.
std::vector<std::string> namesAskedFor(const char* program)
{
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QStringLiteral("-DuC"), QStringLiteral("--without-symbol-versions"),
                                    QStringLiteral(MG_PROGRAM_DIR "/") + QLatin1String(program)});
    EXPECT_TRUE(nm.waitForFinished() && nm.exitCode() == 0) << program;
    std::vector<std::string> names;
    for (const QByteArray& line : nm.readAllStandardOutput().split('\n'))
        names.push_back(line.mid(line.indexOf("U ") + 2).trimmed().toStdString());
    return names;
}

} // namespace

TEST(Linkage, ProgramsWithoutWindowsLoadNeitherWidgetsNorPrintSupport)
{
    for (const char* program : {"marrowick", "marrowick-sim"}) {
        const std::string libraries = librariesOf(program);
        EXPECT_THAT(libraries, HasSubstr("libQt6Core.so")) << program;
        EXPECT_THAT(libraries, Not(HasSubstr("libQt6Widgets"))) << program;
        EXPECT_THAT(libraries, Not(HasSubstr("libQt6PrintSupport"))) << program;
        EXPECT_THAT(libraries, Not(HasSubstr("libQCustomPlot"))) << program;
    }
}

TEST(Linkage, DocumentsNeedNeitherWindowsNorALink)
{
    const std::string libraries = librariesOf("test_document");
    EXPECT_THAT(libraries, HasSubstr("libQt6Gui.so"));
    for (const char* library : {"libQt6Widgets", "libQt6PrintSupport", "libQt6SerialPort", "libQCustomPlot"})
        EXPECT_THAT(libraries, Not(HasSubstr(library))) << library;
}

TEST(Linkage, NoProgramCanListenOnAPort)
{
    for (const char* program : {"marrowickgraph", "marrowick", "marrowick-draw", "marrowick-sim"}) {
        const std::vector<std::string> names = namesAskedFor(program);
        EXPECT_THAT(names, Contains(HasSubstr("QString"))) << program;
        for (const char* way : {"listen", "bind", "accept", "accept4"})
            EXPECT_THAT(names, Not(Contains(way))) << program;
        for (const char* kind : {"QTcpServer", "QLocalServer", "QUdpSocket", "QSctpServer"})
            EXPECT_THAT(names, Not(Contains(HasSubstr(kind)))) << program;
    }
}

TEST(Linkage, TheProgramThatDrawsDoes)
{
    // Otherwise the test above looks at the wrong names.
    const std::string libraries = librariesOf("marrowick-draw");
    EXPECT_THAT(libraries, HasSubstr("libQt6Widgets"));
    EXPECT_THAT(libraries, HasSubstr("libQt6PrintSupport"));
    EXPECT_THAT(libraries, HasSubstr("libQCustomPlot"));
}
