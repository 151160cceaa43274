// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/FrequencyEdit.h"

#include "link/SettingsRules.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>

namespace {

QString filtered(const QString& text)
{
    QString passed;
    for (const QChar character : text) {
        if (const int key = settingsrules::FilterFrequencyKey(character.unicode()); key >= ' ')
            passed += QChar(key);
    }
    return passed;
}

} // namespace

void FrequencyEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        Q_EMIT entered();
        return;
    }
    if (event->matches(QKeySequence::Paste)) {
        insert(filtered(QGuiApplication::clipboard()->text()));
        return;
    }
    const QString typed = event->text();
    if (typed.isEmpty() || !typed.at(0).isPrint()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    insert(filtered(typed));
    event->accept();
}

void FrequencyEdit::inputMethodEvent(QInputMethodEvent* event)
{
    event->setCommitString(filtered(event->commitString()), event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(event);
}
