// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"
#include "script/ScriptTransfer.h"

#include <QObject>

class DeviceModule;
class ScriptChecker;
class ScriptWindows;
class TestRun;

/// The road from a chosen file to a running script: check, transfer, run, and the re-run of what the instrument holds.
///
/// "run" goes out only behind a transfer of that very script that went out whole over the connection that stands, or by
/// the re-run. Every operation runs nested event loops; one that is asked for while another is under way is ignored.
/// When the program's windows have gone meanwhile it ends silently.
class ScriptHost : public QObject
{
    Q_OBJECT

public:
    /// All of it outlives the host.
    ScriptHost(DeviceModule& device, TestRun& testRun, ScriptChecker& checker, ScriptWindows& windows,
               QObject* parent = nullptr);

    /// Choose, check, run.
    void mnuRunTestScript_Click();
    /// The instrument runs what it holds; nothing is sent to it.
    void mnuReRunLastTestScript_Click();
    /// Choose and transfer: no check, no run, documents stay.
    void mnuSendTestScript_Click();

    /// Checks the file and, if it is to be, runs it. What the checker found is shown.
    void checkAndRun(const QString& fileName);
    /// The script of the command line: connects if needed and ends what the instrument runs, then as above. Without an
    /// instrument the script is passed over.
    void runAtStart(const QString& fileName);
    /// Transfer and run, without a check. Every document is closed. Tells why when the script is not run.
    void RunScriptFile(const QString& fileName);

    ScriptTransfer& transfer() { return m_transfer; }

private:
    class Busy;

    void check(const QString& fileName);
    void run(const QString& fileName);
    /// Shows the transfer and makes it. False: the windows have gone.
    bool send(const QString& fileName);
    /// The chooser, if there is no link, and that time for the instrument's answer. False: no link, or no windows.
    bool ensureConnected(int rounds, int milliseconds);
    /// So many times: block for that time, then let events run. False: the windows have gone.
    bool wait(int rounds, int milliseconds);
    /// What a script is judged and sent by is known: the instrument's answers are in. False as above.
    bool waitForAnswers();
    QString chooseFile(const QString& title);
    void startRun(const QString& commands);
    int tell(const QString& text, int style, const QString& title);

    DeviceModule& m_device;
    LinkContext m_context;
    TestRun& m_testRun;
    ScriptChecker& m_checker;
    ScriptWindows& m_windows;
    ScriptTransfer m_transfer;
    bool m_busy = false;
};
