// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// Collects the points of up to ten pens and lays them out as a text file for other programs; docs/text-export.md
/// describes the layout. Pens count from 0 here and from 1 in the file. Values are kept in single precision; each is
/// written so that it reads back bit for bit, whatever the locale, only that every not-a-number is "NaN".
///
/// A file holds points of one kind: the first point says which, or ExportSetKind. A point of another kind, of a pen
/// outside 0 to 9 or of an index below 0 is not taken.
class TextStore
{
public:
    static constexpr int kPens = 10;
    static constexpr int kAllPens = 10; ///< in place of a pen: all of them

    enum class Kind
    {
        Amplitude, ///< frequency in Hz, level in dB, phase in degrees
        Impedance, ///< frequency in Hz, modulus in Ohm, phase in degrees
        Reactance  ///< frequency in Hz, reactance and resistance in Ohm, conductance and susceptance in Siemens
    };

    /// Forgets everything: points, texts, file and format.
    void ExportClear();
    void ExportSetFile(const QString& fileName);
    /// Between columns and behind each line; a tab and a line feed until told.
    void ExportSetFormat(const QString& delimiter, const QString& lineEnd);
    /// 0: no header; any other number: a header.
    void ExportSetHeader(std::int16_t on);
    // Texts of the header. What would break a line there becomes a blank.
    void ExportSetSoftware(const QString& text);
    void ExportSetTest(const QString& text);
    void ExportSetTitle(const QString& text);
    void ExportSetPenLabel(std::int16_t pen, const QString& label);
    /// The measures of a solution found for the pen; an empty text takes its line away.
    void ExportSetSolution(std::int16_t pen, const QString& measures);
    /// Names the columns of a file that may come to hold no point. Ignored once there is a point.
    void ExportSetKind(Kind kind);

    // Rows come in the order of their indices; a point takes the place of an earlier one of the same pen and index.
    void ExportAddAmplitude(double frequency, double level, double phase, std::int32_t pen, std::int32_t index);
    void ExportAddImpedance(double frequency, double modulus, double phase, std::int32_t pen, std::int32_t index);
    /// y0 reactance, y30 resistance, y20 conductance, y10 susceptance: named by the subsets of a document.
    void ExportAddReactance(double frequency, double y0, double y30, double y20, double y10, std::int32_t pen,
                            std::int32_t index);

    /// Writes the file of one pen, or of all for kAllPens; the old file or the new one is there, whole. False when it
    /// could not be written or the pen is none; exportOutcome() tells why.
    bool ExportWrite(std::int32_t pen);
    /// Of the last ExportWrite; success before the first and after ExportClear.
    const Outcome& exportOutcome() const { return m_outcome; }

    /// What ExportWrite would write, UTF-8; empty for a pen that is none.
    QByteArray text(std::int32_t pen) const;
    /// Points collected for the pen, or for all.
    int points(std::int32_t pen) const;

private:
    static constexpr std::size_t kMostFields = 5;
    struct Row
    {
        std::int32_t index = 0;
        std::array<float, kMostFields> fields{};
    };
    struct Pen
    {
        QString label;
        QString measures;
        std::vector<Row> rows; ///< ascending by index
    };

    void add(Kind kind, std::int32_t pen, const Row& row);
    bool isFile(std::int32_t pen) const { return pen >= 0 && pen <= kAllPens; }
    bool isIn(int pen, std::int32_t file) const { return file == kAllPens || file == pen; }
    void appendHeader(QByteArray& text, std::int32_t file) const;
    void appendRows(QByteArray& text, std::int32_t file, int pen) const;

    QString m_fileName;
    QByteArray m_delimiter = "\t";
    QByteArray m_lineEnd = "\n";
    bool m_header = false;
    QString m_software, m_test, m_title;
    std::optional<Kind> m_kind;
    std::array<Pen, kPens> m_pens;
    Outcome m_outcome = Outcome::success();
};
