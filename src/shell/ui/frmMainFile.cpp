// SPDX-License-Identifier: GPL-3.0-or-later
// The File and Window commands of the main window and what its documents ask of it.
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/PlotFileNames.h"
#include "document/QuickFileList.h"
#include "document/ui/DocumentArea.h"
#include "document/ui/frmDocument.h"
#include "document/ui/frmOptionsTestType.h"
#include "instrument/InstrumentMirror.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "shell/ui/Commands.h"
#include "shell/ui/FileDialogs.h"
#include "shell/ui/StatusBar.h"
#include "shell/ui/frmMain.h"

#include <QFileInfo>
#include <QMenu>

namespace {

constexpr int kInformation = UserMessages::OkOnly | UserMessages::Information;

} // namespace

PenDocument* frmMain::activeDocument() const
{
    return m_area->activeDocument();
}

bool frmMain::formatAllows(const PenDocument& document, const QString& strTitle)
{
    if (document.giDocumentVersion() <= 1)
        return true;
    showMessage(tr("New data format. Please check for updates."), kInformation, strTitle);
    return false;
}

void frmMain::mnuFileNew_Click()
{
    ProgramState& state = m_context.state;
    if (state.gbfPlotting && QuestionTestCancel())
        return;
    const QPointer<frmMain> self(this);
    const InstrumentMirror& mirror = m_context.mirror;
    if (mirror.bfAmplitudeTest && !mirror.bfImpedanceTest) {
        state.giNewDocType = PenDocument::Amplitude;
    } else if (mirror.bfImpedanceTest && !mirror.bfAmplitudeTest) {
        state.giNewDocType = PenDocument::Impedance;
    } else {
        const QPointer<frmOptionsTestType> dialog = new frmOptionsTestType(state, m_context.preferences, this);
        dialog->exec();
        delete dialog;
    }
    if (!self)
        return;
    processEvents();
    if (!self || state.giNewDocType == PenDocument::NoTest)
        return;
    const QPointer<PenDocument> document = m_documents->LoadNewDoc();
    if (!self || !document)
        return;
    document->gbfSendZoom = true;
    document->graphSetDefaultView();
    m_area->showDocument(*document);
}

void frmMain::mnuFileOpen_Click()
{
    if (m_context.state.gbfPlotting && QuestionTestCancel())
        return;
    const QPointer<frmMain> self(this);
    const QString folder = m_context.preferences.value(options::kPlotFiles.option);
    const QStringList files = m_fileDialogs->openFileNames(tr("Open Plot file"), PlotFileNames::openFilter(), folder);
    for (const QString& file : files) {
        if (!self)
            return;
        OpenFromCommand(file);
    }
}

void frmMain::fileSave(bool bfAs)
{
    const QPointer<PenDocument> document = activeDocument();
    if (!document || !formatAllows(*document, tr("File save not possible")))
        return;
    if (m_context.state.gbfPlotting && QuestionTestCancel())
        return;
    if (document)
        document->fileSave(bfAs, false);
}

void frmMain::mnuFileSave_Click()
{
    fileSave(false);
}

void frmMain::mnuFileSaveAs_Click()
{
    fileSave(true);
}

void frmMain::mnuFileSaveAll_Click()
{
    if (m_context.state.gbfPlotting && QuestionTestCancel())
        return;
    const QPointer<frmMain> self(this);
    QList<QPointer<PenDocument>> documents;
    for (int i = 1; i <= m_documents->count(); ++i)
        documents.append(m_documents->at(i));
    for (const QPointer<PenDocument>& document : documents) {
        if (document && document->gbfModified() && formatAllows(*document, tr("File save not possible")))
            document->fileSave(false, false);
        if (!self)
            return;
    }
}

void frmMain::mnuFileClose_Click()
{
    if (PenDocument* document = activeDocument())
        closeDocument(*document);
}

bool frmMain::closeDocument(PenDocument& document)
{
    return m_area->unloadDocument(document);
}

void frmMain::mnuFileExit_Click()
{
    close();
}

void frmMain::mnuWindowCloseAll_Click()
{
    m_documents->CloseAll();
}

bool frmMain::closeDocumentsForExit()
{
    return m_ending || m_documents->CloseAll();
}

