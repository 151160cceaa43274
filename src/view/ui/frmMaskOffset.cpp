// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/frmMaskOffset.h"

#include "values/Conversions.h"
#include "view/ui/Controls.h"
#include "view/ui/NumberEdit.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>

using namespace viewcontrols;

frmMaskOffset::frmMaskOffset(const QString& prompt, QWidget* objOwner)
    : QDialog(objOwner)
    , txtMaskOffset(named(new NumberEdit(keyfilter::offset, this), "txtMaskOffset"))
{
    setObjectName(QStringLiteral("frmMaskOffset"));
    setWindowTitle(tr("Mask Offset"));
    auto* const label = named(new QLabel(prompt, this), "lblPrompt");
    label->setBuddy(txtMaskOffset);
    txtMaskOffset->setAccessibleName(prompt);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* const cmdOK = named(buttons->button(QDialogButtonBox::Ok), "cmdOK");
    named(buttons->button(QDialogButtonBox::Cancel), "cmdCancel");
    auto* const whole = new QVBoxLayout(this);
    whole->addWidget(label);
    whole->addWidget(txtMaskOffset);
    whole->addWidget(buttons);
    connect(txtMaskOffset, &NumberEdit::entered, cmdOK, &QPushButton::click);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

double frmMaskOffset::offset() const
{
    return values::tolerantNumber(txtMaskOffset->text());
}

void frmMaskOffset::GetOffset(QWidget* objOwner, const QString& prompt, double& result)
{
    const QPointer<frmMaskOffset> form = new frmMaskOffset(prompt, objOwner);
    const bool accepted = form->exec() == QDialog::Accepted;
    result = form && accepted ? form->offset() : 0;
    delete form;
}
