// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ui/frmAnalysis.h"

#include "analysis/rules/ResultLine.h"
#include "document/PenDocument.h"
#include "prefs/Preferences.h"
#include "widgets/ui/PlainTip.h"
#include "widgets/ui/QtColour.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr int kPenColumn = 0;
constexpr int kResParamsColumn = 1;
constexpr int kFirstValueColumn = 2;
constexpr int kCapOptionColumn = 7;
constexpr int kCapColumn = 8;
constexpr int kCapFrequencyColumn = 9;
constexpr int kHeadingRow = 0;
constexpr int kFirstRow = 1;
constexpr int kTicksRow = kFirstRow + plot::kPens;

constexpr std::array<const char*, 5> kValueNames = {"lblF1", "lblF2", "lblCMF", "lblZr", "lblQ"};
constexpr std::array<const char*, 6> kTickNames = {"chkF1", "chkF2", "chkFr", "chkZr", "chkQ", "chkClf"};
const std::array<const options::Option<options::CheckBox>*, 6> kTickOptions = {
    &options::kAnalysisF1, &options::kAnalysisF2, &options::kAnalysisFr,
    &options::kAnalysisZr, &options::kAnalysisQ,  &options::kAnalysisClf};

QLabel* valueLabel(const QString& name)
{
    auto* const label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

frmAnalysis::frmAnalysis(PenDocument& document, ResonanceEngine& engine, Preferences& preferences, QWidget* parent)
    : QDialog(parent)
    , m_document(&document)
    , m_preferences(preferences)
    , m_resParams(new QButtonGroup(this))
    , m_caps(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("frmAnalysis"));
    setWindowTitle(tr("Piezoelectric Transducer Analysis - Add results to graph"));
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    makeRows(*grid);
    makeTicks(*grid);
    auto* const cmdRemove = new QPushButton(tr("&Remove"));
    auto* const cmdOK = new QPushButton(tr("OK"));
    m_cmdGraph = new QPushButton(tr("&Add"));
    m_cmdGraph->setObjectName(QStringLiteral("cmdGraph"));
    m_cmdGraph->setToolTip(tr("Puts the ticked results under the graph"));
    cmdRemove->setObjectName(QStringLiteral("cmdRemove"));
    cmdRemove->setToolTip(tr("Takes the results under the graph away"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdGraph);
    buttons->addWidget(cmdRemove);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    connect(m_cmdGraph, &QPushButton::clicked, this, &frmAnalysis::cmdGraph_Click);
    connect(cmdRemove, &QPushButton::clicked, this, &frmAnalysis::cmdRemove_Click);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(&document, &QObject::destroyed, this, &QDialog::reject);
    loadTicks();
    m_table.fill(document, engine);
    showTable();
    showWhatCanBeAdded();
}

void frmAnalysis::makeRows(QGridLayout& grid)
{
    const std::pair<int, QString> headings[] = {{kPenColumn, tr("Pen")},
                                                {kFirstValueColumn, tr("F1 - Hz")},
                                                {kFirstValueColumn + 1, tr("F2 - Hz")},
                                                {kFirstValueColumn + 2, tr("Fr - Hz")},
                                                {kFirstValueColumn + 3, tr("Zr - Ohms")},
                                                {kFirstValueColumn + 4, tr("Q")},
                                                {kCapColumn, tr("Clf")},
                                                {kCapFrequencyColumn, tr("at - Hz")}};
    for (const auto& [column, text] : headings) {
        auto* const label = new QLabel(text);
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
        grid.addWidget(label, kHeadingRow, column,
                       column == kPenColumn ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignRight | Qt::AlignVCenter);
    }
    for (int pen = 0; pen < plot::kPens; ++pen) {
        RowControls& row = m_rows[static_cast<std::size_t>(pen)];
        const QString number = QString::number(pen);
        const int at = kFirstRow + pen;
        row.lblPen = valueLabel(QStringLiteral("lblPen") + number);
        row.lblPen->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        grid.addWidget(row.lblPen, at, kPenColumn);
        row.optResParams = new QRadioButton;
        row.optResParams->setObjectName(QStringLiteral("optResParams") + number);
        row.optResParams->setAccessibleName(tr("Add the measures of pen %1").arg(pen + 1));
        row.optResParams->setToolTip(row.optResParams->accessibleName());
        m_resParams->addButton(row.optResParams, pen);
        grid.addWidget(row.optResParams, at, kResParamsColumn);
        for (std::size_t i = 0; i < row.values.size(); ++i) {
            row.values[i] = valueLabel(QLatin1String(kValueNames[i]) + number);
            grid.addWidget(row.values[i], at, kFirstValueColumn + static_cast<int>(i));
        }
        row.optCap = new QRadioButton;
        row.optCap->setObjectName(QStringLiteral("optCap") + number);
        row.optCap->setAccessibleName(tr("Add the capacitance of pen %1").arg(pen + 1));
        row.optCap->setToolTip(row.optCap->accessibleName());
        m_caps->addButton(row.optCap, pen);
        grid.addWidget(row.optCap, at, kCapOptionColumn);
        row.lblCap = valueLabel(QStringLiteral("lblCap") + number);
        grid.addWidget(row.lblCap, at, kCapColumn);
        row.lblCapFrequency = valueLabel(QStringLiteral("lblCapFrequency") + number);
        grid.addWidget(row.lblCapFrequency, at, kCapFrequencyColumn);
    }
    connect(m_resParams, &QButtonGroup::idToggled, this, &frmAnalysis::showWhatCanBeAdded);
    connect(m_caps, &QButtonGroup::idToggled, this, &frmAnalysis::showWhatCanBeAdded);
}

void frmAnalysis::makeTicks(QGridLayout& grid)
{
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    grid.addWidget(line, kTicksRow, 0, 1, kCapFrequencyColumn + 1);
    grid.addWidget(new QLabel(tr("Add to graph:")), kTicksRow + 1, kPenColumn, 1, 2);
    const std::array<QString, 6> texts = {tr("F&1"), tr("F&2"), tr("&Fr"), tr("&Zr"), tr("&Q"), tr("&Clf")};
    const std::array<int, 6> columns = {kFirstValueColumn,     kFirstValueColumn + 1, kFirstValueColumn + 2,
                                        kFirstValueColumn + 3, kFirstValueColumn + 4, kCapColumn};
    for (std::size_t i = 0; i < m_ticks.size(); ++i) {
        m_ticks[i] = new QCheckBox(texts[i]);
        m_ticks[i]->setObjectName(QLatin1String(kTickNames[i]));
        grid.addWidget(m_ticks[i], kTicksRow + 1, columns[i], Qt::AlignRight);
        connect(m_ticks[i], &QCheckBox::toggled, this, &frmAnalysis::showWhatCanBeAdded);
    }
}

void frmAnalysis::showTable()
{
    for (int pen = 0; pen < plot::kPens; ++pen) {
        const AnalysisTable::Row& row = m_table.row(pen);
        const RowControls& controls = m_rows[static_cast<std::size_t>(pen)];
        const QString name = QString::number(pen + 1) + QLatin1String(") ") + row.label;
        controls.lblPen->setText(controls.lblPen->fontMetrics().elidedText(
            name, Qt::ElideRight, 24 * controls.lblPen->fontMetrics().averageCharWidth()));
        controls.lblPen->setToolTip(plainTip(name));
        controls.lblPen->setEnabled(row.shown);
        const QString* const texts[] = {&row.f1, &row.f2, &row.fr, &row.zr, &row.q};
        for (std::size_t i = 0; i < controls.values.size(); ++i) {
            controls.values[i]->setText(*texts[i]);
            controls.values[i]->setToolTip(plainTip(row.measuresTip));
            controls.values[i]->setAccessibleDescription(row.measuresTip);
        }
        controls.lblCap->setText(row.cap);
        controls.lblCapFrequency->setText(row.capFrequency);
        for (QLabel* label : {controls.lblCap, controls.lblCapFrequency}) {
            label->setToolTip(plainTip(row.capTip));
            label->setAccessibleDescription(row.capTip);
        }
        controls.optResParams->setEnabled(row.hasPoints);
        controls.optCap->setEnabled(row.capFound);
    }
    if (const int pen = m_table.firstFound(); pen >= 0)
        m_rows[static_cast<std::size_t>(pen)].optResParams->setChecked(true);
    if (const int pen = m_table.firstCap(); pen >= 0)
        m_rows[static_cast<std::size_t>(pen)].optCap->setChecked(true);
}

AnalysisTable::Ticks frmAnalysis::ticks() const
{
    const auto ticked = [this](std::size_t i) { return m_ticks[i]->isChecked(); };
    return {ticked(0), ticked(1), ticked(2), ticked(3), ticked(4), ticked(5)};
}

void frmAnalysis::loadTicks()
{
    for (std::size_t i = 0; i < m_ticks.size(); ++i)
        m_ticks[i]->setChecked(m_preferences.value(*kTickOptions[i]));
}

void frmAnalysis::saveTicks()
{
    for (std::size_t i = 0; i < m_ticks.size(); ++i)
        m_preferences.setValue(*kTickOptions[i], m_ticks[i]->isChecked());
}

void frmAnalysis::showWhatCanBeAdded()
{
    if (m_cmdGraph != nullptr)
        m_cmdGraph->setEnabled(!m_table.line(m_resParams->checkedId(), m_caps->checkedId(), ticks()).isEmpty());
}

void frmAnalysis::cmdGraph_Click()
{
    if (m_document &&
        resultline::show(m_document->peGraph(), m_table.line(m_resParams->checkedId(), m_caps->checkedId(), ticks())))
        m_document->SetModified();
}

void frmAnalysis::cmdRemove_Click()
{
    if (!m_document)
        return;
    resultline::remove(m_document->peGraph());
    m_document->SetModified();
}

void frmAnalysis::done(int result)
{
    saveTicks();
    QDialog::done(result);
}
