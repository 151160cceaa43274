// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"
#include "document/DocumentContext.h"
#include "document/ZoomHistory.h"
#include "values/Outcome.h"

#include <QObject>
#include <QString>

#include <array>
#include <cstdint>
#include <memory>

class clsTestSettings;

/// One graph document without its window: ten pens, their views, zoom history, clipboard and plot file. frmDocument is
/// the window over it; the command-line program uses it bare.
///
/// Pen p (0 to 9) is four subsets of peGraph; measured data lives nowhere else, in single precision:
///
///   subset | amplitude         | impedance                  | reactance
///   p      | gain, dB          | modulus of Z, Ohm          | reactance X, Ohm
///   p+10   | loss, dB          | modulus of Y, Siemens      | susceptance B, Siemens
///   p+20   | -phase magnitude  | -phase magnitude, degrees  | conductance G, Siemens
///   p+30   | signed phase      | signed phase, degrees      | resistance R, Ohm
///
/// The Y axis of subset s is s / 10. An axis that is switched off has the title "X". A point whose X is 0 or whose Y is
/// -65536 ends the data of a pen (PenReader.h).
///
/// Indices of pens count from 0. An index outside 0 to 9 changes nothing and reads as 0.
/// Messages and event processing run nested event loops in which a document may be destroyed; callers that go on
/// afterwards hold it by QPointer.
class PenDocument : public QObject
{
    Q_OBJECT

public:
    static constexpr int kPens = 10;
    enum TestType : std::int16_t
    {
        NoTest = 0,
        Amplitude = 1,
        Impedance = 2,
        Reactance = 3
    };
    /// Entries of the popup menu, in their order.
    enum PopupItem
    {
        PopupTestSettings = 0,
        PopupViewOptions = 1,
        PopupAddText = 2,
        PopupAnalysis = 3,
        PopupLoop = 4,
        PopupView = 5,  ///< impedance or admittance, gain or loss; hidden for reactance
        PopupPhase = 6, ///< phase view; reactance: impedance or admittance
        PopupMarkPoints = 7,
        PopupCut = 8,
        PopupCopy = 9,
        PopupPaste = 10,
        PopupZoomExtents = 11,
        PopupUndoZoom = 12,
        PopupRedoZoom = 13,
        PopupExport = 14,
        PopupProperties = 15
    };

    explicit PenDocument(const DocumentContext& context, QObject* parent = nullptr);
    ~PenDocument() override;

    GraphModel& peGraph() { return m_graph; }
    const GraphModel& peGraph() const { return m_graph; }
    const DocumentContext& context() const { return m_context; }

    QString gstrKey;                   ///< key in the list of documents
    std::int16_t pgiTestType = NoTest; ///< TestType; 0 until a title was recognised
    std::int16_t gCurrentPen = 0;      ///< the pen that receives points
    bool gbfAltSubset = false;         ///< alternate view: loss, admittance, susceptance
    bool gbfZoomExtents = true;        ///< the graph shows its full extent
    bool gbfSendZoom = false;          ///< a change of the X extent goes on to the instrument
    bool gbfModified = false;          ///< unsaved changes exist
    QString gsFileName;                ///< full path of the plot file, or empty
    std::int16_t giDocumentVersion = 1;
    std::int16_t giDisplayRG = 0; ///< reactance: 1 resistance, 2 conductance on the right axis, 0 neither

    /// The window's caption; the window follows captionChanged().
    const QString& caption() const { return m_caption; }
    void setCaption(const QString& caption);
    /// Set by the main window when it closes this document: see QueryClose().
    void setClosing(bool bfClosing) { gbfClosing = bfClosing; }
    bool gbfInitialised() const { return m_gbfInitialised; }
    double gdblTestMinFreq() const { return m_gdblTestMinFreq; } ///< Hz
    double gdblTestMaxFreq() const { return m_gdblTestMaxFreq; } ///< Hz
    clsTestSettings& gclsTestSettings() { return *m_gclsTestSettings; }

    // Points ---------------------------------------------------------------------------------------------------------

    /// Makes an empty graph of that type ready: axes, appearance, "Pen n" names, popup. Ends in InitialiseSettings().
    void PrepareNew(std::int16_t testType, const QString& sCaption);
    /// Works out the document's state from the graph as it stands, new or loaded. Processes events once.
    void InitialiseSettings(const QString& sCaption, const QString& sFile);
    void SetModified();
    /// Begin of a plot: erases the current pen, names it by the time of day unless the user has named it and places the
    /// sweep cursor. Nothing happens unless a test runs. With a locked pen and no free one "x\r" stops the sweep.
    void SetPlotting();
    /// End of a plot: the cursor goes, paste follows the clipboard.
    void SetViewing();

