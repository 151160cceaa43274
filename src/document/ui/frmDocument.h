// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentContext.h"
#include "document/PenDocument.h"

#include <QMdiSubWindow>

class GraphView;
struct ProgramState;

/// The window over one graph document. It owns the document and its view.
///
/// Its own close box, and any close that the main window did not start, is refused; closeWanted() asks the main window
/// to close the document by its File Close instead. Keys go to the window before they go to the graph: digits choose
/// the pen, L locks it, V hides it.
class frmDocument : public QMdiSubWindow
{
    Q_OBJECT

public:
    frmDocument(const DocumentContext& context, const ProgramState& state, QWidget* parent = nullptr);
    ~frmDocument() override;

    PenDocument& document() { return m_document; }
    const PenDocument& document() const { return m_document; }
    GraphView& view() const { return *m_view; }

    /// Closes by the document's rule: its question is asked, it leaves the list, and the window is destroyed as soon as
    /// control is back in the event loop. False: the document stays open.
    bool unload();

Q_SIGNALS:
    void closeWanted();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool takeKey(QKeyEvent& event);

    const ProgramState& m_state;
    PenDocument m_document;
    GraphView* m_view;
    bool m_unloading = false;
};
