// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QObject>

#include <functional>

class PenDocument;
class SettingsChannel;
class SettingsDialogHost;

/// The instrument's own calibrations and its diagnosis, each into a document of its own that shows the range of that
/// measurement and not the user's sweep.
///
/// They ask and process events: their owner may be gone when they return, and they notice.
class CalibrationRuns : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this.
    CalibrationRuns(SettingsChannel& channel, SettingsDialogHost& host, QObject* parent = nullptr);

    /// The clock of the calibration stamp; the system's unless set.
    std::function<QDateTime()> now;

    // Each is true when its command was given.
    /// Asks first where the instrument is calibrated. Nothing without a link.
    bool amplitude();
    /// Against the trim code. Nothing without a link or while a test runs.
    bool phase();
    /// Into the first two pens. Nothing while a test runs; without a link the document is prepared all the same.
    bool diagnose();

private:
    PenDocument* newDocument();

    SettingsChannel& m_channel;
    SettingsDialogHost& m_host;
};
