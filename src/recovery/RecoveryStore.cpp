// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/RecoveryStore.h"

#include "controls/graph/GraphFile.h"
#include "document/content/Pens.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

using namespace recovery;

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("RecoveryStore", text);
}

Outcome gone()
{
    return Outcome::failure(tr("It is no longer in the recovery folder, or is damaged there."));
}

template <typename Visit>
void eachRecord(const QString& file, Visit visit)
{
    RecordReader reader(file);
    while (const auto record = reader.next())
        visit(*record);
}

/// True when any pen of the snapshot there has points.
bool holdsData(const QString& file, qint64 offset)
{
    const auto record = RecordReader(file).at(offset);
    const auto plot = record ? PlotRecord::decoded(record->payload) : std::nullopt;
    GraphModel graph;
    if (!plot || !GraphFile::PEload(graph, plot->plot))
        return false;
    for (int pen = 0; pen < plot::kPens; ++pen) {
        if (PenData::of(graph, pen).points() > 0)
            return true;
    }
    return false;
}

template <typename List>
void newestFirst(List& list)
{
    std::stable_sort(list.begin(), list.end(),
                     [](const auto& one, const auto& other) { return one.when > other.when; });
}

} // namespace

RecoveryStore::RecoveryStore(QString folder, const Limits& limits)
    : m_folder(std::move(folder))
    , m_limits(limits)
{}

std::vector<RecoveryStore::Pen> RecoveryStore::pens() const
{
    const QDateTime oldest = QDateTime::currentDateTime().addSecs(-m_limits.seconds);
    std::vector<Pen> found;
    const auto all = sessions(m_folder);
    for (const QString& session : all) {
        const auto files = journals(m_folder, session);
        for (const QString& file : files) {
            eachRecord(file, [&](const RecordReader::Record& record) {
                if (record.type != RecordType::PenGone)
                    return;
                const auto pen = PenRecord::decoded(record.payload);
                if (pen && pen->when >= oldest)
                    found.push_back({pen->when,
                                     pen->caption,
                                     pen->fileName,
                                     pen->testType,
                                     pen->pen,
                                     pen->name,
                                     pen->data.points(),
                                     {session, file, record.offset, pen->document}});
            });
        }
    }
    newestFirst(found);
    return found;
}

std::vector<RecoveryStore::Plot> RecoveryStore::plots() const
{
    const QDateTime oldest = QDateTime::currentDateTime().addSecs(-m_limits.seconds);
    std::vector<Plot> found;
    const auto all = sessions(m_folder);
    for (const QString& session : all) {
        const auto files = journals(m_folder, session);
        for (const QString& file : files) {
            eachRecord(file, [&](const RecordReader::Record& record) {
                if (record.type != RecordType::PlotGone)
                    return;
                const auto plot = PlotRecord::decoded(record.payload);
                if (plot)
                    found.push_back({plot->when,
                                     plot->caption,
                                     plot->fileName,
                                     plot->testType,
                                     false,
                                     {session, file, record.offset, plot->document}});
            });
        }
        if (isRunning(m_folder, session))
            continue;
        for (Plot& plot : unsavedPlots(session))
            found.push_back(std::move(plot));
    }
    std::erase_if(found, [&oldest](const Plot& plot) { return plot.when < oldest; });
    newestFirst(found);
    return found;
}

std::vector<RecoveryStore::Plot> RecoveryStore::takeUntold() const
{
    std::vector<Plot> untold;
    const auto all = sessions(m_folder);
    for (const QString& session : all) {
        if (isTold(m_folder, session) || isRunning(m_folder, session))
            continue;
        std::vector<Plot> plots = unsavedPlots(session);
        if (plots.empty() || !markTold(m_folder, session))
            continue;
        std::move(plots.begin(), plots.end(), std::back_inserter(untold));
    }
    newestFirst(untold);
    return untold;
}

