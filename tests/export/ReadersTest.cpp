// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of docs/text-export.md, as they stand there, on every kind of export.
#include "document/DocumentBench.h"
#include "export/ExportedPlots.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace Qt::StringLiterals;
using exported::Case;

/// What the page gives between the mark of a language and the end of the block, from the word that it begins with.
QString command(const QString& language, const QString& beginning)
{
    QFile page(QStringLiteral(MG_SOURCE_DIR "/docs/text-export.md"));
    EXPECT_TRUE(page.open(QFile::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const QString found = text.section(u"```%1\n%2"_s.arg(language, beginning), 1, 1).section(u"```"_s, 0, 0);
    EXPECT_FALSE(found.isEmpty()) << qPrintable(language);
    return beginning + found.chopped(1);
}

QByteArray output(const QString& program, const QStringList& arguments, const QString& folder)
{
    constexpr int kPatience = 1200000; // an office suite on a loaded machine
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(kPatience)) << qPrintable(program + u": "_s + process.errorString());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    return process.readAllStandardOutput();
}

/// The name of a file in the folder that holds the text.
QString writeScript(const QString& folder, const QString& text)
{
    QFile file(folder + u"/script"_s);
    EXPECT_TRUE(file.open(QFile::WriteOnly));
    file.write(text.toUtf8());
    return file.fileName();
}

/// The folder of a case.
QString folderOf(int number)
{
    return QString::number(number) + (exported::everyCase().at(number).format.comma ? u","_s : QString());
}

/// A reader of exports. read() runs the page's command in the folder of each case below the one told and gives a line
/// "file N" for each case, and below it a line a row with each number as the bits of a single.
struct Reader
{
    const char* name;
    const char* package;
    bool isWanted; ///< where everything is installed that packaging/debian-packages.txt names
    std::function<bool()> isThere;
    std::function<QByteArray(const QString& folder)> read;
    bool losesSignOfZero = false; ///< in the file that it writes
};

void PrintTo(const Reader& reader, std::ostream* out)
{
    *out << reader.name;
}

bool hasProgram(const char* name)
{
    return !QStandardPaths::findExecutable(QLatin1String(name)).isEmpty();
}

bool hasModule(const char* module)
{
    return QProcess::execute(
               u"/usr/bin/python3"_s,
               {u"-c"_s, u"import importlib.util, sys\nsys.exit(not importlib.util.find_spec('%1'))"_s.arg(
                             QLatin1String(module))}) == 0;
}

Reader pythonModule(const char* module, const char* package)
{
    const auto read = [module](const QString& folder) {
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
        return output(u"/usr/bin/python3"_s,
                      {u"-c"_s, QString(script).replace(u"%1"_s, QLatin1String(module)),
                       command(u"python"_s, u"import "_s + QLatin1String(module)),
                       QString::number(exported::everyCase().size())},
                      folder);
    };
    return {module, package, true, [module] { return hasModule(module); }, read};
}

/// Plots each file as the page does, and then every column of it into a table of text.
QByteArray readByGnuplot(const QString& folder)
{
    const QString page = command(u"gnuplot"_s, u"set datafile separator"_s);
    QString script = u"set terminal dumb\n"_s;
    const QList<Case> cases = exported::everyCase();
    for (int number = 0; number < cases.size(); ++number) {
        const Case& one = cases.at(number);
        QString text = page;
        if (one.format.comma)
            text.replace(u"\"\\t\""_s, u"\",\""_s);
        const int columns = (one.type == plot::Reactance ? 5 : 3) + static_cast<int>(one.pen == TextStore::kAllPens);
        QStringList fields;
        for (int column = 1; column <= columns; ++column)
            fields += u"(sprintf('%.17g', $%1))"_s.arg(column);
        script += u"cd '%1'\nset output 'picture'\n%2\nset table 'table'\nplot 'plot.txt' using %3 with table\n"
                  "unset table\ncd '..'\n"_s.arg(folderOf(number), text, fields.join(u':'));
    }
    output(u"gnuplot"_s, {writeScript(folder, script)}, folder);
    QByteArray read;
    for (int number = 0; number < cases.size(); ++number) {
        read += "file " + QByteArray::number(number) + '\n';
        QFile table(folder + u'/' + folderOf(number) + u"/table"_s);
        EXPECT_TRUE(table.open(QFile::ReadOnly));
        exported::Table rows;
        for (const QByteArray& line : table.readAll().split('\n')) {
            std::vector<float> row;
            for (const QByteArray& field : line.simplified().split(' ')) {
                if (!field.isEmpty())
                    row.push_back(static_cast<float>(field.toDouble()));
            }
            if (!row.empty())
                rows.push_back(row);
        }
        read += QByteArray::fromStdString(exported::bits(rows));
    }
    return read;
}

QByteArray readByOctave(const QString& folder)
{
    QString script;
    for (int number = 0; number < exported::everyCase().size(); ++number)
        script +=
            u"cd '%1'; %2 printf('file %3\\n'); "
            "printf([repmat('%08x ', 1, columns(points) - 1) '%08x\\n'], typecast(single(points'(:)), 'uint32')); "
            "cd '..';\n"_s.arg(folderOf(number), command(u"octave"_s, u"points ="_s))
                .arg(number);
    return output(u"octave"_s, {u"--no-gui"_s, u"--quiet"_s, u"--norc"_s, u"--eval"_s, script}, folder);
}

QByteArray readByR(const QString& folder)
{
    QString script;
    for (int number = 0; number < exported::everyCase().size(); ++number) {
        QString text = command(u"r"_s, u"points <-"_s);
        if (exported::everyCase().at(number).format.comma)
            text.replace(u"\"\\t\""_s, u"\",\""_s);
        script +=
            u"setwd('%1')\n%2\ncat('file %3\\n')\n"
            "bytes <- matrix(writeBin(as.numeric(t(as.matrix(points))), raw(), size = 4, endian = 'big'), nrow = 4)\n"
            "bits <- apply(bytes, 2, paste, collapse = '')\n"
            "write(bits, stdout(), ncolumns = ncol(points))\nsetwd('..')\n"_s.arg(folderOf(number), text)
                .arg(number);
    }
    return output(u"R"_s, {u"--vanilla"_s, u"--no-echo"_s, u"--file="_s + writeScript(folder, script)}, folder);
}

/// Converts all files at once, since each start of the suite takes seconds, and reads the cells of the spreadsheets.
QByteArray readByLibreOffice(const QString& folder)
{
    const QString page = command(u"sh"_s, u"soffice"_s);
    const QString files = QDir(folder).filePath(u"office"_s);
    EXPECT_TRUE(QDir().mkpath(files));
    QString names;
    const auto count = static_cast<int>(exported::everyCase().size());
    for (int number = 0; number < count; ++number) {
        const QString name = u"%1.txt"_s.arg(number);
        EXPECT_TRUE(QFile::copy(folder + u'/' + folderOf(number) + u"/plot.txt"_s, files + u'/' + name));
        names += u' ' + name;
    }
    EXPECT_TRUE(page.endsWith(u" plot.txt"_s));
    const QString text = page.chopped(9) + names;
    output(u"sh"_s,
           {u"-c"_s,
            QString(text).replace(u"soffice "_s, u"soffice -env:UserInstallation=file://%1/profile "_s.arg(folder))},
           files);
    static const QString script =
        u"import struct, sys, xml.etree.ElementTree as tree, zipfile\n"
        "SHEET = '{http://schemas.openxmlformats.org/spreadsheetml/2006/main}'\n"
        "for number in range(int(sys.argv[1])):\n"
        "    print('file', number)\n"
        "    content = zipfile.ZipFile('%d.xlsx' % number).read('xl/worksheets/sheet1.xml')\n"
        "    for row in tree.fromstring(content).iter(SHEET + 'row'):\n"
        "        cells = row.findall(SHEET + 'c')\n"
        "        if cells and cells[0].get('t') != 's':\n"
        "            singles = [struct.pack('>f', float(cell.find(SHEET + 'v').text)) for cell in cells]\n"
        "            print(' '.join(single.hex() for single in singles))\n"_s;
    return output(u"/usr/bin/python3"_s, {u"-c"_s, script, QString::number(count)}, files);
}

std::vector<Reader> readers()
{
    return {pythonModule("numpy", "python3-numpy"),
            pythonModule("pandas", "python3-pandas"),
            {"gnuplot", "gnuplot-nox", true, [] { return hasProgram("gnuplot"); }, readByGnuplot},
            {"Octave", "octave", false, [] { return hasProgram("octave"); }, readByOctave},
            {"R", "r-base-core", false, [] { return hasProgram("R"); }, readByR},
            {"LibreOffice", "libreoffice-calc", true, [] { return hasProgram("soffice"); }, readByLibreOffice, true}};
}

/// One folder for each case below the bench's, with its plot.txt, and what a reader must find in them.
std::string writeEveryCase(DocumentBench& bench)
{
    std::string expected;
    int number = 0;
    for (const Case& one : exported::everyCase()) {
        const QString name = folderOf(number);
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

class Readers : public ::testing::TestWithParam<Reader>
{};

TEST_P(Readers, TheCommandOfThePageReadsEveryKindOfExportBitForBit)
{
    const Reader& reader = GetParam();
    if (!reader.isThere()) {
        EXPECT_FALSE(reader.isWanted && qEnvironmentVariable("CI") == u"true"_s) << reader.package << " is missing";
        std::printf("left out: exports read by %s (package %s)\n", reader.name, reader.package);
        return;
    }
    DocumentBench bench;
    std::string expected = writeEveryCase(bench);
    if (reader.losesSignOfZero)
        expected = QByteArray::fromStdString(expected).replace("80000000", "00000000").toStdString();
    EXPECT_EQ(difference(expected, reader.read(bench.folder.path())), "");
}

INSTANTIATE_TEST_SUITE_P(OfThePage, Readers, ::testing::ValuesIn(readers()),
                         [](const auto& tested) { return std::string(tested.param.name); });
