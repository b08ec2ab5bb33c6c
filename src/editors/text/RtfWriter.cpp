#include "RtfWriter.h"

#include "editors/text/HiddenTextObject.h"
#include "editors/text/RtfFootnoteWriter.h"
#include "editors/text/RtfListTableWriter.h"
#include "editors/text/RtfPictureWriter.h"
#include "editors/text/RtfTableWriter.h"
#include "editors/text/TextProperties.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace kestrum::text {

namespace {

QStringList familiesOf(const QTextFormat& format)
{
    QStringList families = format.property(QTextFormat::FontFamilies).toStringList();
    if (families.isEmpty()) {
        const QString family = format.property(QTextFormat::FontFamily).toString();
        if (!family.isEmpty()) {
            families << family;
        }
    }
    return families;
}

int twips(qreal pixels)
{
    return pixelsToTwips(pixels);
}

} // namespace

RtfWriter::RtfWriter(const QTextDocument& document, const ColourTable& colours,
                     const PageLayout& layout)
    : m_document(document), m_colours(colours), m_layout(layout), m_footnotes(document)
{
    m_layout.normalise();
}

QString RtfWriter::defaultFamily() const
{
    const QString family = m_document.defaultFont().family();
    return family.isEmpty() ? QStringLiteral("Arial") : family;
}

QByteArray RtfWriter::emptyDocument(const PageLayout& layout)
{
    PageLayout page = layout;
    page.normalise();
    QByteArray out =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}";
    out += "{\\colortbl;";
    const QList<QColor>& standard = ColourTable::standardColours();
    for (const QColor& c : standard) {
        out += "\\red" + QByteArray::number(c.red()) + "\\green" + QByteArray::number(c.green()) +
               "\\blue" + QByteArray::number(c.blue()) + ';';
    }
    out += "}{\\*\\generator Kestrum;}";
    out += "\\paperw" + QByteArray::number(page.paperWidth) + "\\paperh" +
           QByteArray::number(page.paperHeight) + "\\margl" + QByteArray::number(page.marginLeft) +
           "\\margr" + QByteArray::number(page.marginRight) + "\\margt" +
           QByteArray::number(page.marginTop) + "\\margb" + QByteArray::number(page.marginBottom);
    if (page.landscape()) {
        out += "\\landscape";
    }
    out += "\n\\pard\\plain\\f0\\fs22\\par\n}\n";
    return out;
}

QByteArray RtfWriter::write()
{
    m_rtf.clear();
    m_rtf.reserve(qsizetype(m_document.characterCount()) * 2 + 4096);
    const QFont font = m_document.defaultFont();
    const qreal points = font.pointSizeF() > 0  ? font.pointSizeF()
                         : font.pixelSize() > 0 ? font.pixelSize() * 0.75
                                                : 11.0;
    m_defaultHalfPoints = std::clamp(int(std::lround(points * 2)), 2, 3276);
    fontIndex(defaultFamily());
    collect();
    writeHeader();
    writeRootFrame();
    closeLink();
    closeBookmarks();
    m_rtf.raw("}\n");
    return m_rtf.bytes();
}

// ---- collecting fonts, colours and lists -------------------------------------------------------

int RtfWriter::fontIndex(const QString& family)
{
    const auto it = m_fontIndex.constFind(family);
    if (it != m_fontIndex.cend()) {
        return it.value();
    }
    const int index = int(m_fonts.size());
    m_fonts << family;
    m_fontIndex.insert(family, index);
    return index;
}

int RtfWriter::colourNumber(const QColor& colour)
{
    const int number = m_colours.enter(colour);
    return number < 0 ? 0 : number;
}

void RtfWriter::collectFormat(const QTextCharFormat& format)
{
    const QStringList families = familiesOf(format);
    if (!families.isEmpty() && !families.first().isEmpty()) {
        fontIndex(families.first());
    }
    if (format.hasProperty(QTextFormat::ForegroundBrush) &&
        format.foreground().style() != Qt::NoBrush) {
        colourNumber(format.foreground().color());
    }
    if (format.hasProperty(QTextFormat::BackgroundBrush) &&
        format.background().style() != Qt::NoBrush) {
        colourNumber(format.background().color());
    }
}

