#include "RtfFormatMapper.h"

#include "editors/text/RtfFileColours.h"
#include "editors/text/RtfFontTable.h"
#include "editors/text/RtfListTable.h"
#include "editors/text/RtfStyleSheet.h"
#include "editors/text/TextProperties.h"

#include <QTextFrameFormat>

namespace kestrum::text {

namespace {

// Headings of the outline: \outlinelevel0 to 5 are headings 1 to 6.
constexpr int kOutlineLevels = 6;
// A proportional line spacing (\slmult1) counts in 240ths of a line.
constexpr qreal kSingleLine = 240.0;

} // namespace

QTextCharFormat RtfFormatMapper::charFormat(const RtfCharState& state)
{
    if (m_cacheValid && m_cachedState == state) {
        return m_cachedFormat;
    }
    QTextCharFormat format;
    const RtfFont* font = m_fonts.font(state.font);
    if (font && !font->name.isEmpty()) {
        format.setFontFamilies({font->name});
    }
    format.setFontPointSize(qBound(1, state.halfPoints, rtf::kMaxHalfPoints) / 2.0);
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
    if (state.vertical == RtfVertical::Superscript) {
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    } else if (state.vertical == RtfVertical::Subscript) {
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    }
    if (state.caps == RtfCaps::All) {
        format.setFontCapitalization(QFont::AllUppercase);
    } else if (state.caps == RtfCaps::Small) {
        format.setFontCapitalization(QFont::SmallCaps);
    }
    const QColor foreground = m_colours.colour(state.foreground);
    if (foreground.isValid()) {
        format.setForeground(foreground);
    }
    const QColor background = m_colours.colour(state.background);
    if (background.isValid()) {
        format.setBackground(background);
    }
    if (state.spacing != 0) {
        format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        format.setFontLetterSpacing(
            twipsToPixels(qBound(-rtf::kMaxSmallTwips, state.spacing, rtf::kMaxSmallTwips)));
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

RtfParagraph RtfFormatMapper::paragraph(const RtfParaState& state) const
{
    RtfParagraph out;
    QTextBlockFormat& block = out.block;
    switch (state.alignment) {
    case RtfAlignment::Centre:
        block.setAlignment(Qt::AlignHCenter);
        break;
    case RtfAlignment::Right:
        block.setAlignment(Qt::AlignRight);
        break;
    case RtfAlignment::Justified:
        block.setAlignment(Qt::AlignJustify);
        break;
    case RtfAlignment::Left:
        break;
    }
    auto px = [](int twips) {
        return twipsToPixels(qBound(-rtf::kMaxTwips, twips, rtf::kMaxTwips));
    };

    if (m_lists.format(state, out)) {
        // The list's own indentation takes the first part of the paragraph's.
        const int listIndent = out.list.indent() * RtfListTable::kIndentPerLevel;
        block.setLeftMargin(px(std::max(0, state.left - listIndent)));
    } else {
        block.setLeftMargin(px(state.left));
        block.setTextIndent(px(state.first));
    }
    block.setRightMargin(px(state.right));
    block.setTopMargin(px(std::max(0, state.before)));
    block.setBottomMargin(px(std::max(0, state.after)));
    if (state.lineSpacing != 0) {
        const int sl = qBound(-rtf::kMaxTwips, state.lineSpacing, rtf::kMaxTwips);
        if (state.lineMultiple && sl > 0) {
            block.setLineHeight(qreal(sl) * 100.0 / kSingleLine,
                                QTextBlockFormat::ProportionalHeight);
        } else if (sl > 0) {
            block.setLineHeight(px(sl), QTextBlockFormat::MinimumHeight);
        } else {
            block.setLineHeight(px(-sl), QTextBlockFormat::FixedHeight);
        }
    }
    if (!state.tabs.isEmpty()) {
        block.setTabPositions(state.tabs);
    }
    const QColor shading = m_colours.colour(state.shading);
    if (shading.isValid()) {
        block.setBackground(shading);
    }
    setBorder(state, block);
    if (state.pageBreakBefore) {
        block.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    }
    if (state.keep) {
        block.setNonBreakableLines(true);
    }
    if (state.outlineLevel >= 0 && state.outlineLevel < kOutlineLevels) {
        block.setHeadingLevel(state.outlineLevel + 1);
    } else if (const int level = m_styles.headingLevel(state.style); level > 0) {
        block.setHeadingLevel(level);
    }
    return out;
}

// A paragraph has one border style for the sides it shows: the first side's.
void RtfFormatMapper::setBorder(const RtfParaState& state, QTextBlockFormat& block) const
{
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
    if (sides == 0) {
        return;
    }
    block.setProperty(TextProperty::BorderSides, sides);
    block.setProperty(TextProperty::BorderWidth,
                      qBound(1, firstBorder->width, rtf::kMaxSmallTwips));
    block.setProperty(TextProperty::BorderStyle, firstBorder->style);
    block.setProperty(TextProperty::BorderSpacing,
                      qBound(0, firstBorder->space, rtf::kMaxSmallTwips));
    if (firstBorder->colour.isValid()) {
        block.setProperty(TextProperty::BorderColour, firstBorder->colour);
    }
}

} // namespace kestrum::text
