// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/ElidingLabel.h"

#include "widgets/ui/PlainTip.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace {

/// Characters of the widest text that asks for its full width.
constexpr int kWidestHint = 60;
constexpr int kNarrowest = 24;

} // namespace

ElidingLabel::ElidingLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidingLabel::sizeHint() const
{
    const int widest = fontMetrics().averageCharWidth() * kWidestHint;
    return {std::min(fontMetrics().horizontalAdvance(text()) + 2, widest), fontMetrics().height()};
}

QSize ElidingLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * kNarrowest, fontMetrics().height()};
}

QString ElidingLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

void ElidingLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), palette(),
                          isEnabled(), shownText(), foregroundRole());
}

bool ElidingLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && shownText() != text()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}
