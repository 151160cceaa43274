// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/RecoverCommand.h"

#include "cli/plots/SweepResult.h"
#include "cli/plots/Workspace.h"
#include "controls/graph/GraphFile.h"
#include "document/PlotFileNames.h"
#include "files/SafeFile.h"
#include "recovery/RecoveryStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

/// Does the work and keeps what it has to say.
class Recovery
{
public:
    Recovery(const QString& stateFolder, const RecoverOptions& options, Console& console)
        : m_store(stateFolder)
        , m_options(options)
        , m_console(console)
    {}

    ExitCode run();

private:
    template <typename Thing>
    QJsonObject common(const Thing& thing) const
    {
        return {{u"when"_s, thing.when.toString(Qt::ISODate)},
                {u"caption"_s, thing.caption},
                {u"file"_s, thing.fileName.isEmpty() ? QJsonValue() : QJsonValue(thing.fileName)},
                {u"type"_s, typeName(thing.testType)}};
    }
    /// The name of the file written, or empty.
    QString write(const ValueOr<QByteArray>& plot, const QDateTime& when, std::int16_t testType);
    ValueOr<QByteArray> plotOf(const RecoveryStore::Pen& pen) const;
    void add(QJsonArray& list, QJsonObject object, const QString& line, const QString& written);

    RecoveryStore m_store;
    const RecoverOptions& m_options;
    Console& m_console;
    ExitCode m_code = ExitCode::Done;
    int m_number = 0;
};

QString Recovery::write(const ValueOr<QByteArray>& plot, const QDateTime& when, std::int16_t testType)
{
    if (m_options.folder.isEmpty())
        return {};
    if (!plot) {
        m_code = m_console.failed(ExitCode::FileError, plot.sentence());
        return {};
    }
    QString name;
    do {
        name = u"%1/recovered-%2-%3%4"_s.arg(m_options.folder, when.toString(u"yyyyMMdd-HHmmss"_s))
                   .arg(++m_number)
                   .arg(PlotFileNames::extension(testType));
    } while (QFileInfo::exists(name));
    if (const Outcome written = files::writeFile(name, plot.value()); !written) {
        m_code = m_console.failed(ExitCode::FileError, written.sentence());
        return {};
    }
    return name;
}

ValueOr<QByteArray> Recovery::plotOf(const RecoveryStore::Pen& pen) const
{
    const auto record = m_store.read(pen);
    if (!record)
        return Outcome::failure(record.sentence());
    ConsoleMessages messages(m_console);
    Workspace workspace(messages);
    PenDocument& document = workspace.newDocument(pen.testType, true);
    document.setPenName(pen.pen, pen.name);
    record.value().data.writeTo(document.peGraph(), pen.pen);
    return document.plotBytes();
}

void Recovery::add(QJsonArray& list, QJsonObject object, const QString& line, const QString& written)
{
    if (!written.isEmpty())
        object.insert(u"written"_s, written);
    list.append(object);
    if (!m_options.json && m_options.list)
        m_console.result(written.isEmpty() ? line : line + u'\t' + written);
    else if (!m_options.json && !written.isEmpty())
        m_console.result(written);
}

ExitCode Recovery::run()
{
    QJsonArray plots, pens;
    for (const RecoveryStore::Plot& plot : m_store.plots()) {
        QJsonObject object = common(plot);
        object.insert(u"crashed"_s, plot.crashed);
        const QString line = u"%1\t%2\t%3\t%4"_s.arg(plot.when.toString(Qt::ISODate), tr("plot"), plot.caption,
                                                     plot.crashed ? tr("not closed, its program had ended")
                                                                  : tr("closed without saving"));
        const QString written =
            m_options.folder.isEmpty() ? QString() : write(m_store.read(plot), plot.when, plot.testType);
        add(plots, object, line, written);
    }
    for (const RecoveryStore::Pen& pen : m_store.pens()) {
        QJsonObject object = common(pen);
        object.insert(u"pen"_s, pen.pen + 1);
        object.insert(u"name"_s, pen.name);
        object.insert(u"points"_s, pen.points);
        const QString line =
            u"%1\t%2\t%3\t%4"_s.arg(pen.when.toString(Qt::ISODate), tr("pen %1").arg(pen.pen + 1), pen.caption,
                                    tr("%1 points of \"%2\"").arg(QString::number(pen.points), pen.name));
        const QString written = m_options.folder.isEmpty() ? QString() : write(plotOf(pen), pen.when, pen.testType);
        add(pens, object, line, written);
    }
    if (m_options.json)
        m_console.result(QJsonObject{{u"plots"_s, plots}, {u"pens"_s, pens}});
    else if (plots.isEmpty() && pens.isEmpty())
        m_console.result(tr("There is nothing to recover."));
    return m_code;
}

} // namespace

ExitCode recoverPlots(const QString& stateFolder, const RecoverOptions& options, Console& console)
{
    if (!options.folder.isEmpty() && !QFileInfo(options.folder).isDir())
        return console.failed(ExitCode::FileError, tr("%1: there is no such folder").arg(options.folder));
    return Recovery(stateFolder, options, console).run();
}

RecoverCommand::RecoverCommand()
    : m_list(u"list"_s, tr("Lists what is kept, beside what --output writes."))
    , m_output(u"output"_s, tr("Writes every plot, and every pen as a plot, into this folder."), u"folder"_s)
{}

QString RecoverCommand::name() const
{
    return u"recover"_s;
}

QString RecoverCommand::summary() const
{
    return tr("lists and writes what was measured and not saved");
}

QString RecoverCommand::description() const
{
    return tr("Lists what the desktop program has kept of measurements that are in no file, and writes it.");
}

QList<QCommandLineOption> RecoverCommand::options() const
{
    return {m_list, m_output};
}

ExitCode RecoverCommand::run(Arguments& arguments, Console& console)
{
    RecoverOptions options;
    if (arguments.isSet(m_output))
        options.folder = arguments.fileName(m_output);
    options.list = arguments.isSet(m_list) || options.folder.isEmpty();
    options.json = arguments.common().json;
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return recoverPlots(recovery::stateFolder(), options, console);
}

} // namespace cli
