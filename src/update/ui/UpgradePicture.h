// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// The picture at the left of the wizard: an instrument's chip and an arrow into it, in the colours of the desktop.
class UpgradePicture : public QWidget
{
    Q_OBJECT

public:
    explicit UpgradePicture(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
