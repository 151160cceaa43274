// SPDX-License-Identifier: GPL-3.0-or-later
// Saving, loading and closing.
#include "controls/graph/GraphFile.h"
#include "document/DocumentHost.h"
#include "document/FilePicker.h"
#include "document/GraphScope.h"
#include "document/GraphTexts.h"
#include "document/PenDocument.h"
#include "document/PlotFileNames.h"
#include "instrument/clsTestSettings.h"
#include "prefs/Preferences.h"
#include "program/MainModule.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QPointer>

using namespace graphtexts;

namespace {

/// The subtitle that shows the version text has one blank in place of the mark behind the software part.
QString subTitleOf(const QString& versionText)
{
    const QLatin1String mark(" | ");
    const qsizetype at = versionText.indexOf(mark);
    return versionText.left(at + 1) + QLatin1Char(' ') + versionText.mid(at + mark.size());
}

Outcome closedMeanwhile()
{
    return Outcome::failure(PenDocument::tr("The document was closed while its file was read."));
}

} // namespace

bool PenDocument::askFileName(QString& sFile)
{
    if (m_context.filePicker == nullptr)
        return false;
    QString folder = m_context.preferences.value(options::kPlotFiles.option);
    if (folder.isEmpty())
        folder = QCoreApplication::applicationDirPath();
    const QString name = PlotFileNames::proposed(m_graph.MainTitle() == kNoTitle ? m_caption : m_graph.MainTitle());
    const QString picked =
        m_context.filePicker->saveFileName(tr("Save As"), PlotFileNames::saveFilter(pgiTestType), folder, name);
    if (picked.isEmpty())
        return false;
    sFile = picked;
    return true;
}

bool PenDocument::fileSave(bool bfAs, bool bfOverwrite)
{
    const QPointer<PenDocument> self(this);
    if (gsFileName.isEmpty())
        bfAs = true;
    const QString before = gsFileName;
    if (bfAs) {
        QString picked;
        if (!askFileName(picked) || !self)
            return false;
        if (!bfOverwrite) {
            const QString target = PlotFileNames::completed(picked, pgiTestType);
            const bool replace = MainModule::QuestionOverwriteFile(target, m_context.messages);
            if (!self || !replace)
                return false;
        }
        gsFileName = picked;
    }
    m_graph.setMultiSubTitles(0, lockText());
    // The settings string is made but not kept: plots never carried it.
    static_cast<void>(m_gclsTestSettings->SaveToString());
    const bool saved = fileSavePlot(gsFileName);
    if (!self)
        return false;
    if (!saved) {
        gsFileName = before;
        return false;
    }
    m_context.host.UpdateQuickFileList(gsFileName);
    if (bfAs)
        setCaption(gsFileName);
    gbfModified = false;
    UpdateToolBars();
    return true;
}

bool PenDocument::fileSavePlot(QString& sFileName)
{
    gsFileName = sFileName;
    sFileName = PlotFileNames::completed(sFileName, pgiTestType);
    const QString target = sFileName;
    const QString titleBefore = m_graph.MainTitle();
    const QString versionBefore = m_graph.TXAxisLabel();
    if (m_graph.MainTitle() == kNoTitle)
        m_graph.setMainTitle(target);
    m_graph.setTXAxisLabel(SetVersion());
    // The active document shows the test information, whichever is saved.
    if (PenDocument* active = m_context.host.activeDocument(); active != nullptr) {
        GraphModel& shown = active->m_graph;
        if (!shown.SubTitle().isEmpty() && shown.TXAxisLabel().contains(QLatin1String(" | ")))
            shown.setSubTitle(subTitleOf(shown.TXAxisLabel()));
    }
    m_graph.PEactions(graph::Reinitialise);
    if (const Outcome saved = GraphFile::PEsavetofile(m_graph, target); !saved) {
        m_graph.setMainTitle(titleBefore);
        m_graph.setTXAxisLabel(versionBefore);
        m_graph.PEactions(graph::Reinitialise);
        m_context.messages.message(tr("The plot is not saved. %1").arg(saved.sentence()), UserMessages::Stop,
                                   tr("Save File Error"));
        return false;
    }
    gbfModified = false;
    return true;
}

Outcome PenDocument::fileLoadPlot(const QString& sFileName)
{
    if (Outcome loaded = GraphFile::PEloadfromfile(m_graph, sFileName); !loaded)
        return loaded;
    gcolZooms.RemoveStoredZooms(0);
    const QPointer<PenDocument> self(this);
    m_context.host.processEvents();
    if (!self)
        return closedMeanwhile();
    graphUpdateStyle();
    m_context.host.UpdateQuickFileList(sFileName);
    InitialiseSettings(sFileName, sFileName);
    if (!self)
        return closedMeanwhile();

    m_graph.setWorkingTable(kFormatTable);
    if (m_graph.TAColumns() != 2) {
        m_graph.setTARows(1);
        m_graph.setTAColumns(2);
        m_graph.setTAText(0, 0, kCurrentFormat);
    }
    const QString format = m_graph.TAText(0, 0);
    giDocumentVersion = values::roundToInt16(values::tolerantNumber(format));
    m_viewOnly = format != kCurrentFormat;
    m_graph.setWorkingTable(kMaskTable);
    if (m_viewOnly) {
        for (const int item :
             {PopupViewOptions, PopupAddText, PopupAnalysis, PopupView, PopupPhase, PopupCut, PopupCopy, PopupExport}) {
            if (m_graph.CustomMenuState(item, 0) != graph::MenuHidden)
                m_graph.setCustomMenuState(item, 0, graph::MenuGreyed);
        }
    }
    return Outcome::success();
}

bool PenDocument::QueryClose()
{
    if (!m_context.state.gbfSuppressPrompts && !gbfClosing)
        return false;
    const QPointer<PenDocument> self(this);
    if (m_context.state.gbfPlotting && m_context.host.QuestionTestCancel())
        return false;
    if (!self)
        return false;

    int reply = UserMessages::ReplyNo;
    if (gbfModified && giDocumentVersion <= 1) {
        reply = m_context.messages.message(tr("Save before closing %1?").arg(m_caption),
                                           UserMessages::YesNoCancel | UserMessages::Question, tr("Save Document"));
        if (!self)
            return false;
    }
    switch (reply) {
    case UserMessages::ReplyYes:
        // What could not be saved stays open.
        if (!fileSave(false, false) || !self)
            return false;
        break;
    case UserMessages::ReplyNo:
        break;
    case UserMessages::ReplyCancel:
        return false;
    default:
        m_context.messages.message(tr("Error in form unload"), UserMessages::Stop, tr("Save File Error"));
        return false;
    }
    DocumentHost& host = m_context.host;
    host.removeDocument(gstrKey);
    host.defaultToolBars();
    return true;
}
