// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ui/AnalysisWindows.h"

#include "analysis/AnalysisFrames.h"
#include "analysis/rules/PenFeed.h"
#include "analysis/ui/frmAnalysis.h"
#include "analysis/ui/frmGvsB.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentEvents.h"
#include "link/DeviceModule.h"
#include "program/CommandRegistry.h"
#include "widgets/ui/ShowModally.h"

AnalysisWindows::AnalysisWindows(QWidget& owner, DeviceModule& device, CommandRegistry& commands)
    : m_owner(owner)
    , m_device(device)
    , m_script(m_engine, device.context().active)
{
    registerAnalysisFrames(device, m_script);
    registerCommands(commands);
    listen();
}

AnalysisWindows::~AnalysisWindows()
{
    delete m_loop;
}

void AnalysisWindows::registerCommands(CommandRegistry& commands)
{
    const QString table = QStringLiteral("mnuViewAnalysis");
    const QString loopName = QStringLiteral("mnuViewLoop");
    commands.add({.name = table,
                  .menu = Command::Menu::View,
                  .place = 230,
                  .text = tr("&PZT Analysis..."),
                  .statusTip = tr("Show the resonance of every pen in a table"),
                  .handler = [this] { showTable(); },
                  .rules = Command::NeedsDocument | Command::NotViewOnly,
                  .popupEntry = "Analysis"});
    commands.add({.name = loopName,
                  .menu = Command::Menu::View,
                  .place = 240,
                  .text = tr("Admittance &Loop"),
                  .statusTip = tr("Show susceptance against conductance, with the resonance of the pen"),
                  .handler = [this] { showLoop(); },
                  .rules = Command::NeedsDocument,
                  .popupEntry = "Loop"});
    const auto allow = [&commands, table, loopName](const PenDocument* document) {
        const bool possible = document != nullptr && penfeed::takesAnalysis(*document);
        commands.setEnabled(table, possible);
        commands.setEnabled(loopName, possible);
    };
    const ActiveDocument& active = m_device.context().active;
    allow(active.get());
    connect(&active, &ActiveDocument::changed, this, [this, allow](PenDocument* document) {
        allow(document);
        disconnect(m_viewChanged);
        // A document tells its type when its graph has been set up or loaded.
        if (document != nullptr)
            m_viewChanged = connect(document, &PenDocument::viewChanged, this, [this, allow, document] {
                allow(document);
                if (loop() != nullptr)
                    loop()->RefreshIfGraphChanged();
            });
    });
}

void AnalysisWindows::listen()
{
    const InstrumentEvents& events = m_device.events();
    const ActiveDocument& active = m_device.context().active;
    connect(&events, &InstrumentEvents::loopViewWanted, this, [this](bool shown) {
        if (shown)
            showLoop();
        else
            closeLoop();
    });
    connect(&events, &InstrumentEvents::scriptRunning, this, [this](bool running) {
        if (!running)
            closeLoop();
    });
    const auto refresh = [this](const PenDocument* document) {
        if (loop() != nullptr && document != nullptr && document == m_device.context().active.get())
            loop()->RefreshGraph();
    };
    connect(&events, &InstrumentEvents::pointShown, this, [refresh](PenDocument* document) { refresh(document); });
    connect(&events, &InstrumentEvents::sweepEnded, this, refresh);
    connect(&active, &ActiveDocument::changed, this, [this] {
        if (loop() != nullptr)
            loop()->RefreshIfGraphChanged();
    });
    connect(&m_script, &ScriptAnalysis::analysed, this, [this] {
        if (loop() != nullptr)
            loop()->RefreshIfGraphChanged();
    });
}

frmGvsB* AnalysisWindows::loop() const
{
    return m_loop && m_loop->isVisible() ? m_loop.data() : nullptr;
}

void AnalysisWindows::showLoop()
{
    const PenDocument* const document = m_device.context().active.get();
    if (document == nullptr || !penfeed::takesAnalysis(*document))
        return;
    if (!m_loop) {
        m_loop = new frmGvsB(m_device.context().active, m_engine, &m_owner);
        m_loop->setAttribute(Qt::WA_QuitOnClose, false);
        m_loop->setImageHandlers(m_exportImage, m_printImage);
    }
    m_loop->show();
    m_loop->RefreshGraph();
    m_loop->raise();
    m_loop->activateWindow();
}

void AnalysisWindows::setImageHandlers(std::function<void(GraphModel&)> exportImage,
                                       std::function<void(GraphModel&)> printImage)
{
    m_exportImage = std::move(exportImage);
    m_printImage = std::move(printImage);
    if (m_loop)
        m_loop->setImageHandlers(m_exportImage, m_printImage);
}

void AnalysisWindows::closeLoop()
{
    if (m_loop)
        m_loop->close();
}

void AnalysisWindows::showTable()
{
    PenDocument* const document = m_device.context().active.get();
    if (document == nullptr || !penfeed::takesAnalysis(*document))
        return;
    showModally(new frmAnalysis(*document, m_engine, m_device.context().preferences, &m_owner));
}
