// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/VersionText.h"

namespace VersionText {

namespace {

constexpr QLatin1String kInstrumentMark(" | ");
constexpr QLatin1String kDateMark(" : ");
constexpr QLatin1String kNoDevice("No device connected");

std::optional<QString> withBlanks(const QString& text, QLatin1String blanks)
{
    const qsizetype bar = text.indexOf(kInstrumentMark);
    if (bar < 0)
        return {};
    return text.left(bar) + blanks + text.mid(bar + kInstrumentMark.size());
}

} // namespace

Parts parts(const QString& text)
{
    Parts result;
    const qsizetype bar = text.indexOf(kInstrumentMark);
    result.software = bar < 0 ? text : text.left(bar);
    const qsizetype behind = bar < 0 ? text.size() : bar + kInstrumentMark.size();
    const qsizetype colon = text.indexOf(kDateMark, behind);
    if (colon < 0) {
        result.instrument = QStringLiteral("Old graph format");
        result.date = QStringLiteral("Not available");
    } else {
        result.instrument = text.mid(behind, colon - behind);
        result.date = text.mid(colon + kDateMark.size());
    }
    return result;
}

QString next(const QString& old, const QString& software, const QString& instrument, const QString& today)
{
    Parts saved;
    if (old.contains(QLatin1Char('|'))) {
        saved = parts(old);
        if (saved.instrument == kNoDevice && !instrument.isEmpty())
            saved.instrument = instrument;
    } else {
        saved.instrument = instrument.isEmpty() ? QString(kNoDevice) : instrument;
        saved.date = today;
    }
    return software + kInstrumentMark + saved.instrument + kDateMark + saved.date;
}

std::optional<QString> subTitle(const QString& text)
{
    return withBlanks(text, QLatin1String("  "));
}

std::optional<QString> diagnoseSubTitle(const QString& text)
{
    return withBlanks(text, QLatin1String(" "));
}

QString programVersion(const QString& text)
{
    QString unknown = QStringLiteral("0.0");
    const qsizetype mark = text.indexOf(QLatin1String(" V"));
    if (mark < 0)
        return unknown;
    const qsizetype start = mark + 2;
    const qsizetype firstDot = text.indexOf(QLatin1Char('.'), start);
    if (firstDot < 0)
        return unknown;
    const qsizetype secondDot = text.indexOf(QLatin1Char('.'), firstDot + 1);
    return secondDot > start ? text.mid(start, secondDot - start) : unknown;
}

} // namespace VersionText
