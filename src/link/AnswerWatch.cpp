// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/AnswerWatch.h"

#include "instrument/InstrumentEvents.h"

#include <algorithm>

AnswerWatch::AnswerWatch(InstrumentEvents& events, QObject* parent)
    : QObject(parent)
{
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(kQuiet);
    // The default kind of timer may fire a twentieth early, which would count a frame in time as missing.
    m_quiet.setTimerType(Qt::PreciseTimer);
    connect(&m_quiet, &QTimer::timeout, this, &AnswerWatch::giveUp);
    connect(&events, &InstrumentEvents::connected, this, &AnswerWatch::connected);
    connect(&events, &InstrumentEvents::lost, this, &AnswerWatch::lost);
    connect(&events, &InstrumentEvents::changed, this, [this](MirrorPart part) {
        heard();
        if (part == MirrorPart::SerialNumber)
            named();
    });
    connect(&events, &InstrumentEvents::stateComplete, this, &AnswerWatch::answered);
}

void AnswerWatch::connected()
{
    m_awaited = kAsked;
    m_awaitsName = true;
    m_answered = false;
    m_quiet.start();
    m_sinceAsked.start();
}

void AnswerWatch::lost()
{
    m_awaited = 0;
    m_awaitsName = false;
    m_answered = false;
    m_quiet.stop();
}

void AnswerWatch::heard()
{
    if (complete())
        return;
    if (m_sinceAsked.hasExpired(kLongest))
        giveUp();
    else
        m_quiet.start();
}

void AnswerWatch::answered()
{
    if (complete())
        return;
    m_answered = true;
    m_awaited = std::max(0, m_awaited - 1);
    if (complete())
        giveUp();
    else
        heard();
}

void AnswerWatch::named()
{
    if (complete())
        return;
    m_awaitsName = false;
    if (complete())
        giveUp();
}

void AnswerWatch::giveUp()
{
    m_awaited = 0;
    m_awaitsName = false;
    m_quiet.stop();
    Q_EMIT completed();
}
