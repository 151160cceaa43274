// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/StartUpOptions.h"

#include <QString>
#include <QStringList>

#include <memory>

class FileOpener;
class frmMain;

/// Puts the program together and runs its start: the splash, the instance title, the main window with its load
/// sequence, and what the command line asks for. Owns everything that the main window works with.
class StartUp
{
public:
    /// The folder of the settings; the user's own when empty.
    explicit StartUp(const QString& settingsFolder = {});
    ~StartUp();
    StartUp(const StartUp&) = delete;
    StartUp& operator=(const StartUp&) = delete;

    /// The whole sequence. Returns when the program is up and the command line was acted on; the window may have been
    /// closed meanwhile.
    void run(const StartUpOptions& options);

    /// Ends the program without a question, as a signal or the end of the desktop session wants it: what is unsaved
    /// goes to the recovery journal. Before the window is there the request waits for it.
    void requestEnd();

    /// Null before run() and after the window has gone.
    frmMain* mainWindow() const;

private:
    void actOnCommandLine(const QStringList& arguments);
    /// False: the window has gone.
    bool openAll(const QStringList& files);
    void startTest(int testType);
    static QStringList filesToOpen(const QStringList& arguments, const FileOpener& opener);

    struct Program;
    std::unique_ptr<Program> m_program;
    bool m_endRequested = false;
};
