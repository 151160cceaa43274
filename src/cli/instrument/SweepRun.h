// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "cli/instrument/Session.h"
#include "cli/instrument/SweepCommand.h"
#include "cli/plots/SweepResult.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace cli {

/// One or more sweeps into the pens of one document, then its files and its results. Runs event loops of its own; what
/// ends it early keeps the points that have arrived. Without any point no file is written.
class SweepRun : public QObject
{
    Q_OBJECT

public:
    /// An instrument that sends no point for that long, with the time of two points added, is taken for stuck.
    static constexpr int kLongestSilence = 30000;
    /// Time for the instrument to tell its complete state, to report a start, to report an end after a stop.
    static constexpr int kAnswerTime = 5000;
    /// Time for the instrument to answer to a command; one that does not is commanded all the same.
    static constexpr int kCommandTime = 1000;

    SweepRun(const SweepOptions& options, Console& console);

    ExitCode run();
    /// Ends the sweep in the instrument and then run(), with what has been measured.
    void stop();

private:
    enum class End
    {
        None,    ///< still going
        Done,    ///< the instrument has sent all points it wanted to
        Lost,    ///< the link is down
        Stopped, ///< by stop()
        TimeUp,  ///< --timeout
        Silent   ///< no point has come for too long
    };

    ExitCode connectInstrument();
    /// The instrument is the one that was asked for, by its own word.
    ExitCode checkSerial();
    ExitCode applyOptions();
    /// The sweep that is asked for stands in the mirror, whatever the instrument has told meanwhile.
    void wantSweep();
    /// Selects the output pin and waits until the instrument has taken it, and with it all that was sent before.
    void selectPin();
    ExitCode sweepOnce(int number);
    ExitCode judge(const SweepResult& result);
    bool hasPoints() const;
    /// What was measured is held against what was asked.
    ExitCode compare(const SweepResult& result);
    ExitCode writeFiles(PenDocument& document);
    Outcome writePlot(const GraphModel& graph) const;
    /// NotSolved when an analysis that was asked for found no resonance.
    ExitCode printResults(const PenDocument& document);
    /// Runs events until the condition holds, the sweep has ended early or the time is over. The answer is the
    /// condition.
    bool waitFor(const std::function<bool()>& condition, int milliseconds);
    void endBy(End reason);
    void stopInstrument();
    void showProgress();

    SweepOptions m_options;
    Console& m_console;
    Session m_session;
    QTimer m_timeout;
    QTimer m_silence;
    QElapsedTimer m_sinceProgress;
    QEventLoop m_loop;
    End m_end = End::None;
    bool m_plotting = false; ///< the instrument has reported the start of the present sweep
    bool m_viewing = false;  ///< and its end
    bool m_penMoved = false; ///< and that all points have been sent
    bool m_starting = false; ///< commands of the present sweep are on their way to the instrument
    bool m_pinTaken = false; ///< the instrument has answered to the selection of the pin
    FrequencyRange m_swept;  ///< as the instrument told it at the start of the present sweep
    std::int16_t m_attenuationCode = 0;
    int m_lastPoint = -1; ///< number of the last point seen; -1 before the first
    std::vector<SweepResult> m_results;
};

} // namespace cli
