// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/MaskCommand.h"

#include "cli/plots/Workspace.h"
#include "files/SafeFile.h"
#include "mask/MaskShape.h"
#include "mask/MaskVerdict.h"
#include "mask/maskline.h"

#include <QCoreApplication>
#include <QJsonObject>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

bool canHaveMask(const PenDocument& document)
{
    return document.pgiTestType() == PenDocument::Amplitude || document.pgiTestType() == PenDocument::Impedance;
}

ExitCode setMask(const MaskOptions& options, Workspace& workspace, PenDocument& document, Console& console)
{
    const ValueOr<MaskShape> shape = maskfile::readFile(options.maskFile, document.pgiTestType());
    if (!shape)
        return console.failed(ExitCode::FileError, shape.sentence());
    const bool wouldLose =
        !document.hasMasks() && (document.pens().hasData(mask::kUpper) || document.pens().hasData(mask::kLower));
    if (wouldLose && !options.force)
        return console.failed(
            maskexit::kNoVerdict,
            tr("Pens 9 and 10 of %1 hold data that a mask would replace; --force replaces it.").arg(options.plot));
    maskline(document, workspace.preferences()).replace(shape.value());
    if (const Outcome written = files::writeFile(options.plot, document.plotBytes()); !written)
        return console.failed(ExitCode::FileError, written.sentence());
    return ExitCode::Done;
}

QJsonObject worstObject(const WorstMaskPoint& worst)
{
    return {{u"point"_s, worst.point + 1}, {u"frequency"_s, worst.frequency},
            {u"value"_s, worst.value},     {u"line"_s, worst.line == mask::kUpper ? u"upper"_s : u"lower"_s},
            {u"limit"_s, worst.limit},     {u"margin"_s, worst.margin}};
}

struct Judgement
{
    const char* word; ///< in the JSON object
    QString sentence;
    ExitCode code;
};

Judgement judgement(const MaskVerdict& verdict, int penNumber)
{
    if (!verdict.hasData)
        return {"no data", tr("Pen %1 contains no data").arg(penNumber), maskexit::kNoVerdict};
    if (!verdict.inside)
        return {"outside", tr("Pen %1 is not within mask").arg(penNumber), maskexit::kOutside};
    return {"inside", tr("Pen %1 is within mask").arg(penNumber), maskexit::kInside};
}

ExitCode testPen(const MaskOptions& options, PenDocument& document, Console& console)
{
    GraphModel& graph = document.peGraph();
    if (!mask::isOn(graph, Qt::CaseInsensitive))
        return console.failed(maskexit::kNoVerdict, tr("%1: no mask data available.").arg(options.plot));
    if (!MaskTest(graph).maskCheckBothOrders())
        return console.failed(maskexit::kNoVerdict,
                              tr("%1: the mask data is not in incrementing order of frequency.").arg(options.plot));
    const MaskVerdict verdict = maskverdict::of(graph, options.pen);
    const Judgement judged = judgement(verdict, options.pen + 1);
    if (options.json) {
        QJsonObject object{{u"plot"_s, options.plot},
                           {u"pen"_s, options.pen + 1},
                           {u"verdict"_s, QLatin1String(judged.word)},
                           {u"unit"_s, maskverdict::unit(document.pgiTestType())},
                           {u"worst"_s, QJsonValue::Null}};
        if (verdict.worst)
            object[u"worst"_s] = worstObject(*verdict.worst);
        console.result(object);
    } else {
        console.result(judged.sentence);
        if (const QString more = maskverdict::details(verdict, document.pgiTestType()); !more.isEmpty())
            console.result(more);
    }
    return judged.code;
}

} // namespace

ExitCode maskPlot(const MaskOptions& options, Console& console)
{
    ConsoleMessages messages(console);
    Workspace workspace(messages);
    const ValueOr<PenDocument*> opened = workspace.openPlot(options.plot);
    if (!opened) {
        const QString sentence = opened.sentence();
        return console.failed(ExitCode::FileError,
                              sentence.contains(options.plot) ? sentence : options.plot + u": "_s + sentence);
    }
    PenDocument& document = *opened.value();
    if (document.giDocumentVersion() > 1)
        return console.failed(maskexit::kNoVerdict,
                              tr("%1: new data format. Please check for updates.").arg(options.plot));
    if (!canHaveMask(document))
        return console.failed(maskexit::kNoVerdict,
                              tr("%1: only amplitude and impedance plots have masks.").arg(options.plot));
    if (!options.maskFile.isEmpty()) {
        if (const ExitCode code = setMask(options, workspace, document, console); code != ExitCode::Done)
            return code;
        if (options.pen < 0) {
            if (options.json)
                console.result(QJsonObject{{u"plot"_s, options.plot}, {u"mask"_s, options.maskFile}});
            else
                console.result(tr("%1: mask set").arg(options.plot));
        }
    }
    return options.pen < 0 ? ExitCode::Done : testPen(options, document, console);
}

MaskCommand::MaskCommand()
    : m_pen(u"pen"_s, tr("Pen to test, 1 to 10."), u"pen"_s)
    , m_set(u"set"_s, tr("Puts the mask of that file into the plot, which is saved with it."), u"file"_s)
    , m_force(u"force"_s, tr("Sets the mask even where pens 9 and 10 hold measured data."))
{}

QString MaskCommand::name() const
{
    return u"mask"_s;
}

QString MaskCommand::summary() const
{
    return tr("tests a pen against the mask lines of its plot");
}

QString MaskCommand::description() const
{
    return tr("Tells whether a pen lies between the upper and the lower mask line of its plot, and which of its points "
              "comes nearest to a line.");
}

QList<QCommandLineOption> MaskCommand::options() const
{
    return {m_pen, m_set, m_force};
}

QString MaskCommand::exitCodes() const
{
    return tr("Exit codes: 0 inside, 1 outside, 2 no verdict (no data, no mask, usage), 5 not written or not read.\n");
}

MaskOptions MaskCommand::read(Arguments& arguments) const
{
    MaskOptions result;
    result.plot = arguments.files().value(0);
    result.maskFile = arguments.fileName(m_set);
    result.force = arguments.isSet(m_force);
    result.json = arguments.common().json;
    if (arguments.isSet(m_pen))
        result.pen = arguments.whole(m_pen, 1, plot::kPens) - 1;
    else if (result.maskFile.isEmpty())
        arguments.refuse(tr("The pen to test is missing: --pen 1 to --pen 10."));
    if (!result.maskFile.isEmpty() && result.plot == "-"_L1)
        arguments.refuse(tr("A plot from standard input cannot be saved with a mask."));
    if (result.force && result.maskFile.isEmpty())
        arguments.refuse(tr("--force needs --set."));
    return result;
}

ExitCode MaskCommand::run(Arguments& arguments, Console& console)
{
    const MaskOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(refusal(), arguments.outcome().sentence());
    return maskPlot(options, console);
}

} // namespace cli
