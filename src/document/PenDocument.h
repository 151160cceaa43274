// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"
#include "document/DocumentContext.h"
#include "document/content/DocumentPopup.h"
#include "document/content/Pens.h"
#include "document/content/PointWriter.h"
#include "document/content/Presentation.h"
#include "document/content/ZoomHistory.h"
#include "instrument/clsTestSettings.h"
#include "values/Outcome.h"

#include <QObject>
#include <QString>

#include <cstdint>

/// One graph document without its window and without an instrument: ten pens, their views, zoom history, clipboard and
/// plot file, each a thing of its own over one graph; this class is the face that keeps them together and tells by
/// signals what happened. frmDocument is the window over it; the command-line program uses it bare.
///
/// Pen p (0 to 9) is four subsets of peGraph; measured data lives nowhere else, in single precision:
///
///   subset | amplitude         | impedance                  | reactance
///   p      | gain, dB          | modulus of Z, Ohm          | reactance X, Ohm
///   p+10   | loss, dB          | modulus of Y, Siemens      | susceptance B, Siemens
///   p+20   | -phase magnitude  | -phase magnitude, degrees  | conductance G, Siemens
///   p+30   | signed phase      | signed phase, degrees      | resistance R, Ohm
///
/// The Y axis of subset s is s / 10. A point whose X is 0 or whose Y is -65536 ends the data of a pen (PenReader.h).
///
/// Indices of pens count from 0. An index outside 0 to 9 changes nothing and reads as 0.
/// Messages and event processing run nested event loops in which a document may be destroyed; callers that go on
/// afterwards hold it by QPointer.
class PenDocument : public QObject
{
    Q_OBJECT

public:
    using TestType = plot::TestType;
    static constexpr TestType NoTest = plot::NoTest;
    static constexpr TestType Amplitude = plot::Amplitude;
    static constexpr TestType Impedance = plot::Impedance;
    static constexpr TestType Reactance = plot::Reactance;
    static constexpr int kPens = plot::kPens;

    explicit PenDocument(const DocumentContext& context, QObject* parent = nullptr);
    ~PenDocument() override;

    GraphModel& peGraph() { return m_graph; }
    const GraphModel& peGraph() const { return m_graph; }
    const Pens& pens() const { return m_pens; }

    QString gstrKey;          ///< key in the list of documents
    bool gbfSendZoom = false; ///< a change of the X extent is told by testExtentChanged()

    std::int16_t pgiTestType() const { return m_view.testType(); } ///< plot::TestType; NoTest until a title was known
    std::int16_t gCurrentPen() const { return m_currentPen; }      ///< the pen that receives points
    bool gbfAltSubset() const { return m_view.isAlternate(); }     ///< alternate view: loss, admittance, susceptance
    bool gbfZoomExtents() const { return m_zoomExtents; }          ///< the graph shows its full extent
    bool gbfModified() const { return m_modified; }                ///< unsaved changes exist
    std::int16_t giDocumentVersion() const { return m_version; }   ///< 1 is the current format
    std::int16_t giDisplayRG() const { return m_view.rgView(); }   ///< plot::RGView
    bool gbfInitialised() const { return m_initialised; }
    double gdblTestMinFreq() const { return m_testMinFreq; } ///< Hz
    double gdblTestMaxFreq() const { return m_testMaxFreq; } ///< Hz
    clsTestSettings& gclsTestSettings() { return m_testSettings; }

    /// The window's caption.
    const QString& caption() const { return m_caption; }
    void setCaption(const QString& caption);
    void SetModified() { setModified(true); }
    void setModified(bool modified);

    // Points ---------------------------------------------------------------------------------------------------------

    /// Makes an empty graph of that type ready: axes, appearance, "Pen n" names, popup. Ends in InitialiseSettings().
    void PrepareNew(std::int16_t testType, const QString& sCaption);
    /// Works out the document's state from the graph as it stands, new or loaded. Processes events twice.
    void InitialiseSettings(const QString& sCaption, const QString& sFile);