    /// Point lPoint (from 0) of the current pen: frequency in Hz, level in dB, phase as magnitude in degrees with its
    /// sign
    /// (+1 or -1). A point that the graph does not have is refused by it. Data on a hidden pen shows the pen.
    /// Past 1024 "y\r" is sent and "Too many points!" shown; a document of another type sends "y\r", turns reception
    /// off and shows "Wrong type of data for graph".
    void AddAmplitudePoint(double dblFreq, double dblAmp, double dblPhase, double dblSign, std::int32_t lPoint);
    /// Modulus in Ohm. A reactance document converts the point. No limit on lPoint here: the graph refuses what it
    /// lacks.
    void AddImpedancePoint(double dblFreq, double l_dblImp, double dblPhase, double dblSign, std::int32_t lPoint);
    /// Polar point into a reactance document.
    void CalculateReactance(double dblFreq, double dblImp, double dblPhase, double dblSign, std::int32_t lPoint);
    /// Rectangular point, in Ohm, into an impedance document.
    void CalculateImpedance(double dblFreq, double dblReactance, double dblResistance, std::int32_t lPoint);
    /// Ohm and Siemens.
    void AddReactancePoint(double dblFreq, double dblReac, double dblRes, double dblSusc, double dblCond,
                           std::int32_t lPoint);

    // Presentation ---------------------------------------------------------------------------------------------------

    /// Titles, scales and default limits of the four Y axes, the pens' names, all pens shown.
    void graphConfigureTestType(std::int16_t iTestType);
    /// X axis "Frequency - Hz", linear or logarithmic, from the start to the end of the sweep settings, or over the
    /// instrument's whole range when these are no range.
    void graphConfigureFrequncyView(bool Linear);
    /// The view of the preferences for this type of document.
    void graphSetDefaultView();
    void graphSetDefaultApperance();
    void graphSetTickColour(std::uint32_t lColour);
    void graphUpdateStyle();
    void graphSetAlternateView(bool bfAlternate);
    /// 0 no phase, 1 the axis called "180" (subsets p+20), 2 the axis called "360" (p+30).
    void graphSetPhase(std::int16_t View);
    std::int16_t graphGetPhaseView() const { return giPhaseView; }
    /// 1 resistance, 2 conductance, 0 neither.
    void graphSetRG(std::int16_t View);
    /// Manual limits of the amplitude axes in dB; the loss axis takes the negated ones.
    void graphSetAmpScale(std::int16_t iMax, std::int16_t iMin);
    /// True while the frequency axis is linear.
    bool graphGetFrequncyView() const { return gbfXLinear; }
    /// Stored zooms mean nothing on the other scale and go.
    void graphSetFrequecyLinear(bool bfXLin);
    void graphUpdateDisplayedPens();
    /// Linear or logarithmic impedance and admittance axes.
    void ImpedanceLinear(bool bfLinear);
    /// Sends the graph's extent to the instrument, if the sweep follows it.
    void SendGraphExtents();
    /// The X extent, in Hz, as it shall be swept. Processes events once.
    void UpdateTestExtents(double lMinFreq, double lMaxFreq);
    /// Shows or hides the marks of the data points.
    void ToggleMarkDataPoints();
    void setMarkDataPoints(bool on);
    /// Texts of panels 11 and 12 for a point under the cursor.
    struct CursorTexts
    {
        QString x, y;
    };
    CursorTexts cursorTexts(int subset, int point) const;

    // Zoom -----------------------------------------------------------------------------------------------------------

    void UndooZoom();
    void RedooZoom();
    /// Back to full extent, as by the user; the history stays.
    void ZoomExtents();
    /// The limits of the zoom on screen; X as exponents when the axis is logarithmic.
    void GetZoomLimits(double& dblZoomMaxX, double& dblZoomMaxY, double& dblZoomMinX, double& dblZoomMinY,
                       double& dblZoomMaxTX, double& dblZoomMinTX) const;
    void RemoveStoredZooms(int intIndex);
    const ZoomHistory& zoomHistory() const { return gcolZooms; }
    /// States of the buttons Zoom Extents, Undo and Redo.
    bool canZoomExtents() const { return gcolZooms.canZoomExtents(); }
    bool canUndoZoom() const { return m_graph.Zoomed(); }
    bool canRedoZoom() const { return gcolZooms.canRedo(); }

    // Pens -----------------------------------------------------------------------------------------------------------

