// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs that the main window opens.
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/ui/DocumentArea.h"
#include "document/ui/frmAddText.h"
#include "document/ui/frmFileProperties.h"
#include "link/DeviceModule.h"
#include "link/settings/ui/frmSettings.h"
#include "link/ui/frmAbout.h"
#include "link/ui/frmDevice.h"
#include "link/ui/frmDeviceProperties.h"
#include "link/ui/frmTestSchedule.h"
#include "prefs/DataFolders.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "prefs/ui/frmPreferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "shell/ui/Commands.h"
#include "shell/ui/PenBar.h"
#include "shell/ui/frmMain.h"

namespace {

constexpr int kGeneralPage = 5;

/// Runs the dialog modally and destroys it, unless whoever it was for has gone down with it.
template <typename Dialog>
void showModally(Dialog* form)
{
    const QPointer<Dialog> dialog(form);
    dialog->exec();
    delete dialog;
}

} // namespace

// Folders and preferences ---------------------------------------------------------------------------------------------

bool frmMain::boolArePathsSet()
{
    return DataFolders::boolArePathsSet(m_context.preferences, [this](const QString& candidate) {
        showMessage(tr("Could not make directory: %1").arg(candidate), UserMessages::OkOnly | UserMessages::Stop,
                    tr("Directory Create Error"));
    });
}

bool frmMain::tellDamagedSettings()
{
    const auto damage = m_context.preferences.store().takeDamage();
    if (!damage)
        return false;
    showMessage(damage->sentence(), UserMessages::OkOnly | UserMessages::Exclamation, tr("Settings"));
    return true;
}

void frmMain::askForPaths()
{
    // Paths that went with a damaged file need no second message.
    if (!tellDamagedSettings())
        showMessage(tr("Please enter the paths to your files."), UserMessages::OkOnly | UserMessages::Stop,
                    tr("Paths not set"));
    showPreferences(kGeneralPage);
}

void frmMain::mnuPreferences_Click()
{
    showPreferences(0);
}

void frmMain::showPreferences(int page)
{
    auto* form = new frmPreferences(m_context.preferences, *this, m_context.state, m_context.messages, this);
    if (page > 0)
        form->selectPage(page);
    showModally(form);
}

void frmMain::setPenLabelColour(int iPen, std::uint32_t lColour, std::uint32_t)
{
    m_penBar->setColour(iPen, lColour);
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

// Document ------------------------------------------------------------------------------------------------------------

void frmMain::mnuViewAddText_Click()
{
    PenDocument* document = activeDocument();
    if (document && formatAllows(*document, tr("Add text not possible")))
        showModally(new frmAddText(*document, this));
}

void frmMain::mnuFileProperties_Click()
{
    const PenDocument* document = activeDocument();
    if (!document)
        return;
    auto* form = new frmFileProperties(this);
    form->ShowDetails(*document);
    showModally(form);
}

// Instrument ----------------------------------------------------------------------------------------------------------

void frmMain::mnuTestDevice_Click()
{
    if (m_deviceChooser) {
        m_deviceChooser->activateWindow();
        return;
    }
    m_deviceChooser = new frmDevice(m_context.device, m_context.preferences, m_context.messages, this);
    showModally(m_deviceChooser.data());
}

void frmMain::unloadDeviceChooser()
{
    // It may be the chooser's own click that brought the connection about: it ends its loop and is destroyed behind it.
    if (m_deviceChooser)
        m_deviceChooser->accept();
}

void frmMain::mnuTestDeviceProperties_Click()
{
    if (!m_deviceProperties) {
        m_deviceProperties = new frmDeviceProperties(*m_deviceModule, this);
        m_deviceProperties->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_deviceProperties->Update();
    m_deviceProperties->show();
    m_deviceProperties->raise();
    m_deviceProperties->activateWindow();
}

void frmMain::mnuTestSchedule_Click()
{
    showModally(new frmTestSchedule(m_context.device, m_context.preferences, this));
}

void frmMain::unloadDeviceWindows()
{
    unloadSettings();
    if (m_deviceProperties)
        m_deviceProperties->close();
}

void frmMain::showSettings()
{
    // A dialog that is not visible has been closed and only waits for its destruction.
    if (!m_settings || !m_settings->isVisible())
        m_settings = new frmSettings(*m_deviceModule, *this, this);
    m_settings->show();
    m_settings->raise();
}

void frmMain::unloadSettings()
{
    if (m_settings)
        m_settings->Unload();
    m_settings = nullptr;
}

void frmMain::mnuTestSettings_Click()
{
    showSettings();
    m_settings->activateWindow();
}

PenDocument* frmMain::LoadNewDoc()
{
    PenDocument* document = m_documents->LoadNewDoc();
    if (document)
        m_area->showDocument(*document);
    return document;
}

void frmMain::showDocument(PenDocument& document)
{
    m_area->showDocument(document);
}

void frmMain::addFunctionKeys(QWidget& window)
{
    m_commands->addFunctionKeys(window);
}

// Help ----------------------------------------------------------------------------------------------------------------

void frmMain::mnuHelpAbout_Click()
{
    auto* form = new frmAbout(m_context.device, m_context.mirror, m_context.messages, this);
    // There is no update window yet that the button could open.
    if (auto* upgrade = form->findChild<QWidget*>(QStringLiteral("cmdUpgrade")))
        upgrade->hide();
    showModally(form);
}
