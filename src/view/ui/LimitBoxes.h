// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/ViewOptions.h"
#include "view/ui/NumberEdit.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QWidget>

#include <array>
#include <functional>

/// An upper and a lower limit with a button each that sets it. A text that is refused gives way to the limit in force.
class LimitBoxes : public QWidget
{
    Q_OBJECT

public:
    using End = ViewOptions::End;

    struct Names
    {
        std::array<QString, 2> box;    ///< upper and lower
        std::array<QString, 2> button; ///< the same
        std::array<QString, 2> caption;
    };
    struct Rules
    {
        std::function<bool(End, const QString&)> set;
        std::function<double(End)> limit;
    };
    LimitBoxes(const Names& names, Rules rules, QGroupBox* frame);

    /// What is in force, unless the user is about to type another; force: in any case.
    void refresh(bool force = false);
    void setFilter(keyfilter::Filter filter);

private:
    void set(End end);

    Rules m_rules;
    std::array<NumberEdit*, 2> m_boxes{};
};

/// Automatic or manual limits of one quantity, and the manual limits: two frames.
class LimitsGroup : public QWidget
{
    Q_OBJECT

public:
    struct Names
    {
        const char *scaleFrame, *rangeFrame;
        const char *automatic, *manual;
        std::array<QString, 2> box;    ///< upper and lower
        std::array<QString, 2> button; ///< the same
        const char* whole;
        const char* zoom; ///< null: there is no such button
    };
    /// What the controls say; two groups on one tab need access keys of their own.
    struct Texts
    {
        QString automatic, manual, upper, lower, whole, zoom;
    };
    /// The texts of the first group of a tab; a unit, as ", dB", stands behind the captions of the limits.
    static Texts texts(const QString& unit = {});

    LimitsGroup(const Names& names, const Texts& texts, ViewOptions& options, ViewOptions::Quantity quantity,
                QWidget* parent);

    void setTitles(const QString& scale, const QString& range);
    void refresh(bool force = false);

private:
    void setAutomatic(bool automatic);

    ViewOptions& m_options;
    ViewOptions::Quantity m_quantity;
    QGroupBox* m_scale;
    QGroupBox* m_range;
    QAbstractButton* m_automatic = nullptr;
    QAbstractButton* m_manual = nullptr;
    LimitBoxes* m_limits = nullptr;
    QPushButton* m_zoom = nullptr;
};
