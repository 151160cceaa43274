// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Options.h"

#include <QString>

#include <optional>

class SettingsStore;

/// The declared options (Options.h) read from and written to a store under the program's title. Nothing is cached: each
/// call asks the store.
///
/// A stored text that is no value of the option's form reads as the default.
class Preferences
{
public:
    /// The store outlives this. The instance title, with its number, keeps the window position; where it is empty the
    /// program's title does.
    Preferences(SettingsStore& store, QString applicationTitle, QString instanceTitle = {});

    /// For a SettingsStore::Batch around several settings.
    SettingsStore& store() { return m_store; }
    const QString& applicationTitle() const { return m_applicationTitle; }
    const QString& instanceTitle() const { return m_instanceTitle; }
    void setInstanceTitle(const QString& title) { m_instanceTitle = title; }

    template <typename Form>
    typename Form::Value value(const options::Option<Form>& option) const
    {
        return valueOr(option, fromDefault<Form>(option.defaultValue));
    }
    /// For readers that have a default of their own.
    template <typename Form>
    typename Form::Value valueOr(const options::Option<Form>& option, const typename Form::Value& fallback) const
    {
        return read<Form>(titleOf(option), option.section, option.key, fallback);
    }
    /// False when the store could not be written.
    template <typename Form>
    bool setValue(const options::Option<Form>& option, const typename Form::Value& value)
    {
        return write(titleOf(option), option.section, option.key, textOf(Form(), value));
    }
    /// Writes the declared default.
    template <typename Form>
    bool setDefault(const options::Option<Form>& option)
    {
        return setValue(option, fromDefault<Form>(option.defaultValue));
    }
    /// The stored text as it is, the default's text when there is none.
    template <typename Form>
    QString text(const options::Option<Form>& option) const
    {
        return stored(titleOf(option), option.section, option.key,
                      textOf(Form(), fromDefault<Form>(option.defaultValue)));
    }
    template <typename Form>
    bool contains(const options::Option<Form>& option) const
    {
        return has(titleOf(option), option.section, option.key);
    }

    template <typename Form>
    typename Form::Value value(const options::NumberedOption<Form>& option, int number) const
    {
        return read<Form>(m_applicationTitle, option.section, option.keyStem + QString::number(number),
                          fromDefault<Form>(option.defaultValue));
    }
    template <typename Form>
    bool setValue(const options::NumberedOption<Form>& option, int number, const typename Form::Value& value)
    {
        return write(m_applicationTitle, option.section, option.keyStem + QString::number(number),
                     textOf(Form(), value));
    }

    /// Settings of the instrument with this serial number. An absent key gives the fallback, usually the value that the
    /// program's variable has at that moment.
    template <typename Form>
    typename Form::Value value(const QString& strDeviceSerial, const options::InstrumentOption<Form>& option,
                               const typename Form::Value& fallback) const
    {
        return read<Form>(m_applicationTitle, strDeviceSerial, option.key, fallback);
    }
    template <typename Form>
    typename Form::Value value(const QString& strDeviceSerial, const options::InstrumentOption<Form>& option) const
    {
        return value(strDeviceSerial, option, fromDefault<Form>(option.defaultValue));
    }
    template <typename Form>
    bool setValue(const QString& strDeviceSerial, const options::InstrumentOption<Form>& option,
                  const typename Form::Value& value)
    {
        return write(m_applicationTitle, strDeviceSerial, option.key, textOf(Form(), value));
    }

    /// The text that the store gets for a value of the option's form.
    template <typename Form>
    static QString textFor(const typename Form::Value& value)
    {
        return textOf(Form(), value);
    }
    template <template <typename> typename Declaration, typename Form>
    static QString defaultText(const Declaration<Form>& option)
    {
        return textOf(Form(), fromDefault<Form>(option.defaultValue));
    }
    /// What a stored text means to readers of the option.
    template <template <typename> typename Declaration, typename Form>
    static typename Form::Value meaning(const Declaration<Form>& option, const QString& text)
    {
        return valueOf(Form(), text, fromDefault<Form>(option.defaultValue));
    }

    /// The stored text as it is; nothing when there is none.
    template <typename Form>
    std::optional<QString> storedText(const options::Option<Form>& option) const
    {
        return found(titleOf(option), option.section, option.key);
    }
    template <typename Form>
    std::optional<QString> storedText(const QString& strDeviceSerial,
                                      const options::InstrumentOption<Form>& option) const
    {
        return found(m_applicationTitle, strDeviceSerial, option.key);
    }
    /// Stores a text as it is. It must be one of the option's form.
    template <typename Form>
    bool setText(const options::Option<Form>& option, const QString& text)
    {
        return write(titleOf(option), option.section, option.key, text);
    }
    template <typename Form>
    bool setText(const QString& strDeviceSerial, const options::InstrumentOption<Form>& option, const QString& text)
    {
        return write(m_applicationTitle, strDeviceSerial, option.key, text);
    }

    /// The folder that the preferences dialog offers where none is stored.
    static QString defaultFolder(const options::FolderOption& folder, const QString& documentsFolder)
    {
        return documentsFolder + folder.belowDocuments;
    }

private:
    template <typename Form>
    static typename Form::Value fromDefault(const typename options::DefaultOf<Form>::Type& value)
    {
        return typename Form::Value(value);
    }
    template <typename Form>
    const QString& titleOf(const options::Option<Form>& option) const
    {
        return option.title == options::Title::Instance && !m_instanceTitle.isEmpty() ? m_instanceTitle
                                                                                      : m_applicationTitle;
    }
    template <typename Form>
    typename Form::Value read(const QString& title, const QString& section, const QString& key,
                              const typename Form::Value& fallback) const
    {
        const std::optional<QString> text = found(title, section, key);
        return text ? valueOf(Form(), *text, fallback) : fallback;
    }

    std::optional<QString> found(const QString& title, const QString& section, const QString& key) const;
    bool has(const QString& title, const QString& section, const QString& key) const;
    QString stored(const QString& title, const QString& section, const QString& key, const QString& fallback) const;
    bool write(const QString& title, const QString& section, const QString& key, const QString& text);

    static QString textOf(options::Flag, bool value);
    static QString textOf(options::CheckBox, bool value);
    static QString textOf(options::Switch, bool value) { return textOf(options::CheckBox(), value); }
    static QString textOf(options::Integer, std::int32_t value);
    static QString textOf(options::Single, float value);
    static QString textOf(options::Double, double value);
    static QString textOf(options::Colour, std::uint32_t value);
    static QString textOf(options::Text, const QString& value) { return value; }

    static bool valueOf(options::Flag, const QString& text, bool fallback);
    static bool valueOf(options::CheckBox, const QString& text, bool fallback);
    static bool valueOf(options::Switch, const QString& text, bool fallback);
    static std::int32_t valueOf(options::Integer, const QString& text, std::int32_t fallback);
    static float valueOf(options::Single, const QString& text, float fallback);
    static double valueOf(options::Double, const QString& text, double fallback);
    static std::uint32_t valueOf(options::Colour, const QString& text, std::uint32_t fallback);
    static QString valueOf(options::Text, const QString& text, const QString&) { return text; }

    SettingsStore& m_store;
    QString m_applicationTitle;
    QString m_instanceTitle;
};
