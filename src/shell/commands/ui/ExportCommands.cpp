// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/ExportCommands.h"

#include "controls/graph/ui/GraphPicture.h"
#include "controls/graph/ui/GraphView.h"
#include "document/PenDocument.h"
#include "document/ui/DocumentArea.h"
#include "document/ui/frmDocument.h"
#include "export/ExportNames.h"
#include "export/ui/frmExportData.h"
#include "print/ui/frmPrintDialog.h"
#include "program/CommandRegistry.h"
#include "program/Questions.h"
#include "program/UserMessages.h"
#include "shell/commands/ui/FileDialogs.h"
#include "shell/commands/ui/PenCommands.h"
#include "widgets/ui/ShowModally.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

using graph::PictureFormat;

ExportCommands::ExportCommands(const CommandContext& context, PenCommands& pens)
    : m_context(context)
    , m_pens(pens)
{
    CommandRegistry& commands = context.commands;
    commands.add({.name = "mnuFileExport",
                  .menu = Command::Menu::File,
                  .place = 300,
                  .text = tr("&Export..."),
                  .icon = "export-data",
                  .shortcut = "Ctrl+Shift+E",
                  .statusTip = tr("Write the active document as text or as an image"),
                  .handler = [this] { mnuFileExport_Click(); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Export Data",
                  .popupEntry = "Export"});
    commands.add({.name = "mnuFileExportPicture",
                  .menu = Command::Menu::File,
                  .place = 305,
                  .text = tr("Save P&icture As..."),
                  .statusTip = tr("Write the graph as a PNG, SVG or PDF picture"),
                  .handler = [this] { mnuFileExportPicture_Click(); },
                  .rules = Command::NeedsDocument});
    commands.add({.name = "mnuFilePrint",
                  .menu = Command::Menu::File,
                  .place = 310,
                  .text = tr("&Print..."),
                  .icon = "print",
                  .shortcut = "Ctrl+P",
                  .statusTip = tr("Print the graph of the active document"),
                  .handler = [this] { mnuFilePrint_Click(); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Print"});
    commands.add({.name = "mnuEditCopyPicture",
                  .menu = Command::Menu::Edit,
                  .place = 215,
                  .text = tr("Cop&y Picture"),
                  .shortcut = "Ctrl+Shift+C",
                  .statusTip = tr("Copy the graph as a picture to the clipboard"),
                  .handler = [this] { mnuEditCopyPicture_Click(); },
                  .rules = Command::NeedsDocument});
}

PenDocument* ExportCommands::exportable() const
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (!document || !m_context.formatAllows(*document, tr("Export data not possible")))
        return nullptr;
    return document;
}

QSize ExportCommands::sizeOnScreen(const PenDocument& document) const
{
    const frmDocument* window = m_context.area.windowOf(document);
    return window ? window->view().size() : QSize();
}

void ExportCommands::mnuFileExport_Click()
{
    PenDocument* document = exportable();
    if (!document)
        return;
    const ExportContext context{m_context.program.preferences, m_context.program.messages, m_context.fileDialogs};
    auto* form = new frmExportData(*document, context, &m_context.window);
    QObject::connect(form, &frmExportData::penColourWanted, &m_pens, &PenCommands::choosePenColour);
    showModally(form);
}

void ExportCommands::mnuFileExportPicture_Click()
{
    const QPointer<QWidget> alive = m_context.guard();
    const QPointer<PenDocument> document = exportable();
    if (!document)
        return;
    const QSize size = sizeOnScreen(*document);
    QString name =
        ExportNames::ask(m_context.fileDialogs, m_context.program.preferences,
                         tr("PNG picture (*.png)|*.png|SVG drawing (*.svg)|*.svg|PDF document (*.pdf)|*.pdf"),
                         ExportNames::suggested(*document));
    if (!alive || !document || name.isEmpty())
        return;
    const QString suffix = QFileInfo(name).suffix().toLower();
    const PictureFormat format = suffix == QLatin1String("svg")   ? PictureFormat::Svg
                                 : suffix == QLatin1String("pdf") ? PictureFormat::Pdf
                                                                  : PictureFormat::Png;
    if (format == PictureFormat::Png && suffix != QLatin1String("png"))
        name += QStringLiteral(".png");
    if (!questions::QuestionOverwriteFile(name, m_context.program.messages) || !alive || !document)
        return;
    const Outcome saved = graph::savePicture(document->peGraph(), name, format, size.width(), size.height());
    if (!saved)
        m_context.tell(saved.sentence(), UserMessages::Exclamation, tr("Save Error"));
}

void ExportCommands::mnuFilePrint_Click()
{
    const PenDocument* document = m_context.activeDocument();
    if (!document)
        return;
    auto* form = new frmPrintDialog(m_context.program.preferences, m_context.program.messages, m_context.fileDialogs,
                                    &m_context.window);
    form->SetGraph(document->peGraph(), ExportNames::suggested(*document));
    showModally(form);
}

void ExportCommands::mnuEditCopyPicture_Click()
{
    const PenDocument* document = exportable();
    if (!document)
        return;
    const QSize size = sizeOnScreen(*document);
    const GraphModel& model = document->peGraph();
    auto* data = new QMimeData;
    const std::pair<PictureFormat, const char*> kinds[] = {{PictureFormat::Svg, "image/svg+xml"},
                                                           {PictureFormat::Pdf, "application/pdf"},
                                                           {PictureFormat::Png, "image/png"}};
    for (const auto& [format, type] : kinds) {
        const ValueOr<QByteArray> bytes = graph::pictureBytes(model, format, size.width(), size.height());
        if (!bytes) {
            delete data;
            m_context.tell(bytes.sentence(), UserMessages::Exclamation, tr("Copy Picture"));
            return;
        }
        data->setData(QLatin1String(type), bytes.value());
    }
    data->setImageData(QImage::fromData(data->data(QStringLiteral("image/png"))));
    QGuiApplication::clipboard()->setMimeData(data);
}
