// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/PreferencesCommands.h"

#include "prefs/DataFolders.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "prefs/ui/frmPreferences.h"
#include "program/CommandRegistry.h"
#include "program/UserMessages.h"
#include "widgets/ui/ShowModally.h"

#include <QTemporaryFile>

#include <filesystem>

namespace {

constexpr int kGeneralPage = 5;

/// Why the folder could not be made.
QString reasonOf(const QString& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder.toStdString(), error);
    return QString::fromStdString(error.message());
}

} // namespace

PreferencesCommands::PreferencesCommands(const CommandContext& context, PreferencesHost& host)
    : m_context(context)
    , m_host(host)
{
    m_context.commands.add({.name = "mnuPreferences",
                            .menu = Command::Menu::Edit,
                            .place = 900,
                            .text = tr("Pr&eferences..."),
                            .icon = "preferences",
                            .shortcut = "F2",
                            .statusTip = tr("Set colours, scales, prompts and folders"),
                            .handler = [this] { mnuPreferences_Click(); },
                            .functionKey = true});
}

void PreferencesCommands::mnuPreferences_Click()
{
    show(0);
}

void PreferencesCommands::show(int page)
{
    const ShellContext& program = m_context.program;
    auto* form = new frmPreferences(program.preferences, m_host, program.state, program.messages, &m_context.window);
    if (page > 0)
        form->selectPage(page);
    showModally(form);
}

QStringList PreferencesCommands::problemsOfFolders(bool& areSet) const
{
    QStringList failed;
    QStringList problems;
    areSet = DataFolders::boolArePathsSet(m_context.program.preferences, [&](const QString& candidate) {
        // What lies inside a folder that could not be made needs no line of its own.
        for (const QString& above : std::as_const(failed)) {
            if (candidate.startsWith(above))
                return;
        }
        failed.append(candidate);
        problems.append(tr("Could not make directory: %1 (%2)").arg(candidate, reasonOf(candidate)));
    });
    return problems;
}

QString PreferencesCommands::problemOfStore() const
{
    const QString folder = m_context.program.preferences.store().folder();
    std::error_code error;
    std::filesystem::create_directories(folder.toStdString(), error);
    QString reason = error ? QString::fromStdString(error.message()) : QString();
    if (reason.isEmpty()) {
        QTemporaryFile probe(folder + QStringLiteral("/.probe-XXXXXX"));
        if (!probe.open())
            reason = probe.errorString();
    }
    return reason.isEmpty() ? QString() : tr("Settings cannot be stored in %1 (%2)").arg(folder, reason);
}

void PreferencesCommands::tellProblems(const QStringList& problems)
{
    const QString title = problems.first().startsWith(tr("Settings")) ? tr("Settings") : tr("Directory Create Error");
    m_context.tell(problems.join(QLatin1Char('\n')), UserMessages::Stop, title);
}

bool PreferencesCommands::boolArePathsSet()
{
    bool areSet = false;
    if (const QStringList problems = problemsOfFolders(areSet); !problems.isEmpty())
        tellProblems(problems);
    return areSet;
}

void PreferencesCommands::checkAtStart()
{
    const QPointer<QWidget> alive = m_context.guard();
    bool areSet = false;
    QStringList problems = problemsOfFolders(areSet);
    const QString storeProblem = problemOfStore();
    if (!storeProblem.isEmpty())
        problems.prepend(storeProblem);
    if (!problems.isEmpty()) {
        tellProblems(problems);
    } else if (!areSet && !tellDamagedSettings()) {
        // Paths that went with a damaged file need no second message.
        m_context.tell(tr("Please enter the paths to your files."), UserMessages::Stop, tr("Paths not set"));
    }
    if (alive && !areSet && storeProblem.isEmpty())
        show(kGeneralPage);
}

bool PreferencesCommands::tellDamagedSettings()
{
    const auto damage = m_context.program.preferences.store().takeDamage();
    if (!damage)
        return false;
    m_context.tell(damage->sentence(), UserMessages::Exclamation, tr("Settings"));
    return true;
}
