// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/PenDocument.h"

#include <QCoreApplication>
#include <QPointer>

class UserMessages;

/// What the two dialogs of view options do to a document: every change goes to its graph at once, is shown and marks
/// the document as modified. A change of limits takes the graph back to its full extent and forgets the stored zooms.
///
/// Some steps process events or ask the user; whatever the document was, it may have gone afterwards, and nothing
/// happens from then on.
class ViewOptions
{
    Q_DECLARE_TR_FUNCTIONS(ViewOptions)

public:
    /// The messages outlive this.
    ViewOptions(PenDocument& document, UserMessages& messages);

    PenDocument* document() const { return m_document; }
    GraphModel& graph() const { return m_document->peGraph(); }

    enum class End
    {
        Upper = 0,
        Lower = 1
    };
    /// The quantities that have limits of their own; which axis that is follows from the view.
    enum class Quantity
    {
        Main,       ///< impedance or admittance, gain or loss
        Reactance,  ///< or susceptance
        Resistance, ///< or conductance
    };
    /// What an instrument of this family can measure, in the unit of the axis.
    struct Extent
    {
        int axis = 0;
        double lower = 0, upper = 0;
        bool replacesZero = false; ///< the quantity is never 0: a limit of 0 becomes that of the extent
        bool small = false;        ///< in Siemens, where "m" and "u" are of use and "M" is not
    };
    static constexpr double kLowestFrequency = 10.0, kHighestFrequency = 50000000.0; ///< Hz
    Extent extent(Quantity quantity) const;

    // Limits. Texts are numbers as people type them; one that is none is refused: false, and the graph stays. ---------

    /// Whole hertz. An empty text is the extent of the sweep, 0 the extent of the instrument.
    bool setFrequencyLimit(End end, QString text);
    void setWholeFrequencyRange();
    /// Where the document is zoomed.
    void setFrequencyToZoom();
    double frequencyLimit(End end) const;

    bool setLimit(Quantity quantity, End end, const QString& text);
    /// The reactance quantities in both of their views.
    void setWholeExtent(Quantity quantity);
    void setToZoom(Quantity quantity);
    double limit(Quantity quantity, End end) const;
    /// Automatic limits, in both views of the quantity.
    void setAutomatic(Quantity quantity, bool automatic);
    bool isAutomatic(Quantity quantity) const;
    bool isZoomed() const { return m_document && m_document->peGraph().Zoomed(); }

    // View ------------------------------------------------------------------------------------------------------------

    void setImpedanceLinear(bool linear);
    bool isImpedanceLinear() const;
    void setFrequencyLinear(bool linear);
    void setPhaseView(std::int16_t view);
    void setAlternate(bool alternate);
    /// Impedance or admittance of a reactance document.
    void setAdmittance(bool admittance);
    void setMarkDataPoints(bool on);
    /// Program, instrument and firmware under the title of the graph.
    void setInformation(bool shown);

    // Style -----------------------------------------------------------------------------------------------------------

    /// graph::LegendLocationCode; outside the axes.
    void setLegendLocation(int location);
    void setLegendInside();
    void hideLegend();
    void setFontSize(int size);
    void setViewingStyle(int style);
    /// Every text of the graph.
    void SetNewFont(const QString& strFontName);
    void GetFontFromGraph(QString& strFontName) const;

    // Pens ------------------------------------------------------------------------------------------------------------

    void setDisplay(int pen, bool shown);
    /// Freeing a pen that carries a mask line is refused.
    void setLock(int pen, bool locked);
    /// Asks first; a locked pen is refused.
    void erase(int pen);
    /// Asks first; locked pens keep their data.
    void eraseAll();
    void setColour(int pen, std::uint32_t colour);

private:
    void writeLimits(int axis, double lower, double upper);
    /// Behind a change of limits.
    void showLimits();
    /// Behind a change of look.
    void showStyle();

    QPointer<PenDocument> m_document;
    UserMessages& m_messages;
};
