// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentList.h"

#include <QMdiArea>

class frmDocument;

/// The inside of the main window: the windows of the open documents.
class DocumentArea : public QMdiArea, public DocumentWindows
{
    Q_OBJECT

public:
    explicit DocumentArea(const DocumentContext& context, QWidget* parent = nullptr);

    PenDocument* createDocument() override;
    void showDocument(PenDocument& document) override;
    bool unloadDocument(PenDocument& document) override;

    /// The document whose window is active, or was last when the focus is outside the area; null when none is open.
    PenDocument* activeDocument() const;
    frmDocument* windowOf(const PenDocument& document) const;

    /// Side by side, and one above the other; minimised windows stay as they are.
    void tileVertically();
    void tileHorizontally();

Q_SIGNALS:
    /// Another document is active now; null when the last one has gone.
    void documentActivated(PenDocument* document);
    /// An entry of a document's popup that belongs to the main window (PenDocument::PopupItem).
    void popupCommand(PenDocument* document, int item, int sub);
    /// Texts for the cursor read-out.
    void cursorRead(const QString& xText, const QString& yText);
    /// A window's close box was used.
    void closeWanted(PenDocument* document);
    /// A sweep was stopped because the user turned to another document.
    void sweepAbandoned();

private:
    QList<frmDocument*> visibleDocuments() const;
    void windowActivated(QMdiSubWindow* window);
    void tile(Qt::Orientation direction);

    DocumentContext m_context;
    QPointer<frmDocument> m_active;
};
