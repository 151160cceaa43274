// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/UpdateCommands.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentList.h"
#include "instrument/InstrumentMirror.h"
#include "link/MainWindowPort.h"
#include "program/CommandRegistry.h"
#include "shell/commands/ui/FileDialogs.h"
#include "update/web/Installer.h"
#include "update/web/ui/frmUpdate.h"
#include "widgets/ui/ShowModally.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <utility>

UpdateCommands::UpdateCommands(const CommandContext& context, MainWindowPort& window, FirmwareWindows firmware)
    : m_context(context)
    , m_window(window)
    , m_firmware(std::move(firmware))
{
    context.commands.add({.name = "mnuHelpUpdate",
                          .menu = Command::Menu::Help,
                          .place = 200,
                          .text = tr("Check for &Updates..."),
                          .statusTip = tr("Fetch or install a newer program or firmware"),
                          .handler = [this] { mnuHelpUpdate_Click(); },
                          .rules = Command::NotDuringTest});
}

void UpdateCommands::mnuHelpUpdate_Click()
{
    showModally(new frmUpdate({m_context.program.preferences, m_context.program.messages, *this}, &m_context.window));
}

bool UpdateCommands::closeAllDocuments()
{
    return m_context.documents.CloseAll();
}

QString UpdateCommands::openFileName(const QString& title, const QString& filters, const QString& folder,
                                     const QString& name)
{
    const QPointer<QFileDialog> dialog = new QFileDialog(&m_context.window, title, folder);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    const QStringList names = FileDialogs::nameFilters(filters);
    dialog->setNameFilters(names);
    // The kind that shows the proposed file, or else all of them.
    const QString ending = QFileInfo(name).suffix();
    const auto fitting = std::find_if(names.begin(), names.end(), [&ending](const QString& filter) {
        return !ending.isEmpty() && filter.endsWith(QStringLiteral("(*.%1)").arg(ending));
    });
    dialog->selectNameFilter(fitting == names.end() ? names.last() : *fitting);
    dialog->selectFile(name);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    const QStringList files = dialog->selectedFiles();
    delete dialog;
    return accepted && !files.isEmpty() ? files.first() : QString();
}

Outcome UpdateCommands::mayStart(const QString& file)
{
    return installer::mayStart(file, installer::trustedKeyFolder());
}

Outcome UpdateCommands::start(const QString& file)
{
    if (!installer::isPackage(file))
        return installer::run(file);
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        return Outcome::success();
    return Outcome::failure(tr("%1 was not started. This desktop has no package installer; as administrator, run: apt "
                               "install %2")
                                .arg(QFileInfo(file).fileName(), file));
}

void UpdateCommands::endProgram()
{
    m_window.endProgram();
}

QString UpdateCommands::listingTag() const
{
    const QString& model = m_context.program.mirror.strDeviceModel;
    if (!hasFirmwareWizard() || model.isEmpty())
        return {};
    return m_firmware.listingTag ? m_firmware.listingTag(model) : model;
}

double UpdateCommands::firmwareMajor() const
{
    return m_context.program.mirror.dblFirmwareMajor;
}

double UpdateCommands::firmwareMinor() const
{
    return m_context.program.mirror.dblFirmwareMinor;
}

bool UpdateCommands::deviceConnected() const
{
    return m_context.program.device.Connected();
}
