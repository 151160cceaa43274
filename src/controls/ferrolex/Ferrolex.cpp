// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Ferrolex.h"

#include "controls/ferrolex/Checker.h"
#include "controls/ferrolex/Parser.h"
#include "controls/ferrolex/Source.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <utility>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

} // namespace

std::int16_t Ferrolex::CheckScript(const QString& fileName, const double& firmwareVersion, const QString& deviceModel)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(tr("The script \"%1\" cannot be read: %2.").arg(fileName, file.errorString()));
    const QByteArray bytes = file.read(ferrolex::Source::kLargest + 1);
    if (file.error() != QFileDevice::NoError)
        return refuse(tr("The script \"%1\" cannot be read: %2.").arg(fileName, file.errorString()));
    return CheckBytes(bytes, firmwareVersion, deviceModel);
}

std::int16_t Ferrolex::CheckBytes(const QByteArray& bytes, const double& firmwareVersion, const QString& deviceModel)
{
    const ValueOr<ferrolex::Source> source = ferrolex::Source::of(bytes);
    if (!source)
        return refuse(source.sentence());
    ferrolex::Findings findings(source.value());
    const ferrolex::Target target{ferrolex::DeviceRanges(deviceModel), firmwareVersion};
    const ferrolex::Program program = ferrolex::parse(source.value(), target, findings);
    ferrolex::judge(program, findings);
    m_measures = program.measures;
    const Code code = findings.errors() > 0 ? Errors : findings.warnings() > 0 ? Warnings : Clean;
    m_leftOut = findings.leftOut();
    m_findings = std::move(findings).sorted();
    return code;
}

void Ferrolex::GetMessages(std::int32_t size, QString& buffer) const
{
    buffer = ferrolex::messageText(m_findings, m_leftOut, std::clamp(size, 0, kLongestMessages));
}

std::int16_t Ferrolex::refuse(const QString& sentence)
{
    ferrolex::Finding finding;
    finding.line = 1;
    finding.column = 1;
    finding.sentence = sentence;
    m_findings = {finding};
    m_leftOut = 0;
    return Unreadable;
}
