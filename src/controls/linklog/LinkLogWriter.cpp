// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/linklog/LinkLogWriter.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>

namespace linklog {
namespace {

QString failureSentence(const QFile& file)
{
    return QCoreApplication::translate("LinkLog", "The link log %1 cannot be written: %2.")
        .arg(QDir::toNativeSeparators(file.fileName()), file.errorString());
}

} // namespace

Outcome Writer::open(const QString& fileName)
{
    close();
    m_failure = QString();
    m_file.setFileName(fileName);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return Outcome::failure(failureSentence(m_file));
    m_clock.start();
    write(kHeader);
    write("\n# started ");
    write(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1());
    write("\n");
    flush();
    return m_failure.isNull() ? Outcome::success() : Outcome::failure(m_failure);
}

void Writer::close()
{
    flush();
    m_file.close();
}

void Writer::add(Entry::Kind kind, QByteArrayView bytes)
{
    if (!m_file.isOpen())
        return;
    write(lineOf({m_clock.nsecsElapsed() / 1000, kind, bytes.toByteArray()}));
    write("\n");
}

void Writer::flush()
{
    if (m_file.isOpen() && !m_file.flush()) {
        m_failure = failureSentence(m_file);
        m_file.close();
    }
}

void Writer::write(QByteArrayView text)
{
    if (m_file.isOpen() && m_file.write(text.data(), text.size()) != text.size()) {
        m_failure = failureSentence(m_file);
        m_file.close();
    }
}

} // namespace linklog
