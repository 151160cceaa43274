// SPDX-License-Identifier: GPL-3.0-or-later
// Saving and loading a full plot file against numpy's and HDF5's files of the same arrays and texts, in one run and in
// turns: in memory, where the figures are those of the formats, and on the disk of the build folder, where every save
// that counts has reached the disk.
#include "Peers.h"

#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

namespace {

constexpr int kRounds = 101;

/// Every property has a value of its own.
void fill(GraphModel& model)
{
    model.setMainTitle(QStringLiteral("Langevin transducer, 40 kHz"));
    model.setSubTitle(QStringLiteral("MarrowickGraph V1.28.0  T46 V1.2.3 : 21/11/2026"));
    model.setXAxisLabel(QStringLiteral("Frequency - Hz"));
    model.setTXAxisLabel(QStringLiteral("MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026"));
    model.setXAxisScaleControl(graph::ScaleLogarithmic);
    model.setManualScaleControlX(graph::ScaleManual);
    model.setManualMinX(10);
    model.setManualMaxX(5e7);
    for (int axis = 0; axis < graph::kYAxes; ++axis) {
        model.setWorkingAxis(axis);
        model.setYAxisLabel(QStringLiteral("Modulus of Impedance - Ohms"));
        model.setYAxisScaleControl(graph::ScaleLogarithmic);
        model.setManualScaleControlY(graph::ScaleManual);
        model.setManualMinY(0.01);
        model.setManualMaxY(1e6 + axis);
    }
    model.setAxisUnitPrefixes(QStringLiteral("p n u m k M G T "));
    graph::ZoomLimits zoom{4.5, 4.7, 1, 5, -180, 180, 4.5, 4.7};
    model.setZoomLimits(zoom);
    model.setZoomed(true);
    for (int line = 0; line < 12; ++line) {
        model.setVertLineAnnotation(line, 1000.5 * line);
        model.setVertLineAnnotationType(line, line % 3);
        model.setVertLineAnnotationColor(line, 0x102030U * static_cast<unsigned>(line));
    }
    for (int table = 0; table < graph::kTables; ++table) {
        model.setWorkingTable(table);
        model.setTARows(12);
        model.setTAColumns(2);
        for (int cell = 0; cell < 24; ++cell) {
            model.setTAText(cell / 2, cell % 2, QStringLiteral("cell %1 of table %2").arg(cell).arg(table));
            model.setTAJustification(cell / 2, cell % 2, cell % 3);
        }
        model.setTAFonts(QStringLiteral("Sans Serif"));
        model.setShowTableAnnotation(true);
    }
    for (int item = 0; item < 16; ++item) {
        model.setCustomMenu(item, QStringLiteral("Entry %1|one|two").arg(item));
        for (int sub = 0; sub < 3; ++sub) {
            model.setCustomMenuState(item, sub, graph::MenuGreyed);
            model.setCustomMenuChecked(item, sub, sub == 1);
        }
    }
    model.setMultiSubTitles(0, QStringLiteral("0X0X0X0X0X"));
    model.setMainTitleFont(QStringLiteral("Sans Serif"));
    model.setSubTitleFont(QStringLiteral("Sans Serif"));
    model.setLabelFont(QStringLiteral("Sans Serif"));
    for (int text = 0; text < 20; ++text)
        model.setGraphAnnotationText(text, QStringLiteral("annotation %1").arg(text));
    for (int subset = 0; subset < model.Subsets(); ++subset) {
        model.setSubsetLabels(subset, QStringLiteral("Pen %1").arg(subset % 10 + 1));
        model.setSubsetColors(subset, 0x010203U * static_cast<unsigned>(subset));
        model.setSubsetLineTypes(subset, subset % 6);
        model.setSubsetsToShow(subset, subset % 2 == 0);
        model.setRandomSubsetsToGraph(subset, subset % 3 == 0 ? -1 : subset);
        for (int point = 0; point < model.Points(); ++point)
            model.setPoint(subset, point, static_cast<float>(10 * std::pow(10.0, 6.69 * point / 1023)),
                           static_cast<float>(std::sin(point * 0.37 + subset) * 1e3));
    }
}

/// The properties for the peers: the same lists and texts, flat.
QByteArray propertiesText(const GraphModel& model)
{
    const graph::Properties& p = model.properties();
    QJsonArray labels, colors, types, shown, drawn, cells, menu, lines, axes;
    for (int subset = 0; subset < model.Subsets(); ++subset) {
        labels.append(model.SubsetLabels(subset));
        colors.append(static_cast<qint64>(model.SubsetColors(subset)));
        types.append(model.SubsetLineTypes(subset));
        shown.append(model.SubsetsToShow(subset));
        drawn.append(model.RandomSubsetsToGraph(subset));
    }
    for (const graph::TableAnnotation& table : p.tables) {
        for (const graph::TableCell& cell : table.cells)
            cells.append(QJsonArray{cell.TAText, cell.TAJustification});
    }
    for (const graph::MenuItem& item : p.CustomMenu) {
        QJsonArray entry{item.text};
        for (const auto& [sub, state] : item.states)
            entry.append(QJsonArray{sub, state, item.checked.contains(sub) && item.checked.at(sub)});
        menu.append(entry);
    }
    for (const graph::VerticalLine& line : p.verticalLines)
        lines.append(QJsonArray{line.position, line.type, static_cast<qint64>(line.color)});
    for (const graph::YAxis& axis : p.yAxes)
        axes.append(QJsonArray{axis.YAxisLabel, axis.YAxisScaleControl, axis.ManualScaleControlY, axis.ManualMinY,
                               axis.ManualMaxY});
    QJsonObject object;
    const auto put = [&object](const char* name, const QJsonValue& value) {
        object.insert(QString::fromLatin1(name), value);
    };
    put("titles", QJsonArray{p.MainTitle, p.SubTitle, p.XAxisLabel, p.TXAxisLabel, p.MainTitleFont, p.SubTitleFont,
                             p.LabelFont, p.AxisUnitPrefixes, model.MultiSubTitles(0)});
    put("labels", labels);
    put("colors", colors);
    put("types", types);
    put("shown", shown);
    put("drawn", drawn);
    put("cells", cells);
    put("menu", menu);
    put("lines", lines);
    put("axes", axes);
    put("zoom", QJsonArray{p.zoom.ZoomMinX, p.zoom.ZoomMaxX, p.zoom.ZoomMinY, p.zoom.ZoomMaxY});
    QJsonObject annotations;
    for (const auto& [number, text] : p.GraphAnnotationText)
        annotations.insert(QString::number(number), text);
    put("annotations", annotations);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool write(const QString& name, const char* bytes, qsizetype size)
{
    QFile file(name);
    return file.open(QFile::WriteOnly | QFile::Unbuffered) && file.write(bytes, size) == size;
}

bool writeInputs(const GraphModel& model, const QString& folder)
{
    const int count = model.Subsets() * model.Points();
    std::vector<float> x(static_cast<std::size_t>(count)), y(x.size());
    const auto size = static_cast<qsizetype>(x.size() * sizeof(float));
    const QByteArray properties = propertiesText(model);
    return model.PEvgetEx(GraphModel::PEP_faXDATA, 0, count, x.data()) &&
           model.PEvgetEx(GraphModel::PEP_faYDATA, 0, count, y.data()) &&
           write(folder + QStringLiteral("/x.f32"), reinterpret_cast<const char*>(x.data()), size) &&
           write(folder + QStringLiteral("/y.f32"), reinterpret_cast<const char*>(y.data()), size) &&
           write(folder + QStringLiteral("/texts.json"), properties.constData(), properties.size());
}

double milliseconds(const std::function<bool()>& task)
{
    const auto start = std::chrono::steady_clock::now();
    const bool done = task();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return done ? time.count() : -1;
}

double median(std::vector<double>& times)
{
    std::sort(times.begin(), times.end());
    return times.front() < 0 ? -1 : times[times.size() / 2];
}

/// Ours against the faster of two tasks of the peers. bound: the largest ratio that holds; none for information.
bool compare(Peers& peers, const char* name, const std::function<bool()>& ours, const char* numpy, const char* hdf5,
             std::optional<double> bound)
{
    std::vector<double> mine, first, second;
    for (int round = 0; round < kRounds; ++round) {
        mine.push_back(milliseconds(ours));
        first.push_back(peers.time(numpy));
        second.push_back(peers.time(hdf5));
    }
    const double figure = median(mine), a = median(first), b = median(second);
    if (figure < 0 || a < 0 || b < 0) {
        std::printf("%-40s a round went wrong: FAILS\n", name);
        return false;
    }
    const double ratio = figure / std::min(a, b);
    const bool holds = !bound || ratio <= *bound;
    std::printf("%-40s %7.3f ms  numpy %7.3f ms  HDF5 %7.3f ms  ratio %5.2f  ", name, figure, a, b, ratio);
    if (bound)
        std::printf("at most %.2f  %s\n", *bound, holds ? "holds" : "FAILS");
    else
        std::printf("for information\n");
    return holds;
}

bool measureIn(const QString& place, bool onDisk)
{
    const QTemporaryDir folder(place + QStringLiteral("/plotfile-XXXXXX"));
    const QString fileName = folder.filePath(QStringLiteral("full.gzd"));
    GraphModel model, loaded;
    fill(model);
    Peers peers;
    if (!folder.isValid() || !writeInputs(model, folder.path())) {
        std::printf("%s: cannot write there\n", qPrintable(place));
        return false;
    }
    if (!peers.start(QStringLiteral("plotfile_peers.py"), {folder.path()}, "numpy save")) {
        std::printf("the peers need python3-numpy and python3-h5py: %s\n", peers.errors().constData());
        return false;
    }
    const auto save = [&] { return GraphFile::PEsavetofile(model, fileName).ok(); };
    const auto load = [&] { return GraphFile::PEloadfromfile(loaded, fileName).ok(); };
    std::printf("%s\n", onDisk ? "on disk:" : "in memory:");
    if (onDisk) {
        const bool good =
            compare(peers, "save and reach the disk, peers with fsync", save, "numpy durable", "hdf5 durable", 0.95);
        return compare(peers, "the same, peers without fsync", save, "numpy save", "hdf5 save", std::nullopt) && good;
    }
    bool good = compare(peers, "save", save, "numpy save", "hdf5 save", 1.0);
    good = compare(peers, "load, with validation", load, "numpy load", "hdf5 load", 0.7) && good;
    if (loaded.properties() != model.properties() || !std::ranges::equal(loaded.yArray(39), model.yArray(39))) {
        std::printf("what was loaded is not what was saved: FAILS\n");
        return false;
    }
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const bool memory = measureIn(QStringLiteral("/dev/shm"), false);
    const bool disk = measureIn(QStringLiteral(MG_PROGRAM_DIR), true);
    return memory && disk ? EXIT_SUCCESS : EXIT_FAILURE;
}
