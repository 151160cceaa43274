// SPDX-License-Identifier: GPL-3.0-or-later
// What docs/plot-file.md promises.
#include "PlotFiles.h"

#include <QCborArray>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using plotfiles::contentOf;
using plotfiles::envelope;

} // namespace

TEST(GraphFileFormat, EntriesThatAreNotKnownSurviveLoadAndSave)
{
    const GraphModel model(2, 2);
    QCborMap content = contentOf(model);
    const QCborMap inner{{QStringLiteral("a"), QCborValue(QCborTag(1), 1700000000)},
                         {7, QCborArray{1, 2.5, QStringLiteral("x")}}};
    content[QStringLiteral("Future")] = inner;
    content[QStringLiteral("Later")] = QCborValue(QCborTag(32), QStringLiteral("tagged"));
    GraphModel loaded(2, 2);
    ASSERT_TRUE(GraphFile::PEload(loaded, envelope(content)).ok());
    loaded.setMainTitle(QStringLiteral("changed"));
    const QCborMap again = contentOf(loaded);
    EXPECT_EQ(again[QStringLiteral("Future")].toMap(), inner);
    EXPECT_EQ(again[QStringLiteral("Later")], content[QStringLiteral("Later")]);
    EXPECT_EQ(again[QStringLiteral("MainTitle")].toString(), QStringLiteral("changed"));
}

TEST(GraphFileFormat, EntriesThatAreNotKnownSurviveInEveryMapOfTheFile)
{
    GraphModel model(2, 2);
    model.setCustomMenu(1, QStringLiteral("Copy"));
    model.setVertLineAnnotation(0, 12);
    QCborMap content = contentOf(model);
    const QString future = QStringLiteral("Future");
    const auto add = [&future](QCborValueRef map, int value) {
        QCborMap changed = map.toMap();
        changed[future] = QCborArray{value, QStringLiteral("\u03a9")};
        map = changed;
    };
    const auto addInList = [&](QCborMap& map, const char* name, int index, int value) {
        QCborArray list = map[QLatin1StringView(name)].toArray();
        add(list[index], value);
        map[QLatin1StringView(name)] = list;
    };
    addInList(content, "YAxes", 2, 1);
    addInList(content, "Tables", 1, 2);
    addInList(content, "CustomMenu", 1, 3);
    addInList(content, "VerticalLines", 0, 4);
    add(content[QStringLiteral("Zoom")], 5);
    QCborArray tables = content[QStringLiteral("Tables")].toArray();
    QCborMap table = tables[2].toMap();
    addInList(table, "Cells", 0, 6);
    tables[2] = table;
    content[QStringLiteral("Tables")] = tables;

    GraphModel loaded(2, 2);
    const Outcome outcome = GraphFile::PEload(loaded, envelope(content));
    ASSERT_TRUE(outcome.ok()) << qPrintable(outcome.sentence());
    EXPECT_EQ(contentOf(loaded), content);
    // What is known may change beside them.
    loaded.setWorkingAxis(2);
    loaded.setYAxisLabel(QStringLiteral("changed"));
    loaded.setVertLineAnnotation(0, 13);
    loaded.PEactions(graph::Redraw);
    const QCborMap again = contentOf(loaded);
    EXPECT_EQ(again[QStringLiteral("YAxes")].toArray()[2].toMap()[future],
              content[QStringLiteral("YAxes")].toArray()[2].toMap()[future]);
    EXPECT_EQ(again[QStringLiteral("VerticalLines")].toArray()[0].toMap()[future],
              content[QStringLiteral("VerticalLines")].toArray()[0].toMap()[future]);
    EXPECT_EQ(again[QStringLiteral("YAxes")].toArray()[2].toMap()[QStringLiteral("YAxisLabel")].toString(),
              QStringLiteral("changed"));
}

