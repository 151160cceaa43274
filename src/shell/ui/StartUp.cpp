// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/StartUp.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/CommandLine.h"
#include "program/EventSounds.h"
#include "program/InstanceTitle.h"
#include "program/ProgramState.h"
#include "script/ui/ScriptCommands.h"
#include "shell/commands/files/ui/FileOpener.h"
#include "shell/commands/files/ui/RecoveryCommands.h"
#include "shell/commands/ui/PreferencesCommands.h"
#include "shell/ui/frmMain.h"
#include "shell/ui/frmQuorrelMessage.h"
#include "shell/ui/frmSplash.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <QScopeGuard>

#include <cstdio>

struct StartUp::Program
{
    explicit Program(const QString& settingsFolder)
        : store(settingsFolder)
        , preferences(store, state.gstrAppTitle)
        , device(devices)
        , messages(&sounds)
    {}

    ProgramState state;
    SettingsStore store;
    Preferences preferences;
    LockedTitles titles;
    DeviceList devices;
    KorvaLink device;
    InstrumentMirror mirror;
    DesktopSounds sounds;
    QuorrelMessages messages;
    std::unique_ptr<frmSplash> splash;
    std::unique_ptr<frmMain> main;
    QObject session; ///< as long as this lives the end of the desktop session is listened to
};

StartUp::StartUp(const QString& settingsFolder)
    : m_program(std::make_unique<Program>(settingsFolder))
{
    // Direct: the session waits for the answer, and for nothing behind it.
    QObject::connect(
        qGuiApp, &QGuiApplication::commitDataRequest, &m_program->session, [this] { requestEnd(); },
        Qt::DirectConnection);
}

StartUp::~StartUp() = default;

frmMain* StartUp::mainWindow() const
{
    return m_program->main.get();
}

void StartUp::requestEnd()
{
    m_endRequested = true;
    if (frmMain* const window = mainWindow())
        window->endUnasked();
}

void StartUp::run(const StartUpOptions& options)
{
    const auto endBehind = qScopeGuard([this] {
        if (m_endRequested)
            requestEnd();
    });
    Program& program = *m_program;
    ProgramState& state = program.state;

    state.gbfSplashShown = program.preferences.value(options::kSplashScreen);
    if (state.gbfSplashShown) {
        program.splash = std::make_unique<frmSplash>();
        program.splash->showAndRefresh();
    }

    state.gstrInstanceTitle = settleInstanceTitle(state.gstrAppTitle, program.titles);
    program.preferences.setInstanceTitle(state.gstrInstanceTitle);

    state.giNewDocType = 1;
    state.gbfPlotting = false;
    state.gbfSweepActive = false;
    state.gbfScriptRunning = false;

    Outcome log = Outcome::success();
    if (!options.linkLogFile.isEmpty())
        log = program.device.SetLogFile(options.linkLogFile);

    program.main = std::make_unique<frmMain>(
        ShellContext{state, program.preferences, program.devices, program.device, program.mirror, program.messages});
    program.messages.setMainWindow(program.main.get());
    const QPointer<frmMain> window = program.main.get();
    window->load([&program] { program.splash.reset(); });
    if (window->isUnloaded())
        return;
    window->show();
    window->setWindowTitle(state.gstrInstanceTitle);

    window->preferencesCommands().tellDamagedSettings();
    if (!log)
        program.messages.message(log.sentence(), UserMessages::OkOnly | UserMessages::Exclamation,
                                 frmMain::tr("Link log"));
    if (!window->isUnloaded())
        window->recoveryCommands().offerUnsaved();
    if (window && !window->isUnloaded())
        actOnCommandLine(options.arguments);
    if (window && !window->isUnloaded() && options.testType != 0)
        startTest(options.testType);
}

void StartUp::startTest(int testType)
{
    constexpr int kRounds = 400; // two seconds at most for the instrument's answer
    Program& program = *m_program;
    ProgramState& state = program.state;
    const QPointer<frmMain> window = program.main.get();
    for (int round = 0; round < kRounds && !state.gbfDeviceReady; ++round) {
        program.device.Wait(5);
        window->processEvents();
        if (!window || window->isUnloaded())
            return;
    }
    state.giNewDocType = static_cast<std::int16_t>(testType);
    const QPointer<PenDocument> document = window->LoadNewDoc();
    if (!window || !document)
        return;
    document->gbfSendZoom = true;
    document->graphSetDefaultView();
    window->testRun().mnuTestStart_Click();
}

void StartUp::actOnCommandLine(const QStringList& arguments)
{
    const QPointer<frmMain> window = m_program->main.get();
    QStringList files = filesToOpen(arguments, window->fileOpener());
    const FileOpener& opener = window->fileOpener();
    const auto scripts = std::stable_partition(files.begin(), files.end(),
                                               [&opener](const QString& file) { return !opener.hasOwnStart(file); });
    const QStringList plots(files.begin(), scripts);
    // A script closes what is open, and so does the re-run: plots beside that are opened behind it.
    const bool rerun = CommandLine::parse(arguments).rerun;
    if (!rerun && !openAll(plots))
        return;
    if (!openAll(QStringList(scripts, files.end())) || !rerun)
        return;
    window->scriptCommands().host().mnuReRunLastTestScript_Click();
    if (window && !window->isUnloaded())
        openAll(plots);
}

bool StartUp::openAll(const QStringList& files)
{
    const QPointer<frmMain> window = m_program->main.get();
    for (const QString& file : files) {
        // A word that is no file and looks like none asks for nothing; who typed it may see why nothing happens.
        if (!window->fileOpener().isKnown(file))
            std::fprintf(stderr, "marrowickgraph: there is no file %s\n", qPrintable(file));
        window->fileOpener().openAtStart(file);
        if (!window || window->isUnloaded())
            return false;
    }
    return true;
}

QStringList StartUp::filesToOpen(const QStringList& arguments, const FileOpener& opener)
{
    QStringList names;
    for (const QString& argument : arguments) {
        if (argument.compare(QLatin1String("-rerun"), Qt::CaseInsensitive) != 0)
            names.append(QString(argument).remove(QLatin1Char('"')));
    }
    // The line as a whole is the name, blanks and all. Only where there is no such file the words are names of their
    // own.
    const QString whole = names.join(QLatin1Char(' '));
    const bool oneIsThere =
        std::any_of(names.cbegin(), names.cend(), [](const QString& name) { return QFileInfo(name).isFile(); });
    const bool allAreFiles =
        std::all_of(names.cbegin(), names.cend(), [&opener](const QString& name) { return opener.isKnown(name); });
    if (QFileInfo::exists(whole) || (!oneIsThere && !allAreFiles && !whole.isEmpty()))
        names = {whole};
    // A relative name means the folder that the program was started from; a document keeps the full path.
    for (QString& name : names) {
        if (const QFileInfo file(name); file.exists())
            name = file.absoluteFilePath();
    }
    return names;
}
