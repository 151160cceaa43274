#pragma once

#include <QString>
#include <QVariant>

/// The settings store: application, section and key to text, one INI file per application title.
///
/// Every reader asks the store at the moment it needs a value. Two copies of the program may write at once: a save
/// changes its own key only and loses no key of the other. A damaged file is set aside (NAME.damaged-N) and the store
/// starts empty; damaged() tells so once.
class SettingsStore
{
public:
    /// The folder of the INI files; created on the first save. Default: the user's configuration folder.
    explicit SettingsStore(QString folder = {});

    /// The stored text, or the default turned into text when the key is absent (a flag as "True" or "False").
    QString GetSetting(const QString& application, const QString& section, const QString& key,
                       const QVariant& defaultValue) const;
    /// Writes the text form of the value; false when it could not be written (read-only folder, full disk).
    bool SaveSetting(const QString& application, const QString& section, const QString& key, const QVariant& value);
    bool contains(const QString& application, const QString& section, const QString& key) const;

    const QString& folder() const { return m_folder; }
    /// Path under which a damaged file was set aside since the last call; empty when none was.
    QString takeDamaged();

private:
    QString m_folder;
};
