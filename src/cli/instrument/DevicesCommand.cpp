// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/DevicesCommand.h"

#include "controls/korvalink/DeviceList.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

namespace cli {

using namespace Qt::StringLiterals;

ExitCode listDevices(DeviceList& devices, const CommonOptions& options, Console& console)
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
        console.result(QJsonObject{{u"devices"_s, list}});
    if (devices.count() > 0)
        return ExitCode::Done;
    return console.failed(ExitCode::NoInstrument, QCoreApplication::translate("cli", "No instrument was found."));
}

QString DevicesCommand::name() const
{
    return u"devices"_s;
}

QString DevicesCommand::summary() const
{
    return QCoreApplication::translate("cli", "lists the instruments found");
}

QString DevicesCommand::description() const
{
    return QCoreApplication::translate("cli", "Lists the instruments found, one a line: serial number and place.");
}

ExitCode DevicesCommand::run(Arguments& arguments, Console& console)
{
    DeviceList devices;
    return listDevices(devices, arguments.common(), console);
}

} // namespace cli
