// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentList.h"

#include <QMdiArea>

#include <functional>

class frmDocument;
struct ProgramState;

/// The inside of the main window: the windows of the open documents.
class DocumentArea : public QMdiArea, public DocumentWindows
{
    Q_OBJECT

public:
    /// All of it outlives the area, which sets the active document.
    DocumentArea(const DocumentContext& context, const ProgramState& state, ActiveDocument& active,
                 QWidget* parent = nullptr);

    /// Asked before a document closes; the document stays open when the answer is false. Unset: nobody objects.
    std::function<bool()> mayClose;

    PenDocument* createDocument() override;
    void showDocument(PenDocument& document) override;
    bool unloadDocument(PenDocument& document) override;
    void discardDocument(PenDocument& document) override;

    /// The document whose window is active, or was last when the focus is outside the area; null when none is open.
    PenDocument* activeDocument() const;
    frmDocument* windowOf(const PenDocument& document) const;

    /// Whether the graphs of all documents, those to come included, have a box beside the pointer; kept as a
    /// preference.
    void setPointerReadout(bool on);
    bool hasPointerReadout() const;

    /// Side by side, and one above the other; minimised windows stay as they are.
    void tileVertically();
    void tileHorizontally();

Q_SIGNALS:
    /// A document and its window have been made.
    void documentCreated(PenDocument* document);
    /// An entry of a document's popup that belongs to the main window (PenDocument::PopupItem).
    void popupCommand(PenDocument* document, int item, int sub);
    /// Texts for the cursor read-out.
    void cursorRead(const QString& xText, const QString& yText);
    /// A window's close box was used.
    void closeWanted(PenDocument* document);

private:
    QList<frmDocument*> visibleDocuments() const;
    void tile(Qt::Orientation direction);

    DocumentContext m_context;
    const ProgramState& m_state;
    ActiveDocument& m_active;
};
