// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QToolBar>

#include <array>
#include <cstdint>

/// One pen of the pen bar: its number on its colour. The current pen has a frame, a locked one shows "X" in place of
/// the number, a hidden one only the rim of its colour.
///
/// A click or the space bar selects the pen; a double click or Enter asks for another colour. It takes the keyboard
/// focus by Tab only, so that a click leaves the focus in the document.
class PenLabel : public QAbstractButton
{
    Q_OBJECT

public:
    PenLabel(int pen, QWidget* parent);

    std::uint32_t colour() const { return m_colour; }
    /// 0x00BBGGRR.
    void setColour(std::uint32_t colour);
    void setState(bool current, bool locked, bool hidden);
    bool isCurrent() const { return m_current; }
    bool isLocked() const { return m_locked; }
    bool isPenHidden() const { return m_hidden; }
    /// What the label shows: the number, or "X".
    QString caption() const;
    /// Black or white, whichever is readable on the pen's colour, 0x00BBGGRR.
    std::uint32_t captionColour() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void colourWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void describe();

    int m_pen;
    std::uint32_t m_colour = 0;
    bool m_current = false;
    bool m_locked = false;
    bool m_hidden = false;
};

/// The pen bar `tbPenBar`: the ten labels lblPen, in front of the commands that its owner adds. Pens count from 0 here.
class PenBar : public QToolBar
{
    Q_OBJECT

public:
    static constexpr int kPens = 10;

    explicit PenBar(QWidget* parent = nullptr);

    PenLabel& lblPen(int pen) const { return *m_labels[static_cast<std::size_t>(pen)]; }
    void setColour(int pen, std::uint32_t colour);
    void setPenState(int pen, bool locked, bool hidden);
    /// -1: none is current.
    void setCurrentPen(int pen);
    int currentPen() const { return m_current; }

Q_SIGNALS:
    void penSelected(int pen);
    void penColourWanted(int pen);

private:
    std::array<PenLabel*, kPens> m_labels{};
    int m_current = -1;
};
