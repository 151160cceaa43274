// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmAddText.h"

#include "ui_frmAddText.h"

#include "document/PenDocument.h"
#include "widgets/ui/QtColour.h"

#include <algorithm>

namespace {

constexpr int kLongestCaption = 50;
/// The graph takes it as a separator within a title.
constexpr QLatin1Char kSeparator('|');

} // namespace

frmAddText::frmAddText(PenDocument& document, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmAddText>())
    , m_document(&document)
{
    m_ui->setupUi(this);
    txtPenLegend = {m_ui->txtPenLegend_0, m_ui->txtPenLegend_1, m_ui->txtPenLegend_2, m_ui->txtPenLegend_3,
                    m_ui->txtPenLegend_4, m_ui->txtPenLegend_5, m_ui->txtPenLegend_6, m_ui->txtPenLegend_7,
                    m_ui->txtPenLegend_8, m_ui->txtPenLegend_9};
    lblColourSpot = {m_ui->lblColourSpot_0, m_ui->lblColourSpot_1, m_ui->lblColourSpot_2, m_ui->lblColourSpot_3,
                     m_ui->lblColourSpot_4, m_ui->lblColourSpot_5, m_ui->lblColourSpot_6, m_ui->lblColourSpot_7,
                     m_ui->lblColourSpot_8, m_ui->lblColourSpot_9};
    load();

    const auto enableApply = [this] { m_ui->cmdApply->setEnabled(true); };
    connect(m_ui->txtMainTitle, &QLineEdit::textEdited, this, &frmAddText::txtMainTitle_Edited);
    // Enter goes down the boxes and from the last back to the title.
    QLineEdit* previous = m_ui->txtMainTitle;
    for (QLineEdit* box : txtPenLegend) {
        connect(box, &QLineEdit::textEdited, this, enableApply);
        connect(previous, &QLineEdit::returnPressed, box, qOverload<>(&QWidget::setFocus));
        previous = box;
    }
    connect(previous, &QLineEdit::returnPressed, m_ui->txtMainTitle, qOverload<>(&QWidget::setFocus));

    connect(m_ui->cmdApply, &QPushButton::clicked, this, &frmAddText::cmdApply_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmAddText::cmdOK_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &frmAddText::cmdCancel_Click);
    connect(&document, &QObject::destroyed, this, &QDialog::reject);
}

frmAddText::~frmAddText() = default;

void frmAddText::load()
{
    const QString caption = m_document->caption();
    setWindowTitle(tr("Add text: ") +
                   (caption.size() > kLongestCaption ? tr("...") + caption.right(kLongestCaption) : caption));
    const GraphModel& graph = m_document->peGraph();
    m_ui->txtMainTitle->setText(graph.MainTitle());
    for (int pen = 0; pen < kPens; ++pen) {
        const auto index = static_cast<std::size_t>(pen);
        txtPenLegend[index]->setText(graph.SubsetLabels(pen));
        QPalette palette = lblColourSpot[index]->palette();
        palette.setColor(QPalette::Window, toQColor(graph.SubsetColors(pen)));
        lblColourSpot[index]->setPalette(palette);
    }
    m_ui->cmdApply->setEnabled(false);
}

void frmAddText::txtMainTitle_Edited()
{
    QLineEdit& box = *m_ui->txtMainTitle;
    const QString typed = box.text();
    if (typed.contains(kSeparator)) {
        const QString before = typed.left(box.cursorPosition());
        QString kept = typed;
        box.setText(kept.remove(kSeparator));
        box.setCursorPosition(static_cast<int>(before.size() - before.count(kSeparator)));
    }
    if (m_document && box.text() != m_document->peGraph().MainTitle())
        m_ui->cmdApply->setEnabled(true);
}

void frmAddText::cmdApply_Click()
{
    if (!m_document)
        return;
    GraphModel& graph = m_document->peGraph();
    graph.setMainTitle(m_ui->txtMainTitle->text());
    for (int pen = 0; pen < kPens; ++pen) {
        // The alternate view shows the same name.
        const QString name = txtPenLegend[static_cast<std::size_t>(pen)]->text();
        m_document->setPenName(pen, name);
    }
    m_document->SetModified();
    graph.PEactions(graph::Reinitialise);
    m_ui->cmdApply->setEnabled(false);
}

void frmAddText::cmdOK_Click()
{
    cmdApply_Click();
    accept();
}

void frmAddText::cmdCancel_Click()
{
    reject();
}
