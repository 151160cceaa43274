// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/textstore/TextStore.h"

#include "files/SafeFile.h"
#include "values/Conversions.h"

#include <QByteArrayList>
#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>

namespace {

constexpr const char* kFrequency = "Frequency (Hz)";
constexpr std::array<const char*, 3> kAmplitudeColumns = {kFrequency, "Gain (dB)", "Phase (degrees)"};
constexpr std::array<const char*, 3> kImpedanceColumns = {kFrequency, "Impedance (Ohm)", "Phase (degrees)"};
constexpr std::array<const char*, 5> kReactanceColumns = {kFrequency, "Reactance (Ohm)", "Resistance (Ohm)",
                                                          "Conductance (Siemens)", "Susceptance (Siemens)"};

/// One name a field of a row.
std::span<const char* const> columnsOf(TextStore::Kind kind)
{
    switch (kind) {
    case TextStore::Kind::Amplitude:
        return kAmplitudeColumns;
    case TextStore::Kind::Impedance:
        return kImpedanceColumns;
    case TextStore::Kind::Reactance:
        return kReactanceColumns;
    }
    return {};
}

/// Written as every reader takes it: R knows no other letter case of the three words.
std::size_t writeNumber(float value, char* buffer)
{
    const auto put = [buffer](std::string_view word) { return word.copy(buffer, word.size()); };
    if (value != 0 && std::isfinite(value)) [[likely]]
        return values::writeDecimal(value, buffer);
    if (std::isnan(value))
        return put("NaN");
    if (std::isinf(value))
        return put(value < 0 ? "-Inf" : "Inf");
    return put(std::signbit(value) ? "-0" : "0");
}

/// Bytes that are put many times. Short ones are copied in one piece of fixed length, which writes beyond their end.
class Fixed
{
public:
    explicit Fixed(const QByteArray& bytes)
        : m_bytes(bytes)
        , m_size(static_cast<std::size_t>(bytes.size()))
    {
        std::copy_n(bytes.begin(), std::min(m_size, kPiece), m_piece.begin());
    }
    /// What put() may touch.
    std::size_t room() const { return std::max(m_size, kPiece); }
    /// Returns the place behind them.
    char* put(char* place) const
    {
        std::memcpy(place, m_piece.data(), kPiece);
        if (m_size > kPiece)
            std::memcpy(place, m_bytes.constData(), m_size);
        return place + m_size;
    }

private:
    static constexpr std::size_t kPiece = 8;
    QByteArray m_bytes;
    std::array<char, kPiece> m_piece{};
    std::size_t m_size;
};

/// One line of a header, without its end.
QByteArray remark(QString text)
{
    for (QChar& character : text) {
        if (character.isSpace() || (!character.isPrint() && !character.isSurrogate()))
            character = u' ';
    }
    return "# " + text.toUtf8();
}

} // namespace

void TextStore::ExportClear()
{
    *this = TextStore();
}

void TextStore::ExportSetFile(const QString& fileName)
{
    m_fileName = fileName;
}

void TextStore::ExportSetFormat(const QString& delimiter, const QString& lineEnd)
{
    m_delimiter = delimiter.toUtf8();
    m_lineEnd = lineEnd.toUtf8();
}

void TextStore::ExportSetHeader(std::int16_t on)
{
    m_header = on != 0;
}

void TextStore::ExportSetSoftware(const QString& text)
{
    m_software = text;
}

void TextStore::ExportSetTest(const QString& text)
{
    m_test = text;
}

void TextStore::ExportSetTitle(const QString& text)
{
    m_title = text;
}

void TextStore::ExportSetPenLabel(std::int16_t pen, const QString& label)
{
    if (pen >= 0 && pen < kPens)
        m_pens[static_cast<std::size_t>(pen)].label = label;
}

void TextStore::ExportSetSolution(std::int16_t pen, const QString& measures)
{
    if (pen >= 0 && pen < kPens)
        m_pens[static_cast<std::size_t>(pen)].measures = measures;
}

void TextStore::ExportSetKind(Kind kind)
{
    if (points(kAllPens) == 0)
        m_kind = kind;
}

void TextStore::ExportAddAmplitude(double frequency, double level, double phase, std::int32_t pen, std::int32_t index)
{
    add(Kind::Amplitude, pen,
        {index, {static_cast<float>(frequency), static_cast<float>(level), static_cast<float>(phase)}});
}

