// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/ui/PageScroller.h"

#include <QApplication>

PageScroller::PageScroller(QWidget* page)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setWidget(page);
    // The keyboard goes from control to control, wherever it comes from, and the page follows it.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now != nullptr && widget()->isAncestorOf(now))
            ensureWidgetVisible(now);
    });
}

QSize PageScroller::sizeHint() const
{
    return widget()->sizeHint().expandedTo(minimumSizeHint());
}

QSize PageScroller::minimumSizeHint() const
{
    const int line = fontMetrics().lineSpacing();
    return {12 * line, 6 * line};
}
