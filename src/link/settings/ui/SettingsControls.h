// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QLatin1String>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>

#include <functional>
#include <initializer_list>
#include <utility>

class FrequencyEdit;

/// The controls that the pages of the settings dialog are made of, each under its name. An accessible name is given
/// where no text of its own stands on the control.
namespace settingscontrols {

template <typename Control, typename... Arguments>
Control* make(const char* name, Arguments&&... arguments)
{
    auto* const control = new Control(std::forward<Arguments>(arguments)...);
    control->setObjectName(QLatin1String(name));
    return control;
}

/// Never the dialog's default: Enter belongs to the boxes.
QPushButton* makeButton(const char* name, const QString& text);
/// A box that takes frequencies from the lowest up.
FrequencyEdit* makeFrequency(const char* name, const QString& accessibleName, int lowest = 0);
QSlider* makeSlider(const char* name, const QString& accessibleName);
/// A label for a value, wide enough that it does not push its neighbours about.
QLabel* makeValue(const char* name, const QString& widest);
/// A label in front of a control that Alt and its letter lead to.
QLabel* makePrompt(const QString& text, QWidget* buddy);
QProgressBar* makeBar(const char* name, const QString& accessibleName, int highest);

/// Shows a state without telling the handlers.
void showChecked(QAbstractButton* button, bool checked);
/// Tab leads to the chosen option of a group, the arrow keys from there to the others.
void tabToChosen(std::initializer_list<QRadioButton*> group);
/// The handler runs when the option becomes the chosen one.
void onChoice(QRadioButton* option, const std::function<void()>& handler);
/// Follow runs with every value of the slider, commit when it is let go; keys and clicks beside it count at once.
void onScroll(QSlider* slider, const std::function<void(int)>& follow, const std::function<void(int)>& commit);

} // namespace settingscontrols
