// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptContext.h"

#include "instrument/InstrumentMirror.h"
#include "program/UserMessages.h"
#include "script/ScriptNames.h"

#include <QCoreApplication>

void ScriptContext::tell(const QString& text, int icon, const QString& title) const
{
    link.messages.message(text, UserMessages::OkOnly | icon, title);
}

QString ScriptContext::nameOr(const QString& text, const QString& prompt) const
{
    if (!text.isEmpty())
        return text;
    QString name;
    if (ports.fileNames != nullptr)
        name = ports.fileNames->Dialog(prompt);
    if (name.isEmpty()) {
        link.messages.dismiss();
        tell(QCoreApplication::translate("ScriptActions", "No file name provided"), UserMessages::NoIcon,
             QCoreApplication::translate("ScriptActions", "Skipping file save"));
    }
    return name;
}

QString ScriptContext::stamped(const QString& name) const
{
    return exports.bfExportNoStamp ? name : scriptnames::stamped(name, now(), link.mirror.strDeviceSerial);
}
