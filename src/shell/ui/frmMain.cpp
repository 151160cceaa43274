// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmMain.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/QuickFileList.h"
#include "document/SystemClipboard.h"
#include "document/ui/DocumentArea.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/CommandLine.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "shell/ui/Commands.h"
#include "shell/ui/FileDialogs.h"
#include "shell/ui/PenBar.h"
#include "shell/ui/StatusBar.h"
#include "widgets/ui/TintedIcon.h"
#include "widgets/ui/WindowPosition.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr int kSplashMilliseconds = 2200;

} // namespace

frmMain::frmMain(const ShellContext& context)
    : m_context(context)
    , m_clipboard(std::make_unique<SystemClipboard>())
    , m_fileDialogs(std::make_unique<FileDialogs>(*this))
    , m_plotSource(context.device, context.mirror, context.state)
    , m_documentContext{context.preferences, context.messages,   m_plotSource, m_active,
                        m_clipboard.get(),   m_fileDialogs.get()}
    , m_commands(std::make_unique<CommandSet>(*this))
    , m_area(new DocumentArea(m_documentContext, context.state, m_active, this))
    , m_penBar(new PenBar(this))
    , m_statusBar(new StatusBar(this))
    , m_documents(std::make_unique<DocumentList>(m_documentContext, context.state, *m_area))
    , m_quickFiles(std::make_unique<QuickFileList>(context.preferences))
    , m_deviceModule(std::make_unique<DeviceModule>(LinkContext{
          context.device, context.mirror, context.state, context.preferences, context.messages, *this, m_active}))
    , m_testRun(std::make_unique<TestRun>(*m_deviceModule))
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(m_context.state.gstrInstanceTitle);
    setWindowIcon(programIcon());
    setAcceptDrops(true);
    setCentralWidget(m_area);
    setStatusBar(m_statusBar);
    buildMenus();

    connect(&m_active, &ActiveDocument::changed, this, &frmMain::documentActivated);
    connect(m_area, &DocumentArea::documentCreated, this, &frmMain::documentCreated);
    m_area->mayClose = [this] { return !m_context.state.gbfPlotting || !QuestionTestCancel(); };
    connect(&m_deviceModule->events(), &InstrumentEvents::plottingChanged, m_penBar,
            [this](bool plotting) { m_penBar->setEnabled(!plotting); });
    connect(&m_deviceModule->events(), &InstrumentEvents::changed, this, [this](MirrorPart part) {
        if (part == MirrorPart::Repeat)
            m_commands->action("mnuTestRepeat").setChecked(m_context.mirror.bfRepeat);
    });
    connect(m_area, &DocumentArea::closeWanted, this, [this](PenDocument* document) { closeDocument(*document); });
    connect(m_area, &DocumentArea::popupCommand, this, &frmMain::popupCommand);
    connect(m_area, &DocumentArea::cursorRead, this, [this](const QString& x, const QString& y) {
        m_statusBar->setPanel(11, x.toStdString());
        m_statusBar->setPanel(12, y.toStdString());
    });
    connect(m_windowMenu, &QMenu::aboutToShow, this, &frmMain::rebuildWindowMenu);
    connect(m_penBar, &PenBar::penSelected, this, [this](int pen) {
        if (PenDocument* document = activeDocument())
            document->setCurrentPen(pen);
    });
    connect(m_penBar, &PenBar::penColourWanted, this, &frmMain::penColourWanted);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (PenDocument* document = activeDocument())
            document->SniffClipboardData();
    });
    m_statusBar->setPanel(1, tr("Disconnected").toStdString());
    m_statusBar->setPanel(2, "1");
    frmMain::defaultToolBars();
}

frmMain::~frmMain()
{
    // Documents and dialogs use members of this window, which would go before its child widgets do.
    disconnect(m_area, nullptr, this, nullptr);
    qDeleteAll(findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly));
    delete m_area;
}

