// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/DocumentArea.h"

#include "controls/graph/ui/GraphView.h"
#include "document/ActiveDocument.h"
#include "document/ui/frmDocument.h"
#include "prefs/Preferences.h"

#include <new>

DocumentArea::DocumentArea(const DocumentContext& context, const ProgramState& state, ActiveDocument& active,
                           QWidget* parent)
    : QMdiArea(parent)
    , m_context(context)
    , m_state(state)
    , m_active(active)
{
    setObjectName(QStringLiteral("documentArea"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setActivationOrder(QMdiArea::ActivationHistoryOrder);
    // Also raised when the program loses the focus, while the document stays the active one.
    connect(this, &QMdiArea::subWindowActivated, this, [this] { m_active.set(activeDocument()); });
}

PenDocument* DocumentArea::createDocument()
{
    // The one failure that a document can meet here is memory: 40 subsets of points and a drawing surface.
    try {
        auto* window = new frmDocument(m_context, m_state, this);
        addSubWindow(window);
        window->hide();
        window->view().setPointerReadout(hasPointerReadout());
        // Told from the loop, when the window may have gone by another way.
        connect(
            window, &frmDocument::closeWanted, this,
            [this, guard = QPointer<frmDocument>(window)] {
                if (guard)
                    Q_EMIT closeWanted(&guard->document());
            },
            Qt::QueuedConnection);
        PenDocument* document = &window->document();
        connect(document, &PenDocument::popupCommand, this,
                [this, document](int item, int sub) { Q_EMIT popupCommand(document, item, sub); });
        connect(document, &PenDocument::cursorRead, this, &DocumentArea::cursorRead);
        Q_EMIT documentCreated(document);
        return document;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void DocumentArea::showDocument(PenDocument& document)
{
    frmDocument* window = windowOf(document);
    if (!window)
        return;
    if (window->isHidden()) {
        const auto others = visibleDocuments();
        const bool full = others.isEmpty() || (currentSubWindow() && currentSubWindow()->isMaximized());
        if (full) {
            window->showMaximized();
        } else {
            window->resize(viewport()->size() * 3 / 4);
            window->show();
        }
    } else if (window->isMinimized()) {
        window->showNormal();
    }
    setActiveSubWindow(window);
    m_active.set(activeDocument());
    window->view().setFocus();
}

bool DocumentArea::unloadDocument(PenDocument& document)
{
    const QPointer<frmDocument> window = windowOf(document);
    if (window && mayClose && !mayClose())
        return false;
    if (!window || !window->unload())
        return !window;
    m_active.set(activeDocument());
    return true;
}

void DocumentArea::discardDocument(PenDocument& document)
{
    document.closeUnasked();
    if (const QPointer<frmDocument> window = windowOf(document)) {
        window->unload();
        m_active.set(activeDocument());
    }
}

PenDocument* DocumentArea::activeDocument() const
{
    auto* window = qobject_cast<frmDocument*>(currentSubWindow());
    return window && !window->isHidden() ? &window->document() : nullptr;
}

frmDocument* DocumentArea::windowOf(const PenDocument& document) const
{
    const auto windows = subWindowList();
    for (QMdiSubWindow* window : windows) {
        auto* candidate = qobject_cast<frmDocument*>(window);
        if (candidate && &candidate->document() == &document)
            return candidate;
    }
    return nullptr;
}

bool DocumentArea::hasPointerReadout() const
{
    return m_context.preferences.value(options::kPointerReadout);
}

void DocumentArea::setPointerReadout(bool on)
{
    m_context.preferences.setValue(options::kPointerReadout, on);
    const auto windows = subWindowList();
    for (QMdiSubWindow* window : windows) {
        if (auto* document = qobject_cast<frmDocument*>(window))
            document->view().setPointerReadout(on);
    }
}

QList<frmDocument*> DocumentArea::visibleDocuments() const
{
    QList<frmDocument*> documents;
    const auto windows = subWindowList(QMdiArea::CreationOrder);
    for (QMdiSubWindow* window : windows) {
        auto* document = qobject_cast<frmDocument*>(window);
        if (document && !document->isHidden())
            documents.append(document);
    }
    return documents;
}

void DocumentArea::tileVertically()
{
    tile(Qt::Horizontal);
}

void DocumentArea::tileHorizontally()
{
    tile(Qt::Vertical);
}

void DocumentArea::tile(Qt::Orientation direction)
{
    QList<frmDocument*> windows = visibleDocuments();
    windows.removeIf([](const frmDocument* window) { return window->isMinimized(); });
    if (windows.isEmpty())
        return;
    for (frmDocument* window : std::as_const(windows)) {
        if (window->isMaximized())
            window->showNormal();
    }
    const QSize area = viewport()->size();
    const qsizetype count = windows.size();
    const auto edge = [count](int length, qsizetype i) { return static_cast<int>(length * i / count); };
    for (qsizetype i = 0; i < count; ++i) {
        if (direction == Qt::Horizontal)
            windows[i]->setGeometry(edge(area.width(), i), 0, edge(area.width(), i + 1) - edge(area.width(), i),
                                    area.height());
        else
            windows[i]->setGeometry(0, edge(area.height(), i), area.width(),
                                    edge(area.height(), i + 1) - edge(area.height(), i));
    }
}
