// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Preferences.h"

#include <functional>
#include <optional>
#include <vector>

class ColourLabel;
class QAbstractButton;
class QComboBox;
class QLineEdit;

/// Where a bound option is stored, as texts.
struct OptionPlace
{
    std::function<std::optional<QString>()> stored; ///< nothing when the key is absent
    std::function<bool(const QString&)> store;      ///< false when the store could not be written
    std::function<QString()> defaultText;
    /// The text that readers of the option take a stored one for.
    std::function<QString(const QString&)> meaning;
};

/// How a control shows an option, as texts of the option's form.
struct OptionControl
{
    std::function<void(const QString&)> show;
    std::function<std::optional<QString>()> text; ///< nothing while the control shows no value
};

enum class OnDefault
{
    Resets,
    Stays ///< told to be left alone
};

/// One option and the control that shows it: the only place where the two meet, for loading, saving and default.
///
/// A save writes what the user has changed, and what the store lacks or holds in another spelling. What another copy of
/// the program has stored meanwhile stays unless the user changed it here too.
class OptionBinding
{
public:
    OptionBinding(OptionPlace place, OptionControl control, OnDefault onDefault);

    void load();
    /// False when the store could not be written.
    bool save();
    /// Stores the declared default and shows it; nothing for an option that stays.
    bool reset();

private:
    OptionPlace m_place;
    OptionControl m_control;
    OnDefault m_onDefault;
    std::optional<QString> m_stored; ///< by the last load or save
    std::optional<QString> m_shown;
};

/// The bindings of a window, in the order of loading and saving. The controls outlive them or are never asked again.
class OptionBindings
{
public:
    void add(OptionPlace place, OptionControl control, OnDefault onDefault = OnDefault::Resets);

    void load();
    /// One write for all. False when the store could not be written.
    bool save(Preferences& preferences);
    bool reset(Preferences& preferences);

    OptionBinding& operator[](std::size_t index) { return m_bindings[index]; }

private:
    std::vector<OptionBinding> m_bindings;
};

namespace optionplace {

/// An option of the program. The preferences outlive the place, here and below.
template <typename Form>
OptionPlace of(Preferences& preferences, const options::Option<Form>& option)
{
    return {[&preferences, option] { return preferences.storedText(option); },
            [&preferences, option](const QString& text) { return preferences.setText(option, text); },
            [option] { return Preferences::defaultText(option); },
            [option](const QString& text) { return Preferences::textFor<Form>(Preferences::meaning(option, text)); }};
}

/// The same without a meaning for texts of no known form: they are shown to the control as they stand.
template <typename Form>
OptionPlace exact(Preferences& preferences, const options::Option<Form>& option)
{
    OptionPlace place = of(preferences, option);
    place.meaning = [](const QString& text) { return text; };
    return place;
}

/// An option of the instrument whose serial number is asked for at each use.
template <typename Form>
OptionPlace of(Preferences& preferences, const options::InstrumentOption<Form>& option,
               const std::function<QString()>& serial)
{
    return {[&preferences, option, serial] { return preferences.storedText(serial(), option); },
            [&preferences, option, serial](const QString& text) { return preferences.setText(serial(), option, text); },
            [option] { return Preferences::defaultText(option); },
            [option](const QString& text) { return Preferences::textFor<Form>(Preferences::meaning(option, text)); }};
}

/// A folder; its default lies below the documents folder, which is asked for at each use.
OptionPlace of(Preferences& preferences, const options::FolderOption& folder,
               const std::function<QString()>& documentsFolder);

} // namespace optionplace

namespace optioncontrol {

/// One of several buttons, each with its text.
struct Choice
{
    QAbstractButton* button;
    QString text;
};

OptionControl of(QAbstractButton* checkBox); ///< "1" or "0"
OptionControl of(ColourLabel* label);        ///< decimal text of the colour
OptionControl of(QLineEdit* box);
/// The entry with exactly this text; none where the list has none.
OptionControl of(QComboBox* list);
/// The choice with exactly this text; where there is none the choice called otherwise, or no change.
OptionControl of(const std::vector<Choice>& choices, QAbstractButton* otherwise = nullptr);
/// "True" for the first button, "False" for the other.
OptionControl flag(QAbstractButton* yes, QAbstractButton* no);

} // namespace optioncontrol
