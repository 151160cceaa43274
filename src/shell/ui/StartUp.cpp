// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/StartUp.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/CommandLine.h"
#include "program/EventSounds.h"
#include "program/InstanceTitle.h"
#include "program/ProgramState.h"
#include "shell/ui/frmMain.h"
#include "shell/ui/frmQuorrelMessage.h"
#include "shell/ui/frmSplash.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>

StartUpOptions StartUpOptions::parse(const QStringList& arguments)
{
    StartUpOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            options.help = true;
        } else if (argument == QLatin1String("--version")) {
            options.version = true;
        } else if (argument.startsWith(QLatin1String("--link-log="))) {
            options.linkLogFile = argument.section(QLatin1Char('='), 1);
        } else if (argument == QLatin1String("--link-log")) {
            if (i + 1 == arguments.size())
                options.problem = QCoreApplication::translate("StartUp", "--link-log needs the name of a file.");
            else
                options.linkLogFile = arguments[++i];
        } else if (argument == QLatin1String("--test") || argument.startsWith(QLatin1String("--test="))) {
            const bool apart = !argument.contains(QLatin1Char('='));
            const QString type = !apart                     ? argument.section(QLatin1Char('='), 1)
                                 : i + 1 < arguments.size() ? arguments[++i]
                                                            : QString();
            static const QStringList types{QStringLiteral("amplitude"), QStringLiteral("impedance"),
                                           QStringLiteral("reactance")};
            options.testType = static_cast<int>(types.indexOf(type)) + 1;
            if (options.testType == 0)
                options.problem =
                    QCoreApplication::translate("StartUp", "--test needs one of amplitude, impedance, reactance.");
        } else {
            options.arguments.append(argument);
        }
    }
    return options;
}

QString StartUpOptions::helpText()
{
    return QCoreApplication::translate("StartUp",
                                       "Usage: marrowickgraph [PLOT FILE] [-rerun] [--test TYPE] [--link-log FILE]\n"
                                       "\n"
                                       "Draws what a T46 or DT46 analyser measures.\n"
                                       "\n"
                                       "  PLOT FILE         opened at the start: .gad amplitude, .gzd impedance, "
                                       ".gxd reactance\n"
                                       "  -rerun            the instrument runs the script that it holds\n"
                                       "  --test TYPE       a new graph and a test into it as soon as the "
                                       "instrument has answered:\n"
                                       "                    amplitude, impedance or reactance\n"
                                       "  --link-log FILE   log everything that passes the link to the instrument\n"
                                       "  --version         print the version and end\n"
                                       "  -h, --help        print this text and end\n"
                                       "\n"
                                       "The toolkit's own options, such as -style and -platform, work too.\n");
}

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
};

StartUp::StartUp(const QString& settingsFolder)
    : m_program(std::make_unique<Program>(settingsFolder))
{}

StartUp::~StartUp() = default;

frmMain* StartUp::mainWindow() const
{
    return m_program->main.get();
}

void StartUp::run(const StartUpOptions& options)
{
    Program& program = *m_program;
    ProgramState& state = program.state;

    state.gbfSplashShown = program.preferences.value(options::kSplashScreen);
    if (state.gbfSplashShown) {
        program.splash = std::make_unique<frmSplash>();
        program.splash->showAndRefresh();
    }

    const CommandLine request = CommandLine::parse(options.arguments);

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

    window->tellDamagedSettings();
    if (!log)
        program.messages.message(log.sentence(), UserMessages::OkOnly | UserMessages::Exclamation,
                                 frmMain::tr("Link log"));
    if (!window->isUnloaded())
        actOnCommandLine(request);
    if (window && !window->isUnloaded() && options.testType != 0)
        startTest(options.testType);
}

void StartUp::startTest(int testType)
{
    constexpr int kRounds = 400; // two seconds at most for the instrument's answer
    ProgramState& state = m_program->state;
    const QPointer<frmMain> window = m_program->main.get();
    for (int round = 0; round < kRounds && !state.gbfDeviceReady; ++round) {
        window->waitRounds(1, 5);
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

void StartUp::actOnCommandLine(const CommandLine& request)
{
    const QPointer<frmMain> window = m_program->main.get();
    if (request.plotFile) {
        for (const QString& file : filesToOpen(request)) {
            window->gcolDocuments().LoadExistingDocument(file);
            if (window->isUnloaded())
                return;
        }
    }
    if (request.rerun) {
        KorvaLink& device = m_program->device;
        if (!device.Connected()) {
            window->mnuTestDevice_Click();
            window->waitRounds(50, 5);
        }
        window->waitRounds(50, 5);
        window->unloadSettings();
        m_program->state.gbfScriptRunning = true;
        device.Write(command::run());
        window->processEvents();
    }
}

QStringList StartUp::filesToOpen(const CommandLine& request)
{
    // The line as a whole is the name, blanks and all. Only where there is no such file the words are names of their
    // own.
    QStringList names{request.strFileName};
    if (!QFileInfo::exists(request.strFileName) && request.files.size() > 1)
        names = request.files;
    // A relative name means the folder that the program was started from; a document keeps the full path.
    for (QString& name : names) {
        if (const QFileInfo file(name); file.exists())
            name = file.absoluteFilePath();
    }
    return names;
}