void frmMain::buildMenus()
{
    m_fileMenu = menuBar()->addMenu(tr("&File"));
    m_commands->fillMenu(*m_fileMenu, Command::Menu::File);
    m_commands->fillMenu(*menuBar()->addMenu(tr("&Edit")), Command::Menu::Edit);
    QMenu* view = menuBar()->addMenu(tr("&View"));
    m_commands->fillMenu(*view, Command::Menu::View);
    m_commands->fillMenu(*menuBar()->addMenu(tr("&Test")), Command::Menu::Test);
    m_windowMenu = menuBar()->addMenu(tr("&Window"));
    m_commands->fillMenu(*m_windowMenu, Command::Menu::Window);
    m_commands->fillMenu(*menuBar()->addMenu(tr("&Help")), Command::Menu::Help);

    auto* toolBar = new QToolBar(tr("Toolbar"), this);
    toolBar->setObjectName(QStringLiteral("tbToolBar"));
    m_commands->fillToolBar(*toolBar, toolBarButtons());
    addToolBar(Qt::TopToolBarArea, toolBar);
    m_commands->fillToolBar(*m_penBar, penBarButtons());
    addToolBarBreak(Qt::TopToolBarArea);
    addToolBar(Qt::TopToolBarArea, m_penBar);

    view->addSeparator();
    view->addAction(toolBar->toggleViewAction());
    view->addAction(m_penBar->toggleViewAction());
}

void frmMain::load(const std::function<void()>& takeSplashDown)
{
    m_context.state.gbfPlotting = false;
    m_context.device.SetTestMode(m_context.preferences.value(options::kTestSchedule) ? 1 : 0);
    restorePosition();
    if (!boolArePathsSet())
        askForPaths();
    penInitialise();
    UpdateQuickFileList({});
    if (m_context.state.gbfSplashShown) {
        m_context.device.Wait(kSplashMilliseconds);
        showPainted();
        takeSplashDown();
    } else {
        showPainted();
    }
    m_deviceModule->DeviceInitialise();
    if (m_context.preferences.value(options::kPromptDevice))
        mnuTestDevice_Click();
    else
        OpenFirstDeviceFound();
}

void frmMain::showPainted()
{
    // Looking for instruments takes a while on a computer with many ports: the user sees the window first.
    show();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmMain::restorePosition()
{
    const Preferences& preferences = m_context.preferences;
    windowposition::apply({preferences.value(options::kWindowLeft), preferences.value(options::kWindowTop),
                           preferences.value(options::kWindowWidth), preferences.value(options::kWindowHeight),
                           preferences.value(options::kWindowState)},
                          *this);
}

void frmMain::SaveMainWindowPosition()
{
    const windowposition::Position position = windowposition::positionOf(*this);
    if (position.state == windowposition::Minimised)
        return;
    Preferences& preferences = m_context.preferences;
    const SettingsStore::Batch batch(preferences.store());
    preferences.setValue(options::kWindowState, position.state);
    preferences.setValue(options::kWindowLeft, position.left);
    preferences.setValue(options::kWindowTop, position.top);
    if (position.state == windowposition::Normal) {
        preferences.setValue(options::kWindowWidth, position.width);
        preferences.setValue(options::kWindowHeight, position.height);
    }
}

bool frmMain::OpenFirstDeviceFound()
{
    return m_testRun->OpenFirstDeviceFound();
}

void frmMain::showMessage(const QString& strMessage, int style, const QString& strTitle)
{
    m_context.messages.message(strMessage, style, strTitle);
}

void frmMain::processEvents()
{
    QApplication::processEvents();
}

void frmMain::setPanel(int index, std::string_view text)
{
    m_statusBar->setPanel(index, text);
}

void frmMain::endProgram()
{
    // The instrument's word is final: no question is asked, but the unload sequence runs as always.
    m_ending = true;
    QTimer::singleShot(0, this, [this] {
        m_context.messages.dismiss();
        close();
    });
}

void frmMain::closeEvent(QCloseEvent* event)
{
    if (m_unloaded) {
        event->accept();
        return;
    }
    const QPointer<frmMain> self(this);
    if (!closeDocumentsForExit()) {
        event->ignore();
        return;
    }
    if (!self)
        return;
    unload();
    event->accept();
}

void frmMain::unload()
{
    m_unloaded = true;
    m_deviceModule->DeviceSaveSettings();
    m_context.device.Close();
    SaveMainWindowPosition();
    processEvents();
    unloadDeviceWindows();
    unloadDeviceChooser();
    Q_EMIT unloaded();
}

void frmMain::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::NoModifier) {
        event->accept();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

void frmMain::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    windowposition::bringBackLost(*this);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event)
{
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    event->acceptProposedAction();
    // The program that the files come from waits until the drop is over; questions about them must not hold it up.
    QTimer::singleShot(0, this, [this, files] {
        for (const QString& file : files) {
            if (m_unloaded)
                return;
            OpenFromCommand(file);
        }
    });
}

void frmMain::OpenFromCommand(const QString& strFileName)
{
    if (FileKind::isPlotFile(strFileName))
        m_documents->LoadExistingDocument(strFileName);
}
