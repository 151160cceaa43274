// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"
#include "link/settings/SettingsDialogHost.h"
#include "prefs/PreferencesHost.h"
#include "shell/commands/ui/CommandContext.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class CommandSet;
class FileOpener;
class PenBar;
class PreferencesCommands;
class QuickFileMenu;
class RecoveryCommands;
class ScriptCommands;
class StatusBar;
struct WindowParts;

/// The main window: menu bar, toolbar, pen bar, status bar and the windows of the open documents, made of what the
/// command classes have registered. It carries the instrument's side (DeviceModule, TestRun), whose port to the program
/// it is.
///
/// load() runs the load sequence; closing the window runs the unload sequence. Commands may run nested event loops.
class frmMain : public QMainWindow, public MainWindowPort, public PreferencesHost, public SettingsDialogHost
{
    Q_OBJECT

public:
    explicit frmMain(const ShellContext& context);
    ~frmMain() override;

    /// Restores the window, checks the paths, shows it and opens the first device. The hook takes the splash down; it
    /// is called, after 2.2 seconds, only when one is shown.
    void load(const std::function<void()>& takeSplashDown);

    /// The unload sequence has run.
    bool isUnloaded() const { return m_unloaded; }

    DeviceModule& deviceModule() const;
    TestRun& testRun() const;
    DocumentList& gcolDocuments() const;
    DocumentArea& documentArea() const;
    StatusBar& sbStatusBar() const;
    PenBar& tbPenBar() const;
    CommandRegistry& registry() const;
    CommandSet& commands() const;
    QuickFileMenu& quickFiles() const;
    const FileOpener& fileOpener() const;
    PreferencesCommands& preferencesCommands() const;
    RecoveryCommands& recoveryCommands() const;
    ScriptCommands& scriptCommands() const;

    bool boolArePathsSet();
    void SaveMainWindowPosition();
    /// Somebody else ends the program: the system, the session, the user at another terminal. A running test is
    /// stopped, the documents are closed as by No, and the unload sequence runs at once; no question is asked.
    void endUnasked();
    /// Tries ten devices and stops at the first that opens.
    bool OpenFirstDeviceFound();
    /// Toolbar and pen bar by the key of a button, whatever its case; an unknown key does nothing.
    void buttonClick(const QString& key);

    // PreferencesHost -------------------------------------------------------------------------------------------------
    void penInitialise() override;
    void setPenLabelColour(int iPen, std::uint32_t lColour, std::uint32_t lTextColour) override;
    void graphSetTickColour(std::uint32_t lColour) override;
    QRect clientArea() const override;

    // SettingsDialogHost ----------------------------------------------------------------------------------------------
    PenDocument* LoadNewDoc() override;
    void showDocument(PenDocument& document) override;
    void addFunctionKeys(QWidget& window) override;

    /// Null when none is open.
    PenDocument* activeDocument() const;

    // MainWindowPort --------------------------------------------------------------------------------------------------
    void setPanel(int index, std::string_view text) override;
    void processEvents() override;
    void fileNew() override;
    void mnuTestDevice_Click() override;
    void mnuWindowCloseAll_Click() override;
    void endProgram() override;
    void showSettings() override;
    void unloadDeviceChooser() override;
    void unloadDeviceWindows() override;

Q_SIGNALS:
    /// The unload sequence has run; the program may end.
    void unloaded();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void layOut();
    void followDocuments();
    void followInstrument();
    void documentCreated(PenDocument* document);
    void documentActivated(PenDocument* document);
    void runPopupEntry(PenDocument* document, int number);
    void showPainted();
    void restorePosition();
    void unload();

    ShellContext m_context;
    std::unique_ptr<WindowParts> m_parts;
    bool m_ending = false; ///< by other hands than the user's in this window
    bool m_unloaded = false;
};
