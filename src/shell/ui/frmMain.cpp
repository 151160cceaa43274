// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmMain.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "shell/ui/PopupTable.h"
#include "shell/ui/WindowParts.h"
#include "widgets/ui/TintedIcon.h"
#include "widgets/ui/WindowPosition.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr int kSplashMilliseconds = 2200;
constexpr int kPlaceOfBars = 900; // in the View menu

} // namespace

frmMain::frmMain(const ShellContext& context)
    : m_context(context)
    , m_parts(std::make_unique<WindowParts>(*this, context))
{
    layOut();
    followDocuments();
    followInstrument();
    m_parts->statusBar.setPanel(1, tr("Disconnected").toStdString());
    m_parts->bars.setDocument(nullptr);
}

frmMain::~frmMain()
{
    // Documents and dialogs use parts of this window, which would go before its child widgets do.
    disconnect(&m_parts->area, nullptr, this, nullptr);
    qDeleteAll(findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly));
    delete &m_parts->area;
}

void frmMain::layOut()
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(m_context.state.gstrInstanceTitle);
    setWindowIcon(programIcon());
    setAcceptDrops(true);
    setCentralWidget(&m_parts->area);
    setStatusBar(&m_parts->statusBar);

    QToolBar& toolBar = m_parts->toolBar;
    toolBar.setObjectName(QStringLiteral("tbToolBar"));
    addToolBar(Qt::TopToolBarArea, &toolBar);
    addToolBarBreak(Qt::TopToolBarArea);
    addToolBar(Qt::TopToolBarArea, &m_parts->penBar);
    m_parts->commands.insert(Command::Menu::View, kPlaceOfBars, *toolBar.toggleViewAction());
    m_parts->commands.insert(Command::Menu::View, kPlaceOfBars + 1, *m_parts->penBar.toggleViewAction());
}

void frmMain::followDocuments()
{
    DocumentArea* area = &m_parts->area;
    connect(&m_parts->active, &ActiveDocument::changed, this, &frmMain::documentActivated);
    connect(area, &DocumentArea::documentCreated, this, &frmMain::documentCreated);
    area->mayClose = [this] { return !m_parts->commandContext.testGoesOn(); };
    connect(area, &DocumentArea::closeWanted, this,
            [this](PenDocument* document) { m_parts->file.closeDocument(*document); });
    connect(area, &DocumentArea::popupCommand, this, &frmMain::runPopupEntry);
    connect(area, &DocumentArea::cursorRead, this,
            [this](const QString& x, const QString& y) { m_parts->bars.showCursor(x, y); });

    PenBar* penBar = &m_parts->penBar;
    connect(penBar, &PenBar::penSelected, this, [this](int pen) {
        if (PenDocument* document = activeDocument())
            document->setCurrentPen(pen);
    });
    connect(penBar, &PenBar::penColourWanted, &m_parts->pens, &PenCommands::choosePenColour);
    connect(&m_parts->pens, &PenCommands::coloursChanged, this, [this] { m_parts->bars.refresh(); });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (PenDocument* document = activeDocument())
            document->SniffClipboardData();
    });
}

void frmMain::followInstrument()
{
    const auto update = [this] { m_parts->bars.updateConditions(); };
    connect(&m_context.device, &KorvaLink::LogStopped, this, [this](const QString& sentence) {
        m_context.messages.message(sentence, UserMessages::OkOnly | UserMessages::Exclamation, tr("Link log"));
    });
    connect(&m_parts->deviceModule.events(), &InstrumentEvents::connected, this, update);
    connect(&m_parts->deviceModule.events(), &InstrumentEvents::lost, this, update);
    connect(&m_parts->deviceModule.events(), &InstrumentEvents::plottingChanged, this,
            [this](bool plotting) { m_parts->bars.setTestRuns(plotting); });
    connect(&m_parts->deviceModule.events(), &InstrumentEvents::changed, this, [this](MirrorPart part) {
        if (part == MirrorPart::Repeat)
            m_parts->registry.setChecked("mnuTestRepeat", m_context.mirror.bfRepeat);
    });
}

// Load and unload -----------------------------------------------------------------------------------------------------

void frmMain::load(const std::function<void()>& takeSplashDown)
{
    const Preferences& preferences = m_context.preferences;
    m_context.state.gbfPlotting = false;
    m_context.device.SetTestMode(preferences.value(options::kTestSchedule) ? 1 : 0);
    restorePosition();
    m_parts->preferences.checkAtStart();
    penInitialise();
    m_parts->quickFiles.UpdateQuickFileList({});
    if (m_context.state.gbfSplashShown) {
        m_context.device.Wait(kSplashMilliseconds);
        showPainted();
        takeSplashDown();
    } else {
        showPainted();
    }
    m_parts->deviceModule.DeviceInitialise();
    if (preferences.value(options::kPromptDevice))
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

void frmMain::endProgram()
{
    // The instrument's word is final: no question is asked, but the unload sequence runs as always.
    m_ending = true;
    QTimer::singleShot(0, this, [this] {
        m_context.messages.dismiss();
        close();
    });
}

void frmMain::endUnasked()
{
    if (m_unloaded)
        return;
    m_ending = true;
    m_context.messages.dismiss();
    if (m_context.state.gbfPlotting && m_context.device.Connected())
        m_parts->testRun.mnuTestStopTest_Click();
    m_parts->documents.discardAll();
    close();
}

void frmMain::closeEvent(QCloseEvent* event)
{
    if (m_unloaded) {
        event->accept();
        return;
    }
    const QPointer<frmMain> self(this);
    if (!m_ending && !m_parts->documents.CloseAll()) {
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
    m_parts->deviceModule.DeviceSaveSettings();
    m_context.device.Close();
    SaveMainWindowPosition();
    processEvents();
    unloadDeviceWindows();
    unloadDeviceChooser();
    Q_EMIT unloaded();
}

// Events --------------------------------------------------------------------------------------------------------------

bool frmMain::event(QEvent* event)
{
    // A tip has a place of its own: the panels are a measurement's and stay.
    if (event->type() == QEvent::StatusTip) {
        m_parts->statusBar.showTip(static_cast<QStatusTipEvent*>(event)->tip());
        return true;
    }
    return QMainWindow::event(event);
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
        const QPointer<frmMain> self(this);
        for (const QString& file : files) {
            if (!self || m_unloaded)
                return;
            m_parts->opener.OpenFromCommand(file);
        }
    });
}

