// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/ScriptAnalysis.h"
#include "cli/Console.h"
#include "cli/instrument/ConsoleWindow.h"
#include "cli/instrument/RunCommand.h"
#include "cli/instrument/ScriptAnswers.h"
#include "cli/instrument/Session.h"
#include "controls/resonance/ResonanceEngine.h"
#include "mask/link/MaskFrame.h"
#include "script/DocumentsInMemory.h"
#include "script/FerrolexChecker.h"
#include "script/ScriptActions.h"
#include "script/ScriptHost.h"
#include "script/ScriptSwitches.h"
#include "script/ScriptWindows.h"

#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <functional>

namespace cli {

/// A script, checked, sent and run on an instrument, with the host's side of it in this program. Documents live in
/// memory. Runs event loops of its own.
class ScriptRun : public QObject, private ScriptWindows, private ScriptPictures
{
    Q_OBJECT

public:
    /// Time for the instrument to tell its complete state, and to report the end of a script behind a stop.
    static constexpr int kAnswerTime = 5000;
    static constexpr int kStopTime = 1000;

    /// The console outlives the run.
    ScriptRun(const RunOptions& options, Console& console);

    ExitCode run();
    /// Ends the script in the instrument and then run().
    void stop();

private:
    enum class End
    {
        None,    ///< still going
        Done,    ///< the script has ended by itself
        Lost,    ///< the link is down
        Stopped, ///< by stop() or an answer
        TimeUp
    };
    /// The window of a program without one, whose documents go with their last word.
    class Window : public ConsoleWindow
    {
    public:
        std::function<void()> onCloseAll;
        void mnuWindowCloseAll_Click() override { onCloseAll(); }
    };

    QString openFileName(const QString&, const QString&, const QString&) override { return {}; }
    void refresh() override {}
    void showMessages(ScriptChecker&) override {}
    void showTransfer(ScriptTransfer& transfer) override;
    void unloadTransfer() override;
    void unloadSettings() override {}
    Outcome ExportFile(PenDocument& document, const QString& fileName, std::int32_t format) override;

    void listen();
    ExitCode connectInstrument();
    ExitCode check();
    ExitCode execute();
    ExitCode verdict();
    void report(ScriptResult result, const QString& fileName);
    void say(const QString& line, const QString& key, const QString& value);
    bool waitFor(const std::function<bool()>& condition, int milliseconds);
    void endBy(End reason);

    RunOptions m_options;
    Console& m_console;
    ScriptAnswers m_answers;
    Window m_window;
    Session m_session;
    DocumentContext m_documentContext;
    DocumentsInMemory m_memory;
    DocumentList m_documents;
    ScriptActions m_actions;
    MaskFrame m_masks;
    ResonanceEngine m_engine;
    ScriptAnalysis m_analysis;
    FerrolexChecker m_checker;
    ScriptSwitches m_switches{m_checker};
    ScriptHost m_host;
    QTimer m_timeout;
    QEventLoop m_loop;
    End m_end = End::None;
    bool m_running = false;   ///< the script has been told to run
    bool m_bad = false;       ///< a mask test has failed or had nothing to judge, or there was an alarm
    bool m_unwritten = false; ///< a file could not be written
    bool m_userStopped = false;
    bool m_givenUp = false; ///< a sweep was stopped, since a point of it could not be taken
    bool m_foldersNoted = false;
};

} // namespace cli
