// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/AnswerWatch.h"

#include "instrument/InstrumentEvents.h"

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
    connect(&events, &InstrumentEvents::changed, this, &AnswerWatch::heard);
    connect(&events, &InstrumentEvents::stateComplete, this, &AnswerWatch::answered);
}

void AnswerWatch::connected()
{
    m_awaited = kAsked;
    m_answered = false;
    m_quiet.start();
    m_sinceAsked.start();
}

void AnswerWatch::lost()
{
    m_awaited = 0;
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
    if (--m_awaited > 0)
        heard();
    else
        giveUp();
}

void AnswerWatch::giveUp()
{
    m_awaited = 0;
    m_quiet.stop();
    Q_EMIT completed();
}
