// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QCheckBox;
class SettingsChannel;

/// The privilege of the test schedule: a click takes effect and is saved at once.
class TestSchedulePage : public QWidget
{
    Q_OBJECT

public:
    /// The channel outlives the page.
    explicit TestSchedulePage(SettingsChannel& channel, QWidget* parent = nullptr);

    void refresh();
    /// Whether the page is to be offered.
    bool isOffered() const;
    QList<QWidget*> tabOrder() const;

private:
    SettingsChannel& m_channel;
    QCheckBox* chkTestSchedule;
};
