// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmSystemInformation;
}

/// Shows a text of facts about the computer and copies it.
class frmSystemInformation : public QDialog
{
    Q_OBJECT

public:
    explicit frmSystemInformation(const QString& text, QWidget* parent = nullptr);
    ~frmSystemInformation() override;

public Q_SLOTS:
    void cmdCopy_Click();

private:
    std::unique_ptr<Ui::frmSystemInformation> m_ui;
};
