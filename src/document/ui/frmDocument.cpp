// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmDocument.h"

#include "controls/graph/ui/GraphView.h"
#include "program/ProgramState.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>

frmDocument::frmDocument(const DocumentContext& context, const ProgramState& state, QWidget* parent)
    : QMdiSubWindow(parent)
    , m_state(state)
    , m_document(context)
    , m_view(new GraphView(m_document.peGraph(), this))
{
    setObjectName(QStringLiteral("frmDocument"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    m_view->setObjectName(QStringLiteral("peGraph"));
    m_view->setFocusPolicy(Qt::StrongFocus);
    m_view->installEventFilter(this);
    setWidget(m_view);
    setFocusProxy(m_view);
    // The main window's File Close has the other key; two owners would leave it to none.
    const auto entries = systemMenu()->actions();
    for (QAction* entry : entries) {
        if (entry->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_W)))
            entry->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F4));
    }
    connect(&m_document, &PenDocument::captionChanged, this, &QWidget::setWindowTitle);
}

frmDocument::~frmDocument()
{
    // The view reads the document's graph while it is taken down, and members go before child widgets do.
    delete m_view;
}

bool frmDocument::unload()
{
    if (m_unloading)
        return true;
    const QPointer<frmDocument> self(this);
    const bool agreed = m_document.QueryClose();
    if (!self)
        return true;
    if (!agreed)
        return false;
    m_unloading = true;
    close();
    deleteLater();
    return true;
}

void frmDocument::closeEvent(QCloseEvent* event)
{
    if (m_unloading) {
        QMdiSubWindow::closeEvent(event);
        return;
    }
    event->ignore();
    Q_EMIT closeWanted();
}

bool frmDocument::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_view && event->type() == QEvent::KeyPress && takeKey(static_cast<QKeyEvent&>(*event)))
        return true;
    return QMdiSubWindow::eventFilter(watched, event);
}

bool frmDocument::takeKey(QKeyEvent& event)
{
    // The tenth function key is swallowed: some desktops would open the menu with it in the middle of a measurement.
    if (event.key() == Qt::Key_F10 && event.modifiers() == Qt::NoModifier)
        return true;
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const QString text = event.text();
    if (text.size() != 1)
        return false;
    const QChar key = text.front();
    if (!key.isDigit() && key.toLower() != QLatin1Char('l') && key.toLower() != QLatin1Char('v'))
        return false;
    // The keys of a test in progress are swallowed: the pen that is measured stays the pen.
    if (!m_state.gbfPlotting)
        m_document.KeyPressed(key);
    return true;
}