void frmMain::documentCreated(PenDocument* document)
{
    connect(document, &PenDocument::fileUsed, this,
            [this](const QString& fileName) { m_parts->quickFiles.UpdateQuickFileList(fileName); });
    const auto refresh = [this, document] { m_parts->bars.refresh(*document); };
    connect(document, &PenDocument::pensChanged, this, refresh);
    connect(document, &PenDocument::viewChanged, this, refresh);
    connect(document, &PenDocument::zoomChanged, this, refresh);
    connect(document, &PenDocument::canPasteChanged, this, refresh);
}

void frmMain::documentActivated(PenDocument* document)
{
    m_parts->bars.setDocument(document);
    m_parts->bars.showCursor({}, {});
    if (document)
        document->SniffClipboardData();
}

void frmMain::runPopupEntry(PenDocument* document, int number)
{
    // The popup belongs to the document under the mouse, the commands to the active one: they are the same once it
    // shows.
    const QPointer<PenDocument> wanted(document);
    m_parts->area.showDocument(*document);
    const Command* command = popupCommand(m_parts->registry, number);
    if (wanted && wanted == activeDocument() && command)
        m_parts->registry.trigger(command->name);
}

void frmMain::buttonClick(const QString& key)
{
    if (const Command* command = m_parts->registry.findButton(key))
        m_parts->registry.trigger(command->name);
}

// Parts ---------------------------------------------------------------------------------------------------------------

DeviceModule& frmMain::deviceModule() const
{
    return m_parts->deviceModule;
}

TestRun& frmMain::testRun() const
{
    return m_parts->testRun;
}

DocumentList& frmMain::gcolDocuments() const
{
    return m_parts->documents;
}

DocumentArea& frmMain::documentArea() const
{
    return m_parts->area;
}

StatusBar& frmMain::sbStatusBar() const
{
    return m_parts->statusBar;
}

PenBar& frmMain::tbPenBar() const
{
    return m_parts->penBar;
}

CommandRegistry& frmMain::registry() const
{
    return m_parts->registry;
}

CommandSet& frmMain::commands() const
{
    return m_parts->commands;
}

QuickFileMenu& frmMain::quickFiles() const
{
    return m_parts->quickFiles;
}

const FileOpener& frmMain::fileOpener() const
{
    return m_parts->opener;
}

RecoveryCommands& frmMain::recoveryCommands() const
{
    return m_parts->recovery;
}

PreferencesCommands& frmMain::preferencesCommands() const
{
    return m_parts->preferences;
}

ScriptCommands& frmMain::scriptCommands() const
{
    return m_parts->scripts;
}

// What the parts ask of the window ------------------------------------------------------------------------------------

bool frmMain::boolArePathsSet()
{
    return m_parts->preferences.boolArePathsSet();
}

bool frmMain::OpenFirstDeviceFound()
{
    return m_parts->testRun.OpenFirstDeviceFound();
}

void frmMain::penInitialise()
{
    m_parts->pens.penInitialise();
}

void frmMain::setPenLabelColour(int iPen, std::uint32_t lColour, std::uint32_t)
{
    m_parts->penBar.setColour(iPen, lColour);
}

void frmMain::graphSetTickColour(std::uint32_t lColour)
{
    if (PenDocument* document = activeDocument())
        document->graphSetTickColour(lColour);
}

QRect frmMain::clientArea() const
{
    return isVisible() ? QRect(mapToGlobal(QPoint(0, 0)), size()) : QRect();
}

PenDocument* frmMain::LoadNewDoc()
{
    PenDocument* document = m_parts->documents.LoadNewDoc();
    if (document)
        m_parts->area.showDocument(*document);
    return document;
}

void frmMain::showDocument(PenDocument& document)
{
    m_parts->area.showDocument(document);
}

void frmMain::addFunctionKeys(QWidget& window)
{
    m_parts->commands.addFunctionKeys(window);
}

PenDocument* frmMain::activeDocument() const
{
    return m_parts->active.get();
}

void frmMain::processEvents()
{
    QApplication::processEvents();
}

void frmMain::setPanel(int index, std::string_view text)
{
    m_parts->statusBar.setPanel(index, text);
}

void frmMain::fileNew()
{
    m_parts->file.mnuFileNew_Click();
}

void frmMain::mnuTestDevice_Click()
{
    m_parts->deviceWindows.mnuTestDevice_Click();
}

void frmMain::mnuWindowCloseAll_Click()
{
    m_parts->documents.CloseAll();
}

void frmMain::showSettings()
{
    m_parts->deviceWindows.showSettings();
}

void frmMain::unloadDeviceChooser()
{
    m_parts->deviceWindows.unloadDeviceChooser();
}

void frmMain::unloadDeviceWindows()
{
    m_parts->deviceWindows.unloadDeviceWindows();
}