void RtfWriter::collect()
{
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        collectFormat(block.charFormat());
        const QTextBlockFormat bf = block.blockFormat();
        if (bf.hasProperty(QTextFormat::BackgroundBrush) &&
            bf.background().style() != Qt::NoBrush) {
            colourNumber(bf.background().color());
        }
        if (bf.hasProperty(TextProperty::BorderColour)) {
            colourNumber(bf.property(TextProperty::BorderColour).value<QColor>());
        }
        if (const QTextList* list = block.textList(); list && !m_lists.contains(list)) {
            m_listOrder << list;
            m_lists.insert(list, int(m_listOrder.size()));
        }
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            collectFormat(it.fragment().charFormat());
        }
    }
    // Table cells: shading and border colours.
    std::vector<const QTextFrame*> frames{m_document.rootFrame()};
    while (!frames.empty()) {
        const QTextFrame* frame = frames.back();
        frames.pop_back();
        for (const QTextFrame* child : frame->childFrames()) {
            frames.push_back(child);
        }
        const auto* table = qobject_cast<const QTextTable*>(frame);
        if (!table) {
            continue;
        }
        for (int r = 0; r < table->rows(); ++r) {
            for (int c = 0; c < table->columns(); ++c) {
                const QTextTableCellFormat cf = table->cellAt(r, c).format().toTableCellFormat();
                if (cf.hasProperty(QTextFormat::BackgroundBrush) &&
                    cf.background().style() != Qt::NoBrush) {
                    colourNumber(cf.background().color());
                }
                for (int p : {int(QTextFormat::TableCellTopBorderBrush),
                              int(QTextFormat::TableCellBottomBorderBrush),
                              int(QTextFormat::TableCellLeftBorderBrush),
                              int(QTextFormat::TableCellRightBorderBrush)}) {
                    if (cf.hasProperty(p)) {
                        colourNumber(cf.brushProperty(p).color());
                    }
                }
            }
        }
        if (table->format().hasProperty(QTextFormat::FrameBorderBrush)) {
            colourNumber(table->format().borderBrush().color());
        }
    }
}

// ---- header ------------------------------------------------------------------------------------

void RtfWriter::writeHeader()
{
    m_rtf.raw("{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl");
    for (int i = 0; i < m_fonts.size(); ++i) {
        m_rtf.raw("{");
        m_rtf.word("f", i);
        m_rtf.word("fnil");
        m_rtf.word("fcharset", 0);
        m_rtf.text(m_fonts[i]);
        m_rtf.raw(";}");
    }
    m_rtf.raw("}\n{\\colortbl;");
    for (int i = 1; i < m_colours.count(); ++i) {
        const QColor c = m_colours.colour(i);
        m_rtf.word("red", c.red());
        m_rtf.word("green", c.green());
        m_rtf.word("blue", c.blue());
        m_rtf.raw(";");
    }
    m_rtf.raw("}\n");

    RtfListTableWriter::write(m_rtf, m_listOrder);
    m_rtf.raw("{\\*\\generator Kestrum;}");
    m_rtf.word("paperw", m_layout.paperWidth);
    m_rtf.word("paperh", m_layout.paperHeight);
    m_rtf.word("margl", m_layout.marginLeft);
    m_rtf.word("margr", m_layout.marginRight);
    m_rtf.word("margt", m_layout.marginTop);
    m_rtf.word("margb", m_layout.marginBottom);
    if (m_layout.landscape()) {
        m_rtf.word("landscape");
    }
    m_rtf.raw("\n");
    m_current = CharProps();
    m_rtf.word("plain");
    m_rtf.word("f", 0);
    m_rtf.word("fs", m_defaultHalfPoints);
    m_current.halfPoints = m_defaultHalfPoints;
    m_rtf.raw("\n");
}

// ---- body --------------------------------------------------------------------------------------

void RtfWriter::writeRootFrame()
{
    const QTextFrame* root = m_document.rootFrame();
    for (auto it = root->begin(); !it.atEnd(); ++it) {
        if (const QTextFrame* child = it.currentFrame()) {
            if (const auto* table = qobject_cast<const QTextTable*>(child)) {
                writeTable(table, 1);
            } else {
                const QTextBlock first = m_document.findBlock(child->firstPosition());
                const QTextBlock last = m_document.findBlock(child->lastPosition());
                writeFrameContent(first, last, 0);
            }
        } else if (!RtfFootnoteWriter::isNote(it.currentBlock())) {
            writeBlock(it.currentBlock(), 0, false);
        }
    }
}

