// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/DocumentsInMemory.h"

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"

#include <QPointer>

#include <algorithm>

DocumentsInMemory::DocumentsInMemory(const DocumentContext& context, ActiveDocument& active)
    : m_context(context)
    , m_active(active)
{}

DocumentsInMemory::~DocumentsInMemory() = default;

PenDocument* DocumentsInMemory::createDocument()
{
    m_documents.insert(m_documents.begin(), std::make_unique<PenDocument>(m_context));
    return m_documents.front().get();
}

void DocumentsInMemory::showDocument(PenDocument& document)
{
    const auto found = std::ranges::find(m_documents, &document, &std::unique_ptr<PenDocument>::get);
    if (found == m_documents.end())
        return;
    std::rotate(found, found + 1, m_documents.end());
    m_active.set(&document);
}

bool DocumentsInMemory::unloadDocument(PenDocument& document)
{
    const QPointer<PenDocument> alive(&document);
    if (!document.QueryClose())
        return !alive;
    remove(document);
    return true;
}

void DocumentsInMemory::discardDocument(PenDocument& document)
{
    document.closeUnasked();
    unloadDocument(document);
}

void DocumentsInMemory::remove(PenDocument& document)
{
    const auto found = std::ranges::find(m_documents, &document, &std::unique_ptr<PenDocument>::get);
    if (found == m_documents.end())
        return;
    // The document may be on the stack of the call that ends it.
    found->release()->deleteLater();
    m_documents.erase(found);
    if (m_active.get() == &document)
        m_active.set(m_documents.empty() ? nullptr : m_documents.back().get());
}
