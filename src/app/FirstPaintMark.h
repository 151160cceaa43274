#pragma once

#include <QObject>

/// With MARROWICK_STARTUP_MARK set in the environment, prints the line "first paint" on stdout when the main window has
/// been painted for the first time: what the start-up benchmark waits for. Does nothing otherwise.
class FirstPaintMark : public QObject
{
public:
    FirstPaintMark();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
