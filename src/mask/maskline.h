// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/PenDocument.h"
#include "mask/MaskTest.h"

#include <QCoreApplication>
#include <QPointer>

struct MaskShape;

/// The two mask lines of a document as they are edited: upper in pen 9, lower in pen 10, of at most 24 points each. A
/// point's X is a frequency in Hz, its Y the limit in the unit of the document. The alternate subset of a mask pen
/// follows: the same X, and 1 / Y in an impedance document, -Y in any other.
///
/// Numbers of lines are those of their subsets, mask::kUpper and mask::kLower. Each line has a point on show, which is
/// kept in the preferences for all documents together. Nothing happens when the document has gone.
class maskline
{
    Q_DECLARE_TR_FUNCTIONS(maskline)

public:
    /// The preferences outlive this.
    maskline(PenDocument& document, Preferences& preferences);

    // The point on show -----------------------------------------------------------------------------------------------

    void maskLoadIndices();
    void maskSaveIndices() const;
    /// From 0.
    int index(int pen) const { return m_index[pen == mask::kUpper ? 0 : 1]; }
    /// Moves the point on show by that many, round at both ends.
    void maskStepUpper(int step);
    void maskStepLower(int step);
    void step(int pen, int by) { pen == mask::kUpper ? maskStepUpper(by) : maskStepLower(by); }

    struct Texts
    {
        QString pointIndex; ///< "Point Index: 1"
        QString frequency;  ///< empty for 0
        QString value;      ///< empty for an unset point
    };
    /// What the editor of that line shows.
    Texts maskShowPoint(int pen) const;
    /// What the limits are called.
    QString dataPointLabel() const;

    // The points ------------------------------------------------------------------------------------------------------

    /// Writes the point on show.
    void maskStorePoint(double frequency, double value, int pen);
    /// The same from texts as typed, with engineering suffixes or an exponent: the frequency becomes whole hertz,
    /// ties to even, and 0 where the text is no number; a value that is none unsets the point.
    void storeTexts(const QString& frequency, const QString& value, int pen);
    /// Adds the offset to every set point.
    void maskShift(int pen, double offset);
    /// Unsets what the mask pens hold beside the points of the lines: these stay.
    void maskClear();

    // On and off ------------------------------------------------------------------------------------------------------

    bool isOn() const;
    /// Both pens become mask lines and are locked; the lines begin with what the first 24 points of the pens held. What
    /// goes is told before by PenDocument::aboutToErase(). The points on show are the first ones.
    void enable();
    /// The pens are free again and keep their data, drawn as hairlines.
    void disable();
    /// The mask becomes that one, and is on.
    void replace(const MaskShape& shape);

private:
    void write(int pen, int point, double frequency, double value);
    void tellReplacing();
    void setOn(bool on);

    QPointer<PenDocument> m_document;
    Preferences& m_preferences;
    std::array<int, 2> m_index{};
};
