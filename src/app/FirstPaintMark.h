// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

/// With MARROWICK_STARTUP_MARK set in the environment, prints the line "first paint" on stdout when the main window has
/// been painted for the first time, and "started" when everything that the command line asked for stands on the screen:
/// what the start-up benchmark waits for. Does nothing otherwise.
class FirstPaintMark : public QObject
{
public:
    FirstPaintMark();

    /// The command line has been acted on; what remains is to paint.
    void startedUp();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
