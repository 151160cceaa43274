// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QStandardPaths>
#include <QString>

#include <cstdint>

/// What the preferences windows need of the program's main window. frmMain implements it. Colours are 0x00BBGGRR.
class PreferencesHost
{
public:
    virtual ~PreferencesHost() = default;

    /// The pen bar takes the stored pen colours.
    virtual void penInitialise() = 0;
    /// The label of one pen (0 to 9) in the pen bar takes a colour and that of its number.
    virtual void setPenLabelColour(int iPen, std::uint32_t lColour, std::uint32_t lTextColour) = 0;
    /// The graticule of the active document takes the shade; nothing happens when there is no document.
    virtual void graphSetTickColour(std::uint32_t lColour) = 0;
    /// The main window's client area on the screen; empty while the window is not visible.
    virtual QRect clientArea() const = 0;
    /// The user's documents folder, without a separator at its end; empty when it is not known.
    virtual QString documentsFolder() const
    {
        return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    }
};