TEST(GraphFileFormat, FourEntriesSuffice)
{
    GraphModel loaded(2, 2);
    loaded.setMainTitle(QStringLiteral("before"));
    loaded.setSubsetColors(1, 0x123456);
    const Outcome outcome = GraphFile::PEload(loaded, envelope(plotfiles::leastContent()));
    ASSERT_TRUE(outcome.ok()) << qPrintable(outcome.sentence());
    EXPECT_EQ(loaded.properties(), GraphModel(2, 2).properties());
    for (const char* needed : {"Subsets", "Points", "XData", "YData"}) {
        QCborMap content = plotfiles::leastContent();
        content.remove(QLatin1StringView(needed));
        EXPECT_FALSE(GraphFile::PEload(loaded, envelope(content)).ok()) << needed;
    }
}

TEST(GraphFileFormat, BytesBehindTheContentMapAreRefused)
{
    const QByteArray content = plotfiles::leastContent().toCborValue().toCbor();
    GraphModel loaded(2, 2);
    ASSERT_TRUE(GraphFile::PEload(loaded, envelope(content)).ok());
    for (const char* hex : {"00", "f6", "a0", "ff"})
        EXPECT_EQ(GraphFile::PEload(loaded, envelope(content + QByteArray::fromHex(hex))).sentence(),
                  QStringLiteral("The plot file is not valid: something follows the end of its content."))
            << hex;
    EXPECT_EQ(GraphFile::PEload(loaded, envelope(content) + '\0').sentence(),
              QStringLiteral("The plot file is not valid: something follows its end."));
}

TEST(GraphFileFormat, AnEntryThatStandsTwiceIsRefused)
{
    const auto load = [](const char* twice) {
        QByteArray content = plotfiles::leastContent().toCborValue().toCbor();
        content[0] = char(0xA6);
        const QByteArray entry =
            QCborValue(QLatin1StringView(twice)).toCbor() + QCborValue(QStringLiteral("x")).toCbor();
        GraphModel loaded(2, 2);
        return GraphFile::PEload(loaded, envelope(content + entry + entry)).sentence();
    };
    EXPECT_EQ(load("SubTitle"), QStringLiteral("The plot file is not valid: \"SubTitle\" stands there twice."));
    EXPECT_EQ(load("Future"), QStringLiteral("The plot file is not valid: \"Future\" stands there twice."));
}

TEST(GraphFileFormat, SaysWhatIsWrongWithAFile)
{
    GraphModel model(2, 2);
    const auto sentence = [&model](const QByteArray& file) { return GraphFile::PEload(model, file).sentence(); };
    const QByteArray good = GraphFile::PEstore(model);
    const auto changed = [&good](const char* name, const QCborValue& value) {
        QCborMap map = QCborValue::fromCbor(good).taggedValue().toMap();
        map[QLatin1StringView(name)] = value;
        return QCborValue(QCborTag(55799), map).toCbor();
    };
    EXPECT_EQ(sentence(QByteArray()), QStringLiteral("The file is no plot file."));
    EXPECT_EQ(sentence("Frequency,Ohms\n"), QStringLiteral("The file is no plot file."));
    EXPECT_EQ(sentence(changed("format", QStringLiteral("Other"))), QStringLiteral("The file is no plot file."));
    EXPECT_EQ(sentence(good.left(200)),
              QStringLiteral("The file is damaged or no plot file: the encoding of \"content\" is broken."));
    EXPECT_EQ(sentence(changed("crc32", 1)),
              QStringLiteral("The file is damaged: its checksum does not match its content."));
    EXPECT_EQ(sentence(changed("version", 0)),
              QStringLiteral("The plot file is not valid: \"version\" is missing or 0."));
    EXPECT_EQ(sentence(changed("future", 0)),
              QStringLiteral("The plot file is not valid: there is more around its content than format, version and "
                             "checksum."));
    EXPECT_EQ(sentence(GraphFile::PEstore(GraphModel(3, 2))),
              QStringLiteral("The plot file is not valid: its \"Subsets\" and \"Points\" are 3 and 2 instead of 2 and "
                             "2."));
    EXPECT_EQ(sentence(envelope(QByteArray::fromHex("01"))),
              QStringLiteral("The plot file is not valid: it is no map of named entries."));
    EXPECT_EQ(sentence(envelope(QByteArray::fromHex("a1"))),
              QStringLiteral("The plot file is not valid: it is no CBOR."));
    QCborMap content = contentOf(model);
    QCborArray axes = content[QStringLiteral("YAxes")].toArray();
    QCborMap axis = axes[3].toMap();
    axis[QStringLiteral("ManualMinY")] = QStringLiteral("low");
    axes[3] = axis;
    content[QStringLiteral("YAxes")] = axes;
    EXPECT_EQ(sentence(envelope(content)),
              QStringLiteral("The plot file is not valid: \"YAxes, ManualMinY\" holds another kind of value."));
}

