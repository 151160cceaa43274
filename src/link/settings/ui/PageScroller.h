// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>

/// A page of a dialog that would like to be seen whole and scrolls on a screen that is too small for it.
class PageScroller : public QScrollArea
{
public:
    /// Takes the page.
    explicit PageScroller(QWidget* page);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};
