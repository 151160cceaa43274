// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/ViewPages.h"

#include "view/ui/Controls.h"
#include "view/ui/LimitBoxes.h"
#include "widgets/ui/ColourLabel.h"
#include "widgets/ui/QtColour.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>

using namespace viewcontrols;

namespace {

using namespace Qt::StringLiterals;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

template <typename Layout>
Layout* bare(QWidget* page)
{
    auto* const layout = new Layout(page);
    layout->setContentsMargins({});
    return layout;
}

} // namespace

// Pens ----------------------------------------------------------------------------------------------------------------

PenPage::PenPage(ViewOptions& options, QWidget* parent)
    : QWidget(parent)
    , m_options(options)
{
    auto* const grid = new QGridLayout;
    const QString headings[] = {tr("Pen"), tr("Display"), tr("Lock"), tr("Colour"), tr("Data")};
    for (int column = 0; column < 5; ++column)
        grid->addWidget(new QLabel(headings[column], this), 0, column);
    for (int pen = 0; pen < plot::kPens; ++pen)
        makeRow(pen, *grid);
    grid->setColumnStretch(3, 1);

    auto* const all = new QVBoxLayout;
    const auto every = [this](void (PenDocument::*step)()) {
        return [this, step] {
            if (m_options.document() != nullptr)
                (m_options.document()->*step)();
        };
    };
    all->addWidget(button(this, u"cmdDisplayAll"_s, tr("Display &All"), every(&PenDocument::DisplayAllPens)));
    all->addWidget(button(this, u"cmdLockAll"_s, tr("&Lock All"), every(&PenDocument::LockAllPens)));
    all->addWidget(button(this, u"cmdUnlockAllPens"_s, tr("&Unlock All"), every(&PenDocument::UnlockAllPens)));
    all->addWidget(button(this, u"cmdEraseAll"_s, tr("&Erase All"), [this] { m_options.eraseAll(); }));
    all->addStretch();

    auto* const whole = bare<QHBoxLayout>(this);
    whole->addLayout(grid, 1);
    whole->addSpacing(fontMetrics().height());
    whole->addLayout(all);
}

void PenPage::makeRow(int pen, QGridLayout& grid)
{
    const QString name = tr("Pen %1").arg(pen + 1);
    const int row = pen + 1;
    auto* const display = chkDisplay[at(pen)] = named(new QCheckBox(this), "chkDisplay", pen);
    display->setAccessibleName(tr("Display %1").arg(name));
    connect(display, &QCheckBox::clicked, this, [this, pen](bool shown) { m_options.setDisplay(pen, shown); });
    auto* const lock = chkLock[at(pen)] = named(new QCheckBox(this), "chkLock", pen);
    lock->setAccessibleName(tr("Lock %1").arg(name));
    connect(lock, &QCheckBox::clicked, this, [this, pen](bool locked) {
        const QPointer<PenPage> self(this);
        m_options.setLock(pen, locked);
        // A refusal has left the box as it was clicked.
        if (self)
            refresh();
    });
    auto* const colour = lblColour[at(pen)] = named(new ColourLabel(this), "lblColour", pen);
    colour->setMinimumHeight(fontMetrics().height());
    colour->setToolTip(tr("Double click to change colour"));
    colour->setAccessibleName(tr("Colour of %1").arg(name));
    connect(colour, &ColourLabel::changeAsked, this, [this, pen] { lblColour_DblClick(pen); });
    auto* const erase = button(this, u"cmdErase_%1"_s.arg(pen), tr("Erase"), [this, pen] { m_options.erase(pen); });
    erase->setAccessibleName(tr("Erase %1").arg(name));
    grid.addWidget(new QLabel(name, this), row, 0);
    grid.addWidget(display, row, 1, Qt::AlignHCenter);
    grid.addWidget(lock, row, 2, Qt::AlignHCenter);
    grid.addWidget(colour, row, 3);
    grid.addWidget(erase, row, 4);
}

void PenPage::lblColour_DblClick(int pen)
{
    if (m_options.document() == nullptr)
        return;
    const QPointer<PenPage> self(this);
    const QColor chosen = QColorDialog::getColor(toQColor(m_options.graph().SubsetColors(pen)), window(),
                                                 tr("Colour of pen %1").arg(pen + 1));
    if (self && chosen.isValid())
        m_options.setColour(pen, fromQColor(chosen));
}

