// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphFields.h"
#include "controls/graph/cbor/CborInput.h"
#include "controls/graph/cbor/CborOutput.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>
#include <concepts>
#include <limits>
#include <map>
#include <optional>
#include <vector>

/// Archives over the field lists of GraphFields.h.
namespace graph {

/// A type that GraphFields.h describes: written as a map from field name to value. Entries of such a map that are not
/// known here stay encoded in otherEntries and are written again.
template <typename T>
concept Described = requires(T& value)
{
    value.otherEntries;
};

/// Single precision numbers as an array of their own (RFC 8746), without a copy.
struct FloatArray
{
    static constexpr std::uint64_t kTag = 85; ///< IEEE 754 binary32, little endian
    QByteArrayView bytes;
    QByteArray joined; ///< holds the bytes that are no view of something else
};

/// An item inside a byte string (RFC 8949, 3.4.5.1), without a copy.
struct EncodedItem
{
    static constexpr std::uint64_t kTag = 24;
    QByteArrayView bytes;
    QByteArray joined; ///< holds the bytes that are no view of something else
};

/// How many entries of a type a list of a graph has at most.
template <typename T>
constexpr std::size_t longestList()
{
    if (std::same_as<T, TableCell>)
        return std::size_t{kMaxTableRows} * kMaxTableColumns;
    if (std::same_as<T, VerticalLine>)
        return kMaxVerticalLines;
    if (std::same_as<T, MenuItem>)
        return kMaxMenuItems;
    return kMaxSubsets;
}

struct FieldCount
{
    std::size_t fields = 0;
    template <typename T>
    void operator()(const char*, const T&)
    {
        ++fields;
    }
};

/// How many pairs of key and value stand encoded one behind the other.
std::size_t countEntries(QByteArrayView otherEntries);

class CborWriter
{
public:
    explicit CborWriter(CborOutput& output)
        : m_output(output)
    {}

    template <Described T>
    void write(const T& value)
    {
        FieldCount count;
        describe(count, value);
        m_output.startMap(count.fields + (value.otherEntries.isEmpty() ? 0 : countEntries(value.otherEntries)));
        describe(*this, value);
        m_output.writeEncoded(value.otherEntries);
    }

    template <typename T>
    void operator()(const char* name, const T& value)
    {
        m_output.writeText(QByteArrayView(name));
        write(value);
    }

private:
    void write(bool value) { m_output.writeBool(value); }
    void write(int value) { m_output.writeInteger(value); }
    void write(std::uint32_t value) { m_output.writeInteger(value); }
    void write(float value) { m_output.writeFloat(value); }
    void write(double value) { m_output.writeDouble(value); }
    void write(const QString& value) { m_output.writeText(QStringView(value)); }
    void write(const FloatArray& value)
    {
        m_output.writeTag(FloatArray::kTag);
        m_output.writeBytes(value.bytes);
    }
    template <typename List>
    void writeList(const List& list)
    {
        m_output.startArray(static_cast<std::size_t>(list.size()));
        for (const auto& entry : list)
            write(entry);
    }
    template <typename T>
    void write(const std::vector<T>& list)
    {
        writeList(list);
    }
    template <typename T, std::size_t n>
    void write(const std::array<T, n>& list)
    {
        writeList(list);
    }
    void write(const std::vector<bool>& list)
    {
        m_output.startArray(list.size());
        for (const bool entry : list)
            write(entry);
    }
    void write(const QStringList& list) { writeList(list); }
    template <typename T>
    void write(const std::map<int, T>& map)
    {
        m_output.startMap(map.size());
        for (const auto& [key, value] : map) {
            write(key);
            write(value);
        }
    }

    CborOutput& m_output;
};

/// Reads what CborWriter wrote: fields in any order, none twice; a field of the wrong type, a number out of the range
/// of its type, or a text or a list longer than any graph has is a failure. Fields that are missing keep the value they
/// had.
class CborReader
{
public:
    static constexpr int kMostOtherEntries = 256; ///< entries of one map that are not known here
    static constexpr int kDeepest = 32;           ///< lists in lists in such an entry

    /// bytes: what the input reads.
    CborReader(CborInput& input, QByteArrayView bytes)
        : m_input(input)
        , m_bytes(bytes)
    {}

    template <Described T>
    bool read(T& value);
    /// After a failure: what is wrong, as the end of a sentence about the file ("\"Zoom\" is of the wrong kind").
    QString problem() const;

private:
    enum class Fault
    {
        None,
        OutOfRange,
        TooLong,
        Twice,
        TooManyOthers,
        TooDeep
    };
    bool fail(Fault fault)
    {
        m_fault = fault;
        return false;
    }

