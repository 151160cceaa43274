// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/SerialNumber.h"

#include <algorithm>

namespace sim {

bool isSerialNumber(const QByteArray& text)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
               c == '-';
    };
    return !text.isEmpty() && text.size() <= 32 && text.front() != '.' &&
           std::all_of(text.begin(), text.end(), allowed);
}

} // namespace sim
