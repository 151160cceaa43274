// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/SweepRun.h"

#include "cli/instrument/Waiting.h"
#include "cli/plots/DrawProgram.h"
#include "cli/plots/PenAnalysis.h"
#include "controls/graph/GraphFile.h"
#include "controls/resonance/ResonanceEngine.h"
#include "instrument/Commands.h"
#include "link/DocumentFollower.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <utility>

namespace cli {
using namespace Qt::StringLiterals;

SweepRun::SweepRun(const SweepOptions& options, Console& console)
    : m_options(options)
    , m_console(console)
    , m_session(console)
{
    m_timeout.setSingleShot(true);
    m_silence.setSingleShot(true);
    m_silence.setInterval(kLongestSilence + 2 * options.period);
    connect(&m_timeout, &QTimer::timeout, this, [this] { endBy(End::TimeUp); });
    connect(&m_silence, &QTimer::timeout, this, [this] { endBy(End::Silent); });
    connect(&m_session.device(), &KorvaLink::Disconnected, this, [this] { endBy(End::Lost); });
    // Connected behind the device module, so the frames have been handled when this runs.
    connect(&m_session.device(), &KorvaLink::DataReceived, this, [this] {
        // Levels that come between tests do not count: only the sweep's own progress does.
        if (m_silence.isActive() &&
            std::exchange(m_lastPoint, m_session.mirror().iCurrentPoint) != m_session.mirror().iCurrentPoint)
            m_silence.start();
        showProgress();
        m_loop.quit();
    });
    connect(&m_session.device(), &KorvaLink::LogStopped, this,
            [this](const QString& sentence) { m_console.problem(sentence); });
    DeviceModule& module = m_session.deviceModule();
    connect(&module.answers(), &AnswerWatch::completed, &m_loop, &QEventLoop::quit);
    connect(&module.events(), &InstrumentEvents::changed, this, [this](MirrorPart part) {
        m_pinTaken = m_pinTaken || part == MirrorPart::Options;
        // However old what the instrument tells here may be, the start says what is asked for.
        if (m_starting)
            wantSweep();
    });
    ConsoleWindow& window = m_session.window();
    const InstrumentEvents& events = module.events();
    connect(&events, &InstrumentEvents::plottingChanged, this, [this](bool plotting) {
        m_viewing = !plotting && m_plotting;
        if (!plotting)
            return;
        m_plotting = true;
        const InstrumentMirror& mirror = m_session.mirror();
        m_swept = {static_cast<float>(mirror.dblStartFrequency), static_cast<float>(mirror.dblEndFrequency)};
    });
    connect(&events, &InstrumentEvents::pointsFinished, this, [this] { m_penMoved = m_plotting; });
    window.onEndProgram = [this] { endBy(End::Stopped); };
}

ExitCode SweepRun::run()
{
    if (m_options.timeout > 0)
        m_timeout.start(static_cast<int>(std::min(m_options.timeout * 1000, 2e9)));
    if (const ExitCode code = connectInstrument(); code != ExitCode::Done)
        return code;
    if (const ExitCode code = applyOptions(); code != ExitCode::Done)
        return code;

    PenDocument& document = m_session.newDocument(m_options.type);
    document.graphSetFrequecyLinear(m_options.linear);
    m_session.device().Write(command::linear(m_options.linear));

    ExitCode code = ExitCode::Done;
    for (int number = 1; number <= m_options.repeat && code == ExitCode::Done; ++number)
        code = sweepOnce(number);
    m_console.endProgress();
    m_session.device().Close();
    if (m_results.empty())
        return code;

    const ExitCode written = hasPoints() ? writeFiles(document) : ExitCode::Done;
    const ExitCode printed = m_options.streams() ? ExitCode::Done : printResults(document);
    for (const ExitCode each : {code, written}) {
        if (each != ExitCode::Done)
            return each;
    }
    return printed;
}

void SweepRun::stop()
{
    endBy(End::Stopped);
}

ExitCode SweepRun::connectInstrument()
{
    if (!m_options.linkLog.isEmpty()) {
        if (const Outcome log = m_session.device().SetLogFile(m_options.linkLog); !log)
            return m_console.failed(ExitCode::FileError, log.sentence());
    }
    if (const Outcome opened = m_session.open(m_options.device); !opened)
        return m_console.failed(ExitCode::NoInstrument, opened.sentence());
    if (waitFor([this] { return m_session.state().gbfDeviceReady; }, kAnswerTime)) {
        // The answer comes twice, and the second one is older than what would be set behind the first.
        waitFor([this] { return m_session.deviceModule().answers().complete(); }, -1);
        if (m_end == End::None)
            return checkSerial();
    }
    if (m_end == End::Stopped || m_end == End::TimeUp)
        return m_console.failed(ExitCode::Stopped, tr("Stopped before the instrument was ready."));
    if (m_end == End::Lost)
        return m_console.failed(ExitCode::Lost, tr("The link to the instrument went down before the sweep."));
    return m_console.failed(ExitCode::NoInstrument, tr("The device does not answer as an instrument does."));
}

ExitCode SweepRun::checkSerial()
{
    const QString& asked = m_options.device;
    const QString told = m_session.mirror().strDeviceSerial.trimmed();
    // A path names a port, whoever sits behind it; an instrument that told no number may be the right one.
    if (asked.isEmpty() || asked.contains(u'/') || told.isEmpty() || told == InstrumentMirror().strDeviceSerial ||
        told == asked)
        return ExitCode::Done;
    return m_console.failed(ExitCode::NoInstrument,
                            tr("What is listed as %1 says that it is %2; nothing was measured.").arg(asked, told));
}

ExitCode SweepRun::applyOptions()
{
    const InstrumentMirror& mirror = m_session.mirror();
    int code = 0;
    if (m_options.attenuation > 0) {
        if (!mirror.bfAttenuationAvailable || mirror.dblAttenuationStep <= 0)
            return m_console.failed(ExitCode::Refused, tr("This instrument has no attenuator."));
        const double steps = m_options.attenuation / mirror.dblAttenuationStep;
        code = static_cast<int>(std::lround(std::min(steps, 32767.0)));
        if (std::abs(steps - code) > 1e-6 || code > mirror.iAttenuationSteps)
            return m_console.failed(
                ExitCode::Refused, tr("This instrument attenuates in steps of %1 dB, up to %2 dB.")
                                       .arg(values::decimalText(mirror.dblAttenuationStep),
                                            values::decimalText(mirror.dblAttenuationStep * mirror.iAttenuationSteps)));
    }
    if (m_options.from < mirror.dblAmpMinFreq || m_options.to > mirror.dblAmpMaxFreq)
        return m_console.failed(ExitCode::Refused, tr("This instrument measures from %1 to %2.")
                                                       .arg(values::engineeringText(mirror.dblAmpMinFreq, u"Hz"_s, 6),
                                                            values::engineeringText(mirror.dblAmpMaxFreq, u"Hz"_s, 6)));
    m_attenuationCode = static_cast<std::int16_t>(code);
    wantSweep();
    m_session.deviceModule().DeviceSendSettings();
    return ExitCode::Done;
}

void SweepRun::wantSweep()
{
    InstrumentMirror& mirror = m_session.mirror();
    mirror.dblStartFrequency = m_options.from;
    mirror.dblEndFrequency = m_options.to;
    mirror.iNumPoints = m_options.points;
    mirror.iTestPeriod = m_options.period;
    mirror.iAttenuationCode = m_attenuationCode;
    mirror.iSweepMode = m_options.direction;
    mirror.bfPhaseOn = m_options.phase || m_options.type == PenDocument::Reactance;
    mirror.bfRepeat = false;
    mirror.bfGraphExtents = false;
}

void SweepRun::selectPin()
{
    m_pinTaken = false;
    m_session.deviceModule().follower().selectPin();
    waitFor([this] { return m_pinTaken; }, kCommandTime);
    wantSweep();
}

ExitCode SweepRun::sweepOnce(int number)
{
    PenDocument& document = m_session.document();
    const int pen = number - 1;
    document.setCurrentPen(pen);
    m_starting = true;
    selectPin();
    m_plotting = m_viewing = m_penMoved = false;
    m_lastPoint = -1;
    m_session.messages().takeSaid();
    m_session.testRun().mnuTestStart_Click();
    m_starting = false;
    if (m_end == End::None && !waitFor([this] { return m_plotting; }, kAnswerTime) && m_end == End::None) {
        // Whether it runs unheard or has only lost its report: nobody waits for it from here on.
        const bool said = m_session.messages().takeSaid();
        stopInstrument();
        if (said)
            return ExitCode::Refused; // the sentence has been printed
        return m_console.failed(ExitCode::Refused, tr("The instrument does not start the test."));
    }

    m_silence.start();
    waitFor([this] { return m_viewing || m_penMoved; }, -1);
    m_silence.stop();
    if (m_end == End::None) {
        // A complete sweep ends in "E", then "Y", and the next one may only start behind both; one of them may get
        // lost.
        waitFor([this] { return m_viewing && m_penMoved; }, kAnswerTime / 5);
        if (m_end == End::None)
            m_end = End::Done;
    } else if (m_end != End::Lost) {
        stopInstrument();
    }

    SweepResult result = readPen(document, pen);
    result.phase = m_session.mirror().bfPhaseOn;
    result.wanted = m_options.points;
    result.serial = m_session.mirror().strDeviceSerial;
    m_results.push_back(result);
    return judge(result);
}

ExitCode SweepRun::judge(const SweepResult& result)
{
    const QString reached =
        tr("%1 of %2 points").arg(QString::number(result.points.size()), QString::number(result.wanted));
    switch (m_end) {
    case End::Lost:
        return m_console.failed(ExitCode::Lost, tr("The link to the instrument went down after %1.").arg(reached));
    case End::Stopped:
        return m_console.failed(ExitCode::Stopped, tr("Stopped after %1.").arg(reached));
    case End::TimeUp:
        return m_console.failed(ExitCode::Stopped, tr("Stopped after %1: the time is up.").arg(reached));
    case End::Silent:
        if (result.complete())
            break; // only the report of the end was lost
        return m_console.failed(ExitCode::Stopped,
                                tr("Stopped after %1: the instrument has fallen silent.").arg(reached));
    case End::None:
    case End::Done:
        break;
    }
    m_end = End::None;
    if (result.complete())
        return compare(result);
    return m_console.failed(ExitCode::Stopped, tr("The instrument ended the sweep after %1.").arg(reached));
}

ExitCode SweepRun::compare(const SweepResult& result)
{
    const AskedSweep asked{m_options.from, m_options.to, m_options.points, m_options.direction == SweepOptions::Down};
    if (const QString difference = differenceFrom(asked, m_swept, result); !difference.isEmpty())
        return m_console.failed(ExitCode::Different, difference);
    return ExitCode::Done;
}

bool SweepRun::waitFor(const std::function<bool()>& condition, int milliseconds)
{
    return waitIn(
        m_loop, condition, [this] { return m_end == End::None; }, milliseconds);
}

void SweepRun::endBy(End reason)
{
    if (m_end == End::None)
        m_end = reason;
    m_loop.quit();
}

void SweepRun::stopInstrument()
{
    if (!m_session.device().Connected())
        return;
    m_session.testRun().mnuTestStopTest_Click();
    const End reason = std::exchange(m_end, End::None);
    waitFor([this] { return m_viewing; }, kAnswerTime / 5);
    m_end = reason;
}

void SweepRun::showProgress()
{
    constexpr int kProgressInterval = 100;
    if (m_options.quiet || !m_plotting || (m_sinceProgress.isValid() && m_sinceProgress.elapsed() < kProgressInterval))
        return;
    m_sinceProgress.start();
    m_console.progress(
        tr("%1 of %2 points")
            .arg(QString::number(m_session.mirror().iCurrentPoint + 1), QString::number(m_options.points)));
}

bool SweepRun::hasPoints() const
{
    return std::any_of(m_results.begin(), m_results.end(),
                       [](const SweepResult& result) { return !result.points.empty(); });
}

Outcome SweepRun::writePlot(const GraphModel& graph) const
{
    const bool table = m_options.output.name().endsWith(".csv"_L1, Qt::CaseInsensitive);
    return m_options.output.write(table ? resultTable(m_results) : GraphFile::PEstore(graph));
}

ExitCode SweepRun::writeFiles(PenDocument& document)
{
    GraphModel& graph = document.peGraph();
    const OutputFile& named = m_options.output.isNamed() ? m_options.output : m_options.picture;
    graph.setMainTitle(named.isStandardOutput() ? QString() : QFileInfo(named.name()).completeBaseName());
    graph.setTXAxisLabel(document.SetVersion());
    document.setCurrentPen(0);
    graph.PEactions(graph::Reinitialise);

    ExitCode code = ExitCode::Done;
    const auto note = [this, &code](const Outcome& written) {
        if (!written)
            code = m_console.failed(ExitCode::FileError, written.sentence());
    };
    if (m_options.output.isNamed())
        note(writePlot(graph));
    if (m_options.csv.isNamed())
        note(m_options.csv.write(resultTable(m_results)));
    if (m_options.picture.isNamed())
        note(DrawProgram::draw(graph, m_options.picture, m_options.pictureSize));
    return code;
}

ExitCode SweepRun::printResults(const PenDocument& document)
{
    ExitCode code = ExitCode::Done;
    ResonanceEngine engine;
    const AnalysisDetail detail{true, true};
    QJsonArray sweeps;
    int pen = 0;
    for (const SweepResult& result : m_results) {
        ++pen;
        QJsonObject object;
        if (m_options.json)
            object = resultObject(result);
        else
            m_console.result(resultLine(result));
        if (m_options.analyse) {
            const PenAnalysis analysis = analyse(engine, document, {}, pen, 0).front();
            if (!analysis.solved())
                code = ExitCode::NotSolved;
            if (m_options.json)
                object.insert(u"analysis"_s, analysisObject(analysis, detail));
            else
                m_console.result(analysisText(analysis, detail));
        }
        sweeps.append(object);
    }
    if (m_options.json)
        m_console.result(QJsonObject{{u"sweeps"_s, sweeps}});
    return code;
}

} // namespace cli
