// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/frmOptions.h"

#include "view/ui/Controls.h"
#include "view/ui/LimitBoxes.h"
#include "view/ui/MaskPage.h"

using namespace viewcontrols;

namespace {

using namespace Qt::StringLiterals;

enum Page
{
    PagePens = 0,
    PageDisplay = 1,
    PageAmplitudeAxis = 2,
    PageImpedanceAxis = 3,
    PageFrequencyAxis = 4,
    PageImpedanceView = 5,
    PageAmplitudeView = 6,
    PageStyle = 7,
    PageMask = 8
};
constexpr int kFirstTab = 1;

} // namespace

frmOptions::frmOptions(PenDocument& document, Preferences& preferences, UserMessages& messages, QWidget* parent)
    : ViewDialog({"frmOptions", "tbsOptions", "cmdOK", options::kGraphViewOptionsTab, kFirstTab}, document, preferences,
                 messages, parent)
    , m_impedance(document.pgiTestType() == PenDocument::Impedance)
    , m_masks(new MaskPage(document, preferences, messages))
{
    addTab(tr("&Pen"), tr("Pen view options"));
    addPage(m_pens, PagePens);
    addTab(tr("&Display"), tr("Graph display options"));
    addPage(pageOf({m_miscellaneous, makePhase()}), PageDisplay);
    addPage(makeView(m_impedance), m_impedance ? PageImpedanceView : PageAmplitudeView);
    addTab(tr("A&xes"), tr("Axes view options"));
    addPage(m_frequency, PageFrequencyAxis);
    addPage(m_impedance ? makeImpedanceAxis() : makeAmplitudeAxis(),
            m_impedance ? PageImpedanceAxis : PageAmplitudeAxis);
    addTab(tr("&Style"), tr("Viewing Style"));
    addPage(m_style, PageStyle);
    addTab(tr("&Mask"), tr("Add mask points to a graph"));
    addPage(m_masks, PageMask);
    finish();
}

QWidget* frmOptions::makePhase()
{
    QGroupBox* const box = frame(tr("Phase graph"), "fPhase", this);
    const auto add = [&](const char* name, const QString& text, plot::PhaseView view) {
        m_phases[static_cast<std::size_t>(view)] =
            option(box, name, text, [this, view] { ViewDialog::options().setPhaseView(view); });
    };
    add("optOff", tr("O&ff"), plot::NoPhase);
    add("optHalfCycle", tr("0 - &180 Degrees"), plot::HalfCycle);
    add("optWholeCycle", tr("0 - &360 Degrees"), plot::WholeCycle);
    return box;
}

QWidget* frmOptions::makeView(bool impedance)
{
    QGroupBox* const box = frame(impedance ? tr("Impedance view") : tr("Amplitude view"), "fView", this);
    const auto show = [this](bool alternate) {
        return [this, alternate] { ViewDialog::options().setAlternate(alternate); };
    };
    m_mainView = impedance ? option(box, "optOhms", tr("&Impedance, Ohms"), show(false))
                           : option(box, "optGain", tr("&Gain"), show(false));
    m_alternateView = impedance ? option(box, "optMhos", tr("&Admittance, Siemens"), show(true))
                                : option(box, "optLoss", tr("&Loss"), show(true));
    return box;
}

QWidget* frmOptions::makeImpedanceAxis()
{
    m_scaleFrame = frame(QString(), "fZScale", this);
    const auto scale = [this](bool linear) {
        return [this, linear] { ViewDialog::options().setImpedanceLinear(linear); };
    };
    optZScaleLinear = option(m_scaleFrame, "optZScaleLinear", tr("Li&near"), scale(true));
    optZScaleLogarithmic = option(m_scaleFrame, "optZScaleLogarithmic", tr("Loga&rithmic"), scale(false));
    m_limits = new LimitsGroup({"fZScaleControl",
                                "fZRange",
                                "optAutoZScale",
                                "optManualZScale",
                                {u"txtLimits_0"_s, u"txtLimits_1"_s},
                                {u"cmdSetLimit_0"_s, u"cmdSetLimit_1"_s},
                                "cmdDefaultImpedanceAxisDisplayLimits",
                                "cmdSetImpedanceDisplayLimitsToZoom"},
                               LimitsGroup::texts(), ViewDialog::options(), ViewOptions::Quantity::Main, this);
    return pageOf({m_scaleFrame, m_limits});
}

QWidget* frmOptions::makeAmplitudeAxis()
{
    m_limits =
        new LimitsGroup({"fAmpScaleControl",
                         "fAmpRange",
                         "optAutoScaleAmp",
                         "optManScaleAmp",
                         {u"txtAmpUpper"_s, u"txtAmpLower"_s},
                         {u"cmdAmpSetUpper"_s, u"cmdAmpSetLower"_s},
                         "cmdDefaultAmplitude",
                         "cmdSetAmpLimitsToZoom"},
                        LimitsGroup::texts(tr(", dB")), ViewDialog::options(), ViewOptions::Quantity::Main, this);
    m_limits->setTitles(tr("Amplitude scale limits"), tr("Amplitude manual scale limits"));
    return pageOf({m_limits});
}

void frmOptions::refreshOwn(bool force)
{
    const PenDocument& document = *ViewDialog::options().document();
    m_phases[static_cast<std::size_t>(document.graphGetPhaseView())]->setChecked(true);
    (document.gbfAltSubset() ? m_alternateView : m_mainView)->setChecked(true);
    if (m_impedance)
        refreshImpedance(document);
    m_limits->refresh(force);
    m_masks->refresh();
}

void frmOptions::refreshImpedance(const PenDocument& document)
{
    const bool admittance = document.gbfAltSubset();
    m_scaleFrame->setTitle(admittance ? tr("Admittance axis scale") : tr("Impedance axis scale"));
    m_limits->setTitles(admittance ? tr("Admittance scale limits") : tr("Impedance scale limits"),
                        admittance ? tr("Admittance manual scale limits") : tr("Impedance manual scale limits"));
    (ViewDialog::options().isImpedanceLinear() ? optZScaleLinear : optZScaleLogarithmic)->setChecked(true);
    for (QRadioButton* choice : {optZScaleLinear, optZScaleLogarithmic})
        choice->setAccessibleName(m_scaleFrame->title() + u": "_s + withoutAccessKey(choice->text()));
}

void frmOptions::saveOwn()
{
    m_masks->save();
}
