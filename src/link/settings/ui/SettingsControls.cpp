// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/SettingsControls.h"

#include "link/settings/ui/FrequencyEdit.h"

namespace settingscontrols {

QPushButton* makeButton(const char* name, const QString& text)
{
    auto* const button = make<QPushButton>(name, text);
    button->setAutoDefault(false);
    return button;
}

FrequencyEdit* makeFrequency(const char* name, const QString& accessibleName, int lowest)
{
    constexpr int kBoxMargins = 14;
    auto* const box = make<FrequencyEdit>(name, lowest);
    box->setAccessibleName(accessibleName);
    box->setMaxLength(32);
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("50000000.0")) + kBoxMargins);
    return box;
}

QSlider* makeSlider(const char* name, const QString& accessibleName)
{
    auto* const slider = make<QSlider>(name, Qt::Horizontal);
    slider->setAccessibleName(accessibleName);
    slider->setMinimumWidth(140);
    return slider;
}

QLabel* makeValue(const char* name, const QString& widest)
{
    auto* const label = make<QLabel>(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
    return label;
}

QLabel* makePrompt(const QString& text, QWidget* buddy)
{
    auto* const label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

QProgressBar* makeBar(const char* name, const QString& accessibleName, int highest)
{
    auto* const bar = make<QProgressBar>(name);
    bar->setAccessibleName(accessibleName);
    bar->setRange(0, highest);
    bar->setTextVisible(false);
    return bar;
}

void showChecked(QAbstractButton* button, bool checked)
{
    const QSignalBlocker quiet(button);
    button->setChecked(checked);
}

void tabToChosen(std::initializer_list<QRadioButton*> group)
{
    for (QRadioButton* option : group)
        option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

void onChoice(QRadioButton* option, const std::function<void()>& handler)
{
    QObject::connect(option, &QRadioButton::toggled, option, [handler](bool chosen) {
        if (chosen)
            handler();
    });
}

void onScroll(QSlider* slider, const std::function<void(int)>& follow, const std::function<void(int)>& commit)
{
    QObject::connect(slider, &QSlider::valueChanged, slider, [slider, follow, commit](int value) {
        follow(value);
        if (!slider->isSliderDown())
            commit(value);
    });
    QObject::connect(slider, &QSlider::sliderReleased, slider, [slider, commit] { commit(slider->value()); });
}

} // namespace settingscontrols
