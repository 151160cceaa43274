// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/MaskCommands.h"

#include "document/ActiveDocument.h"
#include "document/FilePicker.h"
#include "files/SafeFile.h"
#include "mask/MaskShape.h"
#include "mask/MaskVerdict.h"
#include "mask/maskline.h"
#include "prefs/Preferences.h"
#include "program/CommandRegistry.h"
#include "program/Questions.h"
#include "program/UserMessages.h"

#include <QFileInfo>
#include <QPointer>

namespace {

using namespace Qt::StringLiterals;

constexpr QLatin1String kExtension(".mgm");

QString filters()
{
    return MaskCommands::tr("Mask files") + u"|*.mgm|"_s + MaskCommands::tr("All files") + u"|*.*"_s;
}

} // namespace

MaskCommands::MaskCommands(const Context& context)
    : m_context(context)
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuCheckMask",
                  .menu = Command::Menu::Masks,
                  .place = 100,
                  .text = tr("&Check Pen"),
                  .statusTip = tr("Tell whether the current pen lies between the mask lines"),
                  .handler = [this] { mnuCheckMask_Click(); },
                  .rules = Command::NeedsDocument});
    commands.add({.name = "mnuMaskRead",
                  .menu = Command::Menu::Masks,
                  .place = 200,
                  .text = tr("&Read Mask..."),
                  .statusTip = tr("Put the mask of a file into pens 9 and 10"),
                  .handler = [this] { mnuMaskRead_Click(); },
                  .rules = Command::NeedsDocument | Command::NotDuringTest | Command::NotViewOnly});
    commands.add({.name = "mnuMaskSave",
                  .menu = Command::Menu::Masks,
                  .place = 210,
                  .text = tr("&Save Mask As..."),
                  .statusTip = tr("Write the mask of this graph into a file that other graphs can read"),
                  .handler = [this] { mnuMaskSave_Click(); },
                  .rules = Command::NeedsDocument});
}

void MaskCommands::mnuCheckMask_Click()
{
    if (PenDocument* document = m_context.active.get())
        maskverdict::checkCurrentPen(*document, m_context.messages);
}

PenDocument* MaskCommands::maskDocument(const QString& title) const
{
    PenDocument* document = m_context.active.get();
    if (document != nullptr && document->pgiTestType() != PenDocument::Amplitude &&
        document->pgiTestType() != PenDocument::Impedance) {
        m_context.messages.message(tr("Only amplitude and impedance graphs have masks."), UserMessages::Information,
                                   title);
        return nullptr;
    }
    return document;
}

void MaskCommands::mnuMaskSave_Click()
{
    const QString title = tr("Save Mask");
    PenDocument* document = maskDocument(title);
    if (document == nullptr)
        return;
    if (!document->hasMasks()) {
        maskverdict::tellRefusal(maskverdict::Readiness::NoMask, m_context.messages);
        return;
    }
    if (!MaskTest(document->peGraph()).maskCheckBothOrders()) {
        maskverdict::tellRefusal(maskverdict::Readiness::Unordered, m_context.messages);
        return;
    }
    // As it is now, whatever happens to the document while the user looks for a name.
    const QByteArray text = maskfile::text(MaskShape::of(document->peGraph()), document->pgiTestType());
    QString file =
        m_context.files.saveFileName(title, filters(), m_context.preferences.value(options::kPlotFiles.option),
                                     QFileInfo(document->caption()).baseName() + kExtension);
    if (file.isEmpty())
        return;
    if (QFileInfo(file).suffix().isEmpty())
        file += kExtension;
    if (!questions::QuestionOverwriteFile(file, m_context.messages))
        return;
    if (const Outcome written = files::writeFile(file, text); !written)
        m_context.messages.message(written.sentence(), UserMessages::Exclamation, title);
}

void MaskCommands::mnuMaskRead_Click()
{
    const QString title = tr("Read Mask");
    const QPointer<PenDocument> document = maskDocument(title);
    if (!document)
        return;
    const QString file =
        m_context.files.openFileName(title, filters(), m_context.preferences.value(options::kPlotFiles.option));
    if (file.isEmpty() || !document)
        return;
    const ValueOr<MaskShape> shape = maskfile::readFile(file, document->pgiTestType());
    if (!shape) {
        m_context.messages.message(shape.sentence(), UserMessages::Exclamation, title);
        return;
    }
    const bool holdsData = document->pens().hasData(mask::kUpper) || document->pens().hasData(mask::kLower);
    if (holdsData &&
        m_context.messages.message(tr("The mask takes the place of what pens 9 and 10 hold."),
                                   UserMessages::OkCancel | UserMessages::Question, title) != UserMessages::ReplyOk)
        return;
    if (document)
        maskline(*document, m_context.preferences).replace(shape.value());
}
