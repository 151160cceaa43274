// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmOptionsTestType.h"

#include "ui_frmOptionsTestType.h"

#include "document/ui/HookUpSketch.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"

#include <QKeyEvent>

frmOptionsTestType::frmOptionsTestType(ProgramState& state, Preferences& preferences, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmOptionsTestType>())
    , m_state(state)
    , m_preferences(preferences)
{
    m_ui->setupUi(this);
    m_state.giNewDocType = 0;

    const QString type = m_preferences.text(options::kTestType);
    QRadioButton* proposed = m_ui->optReactVsFreq;
    if (type == QLatin1String("1"))
        proposed = m_ui->optAmplitude;
    else if (type == QLatin1String("2"))
        proposed = m_ui->optImpedance;
    proposed->setChecked(true);
    proposed->setFocus();
    showSketch();

    for (QRadioButton* option : {m_ui->optAmplitude, m_ui->optImpedance, m_ui->optReactVsFreq})
        connect(option, &QRadioButton::toggled, this, &frmOptionsTestType::showSketch);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmOptionsTestType::cmdOK_Click);
}

frmOptionsTestType::~frmOptionsTestType() = default;

void frmOptionsTestType::cmdOK_Click()
{
    // An option chosen by its letter stays pressed for a moment before it is checked; Enter may be faster.
    for (QRadioButton* option : {m_ui->optAmplitude, m_ui->optImpedance, m_ui->optReactVsFreq}) {
        if (option->isDown())
            option->setChecked(true);
    }
    m_state.giNewDocType = static_cast<std::int16_t>(chosenType());
    m_preferences.setValue(options::kTestType, chosenType());
    accept();
}

void frmOptionsTestType::keyPressEvent(QKeyEvent* event)
{
    // Enter agrees from every control; Escape is the dialog's own reject, which leaves the type at 0.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        cmdOK_Click();
        return;
    }
    QDialog::keyPressEvent(event);
}

int frmOptionsTestType::chosenType() const
{
    if (m_ui->optAmplitude->isChecked())
        return 1;
    return m_ui->optImpedance->isChecked() ? 2 : 3;
}

void frmOptionsTestType::showSketch()
{
    m_ui->imgTestType->setTestType(chosenType());
}
