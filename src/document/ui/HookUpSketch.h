// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// A sketch of how the part is connected for a test: 1 amplitude (through the part, from output to input), 2 impedance
/// and 3 reactance (the part across the impedance terminals). Drawn in the colours of the palette.
class HookUpSketch : public QWidget
{
    Q_OBJECT

public:
    /// Height to width of the picture.
    static constexpr double kRatio = 2280.0 / 6120.0;

    explicit HookUpSketch(QWidget* parent = nullptr);

    int testType() const { return m_testType; }
    void setTestType(int testType);

    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return qRound(width * kRatio); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_testType = 0;
};
