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
    bool keepsWidth = false;
};

constexpr std::array<Role, StatusBar::kPanels> kRoles{{
    {QT_TRANSLATE_NOOP("StatusBar", "Link or test state"), "Disconnected", true},
    {QT_TRANSLATE_NOOP("StatusBar", "Current pen"), "10", true},
    {QT_TRANSLATE_NOOP("StatusBar", "Start frequency"), "50000000 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "End frequency"), "50000000 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "Points"), "1024/1024 pts"},
    {QT_TRANSLATE_NOOP("StatusBar", "Phase"), "Off", true},
    {QT_TRANSLATE_NOOP("StatusBar", "Test period"), "1000 mS"},
    {QT_TRANSLATE_NOOP("StatusBar", "Idle frequency"), "1000000 Hz"},
    {QT_TRANSLATE_NOOP("StatusBar", "Sweep mode"), "Alternate"},
    {QT_TRANSLATE_NOOP("StatusBar", "Attenuation"), "-60 dB"},
    {QT_TRANSLATE_NOOP("StatusBar", "Cursor X"), "X: 1000000.5 Hz", true},
    {QT_TRANSLATE_NOOP("StatusBar", "Cursor Y"), "Y: -123.45678 Ohms", true},
}};

/// A sunken field that keeps its width whatever it shows, and ends a text that does not fit with an ellipsis.
class Panel : public QLabel
{
public:
    Panel(QString widest, bool keepsWidth, QWidget* parent)
        : QLabel(parent)
        , m_widest(std::move(widest))
        , m_keepsWidth(keepsWidth)
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
    bool m_keepsWidth;
};

/// Takes the room that is left, however long its text.
class Tip : public QLabel
{
public:
    explicit Tip(QWidget* parent)
        : QLabel(parent)
    {
        setObjectName(QStringLiteral("tip"));
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Active, QPalette::WindowText));
        const QRect field = rect().adjusted(4, 0, -4, 0);
        painter.drawText(field, Qt::AlignVCenter | Qt::AlignLeft,
                         fontMetrics().elidedText(text(), Qt::ElideRight, field.width()));
    }
};

} // namespace

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent)
    , m_tip(new Tip(this))
{
    setObjectName(QStringLiteral("sbStatusBar"));
    for (int i = 0; i < kPanels; ++i) {
        const Role& role = kRoles[static_cast<std::size_t>(i)];
        auto* panel = new Panel(QLatin1String(role.widest), role.keepsWidth, this);
        const QString name = QCoreApplication::translate("StatusBar", role.name);
        panel->setObjectName(QStringLiteral("panel_%1").arg(i + 1));
        panel->setToolTip(name);
        panel->setAccessibleName(name);
        addWidget(panel, i >= 10 ? 1 : 0);
        m_labels[static_cast<std::size_t>(i)] = panel;
    }
    addWidget(m_tip, 2);
}

void StatusBar::showTip(const QString& text)
{
    m_tip->setText(text);
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
