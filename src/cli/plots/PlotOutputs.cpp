// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/PlotOutputs.h"

#include "cli/Console.h"
#include "cli/plots/Workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

Outcome checkFile(const OutputFile& file, bool force)
{
    if (!file.isStandardOutput() && !force && QFileInfo::exists(file.name()))
        return Outcome::failure(tr("%1 is there already; --force replaces it.").arg(file.name()));
    return file.check();
}

} // namespace

bool streams(const std::vector<PlotOutput>& outputs)
{
    return std::ranges::any_of(outputs, [](const PlotOutput& output) { return output.file.isStandardOutput(); });
}

OutputFile besidePlot(const QString& plot, const QString& folder, const QString& extension)
{
    const QFileInfo info(plot);
    const QString base = info.completeBaseName();
    const QString name = (base.isEmpty() ? info.fileName() : base) + u'.' + extension;
    // As the user wrote it, for the messages.
    return OutputFile(folder.isEmpty() ? plot.chopped(info.fileName().size()) + name : QDir(folder).filePath(name));
}

void refuseClashes(const std::vector<PlotOutput>& outputs, const QString& subject, Arguments& arguments)
{
    QHash<QString, QString> plots, files; // by what they are, in place of comparing each with each
    for (const PlotOutput& output : outputs) {
        if (output.plot != "-"_L1)
            plots.insert(OutputFile(output.plot).identity(), output.plot);
    }
    for (const PlotOutput& output : outputs) {
        const QString identity = output.file.identity();
        if (identity.isEmpty())
            continue;
        if (plots.contains(identity))
            arguments.refuse(
                tr("%1 of %2 would replace the plot %3.").arg(subject, output.plot, plots.value(identity)));
        if (files.contains(identity))
            arguments.refuse(
                tr("%1 and %2 both want to write %3.").arg(files.value(identity), output.plot, output.file.name()));
        files.insert(identity, output.plot);
    }
}

MadeOutput makeOutput(const PlotOutput& output, bool force, const std::function<Outcome(PenDocument&)>& make)
{
    MadeOutput made;
    if (const Outcome writable = checkFile(output.file, force); !writable) {
        made.problem = writable.sentence();
        return made;
    }
    ConsoleMessages messages([&made](const QString& sentence) { made.remarks += sentence; });
    Workspace workspace(messages);
    const ValueOr<PenDocument*> document = workspace.openPlot(output.plot);
    if (!document) {
        const QString sentence = document.sentence();
        made.problem = sentence.contains(output.plot) ? sentence : output.plot + u": "_s + sentence;
    } else if (const Outcome done = make(*document.value()); !done) {
        made.problem = done.sentence();
    }
    return made;
}

} // namespace cli
