// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/ShowCommand.h"

#include "cli/Jobs.h"
#include "cli/NearestWord.h"
#include "cli/plots/PlotSummary.h"
#include "cli/plots/Workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

/// What one file has to say.
struct Shown
{
    QString text;
    QJsonObject object;
    QString problem;     ///< empty: the file could be read
    QStringList remarks; ///< of the engine
};

QString missingFile(const QString& file)
{
    const QFileInfo info(file);
    const QString folder = file.chopped(info.fileName().size());
    const QStringList neighbours = QDir(info.absolutePath()).entryList(QDir::Files);
    return tr("%1: there is no such file").arg(file) + suggestion(info.fileName(), neighbours, folder, u"."_s);
}

Shown shown(const QString& file, const ShowOptions& options)
{
    if (file != "-"_L1 && !QFileInfo::exists(file))
        return {{}, {}, missingFile(file), {}};
    Shown plot;
    ConsoleMessages messages([&plot](const QString& sentence) { plot.remarks += sentence; });
    Workspace workspace(messages);
    const ValueOr<PenDocument*> document = workspace.openPlot(file);
    if (!document) {
        const QString sentence = document.sentence();
        plot.problem = sentence.contains(file) ? sentence : file + u": "_s + sentence;
    } else if (options.pointsOfPen > 0) {
        const SweepResult pen = storedPen(*document.value(), options.pointsOfPen - 1);
        plot.text = QString::fromLatin1(pointsTable(pen).chopped(1));
    } else {
        const PlotSummary summary = summaryOf(*document.value(), file);
        if (options.json)
            plot.object = summaryObject(summary);
        else
            plot.text = summaryText(summary);
    }
    return plot;
}

} // namespace

ExitCode showPlots(const ShowOptions& options, Console& console)
{
    ExitCode code = ExitCode::Done;
    QJsonArray plots;
    bool first = true;
    const auto deliver = [&](std::size_t, const Shown& plot) {
        for (const QString& remark : plot.remarks)
            console.problem(remark);
        if (!plot.problem.isEmpty()) {
            code = console.failed(ExitCode::FileError, plot.problem);
        } else if (options.json) {
            plots.append(plot.object);
        } else {
            console.result((first ? QString() : QString(u'\n')) + plot.text);
            first = false;
        }
    };
    const auto work = [&options](std::size_t index) {
        return shown(options.files.at(static_cast<qsizetype>(index)), options);
    };
    runJobs(options.jobs, static_cast<std::size_t>(options.files.size()), work, deliver);
    if (options.json)
        console.result(QJsonObject{{u"plots"_s, plots}});
    return code;
}

ShowCommand::ShowCommand()
    : m_points(u"points"_s, tr("Prints the points of that pen, 1 to 10, as a table instead; takes one file."), u"pen"_s)
{}

QString ShowCommand::name() const
{
    return u"show"_s;
}

QString ShowCommand::summary() const
{
    return tr("prints what plot files hold");
}

QString ShowCommand::description() const
{
    return tr("Prints what plot files hold: type, title, origin, view and pens.");
}

QList<QCommandLineOption> ShowCommand::options() const
{
    return {m_points};
}

ShowOptions ShowCommand::read(Arguments& arguments) const
{
    ShowOptions result{arguments.files(), 0, arguments.common().json, arguments.common().jobs};
    if (!arguments.isSet(m_points))
        return result;
    bool isWhole = false;
    result.pointsOfPen = arguments.text(m_points).toInt(&isWhole);
    if (!isWhole || result.pointsOfPen < 1 || result.pointsOfPen > 10)
        arguments.refuse(m_points, tr("a pen from 1 to 10"));
    if (result.json)
        arguments.refuse(tr("--points prints a table; --json has no place beside it."));
    if (result.files.size() > 1)
        arguments.refuse(tr("--points takes one plot file, not %1.").arg(result.files.size()));
    return result;
}

ExitCode ShowCommand::run(Arguments& arguments, Console& console)
{
    const ShowOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return showPlots(options, console);
}

} // namespace cli
