// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

class PenDocument;

namespace Ui {
class frmFileProperties;
}

/// Shows where a document comes from: its file, the program and instrument that made it, the date of its first save.
class frmFileProperties : public QDialog
{
    Q_OBJECT

public:
    explicit frmFileProperties(QWidget* parent = nullptr);
    ~frmFileProperties() override;

    /// Takes the details of the document; the document is not kept.
    void ShowDetails(const PenDocument& document);

public Q_SLOTS:
    void btnOKButton_Click();

private:
    std::unique_ptr<Ui::frmFileProperties> m_ui;
};
