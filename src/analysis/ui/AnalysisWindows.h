// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/ScriptAnalysis.h"
#include "controls/resonance/ResonanceEngine.h"

#include <QObject>
#include <QPointer>

#include <functional>

class CommandRegistry;
class DeviceModule;
class GraphModel;
class QWidget;
class frmAnalysis;
class frmGvsB;

/// The analysis in the desktop program: the engine, the script's way to it, the loop and the table, their commands and
/// what the instrument says to them.
class AnalysisWindows : public QObject
{
    Q_OBJECT

public:
    /// Registers commands and frames. All of it outlives the object; the windows are children of the owner.
    AnalysisWindows(QWidget& owner, DeviceModule& device, CommandRegistry& commands);
    ~AnalysisWindows() override;

    ResonanceEngine& engine() { return m_engine; }
    ScriptAnalysis& script() { return m_script; }

    /// The loop of the active document, before everything else; nothing for an amplitude document.
    void showLoop();
    void closeLoop();
    /// Null while no loop is shown.
    frmGvsB* loop() const;
    /// What "Export image" and "Print image" of the loop do with its graph; the entries are not there without.
    void setImageHandlers(std::function<void(GraphModel&)> exportImage, std::function<void(GraphModel&)> printImage);
    /// The table of the active document.
    void showTable();

private:
    void registerCommands(CommandRegistry& commands);
    void listen();

    QWidget& m_owner;
    DeviceModule& m_device;
    ResonanceEngine m_engine;
    ScriptAnalysis m_script;
    QPointer<frmGvsB> m_loop;
    std::function<void(GraphModel&)> m_exportImage, m_printImage;
    QMetaObject::Connection m_viewChanged;
};
