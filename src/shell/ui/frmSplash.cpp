// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmSplash.h"

#include "program/Version.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QThread>
#include <QWindow>

#include <cmath>
#include <complex>

namespace {

constexpr int kExposeLimit = 500; // milliseconds granted to the window system
constexpr QSize kSize(576, 324);
constexpr double kDesignHeight = 324; // lengths below are in units of the picture's own height

const QColor kNight(0x10, 0x1c, 0x2c);
const QColor kDusk(0x1d, 0x3a, 0x4f);
const QColor kGrid(0xff, 0xff, 0xff, 0x1c);
const QColor kModulus(0xff, 0xb4, 0x54);
const QColor kPhase(0x6f, 0xc3, 0xdf);
const QColor kText(0xf4, 0xf6, 0xf8);
const QColor kQuietText(0xb8, 0xc6, 0xd2);

/// A piezoelectric resonator as a Butterworth-Van Dyke network, in units of its static capacitance's impedance at
/// series resonance; `x` is the frequency relative to that resonance.
std::complex<double> resonatorImpedance(double x)
{
    constexpr double kCapacitanceRatio = 14; // static over motional: parallel resonance 3.5 % above series resonance
    constexpr double kQ = 900;
    const std::complex<double> j(0, 1);
    const auto staticArm = 1.0 / (j * x);
    const auto motionalArm = kCapacitanceRatio * (1 / kQ + j * (x - 1 / x));
    return staticArm * motionalArm / (staticArm + motionalArm);
}

struct Curves
{
    QPainterPath modulus;
    QPainterPath phase;
};

Curves traceCurves(const QRectF& plot)
{
    constexpr int kSteps = 700;
    constexpr double kFrom = 0.86;
    constexpr double kTo = 1.2;
    constexpr double kDecades = 2.1; // shown above and below 1 in modulus
    const double pi = std::acos(-1.0);
    Curves curves;
    for (int i = 0; i <= kSteps; ++i) {
        const double part = static_cast<double>(i) / kSteps;
        const auto z = resonatorImpedance(kFrom * std::pow(kTo / kFrom, part));
        const double x = plot.left() + part * plot.width();
        const double modulus = plot.center().y() - std::log10(std::abs(z)) / kDecades * plot.height() / 2;
        const double phase = plot.center().y() - std::arg(z) / pi * plot.height() * 0.8;
        if (i == 0) {
            curves.modulus.moveTo(x, modulus);
            curves.phase.moveTo(x, phase);
        } else {
            curves.modulus.lineTo(x, modulus);
            curves.phase.lineTo(x, phase);
        }
    }
    return curves;
}

void paintGrid(QPainter& painter, const QRectF& plot)
{
    painter.setPen(QPen(kGrid, 0));
    // Two decades, as log paper has them.
    for (int decade = 0; decade < 2; ++decade) {
        for (int line = 1; line < 10; ++line) {
            const double x = plot.left() + plot.width() * (decade + std::log10(line)) / 2;
            painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        }
    }
    for (int line = 0; line <= 6; ++line) {
        const double y = plot.top() + plot.height() * line / 6;
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    }
}

} // namespace

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(version::programTitle());
    setAccessibleName(tr("%1 is starting").arg(version::programTitle()));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedSize(kSize);
}

void frmSplash::showAndRefresh()
{
    const QScreen* const display = QGuiApplication::primaryScreen();
    if (display != nullptr)
        move(display->availableGeometry().center() - rect().center());
    show();
    // The window system maps the window by events, in its own time, and shows nothing that was painted before. The
    // program stands still right behind this, so it has to be waited for here. Input waits for the main window.
    const QDeadlineTimer limit(kExposeLimit);
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        if (windowHandle() == nullptr || windowHandle()->isExposed())
            break;
        QThread::msleep(1);
    } while (!limit.hasExpired());
    repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmSplash::paintPicture(QPainter& painter, const QRectF& area)
{
    const double unit = area.height() / kDesignHeight;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(area);

    QLinearGradient background(area.topLeft(), area.bottomRight());
    background.setColorAt(0, kNight);
    background.setColorAt(1, kDusk);
    painter.fillRect(area, background);

    const QRectF plot = area.adjusted(-unit, 96 * unit, unit, -56 * unit);
    paintGrid(painter, plot);
    const Curves curves = traceCurves(plot);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(kPhase, 1.6 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(curves.phase);
    painter.setPen(QPen(kModulus, 2.6 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(curves.modulus);

    const auto write = [&](const QRectF& box, int flags, const QColor& colour, double size, int weight,
                           const QString& text) {
        QFont font = QGuiApplication::font();
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(size * unit))));
        font.setWeight(static_cast<QFont::Weight>(weight));
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(box, flags | Qt::TextSingleLine, text);
    };
    const QRectF text = area.adjusted(30 * unit, 22 * unit, -30 * unit, -18 * unit);
    write(text, Qt::AlignLeft | Qt::AlignTop, kText, 34, QFont::DemiBold, version::programTitle());
    write(text.adjusted(0, 46 * unit, 0, 0), Qt::AlignLeft | Qt::AlignTop, kQuietText, 15, QFont::Normal,
          tr("Impedance, amplitude and phase analysis"));
    write(text, Qt::AlignLeft | Qt::AlignBottom, kQuietText, 13, QFont::Normal, tr("For the T46 and DT46 analysers"));
    write(text, Qt::AlignRight | Qt::AlignBottom, kQuietText, 13, QFont::Normal, u'V' + version::text());
    painter.restore();
}

void frmSplash::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPicture(painter, QRectF(rect()));
}
