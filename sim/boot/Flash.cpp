// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/boot/Flash.h"

#include <QLatin1String>

namespace sim {

namespace {

constexpr std::array<const char*, Flash::kAreas> kNames{"record0", "record1", "slot0", "slot1"};
constexpr char kErased = '\xff';

} // namespace

bool Flash::spend()
{
    if (!hasPower())
        return false;
    if (m_left)
        --*m_left;
    return true;
}

bool Flash::write(Area area, qsizetype offset, const QByteArray& bytes)
{
    QByteArray& place = m_areas[area];
    if (offset + bytes.size() > kSlotSize || !hasPower())
        return false;
    place.reserve(offset + bytes.size());
    if (place.size() < offset)
        place.append(offset - place.size(), kErased);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (!spend())
            return false;
        if (offset + i < place.size())
            place[offset + i] = bytes[i];
        else
            place.append(bytes[i]);
    }
    return true;
}

bool Flash::erase(Area area)
{
    if (!spend())
        return false;
    m_areas[area].clear();
    return true;
}

QJsonObject Flash::toJson() const
{
    QJsonObject object;
    for (std::size_t area = 0; area < kAreas; ++area)
        object.insert(QLatin1String(kNames[area]), QString::fromLatin1(m_areas[area].toBase64()));
    return object;
}

Flash Flash::fromJson(const QJsonObject& object)
{
    Flash flash;
    for (std::size_t area = 0; area < kAreas; ++area) {
        QByteArray bytes = QByteArray::fromBase64(object.value(QLatin1String(kNames[area])).toString().toLatin1());
        if (bytes.size() <= kSlotSize)
            flash.m_areas[area] = std::move(bytes);
    }
    return flash;
}

} // namespace sim
