// SPDX-License-Identifier: GPL-3.0-or-later
// Clipboard, saving, loading and closing.
#include "controls/graph/GraphFile.h"
#include "document/ActiveDocument.h"
#include "document/ClipboardPort.h"
#include "document/FilePicker.h"
#include "document/PenDocument.h"
#include "document/PlotFile.h"
#include "document/PlotFileNames.h"
#include "document/VersionText.h"
#include "document/content/GraphTexts.h"
#include "document/content/PenTransfer.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"
#include "program/Questions.h"
#include "program/UserMessages.h"
#include "program/Version.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QDate>
#include <QLocale>
#include <QPointer>

using namespace graphtexts;

namespace {

constexpr QLatin1String kLineEnd("\r\n");
constexpr QLatin1Char kTab('\t');

Outcome closedMeanwhile()
{
    return Outcome::failure(PenDocument::tr("The document was closed while its file was read."));
}

} // namespace

// Clipboard -----------------------------------------------------------------------------------------------------------

QString PenDocument::CopyLineData(int intSubset)
{
    if (!Pens::isPen(intSubset))
        return QString();
    QString grid = pentransfer::copied(m_graph, intSubset, pgiTestType());
    if (m_context.clipboard != nullptr)
        m_context.clipboard->setText(grid);
    const QPointer<PenDocument> self(this);
    QCoreApplication::processEvents();
    if (self)
        SniffClipboardData();
    return grid;
}

void PenDocument::PasteLineData(int intSubset, const QString& strLineData)
{
    if (!Pens::isPen(intSubset))
        return;
    if (m_pens.isLocked(intSubset)) {
        m_context.messages.message(tr("Unlock pen before paste"), UserMessages::Exclamation, tr("Data Paste"));
        return;
    }
    graphEraseLine(intSubset);
    const pentransfer::Pasted pasted = pentransfer::paste(m_graph, m_pens, intSubset, strLineData, pgiTestType());
    if (pasted.points > 0 && m_pens.isHidden(intSubset))
        UpdatePenHide(intSubset, false);
    if (pasted.phaseLost) {
        const QPointer<PenDocument> self(this);
        m_context.messages.message(tr("Cannot convert without phase data"), UserMessages::Exclamation,
                                   tr("Paste error"));
        if (!self)
            return;
    }
    SetModified();
    m_graph.PEactions(graph::Reinitialise);
    UpdateToolBars();
    Q_EMIT dataChanged(intSubset);
}

bool PenDocument::SniffClipboardData()
{
    m_canPaste = m_context.clipboard != nullptr && pentransfer::canPaste(m_context.clipboard->text(), pgiTestType());
    m_popup.showPaste(m_canPaste);
    Q_EMIT canPasteChanged(m_canPaste);
    return m_canPaste;
}

QString PenDocument::ExportToStringRows()
{
    const QPointer<PenDocument> self(this);
    QString grid = m_graph.MainTitle() + kLineEnd;
    for (int subset = 0; subset < kPens; ++subset) {
        grid += m_graph.SubsetLabels(subset);
        for (int point = 0; point < m_graph.Points(); ++point) {
            grid += kTab;
            grid += values::decimalText(m_graph.YData(subset, point));
            QCoreApplication::processEvents();
            if (!self)
                return QString();
        }
        grid += kLineEnd;
    }
    return grid;
}

QString PenDocument::ExportToStringColumns() const
{
    QString grid = m_graph.MainTitle() + kLineEnd + m_graph.XAxisLabel();
    for (int subset = 0; subset < m_graph.Subsets(); ++subset) {
        grid += kTab;
        grid += m_graph.SubsetLabels(subset);
    }
    grid += kLineEnd;
    for (int point = 0; point < m_graph.Points() && m_graph.XData(0, point) != 0.0F; ++point) {
        grid += values::decimalText(m_graph.XData(0, point));
        for (int subset = 0; subset < m_graph.Subsets(); ++subset) {
            grid += kTab;
            grid += values::decimalText(m_graph.YData(subset, point));
        }
        grid += kLineEnd;
    }
    return grid;
}

// Saving --------------------------------------------------------------------------------------------------------------

QString PenDocument::GetVersion() const
{
    return VersionText::programVersion(m_graph.TXAxisLabel());
}

