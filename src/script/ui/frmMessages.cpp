// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ui/frmMessages.h"

#include "script/ScriptPorts.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

/// Carets stand below their letters: where the desktop names no such font, any will do.
QFont monospaced()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    if (!QFontInfo(font).fixedPitch())
        font.setFamily(QStringLiteral("monospace"));
    return font;
}

} // namespace

frmMessages::frmMessages(ScriptChecker& checker, QWidget* parent)
    : QDialog(parent)
    , txtMessages(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("frmMessages"));
    setWindowTitle(tr("Script error and warning messages"));

    QString buffer(ScriptChecker::kLongestMessages, u' ');
    checker.GetMessages(ScriptChecker::kLongestMessages, buffer);
    txtMessages->setObjectName(QStringLiteral("txtMessages"));
    txtMessages->setAccessibleName(tr("Errors and warnings"));
    txtMessages->setFont(monospaced());
    txtMessages->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtMessages->setReadOnly(true);
    txtMessages->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtMessages->setPlainText(buffer);

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* const cmdCopy = buttons->addButton(tr("C&opy"), QDialogButtonBox::ActionRole);
    cmdCopy->setObjectName(QStringLiteral("cmdCopy"));
    cmdCopy->setAutoDefault(false);
    QPushButton* const cmdClose = buttons->button(QDialogButtonBox::Close);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    cmdClose->setDefault(true);
    connect(cmdCopy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(txtMessages->toPlainText()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const column = new QVBoxLayout(this);
    column->addWidget(txtMessages);
    column->addWidget(buttons);
    const QFontMetrics letters(txtMessages->font());
    resize(letters.averageCharWidth() * 100, letters.height() * 28);
    txtMessages->setFocus();
}
