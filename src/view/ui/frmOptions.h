// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/ui/ViewDialog.h"

#include <QGroupBox>
#include <QRadioButton>

#include <array>

class LimitsGroup;
class MaskPage;

/// View options of amplitude and impedance documents.
class frmOptions : public ViewDialog
{
    Q_OBJECT

public:
    frmOptions(PenDocument& document, Preferences& preferences, UserMessages& messages, QWidget* parent = nullptr);

private:
    QWidget* makePhase();
    QWidget* makeView(bool impedance);
    QWidget* makeImpedanceAxis();
    QWidget* makeAmplitudeAxis();
    void refreshOwn(bool force) override;
    void refreshImpedance(const PenDocument& document);
    void saveOwn() override;

    const bool m_impedance;
    std::array<QRadioButton*, 3> m_phases{};                        ///< by plot::PhaseView
    QRadioButton *m_mainView = nullptr, *m_alternateView = nullptr; ///< ohms and mhos, or gain and loss
    QGroupBox* m_scaleFrame = nullptr;
    QRadioButton *optZScaleLinear = nullptr, *optZScaleLogarithmic = nullptr;
    LimitsGroup* m_limits = nullptr;
    MaskPage* m_masks;
};
