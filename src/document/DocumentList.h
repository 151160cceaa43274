// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentContext.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <vector>

class PenDocument;
struct ProgramState;

/// What the list needs of the windows around its documents.
class DocumentWindows
{
public:
    virtual ~DocumentWindows() = default;

    /// A new empty document, or null when there is no room for one. The windows own it.
    virtual PenDocument* createDocument() = 0;
    /// The document's graph becomes visible and takes the focus.
    virtual void showDocument(PenDocument& document) = 0;
    /// Closes the document by the rule of PenDocument::QueryClose() and destroys it; false when it stays open.
    virtual bool unloadDocument(PenDocument& document) = 0;
    /// The same as if every question were answered with No; nothing keeps it open, a running test neither.
    virtual void discardDocument(PenDocument& document) = 0;
};

/// gcolDocuments: the open documents in the order of their creation, each under its key. Indices count from 1; 0 is
/// none. Documents that die without having been removed count no more.
class DocumentList : public QObject
{
    Q_OBJECT

public:
    /// All of it outlives the list.
    DocumentList(const DocumentContext& context, const ProgramState& state, DocumentWindows& windows);

    std::int32_t giDocumentCounter = 0; ///< running number of documents
    /// Documents are being closed in bulk or discarded.
    bool gbfSuppressPrompts() const { return m_suppressPrompts; }

    /// A new document with a graph for state.giNewDocType, not yet shown; null, after a message, when there is no room.
    PenDocument* LoadNewDoc();
    /// A new document for a file to be loaded into.
    PenDocument* LoadNewCleanDoc();
    /// Opens a plot file; one that is open is read again if the user agrees. False when nothing was loaded; a message
    /// has told why. A document made for a failed load is gone again, an open one is as it was.
    bool LoadExistingDocument(const QString& strFileName);
    /// Close All: from the last to the first, until one refuses. True when none is left; numbers start at 1 again then.
    bool CloseAll();
    /// The same without a question, as if each were answered with No.
    void discardAll();

    int count() const;
    PenDocument* at(int index) const;
    PenDocument* find(const QString& strKey) const;
    /// The document that shows this file.
    PenDocument* findFile(const QString& strFileName) const;
    int indexOf(const PenDocument* document) const;
    /// Place of the active document.
    int GetCurrentDocumentIndex() const;
    /// The document behind or before the active one, wrapping round; null with fewer than two documents or none active.
    PenDocument* nextDocument() const;
    PenDocument* previousDocument() const;
    void remove(const QString& strKey);

Q_SIGNALS:
    /// A document is on the list now; its graph is not set up or loaded yet.
    void added(PenDocument* document);

private:
    PenDocument* create();
    std::vector<PenDocument*> living() const;

    DocumentContext m_context;
    const ProgramState& m_state;
    DocumentWindows& m_windows;
    std::vector<QPointer<PenDocument>> m_documents;
    bool m_suppressPrompts = false;
};
