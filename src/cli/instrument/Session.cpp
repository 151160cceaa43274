// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/Session.h"

#include "controls/korvalink/SerialTransport.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace cli {
namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

} // namespace

Session::Session(Console& console, UserMessages* messages, MainWindowPort* port)
    : m_messages(console)
    , m_device(m_devices)
    , m_source(m_device, m_mirror, m_state)
    , m_workspace(messages != nullptr ? *messages : m_messages, &m_source)
    , m_deviceModule(LinkContext{m_device, m_mirror, m_state, m_workspace.preferences(),
                                 messages != nullptr ? *messages : m_messages, port != nullptr ? *port : m_window,
                                 m_workspace.active()})
    , m_testRun(m_deviceModule)
{
    m_deviceModule.DeviceInitialise();
}

Outcome Session::open(const QString& device)
{
    m_devices.refresh();
    if (device.contains(QLatin1Char('/'))) {
        if (m_device.OpenTransport(std::make_unique<SerialTransport>(device), QFileInfo(device).fileName()))
            return Outcome::success();
        return Outcome::failure(tr("%1 does not open: %2").arg(device, m_device.LastError()));
    }
    if (!device.isEmpty())
        return openListed(device);
    if (m_devices.count() == 0)
        return Outcome::failure(tr("No instrument was found."));
    if (m_testRun.OpenFirstDeviceFound())
        return Outcome::success();
    const DeviceEntry first = m_devices.device(0);
    return Outcome::failure(first.problem.isEmpty()
                                ? tr("None of the instruments found opens; is another program using "
                                     "it?")
                                : first.problem);
}

Outcome Session::openListed(const QString& serial)
{
    QStringList found;
    for (int index = 0; index < m_devices.count(); ++index) {
        const DeviceEntry entry = m_devices.device(index);
        found.append(entry.name);
        if (entry.name != serial)
            continue;
        m_device.Configure(QStringLiteral("KorvaLink"), 1, 0, index);
        if (m_device.Open())
            return Outcome::success();
        return Outcome::failure(tr("%1 does not open: %2").arg(serial, m_device.LastError()));
    }
    if (found.isEmpty())
        return Outcome::failure(tr("No instrument was found."));
    return Outcome::failure(tr("There is no instrument %1; found: %2.").arg(serial, found.join(QLatin1String(", "))));
}

} // namespace cli
