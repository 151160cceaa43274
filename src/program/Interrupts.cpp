// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/Interrupts.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};
// The handler may do next to nothing, so it wakes the event loop through a pipe.
std::array<int, 2> wakeUp = {-1, -1};
volatile std::sig_atomic_t longestEnd = 0; // seconds; 0: no limit

void onSignal(int)
{
    const char byte = 0;
    // From here on, not from the event loop: the program may be stuck outside it.
    if (longestEnd > 0)
        ::alarm(static_cast<unsigned>(longestEnd));
    // The default action is back by SA_RESETHAND. A full pipe has woken the loop already.
    [[maybe_unused]] const auto written = ::write(wakeUp[1], &byte, 1);
}

} // namespace

Interrupts::Interrupts(unsigned patience, QObject* parent)
    : QObject(parent)
{
    longestEnd = static_cast<std::sig_atomic_t>(patience);
    if (::pipe2(wakeUp.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &Interrupts::readWakeUp);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int number : kSignals)
        ::sigaction(number, &action, nullptr);
}

Interrupts::~Interrupts()
{
    for (const int number : kSignals)
        std::signal(number, SIG_DFL);
    for (int& end : wakeUp) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

void Interrupts::readWakeUp()
{
    std::array<char, 16> bytes;
    while (::read(wakeUp[0], bytes.data(), bytes.size()) > 0) {
    }
    Q_EMIT interrupted();
}
