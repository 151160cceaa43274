// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// Plays the sounds that go with messages.
class EventSounds
{
public:
    virtual ~EventSounds() = default;
    /// Starts the sound of an event of the freedesktop.org sound naming scheme and returns at once. Silence is
    /// no failure.
    virtual void play(const QString& eventName) = 0;
};

/// The event of a message by its icon number (the message's style divided by 16). Numbers beyond the six known ones
/// have the sound of the bell.
QString eventNameOfIcon(int icon);

/// Sounds through the desktop's sound theme, by whichever player is installed; silent where there is none. The player
/// is a program of its own, so a sound server that hangs or complains never reaches this one.
class DesktopSounds : public EventSounds
{
public:
    struct Command
    {
        QString program; ///< empty: stay silent
        QStringList arguments;
    };

    void play(const QString& eventName) override;

    /// What play() would start. The player that follows the desktop's own theme and its off switch comes first; else
    /// the sound file is looked up in the theme that every other inherits from.
    static Command commandFor(const QString& eventName);
    /// The file of an event; where it has none, that of the more general name before its last "-". Empty when there is
    /// none or the theme has it disabled.
    static QString soundFileOf(const QString& eventName);
};
