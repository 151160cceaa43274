// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/link/MaskFrame.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/Commands.h"
#include "link/DeviceModule.h"
#include "mask/MaskVerdict.h"
#include "program/UserMessages.h"

#include <utility>

namespace {

// What N3 asks for.
constexpr double kStopAtFailure = 1;
constexpr double kStopAtPass = 2;

/// The stop is one text: a lone blank before it would be taken for an acknowledgement.
void stopScript(KorvaLink& device)
{
    device.Flush();
    device.Write(command::acknowledge() + command::stop());
    device.Flush();
}

} // namespace

MaskFrame::MaskFrame(DeviceModule& device, std::function<void(Judgement)> judged)
    : m_device(device)
    , m_judged(std::move(judged))
{
    device.registerHandler('q', [this](const Frame& frame) { return maskTest(frame); });
}

void MaskFrame::tell(Judgement judgement) const
{
    if (m_judged)
        m_judged(judgement);
}

bool MaskFrame::maskTest(const Frame& frame)
{
    using maskverdict::Readiness;
    std::int32_t pen = 0;
    if (!frame.ParseF(pen))
        return false;
    const LinkContext& context = m_device.context();
    PenDocument* const document = context.active.get();
    if (document == nullptr)
        return true;
    GraphModel& graph = document->peGraph();
    const Readiness reason = !mask::isOn(graph)                       ? Readiness::NoMask
                             : !MaskTest(graph).maskCheckBothOrders() ? Readiness::Unordered
                                                                      : Readiness::Ready;
    if (reason != Readiness::Ready) {
        tell(Judgement::None);
        context.messages.dismiss();
        maskverdict::tellRefusal(reason, context.messages);
        return true;
    }
    const MaskVerdict verdict = maskverdict::of(graph, pen);
    tell(!verdict.inside ? Judgement::Outside : verdict.hasData ? Judgement::Inside : Judgement::None);
    if (frame.number(verdict.inside ? 1 : 2) != 0) {
        // A pass is told of the pen in use, a failure of the pen that was tested.
        const int number = (verdict.inside ? document->gCurrentPen() : pen) + 1;
        const std::int16_t testType = document->pgiTestType();
        context.messages.dismiss();
        maskverdict::tell(verdict, number, testType, context.messages);
    }
    if (frame.number(3) == (verdict.inside ? kStopAtPass : kStopAtFailure))
        stopScript(context.device);
    return true;
}
