// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentList.h"

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "document/PlotFileNames.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace {

/// Information with Yes and No.
constexpr int kAskReload = UserMessages::Information | UserMessages::YesNo;

} // namespace

DocumentList::DocumentList(const DocumentContext& context, const ProgramState& state, DocumentWindows& windows)
    : m_context(context)
    , m_state(state)
    , m_windows(windows)
{}

std::vector<PenDocument*> DocumentList::living() const
{
    std::vector<PenDocument*> documents;
    for (const auto& document : m_documents) {
        if (document)
            documents.push_back(document);
    }
    return documents;
}

PenDocument* DocumentList::create()
{
    const std::int32_t number = ++giDocumentCounter;
    const QPointer<PenDocument> document(m_windows.createDocument());
    if (document) {
        document->gstrKey = QStringLiteral("Doc%1").arg(number);
        document->setCaption(tr("Document %1").arg(number));
        connect(document, &PenDocument::closed, this, [this, key = document->gstrKey] { remove(key); });
        QCoreApplication::processEvents();
    }
    if (!document) {
        m_context.messages.message(tr("Please close some document windows and try again"), UserMessages::Information,
                                   tr("Out of memory!"));
        return nullptr;
    }
    return document;
}

PenDocument* DocumentList::LoadNewDoc()
{
    const QPointer<PenDocument> document(create());
    if (!document)
        return nullptr;
    m_documents.emplace_back(document);
    Q_EMIT added(document);
    document->PrepareNew(m_state.giNewDocType, document->caption());
    return document;
}

PenDocument* DocumentList::LoadNewCleanDoc()
{
    PenDocument* document = create();
    if (document != nullptr) {
        m_documents.emplace_back(document);
        Q_EMIT added(document);
    }
    return document;
}

bool DocumentList::LoadExistingDocument(const QString& strFileName)
{
    if (!QFileInfo::exists(strFileName)) {
        m_context.messages.message(tr("File not found %1").arg(strFileName), UserMessages::Information,
                                   tr("Open Error"));
        return false;
    }
    QPointer<PenDocument> document(findFile(strFileName));
    const bool reload = document != nullptr;
    if (reload) {
        const int reply =
            m_context.messages.message(tr("Do you want to reload the file?"), kAskReload, tr("File already open"));
        if (reply != UserMessages::ReplyYes || !document)
            return false;
    } else {
        document = LoadNewCleanDoc();
        if (!document)
            return false;
    }

    // The quick file list outlives the folder that the program was started in.
    if (const Outcome loaded = document->fileLoadPlot(QFileInfo(strFileName).absoluteFilePath()); !loaded) {
        // An open document keeps what it shows; one made for this file goes again.
        if (document && !reload) {
            document->setModified(false);
            m_suppressPrompts = true;
            const QString key = document->gstrKey;
            m_windows.unloadDocument(*document);
            m_suppressPrompts = false;
            remove(key);
        }
        m_context.messages.message(tr("File of unknown data format") + QLatin1Char('\n') + loaded.sentence(),
                                   UserMessages::Stop, tr("File Load Error"));
        return false;
    }
    if (!document)
        return false;
    m_windows.showDocument(*document);
    if (document && document->isViewOnly())
        m_context.messages.message(tr("You may only view this document"), UserMessages::Information,
                                   tr("This document is of a different format"));
    return true;
}

bool DocumentList::CloseAll()
{
    m_suppressPrompts = true;
    for (int index = count(); index > 0; index = std::min(index - 1, count())) {
        PenDocument* document = at(index);
        const QString key = document->gstrKey;
        if (!m_windows.unloadDocument(*document))
            break;
        remove(key);
    }
    m_suppressPrompts = false;
    if (count() > 0)
        return false;
    giDocumentCounter = 0;
    return true;
}

void DocumentList::discardAll()
{
    m_suppressPrompts = true;
    while (count() > 0) {
        PenDocument* document = at(count());
        const QString key = document->gstrKey;
        m_windows.discardDocument(*document);
        remove(key);
    }
    m_suppressPrompts = false;
    giDocumentCounter = 0;
}

int DocumentList::count() const
{
    return static_cast<int>(living().size());
}

PenDocument* DocumentList::at(int index) const
{
    const auto documents = living();
    return index >= 1 && index <= static_cast<int>(documents.size()) ? documents[static_cast<std::size_t>(index) - 1]
                                                                     : nullptr;
}

PenDocument* DocumentList::find(const QString& strKey) const
{
    for (PenDocument* document : living()) {
        if (document->gstrKey == strKey)
            return document;
    }
    return nullptr;
}

PenDocument* DocumentList::findFile(const QString& strFileName) const
{
    for (PenDocument* document : living()) {
        const QString& name = document->GetFileName();
        if (!name.isEmpty() &&
            (PlotFileNames::sameFile(name, strFileName) ||
             PlotFileNames::sameFile(PlotFileNames::completed(name, document->pgiTestType()), strFileName)))
            return document;
    }
    return nullptr;
}

int DocumentList::indexOf(const PenDocument* document) const
{
    if (document == nullptr)
        return 0;
    const auto documents = living();
    for (std::size_t index = documents.size(); index > 0; --index) {
        if (documents[index - 1]->gstrKey == document->gstrKey)
            return static_cast<int>(index);
    }
    return 0;
}

int DocumentList::GetCurrentDocumentIndex() const
{
    return indexOf(m_context.active.get());
}

PenDocument* DocumentList::nextDocument() const
{
    const int index = GetCurrentDocumentIndex();
    if (count() < 2 || index == 0)
        return nullptr;
    return at(index + 1 > count() ? 1 : index + 1);
}

PenDocument* DocumentList::previousDocument() const
{
    const int index = GetCurrentDocumentIndex();
    if (count() < 2 || index == 0)
        return nullptr;
    return at(index < 2 ? count() : index - 1);
}

void DocumentList::remove(const QString& strKey)
{
    std::erase_if(m_documents, [&strKey](const auto& document) { return !document || document->gstrKey == strKey; });
}
