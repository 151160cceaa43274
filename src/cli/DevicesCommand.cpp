// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DevicesCommand.h"

#include "controls/korvalink/DeviceList.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace cli {

using namespace Qt::StringLiterals;

ExitCode listDevices(DeviceList& devices, const DevicesOptions& options, Console& console)
{
    devices.refresh();
    QJsonArray list;
    for (int index = 0; index < devices.count(); ++index) {
        const DeviceEntry entry = devices.device(index);
        if (!options.json) {
            console.result(entry.name + u'\t' + entry.path);
            if (!entry.problem.isEmpty())
                console.problem(entry.problem);
            continue;
        }
        QJsonObject object{{u"serial"_s, entry.name}, {u"path"_s, entry.path}};
        if (!entry.problem.isEmpty())
            object.insert(u"problem"_s, entry.problem);
        list.append(object);
    }
    if (options.json)
        console.result(
            QString::fromUtf8(QJsonDocument(QJsonObject{{u"devices"_s, list}}).toJson(QJsonDocument::Compact)));
    if (devices.count() > 0)
        return ExitCode::Done;
    console.problem(QCoreApplication::translate("cli", "No instrument was found."));
    return ExitCode::NoInstrument;
}

} // namespace cli