void RtfWriter::writeFrameContent(const QTextBlock& first, const QTextBlock& last, int depth)
{
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        const bool isLast = block == last;
        writeBlock(block, depth, depth > 0 && isLast);
        if (isLast) {
            break;
        }
    }
}

void RtfWriter::writeTable(const QTextTable* table, int depth)
{
    RtfTableWriter rows(m_rtf, m_colours, m_layout);
    const std::vector<int> widths = rows.columnWidths(table);
    for (int r = 0; r < table->rows(); ++r) {
        if (depth == 1) {
            rows.writeRowDefinition(table, r, widths);
            m_rtf.raw("\n");
        }
        for (int c = 0; c < table->columns();) {
            const QTextTableCell cell = table->cellAt(r, c);
            const int span = std::max(1, cell.columnSpan());
            const bool lastInRow = c + span >= table->columns();
            if (cell.row() != r) {
                // Covered by the cell above (a vertical merge): an empty cell.
                m_rtf.raw("\\pard\\intbl");
                if (depth > 1) {
                    m_rtf.word("itap", depth);
                }
                m_rtf.word(depth > 1 ? "nestcell" : "cell");
                m_rtf.raw("\n");
                if (depth > 1 && !lastInRow) {
                    m_rtf.raw("{\\nonesttables\\tab}");
                }
            } else {
                writeCell(cell, depth, lastInRow);
            }
            c += span;
        }
        if (depth == 1) {
            m_rtf.raw("\\row\n");
            continue;
        }
        // A nested row is described after its cells; readers that know no nested tables
        // read the text of {\nonesttables ...}: a tab between cells, a paragraph per row.
        m_rtf.raw("\\pard\\intbl");
        m_rtf.word("itap", depth);
        m_rtf.raw("{\\*\\nesttableprops");
        rows.writeRowDefinition(table, r, widths);
        m_rtf.raw("\\nestrow}{\\nonesttables\\par}\n");
    }
}

void RtfWriter::writeCell(const QTextTableCell& cell, int depth, bool lastInRow)
{
    const QTextBlock last = m_document.findBlock(cell.lastPosition());
    for (auto it = cell.begin(); !it.atEnd(); ++it) {
        if (const QTextFrame* child = it.currentFrame()) {
            if (const auto* table = qobject_cast<const QTextTable*>(child);
                table && depth < RtfTableWriter::kMaxDepth) {
                writeTable(table, depth + 1);
            } else {
                const QTextBlock first = m_document.findBlock(child->firstPosition());
                const QTextBlock end = m_document.findBlock(child->lastPosition());
                for (QTextBlock block = first; block.isValid(); block = block.next()) {
                    writeBlock(block, depth, false);
                    if (block == end) {
                        break;
                    }
                }
            }
            continue;
        }
        const QTextBlock block = it.currentBlock();
        writeBlock(block, depth, block == last);
        if (block == last && depth > 1 && !lastInRow) {
            m_rtf.raw("{\\nonesttables\\tab}");
        }
    }
}

