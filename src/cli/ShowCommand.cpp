// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ShowCommand.h"

#include "cli/PlotSummary.h"
#include "cli/Session.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace cli {

using namespace Qt::StringLiterals;

ExitCode showPlots(const ShowOptions& options, Console& console)
{
    Session session(console);
    ExitCode code = ExitCode::Done;
    QJsonArray plots;
    bool first = true;
    for (const QString& file : options.files) {
        const ValueOr<PenDocument*> document = session.openPlot(file);
        if (!document) {
            const QString sentence = document.sentence();
            console.problem(sentence.contains(file) ? sentence : file + u": "_s + sentence);
            code = ExitCode::FileError;
            continue;
        }
        if (options.pointsOfPen > 0) {
            const SweepResult pen = storedPen(*document.value(), options.pointsOfPen - 1);
            console.result(QString::fromLatin1(pointsTable(pen).chopped(1)));
            continue;
        }
        const PlotSummary summary = summaryOf(*document.value(), file);
        if (options.json) {
            plots.append(summaryObject(summary));
            continue;
        }
        console.result((first ? QString() : QString(u'\n')) + summaryText(summary));
        first = false;
    }
    if (options.json)
        console.result(
            QString::fromUtf8(QJsonDocument(QJsonObject{{u"plots"_s, plots}}).toJson(QJsonDocument::Compact)));
    return code;
}

} // namespace cli
