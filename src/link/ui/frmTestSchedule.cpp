// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmTestSchedule.h"

#include "ui_frmTestSchedule.h"

#include "link/TestSchedule.h"

frmTestSchedule::frmTestSchedule(KorvaLink& device, Preferences& preferences, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmTestSchedule>())
    , m_device(device)
    , m_preferences(preferences)
{
    m_ui->setupUi(this);
    m_ui->chkTestSchedule->setChecked(testschedule::isOn(m_preferences));
    connect(m_ui->chkTestSchedule, &QCheckBox::clicked, this, &frmTestSchedule::chkTestSchedule_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmTestSchedule::cmdOK_Click);
}

frmTestSchedule::~frmTestSchedule() = default;

void frmTestSchedule::chkTestSchedule_Click()
{
    testschedule::set(m_ui->chkTestSchedule->isChecked(), m_preferences, m_device);
}

void frmTestSchedule::cmdOK_Click()
{
    accept();
}
