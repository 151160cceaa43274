// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphFields.h"

#include <QByteArray>
#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QString>
#include <QStringList>

#include <array>
#include <cmath>
#include <concepts>
#include <limits>
#include <map>
#include <set>
#include <vector>

/// Archives over the field lists of GraphFields.h.
namespace graph {

/// A type that GraphFields.h describes: written as a map from field name to value.
template <typename T>
concept Described = std::same_as<T, YAxis> || std::same_as<T, ZoomLimits> || std::same_as<T, TableCell> ||
    std::same_as<T, TableAnnotation> || std::same_as<T, VerticalLine> || std::same_as<T, MenuItem> ||
    std::same_as<T, Properties>;

struct FieldCount
{
    quint64 fields = 0;
    template <typename T>
    void operator()(const char*, const T&)
    {
        ++fields;
    }
};

class CborWriter
{
public:
    explicit CborWriter(QCborStreamWriter& writer)
        : m_writer(writer)
    {}

    template <typename T>
    void operator()(const char* name, const T& value)
    {
        m_writer.append(QLatin1StringView(name));
        write(value);
    }

private:
    void write(bool value) { m_writer.append(value); }
    void write(int value) { m_writer.append(qint64(value)); }
    void write(std::uint32_t value) { m_writer.append(quint64(value)); }
    void write(float value) { m_writer.append(value); }
    void write(double value) { m_writer.append(value); }
    void write(const QString& value) { m_writer.append(QStringView(value)); }
    template <Described T>
    void write(const T& value)
    {
        FieldCount count;
        describe(count, value);
        m_writer.startMap(count.fields);
        describe(*this, value);
        m_writer.endMap();
    }
    template <typename List>
    void writeList(const List& list)
    {
        m_writer.startArray(static_cast<quint64>(list.size()));
        for (const auto& entry : list)
            write(entry);
        m_writer.endArray();
    }
    template <typename T>
    void write(const std::vector<T>& list)
    {
        writeList(list);
    }
    void write(const std::vector<bool>& list)
    {
        m_writer.startArray(list.size());
        for (const bool entry : list)
            m_writer.append(entry);
        m_writer.endArray();
    }
    template <typename T, std::size_t n>
    void write(const std::array<T, n>& list)
    {
        writeList(list);
    }
    void write(const QStringList& list) { writeList(list); }
    template <typename T>
    void write(const std::map<int, T>& map)
    {
        m_writer.startMap(map.size());
        for (const auto& [key, value] : map) {
            write(key);
            write(value);
        }
        m_writer.endMap();
    }

    QCborStreamWriter& m_writer;
};

/// Reads what CborWriter wrote: fields in any order, none twice; a field of the wrong type, a number out of the range
/// of its type or a list longer than any graph has is an error. Fields that are missing keep the value they had.
class CborReader
{
public:
    /// Longer than the largest list of a graph, the cells of a full table.
    static constexpr std::size_t kLongestList = std::size_t(kMaxTableRows) * std::size_t(kMaxTableColumns);
    static constexpr int kDeepest = 32; ///< nesting of an entry that is not known here

    explicit CborReader(QCborStreamReader& reader)
        : m_reader(reader)
    {}

    bool read(bool& value)
    {
        if (!m_reader.isBool())
            return false;
        value = m_reader.toBool();
        return m_reader.next();
    }
    bool read(int& value) { return readInteger(value); }
    bool read(std::uint32_t& value) { return readInteger(value); }
    /// Other writers shorten numbers to any width that keeps the value, so every width is read.
    bool read(double& value)
    {
        if (m_reader.isDouble())
            value = m_reader.toDouble();
        else if (m_reader.isFloat())
            value = static_cast<double>(m_reader.toFloat());
        else if (m_reader.isFloat16())
            value = static_cast<double>(static_cast<float>(m_reader.toFloat16()));
        else {
            int integer = 0;
            if (!readInteger(integer))
                return false;
            value = integer;
            return true;
        }
        return m_reader.next();
    }
    bool read(float& value)
    {
        double wide = 0;
        if (!read(wide) || std::isnan(wide))
            return false;
        value = static_cast<float>(wide);
        return static_cast<double>(value) == wide;
    }
    bool read(QString& value);
    bool read(QByteArray& value);
    template <Described T>
    bool read(T& value);
    template <typename T>
    bool read(std::vector<T>& list);
    template <typename T, std::size_t n>
    bool read(std::array<T, n>& list);
    bool read(QStringList& list);
    template <typename T>
    bool read(std::map<int, T>& map);
    /// Steps over one entry of any kind, no deeper than kDeepest.
    bool skip()
    {
        while (m_reader.isTag()) {
            if (!m_reader.next())
                return false;
        }
        return m_reader.next(kDeepest);
    }

