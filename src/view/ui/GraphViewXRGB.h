// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/ui/ViewDialog.h"

class LimitsGroup;

/// View options of reactance documents, which show two quantities side by side.
class GraphViewXRGB : public ViewDialog
{
    Q_OBJECT

public:
    GraphViewXRGB(PenDocument& document, Preferences& preferences, UserMessages& messages, QWidget* parent = nullptr);

private:
    QWidget* makeView();
    void makeAxes();
    void refreshOwn(bool force) override;

    QRadioButton *optReact = nullptr, *optSusc = nullptr;
    LimitsGroup *m_xLimits = nullptr, *m_rLimits = nullptr;
};
