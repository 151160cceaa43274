// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/FrequencyEdit.h"

#include "link/rules/SettingsRules.h"
#include "values/Conversions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QToolTip>

namespace {

QString typedFrequency(const QString& text)
{
    QString passed;
    for (const QChar character : text) {
        if (const int key = settingsrules::FilterFrequencyKey(character.unicode()); key >= ' ')
            passed += QChar(key);
    }
    return passed;
}

} // namespace

FrequencyEdit::FrequencyEdit(int lowest, QWidget* parent)
    : QLineEdit(parent)
    , m_lowest(lowest)
{}

void FrequencyEdit::showFrequency(const QString& text)
{
    m_inForce = text;
    setText(text);
}

void FrequencyEdit::showFrequency(double hertz)
{
    showFrequency(values::decimalText(hertz));
}

QString FrequencyEdit::frequencyText() const
{
    return hertz() ? text() : m_inForce;
}

std::optional<std::int32_t> FrequencyEdit::hertz() const
{
    const std::optional<std::int32_t> meant = settingsrules::wholeHertz(text());
    return meant && *meant >= m_lowest ? meant : std::nullopt;
}

std::optional<std::int32_t> FrequencyEdit::take()
{
    const std::optional<std::int32_t> meant = hertz();
    if (meant) {
        m_inForce = text();
    } else {
        const QString refused = text();
        setText(m_inForce);
        selectAll();
        tell(refused);
    }
    return meant;
}

void FrequencyEdit::tell(const QString& refused)
{
    QToolTip::showText(mapToGlobal(rect().bottomLeft()), tr("\"%1\" is no frequency.").arg(refused.toHtmlEscaped()),
                       this);
}

void FrequencyEdit::pasteFrequency()
{
    const QString text = QGuiApplication::clipboard()->text();
    if (const std::optional<QString> frequency = settingsrules::filteredFrequency(text))
        insert(*frequency);
    else
        tell(text.left(maxLength()));
}

void FrequencyEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        Q_EMIT entered();
        return;
    }
    if (event->matches(QKeySequence::Paste)) {
        pasteFrequency();
        return;
    }
    const QString typed = event->text();
    if (typed.isEmpty() || !typed.at(0).isPrint()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    insert(typedFrequency(typed));
    event->accept();
}

void FrequencyEdit::inputMethodEvent(QInputMethodEvent* event)
{
    event->setCommitString(typedFrequency(event->commitString()), event->replacementStart(),
                           event->replacementLength());
    QLineEdit::inputMethodEvent(event);
}
