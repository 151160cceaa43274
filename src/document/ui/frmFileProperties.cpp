// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmFileProperties.h"

#include "ui_frmFileProperties.h"

#include "document/PenDocument.h"
#include "document/VersionText.h"
#include "files/FileNames.h"

frmFileProperties::frmFileProperties(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmFileProperties>())
{
    m_ui->setupUi(this);
    connect(m_ui->btnOKButton, &QPushButton::clicked, this, &frmFileProperties::btnOKButton_Click);
}

frmFileProperties::~frmFileProperties() = default;

void frmFileProperties::ShowDetails(const PenDocument& document)
{
    const QString& file = document.GetFileName();
    const QString unsaved = tr("Not yet saved");
    m_ui->lblFilePath->setText(file.isEmpty() ? unsaved : files::PathOfFile(file));
    m_ui->lblFileName->setText(file.isEmpty() ? unsaved : files::FileOfPath(file));

    const VersionText::Parts parts = VersionText::parts(document.peGraph().TXAxisLabel());
    m_ui->lblVersion->setText(parts.software);
    m_ui->lblInstrument->setText(parts.instrument);
    m_ui->lblDate->setText(parts.date);
}

void frmFileProperties::btnOKButton_Click()
{
    accept();
}
