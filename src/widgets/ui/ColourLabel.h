// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

#include <cstdint>

/// A box in one of the program's colours (0x00BBGGRR). A double click, or the space or enter key, asks to change it.
class ColourLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ColourLabel(QWidget* parent = nullptr);

    std::uint32_t colour() const { return m_colour; }
    void setColour(std::uint32_t lColour);

Q_SIGNALS:
    void changeAsked();

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::uint32_t m_colour = 0;
};