    bool read(bool& value) { return m_input.readBool(value); }
    bool read(int& value) { return readInteger(value); }
    bool read(std::uint32_t& value) { return readInteger(value); }
    bool read(std::optional<std::uint32_t>& value) { return readInteger(value.emplace()); }
    bool read(QString& value);
    bool read(double& value);
    bool read(float& value);
    bool read(FloatArray& value) { return m_input.readTag(value.kTag) && m_input.readBytes(value.bytes, value.joined); }
    bool read(EncodedItem& value)
    {
        return m_input.readTag(value.kTag) && m_input.readBytes(value.bytes, value.joined);
    }
    bool read(QStringList& list);
    template <typename T>
    bool read(std::vector<T>& list);
    template <typename T, std::size_t n>
    bool read(std::array<T, n>& list);
    template <typename T>
    bool read(std::map<int, T>& map);
    template <std::integral T>
    bool readInteger(T& value);

    /// Keeps an entry that is not known, its name already read.
    bool keepOther(qsizetype start, std::vector<QByteArrayView>& names, QByteArray& otherEntries);
    /// Remembers where a failure was, from the inside out.
    void failedIn(QByteArrayView name);

    template <typename T>
    struct FieldReader
    {
        CborReader& reader;
        QByteArrayView wanted;
        std::uint64_t& seen; ///< bit i for the i-th field
        int index = 0;
        bool found = false;
        bool good = true;
        template <typename Field>
        void operator()(const char* name, Field& field)
        {
            const std::uint64_t bit = std::uint64_t{1} << index++;
            if (found || wanted != QByteArrayView(name))
                return;
            found = true;
            good = (seen & bit) == 0 ? reader.read(field) : reader.fail(Fault::Twice);
            seen |= bit;
        }
    };

    CborInput& m_input;
    QByteArrayView m_bytes;
    Fault m_fault = Fault::None;
    QString m_place;
};

template <Described T>
bool CborReader::read(T& value)
{
    CborInput::List list;
    if (!m_input.enterMap(list))
        return false;
    std::uint64_t seen = 0;
    std::vector<QByteArrayView> others;
    while (m_input.hasNext(list)) {
        const qsizetype start = m_input.offset();
        QByteArrayView name;
        QByteArray joined;
        if (!m_input.readText(name, joined))
            return false;
        FieldReader<T> field{*this, name, seen};
        describe(field, value);
        if (!(field.found ? field.good : keepOther(start, others, value.otherEntries))) {
            failedIn(name);
            return false;
        }
    }
    return !m_input.isBroken();
}

template <std::integral T>
bool CborReader::readInteger(T& value)
{
    std::uint64_t magnitude = 0;
    bool negative = false;
    if (!m_input.readInteger(magnitude, negative))
        return false;
    if (magnitude > std::uint64_t(std::numeric_limits<T>::max()) || (negative && std::unsigned_integral<T>))
        return fail(Fault::OutOfRange);
    value = negative ? static_cast<T>(-1 - static_cast<std::int64_t>(magnitude)) : static_cast<T>(magnitude);
    return true;
}

template <typename T>
bool CborReader::read(std::vector<T>& list)
{
    CborInput::List entries;
    if (!m_input.enterArray(entries))
        return false;
    list.clear();
    list.reserve(std::min<std::size_t>(entries.left, longestList<T>()));
    while (m_input.hasNext(entries)) {
        if (list.size() >= longestList<T>())
            return fail(Fault::TooLong);
        T entry{};
        if (!read(entry))
            return false;
        list.push_back(std::move(entry));
    }
    return !m_input.isBroken();
}

template <typename T, std::size_t n>
bool CborReader::read(std::array<T, n>& list)
{
    CborInput::List entries;
    if (!m_input.enterArray(entries))
        return false;
    for (T& entry : list) {
        if (!m_input.hasNext(entries))
            return fail(Fault::OutOfRange);
        if (!read(entry))
            return false;
    }
    return m_input.hasNext(entries) ? fail(Fault::TooLong) : !m_input.isBroken();
}

template <typename T>
bool CborReader::read(std::map<int, T>& map)
{
    CborInput::List entries;
    if (!m_input.enterMap(entries))
        return false;
    map.clear();
    while (m_input.hasNext(entries)) {
        int key = 0;
        T value{};
        if (map.size() >= kMaxGraphAnnotations)
            return fail(Fault::TooLong);
        if (!read(key) || !read(value))
            return false;
        if (!map.emplace(key, std::move(value)).second)
            return fail(Fault::Twice);
    }
    return !m_input.isBroken();
}

} // namespace graph
