// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/frmSetURL.h"

#include "prefs/Preferences.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmSetURL::frmSetURL(Preferences& preferences, QWidget* parent)
    : QDialog(parent)
    , m_preferences(preferences)
    , txtURL(new QLineEdit(preferences.value(options::kWebUrl), this))
{
    setObjectName(QStringLiteral("frmSetURL"));
    setWindowTitle(tr("Set URL"));
    auto* const label = new QLabel(
        tr("&Address of the folder with the update files,\nfor example https://www.example.com/updates"), this);
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(txtURL);
    txtURL->setObjectName(QStringLiteral("txtURL"));
    txtURL->setMinimumWidth(fontMetrics().averageCharWidth() * 60);

    auto* const buttons = new QDialogButtonBox(this);
    auto* const ok = buttons->addButton(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("OKButton"));
    buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelButton"));
    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(txtURL);
    column->addStretch();
    column->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &frmSetURL::OKButton_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void frmSetURL::OKButton_Click()
{
    m_preferences.setValue(options::kWebUrl, txtURL->text());
    accept();
}
