// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmSystemInformation.h"

#include "ui_frmSystemInformation.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>

frmSystemInformation::frmSystemInformation(const QString& text, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmSystemInformation>())
{
    m_ui->setupUi(this);
    m_ui->txtInformation->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->txtInformation->setPlainText(text);
    m_ui->cmdOK->setFocus();
    connect(m_ui->cmdCopy, &QPushButton::clicked, this, &frmSystemInformation::cmdCopy_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

frmSystemInformation::~frmSystemInformation() = default;

void frmSystemInformation::cmdCopy_Click()
{
    QGuiApplication::clipboard()->setText(m_ui->txtInformation->toPlainText());
}
