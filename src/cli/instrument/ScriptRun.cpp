// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/ScriptRun.h"

#include "analysis/AnalysisFrames.h"
#include "cli/instrument/Waiting.h"
#include "cli/plots/DrawProgram.h"
#include "instrument/Commands.h"
#include "script/ScriptNames.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>

namespace cli {
using namespace Qt::StringLiterals;

namespace {

/// As large as the desktop program draws a script's pictures until told otherwise.
constexpr QSize kPictureSize{1600, 1600};

} // namespace

ScriptRun::ScriptRun(const RunOptions& options, Console& console)
    : m_options(options)
    , m_console(console)
    , m_answers(console, options.answers)
    , m_session(console, &m_answers, &m_window)
    , m_documentContext{m_session.preferences(), m_answers, m_session.source(), m_session.active()}
    , m_memory(m_documentContext, m_session.active())
    , m_documents(m_documentContext, m_session.state(), m_memory)
    , m_actions(m_session.deviceModule(), m_documents, m_memory)
    , m_masks(m_session.deviceModule(),
              [this](MaskFrame::Judgement judgement) { m_bad = m_bad || judgement != MaskFrame::Judgement::Inside; })
    , m_analysis(m_engine, m_session.active())
    , m_checker(m_session.preferences())
    , m_host(m_session.deviceModule(), m_session.testRun(), m_checker, *this)
{
    m_foldersNoted = m_session.preferences().setValue(options::kPlotFiles.option, options.plots) &&
                     m_session.preferences().setValue(options::kExportFiles.option, options.exports);
    m_session.preferences().setValue(options::kOpenSettings, false);
    m_analysis.setSwitches(m_switches);
    registerAnalysisFrames(m_session.deviceModule(), m_analysis);
    m_actions.ports().pictures = this;
    m_actions.ports().fileNames = &m_answers;
    m_actions.ports().input = &m_answers;
    m_actions.setReport([this](ScriptResult result, const QString& fileName) { report(result, fileName); });
    listen();
}

void ScriptRun::listen()
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] { endBy(End::TimeUp); });
    connect(&m_session.device(), &KorvaLink::Disconnected, this, [this] { endBy(End::Lost); });
    connect(&m_session.device(), &KorvaLink::LogStopped, this,
            [this](const QString& sentence) { m_console.problem(sentence); });
    connect(&m_session.device(), &KorvaLink::DataReceived, &m_loop, &QEventLoop::quit);
    connect(&m_session.deviceModule().answers(), &AnswerWatch::completed, &m_loop, &QEventLoop::quit);
    connect(&m_session.deviceModule().events(), &InstrumentEvents::scriptRunning, this, [this](bool running) {
        // What ran before is none of ours.
        if (!running && m_running)
            endBy(End::Done);
    });
    connect(&m_session.deviceModule().events(), &InstrumentEvents::sweepGivenUp, this, [this] { m_givenUp = true; });
    m_window.onEndProgram = [this] { endBy(End::Done); };
    m_window.onCloseAll = [this] { m_documents.discardAll(); };
    connect(&m_answers, &ScriptAnswers::told, this, [this](const QString& sentence, const QString& title) {
        m_bad = m_bad || title == "**Error"_L1;
        m_unwritten = m_unwritten || title == "Save File Error"_L1 || title == "Export Graph"_L1 ||
                      title == "File Print"_L1 || title == "Script aborted"_L1;
        if (m_options.json)
            m_console.result(QJsonObject{{u"message"_s, sentence}, {u"title"_s, title}});
    });
    connect(&m_answers, &ScriptAnswers::asked, this, [this](const QString& question, const QString& answer) {
        if (m_options.json)
            m_console.result(QJsonObject{{u"question"_s, question}, {u"answer"_s, answer}});
    });
}

ExitCode ScriptRun::run()
{
    if (m_options.timeout > 0)
        m_timeout.start(static_cast<int>(std::min(m_options.timeout * 1000, 2e9)));
    // Told ahead of looking for an instrument.
    if (!QFileInfo(m_options.script).isFile())
        return m_console.failed(ExitCode::FileError, tr("There is no script %1.").arg(m_options.script));
    // Without them the script's files would go to folders that nobody named.
    if (!m_foldersNoted)
        return m_console.failed(ExitCode::FileError,
                                tr("The folder for temporary files, %1, cannot be written to.").arg(QDir::tempPath()));
    ExitCode code = connectInstrument();
    if (code == ExitCode::Done)
        code = check();
    if (code == ExitCode::Done)
        code = execute();
    m_console.endProgress();
    m_session.device().Close();
    m_documents.discardAll();
    return code;
}

ExitCode ScriptRun::connectInstrument()
{
    if (!m_options.linkLog.isEmpty()) {
        if (const Outcome log = m_session.device().SetLogFile(m_options.linkLog); !log)
            return m_console.failed(ExitCode::FileError, log.sentence());
    }
    if (const Outcome opened = m_session.open(m_options.device); !opened)
        return m_console.failed(ExitCode::NoInstrument, opened.sentence());
    if (waitFor([this] { return m_session.state().gbfDeviceReady; }, kAnswerTime)) {
        waitFor([this] { return m_session.deviceModule().answers().complete(); }, -1);
        if (m_end == End::None)
            return ExitCode::Done;
    }
    if (m_end == End::Stopped || m_end == End::TimeUp)
        return m_console.failed(ExitCode::Stopped, tr("Stopped before the instrument was ready."));
    if (m_end == End::Lost)
        return m_console.failed(ExitCode::Lost, tr("The link to the instrument went down before the script."));
    return m_console.failed(ExitCode::NoInstrument, tr("The device does not answer as an instrument does."));
}

