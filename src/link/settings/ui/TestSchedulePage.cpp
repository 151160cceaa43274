// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/TestSchedulePage.h"

#include "link/TestSchedule.h"
#include "link/settings/SettingsChannel.h"
#include "link/settings/ui/SettingsControls.h"

#include <QCheckBox>
#include <QVBoxLayout>

using namespace settingscontrols;

TestSchedulePage::TestSchedulePage(SettingsChannel& channel, QWidget* parent)
    : QWidget(parent)
    , m_channel(channel)
    , chkTestSchedule(make<QCheckBox>("chkTestSchedule", tr("Run the test schedule")))
{
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(chkTestSchedule);
    layout->addStretch();
    connect(chkTestSchedule, &QCheckBox::clicked, this, [this](bool checked) {
        testschedule::set(checked, m_channel.context().preferences, m_channel.context().device);
    });
}

void TestSchedulePage::refresh()
{
    showChecked(chkTestSchedule, isOffered());
}

bool TestSchedulePage::isOffered() const
{
    return testschedule::isOn(m_channel.context().preferences);
}

QList<QWidget*> TestSchedulePage::tabOrder() const
{
    return {chkTestSchedule};
}
