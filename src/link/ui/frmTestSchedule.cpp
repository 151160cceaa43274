// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmTestSchedule.h"

#include "ui_frmTestSchedule.h"

#include "controls/korvalink/KorvaLink.h"
#include "prefs/Preferences.h"
#include "values/Conversions.h"

frmTestSchedule::frmTestSchedule(KorvaLink& device, Preferences& preferences, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmTestSchedule>())
    , m_device(device)
    , m_preferences(preferences)
{
    m_ui->setupUi(this);
    // Any number but 0 ticks the box here, while other readers take 1 alone for ticked: the text is read as it stands.
    const double saved = values::tolerantNumber(m_preferences.text(options::kTestSchedule));
    m_ui->chkTestSchedule->setChecked(saved != 0);
    connect(m_ui->chkTestSchedule, &QCheckBox::clicked, this, &frmTestSchedule::chkTestSchedule_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmTestSchedule::cmdOK_Click);
}

frmTestSchedule::~frmTestSchedule() = default;

void frmTestSchedule::chkTestSchedule_Click()
{
    const bool checked = m_ui->chkTestSchedule->isChecked();
    m_preferences.setValue(options::kTestSchedule, checked);
    m_device.SetTestMode(checked ? 1 : 0);
}

void frmTestSchedule::cmdOK_Click()
{
    accept();
}
