// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ui/frmSendScript.h"

#include "script/ScriptTransfer.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

#include <limits>

frmSendScript::frmSendScript(ScriptTransfer& transfer, QWidget* parent)
    : QDialog(parent)
    , m_transfer(transfer)
    , ProgressBar(new QProgressBar(this))
    , cmdCancel(new QPushButton(tr("Cancel"), this))
{
    setObjectName(QStringLiteral("frmSendScript"));
    setWindowTitle(tr("Send Test Script"));
    ProgressBar->setObjectName(QStringLiteral("ProgressBar"));
    ProgressBar->setAccessibleName(tr("Bytes sent"));
    ProgressBar->setMinimumWidth(fontMetrics().averageCharWidth() * 45);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* const row = new QHBoxLayout(this);
    row->addWidget(ProgressBar);
    row->addWidget(cmdCancel);
    connect(cmdCancel, &QPushButton::clicked, this, &frmSendScript::reject);
    connect(&transfer, &ScriptTransfer::begun, this, &frmSendScript::SetupProgressBar);
    connect(&transfer, &ScriptTransfer::sent, this, &frmSendScript::showSent);
}

void frmSendScript::SetupProgressBar(qint64 a_lAmount)
{
    m_unit = a_lAmount / std::numeric_limits<int>::max() + 1;
    ProgressBar->setRange(0, static_cast<int>(a_lAmount / m_unit));
    ProgressBar->setValue(0);
}

void frmSendScript::showSent(qint64 bytes)
{
    ProgressBar->setValue(static_cast<int>(bytes / m_unit));
}

void frmSendScript::reject()
{
    // The form stays until whoever showed it takes it down, as soon as the transfer has ended.
    m_transfer.cancel();
    cmdCancel->setEnabled(false);
}
