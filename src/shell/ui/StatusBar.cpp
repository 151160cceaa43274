// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/StatusBar.h"

#include <QApplication>
#include <QCoreApplication>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QTimerEvent>

namespace {

constexpr int kFrameMilliseconds = 16;

struct Role
{
    const char* name;
    const char* widest; ///< a text that the panel should show without cutting
};

constexpr std::array<Role, StatusBar::kPanels> kRoles{{
    {QT_TRANSLATE_NOOP("StatusBar", "Link or test state"), "Disconnected"},
    {QT_TRANSLATE_NOOP("StatusBar", "Current pen"), "10"},
    {QT_TRANSLATE_NOOP("StatusBar", "Start frequency"), "50000000 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "End frequency"), "50000000 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "Points"), "1024/1024 pts"},
    {QT_TRANSLATE_NOOP("StatusBar", "Phase"), "Off"},
    {QT_TRANSLATE_NOOP("StatusBar", "Test period"), "1000 mS"},
    {QT_TRANSLATE_NOOP("StatusBar", "Idle frequency"), "1000000 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "Sweep mode"), "Alternate"},
    {QT_TRANSLATE_NOOP("StatusBar", "Attenuation"), "-60 dB"},
    {QT_TRANSLATE_NOOP("StatusBar", "Cursor X"), "X: 1000000.5 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "Cursor Y"), "Y: -123.45678 Ohms"},
}};

/// A sunken field that keeps its width whatever it shows, and ends a text that does not fit with an ellipsis.
class Panel : public QLabel
{
public:
    Panel(QString widest, QWidget* parent)
        : QLabel(parent)
        , m_widest(std::move(widest))
    {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override
    {
        return {fontMetrics().horizontalAdvance(m_widest) + 2 * kMargin, fontMetrics().height() + kMargin};
    }
    QSize minimumSizeHint() const override
    {
        return {m_keepsWidth ? sizeHint().width() : fontMetrics().averageCharWidth() * 2, sizeHint().height()};
    }
    void setKeepsWidth() { m_keepsWidth = true; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QColor edge = palette().color(QPalette::WindowText);
        edge.setAlphaF(0.25F);
        painter.setPen(edge);
        painter.drawLine(width() - 1, 2, width() - 1, height() - 3);
        painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
        const QRect field = rect().adjusted(kMargin / 2, 0, -kMargin / 2 - 1, 0);
        painter.drawText(field, Qt::AlignVCenter | Qt::AlignLeft,
                         fontMetrics().elidedText(text(), Qt::ElideRight, field.width()));
    }

private:
    static constexpr int kMargin = 8;
    QString m_widest;
    bool m_keepsWidth = false;
};

} // namespace

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent)
{
    setObjectName(QStringLiteral("sbStatusBar"));
    for (int i = 0; i < kPanels; ++i) {
        const Role& role = kRoles[static_cast<std::size_t>(i)];
        auto* panel = new Panel(QLatin1String(role.widest), this);
        const QString name = QCoreApplication::translate("StatusBar", role.name);
        panel->setObjectName(QStringLiteral("panel_%1").arg(i + 1));
        panel->setToolTip(name);
        panel->setAccessibleName(name);
        if (i == 0)
            panel->setKeepsWidth(); // in a small window the state of the link is what must stay readable
        addWidget(panel, i == 0 || i >= 10 ? 1 : 0);
        m_labels[static_cast<std::size_t>(i)] = panel;
    }
}

void StatusBar::setPanel(int index, std::string_view text)
{
    if (index < 1 || index > kPanels)
        return;
    const auto i = static_cast<std::size_t>(index - 1);
    if (m_texts[i] == text)
        return;
    m_texts[i].assign(text);
    m_changed.set(i);
    if (!m_frame.isActive())
        m_frame.start(kFrameMilliseconds, Qt::PreciseTimer, this);
}

QString StatusBar::panelText(int index) const
{
    if (index < 1 || index > kPanels)
        return {};
    return QString::fromStdString(m_texts[static_cast<std::size_t>(index - 1)]);
}

void StatusBar::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_frame.timerId()) {
        QStatusBar::timerEvent(event);
        return;
    }
    m_frame.stop();
    showTexts();
}

void StatusBar::showTexts()
{
    for (std::size_t i = 0; i < kPanels; ++i) {
        if (!m_changed.test(i))
            continue;
        const QString text = QString::fromStdString(m_texts[i]);
        m_labels[i]->setText(text);
        m_labels[i]->setAccessibleName(m_labels[i]->toolTip() + QLatin1String(": ") + text);
    }
    m_changed.reset();
}
