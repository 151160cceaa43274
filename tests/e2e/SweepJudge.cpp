// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/SweepJudge.h"

#include "e2e/EndToEnd.h"

#include <QProcess>

#include <array>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace e2e {
namespace {

/// A single keeps seven digits; so does a frame, or more.
constexpr double kSingle = 1.5e-7;

struct Point
{
    double hertz, value;
};

/// Subset to its points by their numbers.
std::map<int, std::map<int, Point>> readPlot(const QString& plotFile, const char* which)
{
    std::map<int, std::map<int, Point>> plot;
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(MG_SOURCE_DIR "/tests/data/read_plot.py"), plotFile, QLatin1String(which)});
    EXPECT_TRUE(python.waitForFinished(kPatience)) << "the plot was not read";
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    for (const QByteArray& line : python.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 4)
            plot[words[0].toInt()][words[1].toInt()] = {words[2].toDouble(), words[3].toDouble()};
    }
    return plot;
}

struct View
{
    double value;
    double tolerance;
};

/// What the four subsets of a pen hold of a point, as the plot file's page tells them.
std::array<View, 4> viewsOf(const AskedSweep& asked, const SeriesPart& part, double hertz)
{
    constexpr double kDegrees = 180 * kSingle;
    const std::complex<double> z = part.impedance(hertz), y = 1.0 / z;
    if (asked.type == QLatin1String("reactance")) {
        const double ofZ = 4 * kSingle * std::abs(z), ofY = 4 * kSingle * std::abs(y);
        return {View{z.imag(), ofZ}, {y.imag(), ofY}, {y.real(), ofY}, {z.real(), ofZ}};
    }
    const bool amplitude = asked.type == QLatin1String("amplitude");
    const SeriesPart::Value value = amplitude ? part.asAmplitude(hertz) : part.asImpedance(hertz);
    const double second = amplitude ? -value.size : 1 / value.size;
    const View size{value.size, kSingle * std::abs(value.size) + 1e-7};
    if (!asked.phase)
        return {size, {second, kSingle * std::abs(second)}, {-65536, 0}, {65536, 0}};
    return {size,
            {second, kSingle * std::abs(second) + (amplitude ? 1e-7 : 0)},
            {-std::abs(value.degrees), kDegrees},
            {value.degrees, kDegrees}};
}

} // namespace

QStringList AskedSweep::options() const
{
    QStringList list{QStringLiteral("--type"),      type,
                     QStringLiteral("--from"),      QString::number(from, 'f', 3),
                     QStringLiteral("--to"),        QString::number(to, 'f', 3),
                     QStringLiteral("--points"),    QString::number(points),
                     QStringLiteral("--direction"), direction};
    if (attenuation > 0)
        list << QStringLiteral("--attenuation") << QString::number(attenuation);
    if (linear)
        list << QStringLiteral("--linear");
    if (!phase)
        list << QStringLiteral("--no-phase");
    if (period > 0)
        list << QStringLiteral("--period") << QString::number(period);
    if (repeat > 1)
        list << QStringLiteral("--repeat") << QString::number(repeat);
    return list;
}

double AskedSweep::frequency(int point) const
{
    const bool down = direction == QLatin1String("down");
    const double a = down ? to : from, b = down ? from : to, share = double(point) / (points - 1);
    return linear ? a + share * (b - a) : a * std::exp(share * std::log(b / a));
}