void frmMain::mnuNextDocument_Click()
{
    if (PenDocument* document = m_documents->nextDocument())
        m_area->showDocument(*document);
}

void frmMain::mnuPreviousDocument_Click()
{
    if (PenDocument* document = m_documents->previousDocument())
        m_area->showDocument(*document);
}

void frmMain::mnuWindowTileVertical_Click()
{
    m_area->tileVertically();
}

void frmMain::mnuWindowTileHorizontal_Click()
{
    m_area->tileHorizontally();
}

void frmMain::mnuWindowCascade_Click()
{
    m_area->cascadeSubWindows();
}

void frmMain::UpdateQuickFileList(const QString& strFilePathName)
{
    m_quickFiles->UpdateQuickFileList(strFilePathName);
    rebuildQuickFileMenu();
}

void frmMain::mnuFileMRU_Click(const QString& strFileName)
{
    m_documents->LoadExistingDocument(strFileName);
}

void frmMain::rebuildQuickFileMenu()
{
    QAction& exit = m_commands->action("mnuFileExit");
    for (QAction* action : std::as_const(m_quickFileActions)) {
        m_fileMenu->removeAction(action);
        action->deleteLater();
    }
    m_quickFileActions.clear();
    const QStringList& files = m_quickFiles->entries();
    if (files.isEmpty())
        return;

    QAction* separator = nullptr;
    const auto actions = m_fileMenu->actions();
    const qsizetype place = actions.indexOf(&exit);
    QAction* before = place > 0 && actions[place - 1]->isSeparator() ? actions[place - 1] : &exit;
    separator = m_fileMenu->insertSeparator(before);
    separator->setObjectName(QStringLiteral("mnuFileBar4"));
    m_quickFileActions.append(separator);
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QString file = files[i];
        QString shown = file;
        shown.replace(QLatin1Char('&'), QLatin1String("&&"));
        auto* action = new QAction(QStringLiteral("&%1 %2").arg(i + 1).arg(shown), m_fileMenu);
        action->setObjectName(QStringLiteral("mnuFileMRU_%1").arg(i));
        action->setStatusTip(tr("Open %1").arg(file));
        connect(action, &QAction::triggered, this, [this, file] { mnuFileMRU_Click(file); });
        m_fileMenu->insertAction(before, action);
        m_quickFileActions.append(action);
    }
}

void frmMain::rebuildWindowMenu()
{
    for (QAction* action : std::as_const(m_windowActions)) {
        m_windowMenu->removeAction(action);
        action->deleteLater();
    }
    m_windowActions.clear();
    const PenDocument* active = activeDocument();
    for (int i = 1; i <= m_documents->count(); ++i) {
        const QPointer<PenDocument> document = m_documents->at(i);
        if (!document)
            continue;
        if (m_windowActions.isEmpty())
            m_windowActions.append(m_windowMenu->addSeparator());
        QString caption = document->caption();
        caption.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction* action = m_windowMenu->addAction(i < 10 ? QStringLiteral("&%1 %2").arg(i).arg(caption) : caption);
        action->setObjectName(QStringLiteral("mnuWindowDocument_%1").arg(i));
        action->setCheckable(true);
        action->setChecked(document == active);
        connect(action, &QAction::triggered, this, [this, document] {
            if (document)
                m_area->showDocument(*document);
        });
        m_windowActions.append(action);
    }
}

void frmMain::documentActivated(PenDocument* document)
{
    for (const QMetaObject::Connection& connection : std::as_const(m_activeConnections))
        disconnect(connection);
    m_activeConnections.clear();
    m_statusBar->setPanel(11, {});
    m_statusBar->setPanel(12, {});
    m_commands->setDocumentOpen(document != nullptr);
    if (!document) {
        defaultToolBars();
        return;
    }
    const auto refresh = [this, document] { updateToolBars(*document); };
    m_activeConnections = {connect(document, &PenDocument::pensChanged, this, refresh),
                           connect(document, &PenDocument::viewChanged, this, refresh),
                           connect(document, &PenDocument::zoomChanged, this, refresh),
                           connect(document, &PenDocument::canPasteChanged, this, refresh)};
    document->SniffClipboardData();
    refresh();
}
