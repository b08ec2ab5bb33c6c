#include "RtfFormatReader.h"

#include "editors/text/RtfFileColours.h"
#include "editors/text/TextProperties.h"

#include <QTextFrameFormat>

#include <algorithm>

namespace kestrum::text {

namespace {

// \expndN gives quarter points; outside this range it is ignored.
constexpr int kMaxExpand = 8191;
constexpr int kTwipsPerQuarterPoint = 5;

// The row borders of \trbrdrX: top, bottom, left, right, then the inner ones.
constexpr int kRowInnerHorizontal = 4;
constexpr int kRowInnerVertical = 5;

int sideOf(RtfKeyword keyword)
{
    switch (keyword) {
    case RtfKeyword::BrdrT:
    case RtfKeyword::ClBrdrT:
    case RtfKeyword::TrBrdrT:
        return SideTop;
    case RtfKeyword::BrdrB:
    case RtfKeyword::ClBrdrB:
    case RtfKeyword::TrBrdrB:
        return SideBottom;
    case RtfKeyword::BrdrL:
    case RtfKeyword::ClBrdrL:
    case RtfKeyword::TrBrdrL:
        return SideLeft;
    case RtfKeyword::TrBrdrH:
        return kRowInnerHorizontal;
    case RtfKeyword::TrBrdrV:
        return kRowInnerVertical;
    default:
        return SideRight;
    }
}

} // namespace

void RtfFormatReader::characterWord(const RtfWord& word, RtfCharState& c) const
{
    const int p = word.parameter;
    switch (word.keyword) {
    case RtfKeyword::Plain: {
        const QString href = c.href;
        c = RtfCharState();
        c.href = href;
        break;
    }
    case RtfKeyword::F:
        c.font = p;
        break;
    case RtfKeyword::Fs:
        if (word.hasParameter) {
            c.halfPoints = qBound(1, p, rtf::kMaxHalfPoints);
        }
        break;
    case RtfKeyword::B:
        c.bold = word.on();
        break;
    case RtfKeyword::I:
        c.italic = word.on();
        break;
    case RtfKeyword::Ul:
        c.underline = word.on() ? QTextCharFormat::SingleUnderline : QTextCharFormat::NoUnderline;
        break;
    case RtfKeyword::UlNone:
        c.underline = QTextCharFormat::NoUnderline;
        break;
    case RtfKeyword::UlDotted:
        c.underline = QTextCharFormat::DotLine;
        break;
    case RtfKeyword::UlDashed:
        c.underline = QTextCharFormat::DashUnderline;
        break;
    case RtfKeyword::UlWave:
        c.underline = QTextCharFormat::WaveUnderline;
        break;
    case RtfKeyword::UlDouble:
        c.underline = QTextCharFormat::SingleUnderline;
        break;
    case RtfKeyword::Strike:
    case RtfKeyword::StrikeD:
        c.strike = word.on();
        break;
    case RtfKeyword::Sub:
        c.vertical = RtfVertical::Subscript;
        break;
    case RtfKeyword::Super:
        c.vertical = RtfVertical::Superscript;
        break;
    case RtfKeyword::NoSuperSub:
        c.vertical = RtfVertical::Baseline;
        break;
    case RtfKeyword::Up:
        c.vertical = word.on() ? RtfVertical::Superscript : RtfVertical::Baseline;
        break;
    case RtfKeyword::Dn:
        c.vertical = word.on() ? RtfVertical::Subscript : RtfVertical::Baseline;
        break;
    case RtfKeyword::Cf:
        c.foreground = p;
        break;
    case RtfKeyword::Cb:
    case RtfKeyword::ChCbPat:
    case RtfKeyword::Highlight:
        c.background = p;
        break;
    case RtfKeyword::V:
        c.hidden = word.on();
        break;
    case RtfKeyword::Caps:
        c.caps = word.on() ? RtfCaps::All : RtfCaps::Normal;
        break;
    case RtfKeyword::SCaps:
        c.caps = word.on() ? RtfCaps::Small : RtfCaps::Normal;
        break;
    case RtfKeyword::ExpndTw:
        c.spacing = p;
        break;
    case RtfKeyword::Expnd:
        c.spacing = p > kMaxExpand || p < -kMaxExpand ? 0 : p * kTwipsPerQuarterPoint;
        break;
    default:
        break;
    }
}

void RtfFormatReader::paragraphWord(const RtfWord& word, RtfParaState& para)
{
    const int p = word.parameter;
    switch (word.keyword) {
    case RtfKeyword::Pard:
        para = RtfParaState();
        m_borderTarget = BorderTarget::None;
        m_borderBox = false;
        break;
    case RtfKeyword::Ql:
        para.alignment = RtfAlignment::Left;
        break;
    case RtfKeyword::Qc:
        para.alignment = RtfAlignment::Centre;
        break;
    case RtfKeyword::Qr:
        para.alignment = RtfAlignment::Right;
        break;
    case RtfKeyword::Qj:
    case RtfKeyword::Qd:
        para.alignment = RtfAlignment::Justified;
        break;
    case RtfKeyword::Li:
        para.left = p;
        break;
    case RtfKeyword::Ri:
        para.right = p;
        break;
    case RtfKeyword::Fi:
        para.first = p;
        break;
    case RtfKeyword::Sb:
        para.before = p;
        break;
    case RtfKeyword::Sa:
        para.after = p;
        break;
    case RtfKeyword::Sl:
        para.lineSpacing = p == rtf::kAutoLineSpacing ? 0 : p;
        break;
    case RtfKeyword::SlMult:
        para.lineMultiple = p != 0;
        break;
    case RtfKeyword::Tqr:
        para.pendingTabType = QTextOption::RightTab;
        break;
    case RtfKeyword::Tqc:
        para.pendingTabType = QTextOption::CenterTab;
        break;
    case RtfKeyword::Tqdec:
        para.pendingTabType = QTextOption::DelimiterTab;
        break;
    case RtfKeyword::Tx:
    case RtfKeyword::Tb:
        // \tbN is a bar tab: it ends the tab's description without a stop of its own.
        if (word.keyword == RtfKeyword::Tx && para.tabs.size() < rtf::kMaxTabStops && p >= 0 &&
            p <= rtf::kMaxTwips) {
            QTextOption::Tab tab(twipsToPixels(p), QTextOption::TabType(para.pendingTabType),
                                 para.pendingTabType == QTextOption::DelimiterTab ? QChar('.')
                                                                                  : QChar());
            para.tabs << tab;
        }
        para.pendingTabType = QTextOption::LeftTab;
        break;
    case RtfKeyword::InTbl:
        para.tableDepth = std::max(para.tableDepth, 1);
        break;
    case RtfKeyword::Itap:
        para.tableDepth = qBound(0, p, RtfDocumentBuilder::kMaxTableDepth);
        break;
    case RtfKeyword::Keep:
        para.keep = word.on();
        break;
    case RtfKeyword::PageBb:
        para.pageBreakBefore = word.on();
        break;
    case RtfKeyword::S:
        para.style = p;
        break;
    case RtfKeyword::OutlineLevel:
        para.outlineLevel = p;
        break;
    case RtfKeyword::Ls:
        para.listOverride = p; // a \pn of the paragraph stands in when no list table has it
        break;
    case RtfKeyword::Ilvl:
        para.listLevel = p;
        break;
    case RtfKeyword::CbPat:
        para.shading = p;
        break;
    default:
        break;
    }
}

template <typename F> void RtfFormatReader::forBorders(RtfParaState& para, F apply)
{
    const std::size_t side = std::size_t(qBound(0, m_borderSide, kRowInnerVertical));
    switch (m_borderTarget) {
    case BorderTarget::Paragraph:
        if (m_borderBox) {
            for (RtfBorder& border : para.borders) {
                apply(border);
            }
        } else {
            apply(para.borders[std::min<std::size_t>(side, SideCount - 1)]);
        }
        break;
    case BorderTarget::Cell:
        apply(activeCell().borders[std::min<std::size_t>(side, SideCount - 1)]);
        break;
    case BorderTarget::Row:
        apply(activeRow().borders[side]);
        break;
    case BorderTarget::None:
        break;
    }
}

void RtfFormatReader::setBorderStyle(RtfParaState& para, int style)
{
    forBorders(para, [style](RtfBorder& border) { border.style = style; });
}

void RtfFormatReader::borderWord(const RtfWord& word, RtfParaState& para)
{
    const int p = word.parameter;
    switch (word.keyword) {
    case RtfKeyword::BrdrT:
    case RtfKeyword::BrdrB:
    case RtfKeyword::BrdrL:
    case RtfKeyword::BrdrR:
        // A paragraph border: the border words that follow describe this side.
        m_borderTarget = BorderTarget::Paragraph;
        m_borderBox = false;
        m_borderSide = sideOf(word.keyword);
        para.borders[std::size_t(m_borderSide)].style = QTextFrameFormat::BorderStyle_Solid;
        break;
    case RtfKeyword::Box:
        for (RtfBorder& b : para.borders) {
            b.style = QTextFrameFormat::BorderStyle_Solid;
        }
        m_borderTarget = BorderTarget::Paragraph;
        m_borderBox = true;
        break;
    case RtfKeyword::BrdrS:
    case RtfKeyword::BrdrTh:
    case RtfKeyword::BrdrOther:
        setBorderStyle(para, QTextFrameFormat::BorderStyle_Solid);
        break;
    case RtfKeyword::BrdrDb:
        setBorderStyle(para, QTextFrameFormat::BorderStyle_Double);
        break;
    case RtfKeyword::BrdrDot:
        setBorderStyle(para, QTextFrameFormat::BorderStyle_Dotted);
        break;
    case RtfKeyword::BrdrDash:
        setBorderStyle(para, QTextFrameFormat::BorderStyle_Dashed);
        break;
    case RtfKeyword::BrdrNone:
        setBorderStyle(para, QTextFrameFormat::BorderStyle_None);
        break;
    case RtfKeyword::BrdrW: {
        const int width = qBound(0, p, rtf::kMaxSmallTwips);
        forBorders(para, [width](RtfBorder& b) { b.width = width; });
        break;
    }
    case RtfKeyword::BrdrCf: {
        const QColor colour = m_colours.colour(p);
        forBorders(para, [&colour](RtfBorder& b) { b.colour = colour; });
        break;
    }
    case RtfKeyword::BrSp: {
        const int space = qBound(0, p, rtf::kMaxSmallTwips);
        forBorders(para, [space](RtfBorder& b) { b.space = space; });
        break;
    }
    default:
        break;
    }
}

void RtfFormatReader::tableWord(const RtfWord& word, bool nested)
{
    const int p = word.parameter;
    m_active = nested ? 1 : 0;
    switch (word.keyword) {
    case RtfKeyword::TrowD:
        activeRow() = RtfRowDef();
        activeCell() = RtfCellDef();
        m_borderTarget = BorderTarget::None;
        break;
    case RtfKeyword::TrGaph:
        activeRow().gap = qBound(0, p, rtf::kMaxSmallTwips);
        break;
    case RtfKeyword::TrLeft:
        activeRow().left = qBound(-rtf::kMaxTwips, p, rtf::kMaxTwips);
        break;
    case RtfKeyword::TrQl:
        activeRow().alignment = 0;
        break;
    case RtfKeyword::TrQc:
        activeRow().alignment = 1;
        break;
    case RtfKeyword::TrQr:
        activeRow().alignment = 2;
        break;
    case RtfKeyword::TrHdr:
        activeRow().header = true;
        break;
    case RtfKeyword::CellX:
        if (activeRow().cells.size() < std::size_t(RtfDocumentBuilder::kMaxColumns)) {
            activeCell().right = qBound(-rtf::kMaxTwips, p, rtf::kMaxTwips * 4);
            activeRow().cells.push_back(activeCell());
        }
        activeCell() = RtfCellDef();
        m_borderTarget = BorderTarget::None;
        break;
    case RtfKeyword::ClCbPat:
        activeCell().shading = m_colours.colour(p);
        break;
    case RtfKeyword::ClBrdrT:
    case RtfKeyword::ClBrdrB:
    case RtfKeyword::ClBrdrL:
    case RtfKeyword::ClBrdrR:
        m_borderTarget = BorderTarget::Cell;
        m_borderBox = false;
        m_borderSide = sideOf(word.keyword);
        activeCell().borders[std::size_t(m_borderSide)].style = QTextFrameFormat::BorderStyle_Solid;
        activeCell().borders[std::size_t(m_borderSide)].given = true;
        break;
    case RtfKeyword::TrBrdrT:
    case RtfKeyword::TrBrdrB:
    case RtfKeyword::TrBrdrL:
    case RtfKeyword::TrBrdrR:
    case RtfKeyword::TrBrdrH:
    case RtfKeyword::TrBrdrV:
        m_borderTarget = BorderTarget::Row;
        m_borderBox = false;
        m_borderSide = sideOf(word.keyword);
        activeRow().borders[std::size_t(m_borderSide)].style = QTextFrameFormat::BorderStyle_Solid;
        activeRow().borders[std::size_t(m_borderSide)].given = true;
        break;
    case RtfKeyword::ClVmgf:
        activeCell().verticalFirst = true;
        break;
    case RtfKeyword::ClVmrg:
        activeCell().verticalMerged = true;
        break;
    case RtfKeyword::ClMgf:
        activeCell().mergeFirst = true;
        break;
    case RtfKeyword::ClMrg:
        activeCell().merged = true;
        break;
    case RtfKeyword::ClVertalT:
        activeCell().verticalAlign = 0;
        break;
    case RtfKeyword::ClVertalC:
        activeCell().verticalAlign = 1;
        break;
    case RtfKeyword::ClVertalB:
        activeCell().verticalAlign = 2;
        break;
    case RtfKeyword::ClFtsWidth:
        activeCell().widthKind =
            qBound(int(RtfCellDef::WidthUnset), p, int(RtfCellDef::WidthTwips));
        break;
    case RtfKeyword::ClWWidth:
        activeCell().width = qBound(0, p, rtf::kMaxTwips * 4);
        break;
    default:
        break;
    }
}

} // namespace kestrum::text
