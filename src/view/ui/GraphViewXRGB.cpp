// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/GraphViewXRGB.h"

#include "view/ui/Controls.h"
#include "view/ui/LimitBoxes.h"

using namespace viewcontrols;

namespace {

using namespace Qt::StringLiterals;

constexpr int kFirstTab = 0;

} // namespace

GraphViewXRGB::GraphViewXRGB(PenDocument& document, Preferences& preferences, UserMessages& messages, QWidget* parent)
    : ViewDialog({"GraphViewXRGB", "TabStrip", "OKButton", options::kGraphViewOptionsXRGBTab, kFirstTab}, document,
                 preferences, messages, parent)
{
    int page = 0;
    addTab(tr("&Pen"), tr("Pen view options"));
    addPage(m_pens, page++);
    addTab(tr("&Display and Frequency Axes"), tr("Graph display options"));
    addPage(pageOf({m_miscellaneous, makeView()}), page++);
    addPage(m_frequency, page++);
    makeAxes();
    addTab(tr("A&xes"), tr("Axes view options"));
    addPage(m_xLimits, page++);
    addPage(m_rLimits, page++);
    addTab(tr("&Style"), tr("Viewing Style"));
    addPage(m_style, page++);
    finish();
}

QWidget* GraphViewXRGB::makeView()
{
    QGroupBox* const box = frame(tr("Impedance / Admittance"), "fReactance", this);
    optReact = option(box, "optReact", tr("Imp&edance"), [this] { ViewDialog::options().setAdmittance(false); });
    optSusc = option(box, "optSusc", tr("Ad&mittance"), [this] { ViewDialog::options().setAdmittance(true); });
    return box;
}

void GraphViewXRGB::makeAxes()
{
    // A tab holds both groups, so the second has access keys of its own.
    const LimitsGroup::Texts second = {tr("A&utomatic"),   tr("Ma&nual"),     tr("Uppe&r limit"),
                                       tr("Lo&wer limit"), tr("Full ran&ge"), {}};
    m_xLimits = new LimitsGroup({"fXScaleControl",
                                 "fXRange",
                                 "optXAutoScale",
                                 "optXManualScale",
                                 {u"txtXLimits_0"_s, u"txtXLimits_1"_s},
                                 {u"cmdXSetLimit_0"_s, u"cmdXSetLimit_1"_s},
                                 "cmdDefaultXAxisDisplayLimits",
                                 "cmdSetXDisplayLimitsToZoom"},
                                LimitsGroup::texts(), ViewDialog::options(), ViewOptions::Quantity::Reactance, this);
    m_rLimits = new LimitsGroup({"fRScaleControl",
                                 "fRRange",
                                 "optRAutoScale",
                                 "optRManualScale",
                                 {u"txtRLimits_0"_s, u"txtRLimits_1"_s},
                                 {u"cmdRSetLimit_0"_s, u"cmdRSetLimit_1"_s},
                                 "cmdDefaultRAxisDisplayLimits",
                                 nullptr},
                                second, ViewDialog::options(), ViewOptions::Quantity::Resistance, this);
}

void GraphViewXRGB::refreshOwn(bool force)
{
    const bool admittance = ViewDialog::options().document()->giDisplayRG() == plot::Conductance;
    (admittance ? optSusc : optReact)->setChecked(true);
    m_xLimits->setTitles(admittance ? tr("Susceptance scale limits") : tr("Reactance scale limits"),
                         admittance ? tr("Susceptance manual scale limits") : tr("Reactance manual scale limits"));
    m_rLimits->setTitles(admittance ? tr("Conductance scale limits") : tr("Resistance scale limits"),
                         admittance ? tr("Conductance manual scale limits") : tr("Resistance manual scale limits"));
    m_xLimits->refresh(force);
    m_rLimits->refresh(force);
}
