// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QPointer>

#include <array>
#include <memory>

class PenDocument;
class QLabel;
class QLineEdit;

namespace Ui {
class frmAddText;
}

/// Edits the title of a document and the names of its ten pens. Nothing changes before Apply or OK. Closes by itself
/// when the document goes.
class frmAddText : public QDialog
{
    Q_OBJECT

public:
    static constexpr int kPens = 10;

    explicit frmAddText(PenDocument& document, QWidget* parent = nullptr);
    ~frmAddText() override;

public Q_SLOTS:
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    void load();
    void txtMainTitle_Edited();

    std::unique_ptr<Ui::frmAddText> m_ui;
    QPointer<PenDocument> m_document;
    std::array<QLineEdit*, kPens> txtPenLegend{};
    std::array<QLabel*, kPens> lblColourSpot{};
};
