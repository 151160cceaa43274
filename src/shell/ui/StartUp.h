// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <memory>

class frmMain;
struct CommandLine;

/// What was said on the command line beside the toolkit's own options.
struct StartUpOptions
{
    QStringList arguments; ///< the command line without the options below
    QString linkLogFile;   ///< log of the link; empty for none
    int testType = 0;      ///< 1 amplitude, 2 impedance, 3 reactance: a document of that type and a test; 0 for none
    bool help = false;
    bool version = false;
    QString problem; ///< one sentence when an option lacks its value; empty otherwise

    /// From the arguments behind the program's name.
    static StartUpOptions parse(const QStringList& arguments);
    static QString helpText();
};

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

    /// Null before run() and after the window has gone.
    frmMain* mainWindow() const;

private:
    void actOnCommandLine(const CommandLine& request);
    void startTest(int testType);
    static QStringList filesToOpen(const CommandLine& request);

    struct Program;
    std::unique_ptr<Program> m_program;
};
