// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/SaveButtons.h"

#include <QCoreApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>

QLayout* saveButtons(QDialog& dialog, const std::function<void()>& save)
{
    auto* const btnSaveImage = new QPushButton(QCoreApplication::translate("SaveButtons", "&Save"), &dialog);
    btnSaveImage->setObjectName(QStringLiteral("btnSaveImage"));
    btnSaveImage->setDefault(true);
    QObject::connect(btnSaveImage, &QPushButton::clicked, &dialog, save);
    auto* const btnCancel = new QPushButton(QCoreApplication::translate("SaveButtons", "Cancel"), &dialog);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    btnCancel->setAutoDefault(false);
    QObject::connect(btnCancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* const layout = new QHBoxLayout;
    layout->addStretch();
    layout->addWidget(btnSaveImage);
    layout->addWidget(btnCancel);
    return layout;
}