    struct SweepStart
    {
        double frequency = 0;  ///< Hz, where the cursor of the sweep starts
        bool sampling = false; ///< the instrument samples: its points are joined while they arrive
        bool multiPen = false; ///< a locked pen gives way to the next free one
    };
    /// Begin of a plot: erases the current pen, names it by the time of day unless the user has named it and places the
    /// sweep cursor. False when the pen is locked (and no other is free): the sweep has no pen.
    bool SetPlotting(const SweepStart& start);
    /// End of a plot: the cursor goes, paste follows the clipboard.
    void SetViewing();

    /// Point lPoint (from 0) of the current pen: frequency in Hz, level in dB, phase as magnitude in degrees with its
    /// sign (+1 or -1). Only a point that was taken changes anything; it shows its pen if that is hidden. A point past
    /// plot::kPoints is TooMany.
    PointAnswer AddAmplitudePoint(double dblFreq, double dblAmp, double dblPhase, double dblSign, std::int32_t lPoint);
    /// Modulus in Ohm. A reactance document converts the point. No limit on lPoint here but the graph's.
    PointAnswer AddImpedancePoint(double dblFreq, double l_dblImp, double dblPhase, double dblSign,
                                  std::int32_t lPoint);
    /// Polar point into a reactance document.
    PointAnswer CalculateReactance(double dblFreq, double dblImp, double dblPhase, double dblSign, std::int32_t lPoint);
    /// Rectangular point, in Ohm, into an impedance document.
    PointAnswer CalculateImpedance(double dblFreq, double dblReactance, double dblResistance, std::int32_t lPoint);
    /// Ohm and Siemens.
    PointAnswer AddReactancePoint(double dblFreq, double dblReac, double dblRes, double dblSusc, double dblCond,
                                  std::int32_t lPoint);

    // Presentation ---------------------------------------------------------------------------------------------------

    /// Titles, scales and default limits of the four Y axes, the pens' names, all pens shown.
    void graphConfigureTestType(std::int16_t iTestType);
    /// X axis "Frequency - Hz", linear or logarithmic, over the sweep that is set up or the instrument's whole range.
    void graphConfigureFrequncyView(bool Linear);
    /// The view of the preferences for this type of document.
    void graphSetDefaultView();
    void graphSetDefaultApperance();
    void graphSetTickColour(std::uint32_t lColour);
    void graphUpdateStyle();
    void graphSetAlternateView(bool bfAlternate);
    /// plot::PhaseView.
    void graphSetPhase(std::int16_t View);
    std::int16_t graphGetPhaseView() const { return m_view.phaseView(); }
    /// plot::RGView.
    void graphSetRG(std::int16_t View);
    /// Manual limits of the amplitude axes in dB; the loss axis takes the negated ones.
    void graphSetAmpScale(std::int16_t iMax, std::int16_t iMin);
    /// True while the frequency axis is linear.
    bool graphGetFrequncyView() const { return m_view.isFrequencyLinear(); }
    /// Stored zooms mean nothing on the other scale and go.
    void graphSetFrequecyLinear(bool bfXLin);
    void graphUpdateDisplayedPens();
    /// Linear or logarithmic impedance and admittance axes; stored zooms go.
    void ImpedanceLinear(bool bfLinear);
    /// Tells the graph's extent, as it shall be swept.
    void SendGraphExtents();
    /// The X extent, in Hz, as it shall be swept. Processes events once.
    void UpdateTestExtents(double lMinFreq, double lMaxFreq);
    /// Shows or hides the marks of the data points.
    void ToggleMarkDataPoints() { setMarkDataPoints(!m_graph.MarkDataPoints()); }
    void setMarkDataPoints(bool on);
    Presentation::CursorTexts cursorTexts(int subset, int point) const { return m_view.cursorTexts(subset, point); }

    // Zoom -----------------------------------------------------------------------------------------------------------

