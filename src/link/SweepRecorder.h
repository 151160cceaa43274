// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/PointWriter.h"
#include "link/LinkContext.h"

#include <QObject>
#include <QPointer>

#include <optional>

class DeviceModule;
class Frame;
class InstrumentEvents;
class PenDocument;

/// Takes sweeps from the instrument into documents: frames "D", "E", "F", "H" and "Y". It is the one writer of
/// ProgramState::gbfPlotting and gbfSweepActive.
///
/// A run belongs to the document it was started on, to its end or stop: points, further rounds and the turn of the pen
/// go there or nowhere. A single sweep is stopped when the user turns to another document. Points of a longer run that
/// come meanwhile are dropped; a round that begins meanwhile is left out whole, so that no pen is erased for nothing
/// and none holds parts of two sweeps.
///
/// Frames can be lost on the way. A sweep whose "D" is lost is begun by its first point, the pen's turn that a lost "Y"
/// has left out is made up for before the next round erases anything, and a point number that falls back is believed
/// when a second point goes on from it.
class SweepRecorder : public QObject
{
    Q_OBJECT

public:
    /// Registers its handlers in the module's table. The module outlives the recorder.
    explicit SweepRecorder(DeviceModule& module, QObject* parent = nullptr);

    /// The user has started a test on this document: the next sweep is its, whatever is active by then.
    void expectStart(PenDocument& document);
    /// Null when no document is under test, or when it has been closed.
    PenDocument* documentUnderTest() const;
    /// gstrKey of the document under test; empty when there is none.
    const QString& gstrPlotKey() const { return m_key; }

    /// The document is under test from now on. Without one nothing happens.
    void GUISetPlotting(PenDocument* document);
    /// Back to viewing. Panel 1 shows "Connected", or "Disconnected" when the link is down.
    void GUISetViewing();
    /// The link is gone, or leads to another instrument: the run has ended.
    void endRun();

private:
    struct Point
    {
        bool impedance = true;
        bool marked = false;
        double frequency = 0, value = 0, phase = 0, sign = 1;
        std::int32_t number = 0;
    };

    bool testStarted(const Frame& frame);    // D
    bool testEnded(const Frame& frame);      // E
    bool pointArrived(const Frame& frame);   // F, H
    bool pointsFinished(const Frame& frame); // Y

    void readStatus(const Frame& frame, std::int32_t idleOutput);
    PenDocument* documentOfNextSweep() const;
    void beginSweep();
    bool numberMayStand(const Point& point);
    void store(const Point& point);
    void giveUp();
    void refuse(PointAnswer answer);
    void turnPen(PenDocument& document);
    void documentActivated(PenDocument* document);
    void showTestPoints();

    DeviceModule& m_module;
    LinkContext m_context;
    InstrumentEvents& m_events;
    QPointer<PenDocument> m_document;
    QPointer<PenDocument> m_expected;
    QString m_key;
    bool m_startExpected = false;
    bool m_documentActive = false;     ///< the user looks at the document under test
    bool m_taking = false;             ///< the present sweep goes into the document
    bool m_penTurned = true;           ///< "Y" has come, or nothing has been stored since the last turn
    std::int32_t m_lastPoint = -1;     ///< of the present sweep; -1 before the first
    std::optional<Point> m_fallenBack; ///< waits for a second point to confirm it
};
