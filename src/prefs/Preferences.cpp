// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/Preferences.h"

#include "prefs/SettingsStore.h"
#include "values/Conversions.h"

#include <cmath>
#include <utility>

namespace {

constexpr std::uint32_t kLargestColour = 0xFFFFFF;

} // namespace

Preferences::Preferences(SettingsStore& store, QString applicationTitle, QString instanceTitle)
    : m_store(store)
    , m_applicationTitle(std::move(applicationTitle))
    , m_instanceTitle(std::move(instanceTitle))
{}

std::optional<QString> Preferences::found(const QString& title, const QString& section, const QString& key) const
{
    return m_store.find(title, section, key);
}

bool Preferences::has(const QString& title, const QString& section, const QString& key) const
{
    return m_store.contains(title, section, key);
}

QString Preferences::stored(const QString& title, const QString& section, const QString& key,
                            const QString& fallback) const
{
    return m_store.GetSetting(title, section, key, fallback);
}

bool Preferences::write(const QString& title, const QString& section, const QString& key, const QString& text)
{
    return m_store.SaveSetting(title, section, key, text);
}

QString Preferences::textOf(options::Flag, bool value)
{
    return values::booleanText(value);
}

QString Preferences::textOf(options::CheckBox, bool value)
{
    return values::decimalText(value ? 1 : 0);
}

QString Preferences::textOf(options::Integer, std::int32_t value)
{
    return values::decimalText(value);
}

QString Preferences::textOf(options::Single, float value)
{
    return values::decimalText(value);
}

QString Preferences::textOf(options::Double, double value)
{
    return values::decimalText(value);
}

QString Preferences::textOf(options::Colour, std::uint32_t value)
{
    return QString::number(value);
}

bool Preferences::valueOf(options::Flag, const QString& text, bool fallback)
{
    return values::strictBool(text).value_or(fallback);
}

bool Preferences::valueOf(options::CheckBox, const QString& text, bool fallback)
{
    const std::optional<double> state = values::strictNumber(text);
    return state ? *state == 1 : fallback;
}

bool Preferences::valueOf(options::Switch, const QString& text, bool fallback)
{
    const std::optional<double> state = values::strictNumber(text);
    return state ? *state != 0 : fallback;
}

std::int32_t Preferences::valueOf(options::Integer, const QString& text, std::int32_t fallback)
{
    return values::strictInt32(text).value_or(fallback);
}

float Preferences::valueOf(options::Single, const QString& text, float fallback)
{
    const auto value = static_cast<float>(values::strictNumber(text).value_or(fallback));
    return std::isfinite(value) ? value : fallback;
}

double Preferences::valueOf(options::Double, const QString& text, double fallback)
{
    return values::strictNumber(text).value_or(fallback);
}

std::uint32_t Preferences::valueOf(options::Colour, const QString& text, std::uint32_t fallback)
{
    const std::optional<std::int32_t> colour = values::strictInt32(text);
    const bool valid = colour && *colour >= 0 && static_cast<std::uint32_t>(*colour) <= kLargestColour;
    return valid ? static_cast<std::uint32_t>(*colour) : fallback;
}
