// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/OutputFile.h"
#include "values/Outcome.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace cli {

/// The options that every command takes, with the same meaning in each.
struct CommonOptions
{
    bool json = false;  ///< results as one JSON object
    bool quiet = false; ///< no progress
    int jobs = 1;       ///< files to work on at once, from 1; only where many files are taken

    /// The options themselves; --jobs only for a command that takes many files. --help is not among them.
    static QList<QCommandLineOption> options(bool takesManyFiles);
};

/// The words behind a command, taken apart, and the readers of their values. The first value that does not fit is
/// remembered; what is read from then on has no meaning.
class Arguments
{
public:
    /// The parser outlives it.
    explicit Arguments(const QCommandLineParser& parser);

    /// The parser must know the common options.
    void readCommon(bool takesManyFiles);

    const CommonOptions& common() const { return m_common; }
    /// What is no option. "-" means standard input.
    QStringList files() const { return m_parser.positionalArguments(); }
    bool isSet(const QCommandLineOption& option) const { return m_parser.isSet(option); }
    QString text(const QCommandLineOption& option) const { return m_parser.value(option); }
    /// Every value of an option that may be given more than once, in their order.
    QStringList texts(const QCommandLineOption& option) const { return m_parser.values(option); }

    /// The place of the value among the choices, from 0.
    int choice(const QCommandLineOption& option, const QStringList& choices);
    /// Above 0, as "40000", "4.2e4", "42k", "4k7", "2.2M", with or without "Hz" behind it.
    double frequency(const QCommandLineOption& option);
    /// From 0; wanted says what the number means, as "a number of seconds from 0".
    double number(const QCommandLineOption& option, const QString& wanted);
    int whole(const QCommandLineOption& option, int low, int high);
    /// Not empty when the option is set; "-" is refused.
    QString fileName(const QCommandLineOption& option);
    /// Not empty when the option is set; "-" is standard output.
    OutputFile output(const QCommandLineOption& option);
    /// Width and height in pixels, each from 100 to 16384, as "1280x800".
    QSize size(const QCommandLineOption& option);

    /// "--OPTION needs WANTED, not VALUE."
    void refuse(const QCommandLineOption& option, const QString& wanted);
    /// A sentence about several options together.
    void refuse(const QString& sentence);
    /// Success, or the first refusal.
    const Outcome& outcome() const { return m_outcome; }

private:
    const QCommandLineParser& m_parser;
    CommonOptions m_common;
    Outcome m_outcome = Outcome::success();
};

} // namespace cli
