// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/ViewOptions.h"

#include <QWidget>

#include <array>

class ColourLabel;
class LimitBoxes;
class QCheckBox;
class QComboBox;
class QPushButton;
class QRadioButton;

// The pages that both dialogs of view options have. Each acts on the document at once; refresh() shows what the
// document is like now. The options outlive the pages.

/// The pens: display, lock, colour and data of each.
class PenPage : public QWidget
{
    Q_OBJECT

public:
    explicit PenPage(ViewOptions& options, QWidget* parent = nullptr);
    void refresh();

private:
    void makeRow(int pen, class QGridLayout& grid);
    void lblColour_DblClick(int pen);

    ViewOptions& m_options;
    std::array<QCheckBox*, plot::kPens> chkDisplay{};
    std::array<QCheckBox*, plot::kPens> chkLock{};
    std::array<ColourLabel*, plot::kPens> lblColour{};
};

/// Test information and marks of the data points.
class MiscellaneousPage : public QWidget
{
    Q_OBJECT

public:
    explicit MiscellaneousPage(ViewOptions& options, QWidget* parent = nullptr);
    void refresh();
    void chkInformation_Click();

private:
    ViewOptions& m_options;
    QCheckBox* chkInformation;
    QCheckBox* chkMarkPoints;
};

/// Scale and limits of the frequency axis.
class FrequencyPage : public QWidget
{
    Q_OBJECT

public:
    explicit FrequencyPage(ViewOptions& options, QWidget* parent = nullptr);
    void refresh(bool force = false);

private:
    ViewOptions& m_options;
    QRadioButton *optLog, *optLinear;
    LimitBoxes* m_limits;
    QPushButton* cmdSetXAxisToZoomLevel;
};

/// Legend, font and colours.
class StylePage : public QWidget
{
    Q_OBJECT

public:
    explicit StylePage(ViewOptions& options, QWidget* parent = nullptr);
    void refresh();
    void PopulateTheFontSelectWindow();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ViewOptions& m_options;
    std::array<QRadioButton*, 4> m_locations{}; ///< by graph::LegendLocationCode
    QRadioButton *optHide, *optInsideAxis;
    QComboBox* combFontSelection;
    std::array<QRadioButton*, 3> m_sizes{};  ///< by graph::FontSizeCode
    std::array<QRadioButton*, 3> m_styles{}; ///< by graph::ViewingStyleCode
};
