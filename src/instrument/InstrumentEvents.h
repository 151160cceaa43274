// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class PenDocument;

/// Parts of the mirror that a status frame may have changed, each for one group of fields of InstrumentMirror.
enum class MirrorPart
{
    Attenuation,           ///< availability, step, steps, code
    Calibration,           ///< bfApplyCal, bfCalibrated, iCalParam1, iCalParam2
    CalibrationSlope,      ///< dblCalSlope, dblCalOffset
    LoopBack,              ///< bfLoopBack
    Options,               ///< bfOption1 to bfOption4
    Trim,                  ///< iVrefCode, iVdutCode and their levels
    Phase,                 ///< whether the instrument acquires phase, see InstrumentEvents::phaseReported
    SweepRange,            ///< dblStartFrequency, dblEndFrequency
    SweepRangeConfirmed,   ///< the same, as the answer to a command that set them
    SweepMode,             ///< iSweepMode, iSweepDirection
    IdleFrequency,         ///< dblIdleFrequency
    Points,                ///< iPointsInTest
    Period,                ///< time a point, see InstrumentEvents::periodReported
    Limits,                ///< tests offered and their limits
    Firmware,              ///< version numbers
    Information,           ///< strDeviceInfo, strDeviceModel
    SerialNumber,          ///< strDeviceSerial
    FrequencyCompensation, ///< dblFreqComp
    Repeat                 ///< bfRepeat
};

/// What the instrument's side tells the rest of the program. The mirror and the documents hold the new state when a
/// signal is raised. Receivers must not wait, ask or process events: frames are being read. Owned by DeviceModule.
class InstrumentEvents : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // Link -----------------------------------------------------------------------------------------------------------

    /// The link to an instrument is up; its state is not known yet.
    void connected();
    /// The link is down and the mirror holds no instrument any more.
    void lost();
    /// The mirror is about to lose the instrument that it describes: what was set for it is stored now or never.
    void aboutToForget();

    // State ----------------------------------------------------------------------------------------------------------

    void changed(MirrorPart part);
    /// The complete state has arrived and the stored settings of this instrument have been sent.
    void stateComplete();
    void phaseReported(bool on);
    /// 0 "A to B", 1 "B to A", 2 "Alternate", as the frame says it.
    void sweepModeReported(int mode);
    void periodReported(double milliseconds);
    /// Level of the idle output in dB or Ohm, phase signed in degrees.
    void levelMeasured(double level, double phase, bool phaseMeasured);

    // Test -----------------------------------------------------------------------------------------------------------

    /// The instrument has started a sweep into the current pen of this document.
    void sweepStarted(PenDocument* document);
    /// The program has gone from viewing to plotting, or back.
    void plottingChanged(bool plotting);
    /// Point (from 0) has been taken by the document under test. Raised once for each point.
    void pointStored(PenDocument* document, int point);
    /// The instrument has asked to show the sweep as far as it has come.
    void pointShown(PenDocument* document, int point);
    /// The sweep has ended, complete or stopped; null when its document has gone.
    void sweepEnded(PenDocument* document);
    /// The program has told the instrument to stop, since a point of the sweep could not be taken.
    void sweepGivenUp();
    /// All points of the sweep have been sent: the turn went to the next pen of this document.
    void pointsFinished(PenDocument* document);

    // Script ---------------------------------------------------------------------------------------------------------

    void scriptRunning(bool running);
    /// The script asks for the loop view of the active document, which has one, or for its end.
    void loopViewWanted(bool shown);
};
