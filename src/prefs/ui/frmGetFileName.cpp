// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/frmGetFileName.h"

#include "program/UserMessages.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QWindow>

#include <algorithm>

frmGetFileName::frmGetFileName(UserMessages& messages, QWidget* parent)
    : QDialog(parent)
    , m_messages(messages)
    , txtFileName(new QLineEdit(this))
    , btnOK(new QPushButton(tr("OK"), this))
{
    setObjectName(QStringLiteral("frmGetFileName"));
    txtFileName->setObjectName(QStringLiteral("txtFileName"));
    txtFileName->setAccessibleName(tr("File name"));
    txtFileName->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    txtFileName->installEventFilter(this);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setDefault(true);
    auto* const row = new QHBoxLayout(this);
    row->addWidget(txtFileName);
    row->addWidget(btnOK);
    connect(txtFileName, &QLineEdit::textEdited, this, &frmGetFileName::txtFileName_Edited);
    connect(btnOK, &QPushButton::clicked, this, &frmGetFileName::accept);
}

bool frmGetFileName::isForbidden(QChar c)
{
    return QStringView(u"\"*/:<>?\\|").contains(c);
}

QString frmGetFileName::Dialog(QWidget* objOwner, const QString& strCaption)
{
    m_messages.dismiss();
    setWindowTitle(strCaption);
    txtFileName->setAccessibleDescription(strCaption);
    ensurePolished();
    adjustSize();
    if (objOwner != nullptr) {
        // The owner of the moment is above in the stack of windows, but does not own this object.
        winId();
        windowHandle()->setTransientParent(objOwner->window()->windowHandle());
        const QRect owner = objOwner->window()->frameGeometry();
        move(owner.left() + (owner.width() - width()) / 2, owner.top() + (owner.height() - height()) / 2);
    }
    txtFileName->setFocus();
    txtFileName->selectAll();
    const QPointer<frmGetFileName> alive(this);
    exec();
    return alive.isNull() ? QString() : txtFileName->text();
}

void frmGetFileName::clearFileName()
{
    txtFileName->clear();
}

void frmGetFileName::reject()
{
    clearFileName();
    QDialog::reject();
}

bool frmGetFileName::eventFilter(QObject* watched, QEvent* event)
{
    // A forbidden key is as if it had not been pressed: it does not even replace a selection.
    if (watched == txtFileName && event->type() == QEvent::KeyPress) {
        const QString text = static_cast<QKeyEvent*>(event)->text();
        if (std::any_of(text.begin(), text.end(), isForbidden))
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmGetFileName::txtFileName_Edited()
{
    // What came by paste, drop or an input method.
    QString text = txtFileName->text();
    const auto cursor = txtFileName->cursorPosition();
    const auto before = std::count_if(text.begin(), text.begin() + cursor, isForbidden);
    if (text.removeIf(isForbidden).size() == txtFileName->text().size())
        return;
    txtFileName->setText(text);
    txtFileName->setCursorPosition(cursor - static_cast<int>(before));
}