ExitCode ScriptRun::check()
{
    InstrumentMirror& mirror = m_session.mirror();
    const std::int16_t code = m_checker.CheckScript(m_options.script, mirror.dblFirmwareVersion, mirror.strDeviceModel);
    QString found;
    m_checker.GetMessages(ScriptChecker::kLongestMessages, found);
    for (const QString& line : found.trimmed().split(u'\n', Qt::SkipEmptyParts))
        m_console.problem(line);
    if (code == ScriptChecker::Clean || code == ScriptChecker::Warnings)
        return ExitCode::Done;
    if (code == ScriptChecker::SevereErrors)
        return ExitCode::FileError; // the sentence has been printed
    return m_console.failed(ExitCode::Refused, tr("The script has errors; nothing was sent to the instrument."));
}

ExitCode ScriptRun::execute()
{
    m_session.device().Write(command::stop());
    m_host.RunScriptFile(m_options.script);
    m_running = m_session.state().gbfScriptRunning;
    if (!m_running && m_end == End::None)
        return ExitCode::Refused; // the sentence has been printed
    waitFor([] { return false; }, -1);
    if ((m_end == End::Stopped || m_end == End::TimeUp) && m_session.device().Connected()) {
        const End reason = std::exchange(m_end, End::None);
        m_session.testRun().mnuTestStopTest_Click();
        waitFor([] { return false; }, kStopTime);
        m_end = reason;
    }
    m_console.endProgress();
    return verdict();
}

ExitCode ScriptRun::verdict()
{
    if (m_end == End::Lost) {
        say(tr("lost"), u"result"_s, u"lost"_s);
        return m_console.failed(ExitCode::Lost, tr("The link to the instrument went down while the script ran."));
    }
    if (m_bad) {
        say(tr("fail"), u"result"_s, u"fail"_s);
        return ExitCode::Bad;
    }
    if (m_end != End::Done || m_userStopped) {
        say(tr("stopped"), u"result"_s, u"stopped"_s);
        return m_end == End::TimeUp ? m_console.failed(ExitCode::Stopped, tr("Stopped: the time is up."))
                                    : ExitCode::Stopped;
    }
    if (m_givenUp) {
        say(tr("incomplete"), u"result"_s, u"incomplete"_s);
        return m_console.failed(ExitCode::Stopped, tr("A sweep was stopped, since a point of it could not be taken."));
    }
    if (m_unwritten) {
        say(tr("incomplete"), u"result"_s, u"incomplete"_s);
        return ExitCode::FileError;
    }
    say(tr("pass"), u"result"_s, u"pass"_s);
    return ExitCode::Done;
}

void ScriptRun::say(const QString& line, const QString& key, const QString& value)
{
    if (m_options.json)
        m_console.result(QJsonObject{{key, value}});
    else
        m_console.result(line);
}

void ScriptRun::report(ScriptResult result, const QString& fileName)
{
    switch (result) {
    case ScriptResult::Plot:
        return say(tr("plot %1").arg(fileName), u"plot"_s, fileName);
    case ScriptResult::Text:
        return say(tr("text %1").arg(fileName), u"text"_s, fileName);
    case ScriptResult::Picture:
        return say(tr("picture %1").arg(fileName), u"picture"_s, fileName);
    case ScriptResult::Stopped:
        m_userStopped = true;
        return;
    }
}

Outcome ScriptRun::ExportFile(PenDocument& document, const QString& fileName, std::int32_t format)
{
    if (format == static_cast<std::int32_t>(ScriptPicture::Metafile))
        return Outcome::failure(tr("Metafiles are written by the desktop program only."));
    const bool jpeg = format == static_cast<std::int32_t>(ScriptPicture::Jpeg);
    const QString name = scriptnames::cutAtDot(fileName) + (jpeg ? ".jpg"_L1 : ".bmp"_L1);
    return DrawProgram::draw(document.peGraph(), OutputFile(name), kPictureSize);
}

void ScriptRun::showTransfer(ScriptTransfer& transfer)
{
    if (m_options.quiet)
        return;
    connect(&transfer, &ScriptTransfer::sent, this,
            [this](qint64 bytes) { m_console.progress(tr("%1 bytes of the script sent").arg(bytes)); });
}

void ScriptRun::unloadTransfer()
{
    m_console.endProgress();
}

bool ScriptRun::waitFor(const std::function<bool()>& condition, int milliseconds)
{
    return waitIn(
        m_loop, condition, [this] { return m_end == End::None; }, milliseconds);
}

void ScriptRun::endBy(End reason)
{
    if (m_end == End::None)
        m_end = reason;
    // Whatever is being asked is of no use any more.
    m_answers.giveUp();
    m_host.transfer().cancel();
    m_loop.quit();
}

void ScriptRun::stop()
{
    endBy(End::Stopped);
}

} // namespace cli
