// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <vector>

/// One thing that the program can be told to do, registered by the class that does it. Menu entry, tool button, key and
/// popup entry all come from here, so a command has one text, one icon, one rule and one handler.
struct Command
{
    enum class Menu
    {
        File,
        Edit,
        View,
        Test,
        Masks,
        Window,
        Help
    };
    /// When the command is offered; rules add up.
    enum Rule
    {
        Always = 0,
        NeedsDocument = 1,
        NeedsInstrument = 2,
        NotDuringTest = 4,
        NotViewOnly = 8 ///< not in a document that may only be viewed
    };

    QString name = {}; ///< unique; the object name of its menu entry
    Menu menu = Menu::File;
    int place = 0;                      ///< order within the menu; a line stands between hundreds
    QString text = {};                  ///< as in the menu, with its mnemonic; translated
    QString icon = {};                  ///< name of a drawing, or empty
    QString shortcut = {};              ///< portable text; alternatives divided by "; "
    QString statusTip = {};             ///< one sentence without a full stop; translated
    std::function<void()> handler = {}; ///< may run nested event loops and may add commands
    int rules = Always;
    bool checkable = false;
    bool functionKey = false; ///< its key works in the settings dialog too
    QString toolBarKey = {};  ///< key of its button in the toolbar or pen bar, or empty
    QString popupEntry = {};  ///< identifier of its entry in a document's popup, or empty
};

/// What holds at present, as far as the rules of commands ask.
struct CommandConditions
{
    bool document = false;
    bool instrument = false;
    bool testRuns = false;
    bool viewOnly = false; ///< the document is of a format that may only be viewed

    bool allow(int rules) const;
    bool operator==(const CommandConditions&) const = default;
};

/// The commands of the program with their states. A command is enabled when the conditions allow its rules and its
/// owner has not disabled it for a reason of its own. Commands stay registered as long as the registry lives; their
/// handlers must not outlive what they use.
class CommandRegistry : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The name is new, the handler is there. The reference stays valid.
    const Command& add(Command command);
    /// Null for a name that nobody has registered.
    const Command* find(const QString& name) const;
    /// In the order of registration.
    std::vector<const Command*> commands() const;
    /// The command behind a button, whatever the case of its key, or behind an entry of the popup; null when the
    /// feature is not there.
    const Command* findButton(const QString& toolBarKey) const;
    const Command* findPopupEntry(const QString& identifier) const;

    void setConditions(const CommandConditions& conditions);
    const CommandConditions& conditions() const { return m_conditions; }
    /// The owner's word. An unknown name changes nothing here and reads as disabled and unchecked.
    void setEnabled(const QString& name, bool enabled);
    void setChecked(const QString& name, bool checked);
    bool isEnabled(const QString& name) const;
    bool isChecked(const QString& name) const;

    /// Runs the handler. False, with nothing done, for a command that is disabled or unknown.
    bool trigger(const QString& name);

Q_SIGNALS:
    void added(const QString& name);
    void enabledChanged(const QString& name, bool enabled);
    void checkedChanged(const QString& name, bool checked);

private:
    struct Entry
    {
        Command command;
        bool allowed = true;
        bool checked = false;
    };
    const Entry* entry(const QString& name) const;
    bool enabled(const Entry& entry) const { return entry.allowed && m_conditions.allow(entry.command.rules); }

    std::map<QString, Entry> m_entries;
    std::vector<const Command*> m_order;
    CommandConditions m_conditions;
};
