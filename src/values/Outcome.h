// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <utility>
#include <variant>

/// Result of an operation that can fail: nothing, or one sentence that says what failed and what the user can do.
class [[nodiscard]] Outcome
{
public:
    static Outcome success() { return Outcome(); }
    static Outcome failure(QString sentence) { return Outcome(std::move(sentence)); }

    bool ok() const { return m_sentence.isNull(); }
    explicit operator bool() const { return ok(); }
    /// The sentence of a failure; null after success.
    const QString& sentence() const { return m_sentence; }

private:
    Outcome() = default;
    explicit Outcome(QString sentence)
        : m_sentence(sentence.isNull() ? QString(QLatin1String("")) : std::move(sentence))
    {}
    QString m_sentence;
};

/// A value, or the sentence of the failure that kept it from being made.
template <typename T>
class [[nodiscard]] ValueOr
{
public:
    ValueOr(T value)
        : m_content(std::in_place_index<0>, std::move(value))
    {}
    ValueOr(Outcome failed)
        : m_content(std::in_place_index<1>, std::move(failed))
    {}

    bool ok() const { return m_content.index() == 0; }
    explicit operator bool() const { return ok(); }
    /// Only after ok().
    const T& value() const { return std::get<0>(m_content); }
    T& value() { return std::get<0>(m_content); }
    /// Null when ok().
    QString sentence() const { return ok() ? QString() : std::get<1>(m_content).sentence(); }

private:
    std::variant<T, Outcome> m_content;
};
