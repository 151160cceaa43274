// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/files/ui/RecoveryCommands.h"

#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/content/PenTransfer.h"
#include "document/ui/DocumentArea.h"
#include "program/CommandRegistry.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "recovery/PenText.h"
#include "recovery/RecoveryJournal.h"
#include "recovery/ui/frmRecoveryList.h"

#include <QLocale>
#include <QTimer>

#include <algorithm>

namespace {

QString shownTime(const QDateTime& when)
{
    return QLocale().toString(when, QLocale::ShortFormat);
}

constexpr int kTryAgain = 500; // milliseconds

} // namespace

RecoveryCommands::RecoveryCommands(const CommandContext& context, RecoveryJournal& journal)
    : m_context(context)
    , m_journal(journal)
{
    registerCommands();
    QObject::connect(&journal, &RecoveryJournal::failed, &journal,
                     [this](const QString& sentence) { tellFailure(sentence); });
}

void RecoveryCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuEditBringBack",
                  .menu = Command::Menu::Edit,
                  .place = 230,
                  .text = tr("&Bring Back Pen Data..."),
                  .statusTip = tr("Put data that a pen held before into the current pen"),
                  .handler = [this] { mnuEditBringBack_Click(); },
                  .rules = Command::NeedsDocument | Command::NotDuringTest | Command::NotViewOnly});
    commands.add({.name = "mnuFileReopenClosed",
                  .menu = Command::Menu::File,
                  .place = 130,
                  .text = tr("Reopen Closed Plo&t..."),
                  .statusTip = tr("Open a plot that was closed without saving"),
                  .handler = [this] { mnuFileReopenClosed_Click(); },
                  .rules = Command::NotDuringTest});
}

void RecoveryCommands::tellFailure(const QString& sentence)
{
    // A measurement goes on without it.
    if (m_context.program.state.gbfPlotting)
        QTimer::singleShot(kTryAgain, &m_journal, [this, sentence] { tellFailure(sentence); });
    else
        m_context.tell(sentence, UserMessages::Exclamation, tr("Recovery"));
}

RecoveryStore RecoveryCommands::store() const
{
    m_journal.settle();
    return RecoveryStore(m_journal.folder());
}

int RecoveryCommands::choose(const QString& title, const QString& action, const QStringList& headings,
                             const QList<QStringList>& rows) const
{
    if (rows.isEmpty()) {
        m_context.tell(tr("There is nothing to bring back."), UserMessages::Information, title);
        return -1;
    }
    const QPointer<frmRecoveryList> list = new frmRecoveryList(title, action, headings, rows, &m_context.window);
    list->exec();
    const int chosen = list ? list->chosen() : -1;
    delete list;
    return chosen;
}

void RecoveryCommands::mnuEditBringBack_Click()
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (!document || !m_context.formatAllows(*document, tr("Bring Back Pen Data")) || !document)
        return;
    std::vector<RecoveryStore::Pen> pens = store().pens();
    std::erase_if(pens, [&document](const RecoveryStore::Pen& pen) {
        return !pentransfer::fits(pen.testType, document->pgiTestType());
    });
    QList<QStringList> rows;
    for (const RecoveryStore::Pen& pen : pens)
        rows.append(
            {shownTime(pen.when), pen.caption, tr("Pen %1").arg(pen.pen + 1), pen.name, QString::number(pen.points)});
    const int chosen = choose(tr("Bring Back Pen Data"), tr("&Bring Back"),
                              {tr("Until"), tr("Document"), tr("Pen"), tr("Name"), tr("Points")}, rows);
    if (chosen >= 0 && document)
        bringBack(*document, pens[static_cast<std::size_t>(chosen)]);
}

void RecoveryCommands::bringBack(PenDocument& target, const RecoveryStore::Pen& pen) const
{
    const QPointer<PenDocument> document = &target;
    const auto record = store().read(pen);
    if (!record) {
        m_context.tell(record.sentence(), UserMessages::Exclamation, tr("Bring Back Pen Data"));
        return;
    }
    const int current = document->gCurrentPen();
    if (!document->TestCurrentPenLock() && document->pens().hasData(current) &&
        m_context.program.messages.message(tr("Do you want to overwrite this pen?"),
                                           UserMessages::OkCancel | UserMessages::Question,
                                           tr("Overwrite existing?")) != UserMessages::ReplyOk)
        return;
    // The question was about this pen; a sweep may have begun meanwhile.
    if (document && document->gCurrentPen() == current && !m_context.program.state.gbfPlotting)
        document->PasteLineData(current, recovery::penText(record.value()));
}

void RecoveryCommands::mnuFileReopenClosed_Click()
{
    const QPointer<QWidget> alive = m_context.guard();
    const std::vector<RecoveryStore::Plot> plots = store().plots();
    QList<QStringList> rows;
    for (const RecoveryStore::Plot& plot : plots)
        rows.append({shownTime(plot.when), plot.caption, plot.fileName,
                     plot.crashed ? tr("not closed, the program had ended") : tr("closed without saving")});
    const int chosen = choose(tr("Reopen Closed Plot"), tr("&Reopen"),
                              {tr("Until"), tr("Document"), tr("File"), tr("What happened")}, rows);
    if (chosen >= 0 && alive)
        open(plots[static_cast<std::size_t>(chosen)]);
}

void RecoveryCommands::open(const RecoveryStore::Plot& plot) const
{
    const QPointer<QWidget> alive = m_context.guard();
    const auto bytes = store().read(plot);
    if (!bytes) {
        m_context.tell(bytes.sentence(), UserMessages::Exclamation, tr("Reopen Closed Plot"));
        return;
    }
    const QPointer<PenDocument> document = m_context.documents.LoadNewCleanDoc();
    if (!alive || !document)
        return;
    const Outcome restored = document->restorePlot(bytes.value(), plot.caption);
    if (!alive || !document)
        return;
    if (restored) {
        m_context.area.showDocument(*document);
        return;
    }
    document->setModified(false);
    m_context.area.unloadDocument(*document);
    if (alive)
        m_context.tell(restored.sentence(), UserMessages::Exclamation, tr("Reopen Closed Plot"));
}

void RecoveryCommands::offerUnsaved()
{
    const QPointer<QWidget> alive = m_context.guard();
    const std::vector<RecoveryStore::Plot> plots = store().takeUntold();
    if (plots.empty())
        return;
    QStringList captions;
    for (const RecoveryStore::Plot& plot : plots)
        captions.append(QStringLiteral("%1, %2").arg(plot.caption, shownTime(plot.when)));
    constexpr int kShown = 8;
    if (captions.size() > kShown)
        captions = captions.first(kShown) + QStringList{tr("and %1 more").arg(plots.size() - kShown)};
    const int reply =
        m_context.program.messages.message(tr("The program ended before these plots were saved:\n%1\nOpen them now? "
                                              "File, Reopen Closed Plot keeps them for "
                                              "some days.")
                                               .arg(captions.join(QLatin1Char('\n'))),
                                           UserMessages::YesNo | UserMessages::Question, tr("Recover"));
    if (reply != UserMessages::ReplyYes)
        return;
    for (auto plot = plots.rbegin(); plot != plots.rend() && alive; ++plot)
        open(*plot);
}
