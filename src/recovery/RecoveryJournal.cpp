// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/RecoveryJournal.h"

#include "document/PenDocument.h"
#include "instrument/InstrumentEvents.h"

#include <QMetaObject>
#include <QPointer>

#include <algorithm>
#include <cstring>
#include <utility>

using namespace recovery;

RecoveryJournal::RecoveryJournal(const QString& folder, const Limits& limits, QObject* parent)
    : QObject(parent)
    , m_folder(folder)
    , m_limits(limits)
    // The writer ends before this object does.
    , m_writer(folder, newSession(), limits, [this](int error) {
        QMetaObject::invokeMethod(
            this, [this, error] { report(error); }, Qt::QueuedConnection);
    })
{
    m_blockTimer.setSingleShot(true);
    m_blockTimer.setInterval(kLongestWait);
    connect(&m_blockTimer, &QTimer::timeout, this, &RecoveryJournal::flush);
    m_snapshotTimer.setSingleShot(true);
    m_snapshotTimer.setInterval(kSnapshotWait);
    connect(&m_snapshotTimer, &QTimer::timeout, this, &RecoveryJournal::takeSnapshots);
    m_retryTimer.setSingleShot(true);
    m_retryTimer.setInterval(kRetryWait);
    connect(&m_retryTimer, &QTimer::timeout, this, &RecoveryJournal::tryAgain);
    m_block.points.reserve(kBlock);
}

RecoveryJournal::~RecoveryJournal()
{
    flush();
}

void RecoveryJournal::listen(const InstrumentEvents& events)
{
    connect(&events, &InstrumentEvents::sweepStarted, this, &RecoveryJournal::sweepStarted);
    connect(&events, &InstrumentEvents::pointStored, this, &RecoveryJournal::pointStored);
    connect(&events, &InstrumentEvents::sweepEnded, this, &RecoveryJournal::sweepEnded);
    connect(&events, &InstrumentEvents::lost, this, &RecoveryJournal::sweepEnded);
}

void RecoveryJournal::follow(PenDocument& document)
{
    followed(document);
}

RecoveryJournal::Followed& RecoveryJournal::followed(PenDocument& document)
{
    const auto known = m_documents.find(&document);
    if (known != m_documents.end())
        return *known;
    connect(&document, &PenDocument::aboutToErase, this, [this, &document](int pen) { aboutToErase(document, pen); });
    connect(&document, &PenDocument::aboutToClose, this,
            [this, &document](bool unsaved) { aboutToClose(document, unsaved); });
    connect(&document, &PenDocument::dataChanged, this, [this, &document](int pen) { dataChanged(document, pen); });
    connect(&document, &PenDocument::modifiedChanged, this,
            [this, &document](bool modified) { modifiedChanged(document, modified); });
    connect(&document, &PenDocument::pensChanged, this, [this, &document] { changed(document); });
    connect(&document, &PenDocument::viewChanged, this, [this, &document] { changed(document); });
    connect(&document, &QObject::destroyed, this, [this, gone = &document] {
        // Out of the list first: a journal file that begins now asks every document on it.
        m_documents.remove(gone);
        flush();
    });
    return *m_documents.insert(&document, {++m_lastNumber, false, false});
}

// Sweeps --------------------------------------------------------------------------------------------------------------

void RecoveryJournal::sweepStarted(PenDocument* document)
{
    m_sweeping = true;
    if (document == nullptr)
        return;
    flush();
    keepSnapshot(*document);
    write(RecordType::PenState, penRecord(*document, document->gCurrentPen()));
}

void RecoveryJournal::pointStored(PenDocument* document, int point)
{
    if (document == nullptr || point < 0)
        return;
    const std::int32_t pen = document->gCurrentPen();
    Followed& state = followed(*document);
    if (!m_block.points.empty() && (m_block.document != state.number || m_block.pen != pen))
        flush();
    if (m_block.points.empty()) {
        keepSnapshot(*document);
        m_block.document = state.number;
        m_block.pen = pen;
        m_blockAge.start();
        m_blockTimer.start();
    }
    const GraphModel& graph = std::as_const(*document).peGraph();
    StoredPoint stored;
    stored.number = static_cast<std::uint32_t>(point);
    stored.x = graph.XData(pen, point);
    for (std::size_t part = 0; part < stored.y.size(); ++part)
        stored.y[part] = graph.YData(pen + static_cast<int>(part) * plot::kPens, point);
    m_block.points.push_back(stored);
    if (m_block.points.size() >= kBlock || m_blockAge.hasExpired(kLongestWait))
        flush();
}

void RecoveryJournal::sweepEnded()
{
    m_sweeping = false;
    flush();
    if (m_started)
        m_writer.sync();
}

void RecoveryJournal::flush()
{
    m_blockTimer.stop();
    if (m_block.points.empty())
        return;
    const QByteArray payload = m_block.encoded();
    m_block.points.clear();
    write(RecordType::Points, payload);
}