    void UndooZoom();
    void RedooZoom();
    /// Back to full extent, as by the user; the history stays.
    void ZoomExtents();
    /// Zooms to the data of the shown pens, the axes of graph::AxisChoice; false when there are none.
    bool FitView(int axes);
    /// The limits of the zoom on screen; X as exponents when the axis is logarithmic.
    void GetZoomLimits(double& dblZoomMaxX, double& dblZoomMaxY, double& dblZoomMinX, double& dblZoomMinY,
                       double& dblZoomMaxTX, double& dblZoomMinTX) const;
    void RemoveStoredZooms(int intIndex);
    const ZoomHistory& zoomHistory() const { return m_zooms; }
    /// States of the buttons Zoom Extents, Undo and Redo.
    bool canZoomExtents() const { return m_zooms.canZoomExtents(); }
    bool canUndoZoom() const { return m_graph.Zoomed(); }
    bool canRedoZoom() const { return m_zooms.canRedo(); }

    // Pens -----------------------------------------------------------------------------------------------------------

    std::int16_t GetPenLock(int Index) const { return m_pens.isLocked(Index) ? 1 : 0; }
    /// The new state, 1 or 0. Refused with a message for pens 8 and 9 while the active document has masks.
    std::int16_t TogglePenLock(int Index);
    void UpdatePenLock(int Index, bool bfLock);
    void LockAllPens();
    void UnlockAllPens();
    std::int16_t GetPenDisplay(int Index) const { return m_pens.isHidden(Index) ? 1 : 0; } ///< 1 hidden, 0 shown
    std::int16_t TogglePenDisplay(int Index); ///< as GetPenDisplay; the last shown pen shows all others again
    void UpdatePenHide(int Index, bool bfHide);
    void DisplayAllPens();
    void SetPenColour(int Index, std::uint32_t Colour); ///< 0x00BBGGRR
    /// Goes to the next unlocked pen, after locking the present one if the preferences say so. False: every pen is
    /// locked and the current pen stays.
    bool SelectNextPen();
    bool TestCurrentPenLock() const { return m_pens.isLocked(m_currentPen); }
    void setCurrentPen(int Index);
    /// The state of the pens is told anew, once the document is initialised.
    void UpdateToolBars();
    void graphEraseLine(int Index); ///< a locked pen keeps its data; X values stay
    void graphResetPenName(int Index);
    void setPenName(int Index, const QString& name);
    void graphResetData();
    /// Mask lines are on: pens 8 and 9 carry them.
    bool hasMasks() const;
    /// Whoever writes the points of a pen into peGraph tells it before, while they are still there, and behind: the
    /// document is modified then and shows them.
    void tellReplacing(int Index);
    void tellReplaced(int Index);
    /// A key typed into the document's window while no test runs: digits choose the pen, L locks it, V hides it.
    void KeyPressed(QChar key);

    // Clipboard ------------------------------------------------------------------------------------------------------

    QString ExportToStringRows();
    QString ExportToStringColumns() const;
    QString CopyLineData(int intSubset);
    void PasteLineData(int intSubset, const QString& strLineData);
    /// True when the clipboard holds a pen that fits this document; canPasteChanged() follows.
    bool SniffClipboardData();
    /// The answer of the last SniffClipboardData().
    bool canPaste() const { return m_canPaste; }

    // Plot file ------------------------------------------------------------------------------------------------------

