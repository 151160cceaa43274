// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of docs/text-export.md, as they stand there, on every kind of export.
#include "document/DocumentBench.h"
#include "export/ExportedPlots.h"

#include <QDir>
#include <QProcess>

#include <cstdio>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using exported::Case;

bool isInstalled(const QString& module)
{
    return QProcess::execute(
               u"/usr/bin/python3"_s,
               {u"-c"_s, u"import importlib.util, sys\nsys.exit(not importlib.util.find_spec('%1'))"_s.arg(module)}) ==
           0;
}

/// The command that the page gives in Python and that begins with the import of the module.
QString command(const QString& module)
{
    QFile page(QStringLiteral(MG_SOURCE_DIR "/docs/text-export.md"));
    EXPECT_TRUE(page.open(QFile::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    return text.section(u"```python\nimport %1\n"_s.arg(module), 1, 1).section(u"```"_s, 0, 0);
}

/// Runs the command in each of the folders, "\t" replaced by "," where the name of the folder ends in a comma, and
/// prints every number as the bits of a single.
QByteArray readBack(const QString& module, const QString& command, const QString& folder, int count)
{
    static const QString script = u"import os, sys, numpy, %1\n"
                                  "command = sys.argv[1]\n"
                                  "for number in range(int(sys.argv[2])):\n"
                                  "    name = str(number)\n"
                                  "    comma = os.path.isdir(name + ',')\n"
                                  "    os.chdir(name + ',' if comma else name)\n"
                                  "    names = {'%1': %1}\n"
                                  "    exec(command.replace(r'\"\\t\"', '\",\"') if comma else command, names)\n"
                                  "    print('file', number)\n"
                                  "    for row in numpy.asarray(names['points']).astype('<f4').view('<u4'):\n"
                                  "        print(' '.join('%08x' % value for value in row))\n"
                                  "    os.chdir('..')\n"_s;
    QProcess python;
    python.setWorkingDirectory(folder);
    python.start(u"/usr/bin/python3"_s,
                 {u"-c"_s, QString(script).replace(u"%1"_s, module), command, QString::number(count)});
    EXPECT_TRUE(python.waitForFinished(120000)) << qPrintable(python.errorString());
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().constData();
    return python.readAllStandardOutput();
}

/// One folder for each case below the bench's, with its plot.txt, and what a reader must find in them.
std::string writeEveryCase(DocumentBench& bench)
{
    std::string expected;
    int number = 0;
    for (const Case& one : exported::everyCase()) {
        const QString name = QString::number(number) + (one.format.comma ? u","_s : QString());
        EXPECT_TRUE(QDir(bench.folder.path()).mkdir(name));
        const auto document = bench.document(one.type);
        exported::fill(*document);
        ExportStore store;
        TextExport::collect(store, *document, bench.path(name + u"/plot.txt"_s), one.pen, one.format);
        EXPECT_TRUE(store.ExportWrite(one.pen));
        expected +=
            "file " + std::to_string(number) + '\n' + exported::bits(exported::tableOf(document->peGraph(), one));
        ++number;
    }
    return expected;
}

/// The first lines that differ, or nothing; the texts themselves are too long to be told.
std::string difference(const std::string& expected, const QByteArray& read)
{
    const QList<QByteArray> wanted = QByteArray::fromStdString(expected).split('\n'), lines = read.split('\n');
    for (qsizetype i = 0; i < std::max(wanted.size(), lines.size()); ++i) {
        if (wanted.value(i) != lines.value(i))
            return "line " + std::to_string(i) + ": " + lines.value(i).toStdString() + ", not " +
                   wanted.value(i).toStdString();
    }
    return {};
}

} // namespace

TEST(Readers, TheCommandsOfThePageReadEveryKindOfExportBitForBit)
{
    DocumentBench bench;
    const std::string expected = writeEveryCase(bench);
    const auto count = static_cast<int>(exported::everyCase().size());
    ASSERT_TRUE(isInstalled(u"numpy"_s)) << "python3-numpy is missing";
    for (const char* module : {"numpy", "pandas"}) {
        const QString read = command(QLatin1String(module));
        EXPECT_FALSE(read.isEmpty()) << module;
        if (isInstalled(QLatin1String(module)))
            EXPECT_EQ(difference(expected, readBack(QLatin1String(module), read, bench.folder.path(), count)), "")
                << module;
        else
            std::printf("left out, since python3-%s is not installed: its command\n", module);
    }
    std::printf("left out, since no test runs them: the commands of gnuplot, Octave, R and LibreOffice\n");
}
