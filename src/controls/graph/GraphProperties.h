// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <map>
#include <vector>

/// Value types of the graph control: everything a graph holds beside its data arrays. Copyable, comparable, no
/// behaviour but the check of their values.
///
/// What a plot file holds in their place that this program does not know stays in otherEntries: pairs of a name and a
/// value in CBOR, one behind the other.
namespace graph {

inline constexpr int kYAxes = 4;
inline constexpr int kTables = 3;
inline constexpr float kNullValue = -65536.0F;
/// Colours are 0x00BBGGRR; what a caller sets above these bits is dropped.
inline constexpr std::uint32_t kColorMask = 0xFFFFFF;

/// How far the texts and lists of a graph can grow.
inline constexpr int kLongestText = 32768; ///< UTF-16 code units
inline constexpr int kMaxSubsets = 64;
inline constexpr int kMaxVerticalLines = 100;
inline constexpr int kMaxMenuItems = 64;
inline constexpr int kMaxSubItems = 64;
inline constexpr int kMaxMultiSubTitles = 64;
inline constexpr int kMaxGraphAnnotations = 4096;
inline constexpr int kMaxTableRows = 1000;
inline constexpr int kMaxTableColumns = 100;
inline constexpr double kMinFontFactor = 0.1;
inline constexpr double kMaxFontFactor = 10.0;
inline constexpr double kMaxLineWidth = 50.0;

enum ScaleControl
{
    ScaleLinear = 1,
    ScaleLogarithmic = 2
};
enum ManualScaleControl
{
    ScaleAutomatic = 0,
    ScaleManual = 3
};
enum ActionCode
{
    Reinitialise = 0,
    Redraw = 3,
    UndoZoom = 19
};
enum MenuState
{
    MenuNormal = 0,
    MenuGreyed = 1,
    MenuHidden = 2
};
enum LegendLocationCode
{
    LegendTop = 0,
    LegendBottom = 1,
    LegendLeft = 2,
    LegendRight = 3
};
enum LegendStyleCode
{
    LegendOutside = 0,
    LegendInsideAxis = 1
};
enum ViewingStyleCode
{
    StyleColour = 0,
    StyleMonochrome = 1,
    StyleMonochromeSymbols = 2
};
enum FontSizeCode
{
    FontLarge = 0,
    FontMedium = 1,
    FontSmall = 2
};
/// A vertical line annotation of this type is not drawn.
inline constexpr int kLineVanished = 1000;
/// Subset line types: 0 thin solid, 1 dashed, 2 dotted, 3 dash-dot, 4 dash-dot-dot, 5 points marked and joined, 12
/// hairline (a mask line switched off); any other number is drawn as 0.
enum LineTypeCode
{
    LineSolid = 0,
    LineDash = 1,
    LineDot = 2,
    LineDashDot = 3,
    LineDashDotDot = 4,
    LinePointsJoined = 5,
    LineHair = 12
};

struct YAxis
{
    QString YAxisLabel = QStringLiteral("X"); ///< "X": the axis is switched off
    int YAxisScaleControl = ScaleLinear;
    int ManualScaleControlY = ScaleAutomatic;
    double ManualMinY = 0;
    double ManualMaxY = 1;
    float NullDataValueY = kNullValue;
    bool PlottingMode = false;
    QByteArray otherEntries = {};
    bool operator==(const YAxis&) const = default;
};

/// Limits of the zoom, in the axis unit; exponents to the base 10 where the axis is logarithmic.
struct ZoomLimits
{
    double ZoomMinX = 0, ZoomMaxX = 0;   ///< bottom X
    double ZoomMinY = 0, ZoomMaxY = 0;   ///< left Y (axes 0 and 1)
    double ZoomMinRY = 0, ZoomMaxRY = 0; ///< right Y (axes 2 and 3)
    double ZoomMinTX = 0, ZoomMaxTX = 0; ///< top X
    QByteArray otherEntries = {};
    bool operator==(const ZoomLimits&) const = default;
};

struct TableCell
{
    QString TAText;
    int TAJustification = 0; ///< 0 left, 1 centre, 2 right
    QByteArray otherEntries = {};
    bool operator==(const TableCell&) const = default;
};

/// A table annotation; also used as a carrier of data.
struct TableAnnotation
{
    bool ShowTableAnnotation = false;
    int TARows = 1;
    int TAColumns = 1;
    std::vector<TableCell> cells = std::vector<TableCell>(1); ///< TARows x TAColumns, row by row
    int TATextSize = 100;                                     ///< per cent of the graph's text size
    QString TAFonts;
    int TALocation = 4; ///< 0 top left, 1 top centre, 2 top right, 3 bottom left, 4 bottom centre, 5 bottom right
    bool TAHeaderColumn = false;
    int TABorder = 0;                     ///< 0 none, 1 thin line, 2 frame with shadow
    std::uint32_t TABackColor = 0xFFFFFF; ///< 0x00BBGGRR; 1 is transparent
    QByteArray otherEntries = {};
    bool operator==(const TableAnnotation&) const = default;
};

struct VerticalLine
{
    double position = 0;
    int type = kLineVanished;
    std::uint32_t color = 0;
    QByteArray otherEntries = {};
    bool operator==(const VerticalLine&) const = default;
};

struct MenuItem
{
    QString text;                ///< sub-items behind "|"
    std::map<int, int> states;   ///< sub-item (0 the item itself) to MenuState
    std::map<int, bool> checked; ///< sub-item to check mark
    QByteArray otherEntries = {};
    bool operator==(const MenuItem&) const = default;
};

struct Properties
{
    QString MainTitle, SubTitle;
    QString XAxisLabel, TXAxisLabel; ///< the top X axis is never shown; its title is a carrier
    int XAxisScaleControl = ScaleLinear;
    int ManualScaleControlX = ScaleAutomatic;
    double ManualMinX = 0, ManualMaxX = 1;
    std::array<YAxis, kYAxes> yAxes;
    QString AxisUnitPrefixes; ///< "p n u m k M G T ": eight prefixes from 1e-12 up, each followed by a blank
    bool zoomed = false;
    ZoomLimits zoom;
    std::vector<VerticalLine> verticalLines;
    std::array<TableAnnotation, kTables> tables;
    std::vector<MenuItem> CustomMenu;
    QStringList MultiSubTitles;
    std::map<int, QString> GraphAnnotationText;
    bool MarkDataPoints = false;
    bool ShowLegend = true;
    int LegendStyle = LegendOutside;
    int LegendLocation = LegendRight;
    int ViewingStyle = StyleColour;
    int FontSize = FontMedium;
    double FontSizeGlobalCntl = 1.0; ///< factor on every text size, kMinFontFactor to kMaxFontFactor
    QString MainTitleFont, SubTitleFont, LabelFont;
    std::uint32_t MonoGraphForeColor = 0x000000, MonoGraphBackColor = 0xFFFFFF, MonoTextColor = 0x000000,
                  MonoDeskColor = 0xFFFFFF; ///< 0x00BBGGRR
    std::uint32_t TickColor = 0xE0E0E0;     ///< graticule, 0x00BBGGRR
    double LineWidth = 1.0;                 ///< pen width of the traces, device-independent pixels
    std::vector<QString> SubsetLabels;
    std::vector<std::uint32_t> SubsetColors; ///< 0x00BBGGRR
    std::vector<int> SubsetLineTypes;
    std::vector<bool> SubsetsToShow;
    std::vector<int> RandomSubsetsToGraph; ///< subsets to draw; negative entries name none; empty: all are drawn
    QByteArray otherEntries = {};
    bool operator==(const Properties&) const = default;
};

inline bool isIn(int value, int first, int last)
{
    return value >= first && value <= last;
}
inline bool isScale(int scale)
{
    return scale == ScaleLinear || scale == ScaleLogarithmic;
}
inline bool isScaleControl(int control)
{
    return control == ScaleAutomatic || control == ScaleManual;
}

/// The name, as in a plot file, of the first property with a value that the graph's setters do not take or with a list
/// that has not the size of such a graph: SubsetLabels, SubsetColors, SubsetLineTypes and SubsetsToShow have one entry
/// a subset. Null when there is none.
const char* firstInvalid(const Properties& properties, int subsets);

/// Gives the lists with one entry a subset their defaults where they are empty.
void fillSubsetLists(Properties& properties, int subsets);

} // namespace graph
