// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Arguments.h"

#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <thread>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

// Every common option stands here once.
struct Common
{
    QCommandLineOption json{u"json"_s, tr("Prints the results as one JSON object.")};
    QCommandLineOption quiet{{u"q"_s, u"quiet"_s}, tr("Shows no progress.")};
    QCommandLineOption jobs{
        {u"j"_s, u"jobs"_s}, tr("Files to work on at once, 1 to 64 (as many as there are processors)."), u"count"_s};
};

constexpr int kMostJobs = 64;

int processors()
{
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostJobs);
}

} // namespace

QList<QCommandLineOption> CommonOptions::options(bool takesManyFiles)
{
    const Common common;
    QList<QCommandLineOption> options = {common.json, common.quiet};
    if (takesManyFiles)
        options.append(common.jobs);
    return options;
}

Arguments::Arguments(const QCommandLineParser& parser)
    : m_parser(parser)
{}

void Arguments::readCommon(bool takesManyFiles)
{
    const Common common;
    m_common.json = isSet(common.json);
    m_common.quiet = isSet(common.quiet);
    m_common.jobs = takesManyFiles && isSet(common.jobs) ? whole(common.jobs, 1, kMostJobs) : processors();
}

int Arguments::choice(const QCommandLineOption& option, const QStringList& choices)
{
    const qsizetype index = choices.indexOf(text(option));
    if (index < 0)
        refuse(option, tr("one of %1").arg(choices.join(u", "_s)));
    return static_cast<int>(index);
}

double Arguments::frequency(const QCommandLineOption& option)
{
    const std::optional<double> value = values::frequencyOf(text(option));
    if (!value || *value <= 0)
        refuse(option, tr("a frequency above 0"));
    return value.value_or(0);
}

double Arguments::number(const QCommandLineOption& option, const QString& wanted)
{
    const std::optional<double> value = values::strictNumber(text(option));
    if (!value || *value < 0)
        refuse(option, wanted);
    return value.value_or(0);
}

int Arguments::whole(const QCommandLineOption& option, int low, int high)
{
    bool isWhole = false;
    const int value = text(option).toInt(&isWhole);
    if (!isWhole || value < low || value > high)
        refuse(option, tr("a whole number from %1 to %2").arg(low).arg(high));
    return value;
}

QString Arguments::fileName(const QCommandLineOption& option)
{
    if (isSet(option) && (text(option).isEmpty() || text(option) == "-"_L1))
        refuse(option, tr("a file name"));
    return text(option);
}

OutputFile Arguments::output(const QCommandLineOption& option)
{
    if (!isSet(option))
        return OutputFile();
    if (text(option).isEmpty())
        refuse(option, tr("a file name"));
    return OutputFile(text(option));
}

QSize Arguments::size(const QCommandLineOption& option)
{
    constexpr int kLargestPicture = 16384;
    static const QRegularExpression pattern(u"^([0-9]{1,5})x([0-9]{1,5})$"_s);
    const QRegularExpressionMatch match = pattern.match(text(option));
    const QSize result(match.captured(1).toInt(), match.captured(2).toInt());
    if (!match.hasMatch() || qMin(result.width(), result.height()) < 100 ||
        qMax(result.width(), result.height()) > kLargestPicture)
        refuse(option, tr("a width and a height from 100 to %1, as 1280x800").arg(kLargestPicture));
    return result;
}

void Arguments::refuse(const QCommandLineOption& option, const QString& wanted)
{
    refuse(tr("--%1 needs %2, not \"%3\".").arg(option.names().constLast(), wanted, text(option)));
}

void Arguments::refuse(const QString& sentence)
{
    if (m_outcome)
        m_outcome = Outcome::failure(sentence);
}

} // namespace cli
