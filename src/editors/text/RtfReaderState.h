#pragma once

#include "editors/text/RtfDocumentBuilder.h"
#include "editors/text/RtfKeywords.h"

#include <QList>
#include <QString>
#include <QTextCharFormat>
#include <QTextOption>

#include <array>
#include <cstddef>

namespace kestrum::text {

// Limits of the RTF reader: hostile input never grows a table past them.
namespace rtf {
constexpr int kMaxFonts = 4096;
constexpr int kMaxStyles = 4096;
constexpr int kMaxFileColours = 65536;
constexpr int kMaxDestinationText = 65536;
constexpr int kMaxListDefinitions = 4096;
constexpr int kMaxListLevels = 9;
constexpr int kMaxTabStops = 64;
// Lengths in twips are clamped to 22 inches (a generous paper size).
constexpr int kMaxTwips = 31680;
// Border widths and spaces, letter spacing and row gaps: at most an inch.
constexpr int kMaxSmallTwips = 1440;
// Font sizes in half points (\fsN): 24 is 12 pt, the default of RTF.
constexpr int kDefaultHalfPoints = 24;
constexpr int kMaxHalfPoints = 3276;
// \slN with this value means "automatic line spacing".
constexpr int kAutoLineSpacing = 1000;
} // namespace rtf

// What the text of the current group goes to.
enum class RtfDestination
{
    Normal,
    Skip,
    FontTable,
    ColourTable,
    StyleSheet,
    Picture,
    FieldInstruction,
    BookmarkStart,
    BookmarkEnd,
    ListTable,
    LevelText,
    ListOverrideTable,
    PnDefinition,
    PnTextBefore,
    PnTextAfter,
    Footnote,
    NestTableProps,
};

enum class RtfVertical : quint8
{
    Baseline,
    Superscript,
    Subscript,
};

enum class RtfCaps : quint8
{
    Normal,
    All,
    Small,
};

enum class RtfAlignment : quint8
{
    Left,
    Centre,
    Right,
    Justified,
};

// One control word as the handlers see it.
struct RtfWord
{
    RtfKeyword keyword;
    int parameter = 0;
    bool hasParameter = false;

    // A toggle word (\b, \b1, \b0): on unless its parameter is 0.
    bool on() const { return !hasParameter || parameter != 0; }
};

struct RtfCharState
{
    int font = -1;
    int halfPoints = rtf::kDefaultHalfPoints;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool hidden = false;
    quint8 underline = QTextCharFormat::NoUnderline;
    RtfVertical vertical = RtfVertical::Baseline;
    RtfCaps caps = RtfCaps::Normal;
    int foreground = 0;
    int background = 0;
    int spacing = 0; // twips
    QString href;

    friend bool operator==(const RtfCharState&, const RtfCharState&) = default;
};

struct RtfParaState
{
    RtfAlignment alignment = RtfAlignment::Left;
    int left = 0;
    int right = 0;
    int first = 0;
    int before = 0;
    int after = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    QList<QTextOption::Tab> tabs;
    int pendingTabType = QTextOption::LeftTab;
    int tableDepth = 0; // \itapN: 0 outside tables, 1 in a table, 2 in a nested table...
    int listOverride = 0;
    int listLevel = 0;
    int legacyList = -1;
    std::array<RtfBorder, SideCount> borders;
    int shading = 0;
    bool pageBreakBefore = false;
    bool keep = false;
    int style = 0;
    int outlineLevel = -1;
};

struct RtfGroupState
{
    RtfDestination dest = RtfDestination::Normal;
    RtfCharState chr;
    RtfParaState para;
    int uc = 1;
};

} // namespace kestrum::text