void TextStore::ExportAddImpedance(double frequency, double modulus, double phase, std::int32_t pen, std::int32_t index)
{
    add(Kind::Impedance, pen,
        {index, {static_cast<float>(frequency), static_cast<float>(modulus), static_cast<float>(phase)}});
}

void TextStore::ExportAddReactance(double frequency, double y0, double y30, double y20, double y10, std::int32_t pen,
                                   std::int32_t index)
{
    add(Kind::Reactance, pen,
        {index,
         {static_cast<float>(frequency), static_cast<float>(y0), static_cast<float>(y30), static_cast<float>(y20),
          static_cast<float>(y10)}});
}

void TextStore::add(Kind kind, std::int32_t pen, const Row& row)
{
    if (pen < 0 || pen >= kPens || row.index < 0)
        return;
    if (m_kind != kind && points(kAllPens) > 0)
        return;
    m_kind = kind;
    std::vector<Row>& rows = m_pens[static_cast<std::size_t>(pen)].rows;
    if (rows.empty() || rows.back().index < row.index) {
        rows.push_back(row);
        return;
    }
    const auto place = std::ranges::lower_bound(rows, row.index, {}, &Row::index);
    if (place->index == row.index)
        *place = row;
    else
        rows.insert(place, row);
}

bool TextStore::ExportWrite(std::int32_t pen)
{
    m_outcome = isFile(pen) ? files::writeFile(m_fileName, text(pen))
                            : Outcome::failure(QCoreApplication::translate("TextStore", "There is no pen %1 to export.")
                                                   .arg(static_cast<qint64>(pen) + 1));
    return m_outcome.ok();
}

int TextStore::points(std::int32_t pen) const
{
    std::size_t count = 0;
    for (int candidate = 0; candidate < kPens; ++candidate) {
        if (isIn(candidate, pen))
            count += m_pens[static_cast<std::size_t>(candidate)].rows.size();
    }
    return static_cast<int>(count);
}

QByteArray TextStore::text(std::int32_t pen) const
{
    QByteArray text;
    if (!isFile(pen))
        return text;
    if (m_header)
        appendHeader(text, pen);
    for (int candidate = 0; candidate < kPens; ++candidate) {
        if (isIn(candidate, pen))
            appendRows(text, pen, candidate);
    }
    return text;
}

void TextStore::appendHeader(QByteArray& text, std::int32_t file) const
{
    const auto line = [&](const QString& remarked) { text += remark(remarked) + m_lineEnd; };
    line(m_software);
    line(m_test);
    line(m_title);
    for (int pen = 0; pen < kPens; ++pen) {
        if (!isIn(pen, file))
            continue;
        const Pen& one = m_pens[static_cast<std::size_t>(pen)];
        line(QStringLiteral("Pen %1: ").arg(pen + 1) + one.label);
        if (!one.measures.isEmpty())
            line(one.measures);
    }
    if (!m_kind)
        return;
    QByteArrayList names;
    if (file == kAllPens)
        names += "Pen";
    for (const char* name : columnsOf(*m_kind))
        names += name;
    text += "# " + names.join(m_delimiter) + m_lineEnd;
}

void TextStore::appendRows(QByteArray& text, std::int32_t file, int pen) const
{
    const std::vector<Row>& rows = m_pens[static_cast<std::size_t>(pen)].rows;
    if (rows.empty())
        return;
    const std::size_t fields = columnsOf(*m_kind).size();
    const QByteArray number = file == kAllPens ? QByteArray::number(pen + 1) + m_delimiter : QByteArray();
    const Fixed start(number), delimiter(m_delimiter), lineEnd(m_lineEnd);
    // Room for the longest rows, which costs nothing where it stays untouched; what follows then checks no more.
    const std::size_t longest = start.room() + fields * (values::kDecimalTextSize + delimiter.room()) + lineEnd.room();
    const qsizetype before = text.size();
    text.resize(before + static_cast<qsizetype>(rows.size() * longest));
    char* end = text.data() + before;
    for (const Row& row : rows) {
        end = start.put(end);
        end += writeNumber(row.fields[0], end);
        for (std::size_t field = 1; field < fields; ++field) {
            end = delimiter.put(end);
            end += writeNumber(row.fields[field], end);
        }
        end = lineEnd.put(end);
    }
    text.resize(end - text.constData());
}