TEST(GraphFileFormat, FieldsThatAreMissingKeepTheirDefault)
{
    const GraphModel model(2, 2);
    QCborMap content = contentOf(model);
    content.remove(QStringLiteral("TickColor"));
    GraphModel loaded(2, 2);
    loaded.setTickColor(0x123456);
    ASSERT_TRUE(GraphFile::PEload(loaded, envelope(content)).ok());
    EXPECT_EQ(loaded.TickColor(), graph::Properties().TickColor);
}

TEST(GraphFileFormat, RefusesValuesThatNoGraphHasAndSaysWhich)
{
    const GraphModel model(2, 2);
    const QCborMap good = contentOf(model);
    const auto range = QStringLiteral("has a value out of its range");
    const auto kind = QStringLiteral("holds another kind of value");
    struct Wrong
    {
        const char* name;
        QCborValue value;
        QString problem;
    };
    const Wrong wrong[] = {
        {"MainTitle", 4, kind},
        {"XAxisScaleControl", 7, range},
        {"ManualMinX", qQNaN(), range},
        {"LegendLocation", 4, range},
        {"TickColor", 0x1000000, range},
        {"TickColor", -1, range},
        {"ShowLegend", 1, kind},
        {"FontSize", qint64(1) << 40, range},
        {"SubsetLabels", QCborArray{QStringLiteral("one")}, range},
        {"SubsetLabels", QCborArray{1, 2}, kind},
        {"RandomSubsetsToGraph", QCborArray{2}, range},
        {"YAxes", QCborArray{}, range},
        {"YData", QCborValue(QCborTag(84), QByteArray(16, '\0')), kind},
        {"XData", QCborValue(QCborTag(85), QByteArray(15, '\0')),
         QStringLiteral("has not as many values as the graph has points")},
    };
    for (const auto& [name, value, problem] : wrong) {
        QCborMap content = good;
        content[QLatin1StringView(name)] = value;
        GraphModel loaded(2, 2);
        const QByteArray before = GraphFile::PEstore(loaded);
        const Outcome outcome = GraphFile::PEload(loaded, envelope(content));
        EXPECT_FALSE(outcome.ok()) << name;
        EXPECT_EQ(outcome.sentence(),
                  QStringLiteral("The plot file is not valid: \"%1\" %2.").arg(QLatin1StringView(name), problem));
        EXPECT_EQ(GraphFile::PEstore(loaded), before) << name;
    }
    GraphModel loaded(2, 2);
    EXPECT_TRUE(GraphFile::PEload(loaded, envelope(good)).ok());
}

TEST(GraphFileFormat, TellsANewerFormatFromADamagedFile)
{
    GraphModel model(2, 2);
    QCborMap map = QCborValue::fromCbor(GraphFile::PEstore(model)).taggedValue().toMap();
    map[QStringLiteral("version")] = 2;
    const Outcome outcome = GraphFile::PEload(model, QCborValue(QCborTag(55799), map).toCbor());
    EXPECT_EQ(outcome.sentence(), QStringLiteral("The file was written by a newer program."));
}

