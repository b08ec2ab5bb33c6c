#include "RtfReader.h"

#include "editors/text/ColourTable.h"
#include "editors/text/DocumentPictures.h"
#include "editors/text/RtfCodePage.h"
#include "editors/text/RtfDocumentBuilder.h"
#include "editors/text/RtfTokenizer.h"
#include "editors/text/TextProperties.h"

#include <QBuffer>
#include <QImageReader>
#include <QRegularExpression>
#include <QTextDocument>

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace kestrum::text {

namespace {

// The list style of an RTF number format (1 upper roman, 2 lower roman, 3 upper letters,
// 4 lower letters, anything else decimal).
QTextListFormat::Style numberingStyle(int format)
{
    switch (format) {
    case 1:
        return QTextListFormat::ListUpperRoman;
    case 2:
        return QTextListFormat::ListLowerRoman;
    case 3:
        return QTextListFormat::ListUpperAlpha;
    case 4:
        return QTextListFormat::ListLowerAlpha;
    default:
        return QTextListFormat::ListDecimal;
    }
}

constexpr int kMaxFonts = 4096;
constexpr int kMaxFileColours = 65536;
constexpr int kMaxDestinationText = 65536;
constexpr int kMaxListDefinitions = 4096;
constexpr int kMaxTabStops = 64;

// ---- keywords ----------------------------------------------------------------------------------

enum class Kw
{
    Unknown,
    // document
    Rtf,
    Ansi,
    Mac,
    Pc,
    Pca,
    AnsiCpg,
    Deff,
    PaperW,
    PaperH,
    MargL,
    MargR,
    MargT,
    MargB,
    Landscape,
    PgWsxn,
    PgHsxn,
    MargLsxn,
    MargRsxn,
    MargTsxn,
    MargBsxn,
    // destinations
    FontTbl,
    ColorTbl,
    StyleSheet,
    Info,
    Pict,
    Field,
    FldInst,
    FldRslt,
    BkmkStart,
    BkmkEnd,
    ListTable,
    List,
    ListLevel,
    LevelText,
    LevelNumbers,
    ListName,
    ListOverrideTable,
    ListOverride,
    Pn,
    PnText,
    PnTxtA,
    PnTxtB,
    ListText,
    ShpPict,
    NonShpPict,
    Result,
    ShpRslt,
    Object,
    Shp,
    SkipDestination,
    // special characters
    Par,
    Sect,
    Line,
    Tab,
    Page,
    Cell,
    Row,
    NestCell,
    NestRow,
    EmDash,
    EnDash,
    EmSpace,
    EnSpace,
    QmSpace,
    Bullet,
    LQuote,
    RQuote,
    LDblQuote,
    RDblQuote,
    Zwj,
    Zwnj,
    U,
    Uc,
    Bin,
    // character formats
    Plain,
    F,
    Fs,
    B,
    I,
    Ul,
    UlNone,
    UlDotted,
    UlDashed,
    UlWave,
    UlDouble,
    Strike,
    StrikeD,
    Sub,
    Super,
    NoSuperSub,
    Up,
    Dn,
    Cf,
    Cb,
    ChCbPat,
    Highlight,
    V,
    Caps,
    SCaps,
    ExpndTw,
    Expnd,
    // paragraph formats
    Pard,
    Ql,
    Qr,
    Qc,
    Qj,
    Qd,
    Li,
    Ri,
    Fi,
    Sb,
    Sa,
    Sl,
    SlMult,
    Tx,
    Tqr,
    Tqc,
    Tqdec,
    Tb,
    InTbl,
    Itap,
    Keep,
    PageBb,
    S,
    OutlineLevel,
    Ls,
    Ilvl,
    CbPat,
    BrdrT,
    BrdrB,
    BrdrL,
    BrdrR,
    Box,
    BrdrS,
    BrdrTh,
    BrdrDb,
    BrdrDot,
    BrdrDash,
    BrdrNone,
    BrdrW,
    BrdrCf,
    BrSp,
    BrdrOther,
    // tables
    TrowD,
    TrGaph,
    TrLeft,
    TrQl,
    TrQc,
    TrQr,
    TrHdr,
    CellX,
    ClCbPat,
    ClBrdrT,
    ClBrdrB,
    ClBrdrL,
    ClBrdrR,
    ClVmgf,
    ClVmrg,
    ClMgf,
    ClMrg,
    ClVertalT,
    ClVertalC,
    ClVertalB,
    TrBrdrT,
    TrBrdrB,
    TrBrdrL,
    TrBrdrR,
    TrBrdrH,
    TrBrdrV,
    // fonts and colours
    FCharset,
    Cpg,
    Red,
    Green,
    Blue,
    // pictures
    PngBlip,
    JpegBlip,
    EmfBlip,
    WMetafile,
    DiBitmap,
    WBitmap,
    MacPict,
    PmMetafile,
    PicW,
    PicH,
    PicWGoal,
    PicHGoal,
    PicScaleX,
    PicScaleY,
    // lists
    ListId,
    LevelNfc,
    LevelStartAt,
    PnLvl,
    PnLvlBlt,
    PnLvlBody,
    PnLvlCont,
    PnDec,
    PnUcLtr,
    PnLcLtr,
    PnUcRm,
    PnLcRm,
    PnStart,
};

const std::unordered_map<std::string_view, Kw>& keywords()
{
    static const std::unordered_map<std::string_view, Kw> table = {
        {"rtf", Kw::Rtf},
        {"ansi", Kw::Ansi},
        {"mac", Kw::Mac},
        {"pc", Kw::Pc},
        {"pca", Kw::Pca},
        {"ansicpg", Kw::AnsiCpg},
        {"deff", Kw::Deff},
        {"paperw", Kw::PaperW},
        {"paperh", Kw::PaperH},
        {"margl", Kw::MargL},
        {"margr", Kw::MargR},
        {"margt", Kw::MargT},
        {"margb", Kw::MargB},
        {"landscape", Kw::Landscape},
        {"pgwsxn", Kw::PgWsxn},
        {"pghsxn", Kw::PgHsxn},
        {"marglsxn", Kw::MargLsxn},
        {"margrsxn", Kw::MargRsxn},
        {"margtsxn", Kw::MargTsxn},
        {"margbsxn", Kw::MargBsxn},
        {"fonttbl", Kw::FontTbl},
        {"colortbl", Kw::ColorTbl},
        {"stylesheet", Kw::StyleSheet},
        {"info", Kw::Info},
        {"pict", Kw::Pict},
        {"field", Kw::Field},
        {"fldinst", Kw::FldInst},
        {"fldrslt", Kw::FldRslt},
        {"bkmkstart", Kw::BkmkStart},
        {"bkmkend", Kw::BkmkEnd},
        {"listtable", Kw::ListTable},
        {"list", Kw::List},
        {"listlevel", Kw::ListLevel},
        {"leveltext", Kw::LevelText},
        {"levelnumbers", Kw::LevelNumbers},
        {"listname", Kw::ListName},
        {"listoverridetable", Kw::ListOverrideTable},
        {"listoverride", Kw::ListOverride},
        {"pn", Kw::Pn},
        {"pntext", Kw::PnText},
        {"pntxta", Kw::PnTxtA},
        {"pntxtb", Kw::PnTxtB},
        {"listtext", Kw::ListText},
        {"shppict", Kw::ShpPict},
        {"nonshppict", Kw::NonShpPict},
        {"result", Kw::Result},
        {"shprslt", Kw::ShpRslt},
        {"object", Kw::Object},
        {"shp", Kw::Shp},
        // destinations whose content is never text of the document
        {"header", Kw::SkipDestination},
        {"headerl", Kw::SkipDestination},
        {"headerr", Kw::SkipDestination},
        {"headerf", Kw::SkipDestination},
        {"footer", Kw::SkipDestination},
        {"footerl", Kw::SkipDestination},
        {"footerr", Kw::SkipDestination},
        {"footerf", Kw::SkipDestination},
        {"footnote", Kw::SkipDestination},
        {"annotation", Kw::SkipDestination},
        {"atnid", Kw::SkipDestination},
        {"atnauthor", Kw::SkipDestination},
        {"xe", Kw::SkipDestination},
        {"tc", Kw::SkipDestination},
        {"txe", Kw::SkipDestination},
        {"rxe", Kw::SkipDestination},
        {"filetbl", Kw::SkipDestination},
        {"revtbl", Kw::SkipDestination},
        {"rsidtbl", Kw::SkipDestination},
        {"template", Kw::SkipDestination},
        {"objdata", Kw::SkipDestination},
        {"objclass", Kw::SkipDestination},
        {"shpinst", Kw::SkipDestination},
        {"themedata", Kw::SkipDestination},
        {"colorschememapping", Kw::SkipDestination},
        {"latentstyles", Kw::SkipDestination},
        {"datastore", Kw::SkipDestination},
        {"xmlnstbl", Kw::SkipDestination},
        {"generator", Kw::SkipDestination},
        {"mmathPr", Kw::SkipDestination},
        {"userprops", Kw::SkipDestination},
        {"docvar", Kw::SkipDestination},
        {"pgdsctbl", Kw::SkipDestination},
        {"falt", Kw::SkipDestination},
        {"panose", Kw::SkipDestination},
        {"nesttableprops", Kw::SkipDestination},
        {"picprop", Kw::SkipDestination},
        {"blipuid", Kw::SkipDestination},
        {"title", Kw::SkipDestination},
        {"author", Kw::SkipDestination},
        {"operator", Kw::SkipDestination},
        {"company", Kw::SkipDestination},
        {"subject", Kw::SkipDestination},
        {"keywords", Kw::SkipDestination},
        {"comment", Kw::SkipDestination},
        {"doccomm", Kw::SkipDestination},
        {"fname", Kw::SkipDestination},
        {"listpicture", Kw::SkipDestination},
        {"ftnsep", Kw::SkipDestination},
        {"ftnsepc", Kw::SkipDestination},
        {"aftnsep", Kw::SkipDestination},
        {"aftnsepc", Kw::SkipDestination},
        {"fldtype", Kw::SkipDestination},
        // characters
        {"par", Kw::Par},
        {"sect", Kw::Sect},
        {"line", Kw::Line},
        {"tab", Kw::Tab},
        {"page", Kw::Page},
        {"cell", Kw::Cell},
        {"row", Kw::Row},
        {"nestcell", Kw::NestCell},
        {"nestrow", Kw::NestRow},
        {"emdash", Kw::EmDash},
        {"endash", Kw::EnDash},
        {"emspace", Kw::EmSpace},
        {"enspace", Kw::EnSpace},
        {"qmspace", Kw::QmSpace},
        {"bullet", Kw::Bullet},
        {"lquote", Kw::LQuote},
        {"rquote", Kw::RQuote},
        {"ldblquote", Kw::LDblQuote},
        {"rdblquote", Kw::RDblQuote},
        {"zwj", Kw::Zwj},
        {"zwnj", Kw::Zwnj},
        {"u", Kw::U},
        {"uc", Kw::Uc},
        {"bin", Kw::Bin},
        // character formats
        {"plain", Kw::Plain},
        {"f", Kw::F},
        {"fs", Kw::Fs},
        {"b", Kw::B},
        {"i", Kw::I},
        {"ul", Kw::Ul},
        {"ulnone", Kw::UlNone},
        {"uld", Kw::UlDotted},
        {"ulth", Kw::Ul},
        {"ulw", Kw::Ul},
        {"uldb", Kw::UlDouble},
        {"uldash", Kw::UlDashed},
        {"uldashd", Kw::UlDashed},
        {"uldashdd", Kw::UlDashed},
        {"ulthd", Kw::UlDotted},
        {"ulthdash", Kw::UlDashed},
        {"ulwave", Kw::UlWave},
        {"ulhwave", Kw::UlWave},
        {"ululdbwave", Kw::UlWave},
        {"strike", Kw::Strike},
        {"striked", Kw::StrikeD},
        {"sub", Kw::Sub},
        {"super", Kw::Super},
        {"nosupersub", Kw::NoSuperSub},
        {"up", Kw::Up},
        {"dn", Kw::Dn},
        {"cf", Kw::Cf},
        {"cb", Kw::Cb},
        {"chcbpat", Kw::ChCbPat},
        {"highlight", Kw::Highlight},
        {"v", Kw::V},
        {"caps", Kw::Caps},
        {"scaps", Kw::SCaps},
        {"expndtw", Kw::ExpndTw},
        {"expnd", Kw::Expnd},
        // paragraph formats
        {"pard", Kw::Pard},
        {"ql", Kw::Ql},
        {"qr", Kw::Qr},
        {"qc", Kw::Qc},
        {"qj", Kw::Qj},
        {"qd", Kw::Qd},
        {"li", Kw::Li},
        {"lin", Kw::Li},
        {"ri", Kw::Ri},
        {"rin", Kw::Ri},
        {"fi", Kw::Fi},
        {"sb", Kw::Sb},
        {"sa", Kw::Sa},
        {"sl", Kw::Sl},
        {"slmult", Kw::SlMult},
        {"tx", Kw::Tx},
        {"tqr", Kw::Tqr},
        {"tqc", Kw::Tqc},
        {"tqdec", Kw::Tqdec},
        {"tb", Kw::Tb},
        {"intbl", Kw::InTbl},
        {"itap", Kw::Itap},
        {"keep", Kw::Keep},
        {"pagebb", Kw::PageBb},
        {"s", Kw::S},
        {"outlinelevel", Kw::OutlineLevel},
        {"ls", Kw::Ls},
        {"ilvl", Kw::Ilvl},
        {"cbpat", Kw::CbPat},
        {"brdrt", Kw::BrdrT},
        {"brdrb", Kw::BrdrB},
        {"brdrl", Kw::BrdrL},
        {"brdrr", Kw::BrdrR},
        {"box", Kw::Box},
        {"brdrs", Kw::BrdrS},
        {"brdrth", Kw::BrdrTh},
        {"brdrdb", Kw::BrdrDb},
        {"brdrdot", Kw::BrdrDot},
        {"brdrdash", Kw::BrdrDash},
        {"brdrdashsm", Kw::BrdrDash},
        {"brdrdashd", Kw::BrdrDash},
        {"brdrnone", Kw::BrdrNone},
        {"brdrw", Kw::BrdrW},
        {"brdrcf", Kw::BrdrCf},
        {"brsp", Kw::BrSp},
        {"brdrsh", Kw::BrdrOther},
        {"brdrhair", Kw::BrdrS},
        {"brdrtriple", Kw::BrdrDb},
        {"brdrsingle", Kw::BrdrS},
        {"brdrinset", Kw::BrdrS},
        {"brdroutset", Kw::BrdrS},
        {"brdremboss", Kw::BrdrS},
        {"brdrengrave", Kw::BrdrS},
        // tables
        {"trowd", Kw::TrowD},
        {"trgaph", Kw::TrGaph},
        {"trleft", Kw::TrLeft},
        {"trql", Kw::TrQl},
        {"trqc", Kw::TrQc},
        {"trqr", Kw::TrQr},
        {"trhdr", Kw::TrHdr},
        {"cellx", Kw::CellX},
        {"clcbpat", Kw::ClCbPat},
        {"clbrdrt", Kw::ClBrdrT},
        {"clbrdrb", Kw::ClBrdrB},
        {"clbrdrl", Kw::ClBrdrL},
        {"clbrdrr", Kw::ClBrdrR},
        {"clvmgf", Kw::ClVmgf},
        {"clvmrg", Kw::ClVmrg},
        {"clmgf", Kw::ClMgf},
        {"clmrg", Kw::ClMrg},
        {"clvertalt", Kw::ClVertalT},
        {"clvertalc", Kw::ClVertalC},
        {"clvertalb", Kw::ClVertalB},
        {"trbrdrt", Kw::TrBrdrT},
        {"trbrdrb", Kw::TrBrdrB},
        {"trbrdrl", Kw::TrBrdrL},
        {"trbrdrr", Kw::TrBrdrR},
        {"trbrdrh", Kw::TrBrdrH},
        {"trbrdrv", Kw::TrBrdrV},
        // fonts and colours
        {"fcharset", Kw::FCharset},
        {"cpg", Kw::Cpg},
        {"red", Kw::Red},
        {"green", Kw::Green},
        {"blue", Kw::Blue},
        // pictures
        {"pngblip", Kw::PngBlip},
        {"jpegblip", Kw::JpegBlip},
        {"emfblip", Kw::EmfBlip},
        {"wmetafile", Kw::WMetafile},
        {"dibitmap", Kw::DiBitmap},
        {"wbitmap", Kw::WBitmap},
        {"macpict", Kw::MacPict},
        {"pmmetafile", Kw::PmMetafile},
        {"picw", Kw::PicW},
        {"pich", Kw::PicH},
        {"picwgoal", Kw::PicWGoal},
        {"pichgoal", Kw::PicHGoal},
        {"picscalex", Kw::PicScaleX},
        {"picscaley", Kw::PicScaleY},
        // lists
        {"listid", Kw::ListId},
        {"levelnfc", Kw::LevelNfc},
        {"levelnfcn", Kw::LevelNfc},
        {"levelstartat", Kw::LevelStartAt},
        {"pnlvl", Kw::PnLvl},
        {"pnlvlblt", Kw::PnLvlBlt},
        {"pnlvlbody", Kw::PnLvlBody},
        {"pnlvlcont", Kw::PnLvlCont},
        {"pndec", Kw::PnDec},
        {"pnucltr", Kw::PnUcLtr},
        {"pnlcltr", Kw::PnLcLtr},
        {"pnucrm", Kw::PnUcRm},
        {"pnlcrm", Kw::PnLcRm},
        {"pnstart", Kw::PnStart},
    };
    return table;
}

Kw keyword(QByteArrayView word)
{
    const auto& table = keywords();
    const auto it = table.find(std::string_view(word.data(), std::size_t(word.size())));
    return it == table.end() ? Kw::Unknown : it->second;
}

// ---- state -------------------------------------------------------------------------------------

enum class Dest
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
};

struct CharState
{
    int font = -1;
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool hidden = false;
    quint8 underline = QTextCharFormat::NoUnderline;
    quint8 vertical = 0; // 1 superscript, 2 subscript
    quint8 caps = 0;     // 1 all capitals, 2 small capitals
    int foreground = 0;
    int background = 0;
    int spacing = 0; // twips
    QString href;

    friend bool operator==(const CharState&, const CharState&) = default;
};

struct ParaState
{
    int alignment = 0; // 0 left, 1 centre, 2 right, 3 justified
    int left = 0;
    int right = 0;
    int first = 0;
    int before = 0;
    int after = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    QList<QTextOption::Tab> tabs;
    int pendingTabType = QTextOption::LeftTab;
    bool inTable = false;
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

struct GroupState
{
    Dest dest = Dest::Normal;
    CharState chr;
    ParaState para;
    int uc = 1;
};

struct DestContext
{
    Dest kind;
    std::size_t depth;
    QString text;
};

struct FontEntry
{
    QString name;
    int codePage = 0;
};

struct LevelDef
{
    int nfc = 0;
    QString text;
};

struct ListDef
{
    int id = 0;
    std::vector<LevelDef> levels;
};

struct LegacyList
{
    bool bullet = true;
    int style = 0; // levelnfc numbering of the old form
    int level = 0;
    QString before;
    QString after;
};

struct PictureState
{
    PictureKind kind = PictureKind::None;
    QByteArray header;
    int picw = 0;
    int pich = 0;
    int goalWidth = 0;
    int goalHeight = 0;
    int scaleX = 100;
    int scaleY = 100;
    QByteArray data;
    int highNibble = -1;
    bool tooLarge = false;
};

enum class BorderTarget
{
    None,
    Paragraph,
    Cell,
    Row
};

// ---- the parser --------------------------------------------------------------------------------

class Parser
{
public:
    Parser(QByteArrayView input, QTextDocument* document, ColourTable* colours,
           const RtfReadOptions& options)
        : m_tokens(input), m_document(document), m_colours(colours), m_options(options),
          m_builder(document)
    {}

    RtfReadResult run();

private:
    GroupState& top() { return m_stack.back(); }
    std::size_t depth() const { return m_stack.size(); }

    void groupStart();
    void groupEnd();
    void controlWord(const RtfToken& token);
    void controlSymbol(char symbol);
    void text(QByteArrayView bytes);
    void hexByte(quint8 value);
    void character(QChar c);
    void destinationText(QStringView text);
    void setDestination(Dest dest);
    void finishDestination(const DestContext& context);

    const RtfCodePage& codePage() const;
    void flush();
    QTextCharFormat charFormat(const CharState& state);
    RtfParagraph paragraph(const ParaState& state) const;
    QColor fileColour(int number) const;
    void endParagraph();
    void insertPicture();
    void commitFont();
    void commitColour();
    void commitStyle();
    template <typename F> void forBorders(F apply);
    void setBorderStyle(int style);
    void hyperlinkFromField();
    void pictureHex(QByteArrayView bytes);
    void pictureBytes(QByteArrayView bytes);
    void setPageValue(int& field, int value)
    {
        field = value;
        m_result.hasPageLayout = true;
    }

    RtfTokenizer m_tokens;
    QTextDocument* m_document;
    ColourTable* m_colours;
    RtfReadOptions m_options;
    RtfDocumentBuilder m_builder;
    RtfReadResult m_result;

    std::vector<GroupState> m_stack;
    GroupState m_lastClosed;
    int m_overflow = 0;
    std::vector<DestContext> m_dests;
    bool m_starred = false;
    bool m_groupJustOpened = false;
    int m_skip = 0;

    int m_ansiCodePage = 1252;
    int m_defaultFont = 0;
    QHash<int, FontEntry> m_fonts;
    int m_fontNumber = 0;
    int m_fontCodePage = 0;
    QList<QColor> m_fileColours;
    int m_red = 0;
    int m_green = 0;
    int m_blue = 0;
    bool m_colourHasValue = false;
    QHash<int, int> m_headingStyles;
    int m_styleNumber = 0;

    std::vector<ListDef> m_lists;
    QHash<int, int> m_overrides; // \ls number -> \listid
    int m_overrideList = 0;
    std::vector<LegacyList> m_legacy;
    LegacyList m_pn;

    struct Field
    {
        std::size_t depth;
        QString instruction;
    };
    std::vector<Field> m_fields;

    PictureState m_picture;

    RtfRowDef m_row;
    RtfCellDef m_cell;
    BorderTarget m_borderTarget = BorderTarget::None;
    int m_borderSide = 0;
    bool m_borderBox = false;

    QString m_pending;
    CharState m_pendingState;
    bool m_pendingInTable = false;
    bool m_paragraphHasContent = false;
    CharState m_cachedState;
    QTextCharFormat m_cachedFormat;
    bool m_cacheValid = false;
};

RtfReadResult Parser::run()
{
    m_stack.reserve(std::size_t(m_options.maxGroupDepth) + 1);
    bool started = false;
    for (;;) {
        const RtfToken token = m_tokens.next();
        if (token.type == RtfToken::Type::End) {
            break;
        }
        if (token.type == RtfToken::Type::GroupStart) {
            groupStart();
            started = true;
            continue;
        }
        if (!started) {
            continue; // bytes before the first group
        }
        if (token.type == RtfToken::Type::GroupEnd) {
            groupEnd();
            if (m_stack.empty() && m_overflow == 0) {
                break; // the document's outer group is closed; what follows is not RTF
            }
            continue;
        }
        if (m_overflow > 0) {
            continue; // inside groups nested too deep
        }
        const bool firstInGroup = m_groupJustOpened;
        m_groupJustOpened = false;
        switch (token.type) {
        case RtfToken::Type::ControlWord:
            if (m_skip > 0 && !(token.word == "par" || token.word == "line")) {
                --m_skip;
                break;
            }
            controlWord(token);
            break;
        case RtfToken::Type::ControlSymbol:
            if (token.symbol == '*' && firstInGroup) {
                m_starred = true;
                m_groupJustOpened = true; // the destination word still counts as first
                break;
            }
            if (m_skip > 0) {
                --m_skip;
                break;
            }
            controlSymbol(token.symbol);
            break;
        case RtfToken::Type::Text:
            text(token.text);
            break;
        case RtfToken::Type::HexByte:
            if (m_skip > 0) {
                --m_skip;
                break;
            }
            hexByte(token.hexValue);
            break;
        default:
            break;
        }
        if (!m_groupJustOpened) {
            m_starred = false;
        }
    }

    // Whatever was left open (a truncated file) ends here.
    const GroupState last = m_stack.empty() ? m_lastClosed : m_stack.back();
    while (!m_stack.empty()) {
        groupEnd();
    }
    flush();
    m_builder.finish(paragraph(last.para), charFormat(last.chr));
    m_result.pageLayout.normalise();
    m_result.ok = true;
    return std::move(m_result);
}

void Parser::groupStart()
{
    m_skip = 0;
    if (int(depth()) >= m_options.maxGroupDepth) {
        ++m_overflow;
        return;
    }
    if (m_stack.empty()) {
        m_stack.emplace_back();
    } else {
        m_stack.push_back(m_stack.back());
    }
    m_groupJustOpened = true;
    m_starred = false;
}

void Parser::groupEnd()
{
    m_skip = 0;
    m_groupJustOpened = false;
    m_starred = false;
    if (m_overflow > 0) {
        --m_overflow;
        return;
    }
    if (m_stack.empty()) {
        return;
    }
    const std::size_t closing = depth();
    const Dest dest = top().dest;
    // Entries of the font table and style sheet end with their group even without ';'.
    if (!m_dests.empty() && m_dests.back().depth < closing) {
        if (m_dests.back().kind == Dest::FontTable && dest == Dest::FontTable) {
            commitFont();
        } else if (m_dests.back().kind == Dest::StyleSheet && dest == Dest::StyleSheet) {
            commitStyle();
        }
    }
    if (dest == Dest::Normal && !m_pending.isEmpty() && m_stack.size() == 1) {
        flush();
    }
    m_lastClosed = m_stack.back();
    m_stack.pop_back();
    while (!m_dests.empty() && m_dests.back().depth >= closing) {
        DestContext context = std::move(m_dests.back());
        m_dests.pop_back();
        finishDestination(context);
    }
    while (!m_fields.empty() && m_fields.back().depth >= closing) {
        m_fields.pop_back();
    }
}

void Parser::setDestination(Dest dest)
{
    if (m_stack.empty()) {
        return;
    }
    top().dest = dest;
    switch (dest) {
    case Dest::Normal:
    case Dest::Skip:
        return;
    default:
        break;
    }
    m_dests.push_back({dest, depth(), {}});
}

void Parser::finishDestination(const DestContext& context)
{
    switch (context.kind) {
    case Dest::FieldInstruction:
        if (!m_fields.empty()) {
            m_fields.back().instruction += context.text;
        }
        break;
    case Dest::BookmarkStart:
        flush();
        m_builder.bookmarkStart(context.text.trimmed());
        break;
    case Dest::BookmarkEnd:
        flush();
        m_builder.bookmarkEnd(context.text.trimmed());
        break;
    case Dest::Picture:
        insertPicture();
        break;
    case Dest::LevelText:
        if (!m_lists.empty() && !m_lists.back().levels.empty()) {
            QString text = context.text;
            if (text.endsWith(QLatin1Char(';'))) {
                text.chop(1);
            }
            m_lists.back().levels.back().text = text;
        }
        break;
    case Dest::PnDefinition:
        if (m_legacy.size() < std::size_t(kMaxListDefinitions) && !m_stack.empty()) {
            m_legacy.push_back(m_pn);
            top().para.legacyList = int(m_legacy.size()) - 1;
            top().para.listOverride = 0;
        }
        break;
    case Dest::PnTextBefore:
        m_pn.before = context.text;
        break;
    case Dest::PnTextAfter:
        m_pn.after = context.text;
        break;
    case Dest::ListOverrideTable:
    case Dest::ListTable:
    case Dest::FontTable:
    case Dest::ColourTable:
    case Dest::StyleSheet:
    case Dest::Normal:
    case Dest::Skip:
        break;
    }
}

const RtfCodePage& Parser::codePage() const
{
    if (!m_stack.empty()) {
        int font = m_stack.back().chr.font;
        if (font < 0) {
            font = m_defaultFont;
        }
        const auto it = m_fonts.constFind(font);
        if (it != m_fonts.cend() && it->codePage != 0) {
            return RtfCodePage::get(it->codePage);
        }
    }
    return RtfCodePage::get(m_ansiCodePage);
}

void Parser::text(QByteArrayView bytes)
{
    if (m_stack.empty()) {
        return;
    }
    const Dest dest = top().dest;
    if (dest == Dest::Skip) {
        return;
    }
    if (dest == Dest::Picture) {
        pictureHex(bytes);
        return;
    }
    if (m_skip > 0) {
        const qsizetype dropped = std::min<qsizetype>(m_skip, bytes.size());
        m_skip -= int(dropped);
        bytes = bytes.sliced(dropped);
        if (bytes.isEmpty()) {
            return;
        }
    }
    if (dest == Dest::Normal) {
        if (!m_pending.isEmpty() &&
            (!(m_pendingState == top().chr) || m_pendingInTable != top().para.inTable)) {
            flush();
        }
        if (m_pending.isEmpty()) {
            m_pendingState = top().chr;
            m_pendingInTable = top().para.inTable;
        }
        codePage().append(bytes, m_pending);
        return;
    }
    QString decoded;
    codePage().append(bytes, decoded);
    destinationText(decoded);
}

void Parser::hexByte(quint8 value)
{
    if (m_stack.empty()) {
        return;
    }
    if (top().dest == Dest::Picture) {
        // An escaped byte inside picture data is a byte of it.
        const char c = char(value);
        pictureBytes(QByteArrayView(&c, 1));
        return;
    }
    character(codePage().decode(value));
}

void Parser::character(QChar c)
{
    if (m_stack.empty()) {
        return;
    }
    const Dest dest = top().dest;
    if (dest == Dest::Skip || dest == Dest::Picture) {
        return;
    }
    if (dest == Dest::Normal) {
        if (!m_pending.isEmpty() &&
            (!(m_pendingState == top().chr) || m_pendingInTable != top().para.inTable)) {
            flush();
        }
        if (m_pending.isEmpty()) {
            m_pendingState = top().chr;
            m_pendingInTable = top().para.inTable;
        }
        m_pending.append(c);
        return;
    }
    destinationText(QStringView(&c, 1));
}

void Parser::destinationText(QStringView text)
{
    if (m_dests.empty()) {
        return;
    }
    DestContext& context = m_dests.back();
    switch (context.kind) {
    case Dest::FontTable:
    case Dest::StyleSheet:
        for (QChar c : text) {
            if (c == QLatin1Char(';')) {
                context.kind == Dest::FontTable ? commitFont() : commitStyle();
            } else if (context.text.size() < kMaxDestinationText) {
                context.text.append(c);
            }
        }
        return;
    case Dest::ColourTable:
        for (QChar c : text) {
            if (c == QLatin1Char(';')) {
                commitColour();
            }
        }
        return;
    default:
        if (context.text.size() + text.size() <= kMaxDestinationText) {
            context.text.append(text);
        }
        return;
    }
}

void Parser::commitFont()
{
    if (m_dests.empty()) {
        return;
    }
    DestContext& context = m_dests.back();
    const QString name = context.text.trimmed();
    context.text.clear();
    if (name.isEmpty() && m_fonts.contains(m_fontNumber)) {
        return;
    }
    if (m_fonts.size() < kMaxFonts || m_fonts.contains(m_fontNumber)) {
        m_fonts.insert(m_fontNumber, {name, m_fontCodePage});
    }
    m_fontCodePage = 0;
}

void Parser::commitColour()
{
    if (m_fileColours.size() < kMaxFileColours) {
        if (m_colourHasValue) {
            const QColor colour(qBound(0, m_red, 255), qBound(0, m_green, 255),
                                qBound(0, m_blue, 255));
            m_fileColours << colour;
            m_colours->enter(colour);
        } else {
            m_fileColours << QColor(); // automatic
        }
    }
    m_red = m_green = m_blue = 0;
    m_colourHasValue = false;
}

void Parser::commitStyle()
{
    if (m_dests.empty()) {
        return;
    }
    DestContext& context = m_dests.back();
    const QString name = context.text.trimmed().toLower();
    context.text.clear();
    static const QRegularExpression heading(QStringLiteral("^heading ([1-6])$"));
    const QRegularExpressionMatch match = heading.match(name);
    if (match.hasMatch() && m_headingStyles.size() < kMaxFonts) {
        m_headingStyles.insert(m_styleNumber, match.captured(1).toInt());
    }
    m_styleNumber = 0;
}

QColor Parser::fileColour(int number) const
{
    if (number <= 0 || number >= m_fileColours.size()) {
        return {};
    }
    return m_fileColours[number];
}

QTextCharFormat Parser::charFormat(const CharState& state)
{
    if (m_cacheValid && m_cachedState == state) {
        return m_cachedFormat;
    }
    QTextCharFormat format;
    const int font = state.font >= 0 ? state.font : m_defaultFont;
    const auto it = m_fonts.constFind(font);
    if (it != m_fonts.cend() && !it->name.isEmpty()) {
        format.setFontFamilies({it->name});
    }
    format.setFontPointSize(qBound(1, state.halfPoints, 3276) / 2.0);
    if (state.bold) {
        format.setFontWeight(QFont::Bold);
    }
    if (state.italic) {
        format.setFontItalic(true);
    }
    if (state.strike) {
        format.setFontStrikeOut(true);
    }
    if (state.underline != QTextCharFormat::NoUnderline) {
        format.setUnderlineStyle(QTextCharFormat::UnderlineStyle(state.underline));
    }
    if (state.vertical == 1) {
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    } else if (state.vertical == 2) {
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    }
    if (state.caps == 1) {
        format.setFontCapitalization(QFont::AllUppercase);
    } else if (state.caps == 2) {
        format.setFontCapitalization(QFont::SmallCaps);
    }
    const QColor foreground = fileColour(state.foreground);
    if (foreground.isValid()) {
        format.setForeground(foreground);
    }
    const QColor background = fileColour(state.background);
    if (background.isValid()) {
        format.setBackground(background);
    }
    if (state.spacing != 0) {
        format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        format.setFontLetterSpacing(twipsToPixels(qBound(-1440, state.spacing, 1440)));
    }
    if (!state.href.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(state.href);
    }
    m_cachedState = state;
    m_cachedFormat = format;
    m_cacheValid = true;
    return format;
}

RtfParagraph Parser::paragraph(const ParaState& state) const
{
    RtfParagraph out;
    QTextBlockFormat& block = out.block;
    switch (state.alignment) {
    case 1:
        block.setAlignment(Qt::AlignHCenter);
        break;
    case 2:
        block.setAlignment(Qt::AlignRight);
        break;
    case 3:
        block.setAlignment(Qt::AlignJustify);
        break;
    default:
        break;
    }
    auto px = [](int twips) { return twipsToPixels(qBound(-31680, twips, 31680)); };

    bool inList = false;
    const int level = qBound(0, state.listLevel, 8);
    if (state.listOverride > 0) {
        const int listId = m_overrides.value(state.listOverride, -1);
        const auto def = std::find_if(m_lists.begin(), m_lists.end(),
                                      [&](const ListDef& d) { return d.id == listId; });
        LevelDef levelDef;
        levelDef.nfc = 23;
        if (def != m_lists.end() && std::size_t(level) < def->levels.size()) {
            levelDef = def->levels[std::size_t(level)];
        } else if (def == m_lists.end()) {
            levelDef.nfc = 0; // an unknown list: number it
        }
        if (levelDef.nfc != 255) {
            inList = true;
            QTextListFormat list;
            list.setIndent(level + 1);
            // The level text: its length, then the text with level placeholders (\'00..\'08).
            const QString text = levelDef.text.mid(1);
            if (levelDef.nfc == 23) {
                list.setStyle(QTextListFormat::ListDisc);
                if (text.contains(QLatin1Char('o')) || text.contains(QChar(0x25CB)) ||
                    text.contains(QChar(0xF06F))) {
                    list.setStyle(QTextListFormat::ListCircle);
                } else if (text.contains(QChar(0xF0A7)) || text.contains(QChar(0x25AA)) ||
                           text.contains(QChar(0x25A0)) || text.contains(QChar(0xF06E))) {
                    list.setStyle(QTextListFormat::ListSquare);
                }
            } else {
                list.setStyle(numberingStyle(levelDef.nfc));
                qsizetype first = -1;
                qsizetype last = -1;
                for (qsizetype i = 0; i < text.size(); ++i) {
                    if (text[i].unicode() < 9) {
                        if (first < 0) {
                            first = i;
                        }
                        last = i;
                    }
                }
                if (first >= 0) {
                    list.setNumberPrefix(text.left(first));
                    list.setNumberSuffix(text.mid(last + 1));
                } else {
                    list.setNumberSuffix(QStringLiteral("."));
                }
            }
            out.list = list;
            out.listKey = QStringLiteral("ls:%1:%2").arg(state.listOverride).arg(level);
        }
    } else if (state.legacyList >= 0 && std::size_t(state.legacyList) < m_legacy.size()) {
        const LegacyList& legacy = m_legacy[std::size_t(state.legacyList)];
        inList = true;
        QTextListFormat list;
        list.setIndent(qBound(1, legacy.level, 9));
        if (legacy.bullet) {
            list.setStyle(QTextListFormat::ListDisc);
        } else {
            list.setStyle(numberingStyle(legacy.style));
            list.setNumberPrefix(legacy.before);
            list.setNumberSuffix(legacy.after);
        }
        out.list = list;
        out.listKey = QStringLiteral("pn:%1:%2:%3:%4")
                          .arg(legacy.bullet ? -1 : legacy.style)
                          .arg(list.indent())
                          .arg(legacy.before, legacy.after);
        out.listContinuesOnlyAdjacent = true;
    }
    if (inList) {
        // The list's own indentation takes the first 600 twips per level.
        const int listIndent = out.list.indent() * 600;
        block.setLeftMargin(px(std::max(0, state.left - listIndent)));
    } else {
        block.setLeftMargin(px(state.left));
        block.setTextIndent(px(state.first));
    }
    block.setRightMargin(px(state.right));
    block.setTopMargin(px(std::max(0, state.before)));
    block.setBottomMargin(px(std::max(0, state.after)));
    if (state.lineSpacing != 0) {
        const int sl = qBound(-31680, state.lineSpacing, 31680);
        if (state.lineMultiple && sl > 0) {
            block.setLineHeight(qreal(sl) * 100.0 / 240.0, QTextBlockFormat::ProportionalHeight);
        } else if (sl > 0) {
            block.setLineHeight(px(sl), QTextBlockFormat::MinimumHeight);
        } else {
            block.setLineHeight(px(-sl), QTextBlockFormat::FixedHeight);
        }
    }
    if (!state.tabs.isEmpty()) {
        block.setTabPositions(state.tabs);
    }
    const QColor shading = fileColour(state.shading);
    if (shading.isValid()) {
        block.setBackground(shading);
    }
    int sides = 0;
    const RtfBorder* firstBorder = nullptr;
    const int sideBits[SideCount] = {BorderSide::Top, BorderSide::Bottom, BorderSide::Left,
                                     BorderSide::Right};
    for (int s = 0; s < SideCount; ++s) {
        const RtfBorder& border = state.borders[std::size_t(s)];
        if (border.isSet() && border.style != QTextFrameFormat::BorderStyle_None) {
            sides |= sideBits[s];
            if (!firstBorder) {
                firstBorder = &border;
            }
        }
    }
    if (sides != 0) {
        block.setProperty(TextProperty::BorderSides, sides);
        block.setProperty(TextProperty::BorderWidth, qBound(1, firstBorder->width, 1440));
        block.setProperty(TextProperty::BorderStyle, firstBorder->style);
        block.setProperty(TextProperty::BorderSpacing, qBound(0, firstBorder->space, 1440));
        if (firstBorder->colour.isValid()) {
            block.setProperty(TextProperty::BorderColour, firstBorder->colour);
        }
    }
    if (state.pageBreakBefore) {
        block.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    }
    if (state.keep) {
        block.setNonBreakableLines(true);
    }
    if (state.outlineLevel >= 0 && state.outlineLevel < 6) {
        block.setHeadingLevel(state.outlineLevel + 1);
    } else if (m_headingStyles.contains(state.style)) {
        block.setHeadingLevel(m_headingStyles.value(state.style));
    }
    return out;
}

void Parser::flush()
{
    if (m_pending.isEmpty()) {
        return;
    }
    const QTextCharFormat format = charFormat(m_pendingState);
    if (m_pendingState.hidden) {
        m_builder.insertHidden(m_pending, format, m_pendingInTable);
    } else {
        m_builder.insertText(m_pending, format, m_pendingInTable);
    }
    m_paragraphHasContent = true;
    m_pending.clear();
}

void Parser::endParagraph()
{
    flush();
    m_builder.endParagraph(paragraph(top().para), charFormat(top().chr), top().para.inTable);
    m_paragraphHasContent = false;
}

template <typename F> void Parser::forBorders(F apply)
{
    const std::size_t side = std::size_t(qBound(0, m_borderSide, 5));
    switch (m_borderTarget) {
    case BorderTarget::Paragraph:
        if (!m_stack.empty()) {
            if (m_borderBox) {
                for (RtfBorder& border : top().para.borders) {
                    apply(border);
                }
            } else {
                apply(top().para.borders[std::min<std::size_t>(side, SideCount - 1)]);
            }
        }
        break;
    case BorderTarget::Cell:
        apply(m_cell.borders[std::min<std::size_t>(side, SideCount - 1)]);
        break;
    case BorderTarget::Row:
        apply(m_row.borders[side]);
        break;
    case BorderTarget::None:
        break;
    }
}

void Parser::setBorderStyle(int style)
{
    forBorders([style](RtfBorder& border) { border.style = style; });
}

void Parser::hyperlinkFromField()
{
    if (m_fields.empty() || m_stack.empty()) {
        return;
    }
    const QString instruction = m_fields.back().instruction.trimmed();
    if (!instruction.startsWith(QLatin1String("HYPERLINK"), Qt::CaseInsensitive)) {
        return;
    }
    // HYPERLINK "target" \l "bookmark" \o "tip" (quotes optional for a single word).
    static const QRegularExpression argument(
        QStringLiteral(R"re((\\[a-zA-Z])?\s*("([^"]*)"|([^\s"\\]+)))re"));
    QString target;
    QString bookmark;
    auto it = argument.globalMatch(instruction, int(QStringLiteral("HYPERLINK").size()));
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        const QString value = m.captured(3).isNull() ? m.captured(4) : m.captured(3);
        const QString sw = m.captured(1);
        if (sw.isEmpty() && target.isEmpty()) {
            target = value;
        } else if (sw == QLatin1String("\\l")) {
            bookmark = value;
        }
    }
    if (!bookmark.isEmpty()) {
        target += QLatin1Char('#') + bookmark;
    }
    top().chr.href = target;
}

void Parser::pictureHex(QByteArrayView bytes)
{
    if (m_picture.tooLarge) {
        return;
    }
    const qsizetype room = m_options.maxPictureBytes - m_picture.data.size();
    if (bytes.size() / 2 > room + 1) {
        m_picture.tooLarge = true;
        m_picture.data.clear();
        return;
    }
    m_picture.data.reserve(m_picture.data.size() + bytes.size() / 2 + 1);
    for (char c : bytes) {
        const int v = hexDigitValue(c);
        if (v < 0) {
            continue; // blanks and stray characters between hex digits
        }
        if (m_picture.highNibble < 0) {
            m_picture.highNibble = v;
        } else {
            m_picture.data.append(char(m_picture.highNibble * 16 + v));
            m_picture.highNibble = -1;
        }
    }
    if (m_picture.data.size() > m_options.maxPictureBytes) {
        m_picture.tooLarge = true;
        m_picture.data.clear();
    }
}

void Parser::pictureBytes(QByteArrayView bytes)
{
    if (m_picture.tooLarge) {
        return;
    }
    if (m_picture.data.size() + bytes.size() > m_options.maxPictureBytes) {
        m_picture.tooLarge = true;
        m_picture.data.clear();
        return;
    }
    m_picture.data.append(bytes);
}

void Parser::insertPicture()
{
    flush();
    PictureState picture = std::move(m_picture);
    m_picture = PictureState();
    const bool inTable = !m_stack.empty() && top().para.inTable;

    DocumentPictures::Picture info;
    info.kind = picture.kind;
    // Display size: the goal size in twips, scaled; else the picture's own size.
    const double sx = qBound(1, picture.scaleX, 1000) / 100.0;
    const double sy = qBound(1, picture.scaleY, 1000) / 100.0;
    double width = 0;
    double height = 0;
    if (picture.goalWidth > 0 && picture.goalHeight > 0) {
        width = twipsToPixels(qMin(picture.goalWidth, 31680 * 4)) * sx;
        height = twipsToPixels(qMin(picture.goalHeight, 31680 * 4)) * sy;
    }

    if (picture.tooLarge) {
        m_result.warnings << QStringLiteral("A picture larger than %1 MB was left out.")
                                 .arg(m_options.maxPictureBytes / (1024 * 1024));
        info.kind = PictureKind::Other;
        info.displaySize = QSizeF(width, height);
        m_builder.insertImage(
            DocumentPictures::addPlaceholder(m_document, info, QStringLiteral("Picture too large")),
            inTable);
        return;
    }

    QImage image;
    if (picture.kind == PictureKind::Png || picture.kind == PictureKind::Jpeg ||
        picture.kind == PictureKind::Dib || picture.kind == PictureKind::Bitmap) {
        QByteArray bytes = picture.data;
        if (picture.kind == PictureKind::Dib && bytes.size() >= 40) {
            // A bitmap without its file header: give it one so the BMP reader takes it.
            const quint32 headerSize = quint8(bytes[0]) | quint8(bytes[1]) << 8 |
                                       quint8(bytes[2]) << 16 | quint32(quint8(bytes[3])) << 24;
            const quint16 bits = quint16(quint8(bytes[14]) | quint8(bytes[15]) << 8);
            quint32 colours = quint8(bytes[32]) | quint8(bytes[33]) << 8 | quint8(bytes[34]) << 16 |
                              quint32(quint8(bytes[35])) << 24;
            if (colours == 0 && bits <= 8) {
                colours = 1u << bits;
            }
            const quint32 offset =
                14 + qMin<quint32>(headerSize, 1024) + qMin<quint32>(colours, 256) * 4;
            const quint32 total = quint32(bytes.size()) + 14;
            QByteArray header("BM", 2);
            for (quint32 v : {total, 0u, offset}) {
                for (int i = 0; i < 4; ++i) {
                    header.append(char((v >> (8 * i)) & 0xFF));
                }
            }
            bytes.prepend(header);
        }
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer);
        reader.setAllocationLimit(256);
        image = reader.read();
    }
    if (width <= 0 || height <= 0) {
        if (!image.isNull()) {
            width = image.width() * sx;
            height = image.height() * sy;
        } else if (picture.picw > 0 && picture.pich > 0) {
            // Metafile extents are in hundredths of a millimetre.
            const bool metric =
                picture.kind == PictureKind::Emf || picture.kind == PictureKind::Wmf;
            width = (metric ? picture.picw * 96.0 / 2540.0 : picture.picw) * sx;
            height = (metric ? picture.pich * 96.0 / 2540.0 : picture.pich) * sy;
        }
    }
    info.displaySize = QSizeF(qMin(width, 20000.0), qMin(height, 20000.0));
    info.data = picture.data;
    if (!picture.header.isEmpty()) {
        info.header = QString::fromLatin1(picture.header);
        if (picture.picw > 0 && picture.pich > 0) {
            info.header += QStringLiteral("\\picw%1\\pich%2").arg(picture.picw).arg(picture.pich);
        }
    }

    if (!image.isNull()) {
        if (picture.kind == PictureKind::Dib || picture.kind == PictureKind::Bitmap) {
            // Written back as PNG: the original bitmap bytes are not kept.
            info.kind = PictureKind::Png;
            info.data.clear();
            info.header.clear();
        }
        m_builder.insertImage(DocumentPictures::add(m_document, image, info), inTable);
        return;
    }
    if (picture.kind == PictureKind::Png || picture.kind == PictureKind::Jpeg) {
        m_result.warnings << QStringLiteral("A damaged picture is shown as a placeholder.");
    }
    const QString label = picture.kind == PictureKind::None
                              ? QStringLiteral("Picture")
                              : DocumentPictures::kindName(picture.kind);
    m_builder.insertImage(DocumentPictures::addPlaceholder(m_document, info, label), inTable);
}

void Parser::controlSymbol(char symbol)
{
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        character(QLatin1Char(symbol));
        break;
    case '~':
        character(QChar(0x00A0));
        break;
    case '-':
        character(QChar(0x00AD));
        break;
    case '_':
        character(QChar(0x2011));
        break;
    case '\t':
        character(QLatin1Char('\t'));
        break;
    default:
        break; // \* out of place, \:, \|, broken escapes
    }
}

void Parser::controlWord(const RtfToken& token)
{
    if (m_stack.empty()) {
        return;
    }
    const Kw kw = keyword(token.word);
    const int p = token.parameter;
    const bool has = token.hasParameter;
    GroupState& g = top();
    CharState& c = g.chr;
    ParaState& para = g.para;

    if (m_starred) {
        // {\*\word ...}: only destinations this reader knows are read.
        switch (kw) {
        case Kw::FldInst:
        case Kw::BkmkStart:
        case Kw::BkmkEnd:
        case Kw::ListTable:
        case Kw::ListOverrideTable:
        case Kw::Pn:
        case Kw::ShpPict:
        case Kw::ListText:
        case Kw::PnText:
            break;
        default:
            setDestination(Dest::Skip);
            return;
        }
    }
    if (g.dest == Dest::Skip) {
        return;
    }
    if (g.dest == Dest::Picture) {
        switch (kw) {
        case Kw::PngBlip:
            m_picture.kind = PictureKind::Png;
            m_picture.header = "\\pngblip";
            return;
        case Kw::JpegBlip:
            m_picture.kind = PictureKind::Jpeg;
            m_picture.header = "\\jpegblip";
            return;
        case Kw::EmfBlip:
            m_picture.kind = PictureKind::Emf;
            m_picture.header = "\\emfblip";
            return;
        case Kw::WMetafile:
            m_picture.kind = PictureKind::Wmf;
            m_picture.header = "\\wmetafile" + QByteArray::number(has ? qBound(1, p, 8) : 8);
            return;
        case Kw::DiBitmap:
            m_picture.kind = PictureKind::Dib;
            return;
        case Kw::WBitmap:
            m_picture.kind = PictureKind::Bitmap;
            return;
        case Kw::MacPict:
            m_picture.kind = PictureKind::MacPict;
            m_picture.header = "\\macpict";
            return;
        case Kw::PmMetafile:
            m_picture.kind = PictureKind::Other;
            return;
        case Kw::PicW:
            m_picture.picw = qBound(0, p, 1 << 20);
            return;
        case Kw::PicH:
            m_picture.pich = qBound(0, p, 1 << 20);
            return;
        case Kw::PicWGoal:
            m_picture.goalWidth = qBound(0, p, 1 << 22);
            return;
        case Kw::PicHGoal:
            m_picture.goalHeight = qBound(0, p, 1 << 22);
            return;
        case Kw::PicScaleX:
            m_picture.scaleX = p;
            return;
        case Kw::PicScaleY:
            m_picture.scaleY = p;
            return;
        case Kw::Bin:
            if (has && p > 0) {
                pictureBytes(m_tokens.takeBinary(p));
            }
            return;
        case Kw::SkipDestination:
            setDestination(Dest::Skip);
            return;
        default:
            return;
        }
    }

    switch (kw) {
    // ---- document
    case Kw::Rtf:
    case Kw::Ansi:
        break;
    case Kw::Mac:
        m_ansiCodePage = 10000;
        break;
    case Kw::Pc:
        m_ansiCodePage = 437;
        break;
    case Kw::Pca:
        m_ansiCodePage = 850;
        break;
    case Kw::AnsiCpg:
        if (has && p > 0) {
            m_ansiCodePage = p;
        }
        break;
    case Kw::Deff:
        m_defaultFont = p;
        break;
    case Kw::PaperW:
    case Kw::PgWsxn:
        setPageValue(m_result.pageLayout.paperWidth, p);
        break;
    case Kw::PaperH:
    case Kw::PgHsxn:
        setPageValue(m_result.pageLayout.paperHeight, p);
        break;
    case Kw::MargL:
    case Kw::MargLsxn:
        setPageValue(m_result.pageLayout.marginLeft, p);
        break;
    case Kw::MargR:
    case Kw::MargRsxn:
        setPageValue(m_result.pageLayout.marginRight, p);
        break;
    case Kw::MargT:
    case Kw::MargTsxn:
        setPageValue(m_result.pageLayout.marginTop, p);
        break;
    case Kw::MargB:
    case Kw::MargBsxn:
        setPageValue(m_result.pageLayout.marginBottom, p);
        break;
    case Kw::Landscape:
        break; // the paper size says it

    // ---- destinations
    case Kw::FontTbl:
        setDestination(Dest::FontTable);
        break;
    case Kw::ColorTbl:
        setDestination(Dest::ColourTable);
        break;
    case Kw::StyleSheet:
        setDestination(Dest::StyleSheet);
        break;
    case Kw::Info:
    case Kw::SkipDestination:
    case Kw::PnText:
    case Kw::ListText:
    case Kw::NonShpPict:
    case Kw::LevelNumbers:
    case Kw::ListName:
        setDestination(Dest::Skip);
        break;
    case Kw::Pict:
        flush();
        m_picture = PictureState();
        setDestination(Dest::Picture);
        break;
    case Kw::Field:
        flush();
        m_fields.push_back({depth(), {}});
        break;
    case Kw::FldInst:
        setDestination(Dest::FieldInstruction);
        break;
    case Kw::FldRslt:
        setDestination(Dest::Normal);
        hyperlinkFromField();
        break;
    case Kw::BkmkStart:
        setDestination(Dest::BookmarkStart);
        break;
    case Kw::BkmkEnd:
        setDestination(Dest::BookmarkEnd);
        break;
    case Kw::ListTable:
        setDestination(Dest::ListTable);
        break;
    case Kw::List:
        if (g.dest == Dest::ListTable && m_lists.size() < std::size_t(kMaxListDefinitions)) {
            m_lists.emplace_back();
        }
        break;
    case Kw::ListLevel:
        if (g.dest == Dest::ListTable && !m_lists.empty() && m_lists.back().levels.size() < 9) {
            m_lists.back().levels.emplace_back();
        }
        break;
    case Kw::LevelText:
        setDestination(Dest::LevelText);
        break;
    case Kw::ListOverrideTable:
        setDestination(Dest::ListOverrideTable);
        break;
    case Kw::ListOverride:
        m_overrideList = 0;
        break;
    case Kw::ListId:
        if (g.dest == Dest::ListTable && !m_lists.empty()) {
            m_lists.back().id = p;
        } else if (g.dest == Dest::ListOverrideTable) {
            m_overrideList = p;
        }
        break;
    case Kw::LevelNfc:
        if (g.dest == Dest::ListTable && !m_lists.empty() && !m_lists.back().levels.empty()) {
            m_lists.back().levels.back().nfc = p;
        }
        break;
    case Kw::LevelStartAt:
        break;
    case Kw::Pn:
        m_pn = LegacyList();
        setDestination(Dest::PnDefinition);
        break;
    case Kw::PnTxtA:
        setDestination(Dest::PnTextAfter);
        break;
    case Kw::PnTxtB:
        setDestination(Dest::PnTextBefore);
        break;
    case Kw::PnLvlBlt:
        m_pn.bullet = true;
        m_pn.level = 1;
        break;
    case Kw::PnLvlBody:
    case Kw::PnLvlCont:
        m_pn.bullet = false;
        m_pn.level = 1;
        break;
    case Kw::PnLvl:
        m_pn.bullet = false;
        m_pn.level = qBound(1, p, 9);
        break;
    case Kw::PnDec:
        m_pn.style = 0;
        break;
    case Kw::PnUcRm:
        m_pn.style = 1;
        break;
    case Kw::PnLcRm:
        m_pn.style = 2;
        break;
    case Kw::PnUcLtr:
        m_pn.style = 3;
        break;
    case Kw::PnLcLtr:
        m_pn.style = 4;
        break;
    case Kw::PnStart:
        break;
    case Kw::ShpPict:
    case Kw::Result:
    case Kw::ShpRslt:
    case Kw::Object:
    case Kw::Shp:
        break;

    // ---- characters
    case Kw::Par:
    case Kw::Sect:
        endParagraph();
        break;
    case Kw::Line:
        character(QChar::LineSeparator);
        break;
    case Kw::Tab:
    case Kw::NestCell:
        character(QLatin1Char('\t'));
        break;
    case Kw::NestRow:
        endParagraph();
        break;
    case Kw::Page:
        flush();
        if (m_paragraphHasContent) {
            endParagraph();
        }
        m_builder.pageBreak();
        break;
    case Kw::Cell:
        flush();
        m_builder.endCell(paragraph(para), charFormat(c));
        m_paragraphHasContent = false;
        break;
    case Kw::Row:
        flush();
        m_builder.endRow(m_row);
        break;
    case Kw::EmDash:
        character(QChar(0x2014));
        break;
    case Kw::EnDash:
        character(QChar(0x2013));
        break;
    case Kw::EmSpace:
        character(QChar(0x2003));
        break;
    case Kw::EnSpace:
        character(QChar(0x2002));
        break;
    case Kw::QmSpace:
        character(QChar(0x2005));
        break;
    case Kw::Bullet:
        character(QChar(0x2022));
        break;
    case Kw::LQuote:
        character(QChar(0x2018));
        break;
    case Kw::RQuote:
        character(QChar(0x2019));
        break;
    case Kw::LDblQuote:
        character(QChar(0x201C));
        break;
    case Kw::RDblQuote:
        character(QChar(0x201D));
        break;
    case Kw::Zwj:
        character(QChar(0x200D));
        break;
    case Kw::Zwnj:
        character(QChar(0x200C));
        break;
    case Kw::U:
        if (has) {
            character(QChar(char16_t(p < 0 ? p + 65536 : p)));
            m_skip = g.uc;
        }
        break;
    case Kw::Uc:
        g.uc = qBound(0, p, 16);
        break;
    case Kw::Bin:
        if (has && p > 0) {
            m_tokens.takeBinary(p); // binary data outside a picture is not text
        }
        break;

    // ---- character formats
    case Kw::Plain: {
        const QString href = c.href;
        c = CharState();
        c.href = href;
        break;
    }
    case Kw::F:
        if (g.dest == Dest::FontTable) {
            m_fontNumber = p;
            m_fontCodePage = 0;
        } else {
            c.font = p;
        }
        break;
    case Kw::Fs:
        if (has) {
            c.halfPoints = qBound(1, p, 3276);
        }
        break;
    case Kw::B:
        c.bold = !has || p != 0;
        break;
    case Kw::I:
        c.italic = !has || p != 0;
        break;
    case Kw::Ul:
        c.underline =
            (!has || p != 0) ? QTextCharFormat::SingleUnderline : QTextCharFormat::NoUnderline;
        break;
    case Kw::UlNone:
        c.underline = QTextCharFormat::NoUnderline;
        break;
    case Kw::UlDotted:
        c.underline = QTextCharFormat::DotLine;
        break;
    case Kw::UlDashed:
        c.underline = QTextCharFormat::DashUnderline;
        break;
    case Kw::UlWave:
        c.underline = QTextCharFormat::WaveUnderline;
        break;
    case Kw::UlDouble:
        c.underline = QTextCharFormat::SingleUnderline;
        break;
    case Kw::Strike:
    case Kw::StrikeD:
        c.strike = !has || p != 0;
        break;
    case Kw::Sub:
        c.vertical = 2;
        break;
    case Kw::Super:
        c.vertical = 1;
        break;
    case Kw::NoSuperSub:
        c.vertical = 0;
        break;
    case Kw::Up:
        c.vertical = (!has || p != 0) ? 1 : 0;
        break;
    case Kw::Dn:
        c.vertical = (!has || p != 0) ? 2 : 0;
        break;
    case Kw::Cf:
        c.foreground = p;
        break;
    case Kw::Cb:
    case Kw::ChCbPat:
    case Kw::Highlight:
        c.background = p;
        break;
    case Kw::V:
        c.hidden = !has || p != 0;
        break;
    case Kw::Caps:
        c.caps = (!has || p != 0) ? 1 : 0;
        break;
    case Kw::SCaps:
        c.caps = (!has || p != 0) ? 2 : 0;
        break;
    case Kw::ExpndTw:
        c.spacing = p;
        break;
    case Kw::Expnd:
        c.spacing = p > 8191 || p < -8191 ? 0 : p * 5;
        break;

    // ---- paragraph formats
    case Kw::Pard: {
        para = ParaState();
        m_borderTarget = BorderTarget::None;
        m_borderBox = false;
        break;
    }
    case Kw::Ql:
        para.alignment = 0;
        break;
    case Kw::Qc:
        para.alignment = 1;
        break;
    case Kw::Qr:
        para.alignment = 2;
        break;
    case Kw::Qj:
    case Kw::Qd:
        para.alignment = 3;
        break;
    case Kw::Li:
        para.left = p;
        break;
    case Kw::Ri:
        para.right = p;
        break;
    case Kw::Fi:
        para.first = p;
        break;
    case Kw::Sb:
        para.before = p;
        break;
    case Kw::Sa:
        para.after = p;
        break;
    case Kw::Sl:
        para.lineSpacing = p == 1000 ? 0 : p; // 1000 is "auto"
        break;
    case Kw::SlMult:
        para.lineMultiple = p != 0;
        break;
    case Kw::Tqr:
        para.pendingTabType = QTextOption::RightTab;
        break;
    case Kw::Tqc:
        para.pendingTabType = QTextOption::CenterTab;
        break;
    case Kw::Tqdec:
        para.pendingTabType = QTextOption::DelimiterTab;
        break;
    case Kw::Tx:
    case Kw::Tb:
        if (kw == Kw::Tx && para.tabs.size() < kMaxTabStops && p >= 0 && p <= 31680) {
            QTextOption::Tab tab(twipsToPixels(p), QTextOption::TabType(para.pendingTabType),
                                 para.pendingTabType == QTextOption::DelimiterTab ? QChar('.')
                                                                                  : QChar());
            para.tabs << tab;
        }
        para.pendingTabType = QTextOption::LeftTab;
        break;
    case Kw::InTbl:
        para.inTable = true;
        break;
    case Kw::Itap:
        para.inTable = p > 0;
        break;
    case Kw::Keep:
        para.keep = !has || p != 0;
        break;
    case Kw::PageBb:
        para.pageBreakBefore = !has || p != 0;
        break;
    case Kw::S:
        if (g.dest == Dest::StyleSheet) {
            m_styleNumber = p;
        } else {
            para.style = p;
        }
        break;
    case Kw::OutlineLevel:
        para.outlineLevel = p;
        break;
    case Kw::Ls:
        if (g.dest == Dest::ListOverrideTable) {
            if (m_overrides.size() < kMaxListDefinitions) {
                m_overrides.insert(p, m_overrideList);
            }
        } else {
            para.listOverride = p;
            para.legacyList = -1;
        }
        break;
    case Kw::Ilvl:
        para.listLevel = p;
        break;
    case Kw::CbPat:
        para.shading = p;
        break;
    case Kw::BrdrT:
    case Kw::BrdrB:
    case Kw::BrdrL:
    case Kw::BrdrR: {
        // A paragraph border: the border words that follow describe this side.
        const int side = kw == Kw::BrdrT   ? SideTop
                         : kw == Kw::BrdrB ? SideBottom
                         : kw == Kw::BrdrL ? SideLeft
                                           : SideRight;
        m_borderTarget = BorderTarget::Paragraph;
        m_borderBox = false;
        m_borderSide = side;
        para.borders[side].style = QTextFrameFormat::BorderStyle_Solid;
        break;
    }
    case Kw::Box:
        for (RtfBorder& b : para.borders) {
            b.style = QTextFrameFormat::BorderStyle_Solid;
        }
        m_borderTarget = BorderTarget::Paragraph;
        m_borderBox = true;
        break;
    case Kw::BrdrS:
    case Kw::BrdrTh:
    case Kw::BrdrOther:
        setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        break;
    case Kw::BrdrDb:
        setBorderStyle(QTextFrameFormat::BorderStyle_Double);
        break;
    case Kw::BrdrDot:
        setBorderStyle(QTextFrameFormat::BorderStyle_Dotted);
        break;
    case Kw::BrdrDash:
        setBorderStyle(QTextFrameFormat::BorderStyle_Dashed);
        break;
    case Kw::BrdrNone:
        setBorderStyle(QTextFrameFormat::BorderStyle_None);
        break;
    case Kw::BrdrW: {
        const int width = qBound(0, p, 1440);
        forBorders([width](RtfBorder& b) { b.width = width; });
        break;
    }
    case Kw::BrdrCf: {
        const QColor colour = fileColour(p);
        forBorders([&colour](RtfBorder& b) { b.colour = colour; });
        break;
    }
    case Kw::BrSp: {
        const int space = qBound(0, p, 1440);
        forBorders([space](RtfBorder& b) { b.space = space; });
        break;
    }

    // ---- tables
    case Kw::TrowD:
        m_row = RtfRowDef();
        m_cell = RtfCellDef();
        m_borderTarget = BorderTarget::None;
        break;
    case Kw::TrGaph:
        m_row.gap = qBound(0, p, 1440);
        break;
    case Kw::TrLeft:
        m_row.left = qBound(-31680, p, 31680);
        break;
    case Kw::TrQl:
        m_row.alignment = 0;
        break;
    case Kw::TrQc:
        m_row.alignment = 1;
        break;
    case Kw::TrQr:
        m_row.alignment = 2;
        break;
    case Kw::TrHdr:
        m_row.header = true;
        break;
    case Kw::CellX:
        if (m_row.cells.size() < std::size_t(RtfDocumentBuilder::kMaxColumns)) {
            m_cell.right = qBound(-31680, p, 31680 * 4);
            m_row.cells.push_back(m_cell);
        }
        m_cell = RtfCellDef();
        m_borderTarget = BorderTarget::None;
        break;
    case Kw::ClCbPat:
        m_cell.shading = fileColour(p);
        break;
    case Kw::ClBrdrT:
    case Kw::ClBrdrB:
    case Kw::ClBrdrL:
    case Kw::ClBrdrR: {
        m_borderTarget = BorderTarget::Cell;
        m_borderBox = false;
        m_borderSide = kw == Kw::ClBrdrT   ? SideTop
                       : kw == Kw::ClBrdrB ? SideBottom
                       : kw == Kw::ClBrdrL ? SideLeft
                                           : SideRight;
        m_cell.borders[std::size_t(m_borderSide)].style = QTextFrameFormat::BorderStyle_Solid;
        break;
    }
    case Kw::TrBrdrT:
    case Kw::TrBrdrB:
    case Kw::TrBrdrL:
    case Kw::TrBrdrR:
    case Kw::TrBrdrH:
    case Kw::TrBrdrV: {
        m_borderTarget = BorderTarget::Row;
        m_borderBox = false;
        m_borderSide = kw == Kw::TrBrdrT   ? 0
                       : kw == Kw::TrBrdrB ? 1
                       : kw == Kw::TrBrdrL ? 2
                       : kw == Kw::TrBrdrR ? 3
                       : kw == Kw::TrBrdrH ? 4
                                           : 5;
        m_row.borders[std::size_t(m_borderSide)].style = QTextFrameFormat::BorderStyle_Solid;
        break;
    }
    case Kw::ClVmgf:
        m_cell.verticalFirst = true;
        break;
    case Kw::ClVmrg:
        m_cell.verticalMerged = true;
        break;
    case Kw::ClMgf:
        m_cell.mergeFirst = true;
        break;
    case Kw::ClMrg:
        m_cell.merged = true;
        break;
    case Kw::ClVertalT:
        m_cell.verticalAlign = 0;
        break;
    case Kw::ClVertalC:
        m_cell.verticalAlign = 1;
        break;
    case Kw::ClVertalB:
        m_cell.verticalAlign = 2;
        break;

    // ---- fonts and colours
    case Kw::FCharset:
        if (g.dest == Dest::FontTable) {
            const int cp = RtfCodePage::forCharset(p);
            if (cp != 0) {
                m_fontCodePage = cp;
            }
        }
        break;
    case Kw::Cpg:
        if (g.dest == Dest::FontTable && p > 0) {
            m_fontCodePage = p;
        }
        break;
    case Kw::Red:
        m_red = p;
        m_colourHasValue = true;
        break;
    case Kw::Green:
        m_green = p;
        m_colourHasValue = true;
        break;
    case Kw::Blue:
        m_blue = p;
        m_colourHasValue = true;
        break;

    default:
        break;
    }
}

} // namespace

// ---- RtfReader ---------------------------------------------------------------------------------

RtfReader::RtfReader(RtfReadOptions options) : m_options(options)
{
    m_options.maxGroupDepth = qBound(8, m_options.maxGroupDepth, 4096);
    m_options.maxPictureBytes = qMax<qint64>(1024, m_options.maxPictureBytes);
}

bool RtfReader::looksLikeRtf(QByteArrayView data)
{
    qsizetype i = 0;
    if (data.startsWith("\xEF\xBB\xBF")) {
        i = 3;
    }
    while (i < data.size() &&
           (data[i] == ' ' || data[i] == '\t' || data[i] == '\r' || data[i] == '\n')) {
        ++i;
    }
    return data.sliced(i).startsWith("{\\rtf");
}

RtfReadResult RtfReader::read(QByteArrayView rtf, QTextDocument* document,
                              ColourTable* colours) const
{
    if (!looksLikeRtf(rtf)) {
        RtfReadResult result;
        result.error = QStringLiteral("The data is not RTF (it does not start with \"{\\rtf\").");
        return result;
    }
    // One edit, the clearing included: a layout attached to the document sees the whole new
    // content at once and lays it out lazily, screen by screen, as for plain text.
    QTextCursor edit(document);
    edit.beginEditBlock();
    document->clear();
    Parser parser(rtf, document, colours, m_options);
    RtfReadResult result = parser.run();
    edit.endEditBlock();
    return result;
}

} // namespace kestrum::text
