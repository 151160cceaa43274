// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recovery/JournalFolder.h"
#include "recovery/JournalWriter.h"
#include "recovery/Record.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

class InstrumentEvents;
class PenDocument;

/// Writes down what must not be lost while it can be: points as they arrive, pens and documents before their data goes,
/// and the documents with unsaved changes. Another thread does the writing; points leave for it at most 200 ms or 256
/// points after their arrival, and reach the disk itself at the end of a sweep.
///
/// Nothing is made on the disk before there is something to keep. A folder that cannot be written to changes nothing
/// but that failed() is raised, once; it is tried again after a while, less and less often, and once it can be written
/// to everything unsaved is kept again.
class RecoveryJournal : public QObject
{
    Q_OBJECT

public:
    static constexpr int kBlock = 256;             ///< points
    static constexpr int kLongestWait = 200;       ///< milliseconds
    static constexpr int kSnapshotWait = 2 * 1000; ///< milliseconds
    static constexpr int kRetryWait = 10 * 1000;   ///< milliseconds behind a first failure
    static constexpr int kLongestRetryWait = 5 * 60 * 1000;

    explicit RecoveryJournal(const QString& folder, const recovery::Limits& limits = {}, QObject* parent = nullptr);
    ~RecoveryJournal() override;

    const QString& folder() const { return m_folder; }
    /// The sweeps of that instrument; their documents are followed.
    void listen(const InstrumentEvents& events);
    /// From now on, until it is destroyed.
    void follow(PenDocument& document);

    /// The points that wait leave for the disk.
    void flush();
    /// The same, and waits until all of it has been handed to the system. False when that failed or took too long.
    bool settle(std::chrono::milliseconds patience = std::chrono::seconds(2));

    /// Milliseconds in place of kRetryWait.
    void setRetryWait(int milliseconds) { m_retryTimer.setInterval(milliseconds); }

    const recovery::JournalWriter& writer() const { return m_writer; }

Q_SIGNALS:
    /// One sentence: nothing is kept for now. Raised from the event loop.
    void failed(const QString& sentence);

private:
    struct Followed
    {
        std::uint32_t number = 0;
        bool unsaved = false; ///< the present file has a snapshot of it
        bool stale = false;   ///< something changed that only a snapshot holds
    };
    void sweepStarted(PenDocument* document);
    void pointStored(PenDocument* document, int point);
    void sweepEnded();
    void aboutToErase(PenDocument& document, int pen);
    void aboutToClose(PenDocument& document, bool unsaved);
    void dataChanged(PenDocument& document, int pen);
    void modifiedChanged(PenDocument& document, bool modified);
    void changed(PenDocument& document);
    void takeSnapshots();

    Followed& followed(PenDocument& document);
    void keepSnapshot(PenDocument& document);
    void keepPlot(PenDocument& document);
    void settleDocument(PenDocument& document);
    QByteArray plotRecord(PenDocument& document) const;
    QByteArray penRecord(const PenDocument& document, int pen) const;
    void write(recovery::RecordType type, const QByteArray& payload);
    void startFile();
    void report(int error);
    void tryAgain();

    QString m_folder;
    recovery::Limits m_limits;
    QHash<PenDocument*, Followed> m_documents;
    std::uint32_t m_lastNumber = 0;
    recovery::PointsRecord m_block;
    QElapsedTimer m_blockAge;
    QTimer m_blockTimer;
    QTimer m_snapshotTimer;
    QTimer m_retryTimer;
    bool m_sweeping = false;
    bool m_started = false;
    bool m_failed = false; ///< nothing is written until the next attempt
    bool m_told = false;
    qint64 m_inFile = 0; ///< bytes behind the snapshots that the present file begins with
    recovery::JournalWriter m_writer;
};