QString PenDocument::SetVersion() const
{
    return VersionText::next(m_graph.TXAxisLabel(), version::titled(version::programTitle()),
                             m_context.source.instrument(),
                             QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
}

bool PenDocument::askFileName(QString& sFile)
{
    if (m_context.filePicker == nullptr)
        return false;
    QString folder = m_context.preferences.value(options::kPlotFiles.option);
    if (folder.isEmpty())
        folder = QCoreApplication::applicationDirPath();
    const QString name = PlotFileNames::proposed(m_graph.MainTitle() == kNoTitle ? m_caption : m_graph.MainTitle());
    const QString picked =
        m_context.filePicker->saveFileName(tr("Save As"), PlotFileNames::saveFilter(pgiTestType()), folder, name);
    if (picked.isEmpty())
        return false;
    sFile = picked;
    return true;
}

bool PenDocument::mayWrite(const QString& asked, bool bfAs, bool bfOverwrite)
{
    const QPointer<PenDocument> self(this);
    const QString target = PlotFileNames::completed(asked, pgiTestType());
    if (PlotFileNames::isCutInFolder(asked)) {
        const int reply = m_context.messages.message(
            tr("The name of a plot ends at its first dot, and a folder's name holds one here.\n"
               "The plot would be saved as \"%1\". Save it there?")
                .arg(target),
            UserMessages::YesNo | UserMessages::Question, tr("Save As"));
        if (!self || reply != UserMessages::ReplyYes)
            return false;
    }
    if (bfOverwrite || (!bfAs && PlotFileNames::sameFile(target, m_ownFile)))
        return true;
    return questions::QuestionOverwriteFile(target, m_context.messages) && self;
}

bool PenDocument::fileSave(bool bfAs, bool bfOverwrite)
{
    const QPointer<PenDocument> self(this);
    if (m_fileName.isEmpty())
        bfAs = true;
    QString name = m_fileName;
    if (bfAs && (!askFileName(name) || !self))
        return false;
    if (!mayWrite(name, bfAs, bfOverwrite))
        return false;
    const QString before = m_fileName;
    m_fileName = name;
    m_pens.storeLocks();
    // The settings string is made but not kept: plots never carried it.
    static_cast<void>(m_testSettings.SaveToString());
    const bool saved = fileSavePlot(m_fileName);
    if (!self)
        return false;
    if (!saved) {
        m_fileName = before;
        return false;
    }
    Q_EMIT fileUsed(m_fileName);
    if (!self)
        return false;
    if (bfAs)
        setCaption(m_fileName);
    setModified(false);
    return true;
}

bool PenDocument::fileSavePlot(QString& sFileName)
{
    m_fileName = sFileName;
    sFileName = PlotFileNames::completed(sFileName, pgiTestType());
    const QString target = sFileName;
    const QString versionText = SetVersion();
    // The active document shows the test information, whichever is saved.
    if (PenDocument* active = m_context.active.get(); active != nullptr && active != this)
        plotfile::showVersionInSubTitle(active->m_graph);
    else if (active == this && !m_graph.SubTitle().isEmpty())
        m_graph.setSubTitle(VersionText::subTitle(versionText).value_or(m_graph.SubTitle()));
    if (const Outcome saved = plotfile::save(m_graph, target, versionText); !saved) {
        m_context.messages.message(tr("The plot is not saved. %1").arg(saved.sentence()), UserMessages::Stop,
                                   tr("Save File Error"));
        return false;
    }
    m_ownFile = target;
    setModified(false);
    return true;
}

Outcome PenDocument::fileLoadPlot(const QString& sFileName)
{
    if (m_modified)
        Q_EMIT aboutToErase(-1);
    if (Outcome loaded = GraphFile::PEloadfromfile(m_graph, sFileName); !loaded)
        return loaded;
    m_ownFile = sFileName;
    return showLoaded(sFileName, sFileName);
}

QByteArray PenDocument::plotBytes()
{
    m_pens.storeLocks();
    return GraphFile::PEstore(m_graph);
}

Outcome PenDocument::restorePlot(const QByteArray& plot, const QString& sCaption)
{
    if (m_modified)
        Q_EMIT aboutToErase(-1);
    if (Outcome loaded = GraphFile::PEload(m_graph, plot); !loaded)
        return loaded;
    m_ownFile.clear();
    const QPointer<PenDocument> self(this);
    Outcome shown = showLoaded(sCaption, QString());
    if (self && shown)
        SetModified();
    return shown;
}

Outcome PenDocument::showLoaded(const QString& caption, const QString& file)
{
    forgetZooms();
    forgetCursor(-1);
    const QPointer<PenDocument> self(this);
    QCoreApplication::processEvents();
    if (!self)
        return closedMeanwhile();
    graphUpdateStyle();
    if (!file.isEmpty())
        Q_EMIT fileUsed(file);
    if (!self)
        return closedMeanwhile();
    InitialiseSettings(caption, file);
    if (!self)
        return closedMeanwhile();

    readFormat();
    UpdateToolBars();
    Q_EMIT dataChanged(-1);
    return Outcome::success();
}

void PenDocument::readFormat()
{
    const plotfile::Format format = plotfile::readFormat(m_graph);
    m_version = format.number;
    m_viewOnly = !format.current;
    if (m_viewOnly)
        m_popup.limitToViewing();
}

bool PenDocument::QueryClose()
{
    const QPointer<PenDocument> self(this);
    int reply = UserMessages::ReplyNo;
    if (m_modified && m_version <= 1 && !m_closesUnasked) {
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
    Q_EMIT aboutToClose(m_modified);
    Q_EMIT closed();
    return true;
}