void PenPage::refresh()
{
    const PenDocument* const document = m_options.document();
    for (int pen = 0; document != nullptr && pen < plot::kPens; ++pen) {
        chkDisplay[at(pen)]->setChecked(document->GetPenDisplay(pen) == 0);
        chkLock[at(pen)]->setChecked(document->GetPenLock(pen) == 1);
        lblColour[at(pen)]->setColour(m_options.graph().SubsetColors(pen));
    }
}

// Display -------------------------------------------------------------------------------------------------------------

MiscellaneousPage::MiscellaneousPage(ViewOptions& options, QWidget* parent)
    : QWidget(parent)
    , m_options(options)
    , chkInformation(named(new QCheckBox(tr("Show test i&nformation")), "chkInformation"))
    , chkMarkPoints(named(new QCheckBox(tr("Mar&k Data Points")), "chkMarkPoints"))
{
    QGroupBox* const box = frame(tr("Miscellaneous"), "fMiscellaneous", this);
    box->layout()->addWidget(chkInformation);
    box->layout()->addWidget(chkMarkPoints);
    bare<QVBoxLayout>(this)->addWidget(box);
    connect(chkInformation, &QCheckBox::clicked, this, &MiscellaneousPage::chkInformation_Click);
    connect(chkMarkPoints, &QCheckBox::clicked, this, [this](bool on) { m_options.setMarkDataPoints(on); });
}

void MiscellaneousPage::chkInformation_Click()
{
    m_options.setInformation(chkInformation->isChecked());
}

void MiscellaneousPage::refresh()
{
    if (m_options.document() == nullptr)
        return;
    chkMarkPoints->setChecked(m_options.graph().MarkDataPoints());
    chkInformation->setChecked(!m_options.graph().SubTitle().isEmpty());
}

// Frequency -----------------------------------------------------------------------------------------------------------

FrequencyPage::FrequencyPage(ViewOptions& options, QWidget* parent)
    : QWidget(parent)
    , m_options(options)
{
    QGroupBox* const scale = frame(tr("Frequency axis scale"), "fFrequencyScale", this);
    optLog = option(scale, "optLog", tr("Logarit&hmic"), [this] { m_options.setFrequencyLinear(false); });
    optLinear = option(scale, "optLinear", tr("L&inear"), [this] { m_options.setFrequencyLinear(true); });
    QGroupBox* const limits = frame(tr("Frequency axis display limits"), "fFrequencyLimits", this);
    m_limits = new LimitBoxes(
        {{u"txtUpperFreqLimit"_s, u"txtLowerFreqLimit"_s},
         {u"cmdSetUpperFrequencyLimit"_s, u"cmdSetLowerFrequencyLimit"_s},
         {tr("&Upper, Hz"), tr("Lo&wer, Hz")}},
        {[this](ViewOptions::End end, const QString& text) { return m_options.setFrequencyLimit(end, text); },
         [this](ViewOptions::End end) { return m_options.frequencyLimit(end); }},
        limits);
    const auto add = [&](const QString& name, const QString& text, void (ViewOptions::*step)()) {
        auto* const made = button(this, name, text, [this, step] {
            const QPointer<FrequencyPage> self(this);
            (m_options.*step)();
            if (self)
                refresh(true);
        });
        limits->layout()->addWidget(made);
        return made;
    };
    add(u"cmdDefaultXAxis"_s, tr("Max Ran&ge"), &ViewOptions::setWholeFrequencyRange);
    cmdSetXAxisToZoomLevel =
        add(u"cmdSetXAxisToZoomLevel"_s, tr("Set to &current zoom extents"), &ViewOptions::setFrequencyToZoom);
    auto* const whole = bare<QVBoxLayout>(this);
    whole->addWidget(scale);
    whole->addWidget(limits);
}

void FrequencyPage::refresh(bool force)
{
    const PenDocument* const document = m_options.document();
    if (document == nullptr)
        return;
    optLinear->setChecked(document->graphGetFrequncyView());
    optLog->setChecked(!document->graphGetFrequncyView());
    m_limits->refresh(force);
    cmdSetXAxisToZoomLevel->setEnabled(m_options.isZoomed());
}

// Style ---------------------------------------------------------------------------------------------------------------

