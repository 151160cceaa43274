// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdio>

/// A frame of 67 bytes: code, flag, four number fields, integer field, carriage return, line feed.
inline QByteArray frameText(char code, double n1 = 0, double n2 = 0, double n3 = 0, double n4 = 0, int i = 0,
                            char f = '1')
{
    char text[80];
    std::snprintf(text, sizeof text, "%c:%c %13.6g %13.6g %13.6g %13.6g %5d\r\n", code, f, n1, n2, n3, n4, i);
    return QByteArray(text, 67);
}
