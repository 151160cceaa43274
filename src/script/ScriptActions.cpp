// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptActions.h"

#include "link/DeviceModule.h"
#include "program/UserMessages.h"
#include "script/ScriptReply.h"

ScriptActions::ScriptActions(DeviceModule& module, DocumentList& documents, DocumentWindows& windows)
    : m_context{module.context(), documents, windows}
    , m_documents(m_context, module)
    , m_exports(m_context, module)
{
    module.registerHandler('f', [this](const Frame& frame) { return userPrompt(frame); });
    module.registerHandler('p', [this](const Frame& frame) { return abortQuestion(frame); });
}

void ScriptActions::stopByUser(const ScriptReply& reply) const
{
    m_context.report(ScriptResult::Stopped, {});
    reply.stopFlushed();
}

bool ScriptActions::userPrompt(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    const int answer = m_context.link.messages.systemBox(
        frame.text(), UserMessages::OkCancel | UserMessages::Information, tr("User Prompt"));
    if (answer == UserMessages::ReplyOk)
        reply.goOn();
    else
        stopByUser(reply);
    return true;
}

bool ScriptActions::abortQuestion(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    std::int32_t stopOnNo = 0;
    if (!frame.ParseF(stopOnNo))
        return false;
    const int awaited = stopOnNo != 0 ? UserMessages::ReplyNo : UserMessages::ReplyYes;
    m_context.link.messages.dismiss();
    const int answer = m_context.link.messages.message(frame.text(), UserMessages::YesNo | UserMessages::Question,
                                                       tr("Abort MarrowickScript?"));
    if (answer == awaited)
        stopByUser(reply);
    else
        reply.goOn();
    return true;
}