bool RecoveryJournal::settle(std::chrono::milliseconds patience)
{
    flush();
    return m_writer.drain(patience);
}

// Documents -----------------------------------------------------------------------------------------------------------

void RecoveryJournal::aboutToErase(PenDocument& document, int pen)
{
    flush();
    if (pen < 0)
        keepPlot(document);
    else
        write(RecordType::PenGone, penRecord(document, pen));
}

void RecoveryJournal::aboutToClose(PenDocument& document, bool unsaved)
{
    flush();
    if (unsaved)
        keepPlot(document);
    settleDocument(document);
    if (unsaved && m_started)
        m_writer.sync();
}

void RecoveryJournal::keepPlot(PenDocument& document)
{
    // Nothing is measured in an empty one.
    for (int pen = 0; pen < plot::kPens; ++pen) {
        if (document.pens().hasData(pen)) {
            write(RecordType::PlotGone, plotRecord(document));
            return;
        }
    }
}

void RecoveryJournal::dataChanged(PenDocument& document, int pen)
{
    // A loaded plot is saved, or becomes modified in a moment.
    if (pen < 0 || !document.gbfModified())
        return;
    flush();
    keepSnapshot(document);
    write(RecordType::PenState, penRecord(document, pen));
}

void RecoveryJournal::modifiedChanged(PenDocument& document, bool modified)
{
    flush();
    if (modified)
        keepSnapshot(document);
    else
        settleDocument(document);
}

void RecoveryJournal::changed(PenDocument& document)
{
    followed(document).stale = true;
    if (!m_snapshotTimer.isActive())
        m_snapshotTimer.start();
}

void RecoveryJournal::takeSnapshots()
{
    // A sweep changes its pen's name and more with every round; its points are kept anyway.
    if (m_sweeping) {
        m_snapshotTimer.start();
        return;
    }
    flush();
    for (auto entry = m_documents.begin(); entry != m_documents.end(); ++entry) {
        if (std::exchange(entry->stale, false) && entry.key()->gbfModified()) {
            entry->unsaved = false;
            keepSnapshot(*entry.key());
        }
    }
}

void RecoveryJournal::keepSnapshot(PenDocument& document)
{
    Followed& state = followed(document);
    if (state.unsaved)
        return;
    state.unsaved = true;
    write(RecordType::Snapshot, plotRecord(document));
}

void RecoveryJournal::settleDocument(PenDocument& document)
{
    Followed& state = followed(document);
    if (std::exchange(state.unsaved, false))
        write(RecordType::Settled, SettledRecord{state.number}.encoded());
}

QByteArray RecoveryJournal::plotRecord(PenDocument& document) const
{
    PlotRecord record;
    record.when = QDateTime::currentDateTime();
    record.document = m_documents.value(&document).number;
    record.caption = document.caption();
    record.fileName = document.GetFileName();
    record.testType = document.pgiTestType();
    record.plot = document.plotBytes();
    return record.encoded();
}

QByteArray RecoveryJournal::penRecord(const PenDocument& document, int pen) const
{
    PenRecord record;
    record.when = QDateTime::currentDateTime();
    record.document = m_documents.value(const_cast<PenDocument*>(&document)).number;
    record.caption = document.caption();
    record.fileName = document.GetFileName();
    record.testType = document.pgiTestType();
    record.pen = pen;
    record.name = document.pens().name(pen);
    record.data = PenData::of(document.peGraph(), pen);
    return record.encoded();
}

// File ----------------------------------------------------------------------------------------------------------------

void RecoveryJournal::write(RecordType type, const QByteArray& payload)
{
    if (m_failed)
        return;
    if (!m_started || m_inFile > m_limits.fileBytes)
        startFile();
    const QByteArray record = framed(type, payload);
    m_inFile += record.size();
    m_writer.append(record);
}

void RecoveryJournal::startFile()
{
    const bool first = !std::exchange(m_started, true);
    m_inFile = 0;
    m_writer.startFile();
    if (first)
        return;
    // Each file tells by itself what is unsaved, so that the ones before it can go.
    for (auto entry = m_documents.begin(); entry != m_documents.end(); ++entry) {
        if (entry->unsaved)
            m_writer.append(framed(RecordType::Snapshot, plotRecord(*entry.key())));
    }
}

void RecoveryJournal::report(int error)
{
    m_failed = true;
    m_retryTimer.start();
    if (!std::exchange(m_told, true))
        Q_EMIT failed(tr("What is measured cannot be kept for recovery in %1: %2.")
                          .arg(m_folder, QString::fromLocal8Bit(std::strerror(error))));
}

void RecoveryJournal::tryAgain()
{
    // The snapshots that a file begins with hold the points that wait, and whatever else was missed.
    m_block.points.clear();
    m_blockTimer.stop();
    m_failed = false;
    m_retryTimer.setInterval(std::min(2 * m_retryTimer.interval(), kLongestRetryWait));
    m_writer.resume();
    startFile();
}
