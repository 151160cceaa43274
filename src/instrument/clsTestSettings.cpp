// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/clsTestSettings.h"

#include "values/Conversions.h"

namespace {

/// Hands out the texts between commas; empty texts once the end is passed.
class FieldReader
{
public:
    explicit FieldReader(QStringView text)
        : m_text(text)
    {}

    QStringView next()
    {
        if (m_position > m_text.size())
            return {};
        qsizetype end = m_text.indexOf(u',', m_position);
        if (end < 0)
            end = m_text.size();
        const QStringView field = m_text.sliced(m_position, end - m_position);
        m_position = end + 1;
        return field;
    }

private:
    QStringView m_text;
    qsizetype m_position = 0;
};

} // namespace

QString clsTestSettings::SaveToString() const
{
    const QString fields[] = {
        values::decimalText(dblUpperFrequency),
        values::decimalText(dblLowerFrequency),
        values::booleanText(boolUseXAxisExtents),
        values::booleanText(boolInvertSweep),
        values::decimalText(lPoints),
        values::decimalText(dblIdleOutputFrequency),
        values::decimalText(dblSweepSpeed),
        values::decimalText(dblOutputLevel),
    };
    QString text;
    for (const QString& field : fields) {
        if (!text.isEmpty())
            text += u',';
        text += field;
    }
    return text;
}

void clsTestSettings::InitaliseFromString(QStringView strValues, bool& result)
{
    FieldReader fields(strValues);
    clsTestSettings read;
    read.dblUpperFrequency = values::tolerantNumber(fields.next());
    read.dblLowerFrequency = values::tolerantNumber(fields.next());
    const auto useExtents = values::strictBool(fields.next());
    const auto invertSweep = values::strictBool(fields.next());
    const auto points = values::strictInt32(fields.next());
    read.dblIdleOutputFrequency = values::tolerantNumber(fields.next());
    read.dblSweepSpeed = values::tolerantNumber(fields.next());
    read.dblOutputLevel = values::tolerantNumber(fields.next());

    result = useExtents && invertSweep && points;
    if (!result)
        return;
    read.boolUseXAxisExtents = *useExtents;
    read.boolInvertSweep = *invertSweep;
    read.lPoints = *points;
    *this = read;
}
