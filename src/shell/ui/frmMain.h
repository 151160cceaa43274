// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ActiveDocument.h"
#include "document/DocumentContext.h"
#include "link/InstrumentPlotSource.h"
#include "link/MainWindowPort.h"
#include "link/settings/SettingsDialogHost.h"
#include "prefs/PreferencesHost.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>

class CommandSet;
class DeviceList;
class DeviceModule;
class DocumentArea;
class DocumentList;
class PenBar;
class QuickFileList;
class StatusBar;
class SystemClipboard;
class FileDialogs;
class TestRun;
class frmDevice;
class frmDeviceProperties;
class frmSettings;

/// What the main window works with. All of it outlives the window.
struct ShellContext
{
    ProgramState& state;
    Preferences& preferences;
    DeviceList& devices;
    KorvaLink& device;
    InstrumentMirror& mirror;
    UserMessages& messages;
};

/// The main window: menus, toolbar, pen bar, status bar and the windows of the open documents. It carries the
/// instrument's side (DeviceModule, TestRun), whose port to the program it is.
///
/// load() runs the load sequence; closing the window runs the unload sequence. Handlers bear the names of their
/// commands; each may run nested event loops.
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

    DeviceModule& deviceModule() const { return *m_deviceModule; }
    TestRun& testRun() const { return *m_testRun; }
    DocumentList& gcolDocuments() const { return *m_documents; }
    DocumentArea& documentArea() const { return *m_area; }
    StatusBar& sbStatusBar() const { return *m_statusBar; }
    PenBar& tbPenBar() const { return *m_penBar; }
    CommandSet& commands() const { return *m_commands; }

    // Start-up and shut-down ------------------------------------------------------------------------------------------
    bool boolArePathsSet();
    /// Tells once that a settings file was damaged and set aside; false when there is nothing to tell.
    bool tellDamagedSettings();
    void SaveMainWindowPosition();
    /// Tries ten devices and stops at the first that opens.
    bool OpenFirstDeviceFound();
    /// What File Open and a drop do with a name: one that holds a plot file's extension, anywhere and whatever its
    /// case, is opened; any other is ignored.
    void OpenFromCommand(const QString& strFileName);
    /// Toolbar and pen bar by the key of a button, whatever its case; an unknown key does nothing.
    void buttonClick(const QString& key);
    /// So many times: block for that time, then let pending events run, so that the instrument's answers can land.
    void waitRounds(int rounds, int milliseconds);
    void unloadSettings();

    // PreferencesHost -------------------------------------------------------------------------------------------------
    void penInitialise() override;
    void setPenLabelColour(int iPen, std::uint32_t lColour, std::uint32_t lTextColour) override;
    void graphSetTickColour(std::uint32_t lColour) override;
    QRect clientArea() const override;

    // SettingsDialogHost ----------------------------------------------------------------------------------------------
    PenDocument* LoadNewDoc() override;
    void showDocument(PenDocument& document) override;
    void addFunctionKeys(QWidget& window) override;

    PenDocument* activeDocument() const;
    void updateToolBars(PenDocument& document);
    void defaultToolBars();
    bool QuestionTestCancel();
    void UpdateQuickFileList(const QString& strFilePathName);

    // MainWindowPort --------------------------------------------------------------------------------------------------
    void setPanel(int index, std::string_view text) override;
    void processEvents() override;
    void fileNew() override { mnuFileNew_Click(); }
    void mnuTestDevice_Click() override;
    void mnuWindowCloseAll_Click() override;
    void endProgram() override;
    void showSettings() override;
    void unloadDeviceChooser() override;
    void unloadDeviceWindows() override;

    // Commands --------------------------------------------------------------------------------------------------------
    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileClose_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void mnuFileSaveAll_Click();
    void mnuFileProperties_Click();
    void mnuFileMRU_Click(const QString& strFileName);
    void mnuFileExit_Click();
    void mnuEditUndo_Click();
    void mnuEditRedo_Click();
    void mnuEditCut_Click();
    void mnuEditCopy_Click();
    void mnuEditPaste_Click();
    void mnuPreferences_Click();
    void mnuViewAddText_Click();
    void mnuViewMarkPoints_Click();
    void mnuViewZoomExtents_Click();
    void penLock_Click();
    void penUnlockAll_Click();
    void penView_Click();
    void penViewAll_Click();
    void mnuTestStart_Click();
    void mnuTestStopTest_Click();
    void mnuTestRepeat_Click();
    void mnuReRunLastTestScript_Click();
    void mnuTestSettings_Click();
    void mnuTestDeviceProperties_Click();
    void mnuTestSchedule_Click();
    void mnuNextDocument_Click();
    void mnuPreviousDocument_Click();
    void mnuWindowTileVertical_Click();
    void mnuWindowTileHorizontal_Click();
    void mnuWindowCascade_Click();
    void mnuManual_Click();
    void mnuInterimManual_Click();
    void mnuOnLineHelp_Click();
    void mnuHelpAbout_Click();

Q_SIGNALS:
    /// The unload sequence has run; the program may end.
    void unloaded();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildMenus();
    void showPainted();
    void restorePosition();
    void askForPaths();
    void showPreferences(int page);
    bool closeDocumentsForExit();
    void rebuildWindowMenu();
    void unload();
    void fileSave(bool bfAs);
    bool closeDocument(PenDocument& document);
    /// True for a document of the present format; otherwise the user is told under that title.
    bool formatAllows(const PenDocument& document, const QString& strTitle);
    void showMessage(const QString& strMessage, int style, const QString& strTitle);
    void documentCreated(PenDocument* document);
    void documentActivated(PenDocument* document);
    void popupCommand(PenDocument* document, int item);
    void penColourWanted(int pen);
    void openManual(QLatin1String fileName);
    void rebuildQuickFileMenu();

    ShellContext m_context;
    std::unique_ptr<SystemClipboard> m_clipboard;
    std::unique_ptr<FileDialogs> m_fileDialogs;
    ActiveDocument m_active;
    InstrumentPlotSource m_plotSource;
    DocumentContext m_documentContext;
    QList<QMetaObject::Connection> m_activeConnections;
    std::unique_ptr<CommandSet> m_commands;
    DocumentArea* m_area;
    PenBar* m_penBar;
    StatusBar* m_statusBar;
    std::unique_ptr<DocumentList> m_documents;
    std::unique_ptr<QuickFileList> m_quickFiles;
    std::unique_ptr<DeviceModule> m_deviceModule;
    std::unique_ptr<TestRun> m_testRun;
    QMenu* m_fileMenu = nullptr;
    QMenu* m_windowMenu = nullptr;
    QList<QAction*> m_quickFileActions; ///< mnuFileBar4 and mnuFileMRU
    QPointer<frmDevice> m_deviceChooser;
    QPointer<frmSettings> m_settings;
    QPointer<frmDeviceProperties> m_deviceProperties;
    QList<QAction*> m_windowActions; ///< the open documents
    bool m_ending = false;           ///< the instrument has ended the program
    bool m_unloaded = false;
};
