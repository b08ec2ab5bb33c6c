#include "RtfKeywords.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kestrum::text {

namespace {

struct Row
{
    std::string_view word;
    RtfKeyword keyword;
    RtfWordGroup group;
};

// Sorted by word (byte order); the static_assert below keeps it so.
constexpr Row kWords[] = {
    {"aftnsep", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"aftnsepc", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"annotation", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"ansi", RtfKeyword::Ansi, RtfWordGroup::Document},
    {"ansicpg", RtfKeyword::AnsiCpg, RtfWordGroup::Document},
    {"atnauthor", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"atnid", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"author", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"b", RtfKeyword::B, RtfWordGroup::CharacterFormat},
    {"bin", RtfKeyword::Bin, RtfWordGroup::Character},
    {"bkmkend", RtfKeyword::BkmkEnd, RtfWordGroup::Destination},
    {"bkmkstart", RtfKeyword::BkmkStart, RtfWordGroup::Destination},
    {"blipuid", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"blue", RtfKeyword::Blue, RtfWordGroup::FontColour},
    {"box", RtfKeyword::Box, RtfWordGroup::Border},
    {"brdrb", RtfKeyword::BrdrB, RtfWordGroup::Border},
    {"brdrcf", RtfKeyword::BrdrCf, RtfWordGroup::Border},
    {"brdrdash", RtfKeyword::BrdrDash, RtfWordGroup::Border},
    {"brdrdashd", RtfKeyword::BrdrDash, RtfWordGroup::Border},
    {"brdrdashsm", RtfKeyword::BrdrDash, RtfWordGroup::Border},
    {"brdrdb", RtfKeyword::BrdrDb, RtfWordGroup::Border},
    {"brdrdot", RtfKeyword::BrdrDot, RtfWordGroup::Border},
    {"brdremboss", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrengrave", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrhair", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrinset", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrl", RtfKeyword::BrdrL, RtfWordGroup::Border},
    {"brdrnone", RtfKeyword::BrdrNone, RtfWordGroup::Border},
    {"brdroutset", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrr", RtfKeyword::BrdrR, RtfWordGroup::Border},
    {"brdrs", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrsh", RtfKeyword::BrdrOther, RtfWordGroup::Border},
    {"brdrsingle", RtfKeyword::BrdrS, RtfWordGroup::Border},
    {"brdrt", RtfKeyword::BrdrT, RtfWordGroup::Border},
    {"brdrth", RtfKeyword::BrdrTh, RtfWordGroup::Border},
    {"brdrtriple", RtfKeyword::BrdrDb, RtfWordGroup::Border},
    {"brdrw", RtfKeyword::BrdrW, RtfWordGroup::Border},
    {"brsp", RtfKeyword::BrSp, RtfWordGroup::Border},
    {"bullet", RtfKeyword::Bullet, RtfWordGroup::Character},
    {"caps", RtfKeyword::Caps, RtfWordGroup::CharacterFormat},
    {"cb", RtfKeyword::Cb, RtfWordGroup::CharacterFormat},
    {"cbpat", RtfKeyword::CbPat, RtfWordGroup::ParagraphFormat},
    {"cell", RtfKeyword::Cell, RtfWordGroup::Character},
    {"cellx", RtfKeyword::CellX, RtfWordGroup::Table},
    {"cf", RtfKeyword::Cf, RtfWordGroup::CharacterFormat},
    {"chcbpat", RtfKeyword::ChCbPat, RtfWordGroup::CharacterFormat},
    {"chftn", RtfKeyword::Chftn, RtfWordGroup::Character},
    {"clbrdrb", RtfKeyword::ClBrdrB, RtfWordGroup::Table},
    {"clbrdrl", RtfKeyword::ClBrdrL, RtfWordGroup::Table},
    {"clbrdrr", RtfKeyword::ClBrdrR, RtfWordGroup::Table},
    {"clbrdrt", RtfKeyword::ClBrdrT, RtfWordGroup::Table},
    {"clcbpat", RtfKeyword::ClCbPat, RtfWordGroup::Table},
    {"clftsWidth", RtfKeyword::ClFtsWidth, RtfWordGroup::Table},
    {"clmgf", RtfKeyword::ClMgf, RtfWordGroup::Table},
    {"clmrg", RtfKeyword::ClMrg, RtfWordGroup::Table},
    {"clvertalb", RtfKeyword::ClVertalB, RtfWordGroup::Table},
    {"clvertalc", RtfKeyword::ClVertalC, RtfWordGroup::Table},
    {"clvertalt", RtfKeyword::ClVertalT, RtfWordGroup::Table},
    {"clvmgf", RtfKeyword::ClVmgf, RtfWordGroup::Table},
    {"clvmrg", RtfKeyword::ClVmrg, RtfWordGroup::Table},
    {"clwWidth", RtfKeyword::ClWWidth, RtfWordGroup::Table},
    {"colorschememapping", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"colortbl", RtfKeyword::ColorTbl, RtfWordGroup::Destination},
    {"comment", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"company", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"cpg", RtfKeyword::Cpg, RtfWordGroup::FontColour},
    {"datastore", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"deff", RtfKeyword::Deff, RtfWordGroup::Document},
    {"dibitmap", RtfKeyword::DiBitmap, RtfWordGroup::Picture},
    {"dn", RtfKeyword::Dn, RtfWordGroup::CharacterFormat},
    {"doccomm", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"docvar", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"emdash", RtfKeyword::EmDash, RtfWordGroup::Character},
    {"emfblip", RtfKeyword::EmfBlip, RtfWordGroup::Picture},
    {"emspace", RtfKeyword::EmSpace, RtfWordGroup::Character},
    {"endash", RtfKeyword::EnDash, RtfWordGroup::Character},
    {"enspace", RtfKeyword::EnSpace, RtfWordGroup::Character},
    {"expnd", RtfKeyword::Expnd, RtfWordGroup::CharacterFormat},
    {"expndtw", RtfKeyword::ExpndTw, RtfWordGroup::CharacterFormat},
    {"f", RtfKeyword::F, RtfWordGroup::CharacterFormat},
    {"falt", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"fcharset", RtfKeyword::FCharset, RtfWordGroup::FontColour},
    {"fi", RtfKeyword::Fi, RtfWordGroup::ParagraphFormat},
    {"field", RtfKeyword::Field, RtfWordGroup::Destination},
    {"filetbl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"fldinst", RtfKeyword::FldInst, RtfWordGroup::Destination},
    {"fldrslt", RtfKeyword::FldRslt, RtfWordGroup::Destination},
    {"fldtype", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"fname", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"fonttbl", RtfKeyword::FontTbl, RtfWordGroup::Destination},
    {"footer", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"footerf", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"footerl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"footerr", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"footnote", RtfKeyword::Footnote, RtfWordGroup::Destination},
    {"fs", RtfKeyword::Fs, RtfWordGroup::CharacterFormat},
    {"ftnsep", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"ftnsepc", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"generator", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"green", RtfKeyword::Green, RtfWordGroup::FontColour},
    {"header", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"headerf", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"headerl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"headerr", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"highlight", RtfKeyword::Highlight, RtfWordGroup::CharacterFormat},
    {"i", RtfKeyword::I, RtfWordGroup::CharacterFormat},
    {"ilvl", RtfKeyword::Ilvl, RtfWordGroup::ParagraphFormat},
    {"info", RtfKeyword::Info, RtfWordGroup::Destination},
    {"intbl", RtfKeyword::InTbl, RtfWordGroup::ParagraphFormat},
    {"itap", RtfKeyword::Itap, RtfWordGroup::ParagraphFormat},
    {"jpegblip", RtfKeyword::JpegBlip, RtfWordGroup::Picture},
    {"keep", RtfKeyword::Keep, RtfWordGroup::ParagraphFormat},
    {"keywords", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"landscape", RtfKeyword::Landscape, RtfWordGroup::Document},
    {"latentstyles", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"ldblquote", RtfKeyword::LDblQuote, RtfWordGroup::Character},
    {"levelnfc", RtfKeyword::LevelNfc, RtfWordGroup::List},
    {"levelnfcn", RtfKeyword::LevelNfc, RtfWordGroup::List},
    {"levelnumbers", RtfKeyword::LevelNumbers, RtfWordGroup::Destination},
    {"levelstartat", RtfKeyword::LevelStartAt, RtfWordGroup::List},
    {"leveltext", RtfKeyword::LevelText, RtfWordGroup::Destination},
    {"li", RtfKeyword::Li, RtfWordGroup::ParagraphFormat},
    {"lin", RtfKeyword::Li, RtfWordGroup::ParagraphFormat},
    {"line", RtfKeyword::Line, RtfWordGroup::Character},
    {"list", RtfKeyword::List, RtfWordGroup::Destination},
    {"listid", RtfKeyword::ListId, RtfWordGroup::List},
    {"listlevel", RtfKeyword::ListLevel, RtfWordGroup::Destination},
    {"listname", RtfKeyword::ListName, RtfWordGroup::Destination},
    {"listoverride", RtfKeyword::ListOverride, RtfWordGroup::Destination},
    {"listoverridetable", RtfKeyword::ListOverrideTable, RtfWordGroup::Destination},
    {"listpicture", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"listtable", RtfKeyword::ListTable, RtfWordGroup::Destination},
    {"listtext", RtfKeyword::ListText, RtfWordGroup::Destination},
    {"lquote", RtfKeyword::LQuote, RtfWordGroup::Character},
    {"ls", RtfKeyword::Ls, RtfWordGroup::ParagraphFormat},
    {"mac", RtfKeyword::Mac, RtfWordGroup::Document},
    {"macpict", RtfKeyword::MacPict, RtfWordGroup::Picture},
    {"margb", RtfKeyword::MargB, RtfWordGroup::Document},
    {"margbsxn", RtfKeyword::MargBsxn, RtfWordGroup::Document},
    {"margl", RtfKeyword::MargL, RtfWordGroup::Document},
    {"marglsxn", RtfKeyword::MargLsxn, RtfWordGroup::Document},
    {"margr", RtfKeyword::MargR, RtfWordGroup::Document},
    {"margrsxn", RtfKeyword::MargRsxn, RtfWordGroup::Document},
    {"margt", RtfKeyword::MargT, RtfWordGroup::Document},
    {"margtsxn", RtfKeyword::MargTsxn, RtfWordGroup::Document},
    {"mmathPr", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"nestcell", RtfKeyword::NestCell, RtfWordGroup::Character},
    {"nestrow", RtfKeyword::NestRow, RtfWordGroup::Character},
    {"nesttableprops", RtfKeyword::NestTableProps, RtfWordGroup::Destination},
    {"nonesttables", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"nonshppict", RtfKeyword::NonShpPict, RtfWordGroup::Destination},
    {"nosupersub", RtfKeyword::NoSuperSub, RtfWordGroup::CharacterFormat},
    {"objclass", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"objdata", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"object", RtfKeyword::Object, RtfWordGroup::Destination},
    {"operator", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"outlinelevel", RtfKeyword::OutlineLevel, RtfWordGroup::ParagraphFormat},
    {"page", RtfKeyword::Page, RtfWordGroup::Character},
    {"pagebb", RtfKeyword::PageBb, RtfWordGroup::ParagraphFormat},
    {"panose", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"paperh", RtfKeyword::PaperH, RtfWordGroup::Document},
    {"paperw", RtfKeyword::PaperW, RtfWordGroup::Document},
    {"par", RtfKeyword::Par, RtfWordGroup::Character},
    {"pard", RtfKeyword::Pard, RtfWordGroup::ParagraphFormat},
    {"pc", RtfKeyword::Pc, RtfWordGroup::Document},
    {"pca", RtfKeyword::Pca, RtfWordGroup::Document},
    {"pgdsctbl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"pghsxn", RtfKeyword::PgHsxn, RtfWordGroup::Document},
    {"pgwsxn", RtfKeyword::PgWsxn, RtfWordGroup::Document},
    {"pich", RtfKeyword::PicH, RtfWordGroup::Picture},
    {"pichgoal", RtfKeyword::PicHGoal, RtfWordGroup::Picture},
    {"picprop", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"picscalex", RtfKeyword::PicScaleX, RtfWordGroup::Picture},
    {"picscaley", RtfKeyword::PicScaleY, RtfWordGroup::Picture},
    {"pict", RtfKeyword::Pict, RtfWordGroup::Destination},
    {"picw", RtfKeyword::PicW, RtfWordGroup::Picture},
    {"picwgoal", RtfKeyword::PicWGoal, RtfWordGroup::Picture},
    {"plain", RtfKeyword::Plain, RtfWordGroup::CharacterFormat},
    {"pmmetafile", RtfKeyword::PmMetafile, RtfWordGroup::Picture},
    {"pn", RtfKeyword::Pn, RtfWordGroup::Destination},
    {"pndec", RtfKeyword::PnDec, RtfWordGroup::List},
    {"pngblip", RtfKeyword::PngBlip, RtfWordGroup::Picture},
    {"pnlcltr", RtfKeyword::PnLcLtr, RtfWordGroup::List},
    {"pnlcrm", RtfKeyword::PnLcRm, RtfWordGroup::List},
    {"pnlvl", RtfKeyword::PnLvl, RtfWordGroup::List},
    {"pnlvlblt", RtfKeyword::PnLvlBlt, RtfWordGroup::List},
    {"pnlvlbody", RtfKeyword::PnLvlBody, RtfWordGroup::List},
    {"pnlvlcont", RtfKeyword::PnLvlCont, RtfWordGroup::List},
    {"pnstart", RtfKeyword::PnStart, RtfWordGroup::List},
    {"pntext", RtfKeyword::PnText, RtfWordGroup::Destination},
    {"pntxta", RtfKeyword::PnTxtA, RtfWordGroup::Destination},
    {"pntxtb", RtfKeyword::PnTxtB, RtfWordGroup::Destination},
    {"pnucltr", RtfKeyword::PnUcLtr, RtfWordGroup::List},
    {"pnucrm", RtfKeyword::PnUcRm, RtfWordGroup::List},
    {"qc", RtfKeyword::Qc, RtfWordGroup::ParagraphFormat},
    {"qd", RtfKeyword::Qd, RtfWordGroup::ParagraphFormat},
    {"qj", RtfKeyword::Qj, RtfWordGroup::ParagraphFormat},
    {"ql", RtfKeyword::Ql, RtfWordGroup::ParagraphFormat},
    {"qmspace", RtfKeyword::QmSpace, RtfWordGroup::Character},
    {"qr", RtfKeyword::Qr, RtfWordGroup::ParagraphFormat},
    {"rdblquote", RtfKeyword::RDblQuote, RtfWordGroup::Character},
    {"red", RtfKeyword::Red, RtfWordGroup::FontColour},
    {"result", RtfKeyword::Result, RtfWordGroup::Destination},
    {"revtbl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"ri", RtfKeyword::Ri, RtfWordGroup::ParagraphFormat},
    {"rin", RtfKeyword::Ri, RtfWordGroup::ParagraphFormat},
    {"row", RtfKeyword::Row, RtfWordGroup::Character},
    {"rquote", RtfKeyword::RQuote, RtfWordGroup::Character},
    {"rsidtbl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"rtf", RtfKeyword::Rtf, RtfWordGroup::Document},
    {"rxe", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"s", RtfKeyword::S, RtfWordGroup::ParagraphFormat},
    {"sa", RtfKeyword::Sa, RtfWordGroup::ParagraphFormat},
    {"sb", RtfKeyword::Sb, RtfWordGroup::ParagraphFormat},
    {"scaps", RtfKeyword::SCaps, RtfWordGroup::CharacterFormat},
    {"sect", RtfKeyword::Sect, RtfWordGroup::Character},
    {"shp", RtfKeyword::Shp, RtfWordGroup::Destination},
    {"shpinst", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"shppict", RtfKeyword::ShpPict, RtfWordGroup::Destination},
    {"shprslt", RtfKeyword::ShpRslt, RtfWordGroup::Destination},
    {"sl", RtfKeyword::Sl, RtfWordGroup::ParagraphFormat},
    {"slmult", RtfKeyword::SlMult, RtfWordGroup::ParagraphFormat},
    {"strike", RtfKeyword::Strike, RtfWordGroup::CharacterFormat},
    {"striked", RtfKeyword::StrikeD, RtfWordGroup::CharacterFormat},
    {"stylesheet", RtfKeyword::StyleSheet, RtfWordGroup::Destination},
    {"sub", RtfKeyword::Sub, RtfWordGroup::CharacterFormat},
    {"subject", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"super", RtfKeyword::Super, RtfWordGroup::CharacterFormat},
    {"tab", RtfKeyword::Tab, RtfWordGroup::Character},
    {"tb", RtfKeyword::Tb, RtfWordGroup::ParagraphFormat},
    {"tc", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"template", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"themedata", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"title", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"tqc", RtfKeyword::Tqc, RtfWordGroup::ParagraphFormat},
    {"tqdec", RtfKeyword::Tqdec, RtfWordGroup::ParagraphFormat},
    {"tqr", RtfKeyword::Tqr, RtfWordGroup::ParagraphFormat},
    {"trbrdrb", RtfKeyword::TrBrdrB, RtfWordGroup::Table},
    {"trbrdrh", RtfKeyword::TrBrdrH, RtfWordGroup::Table},
    {"trbrdrl", RtfKeyword::TrBrdrL, RtfWordGroup::Table},
    {"trbrdrr", RtfKeyword::TrBrdrR, RtfWordGroup::Table},
    {"trbrdrt", RtfKeyword::TrBrdrT, RtfWordGroup::Table},
    {"trbrdrv", RtfKeyword::TrBrdrV, RtfWordGroup::Table},
    {"trgaph", RtfKeyword::TrGaph, RtfWordGroup::Table},
    {"trhdr", RtfKeyword::TrHdr, RtfWordGroup::Table},
    {"trleft", RtfKeyword::TrLeft, RtfWordGroup::Table},
    {"trowd", RtfKeyword::TrowD, RtfWordGroup::Table},
    {"trqc", RtfKeyword::TrQc, RtfWordGroup::Table},
    {"trql", RtfKeyword::TrQl, RtfWordGroup::Table},
    {"trqr", RtfKeyword::TrQr, RtfWordGroup::Table},
    {"tx", RtfKeyword::Tx, RtfWordGroup::ParagraphFormat},
    {"txe", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"u", RtfKeyword::U, RtfWordGroup::Character},
    {"uc", RtfKeyword::Uc, RtfWordGroup::Character},
    {"ul", RtfKeyword::Ul, RtfWordGroup::CharacterFormat},
    {"uld", RtfKeyword::UlDotted, RtfWordGroup::CharacterFormat},
    {"uldash", RtfKeyword::UlDashed, RtfWordGroup::CharacterFormat},
    {"uldashd", RtfKeyword::UlDashed, RtfWordGroup::CharacterFormat},
    {"uldashdd", RtfKeyword::UlDashed, RtfWordGroup::CharacterFormat},
    {"uldb", RtfKeyword::UlDouble, RtfWordGroup::CharacterFormat},
    {"ulhwave", RtfKeyword::UlWave, RtfWordGroup::CharacterFormat},
    {"ulnone", RtfKeyword::UlNone, RtfWordGroup::CharacterFormat},
    {"ulth", RtfKeyword::Ul, RtfWordGroup::CharacterFormat},
    {"ulthd", RtfKeyword::UlDotted, RtfWordGroup::CharacterFormat},
    {"ulthdash", RtfKeyword::UlDashed, RtfWordGroup::CharacterFormat},
    {"ululdbwave", RtfKeyword::UlWave, RtfWordGroup::CharacterFormat},
    {"ulw", RtfKeyword::Ul, RtfWordGroup::CharacterFormat},
    {"ulwave", RtfKeyword::UlWave, RtfWordGroup::CharacterFormat},
    {"up", RtfKeyword::Up, RtfWordGroup::CharacterFormat},
    {"userprops", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"v", RtfKeyword::V, RtfWordGroup::CharacterFormat},
    {"wbitmap", RtfKeyword::WBitmap, RtfWordGroup::Picture},
    {"wmetafile", RtfKeyword::WMetafile, RtfWordGroup::Picture},
    {"xe", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"xmlnstbl", RtfKeyword::SkipDestination, RtfWordGroup::Destination},
    {"zwj", RtfKeyword::Zwj, RtfWordGroup::Character},
    {"zwnj", RtfKeyword::Zwnj, RtfWordGroup::Character},
};

constexpr bool sortedAndUnique()
{
    for (std::size_t i = 1; i < std::size(kWords); ++i) {
        if (!(kWords[i - 1].word < kWords[i].word)) {
            return false;
        }
    }
    return true;
}
static_assert(sortedAndUnique(), "the control word table must be sorted by word, without repeats");

} // namespace

RtfKeywordEntry RtfKeywords::find(QByteArrayView word)
{
    const std::string_view key(word.data(), std::size_t(word.size()));
    const auto it =
        std::lower_bound(std::begin(kWords), std::end(kWords), key,
                         [](const Row& row, std::string_view k) { return row.word < k; });
    if (it == std::end(kWords) || it->word != key) {
        return {};
    }
    return {it->keyword, it->group};
}

bool RtfKeywords::readsStarred(RtfKeyword keyword)
{
    switch (keyword) {
    case RtfKeyword::FldInst:
    case RtfKeyword::BkmkStart:
    case RtfKeyword::BkmkEnd:
    case RtfKeyword::ListTable:
    case RtfKeyword::ListOverrideTable:
    case RtfKeyword::Pn:
    case RtfKeyword::ShpPict:
    case RtfKeyword::ListText:
    case RtfKeyword::PnText:
    case RtfKeyword::NestTableProps:
        return true;
    default:
        return false;
    }
}

QChar RtfKeywords::symbol(RtfKeyword keyword)
{
    switch (keyword) {
    case RtfKeyword::Line:
        return QChar::LineSeparator;
    case RtfKeyword::Tab:
        return QLatin1Char('\t');
    case RtfKeyword::EmDash:
        return QChar(0x2014);
    case RtfKeyword::EnDash:
        return QChar(0x2013);
    case RtfKeyword::EmSpace:
        return QChar(0x2003);
    case RtfKeyword::EnSpace:
        return QChar(0x2002);
    case RtfKeyword::QmSpace:
        return QChar(0x2005);
    case RtfKeyword::Bullet:
        return QChar(0x2022);
    case RtfKeyword::LQuote:
        return QChar(0x2018);
    case RtfKeyword::RQuote:
        return QChar(0x2019);
    case RtfKeyword::LDblQuote:
        return QChar(0x201C);
    case RtfKeyword::RDblQuote:
        return QChar(0x201D);
    case RtfKeyword::Zwj:
        return QChar(0x200D);
    case RtfKeyword::Zwnj:
        return QChar(0x200C);
    default:
        return {};
    }
}

} // namespace kestrum::text