void RtfWriter::writeBlock(const QTextBlock& block, int depth, bool lastInCell)
{
    const QTextBlockFormat bf = block.blockFormat();
    m_rtf.words("\\pard");
    if (depth > 0) {
        m_rtf.word("intbl");
    }
    if (depth > 1) {
        m_rtf.word("itap", depth);
    }
    const Qt::Alignment align = bf.alignment() & Qt::AlignHorizontal_Mask;
    if (align & Qt::AlignHCenter) {
        m_rtf.word("qc");
    } else if (align & (Qt::AlignRight | Qt::AlignTrailing)) {
        m_rtf.word("qr");
    } else if (align & Qt::AlignJustify) {
        m_rtf.word("qj");
    }
    const QTextList* list = block.textList();
    int left = twips(bf.leftMargin());
    int first = twips(bf.textIndent());
    if (list) {
        const int level = std::clamp(list->format().indent(), 1, 9) - 1;
        m_rtf.word("ls", m_lists.value(list));
        m_rtf.word("ilvl", std::clamp(list->format().indent(), 1, 9) == 1 ? 0 : level);
        left += RtfListTableWriter::kIndentPerLevel * (level + 1);
        first = -360;
    } else if (bf.indent() > 0) {
        left += twips(bf.indent() * m_document.indentWidth());
    }
    if (left != 0) {
        m_rtf.word("li", std::clamp(left, -31680, 31680));
    }
    if (first != 0) {
        m_rtf.word("fi", std::clamp(first, -31680, 31680));
    }
    if (bf.rightMargin() != 0) {
        m_rtf.word("ri", std::clamp(twips(bf.rightMargin()), -31680, 31680));
    }
    if (bf.topMargin() > 0) {
        m_rtf.word("sb", std::clamp(twips(bf.topMargin()), 0, 31680));
    }
    if (bf.bottomMargin() > 0) {
        m_rtf.word("sa", std::clamp(twips(bf.bottomMargin()), 0, 31680));
    }
    switch (bf.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        if (bf.lineHeight() > 0 && std::abs(bf.lineHeight() - 100) > 0.01) {
            m_rtf.word("sl", std::clamp(int(std::lround(bf.lineHeight() * 240 / 100)), 1, 31680));
            m_rtf.word("slmult", 1);
        }
        break;
    case QTextBlockFormat::FixedHeight:
        m_rtf.word("sl", -std::clamp(twips(bf.lineHeight()), 1, 31680));
        m_rtf.word("slmult", 0);
        break;
    case QTextBlockFormat::MinimumHeight:
        m_rtf.word("sl", std::clamp(twips(bf.lineHeight()), 1, 31680));
        m_rtf.word("slmult", 0);
        break;
    default:
        break;
    }
    for (const QTextOption::Tab& tab : bf.tabPositions()) {
        switch (tab.type) {
        case QTextOption::RightTab:
            m_rtf.word("tqr");
            break;
        case QTextOption::CenterTab:
            m_rtf.word("tqc");
            break;
        case QTextOption::DelimiterTab:
            m_rtf.word("tqdec");
            break;
        default:
            break;
        }
        m_rtf.word("tx", std::clamp(twips(tab.position), 0, 31680));
    }
    if (bf.hasProperty(QTextFormat::BackgroundBrush) && bf.background().style() != Qt::NoBrush) {
        m_rtf.word("cbpat", colourNumber(bf.background().color()));
    }
    const int sides = bf.intProperty(TextProperty::BorderSides);
    if (sides != 0) {
        const int width = std::clamp(bf.hasProperty(TextProperty::BorderWidth)
                                         ? bf.intProperty(TextProperty::BorderWidth)
                                         : 15,
                                     1, 1440);
        const int style = bf.hasProperty(TextProperty::BorderStyle)
                              ? bf.intProperty(TextProperty::BorderStyle)
                              : int(QTextFrameFormat::BorderStyle_Solid);
        const int spacing = std::clamp(bf.intProperty(TextProperty::BorderSpacing), 0, 1440);
        const QColor colour = bf.property(TextProperty::BorderColour).value<QColor>();
        const std::pair<int, const char*> names[] = {{BorderSide::Top, "brdrt"},
                                                     {BorderSide::Left, "brdrl"},
                                                     {BorderSide::Bottom, "brdrb"},
                                                     {BorderSide::Right, "brdrr"}};
        for (const auto& [bit, name] : names) {
            if (!(sides & bit)) {
                continue;
            }
            m_rtf.word(name);
            m_rtf.word(RtfTableWriter::borderStyleWord(style));
            m_rtf.word("brdrw", width);
            if (spacing > 0) {
                m_rtf.word("brsp", spacing);
            }
            if (colour.isValid()) {
                m_rtf.word("brdrcf", colourNumber(colour));
            }
        }
    }
    if (bf.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) {
        m_rtf.word("pagebb");
    }
    if (bf.nonBreakableLines()) {
        m_rtf.word("keep");
    }
    if (bf.headingLevel() > 0 && bf.headingLevel() <= 6) {
        m_rtf.word("outlinelevel", bf.headingLevel() - 1);
    }
    if (list) {
        // The marker as text, for readers without list tables.
        QString marker;
        switch (list->format().style()) {
        case QTextListFormat::ListDisc:
            marker = QChar(0x2022);
            break;
        case QTextListFormat::ListCircle:
            marker = QStringLiteral("o");
            break;
        case QTextListFormat::ListSquare:
            marker = QChar(0x25AA);
            break;
        default:
            if (!m_itemNumbers) {
                m_itemNumbers.emplace(m_document);
            }
            marker = m_itemNumbers->itemText(block);
            break;
        }
        m_rtf.words("{\\listtext\\pard\\plain");
        m_rtf.word("f", 0);
        m_rtf.word("fs", m_current.halfPoints);
        m_rtf.text(marker);
        m_rtf.word("tab");
        m_rtf.raw("}");
    }

    if (block.length() <= 1) {
        writeCharDiff(charProps(block.charFormat()));
    }
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        writeFragment(it.fragment());
    }
    closeLink();
    m_rtf.word(!lastInCell ? "par" : depth > 1 ? "nestcell" : "cell");
    m_rtf.raw("\n");
}