namespace {

/// What was in force when it began, and each point that it came to.
void judgeSweep(const AskedSweep& asked, const played::Settings& before, const played::Sweep& sweep)
{
    const played::Settings& in = sweep.settings;
    const bool amplitude = asked.type == QLatin1String("amplitude");
    EXPECT_EQ(sweep.amplitude, amplitude);
    EXPECT_EQ(in.points, asked.points);
    EXPECT_EQ(in.attenuation * 10, asked.attenuation);
    EXPECT_EQ(in.linear, asked.linear);
    EXPECT_EQ(in.phase, asked.phase || asked.type == QLatin1String("reactance"));
    EXPECT_EQ(in.period, asked.period);
    EXPECT_FALSE(in.repeat) << "each sweep is started by itself";
    EXPECT_EQ(in.samples, before.samples) << "nobody asked for others";
    EXPECT_EQ(in.pin, amplitude ? 2 : 1);
    for (std::size_t i = 0; i < sweep.points.size(); ++i) {
        const double wanted = asked.frequency(static_cast<int>(i));
        ASSERT_NEAR(sweep.points[i].hertz, wanted, 1e-9 * wanted) << "point " << i;
    }
}

void judgePoint(const AskedSweep& asked, const SeriesPart& part, int subset, int number, const Point& point)
{
    const double hertz = asked.frequency(number);
    const View view = viewsOf(asked, part, hertz)[static_cast<std::size_t>(subset / 10)];
    ASSERT_NEAR(point.hertz, hertz, kSingle * hertz) << "point " << number;
    ASSERT_NEAR(point.value, view.value, view.tolerance) << "point " << number;
}

bool isNumber(const std::string& text)
{
    bool ok = false;
    static_cast<void>(QString::fromStdString(text).trimmed().toDouble(&ok));
    return ok;
}

/// Numbers of points that went over the line in a frame with a field that is no number, which nobody can make good.
std::set<int> spoiltPoints(const std::vector<played::LogEntry>& log)
{
    std::string line;
    for (const played::LogEntry& entry : log) {
        if (!entry.received)
            line += entry.text;
    }
    std::set<int> spoilt;
    for (std::size_t from = 0, end = 0; (end = line.find('\r', from)) != std::string::npos; from = end + 2) {
        if (end - from != 65 || line[from + 1] != ':' || (line[from] != 'F' && line[from] != 'H'))
            continue;
        for (const std::size_t column : {4U, 18U, 32U, 46U}) {
            if (!isNumber(line.substr(from + column, 13)))
                spoilt.insert(QString::fromStdString(line.substr(from + 60, 5)).trimmed().toInt());
        }
    }
    return spoilt;
}

} // namespace

void judgeSwept(const AskedSweep& asked, const played::Settings& before, const std::vector<played::Sweep>& sweeps)
{
    EXPECT_EQ(sweeps.size(), static_cast<std::size_t>(asked.repeat));
    int pen = 0;
    for (const played::Sweep& sweep : sweeps) {
        SCOPED_TRACE("pen " + std::to_string(++pen));
        EXPECT_EQ(sweep.end, played::Sweep::End::Complete);
        EXPECT_EQ(sweep.settings.penOfPin, pen);
        ASSERT_EQ(sweep.points.size(), static_cast<std::size_t>(asked.points));
        judgeSweep(asked, before, sweep);
    }
}

void judgeBegun(const AskedSweep& asked, const played::Settings& before, const std::vector<played::Sweep>& sweeps)
{
    EXPECT_LE(sweeps.size(), static_cast<std::size_t>(asked.repeat));
    for (const played::Sweep& sweep : sweeps)
        judgeSweep(asked, before, sweep);
}

void judgePlot(const AskedSweep& asked, const SeriesPart& part, const QString& plotFile)
{
    const auto plot = readPlot(plotFile, "--all");
    EXPECT_EQ(plot.size(), static_cast<std::size_t>(4 * asked.repeat)) << "pens that nobody asked for, or none";
    for (const auto& [subset, points] : plot) {
        SCOPED_TRACE("subset " + std::to_string(subset));
        ASSERT_LT(subset % 10, asked.repeat);
        ASSERT_EQ(points.size(), static_cast<std::size_t>(asked.points));
        for (const auto& [number, point] : points)
            judgePoint(asked, part, subset, number, point);
    }
}

int judgeStored(const AskedSweep& asked, const played::ScriptedInstrument& instrument, const QString& plotFile)
{
    const std::set<int> spoilt = spoiltPoints(instrument.log());
    int judged = 0;
    for (const auto& [subset, points] : readPlot(plotFile, "--present")) {
        SCOPED_TRACE("subset " + std::to_string(subset));
        EXPECT_LT(subset % 10, asked.repeat);
        for (const auto& [number, point] : points) {
            EXPECT_LT(number, asked.points);
            if (spoilt.count(number) > 0)
                continue;
            judgePoint(asked, instrument.part(), subset, number, point);
            ++judged;
        }
    }
    return judged;
}

} // namespace e2e
