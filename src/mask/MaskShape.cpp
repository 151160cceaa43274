// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/MaskShape.h"

#include "mask/MaskTest.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

using namespace Qt::StringLiterals;

constexpr QLatin1String kNoPoint("-"), kGap("gap");
constexpr QLatin1String kFrequency("frequency_Hz");

QString tr(const char* text)
{
    return QCoreApplication::translate("maskfile", text);
}

QLatin1String unitOf(std::int16_t testType)
{
    return testType == plot::Impedance ? "Ohm"_L1 : "dB"_L1;
}

MaskShape::Line lineOf(const GraphModel& graph, int pen)
{
    MaskShape::Line line;
    bool gap = false;
    for (int i = 0; i < mask::kPoints; ++i) {
        if (graph.YData(pen, i) == graph::kNullValue) {
            gap = !line.empty();
            continue;
        }
        const double frequency = graph.XData(pen, i);
        if (gap)
            line.push_back({(line.back().frequency + frequency) / 2, {}});
        gap = false;
        line.push_back({frequency, graph.YData(pen, i)});
    }
    return line;
}

/// The single that a graph keeps in the shortest text that gives it back.
QByteArray number(double value)
{
    return values::decimalText(static_cast<float>(value)).toLatin1();
}

struct Row
{
    QByteArray upper = "-", lower = "-";
};

QByteArray limitText(const MaskShape::Point& point)
{
    return point.limit ? number(*point.limit) : QByteArray(kGap.data(), kGap.size());
}

/// Reads one file line by line.
class Reader
{
public:
    explicit Reader(std::int16_t testType)
        : m_unit(unitOf(testType))
    {}

    bool take(const QString& text)
    {
        ++m_number;
        const QString line = text.section(u'#', 0, 0).simplified();
        if (line.isEmpty())
            return true;
        const QStringList words = line.split(u' ');
        if (words.size() != 3)
            return fail(tr("a line has three columns: frequency, upper and lower limit"));
        return m_hasHeading ? takeRow(words) : takeHeading(words);
    }
    bool end() { return m_hasHeading || fail(tr("the line that names the columns is missing")); }
    const MaskShape& shape() const { return m_shape; }
    const QString& problem() const { return m_problem; }

private:
    bool fail(const QString& what)
    {
        m_problem = tr("line %1: %2").arg(m_number).arg(what);
        return false;
    }

    bool takeHeading(const QStringList& words)
    {
        const auto names = [&words](QLatin1String unit) {
            return words[0] == kFrequency && words[1] == u"upper_"_s + unit && words[2] == u"lower_"_s + unit;
        };
        m_hasHeading = true;
        if (names(m_unit))
            return true;
        if (names(unitOf(plot::Impedance)) || names(unitOf(plot::Amplitude)))
            return fail(tr("the limits are not in %1, which this plot needs").arg(m_unit));
        return fail(tr("the columns must be named %1 upper_%2 lower_%2").arg(kFrequency, m_unit));
    }

    bool takeRow(const QStringList& words)
    {
        const auto frequency = values::strictNumber(words[0]);
        if (!frequency || static_cast<float>(*frequency) <= 0 || !std::isfinite(static_cast<float>(*frequency)))
            return fail(tr("\"%1\" is no frequency above 0").arg(words[0]));
        return takePoint(m_shape.upper, *frequency, words[1]) && takePoint(m_shape.lower, *frequency, words[2]);
    }

    bool takePoint(MaskShape::Line& line, double frequency, const QString& word)
    {
        if (word == kNoPoint)
            return true;
        // As the graph will keep it: frequencies that are one single are one point.
        const double kept = static_cast<float>(frequency);
        if (!line.empty() && kept <= line.back().frequency)
            return fail(tr("the frequencies of a mask line must ascend"));
        if (line.size() == mask::kPoints)
            return fail(tr("a mask line has at most %1 points").arg(mask::kPoints));
        if (word == kGap) {
            line.push_back({kept, {}});
            return true;
        }
        const auto limit = values::strictNumber(word);
        const auto keptLimit = static_cast<float>(limit.value_or(mask::kNone));
        if (!limit || !std::isfinite(keptLimit) || keptLimit == graph::kNullValue)
            return fail(tr("\"%1\" is no limit; without a point it is \"-\", in a gap \"gap\"").arg(word));
        line.push_back({kept, keptLimit});
        return true;
    }

    QLatin1String m_unit;
    MaskShape m_shape;
    QString m_problem;
    int m_number = 0;
    bool m_hasHeading = false;
};

} // namespace

MaskShape MaskShape::of(const GraphModel& graph)
{
    return {lineOf(graph, mask::kUpper), lineOf(graph, mask::kLower)};
}

namespace maskfile {

QByteArray text(const MaskShape& shape, std::int16_t testType)
{
    std::map<double, Row> rows;
    for (const MaskShape::Point& point : shape.upper)
        rows[point.frequency].upper = limitText(point);
    for (const MaskShape::Point& point : shape.lower)
        rows[point.frequency].lower = limitText(point);
    const QByteArray unit(unitOf(testType).data(), unitOf(testType).size());
    QByteArray text = "# Mask lines of MarrowickGraph\nfrequency_Hz\tupper_" + unit + "\tlower_" + unit + "\n";
    for (const auto& [frequency, row] : rows)
        text += number(frequency) + '\t' + row.upper + '\t' + row.lower + '\n';
    return text;
}

ValueOr<MaskShape> read(const QByteArray& text, std::int16_t testType)
{
    Reader reader(testType);
    QByteArray plain = text.startsWith("\xef\xbb\xbf") ? text.mid(3) : text;
    plain.replace("\r\n", "\n").replace('\r', '\n');
    const QList<QByteArray> lines = plain.split('\n');
    const bool understood =
        std::ranges::all_of(lines, [&reader](const QByteArray& line) { return reader.take(QString::fromUtf8(line)); });
    if (!understood || !reader.end())
        return Outcome::failure(reader.problem());
    return reader.shape();
}

ValueOr<MaskShape> readFile(const QString& fileName, std::int16_t testType)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("%1 cannot be read: %2.").arg(fileName, file.errorString()));
    const QByteArray bytes = file.read(kLargestFile + 1);
    if (bytes.size() > kLargestFile)
        return Outcome::failure(tr("%1 is no mask file: it is too large.").arg(fileName));
    ValueOr<MaskShape> shape = read(bytes, testType);
    return shape ? shape : Outcome::failure(tr("%1, %2.").arg(fileName, shape.sentence()));
}

} // namespace maskfile
