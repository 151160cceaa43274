// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ExitCode.h"

#include <QCoreApplication>

#include <array>

namespace cli {
namespace {

constexpr std::array<ExitCodeText, 10> kTexts = {{
    {ExitCode::Done, QT_TRANSLATE_NOOP("cli", "done"), "Done."},
    {ExitCode::Usage, QT_TRANSLATE_NOOP("cli", "usage"), "The command line cannot be carried out as it stands."},
    {ExitCode::NoInstrument, QT_TRANSLATE_NOOP("cli", "no instrument"),
     "No instrument was found, there is none of that name, or it does not open or answer."},
    {ExitCode::Lost, QT_TRANSLATE_NOOP("cli", "link lost in mid-sweep"), "The link went down in mid-sweep."},
    {ExitCode::Refused, QT_TRANSLATE_NOOP("cli", "refused"),
     "The instrument cannot do what was asked, or does not start the test."},
    {ExitCode::FileError, QT_TRANSLATE_NOOP("cli", "not written or not read"),
     "A result could not be written, or a file not read."},
    {ExitCode::Stopped, QT_TRANSLATE_NOOP("cli", "stopped before the last point"),
     "The sweep ended before its last point."},
    {ExitCode::Different, QT_TRANSLATE_NOOP("cli", "another sweep than asked"),
     "The sweep is complete, but the instrument swept another range, in another direction or with another number of "
     "points than asked."},
    {ExitCode::NotSolved, QT_TRANSLATE_NOOP("cli", "no resonance"), "A pen that was analysed has no resonance."},
    {ExitCode::Bad, QT_TRANSLATE_NOOP("cli", "found bad"),
     "The script has found the part bad: a mask test failed, or the script or the instrument raised an alarm."},
}};

} // namespace

std::span<const ExitCodeText> exitCodeTexts()
{
    return kTexts;
}

QString exitCodeHelp()
{
    constexpr qsizetype kWidth = 100;
    QString text = QCoreApplication::translate("cli", "Exit codes:");
    qsizetype lineStart = 0;
    for (const ExitCodeText& row : kTexts) {
        const QString entry = QStringLiteral(" %1 %2%3")
                                  .arg(static_cast<int>(row.code))
                                  .arg(QCoreApplication::translate("cli", row.name),
                                       row.code == kTexts.back().code ? QStringLiteral(".\n") : QStringLiteral(","));
        if (text.size() - lineStart + entry.trimmed().size() + 1 > kWidth) {
            text += QLatin1Char('\n');
            lineStart = text.size();
            text += QStringLiteral("           ");
        }
        text += entry;
    }
    return text;
}

} // namespace cli