    std::int16_t GetPenLock(int Index) const; ///< 1 locked, 0 free
    /// The new state, 1 or 0. Refused with a message for pens 8 and 9 while the active document has masks.
    std::int16_t TogglePenLock(int Index);
    void UpdatePenLock(int Index, bool bfLock);
    void LockAllPens();
    void UnlockAllPens();
    std::int16_t GetPenDisplay(int Index) const; ///< 1 hidden, 0 shown: the value of the hide flag
    std::int16_t TogglePenDisplay(int Index);    ///< as GetPenDisplay; the last shown pen shows all others again
    void UpdatePenHide(int Index, bool bfHide);
    void DisplayAllPens();
    void SetPenColour(int Index, std::uint32_t Colour); ///< 0x00BBGGRR
    /// Goes to the next unlocked pen, after locking the present one if the preferences say so. False: every pen is
    /// locked and the current pen stays.
    bool SelectNextPen();
    bool TestCurrentPenLock() const;
    /// Makes a pen current; nothing else follows.
    void setCurrentPen(int Index);
    void DefaultToolBars();
    void UpdateToolBars();
    void graphEraseLine(int Index); ///< a locked pen keeps its data; X values stay
    void graphResetPenName(int Index);
    void graphResetData();
    /// A key typed into the document's window: digits choose the pen, L locks it, V hides it. Ignored while a test
    /// runs.
    void KeyPressed(QChar key);

    // Clipboard ------------------------------------------------------------------------------------------------------

    QString ExportToStringRows();
    QString ExportToStringColumns() const;
    QString CopyLineData(int intSubset);
    void PasteLineData(int intSubset, const QString& strLineData);
    /// True when the clipboard holds a pen that fits this document; paste items follow.
    bool SniffClipboardData();
    /// The answer of the last SniffClipboardData().
    bool canPaste() const { return m_canPaste; }

    // Plot file ------------------------------------------------------------------------------------------------------

    /// Saves under the present name, or under one that the user picks (bfAs, or without a name). bfOverwrite: no
    /// question before a file is replaced. True when the document was saved; a cancel is silent, a failure is told to
    /// the user and leaves gbfModified set.
    bool fileSave(bool bfAs, bool bfOverwrite);
    /// Writes the graph. sFileName is cut at its first "." anywhere and gets the extension of the type (reactance:
    /// none); it comes back completed. gsFileName takes it as it was given.
    bool fileSavePlot(QString& sFileName);
    /// Replaces the graph by the file and works out the state. Fails, with the document as it was, for a file that is
    /// none. Processes events.
    Outcome fileLoadPlot(const QString& sFileName);
    /// The loaded plot is of another format: the popup offers no entry that changes or exports it.
    bool isViewOnly() const { return m_viewOnly; }
    void SetFileName(const QString& sFile) { gsFileName = sFile; }
    const QString& GetFileName() const { return gsFileName; }
    /// "major.minor" of the program that saved the plot, "0.0" when unknown.
    QString GetVersion() const;
    /// The version text that the next save writes.
    QString SetVersion() const;
    /// May the window close? Asks for an unsaved document, saves it if told so, and takes the document off the list.
    /// The answer is false for a close that the main window did not start, for a test that goes on and for a cancel.
    bool QueryClose();

Q_SIGNALS:
    void captionChanged(const QString& caption);
    /// A popup entry that belongs to the main window: the view entries (5 and 6) are handled here.
    void popupCommand(int item, int sub);
    /// The read-out of the cursor, for panels 11 and 12.
    void cursorRead(const QString& xText, const QString& yText);

private:
    bool isPen(int Index) const { return Index >= 0 && Index < kPens; }
    bool isHidden(int Index) const { return isPen(Index) && gbfPenHide[static_cast<std::size_t>(Index)]; }
    bool isLocked(int Index) const { return isPen(Index) && gbfPenLock[static_cast<std::size_t>(Index)]; }
    void readViewFromTitles();
    void readShownPens();
    void readPenLocks();
    QString lockText() const;
    void writePoint(double x, double y, double alternate, double third, double fourth, std::int32_t lPoint);
    void refuseWrongType();
    void nameAxes();
    void buildPopup();
    void updatePopupChecks();
    void updateZoomButtons();
    void popupClicked(int item, int sub);
    void zoomedIn();
    void zoomedOut();
    void sendZoomExtent();
    /// A zoom limit of the X axis in Hz, or in the axis unit where the axis is no frequency.
    double plainX(double zoomLimit) const;
    void setManualLimits(int axis, int control, double minimum, double maximum);
    bool activeDocumentHasMasks() const;
    bool askFileName(QString& sFile);

    DocumentContext m_context;
    GraphModel m_graph;
    ZoomHistory gcolZooms;
    std::unique_ptr<clsTestSettings> m_gclsTestSettings;
    QString m_caption;
    bool gbfXLinear = false;
    std::int16_t giPhaseView = 0;
    std::array<bool, kPens> gbfPenLock{};
    std::array<bool, kPens> gbfPenHide{};
    bool m_gbfInitialised = false;
    bool gbfClosing = false;
    bool m_viewOnly = false;
    bool m_canPaste = false;
    double m_gdblTestMinFreq = 0;
    double m_gdblTestMaxFreq = 0;
};
