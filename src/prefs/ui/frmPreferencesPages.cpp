// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of frmPreferences and their places; what they do is in frmPreferences.cpp.
#include "prefs/ui/frmPreferences.h"
#include "widgets/ui/ColourLabel.h"
#include "widgets/ui/PlainTip.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

template <typename Control>
Control* named(Control* control, const char* name)
{
    control->setObjectName(QLatin1String(name));
    return control;
}

template <typename Control>
Control* named(Control* control, const char* name, std::size_t index)
{
    control->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index));
    return control;
}

/// A radio button in a framed group; screen readers hear the group's title with it.
QRadioButton* option(QGroupBox* group, const char* name, const QString& text, bool designedOn = false)
{
    auto* const button = named(new QRadioButton(text, group), name);
    button->setAccessibleName(QStringLiteral("%1: %2").arg(group->title(), text));
    button->setChecked(designedOn);
    group->layout()->addWidget(button);
    return button;
}

QGroupBox* groupOf(const QString& title)
{
    auto* const group = new QGroupBox(title);
    new QVBoxLayout(group);
    return group;
}

QWidget* pageOf(const QList<QGroupBox*>& groups)
{
    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    for (qsizetype i = 0; i < groups.size(); ++i)
        layout->addWidget(groups[i], static_cast<int>(i / 2), static_cast<int>(i % 2), Qt::AlignTop);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(static_cast<int>(groups.size() + 1) / 2, 1);
    return page;
}

} // namespace

void frmPreferences::buildPages()
{
    SSTab1 = named(new QTabWidget(this), "SSTab1");
    SSTab1->setAccessibleName(tr("Groups of preferences"));
    SSTab1->addTab(buildPenPage(), tr("Pen Colours"));
    SSTab1->addTab(buildAmplitudePage(), tr("Amplitude"));
    SSTab1->addTab(buildImpedancePage(), tr("Impedance"));
    SSTab1->addTab(buildReactancePage(), tr("Reactance"));
    SSTab1->addTab(buildGeneralPage(), tr("General"));

    cmdDefault = named(new QPushButton(tr("Default"), this), "cmdDefault");
    cmdDefault->setAutoDefault(false);
    cmdDefault->setToolTip(tr("Stores the default pens, amplitude and impedance views, prompts and folders"));
    cmdOK = named(new QPushButton(tr("OK"), this), "cmdOK");
    cmdOK->setDefault(true);

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(cmdDefault);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto* const whole = new QVBoxLayout(this);
    whole->addWidget(SSTab1);
    whole->addLayout(buttons);
}

QWidget* frmPreferences::buildPenPage()
{
    auto* const page = new QWidget;
    auto* const grid = new QGridLayout;
    for (std::size_t i = 0; i < lblColour.size(); ++i) {
        const QString pen = tr("Pen %1").arg(i + 1);
        lblPen1[i] = named(new QLabel(pen, page), "lblPen1", i);
        lblColour[i] = named(new ColourLabel(page), "lblColour", i);
        lblColour[i]->setToolTip(tr("Double click to change colour"));
        lblColour[i]->setAccessibleName(tr("Colour of pen %1").arg(i + 1));
        const int row = static_cast<int>(i % 5);
        const int column = i < 5 ? 0 : 3;
        grid->addWidget(lblPen1[i], row, column);
        grid->addWidget(lblColour[i], row, column + 1);
    }
    grid->setVerticalSpacing(fontMetrics().height() * 2 / 3);
    grid->setColumnMinimumWidth(2, fontMetrics().averageCharWidth() * 4);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(4, 1);

    auto* const info = named(new QLabel(tr("Click on the colour box to change the default colour"), page), "lblInfo");
    info->setWordWrap(true);
    auto* const layout = new QVBoxLayout(page);
    layout->addWidget(info);
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(grid);
    layout->addStretch();
    return page;
}

QWidget* frmPreferences::buildAmplitudePage()
{
    QGroupBox* const scale = groupOf(tr("Frequency axis scale"));
    optAmplitudeLinear = option(scale, "optAmplitudeLinear", tr("Linear"));
    optAmplitudeLog = option(scale, "optAmplitudeLog", tr("Logarithmic"), true);
    QGroupBox* const limits = groupOf(tr("Gain / Loss display limits"));
    optAmpScaleAuto = option(limits, "optAmpScaleAuto", tr("Auto"));
    optAmpScaleManual = option(limits, "optAmpScaleManual", tr("Manual"), true);
    QGroupBox* const phase = groupOf(tr("Phase graph"));
    m_amplitudePhase = {option(phase, "optAmplitudePhaseWholeCycle", tr("0 - 360 Degrees"), true),
                        option(phase, "optAmplitudePhaseHalfCycle", tr("0 - 180 Degrees")),
                        option(phase, "optAmplitudePhaseOff", tr("Off"))};
    return pageOf({scale, limits, phase});
}

QWidget* frmPreferences::buildImpedancePage()
{
    QGroupBox* const scale = groupOf(tr("Frequency axis scale"));
    optImpedanceAdmittanceLinear = option(scale, "optImpedanceAdmittanceLinear", tr("Linear"));
    optImpedanceAdmittanceLog = option(scale, "optImpedanceAdmittanceLog", tr("Logarithmic"), true);
    QGroupBox* const limits = groupOf(tr("Impedance / Admittance display limits"));
    optAutoZScale = option(limits, "optAutoZScale", tr("Auto"));
    optManualZScale = option(limits, "optManualZScale", tr("Manual"), true);
    QGroupBox* const phase = groupOf(tr("Phase graph"));
    m_impedancePhase = {option(phase, "optImpedanceAdmittancePhaseWholeCycle", tr("0 - 360 Degrees"), true),
                        option(phase, "optImpedanceAdmittancePhaseHalfCycle", tr("0 - 180 Degrees")),
                        option(phase, "optImpedanceAdmittancePhaseOff", tr("Off"))};
    return pageOf({scale, limits, phase});
}