void RtfWriter::writeFragment(const QTextFragment& fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    if (format.isAnchor() && !format.anchorNames().isEmpty()) {
        updateBookmarks(format.anchorNames());
    } else {
        updateBookmarks({});
    }
    const QString href = format.isAnchor() ? format.anchorHref() : QString();
    if (href != m_link) {
        closeLink();
        if (!href.isEmpty()) {
            openLink(href);
        }
    }

    const QString content = fragment.text();
    if (HiddenTextObject::isHidden(format)) {
        const QString hidden = HiddenTextObject::text(format);
        for (qsizetype i = 0; i < content.size(); ++i) {
            const CharProps saved = m_current;
            m_rtf.raw("{");
            m_rtf.word("v");
            writeCharDiff(charProps(format));
            m_rtf.text(hidden);
            m_rtf.raw("}");
            m_current = saved;
        }
        return;
    }
    if (RtfFootnoteWriter::isReference(format)) {
        m_footnotes.writeReference(m_rtf, format);
        return;
    }
    if (format.isImageFormat()) {
        for (qsizetype i = 0; i < content.size(); ++i) {
            RtfPictureWriter::write(m_rtf, m_document, format);
        }
        return;
    }
    writeCharDiff(charProps(format));
    QString visible = content;
    visible.remove(QChar::ObjectReplacementCharacter);
    m_rtf.text(visible);
}

RtfWriter::CharProps RtfWriter::charProps(const QTextCharFormat& format)
{
    CharProps p;
    const QStringList families = familiesOf(format);
    p.font = families.isEmpty() || families.first().isEmpty() ? 0 : fontIndex(families.first());
    if (format.hasProperty(QTextFormat::FontPointSize) && format.fontPointSize() > 0) {
        p.halfPoints = std::clamp(int(std::lround(format.fontPointSize() * 2)), 2, 3276);
    } else if (format.hasProperty(QTextFormat::FontPixelSize) &&
               format.intProperty(QTextFormat::FontPixelSize) > 0) {
        p.halfPoints = std::clamp(
            int(std::lround(format.intProperty(QTextFormat::FontPixelSize) * 1.5)), 2, 3276);
    } else {
        p.halfPoints = m_defaultHalfPoints;
    }
    p.bold = format.hasProperty(QTextFormat::FontWeight) && format.fontWeight() >= QFont::DemiBold;
    p.italic = format.fontItalic();
    p.strike = format.fontStrikeOut();
    switch (format.underlineStyle()) {
    case QTextCharFormat::NoUnderline:
        p.underline = 0;
        break;
    case QTextCharFormat::DotLine:
        p.underline = 2;
        break;
    case QTextCharFormat::DashUnderline:
    case QTextCharFormat::DashDotLine:
    case QTextCharFormat::DashDotDotLine:
        p.underline = 3;
        break;
    case QTextCharFormat::WaveUnderline:
    case QTextCharFormat::SpellCheckUnderline:
        p.underline = 4;
        break;
    default:
        p.underline = 1;
        break;
    }
    if (format.fontUnderline() && p.underline == 0) {
        p.underline = 1;
    }
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript) {
        p.vertical = 1;
    } else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript) {
        p.vertical = 2;
    }
    if (format.fontCapitalization() == QFont::AllUppercase) {
        p.caps = 1;
    } else if (format.fontCapitalization() == QFont::SmallCaps) {
        p.caps = 2;
    }
    if (format.hasProperty(QTextFormat::ForegroundBrush) &&
        format.foreground().style() != Qt::NoBrush) {
        p.foreground = colourNumber(format.foreground().color());
    }
    if (format.hasProperty(QTextFormat::BackgroundBrush) &&
        format.background().style() != Qt::NoBrush) {
        p.background = colourNumber(format.background().color());
    }
    if (format.hasProperty(QTextFormat::FontLetterSpacing) &&
        format.fontLetterSpacingType() == QFont::AbsoluteSpacing) {
        p.spacing = std::clamp(twips(format.fontLetterSpacing()), -1440, 1440);
    }
    return p;
}

