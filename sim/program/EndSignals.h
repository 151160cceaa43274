// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Signals that ask the program to end are told by a descriptor, so that what it has made is taken away again.
namespace sim {

/// A descriptor that becomes readable when the end was asked for by SIGINT, SIGTERM, SIGQUIT or SIGHUP; -1 with errno
/// set when there can be none. SIGHUP stays ignored where it was when the program began (nohup). To be called once.
int endDescriptor();

} // namespace sim
