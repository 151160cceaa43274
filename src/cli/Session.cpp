// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Session.h"

#include "controls/graph/GraphFile.h"
#include "controls/korvalink/SerialTransport.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace cli {
namespace {

// Views of the phase axis.
constexpr std::int16_t kNoPhase = 0;
constexpr std::int16_t kSignedPhase = 2;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

} // namespace

Session::Session(Console& console)
    : m_store(m_settingsFolder.path())
    , m_preferences(m_store, m_state.gstrAppTitle)
    , m_messages(console)
    , m_device(m_devices)
    , m_source(m_device, m_mirror, m_state)
    , m_deviceModule(LinkContext{m_device, m_mirror, m_state, m_preferences, m_messages, m_window, m_active})
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

PenDocument& Session::replaceDocument()
{
    const DocumentContext context{m_preferences, m_messages, m_source, m_active};
    m_document = std::make_unique<PenDocument>(context);
    m_document->gstrKey = QStringLiteral("1");
    m_active.set(m_document.get());
    return *m_document;
}

PenDocument& Session::newDocument(std::int16_t testType)
{
    replaceDocument();
    m_document->PrepareNew(testType, QStringLiteral("marrowick"));
    m_document->graphSetDefaultView();
    if (testType != PenDocument::Reactance)
        m_document->graphSetPhase(m_mirror.bfPhaseOn ? kSignedPhase : kNoPhase);
    return *m_document;
}

ValueOr<PenDocument*> Session::openPlot(const QString& fileName)
{
    PenDocument& document = replaceDocument();
    // Not fileLoadPlot(), which gives the plot the look of the preferences.
    if (Outcome loaded = GraphFile::PEloadfromfile(document.peGraph(), fileName); !loaded)
        return loaded;
    document.InitialiseSettings(fileName, fileName);
    return &document;
}

} // namespace cli
