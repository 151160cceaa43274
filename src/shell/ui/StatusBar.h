// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QStatusBar>

#include <array>
#include <bitset>
#include <string>
#include <string_view>

class QLabel;

/// The status bar `sbStatusBar` with its twelve panels: 1 link or test state, 2 current pen, 3 start frequency, 4 end
/// frequency, 5 points, 6 phase, 7 period, 8 idle frequency, 9 sweep mode, 10 attenuation, 11 and 12 cursor read-out.
///
/// A panel's text is taken at once and shown at most once per display frame, however often it is set. In a narrow
/// window state, pen, phase and read-out keep their width, the other panels end in an ellipsis. Tips have what room is
/// left.
class StatusBar : public QStatusBar
{
    Q_OBJECT

public:
    static constexpr int kPanels = 12;

    explicit StatusBar(QWidget* parent = nullptr);

    /// UTF-8; a panel that does not exist is left alone.
    void setPanel(int index, std::string_view text);
    /// The text last set, whether it is on the screen yet or not.
    QString panelText(int index) const;
    /// What the command under the mouse does; empty when it has been left. The panels stay.
    void showTip(const QString& text);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void showTexts();

    std::array<std::string, kPanels> m_texts;
    std::array<QLabel*, kPanels> m_labels{};
    QLabel* m_tip;
    std::bitset<kPanels> m_changed;
    QBasicTimer m_frame;
};
