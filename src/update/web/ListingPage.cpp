// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ListingPage.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>

namespace {

constexpr qsizetype kLongestName = 255;

bool steersText(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format: // among them those that turn the direction of reading
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

} // namespace

bool listingpage::isBareFileName(const QString& name)
{
    if (name.isEmpty() || name.startsWith(u'.') || name.contains(QLatin1String("..")) || !name.isValidUtf16())
        return false;
    if (name.contains(u'/') || name.contains(u'\\') || std::any_of(name.begin(), name.end(), steersText))
        return false;
    return QFile::encodeName(name).size() <= kLongestName;
}

QString listingpage::fileWithTag(const QByteArray& page, const QString& tag)
{
    const qsizetype quote = page.indexOf('"' + tag.toUtf8());
    if (quote < 0)
        return {};
    const qsizetype end = page.indexOf('"', quote + 1);
    if (end < 0)
        return {};
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(QByteArrayView(page).sliced(quote + 1, end - quote - 1));
    qsizetype from = 0, to = text.size();
    while (from < to && text[from] == u' ')
        ++from;
    while (from < to && text[to - 1] == u' ')
        --to;
    const QString name = text.sliced(from, to - from);
    return !decode.hasError() && isBareFileName(name) ? name : QString();
}