StylePage::StylePage(ViewOptions& options, QWidget* parent)
    : QWidget(parent)
    , m_options(options)
{
    QGroupBox* const legend = frame(tr("Legend Location"), "fLegend", this);
    const auto location = [&](const char* name, const QString& text, int where) {
        m_locations[at(where)] = option(legend, name, text, [this, where] { m_options.setLegendLocation(where); });
    };
    location("optTop", tr("&Top"), graph::LegendTop);
    location("optBottom", tr("&Bottom"), graph::LegendBottom);
    location("optLeft", tr("&Left"), graph::LegendLeft);
    location("optRight", tr("&Right"), graph::LegendRight);
    optInsideAxis = option(legend, "optInsideAxis", tr("&Inside axis"), [this] { m_options.setLegendInside(); });
    optHide = option(legend, "optHide", tr("&Hide"), [this] { m_options.hideLegend(); });

    QGroupBox* const font = frame(tr("Font"), "fFont", this);
    auto* const label = new QLabel(tr("&Font"), font);
    combFontSelection = named(new QComboBox(font), "combFontSelection");
    combFontSelection->setAccessibleName(tr("Font"));
    combFontSelection->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combFontSelection->setMinimumContentsLength(16);
    combFontSelection->installEventFilter(this);
    label->setBuddy(combFontSelection);
    font->layout()->addWidget(label);
    font->layout()->addWidget(combFontSelection);
    connect(combFontSelection, &QComboBox::textActivated, this,
            [this](const QString& name) { m_options.SetNewFont(name); });
    const auto size = [&](const char* name, const QString& text, int which) {
        m_sizes[at(which)] = option(font, name, text, [this, which] { m_options.setFontSize(which); });
    };
    size("optSmall", tr("Sm&all"), graph::FontSmall);
    size("optMedium", tr("M&edium"), graph::FontMedium);
    size("optLarge", tr("Lar&ge"), graph::FontLarge);

    QGroupBox* const colour = frame(tr("Colour / Monochrome "), "fColour", this);
    const auto style = [&](const char* name, const QString& text, int which) {
        m_styles[at(which)] = option(colour, name, text, [this, which] { m_options.setViewingStyle(which); });
    };
    style("optColour", tr("&Colour"), graph::StyleColour);
    style("optMonochrome", tr("Mo&nochrome"), graph::StyleMonochrome);
    style("optMonoSymbol", tr("Monochrome &with symbols"), graph::StyleMonochromeSymbols);

    auto* const grid = bare<QGridLayout>(this);
    grid->addWidget(legend, 0, 0, 2, 1);
    grid->addWidget(font, 0, 1);
    grid->addWidget(colour, 1, 1);
    static_cast<QVBoxLayout*>(legend->layout())->addStretch();
    PopulateTheFontSelectWindow();
}

void StylePage::PopulateTheFontSelectWindow()
{
    combFontSelection->clear();
    for (const QString& family : QFontDatabase::families()) {
        if (!QFontDatabase::isPrivateFamily(family))
            combFontSelection->addItem(family);
    }
}

bool StylePage::eventFilter(QObject* watched, QEvent* event)
{
    // Fonts are chosen, not typed.
    if (watched == combFontSelection && event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        const bool types = !key->text().isEmpty() && key->text().at(0).isPrint() && key->key() != Qt::Key_Space;
        if (types && (key->modifiers() & (Qt::AltModifier | Qt::ControlModifier)) == 0)
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void StylePage::refresh()
{
    if (m_options.document() == nullptr)
        return;
    const GraphModel& graph = m_options.graph();
    QRadioButton* const legend = !graph.ShowLegend() ? optHide
                                 : graph.LegendStyle() == graph::LegendInsideAxis
                                     ? optInsideAxis
                                     : m_locations[at(graph.LegendLocation())];
    legend->setChecked(true);
    QString font;
    m_options.GetFontFromGraph(font);
    // The graph may name a font that is not installed here.
    if (!font.isEmpty() && combFontSelection->findText(font) < 0)
        combFontSelection->insertItem(0, font);
    combFontSelection->setCurrentIndex(combFontSelection->findText(font));
    m_sizes[at(graph.FontSize())]->setChecked(true);
    m_styles[at(graph.ViewingStyle())]->setChecked(true);
}
