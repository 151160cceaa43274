// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/linklog/LinkLogReader.h"

#include <QCoreApplication>

namespace linklog {

Reader::Reader(QIODevice& device)
    : m_device(device)
{}

std::optional<Entry> Reader::next()
{
    while (m_failure.isNull()) {
        // One byte above the limit tells a line that is too long from one that just fits.
        QByteArray line = m_device.readLine(kLongestLine + 2);
        if (line.isEmpty()) {
            if (m_line == 0)
                fail(QCoreApplication::translate("LinkLog", "the file is empty"));
            return {};
        }
        ++m_line;
        const bool ended = line.endsWith('\n');
        if (ended)
            line.chop(1);
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.size() > kLongestLine || (!ended && !m_device.atEnd())) {
            fail(QCoreApplication::translate("LinkLog", "the line is too long"));
            return {};
        }
        if (m_line == 1) {
            if (line != kHeader)
                fail(QCoreApplication::translate("LinkLog", "this is no link log of a version known here"));
            continue;
        }
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        // A program that was killed leaves its last line unfinished; what stands before it is good.
        if (!ended)
            return {};
        if (std::optional<Entry> entry = entryOf(line))
            return entry;
        fail(QCoreApplication::translate("LinkLog", "the line is no entry"));
    }
    return {};
}

void Reader::fail(const QString& what)
{
    m_failure = QCoreApplication::translate("LinkLog", "The link log cannot be read, line %1: %2.")
                    .arg(qMax<qint64>(m_line, 1))
                    .arg(what);
}

} // namespace linklog
