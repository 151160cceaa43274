// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/CborArchive.h"

#include <QCoreApplication>

#include <cmath>

namespace graph {

std::size_t countEntries(QByteArrayView otherEntries)
{
    CborInput input(otherEntries);
    std::size_t count = 0;
    while (!input.isAtEnd() && input.skip(CborReader::kDeepest) && input.skip(CborReader::kDeepest))
        ++count;
    return count;
}

bool CborReader::read(QString& value)
{
    QByteArrayView utf8;
    QByteArray joined;
    if (!m_input.readText(utf8, joined))
        return false;
    // No UTF-16 unit takes more than three bytes, so what cannot fit is not even converted.
    if (utf8.size() > qsizetype{kLongestText} * 3)
        return fail(Fault::TooLong);
    value = QString::fromUtf8(utf8);
    return value.size() <= kLongestText || fail(Fault::TooLong);
}

/// Other writers shorten numbers to any width that keeps the value, so every width is read.
bool CborReader::read(double& value)
{
    int integer = 0;
    if (m_input.readFloat(value))
        return true;
    if (!readInteger(integer))
        return false;
    value = integer;
    return true;
}

bool CborReader::read(float& value)
{
    double wide = 0;
    if (!read(wide))
        return false;
    value = static_cast<float>(wide);
    return static_cast<double>(value) == wide || fail(Fault::OutOfRange);
}

bool CborReader::read(QStringList& list)
{
    std::vector<QString> texts;
    if (!read(texts))
        return false;
    list = QStringList(texts.begin(), texts.end());
    return true;
}

bool CborReader::keepOther(qsizetype start, std::vector<QByteArrayView>& names, QByteArray& otherEntries)
{
    const QByteArrayView name = m_bytes.sliced(start, m_input.offset() - start);
    const auto place = std::lower_bound(names.begin(), names.end(), name);
    if (place != names.end() && *place == name)
        return fail(Fault::Twice);
    if (names.size() >= kMostOtherEntries)
        return fail(Fault::TooManyOthers);
    names.insert(place, name);
    if (!m_input.skip(kDeepest))
        return m_input.isBroken() ? false : fail(Fault::TooDeep);
    otherEntries.append(m_bytes.sliced(start, m_input.offset() - start));
    return true;
}

void CborReader::failedIn(QByteArrayView name)
{
    constexpr qsizetype kShown = 64;
    const QString text = QString::fromUtf8(name.first(std::min(name.size(), kShown)));
    m_place = m_place.isEmpty() ? text : text + QLatin1StringView(", ") + m_place;
}

QString CborReader::problem() const
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("GraphFile", text); };
    if (m_place.isEmpty())
        return m_input.isBroken() ? tr("it is no CBOR") : tr("it is no map of named entries");
    if (m_input.isBroken())
        return tr("the encoding of \"%1\" is broken").arg(m_place);
    switch (m_fault) {
    case Fault::OutOfRange:
        return tr("\"%1\" has a value out of its range").arg(m_place);
    case Fault::TooLong:
        return tr("\"%1\" is longer than in any graph").arg(m_place);
    case Fault::Twice:
        return tr("\"%1\" stands there twice").arg(m_place);
    case Fault::TooManyOthers:
        return tr("\"%1\" is one unknown entry too many").arg(m_place);
    case Fault::TooDeep:
        return tr("\"%1\" is nested too deep").arg(m_place);
    case Fault::None:
        break;
    }
    return tr("\"%1\" holds another kind of value").arg(m_place);
}

} // namespace graph
