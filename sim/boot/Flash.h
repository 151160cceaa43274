// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <array>
#include <optional>

namespace sim {

/// The memory that keeps firmware without power: two places for images and two for the record of which of them runs.
/// Bytes are written one after the other; when power goes in between, those before stay and those behind were never
/// there.
class Flash
{
public:
    enum Area
    {
        Record0,
        Record1,
        Slot0,
        Slot1
    };
    static constexpr std::size_t kAreas = 4;
    static constexpr qsizetype kSlotSize = 1024 * 1024 + 64 * 1024;

    const QByteArray& bytes(Area area) const { return m_areas[area]; }
    /// Both false, with only a part done or nothing, when there is no power (any more).
    bool write(Area area, qsizetype offset, const QByteArray& bytes);
    bool erase(Area area);

    /// Power goes after so many further bytes; an erasure counts as one.
    void losePowerAfter(qint64 bytes) { m_left = bytes; }
    /// How many those still are; nothing while power is not to go.
    std::optional<qint64> left() const { return m_left; }
    bool hasPower() const { return !m_left || *m_left > 0; }
    void restorePower() { m_left.reset(); }

    bool operator==(const Flash& other) const { return m_areas == other.m_areas; }

    QJsonObject toJson() const;
    /// What is missing or too long is an erased area.
    static Flash fromJson(const QJsonObject& object);

private:
    bool spend();

    std::array<QByteArray, kAreas> m_areas;
    std::optional<qint64> m_left; ///< none: as much as wanted
};

} // namespace sim
