// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

class Preferences;
struct ProgramState;

namespace Ui {
class frmOptionsTestType;
}

/// Asks for the test type of a new document. state.giNewDocType is 0 from the construction on and becomes 1, 2 or 3
/// when the user agrees; the choice is kept as "Test"/"Type" and proposed the next time.
class frmOptionsTestType : public QDialog
{
    Q_OBJECT

public:
    frmOptionsTestType(ProgramState& state, Preferences& preferences, QWidget* parent = nullptr);
    ~frmOptionsTestType() override;

public Q_SLOTS:
    void cmdOK_Click();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    int chosenType() const;
    void showSketch();

    std::unique_ptr<Ui::frmOptionsTestType> m_ui;
    ProgramState& m_state;
    Preferences& m_preferences;
};