std::vector<RecoveryStore::Plot> RecoveryStore::unsavedPlots(const QString& session) const
{
    std::map<std::uint32_t, Plot> unsaved;
    std::set<std::uint32_t> measured; // documents that were given points behind their first snapshot
    const auto files = journals(m_folder, session);
    for (const QString& file : files) {
        eachRecord(file, [&](const RecordReader::Record& record) {
            if (record.type == RecordType::Snapshot) {
                if (const auto plot = PlotRecord::decoded(record.payload))
                    unsaved[plot->document] = {plot->when,     plot->caption,
                                               plot->fileName, plot->testType,
                                               true,           {session, file, record.offset, plot->document}};
            } else if (record.type == RecordType::PenState) {
                const auto pen = PenRecord::decoded(record.payload);
                if (const auto known = pen ? unsaved.find(pen->document) : unsaved.end(); known != unsaved.end())
                    known->second.when = pen->when;
                if (pen && pen->data.points() > 0)
                    measured.insert(pen->document);
            } else if (record.type == RecordType::Points) {
                if (const auto block = PointsRecord::decoded(record.payload))
                    measured.insert(block->document);
            } else if (record.type == RecordType::Settled) {
                if (const auto settled = SettledRecord::decoded(record.payload)) {
                    unsaved.erase(settled->document);
                    measured.erase(settled->document);
                }
            }
        });
    }
    std::vector<Plot> plots;
    for (auto& [document, plot] : unsaved) {
        if (measured.contains(document) || holdsData(plot.place.file, plot.place.offset))
            plots.push_back(std::move(plot));
    }
    return plots;
}

ValueOr<PenRecord> RecoveryStore::read(const Pen& pen) const
{
    const auto record = RecordReader(pen.place.file).at(pen.place.offset);
    if (!record || record->type != RecordType::PenGone)
        return gone();
    auto decoded = PenRecord::decoded(record->payload);
    if (!decoded)
        return gone();
    return std::move(*decoded);
}

ValueOr<QByteArray> RecoveryStore::read(const Plot& plot) const
{
    if (plot.crashed)
        return replay(plot.place);
    const auto record = RecordReader(plot.place.file).at(plot.place.offset);
    if (!record || record->type != RecordType::PlotGone)
        return gone();
    auto decoded = PlotRecord::decoded(record->payload);
    if (!decoded)
        return gone();
    return std::move(decoded->plot);
}

ValueOr<QByteArray> RecoveryStore::replay(const Place& place) const
{
    GraphModel graph;
    Pens pens(graph);
    bool begun = false;
    const auto takePlot = [&](const QByteArray& payload) {
        const auto plot = PlotRecord::decoded(payload);
        if (plot && plot->document == place.document)
            begun = GraphFile::PEload(graph, plot->plot).ok();
    };
    const auto takePen = [&](const QByteArray& payload) {
        const auto pen = PenRecord::decoded(payload);
        if (!pen || pen->document != place.document || !begun)
            return;
        pens.setName(pen->pen, pen->name);
        pen->data.writeTo(graph, pen->pen);
    };
    const auto takePoints = [&](const QByteArray& payload) {
        const auto block = PointsRecord::decoded(payload);
        if (!block || block->document != place.document || !begun)
            return;
        for (const StoredPoint& point : block->points) {
            for (std::size_t part = 0; part < point.y.size(); ++part)
                graph.setPoint(block->pen + static_cast<int>(part) * plot::kPens,
                               static_cast<int>(std::min<std::uint32_t>(point.number, PenData::kNoPoint)), point.x,
                               point.y[part]);
        }
    };
    const auto files = journals(m_folder, place.session);
    for (const QString& file : files) {
        eachRecord(file, [&](const RecordReader::Record& record) {
            if (record.type == RecordType::Snapshot)
                takePlot(record.payload);
            else if (record.type == RecordType::PenState)
                takePen(record.payload);
            else if (record.type == RecordType::Points)
                takePoints(record.payload);
        });
    }
    if (!begun)
        return gone();
    return GraphFile::PEstore(graph);
}
