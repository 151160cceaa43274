// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/NumberEdit.h"

#include "widgets/ui/PlainTip.h"

#include <QKeyEvent>
#include <QToolTip>

NumberEdit::NumberEdit(keyfilter::Filter filter, QWidget* parent)
    : QLineEdit(parent)
    , m_filter(filter)
{
    connect(this, &QLineEdit::textEdited, this, &NumberEdit::filterText);
}

void NumberEdit::filterText()
{
    const QString typed = text();
    const QString kept = keyfilter::filtered(typed, m_filter);
    if (kept == typed)
        return;
    const QString before = keyfilter::filtered(typed.left(cursorPosition()), m_filter);
    setText(kept);
    setModified(true);
    setCursorPosition(static_cast<int>(before.size()));
}

void NumberEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    Q_EMIT entered();
}

void NumberEdit::refuse(const QString& sentence)
{
    QToolTip::showText(mapToGlobal(QPoint(0, height())), plainTip(sentence), this);
}
