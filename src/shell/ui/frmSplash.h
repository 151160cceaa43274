// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// The borderless window of the program's start. Drawn, not loaded: sharp at any scale.
class frmSplash : public QWidget
{
    Q_OBJECT

public:
    explicit frmSplash(QWidget* parent = nullptr);

    /// Shows it in the middle of the screen and paints it before returning, without waiting for the event loop.
    void showAndRefresh();

    /// The picture, filling the rectangle (made for 16 to 9): a resonator's impedance and phase over frequency. Also
    /// for other places where the program shows itself.
    static void paintPicture(QPainter& painter, const QRectF& area);

protected:
    void paintEvent(QPaintEvent* event) override;
};