    template <typename T>
    struct FieldReader
    {
        CborReader& reader;
        const QString& wanted;
        int index = 0;
        int found = -1;
        bool good = true;
        template <typename Field>
        void operator()(const char* name, Field& field)
        {
            if (found < 0 && wanted == QLatin1StringView(name)) {
                found = index;
                good = reader.read(field);
            }
            ++index;
        }
    };

    /// The value of a field that is known by this name, into its place. found: no such field left the reader where it
    /// was.
    template <Described T>
    bool readField(const QString& name, T& value, int& found)
    {
        FieldReader<T> field{*this, name};
        describe(field, value);
        found = field.found;
        return field.good;
    }

private:
    template <std::integral T>
    bool readInteger(T& value)
    {
        if (!m_reader.isInteger())
            return false;
        if (m_reader.isNegativeInteger()) {
            if (std::unsigned_integral<T>)
                return false;
            const auto magnitude = quint64(m_reader.toNegativeInteger()); // the value is -magnitude; 0 stands for 2^64
            if (magnitude == 0 || magnitude > quint64(std::numeric_limits<int>::max()))
                return false;
            value = static_cast<T>(-qint64(magnitude));
            return m_reader.next();
        }
        const quint64 number = m_reader.toUnsignedInteger();
        if (number > quint64(std::numeric_limits<T>::max()))
            return false;
        value = static_cast<T>(number);
        return m_reader.next();
    }
    template <typename T>
    bool readEntry(std::vector<T>& list)
    {
        T entry{};
        if (!read(entry))
            return false;
        list.push_back(std::move(entry));
        return true;
    }

    QCborStreamReader& m_reader;
};

template <Described T>
bool CborReader::read(T& value)
{
    if (!m_reader.isMap() || !m_reader.enterContainer())
        return false;
    std::set<int> seen;
    while (m_reader.lastError() == QCborError::NoError && m_reader.hasNext()) {
        QString name;
        int found = -1;
        if (!read(name) || !readField(name, value, found))
            return false;
        if (found < 0 ? !skip() : !seen.insert(found).second)
            return false;
    }
    return m_reader.lastError() == QCborError::NoError && m_reader.leaveContainer();
}

template <typename T>
bool CborReader::read(std::vector<T>& list)
{
    if (!m_reader.isArray() || !m_reader.enterContainer())
        return false;
    list.clear();
    while (m_reader.lastError() == QCborError::NoError && m_reader.hasNext()) {
        if (list.size() >= kLongestList || !readEntry(list))
            return false;
    }
    return m_reader.lastError() == QCborError::NoError && m_reader.leaveContainer();
}

template <typename T, std::size_t n>
bool CborReader::read(std::array<T, n>& list)
{
    if (!m_reader.isArray() || !m_reader.enterContainer())
        return false;
    for (T& entry : list) {
        if (!m_reader.hasNext() || !read(entry))
            return false;
    }
    return m_reader.lastError() == QCborError::NoError && !m_reader.hasNext() && m_reader.leaveContainer();
}

template <typename T>
bool CborReader::read(std::map<int, T>& map)
{
    if (!m_reader.isMap() || !m_reader.enterContainer())
        return false;
    map.clear();
    while (m_reader.lastError() == QCborError::NoError && m_reader.hasNext()) {
        int key = 0;
        T value{};
        if (map.size() >= kLongestList || !read(key) || !read(value) || !map.emplace(key, std::move(value)).second)
            return false;
    }
    return m_reader.lastError() == QCborError::NoError && m_reader.leaveContainer();
}

} // namespace graph