TEST(GraphFileFormat, NumbersOfAnyWidthAreReadWhenTheyKeepTheirValue)
{
    const GraphModel model(2, 2);
    QCborMap content = contentOf(model);
    content[QStringLiteral("ManualMaxX")] = 1000;
    content[QStringLiteral("LineWidth")] = 2;
    GraphModel loaded(2, 2);
    ASSERT_TRUE(GraphFile::PEload(loaded, envelope(content.toCborValue().toCbor(QCborValue::EncodingOption(
                                              QCborValue::UseFloat16 | QCborValue::UseIntegers))))
                    .ok());
    EXPECT_EQ(loaded.ManualMaxX(), 1000.0);
    EXPECT_EQ(loaded.NullDataValueY(), -65536.0F);
}

TEST(GraphFileFormat, AnIndependentReaderFindsTheCurve)
{
    QTemporaryDir folder;
    GraphModel model;
    for (int i = 0; i < 1024; ++i)
        model.setPoint(0, i, 1000.0F + static_cast<float>(i), 50.0F / static_cast<float>(i + 1));
    model.setMainTitle(QStringLiteral("Transducer \u03a9"));
    const QString name = folder.filePath(QStringLiteral("plot.gzd"));
    ASSERT_TRUE(GraphFile::PEsavetofile(model, name).ok());
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral(MG_SOURCE_DIR "/tests/data/read_plot.py"), name});
    ASSERT_TRUE(python.waitForFinished(30000)) << qPrintable(python.errorString());
    ASSERT_EQ(python.exitCode(), 0) << python.readAllStandardError().constData();
    const QList<QByteArray> lines = python.readAllStandardOutput().trimmed().split('\n');
    ASSERT_EQ(lines.size(), 1026);
    EXPECT_EQ(lines[0], QByteArray("MarrowickGraph plot 1"));
    EXPECT_EQ(QString::fromUtf8(lines[1]), QStringLiteral("Transducer \u03a9"));
    for (int i = 0; i < 1024; ++i) {
        const QList<QByteArray> fields = lines[2 + i].split(' ');
        ASSERT_EQ(fields.size(), 2);
        EXPECT_EQ(fields[0].toFloat(), model.XData(0, i));
        EXPECT_EQ(fields[1].toFloat(), model.YData(0, i));
    }
}

TEST(GraphFileFormat, TheExampleOfThePageWritesAFileThatIsRead)
{
    QFile page(QStringLiteral(MG_SOURCE_DIR "/docs/plot-file.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const QString fence = QStringLiteral("```");
    const QString program = text.section(fence + QStringLiteral("python\n"), 1, 1).section(fence, 0, 0);
    ASSERT_FALSE(program.isEmpty());

    QTemporaryDir folder;
    QProcess python;
    python.setWorkingDirectory(folder.path());
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), program});
    ASSERT_TRUE(python.waitForFinished(30000)) << qPrintable(python.errorString());
    ASSERT_EQ(python.exitCode(), 0) << python.readAllStandardError().constData();
    GraphModel model;
    const Outcome outcome = GraphFile::PEloadfromfile(model, folder.filePath(QStringLiteral("example.gzd")));
    ASSERT_TRUE(outcome.ok()) << qPrintable(outcome.sentence());
    EXPECT_EQ(model.MainTitle(), QStringLiteral("Written elsewhere"));
    EXPECT_EQ(model.YAxisLabel(), QStringLiteral("Modulus of Impedance - Ohms"));
    for (int point = 0; point < 500; ++point) {
        const auto frequency = static_cast<float>(1000 + 10 * point);
        ASSERT_EQ(model.XData(0, point), frequency);
        ASSERT_NEAR(model.YData(0, point), 1e9 / static_cast<double>(frequency), 1);
        ASSERT_NEAR(model.YData(10, point) * model.YData(0, point), 1, 1e-6);
        ASSERT_EQ(model.YData(20, point), -90.0F);
        ASSERT_EQ(model.YData(30, point), -90.0F);
    }
    EXPECT_EQ(model.XData(0, 500), 0.0F);
    EXPECT_EQ(model.YData(0, 500), graph::kNullValue);
}
