// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/scripts/CheckCommand.h"

#include "cli/Jobs.h"
#include "controls/ferrolex/Ferrolex.h"
#include "controls/ferrolex/Parser.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>

namespace cli {
namespace {

using namespace Qt::StringLiterals;
using ferrolex::Finding;

constexpr qint64 kMostRead = 1024 * 1024 + 1; // one byte more than a script may have

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

struct Checked
{
    QString problem; ///< empty: the file could be read
    std::int16_t code = 0;
    int errors = 0;
    int warnings = 0;
    int leftOut = 0;
    std::vector<Finding> findings;
};

Checked checked(const QString& name, const CheckOptions& options)
{
    Checked result;
    QFile file(name);
    const bool opened = name == "-"_L1 ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    const QByteArray bytes = opened ? file.read(kMostRead) : QByteArray();
    if (!opened || file.error() != QFileDevice::NoError) {
        result.problem = tr("%1 cannot be read: %2.").arg(name, file.errorString());
        return result;
    }
    Ferrolex ferrolex;
    result.code = ferrolex.CheckBytes(bytes, options.firmware, options.model);
    result.findings = ferrolex.findings();
    result.leftOut = ferrolex.leftOut();
    if (result.code == Ferrolex::Unreadable) {
        result.problem = name + u": "_s + result.findings.front().sentence;
        return result;
    }
    for (const Finding& finding : result.findings)
        ++(finding.severity == Finding::Severity::Error ? result.errors : result.warnings);
    return result;
}

QString countText(int count, const char* one, const char* many)
{
    return count == 1 ? tr(one) : tr(many).arg(count);
}

QString summaryText(const Checked& script)
{
    QStringList parts;
    if (script.errors > 0)
        parts += countText(script.errors, "one error", "%1 errors");
    if (script.warnings > 0)
        parts += countText(script.warnings, "one warning", "%1 warnings");
    if (script.leftOut > 0)
        parts += countText(script.leftOut, "one further message left out", "%1 further messages left out");
    return parts.isEmpty() ? tr("clean") : parts.join(u", "_s);
}

QString textOf(const QString& file, const Checked& script)
{
    QString text;
    for (const Finding& finding : script.findings)
        text += file + u':' + ferrolex::textOf(finding);
    return text + file + u": "_s + summaryText(script);
}

QJsonObject objectOf(const QString& file, const Checked& script)
{
    QJsonArray findings;
    for (const Finding& finding : script.findings) {
        QJsonObject object{{u"severity"_s, finding.severity == Finding::Severity::Error ? u"error"_s : u"warning"_s},
                           {u"line"_s, finding.line},
                           {u"column"_s, finding.column},
                           {u"sentence"_s, finding.sentence}};
        if (!finding.suggestion.isEmpty())
            object.insert(u"suggestion"_s, finding.suggestion);
        findings.append(object);
    }
    return {{u"file"_s, file},
            {u"errors"_s, script.errors},
            {u"warnings"_s, script.warnings},
            {u"leftOut"_s, script.leftOut},
            {u"findings"_s, findings}};
}

} // namespace

ExitCode checkScripts(const CheckOptions& options, Console& console)
{
    ExitCode code = checkcode::kClean;
    QJsonArray scripts;
    const auto deliver = [&](std::size_t index, const Checked& script) {
        const QString& file = options.files.at(static_cast<qsizetype>(index));
        if (!script.problem.isEmpty()) {
            code = console.failed(ExitCode::FileError, script.problem);
            return;
        }
        if (options.json)
            scripts.append(objectOf(file, script));
        else
            console.result(textOf(file, script));
        const ExitCode own = script.code == Ferrolex::Clean      ? checkcode::kClean
                             : script.code == Ferrolex::Warnings ? checkcode::kWarnings
                                                                 : checkcode::kErrors;
        code = std::max(code, own);
    };
    const auto work = [&options](std::size_t index) {
        return checked(options.files.at(static_cast<qsizetype>(index)), options);
    };
    runJobs(options.jobs, static_cast<std::size_t>(options.files.size()), work, deliver);
    if (options.json)
        console.result(QJsonObject{{u"scripts"_s, scripts}});
    return code;
}

CheckCommand::CheckCommand()
    : m_model(u"model"_s, tr("The instrument that the scripts are for, T46 or DT46. Default: the one with more range."),
              u"model"_s)
    , m_firmware(u"firmware"_s, tr("The firmware of that instrument, as 1.28. Default: any."), u"version"_s)
{}

QString CheckCommand::name() const
{
    return u"check"_s;
}

QString CheckCommand::summary() const
{
    return tr("tells what is wrong with test scripts");
}

QString CheckCommand::description() const
{
    return tr("Tells what is wrong with test scripts, line by line.");
}

QList<QCommandLineOption> CheckCommand::options() const
{
    return {m_model, m_firmware};
}

QString CheckCommand::filesText() const
{
    return tr("Scripts");
}

QString CheckCommand::missingFileText() const
{
    return tr("A script is missing.");
}

QString CheckCommand::exitCodes() const
{
    return tr("Exit codes: 0 all clean, 1 warnings, 2 errors or usage, 5 not read.\n");
}

CheckOptions CheckCommand::read(Arguments& arguments) const
{
    CheckOptions result{arguments.files(), {}, 0, arguments.common().json, arguments.common().jobs};
    if (arguments.isSet(m_model)) {
        const QStringList models{u"T46"_s, u"DT46"_s};
        result.model = models.value(arguments.choice(m_model, models)); // none when it is refused
    }
    if (arguments.isSet(m_firmware)) {
        static const QRegularExpression version(u"^(\\d{1,4})\\.(\\d{1,4})$"_s);
        const QRegularExpressionMatch match = version.match(arguments.text(m_firmware));
        if (match.hasMatch())
            result.firmware = ferrolex::firmwareNumber(match.captured(1).toInt(), match.captured(2).toInt());
        else
            arguments.refuse(m_firmware, tr("a version as 1.28"));
    }
    return result;
}

ExitCode CheckCommand::run(Arguments& arguments, Console& console)
{
    const CheckOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(refusal(), arguments.outcome().sentence());
    return checkScripts(options, console);
}

} // namespace cli
