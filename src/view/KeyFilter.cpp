// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/KeyFilter.h"

#include <string_view>

namespace {

/// The character if it is one of these or a digit.
QChar among(QChar typed, std::u16string_view letters)
{
    const bool digit = typed >= u'0' && typed <= u'9';
    return digit || letters.find(typed.unicode()) != std::u16string_view::npos ? typed : QChar();
}

QChar decimalPoint(QChar typed)
{
    return typed == u',' ? QChar(u'.') : typed;
}

} // namespace

namespace keyfilter {

QChar large(QChar typed)
{
    return typed == u'm' ? QChar(u'M') : among(decimalPoint(typed), u"-.CEGKMTcgkt");
}

QChar small(QChar typed)
{
    if (typed == u'M')
        return u'm';
    if (typed == u'U')
        return u'u';
    return among(decimalPoint(typed), u"-.CEGKTcgkmtu");
}

QChar mask(QChar typed)
{
    if (typed == u'm')
        return u'M';
    if (typed == u'e')
        return u'E';
    if (typed == u'U')
        return u'u';
    return among(decimalPoint(typed), u"-.cCkKgGtTEuM");
}

QChar offset(QChar typed)
{
    return among(decimalPoint(typed), u"-.");
}

QString filtered(const QString& text, Filter filter)
{
    QString kept;
    for (const QChar typed : text) {
        if (const QChar character = filter(typed); !character.isNull())
            kept += character;
    }
    return kept;
}

} // namespace keyfilter
