// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/HelpCommands.h"

#include "link/ui/frmAbout.h"
#include "prefs/Preferences.h"
#include "program/CommandRegistry.h"
#include "program/UserMessages.h"
#include "widgets/ui/ShowModally.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

HelpCommands::HelpCommands(const CommandContext& context)
    : m_context(context)
{
    registerCommands();
}

void HelpCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuManual",
                  .menu = Command::Menu::Help,
                  .place = 100,
                  .text = tr("&Manual"),
                  .icon = "help",
                  .shortcut = "F1",
                  .statusTip = tr("Open the user manual"),
                  .handler = [this] { openManual(options::kUserManualFile); },
                  .functionKey = true,
                  .toolBarKey = "Help"});
    commands.add({.name = "mnuInterimManual",
                  .menu = Command::Menu::Help,
                  .place = 110,
                  .text = tr("&Interim Manual"),
                  .statusTip = tr("Open the annex to the user manual"),
                  .handler = [this] { openManual(options::kInterimManualFile); }});
    commands.add({.name = "mnuOnLineHelp",
                  .menu = Command::Menu::Help,
                  .place = 120,
                  .text = tr("&On-line Help"),
                  .statusTip = tr("Open the maker's web page"),
                  .handler = [this] { mnuOnLineHelp_Click(); }});
    commands.add({.name = "mnuHelpAbout",
                  .menu = Command::Menu::Help,
                  .place = 900,
                  .text = tr("&About MarrowickGraph..."),
                  .icon = "about",
                  .statusTip = tr("Show the versions of program and instrument"),
                  .handler = [this] { mnuHelpAbout_Click(); }});
}

void HelpCommands::openManual(QLatin1String fileName)
{
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath(fileName);
    const QString file = m_context.program.preferences.valueOr(options::kManual, beside);
    if (!QFileInfo::exists(file) || !QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        m_context.tell(tr("File not found %1").arg(file), UserMessages::Information, tr("Open Error"));
}

void HelpCommands::mnuOnLineHelp_Click()
{
    QDesktopServices::openUrl(QUrl(m_context.program.preferences.value(options::kMakerUrl)));
}

void HelpCommands::mnuHelpAbout_Click()
{
    auto* form =
        new frmAbout(m_context.program.device, m_context.program.mirror, m_context.program.messages, &m_context.window);
    QObject::connect(form, &frmAbout::upgradeWanted, form,
                     [this] { m_context.commands.trigger(QStringLiteral("mnuHelpUpdate")); });
    showModally(form);
}