void RtfWriter::writeCharDiff(const CharProps& t)
{
    CharProps& c = m_current;
    if (t.font != c.font) {
        m_rtf.word("f", t.font);
    }
    if (t.halfPoints != c.halfPoints) {
        m_rtf.word("fs", t.halfPoints);
    }
    if (t.bold != c.bold) {
        t.bold ? m_rtf.word("b") : m_rtf.word("b", 0);
    }
    if (t.italic != c.italic) {
        t.italic ? m_rtf.word("i") : m_rtf.word("i", 0);
    }
    if (t.strike != c.strike) {
        t.strike ? m_rtf.word("strike") : m_rtf.word("strike", 0);
    }
    if (t.underline != c.underline) {
        static const char* const underline[] = {"ulnone", "ul", "uld", "uldash", "ulwave"};
        m_rtf.word(underline[std::clamp(t.underline, 0, 4)]);
    }
    if (t.vertical != c.vertical) {
        m_rtf.word(t.vertical == 1 ? "super" : t.vertical == 2 ? "sub" : "nosupersub");
    }
    if (t.caps != c.caps) {
        if (c.caps == 1) {
            m_rtf.word("caps", 0);
        } else if (c.caps == 2) {
            m_rtf.word("scaps", 0);
        }
        if (t.caps == 1) {
            m_rtf.word("caps");
        } else if (t.caps == 2) {
            m_rtf.word("scaps");
        }
    }
    if (t.foreground != c.foreground) {
        m_rtf.word("cf", t.foreground);
    }
    if (t.background != c.background) {
        m_rtf.word("chcbpat", t.background);
    }
    if (t.spacing != c.spacing) {
        m_rtf.word("expndtw", t.spacing);
    }
    c = t;
}

void RtfWriter::openLink(const QString& href)
{
    m_beforeLink = m_current;
    m_link = href;
    m_rtf.raw("{\\field{\\*\\fldinst{HYPERLINK ");
    auto quoted = [this](QString value) {
        value.replace(QLatin1Char('"'), QLatin1String("%22"));
        m_rtf.raw("\"");
        m_rtf.text(value);
        m_rtf.raw("\"");
    };
    if (href.startsWith(QLatin1Char('#'))) {
        m_rtf.raw("\\\\l ");
        quoted(href.mid(1));
    } else {
        quoted(href);
    }
    m_rtf.raw("}}{\\fldrslt{");
}

void RtfWriter::closeLink()
{
    if (m_link.isEmpty()) {
        return;
    }
    m_rtf.raw("}}}");
    m_link.clear();
    m_current = m_beforeLink;
}

void RtfWriter::updateBookmarks(const QStringList& names)
{
    for (qsizetype i = m_openBookmarks.size() - 1; i >= 0; --i) {
        if (!names.contains(m_openBookmarks[i])) {
            m_rtf.raw("{\\*\\bkmkend ");
            m_rtf.text(m_openBookmarks[i]);
            m_rtf.raw("}");
            m_openBookmarks.removeAt(i);
        }
    }
    for (const QString& name : names) {
        if (!m_openBookmarks.contains(name) && !name.isEmpty()) {
            m_rtf.raw("{\\*\\bkmkstart ");
            m_rtf.text(name);
            m_rtf.raw("}");
            m_openBookmarks << name;
        }
    }
}

void RtfWriter::closeBookmarks()
{
    updateBookmarks({});
}

} // namespace kestrum::text
