// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/CborArchive.h"

namespace graph {

bool CborReader::read(QString& value)
{
    if (!m_reader.isString())
        return false;
    value.clear();
    auto chunk = m_reader.readString();
    while (chunk.status == QCborStreamReader::Ok) {
        value += chunk.data;
        chunk = m_reader.readString();
    }
    return chunk.status == QCborStreamReader::EndOfString;
}

bool CborReader::read(QByteArray& value)
{
    if (!m_reader.isByteArray())
        return false;
    value.clear();
    auto chunk = m_reader.readByteArray();
    while (chunk.status == QCborStreamReader::Ok) {
        if (value.isEmpty())
            value = chunk.data;
        else
            value += chunk.data;
        chunk = m_reader.readByteArray();
    }
    return chunk.status == QCborStreamReader::EndOfString;
}

bool CborReader::read(QStringList& list)
{
    if (!m_reader.isArray() || !m_reader.enterContainer())
        return false;
    list.clear();
    while (m_reader.lastError() == QCborError::NoError && m_reader.hasNext()) {
        QString entry;
        if (static_cast<std::size_t>(list.size()) >= kLongestList || !read(entry))
            return false;
        list.append(entry);
    }
    return m_reader.lastError() == QCborError::NoError && m_reader.leaveContainer();
}

} // namespace graph
