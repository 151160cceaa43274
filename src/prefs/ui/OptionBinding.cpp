// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/OptionBinding.h"

#include "prefs/SettingsStore.h"
#include "values/Conversions.h"
#include "widgets/ui/ColourLabel.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>

#include <utility>

OptionBinding::OptionBinding(OptionPlace place, OptionControl control, OnDefault onDefault)
    : m_place(std::move(place))
    , m_control(std::move(control))
    , m_onDefault(onDefault)
{}

void OptionBinding::load()
{
    m_stored = m_place.stored();
    m_control.show(m_stored ? m_place.meaning(*m_stored) : m_place.defaultText());
    m_shown = m_control.text();
}

bool OptionBinding::save()
{
    const std::optional<QString> text = m_control.text();
    if (!text)
        return true;
    const bool changedHere = text != m_shown;
    const bool changedElsewhere = m_place.stored() != m_stored;
    if (changedElsewhere && !changedHere)
        return true;
    m_shown = m_stored = text;
    return m_place.store(*text);
}

bool OptionBinding::reset()
{
    if (m_onDefault == OnDefault::Stays)
        return true;
    const bool stored = m_place.store(m_place.defaultText());
    load();
    return stored;
}

void OptionBindings::add(OptionPlace place, OptionControl control, OnDefault onDefault)
{
    m_bindings.emplace_back(std::move(place), std::move(control), onDefault);
}

void OptionBindings::load()
{
    for (OptionBinding& binding : m_bindings)
        binding.load();
}

bool OptionBindings::save(Preferences& preferences)
{
    SettingsStore::Batch batch(preferences.store());
    bool stored = true;
    for (OptionBinding& binding : m_bindings)
        stored = binding.save() && stored;
    return batch.commit() && stored;
}

bool OptionBindings::reset(Preferences& preferences)
{
    SettingsStore::Batch batch(preferences.store());
    bool stored = true;
    for (OptionBinding& binding : m_bindings)
        stored = binding.reset() && stored;
    return batch.commit() && stored;
}

OptionPlace optionplace::of(Preferences& preferences, const options::FolderOption& folder,
                            const std::function<QString()>& documentsFolder)
{
    OptionPlace place = of(preferences, folder.option);
    place.defaultText = [folder, documentsFolder] { return Preferences::defaultFolder(folder, documentsFolder()); };
    return place;
}

namespace optioncontrol {

OptionControl of(QAbstractButton* checkBox)
{
    using options::CheckBox;
    return {[checkBox](const QString& text) { checkBox->setChecked(text == Preferences::textFor<CheckBox>(true)); },
            [checkBox] { return Preferences::textFor<CheckBox>(checkBox->isChecked()); }};
}

OptionControl of(ColourLabel* label)
{
    return {[label](const QString& text) { label->setColour(text.toUInt()); },
            [label] { return Preferences::textFor<options::Colour>(label->colour()); }};
}

OptionControl of(QLineEdit* box)
{
    return {[box](const QString& text) { box->setText(text); }, [box] { return box->text(); }};
}

OptionControl of(QComboBox* list)
{
    return {[list](const QString& text) {
                list->setCurrentIndex(list->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
            },
            [list] { return list->currentIndex() < 0 ? std::optional<QString>() : list->currentText(); }};
}

OptionControl of(const std::vector<Choice>& choices, QAbstractButton* otherwise)
{
    return {[choices, otherwise](const QString& text) {
                for (const Choice& choice : choices) {
                    if (choice.text == text) {
                        choice.button->setChecked(true);
                        return;
                    }
                }
                if (otherwise != nullptr)
                    otherwise->setChecked(true);
            },
            [choices]() -> std::optional<QString> {
                for (const Choice& choice : choices) {
                    if (choice.button->isChecked())
                        return choice.text;
                }
                return {};
            }};
}

OptionControl flag(QAbstractButton* yes, QAbstractButton* no)
{
    return of({{yes, values::booleanText(true)}, {no, values::booleanText(false)}}, no);
}

} // namespace optioncontrol