QWidget* frmPreferences::buildReactancePage()
{
    QGroupBox* const scale = groupOf(tr("Frequency axis scale"));
    optXFreqLog = option(scale, "optXFreqLog", tr("Logarithmic"), true);
    optXFreqLinear = option(scale, "optXFreqLinear", tr("Linear"));
    QGroupBox* const view = groupOf(tr("View"));
    optImpedance = option(view, "optImpedance", tr("Impedance (X and R)"));
    optAdmittance = option(view, "optAdmittance", tr("Admittance (B and G)"), true);
    QGroupBox* const reactance = groupOf(tr("Reactance / Susceptance display limits"));
    optReactAuto = option(reactance, "optReactAuto", tr("Auto"), true);
    optReactManual = option(reactance, "optReactManual", tr("Manual"));
    QGroupBox* const resistance = groupOf(tr("Resistance / Conductance display limits"));
    optResAuto = option(resistance, "optResAuto", tr("Auto"), true);
    optResManual = option(resistance, "optResManual", tr("Manual"));
    return pageOf({scale, view, reactance, resistance});
}

QWidget* frmPreferences::buildGeneralPage()
{
    QGroupBox* const prompts = groupOf(tr("Prompts"));
    const auto tick = [prompts](const char* name, const QString& text) {
        auto* const box = named(new QCheckBox(text, prompts), name);
        prompts->layout()->addWidget(box);
        return box;
    };
    chkNotifyDevice = tick("chkNotifyDevice", tr("Notify when the instrument is disconnected"));
    chkPromptDevice = tick("chkPromptDevice", tr("Ask which instrument to connect"));
    ckhPromptOverwrite = tick("ckhPromptOverwrite", tr("Ask before a used pen is overwritten"));
    chkLockPenAfterPlot = tick("chkLockPenAfterPlot", tr("Lock the pen after a plot"));
    chkDisplaySplash = tick("chkDisplaySplash", tr("Show the splash screen at start"));
    chkOpenSettings = tick("chkOpenSettings", tr("Open the settings when an instrument connects"));

    auto* const appearance = new QGroupBox(tr("Appearance"));
    auto* const looks = new QGridLayout(appearance);
    combFontSelection = named(new QComboBox(appearance), "combFontSelection");
    combFontSelection->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combFontSelection->setMinimumContentsLength(18);
    combFontSelection->setAccessibleName(tr("Default font"));
    combFontSelection->installEventFilter(this);
    looks->addWidget(new QLabel(tr("Default font"), appearance), 0, 0, 1, 3);
    looks->addWidget(combFontSelection, 1, 0, 1, 3);
    sldGraticuleShade = named(new QSlider(Qt::Horizontal, appearance), "sldGraticuleShade");
    sldGraticuleShade->setRange(0, static_cast<int>(options::kShadeStops.size()) - 1);
    sldGraticuleShade->setPageStep(1);
    sldGraticuleShade->setTickPosition(QSlider::TicksBelow);
    sldGraticuleShade->setAccessibleName(tr("Graticule shade"));
    lblShade = named(new ColourLabel(appearance), "lblShade");
    lblShade->setFocusPolicy(Qt::NoFocus);
    lblShade->setAccessibleName(tr("Chosen graticule shade"));
    looks->addWidget(new QLabel(tr("Graticule shade"), appearance), 2, 0, 1, 2);
    looks->addWidget(lblShade, 2, 2);
    looks->addWidget(new QLabel(tr("Light"), appearance), 3, 0);
    looks->addWidget(sldGraticuleShade, 3, 1);
    looks->addWidget(new QLabel(tr("Dark"), appearance), 3, 2);
    looks->setColumnStretch(1, 1);
    looks->setRowStretch(4, 1);

    auto* const folders = new QGroupBox(tr("File paths"));
    auto* const paths = new QGridLayout(folders);
    const QString kinds[] = {tr("Plot files"), tr("Export files"), tr("Script files"), tr("Update files")};
    for (std::size_t i = 0; i < txtFilePaths.size(); ++i) {
        txtFilePaths[i] = named(new QLineEdit(folders), "txtFilePaths", i);
        txtFilePaths[i]->setAccessibleName(kinds[i]);
        txtFilePaths[i]->setMinimumWidth(fontMetrics().averageCharWidth() * 44);
        btnSetPath[i] = named(new QPushButton(tr("Browse to folder"), folders), "btnSetPath", i);
        btnSetPath[i]->setToolTip(plainTip(btnSetPath[i]->text()));
        btnSetPath[i]->setAccessibleName(QStringLiteral("%1: %2").arg(kinds[i], btnSetPath[i]->text()));
        btnSetPath[i]->setAutoDefault(false);
        auto* const label = new QLabel(kinds[i], folders);
        label->setBuddy(txtFilePaths[i]);
        const int row = static_cast<int>(i);
        paths->addWidget(label, row, 0);
        paths->addWidget(txtFilePaths[i], row, 1);
        paths->addWidget(btnSetPath[i], row, 2);
    }

    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    layout->addWidget(prompts, 0, 0);
    layout->addWidget(appearance, 0, 1);
    layout->addWidget(folders, 1, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
    return page;
}
