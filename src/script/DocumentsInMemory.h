// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentList.h"

#include <memory>
#include <vector>

/// The windows of a program without any: documents live in memory, the one shown last is the active one.
class DocumentsInMemory : public DocumentWindows
{
public:
    /// All of it outlives this.
    DocumentsInMemory(const DocumentContext& context, ActiveDocument& active);
    ~DocumentsInMemory() override;

    PenDocument* createDocument() override;
    void showDocument(PenDocument& document) override;
    bool unloadDocument(PenDocument& document) override;
    void discardDocument(PenDocument& document) override;

private:
    void remove(PenDocument& document);

    DocumentContext m_context;
    ActiveDocument& m_active;
    /// In the order in which they were shown, the active one last; those never shown come first.
    std::vector<std::unique_ptr<PenDocument>> m_documents;
};
