// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/LimitBoxes.h"

#include "values/Conversions.h"
#include "view/ui/Controls.h"

#include <QLabel>
#include <QPointer>

using namespace viewcontrols;

namespace {

std::size_t at(ViewOptions::End end)
{
    return static_cast<std::size_t>(end);
}

} // namespace

LimitBoxes::LimitBoxes(const Names& names, Rules rules, QGroupBox* frame)
    : QWidget(frame)
    , m_rules(std::move(rules))
{
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setColumnStretch(1, 1);
    for (const End end : {End::Upper, End::Lower}) {
        const std::size_t i = at(end);
        const int row = static_cast<int>(i);
        auto* const label = new QLabel(names.caption[i], this);
        m_boxes[i] = named(new NumberEdit(keyfilter::large, this), names.box[i]);
        m_boxes[i]->setAccessibleName(frame->title() + QStringLiteral(": ") + withoutAccessKey(names.caption[i]));
        // Room for the longest limits, whatever else the page holds.
        const int digit = fontMetrics().averageCharWidth();
        m_boxes[i]->setMinimumWidth(14 * digit);
        label->setBuddy(m_boxes[i]);
        QPushButton* const setter = button(this, names.button[i], tr("Set"), [this, end] { set(end); });
        setter->setMaximumWidth(10 * digit);
        setter->setAccessibleName(tr("Set ") + withoutAccessKey(names.caption[i]));
        grid->addWidget(label, row, 0);
        grid->addWidget(m_boxes[i], row, 1);
        grid->addWidget(setter, row, 2);
        connect(m_boxes[i], &NumberEdit::entered, this, [this, end] {
            NumberEdit* const other = m_boxes[1 - at(end)];
            const QPointer<LimitBoxes> self(this);
            set(end);
            if (self)
                other->setFocus();
        });
    }
    frame->layout()->addWidget(this);
}

void LimitBoxes::set(End end)
{
    NumberEdit* const box = m_boxes[at(end)];
    const QString typed = box->text();
    const QPointer<LimitBoxes> self(this);
    const bool taken = m_rules.set(end, typed);
    if (!self)
        return;
    box->setModified(false);
    refresh();
    if (!taken)
        box->refuse(tr("\"%1\" is no limit of this axis.").arg(typed));
}

void LimitBoxes::refresh(bool force)
{
    for (const End end : {End::Upper, End::Lower}) {
        if (NumberEdit* const box = m_boxes[at(end)]; force || !box->isModified()) {
            box->setText(values::decimalText(m_rules.limit(end)));
            box->setCursorPosition(0); // the first digits tell most
        }
    }
}

void LimitBoxes::setFilter(keyfilter::Filter filter)
{
    for (NumberEdit* box : m_boxes)
        box->setFilter(filter);
}

LimitsGroup::Texts LimitsGroup::texts(const QString& unit)
{
    return {tr("&Automatic"),          tr("Manua&l"),     tr("Upp&er limit") + unit,
            tr("Lower limi&t") + unit, tr("&Full range"), tr("Set to current &zoom limits")};
}

LimitsGroup::LimitsGroup(const Names& names, const Texts& texts, ViewOptions& options, ViewOptions::Quantity quantity,
                         QWidget* parent)
    : QWidget(parent)
    , m_options(options)
    , m_quantity(quantity)
    , m_scale(frame(QString(), names.scaleFrame, this))
    , m_range(frame(QString(), names.rangeFrame, this))
{
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(m_scale);
    whole->addWidget(m_range);
    m_automatic = option(m_scale, names.automatic, texts.automatic, [this] { setAutomatic(true); });
    m_manual = option(m_scale, names.manual, texts.manual, [this] { setAutomatic(false); });
    m_limits = new LimitBoxes({names.box, names.button, {texts.upper, texts.lower}},
                              {[&options, quantity](ViewOptions::End end, const QString& text) {
                                   return options.setLimit(quantity, end, text);
                               },
                               [&options, quantity](ViewOptions::End end) { return options.limit(quantity, end); }},
                              m_range);
    const auto add = [this](const char* name, const QString& text, void (ViewOptions::*step)(ViewOptions::Quantity)) {
        auto* const made = button(this, QLatin1String(name), text, [this, step] {
            ViewOptions& changed = m_options;
            const ViewOptions::Quantity limited = m_quantity;
            const QPointer<LimitsGroup> self(this);
            (changed.*step)(limited);
            if (self)
                refresh(true);
        });
        m_range->layout()->addWidget(made);
        return made;
    };
    add(names.whole, texts.whole, &ViewOptions::setWholeExtent);
    if (names.zoom != nullptr)
        m_zoom = add(names.zoom, texts.zoom, &ViewOptions::setToZoom);
}

void LimitsGroup::setTitles(const QString& scale, const QString& range)
{
    m_scale->setTitle(scale);
    m_range->setTitle(range);
    for (QAbstractButton* choice : {m_automatic, m_manual})
        choice->setAccessibleName(scale + QStringLiteral(": ") + withoutAccessKey(choice->text()));
}

void LimitsGroup::setAutomatic(bool automatic)
{
    m_options.setAutomatic(m_quantity, automatic);
    refresh(true);
}

void LimitsGroup::refresh(bool force)
{
    const bool automatic = m_options.isAutomatic(m_quantity);
    m_automatic->setChecked(automatic);
    m_manual->setChecked(!automatic);
    m_range->setEnabled(!automatic);
    m_limits->setFilter(m_options.extent(m_quantity).small ? keyfilter::small : keyfilter::large);
    m_limits->refresh(force);
    if (m_zoom != nullptr)
        m_zoom->setEnabled(m_options.isZoomed());
}
