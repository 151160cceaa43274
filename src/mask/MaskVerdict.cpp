// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/MaskVerdict.h"

#include "document/PenDocument.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"

#include <QCoreApplication>

#include <cmath>

namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("maskverdict", text);
}

/// As many digits as a single holds, without the noise of its last bit.
QString shown(double value)
{
    constexpr int kDigits = 7;
    return values::decimalText(QString::number(value, 'g', kDigits).toDouble());
}

} // namespace

namespace maskverdict {

MaskVerdict of(GraphModel& graph, int pen)
{
    const MaskTest test(graph);
    MaskVerdict verdict;
    verdict.inside = test.maskPenInside(pen, verdict.hasData);
    verdict.worst = test.worstPoint(pen);
    return verdict;
}

QString unit(std::int16_t testType)
{
    return testType == PenDocument::Amplitude ? u"dB"_s : u"Ohm"_s;
}

QString details(const MaskVerdict& verdict, std::int16_t testType)
{
    if (!verdict.hasData)
        return {};
    if (!verdict.worst)
        return tr("No point of the pen has a limit.");
    const WorstMaskPoint& worst = *verdict.worst;
    const QString ofUnit = u' ' + unit(testType);
    const QString where =
        tr("Worst point: %1 Hz, %2; %3 %4")
            .arg(shown(worst.frequency), shown(worst.value) + ofUnit,
                 worst.line == mask::kUpper ? tr("upper limit") : tr("lower limit"), shown(worst.limit) + ofUnit);
    const QString by = shown(std::abs(worst.margin)) + ofUnit;
    return where + u'\n' + (worst.margin < 0 ? tr("Outside by %1").arg(by) : tr("Margin: %1").arg(by));
}

void tellRefusal(Readiness reason, UserMessages& messages)
{
    switch (reason) {
    case Readiness::Ready:
        break;
    case Readiness::NoMask:
        messages.message(tr("No mask data available"), UserMessages::Information, tr("Unable to perform mask test"));
        break;
    case Readiness::Unordered:
        messages.message(tr("The mask data is not in incrementing order of frequency"), UserMessages::Stop,
                         tr("Mask Test Failure"));
        break;
    case Readiness::NewFormat:
        messages.message(tr("New data format. Please check for updates."), UserMessages::Information,
                         tr("Unable to perform mask test"));
        break;
    }
}

void tell(const MaskVerdict& verdict, int penNumber, std::int16_t testType, UserMessages& messages)
{
    const QString pen = tr("Pen ") + values::decimalText(penNumber);
    const QString more = details(verdict, testType);
    if (!verdict.inside)
        messages.messageWithDetails(pen + tr(" is not within mask"), more, UserMessages::Stop, tr("Mask Test Failure"));
    else if (verdict.hasData)
        messages.messageWithDetails(pen + tr(" is within mask"), more, UserMessages::Information, tr("Mask Test Pass"));
    else
        messages.messageWithDetails(pen + tr(" contains no data"), more, UserMessages::Stop, tr("Mask Test Skipped"));
}

void checkCurrentPen(PenDocument& document, UserMessages& messages)
{
    GraphModel& graph = document.peGraph();
    Readiness reason = Readiness::Ready;
    if (document.giDocumentVersion() > 1)
        reason = Readiness::NewFormat;
    else if (!MaskTest(graph).maskCheckBothOrders())
        reason = Readiness::Unordered;
    else if (!mask::isOn(graph, Qt::CaseInsensitive))
        reason = Readiness::NoMask;
    if (reason != Readiness::Ready)
        tellRefusal(reason, messages);
    else
        tell(of(graph, document.gCurrentPen()), document.gCurrentPen() + 1, document.pgiTestType(), messages);
}

} // namespace maskverdict
