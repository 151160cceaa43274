// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/AnalyseCommand.h"

#include "cli/Jobs.h"
#include "cli/plots/Workspace.h"
#include "controls/resonance/ResonanceEngine.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

/// What became of one plot.
struct Analysed
{
    std::vector<PenAnalysis> pens;
    QString problem;     ///< empty: the file could be read
    QStringList remarks; ///< of the engine
};

Analysed analysed(const QString& file, const AnalyseOptions& options)
{
    Analysed result;
    ConsoleMessages messages([&result](const QString& sentence) { result.remarks += sentence; });
    Workspace workspace(messages);
    const ValueOr<PenDocument*> document = workspace.openPlot(file);
    if (!document) {
        const QString sentence = document.sentence();
        result.problem = sentence.contains(file) ? sentence : file + u": "_s + sentence;
        return result;
    }
    ResonanceEngine engine;
    result.pens = analyse(engine, *document.value(), file, options.pen, options.clf);
    return result;
}

} // namespace

ExitCode analysePlots(const AnalyseOptions& options, Console& console)
{
    ExitCode code = ExitCode::Done;
    QJsonArray pens;
    const auto tell = [&](const PenAnalysis& pen) {
        if (!pen.solved() && code == ExitCode::Done)
            code = ExitCode::NotSolved;
        if (options.json)
            pens.append(analysisObject(pen, options.detail));
        else if (!options.csv)
            console.result(analysisText(pen, options.detail));
        else
            for (const QString& row : analysisRows(pen, options.detail))
                console.result(row);
    };
    const auto deliver = [&](std::size_t, const Analysed& plot) {
        for (const QString& remark : plot.remarks)
            console.problem(remark);
        if (!plot.problem.isEmpty())
            code = console.failed(ExitCode::FileError, plot.problem);
        for (const PenAnalysis& pen : plot.pens)
            tell(pen);
    };
    if (options.csv)
        console.result(analysisHeading(options.detail));
    const auto work = [&options](std::size_t index) {
        return analysed(options.files.at(static_cast<qsizetype>(index)), options);
    };
    runJobs(options.jobs, static_cast<std::size_t>(options.files.size()), work, deliver);
    if (options.json)
        console.result(QJsonObject{{u"pens"_s, pens}});
    return code;
}

AnalyseCommand::AnalyseCommand()
    : m_pen(u"pen"_s, tr("Pen to analyse, 1 to 10 or all (all that have points)."), u"pen"_s, u"all"_s)
    , m_clf(u"clf"_s, tr("Pen that the capacitance at low frequency is read from, 1 to 10 (the same)."), u"pen"_s)
    , m_csv(u"csv"_s, tr("Prints a table: a heading, then a row for each pen."))
    , m_modes(u"modes"_s, tr("Tells the other modes too."))
    , m_circuit(u"circuit"_s, tr("Tells the equivalent circuit: R1, L1, C1, C0, fp and keff."))
{}

QString AnalyseCommand::name() const
{
    return u"analyse"_s;
}

QString AnalyseCommand::summary() const
{
    return tr("tells the resonance of parts from plot files");
}

QString AnalyseCommand::description() const
{
    return tr(
        "Tells the resonance of each pen of impedance and reactance plots: F1, F2, Fr, Zr, Q and the capacitance at "
        "low frequency, each with its standard uncertainty.");
}

QList<QCommandLineOption> AnalyseCommand::options() const
{
    return {m_pen, m_clf, m_csv, m_modes, m_circuit};
}

AnalyseOptions AnalyseCommand::read(Arguments& arguments) const
{
    AnalyseOptions result;
    result.files = arguments.files();
    const auto pen = [&arguments](const QCommandLineOption& option, const QString& wanted) {
        bool isWhole = false;
        const int number = arguments.text(option).toInt(&isWhole);
        if (!isWhole || number < 1 || number > PenDocument::kPens)
            arguments.refuse(option, wanted);
        return number;
    };
    if (arguments.text(m_pen) != u"all"_s)
        result.pen = pen(m_pen, tr("a pen from 1 to 10 or all"));
    if (arguments.isSet(m_clf))
        result.clf = pen(m_clf, tr("a pen from 1 to 10"));
    result.detail = {arguments.isSet(m_circuit), arguments.isSet(m_modes)};
    result.csv = arguments.isSet(m_csv);
    result.json = arguments.common().json;
    result.jobs = arguments.common().jobs;
    if (result.csv && result.json)
        arguments.refuse(tr("--csv and --json both print to standard output; one of them is enough."));
    return result;
}

ExitCode AnalyseCommand::run(Arguments& arguments, Console& console)
{
    const AnalyseOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return analysePlots(options, console);
}

} // namespace cli