    /// Saves under the present name, or under one that the user picks (bfAs, or without a name). bfOverwrite: no
    /// question before a file is replaced. A name that would be cut at a dot of its folder, and a file that is not the
    /// document's own, are asked about whatever bfAs. True when the document was saved; a cancel is silent, a failure
    /// is told to the user and leaves the document modified.
    bool fileSave(bool bfAs, bool bfOverwrite);
    /// Writes the graph. sFileName is cut at its first "." anywhere and gets the extension of the type (reactance:
    /// none); it comes back completed.
    bool fileSavePlot(QString& sFileName);
    /// Replaces the graph by the file and works out the state. Fails, with the document as it was, for a file that is
    /// none. Processes events.
    Outcome fileLoadPlot(const QString& sFileName);
    /// The plot as a save would write it, locks included.
    QByteArray plotBytes();
    /// Replaces the graph by such bytes, as an unsaved plot of that caption without a file. Otherwise as
    /// fileLoadPlot().
    Outcome restorePlot(const QByteArray& plot, const QString& sCaption);
    /// Takes the format number from the graph as it stands.
    void readFormat();
    /// The loaded plot is of another format: the popup offers no entry that changes or exports it.
    bool isViewOnly() const { return m_viewOnly; }
    void SetFileName(const QString& sFile) { m_fileName = sFile; }
    /// Full path of the plot file, or empty.
    const QString& GetFileName() const { return m_fileName; }
    /// "major.minor" of the program that saved the plot, "0.0" when unknown.
    QString GetVersion() const;
    /// The version text that the next save writes.
    QString SetVersion() const;
    /// May the document close? Asks for unsaved changes and saves them if told so. False for a cancel and for a save
    /// that failed; after true, aboutToClose() and closed() have been raised.
    bool QueryClose();
    /// From now on, or not any longer, QueryClose() takes "No" for the answer.
    void closeUnasked(bool unasked = true) { m_closesUnasked = unasked; }

Q_SIGNALS:
    void captionChanged(const QString& caption);
    void modifiedChanged(bool modified);
    /// Lock, display, colour, name or choice of a pen.
    void pensChanged();
    void currentPenChanged(int pen);
    /// Axes, quantities, scales or marks.
    void viewChanged();
    /// Zoom or its history.
    void zoomChanged();
    void canPasteChanged(bool possible);
    /// The points of a pen were erased, pasted or loaded; -1: of all pens. Measured points are told by the instrument's
    /// side, which knows how many there will be.
    void dataChanged(int pen);
    /// The points of a pen are about to go, by a cut, a paste, a reset or a new sweep, and are still there. -1: a file
    /// is about to replace the whole plot, which has unsaved changes. Receivers change nothing and ask nothing.
    void aboutToErase(int pen);
    /// The document is about to end its life and is still whole. unsaved: with changes that no file has.
    void aboutToClose(bool unsaved);
    /// The extent that a sweep shall follow, in Hz.
    void testExtentChanged(double lowest, double highest, bool linear);
    /// The plot was saved to or loaded from this file.
    void fileUsed(const QString& fileName);
    /// The document has ended its life.
    void closed();
    /// A popup entry that belongs to the main window: the view entries (5 and 6) are handled here.
    void popupCommand(int item, int sub);
    /// The read-out of the cursor, for panels 11 and 12; both empty when what it read is gone.
    void cursorRead(const QString& xText, const QString& yText);

private:
    PointAnswer taken(bool written);
    void popupClicked(int item, int sub);
    void zoomedIn();
    void zoomedOut();
    void showZoom();
    void forgetZooms();
    void sendZoomExtent();
    void forgetCursor(int pen);
    Outcome showLoaded(const QString& caption, const QString& file);
    bool askFileName(QString& sFile);
    bool mayWrite(const QString& asked, bool bfAs, bool bfOverwrite);

    DocumentContext m_context;
    GraphModel m_graph;
    Pens m_pens;
    Presentation m_view;
    DocumentPopup m_popup;
    ZoomHistory m_zooms;
    PointWriter m_points;
    clsTestSettings m_testSettings;
    QString m_caption;
    QString m_fileName;
    QString m_ownFile; ///< the file that this document was loaded from or saved to, completed
    std::int16_t m_currentPen = 0;
    std::int16_t m_version = 1;
    bool m_zoomExtents = true;
    bool m_modified = false;
    bool m_closesUnasked = false;
    bool m_initialised = false;
    bool m_sampling = false; ///< the lines of the pen under test are joined points
    bool m_viewOnly = false;
    bool m_canPaste = false;
    int m_cursorSubset = -1; ///< read last; -1 none
    double m_testMinFreq = 0;
    double m_testMaxFreq = 0;
};
