// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/AnalysisTable.h"

#include <QDialog>
#include <QPointer>

#include <array>

class Preferences;
class QButtonGroup;
class QCheckBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;

/// The table of the measures of every displayed pen, and what of it goes onto the graph as a line under the plot.
class frmAnalysis : public QDialog
{
    Q_OBJECT

public:
    /// Reads and solves the document at once; preferences and engine outlive the dialog, the document need not.
    frmAnalysis(PenDocument& document, ResonanceEngine& engine, Preferences& preferences, QWidget* parent = nullptr);

    const AnalysisTable& table() const { return m_table; }

public Q_SLOTS:
    void cmdGraph_Click();
    void cmdRemove_Click();
    void done(int result) override;

private:
    struct RowControls
    {
        QLabel* lblPen = nullptr;
        QRadioButton* optResParams = nullptr;
        std::array<QLabel*, 5> values{}; ///< lblF1, lblF2, lblCMF, lblZr, lblQ
        QRadioButton* optCap = nullptr;
        QLabel* lblCap = nullptr;
        QLabel* lblCapFrequency = nullptr;
    };

    void makeRows(QGridLayout& grid);
    void makeTicks(QGridLayout& grid);
    void showTable();
    void loadTicks();
    void saveTicks();
    AnalysisTable::Ticks ticks() const;
    void showWhatCanBeAdded();

    QPointer<PenDocument> m_document;
    Preferences& m_preferences;
    AnalysisTable m_table;
    std::array<RowControls, plot::kPens> m_rows;
    std::array<QCheckBox*, 6> m_ticks{}; ///< chkF1, chkF2, chkFr, chkZr, chkQ, chkClf
    QButtonGroup* m_resParams;
    QButtonGroup* m_caps;
    QPushButton* m_cmdGraph = nullptr;
};
