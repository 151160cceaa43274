// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/program/EndSignals.h"

#include <csignal>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace sim {

namespace {

int g_endPipe[2] = {-1, -1};

void askToEnd(int)
{
    const char byte = 0;
    // Nothing can be done about a failure here; a full pipe means that the end was asked for before.
    [[maybe_unused]] const ssize_t written = ::write(g_endPipe[1], &byte, 1);
}

bool isIgnored(int signal)
{
    struct sigaction before = {};
    return ::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN;
}

} // namespace

int endDescriptor()
{
    if (::pipe2(g_endPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return -1;
    struct sigaction action = {};
    action.sa_handler = askToEnd;
    for (const int signal : {SIGINT, SIGTERM, SIGQUIT})
        ::sigaction(signal, &action, nullptr);
    if (!isIgnored(SIGHUP))
        ::sigaction(SIGHUP, &action, nullptr);
    // A reader that is gone and a file that may grow no further are told by the call that meets them.
    action.sa_handler = SIG_IGN;
    for (const int signal : {SIGPIPE, SIGXFSZ})
        ::sigaction(signal, &action, nullptr);
    return g_endPipe[0];
}

} // namespace sim
