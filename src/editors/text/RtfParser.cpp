#include "RtfParser.h"

#include "editors/text/RtfCodePage.h"
#include "editors/text/RtfPageWords.h"
#include "editors/text/TextProperties.h"

#include <QTextDocument>

#include <algorithm>

namespace kestrum::text {

namespace {

// Code pages of the document character sets (\ansi, \mac, \pc, \pca).
constexpr int kCodePageAnsi = 1252;
constexpr int kCodePageMac = 10000;
constexpr int kCodePagePc = 437;
constexpr int kCodePagePca = 850;
// \ucN: how many fallback characters follow a \uN (at most this many are skipped).
constexpr int kMaxUnicodeFallback = 16;

} // namespace

RtfParser::RtfParser(QByteArrayView input, QTextDocument* document, ColourTable* colours,
                     const RtfReadOptions& options)
    : m_tokens(input), m_document(document), m_colours(colours), m_options(options),
      m_builder(document), m_ansiCodePage(kCodePageAnsi), m_picture(options.maxPictureBytes),
      m_formatReader(m_fileColours), m_formats(m_fontTable, m_fileColours, m_styleSheet, m_lists)
{}

RtfReadResult RtfParser::run()
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
    const RtfGroupState last = m_stack.empty() ? m_lastClosed : m_stack.back();
    while (!m_stack.empty()) {
        groupEnd();
    }
    flush();
    m_builder.finish(m_formats.paragraph(last.para), m_formats.charFormat(last.chr));
    m_builder.appendNotes(m_footnotes.notes());
    m_result.pageLayout.normalise();
    m_result.ok = true;
    return std::move(m_result);
}

// ---- groups and destinations -------------------------------------------------------------------

void RtfParser::groupStart()
{
    m_skip = 0;
    m_leadByte = -1;
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

void RtfParser::groupEnd()
{
    m_skip = 0;
    m_leadByte = -1;
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
    const RtfDestination dest = top().dest;
    // Entries of the font table and style sheet end with their group even without ';'.
    if (!m_dests.empty() && m_dests.back().depth < closing) {
        if (m_dests.back().kind == RtfDestination::FontTable && dest == RtfDestination::FontTable) {
            commitFont();
        } else if (m_dests.back().kind == RtfDestination::StyleSheet &&
                   dest == RtfDestination::StyleSheet) {
            commitStyle();
        }
    }
    if (dest == RtfDestination::Normal && !m_pending.isEmpty() && m_stack.size() == 1) {
        flush();
    }
    m_lastClosed = m_stack.back();
    m_stack.pop_back();
    while (!m_dests.empty() && m_dests.back().depth >= closing) {
        DestinationText context = std::move(m_dests.back());
        m_dests.pop_back();
        finishDestination(context);
    }
    m_fields.close(closing);
}

void RtfParser::setDestination(RtfDestination dest)
{
    if (m_stack.empty()) {
        return;
    }
    top().dest = dest;
    if (dest == RtfDestination::Normal || dest == RtfDestination::Skip) {
        return;
    }
    m_dests.push_back({dest, depth(), {}});
}

void RtfParser::finishDestination(const DestinationText& context)
{
    switch (context.kind) {
    case RtfDestination::FieldInstruction:
        m_fields.addInstruction(context.text);
        break;
    case RtfDestination::BookmarkStart:
        flush();
        m_builder.bookmarkStart(context.text.trimmed());
        break;
    case RtfDestination::BookmarkEnd:
        flush();
        m_builder.bookmarkEnd(context.text.trimmed());
        break;
    case RtfDestination::Picture:
        insertPicture();
        break;
    case RtfDestination::LevelText:
        m_lists.setLevelText(context.text);
        break;
    case RtfDestination::PnDefinition:
        if (!m_stack.empty()) {
            const int legacy = m_lists.addLegacy();
            if (legacy >= 0) {
                top().para.legacyList = legacy;
            }
        }
        break;
    case RtfDestination::PnTextBefore:
        m_lists.setLegacyBefore(context.text);
        break;
    case RtfDestination::PnTextAfter:
        m_lists.setLegacyAfter(context.text);
        break;
    case RtfDestination::Footnote:
        if (const int number = m_footnotes.addNote(context.text); number > 0) {
            insertFootnoteReference(number);
        }
        break;
    case RtfDestination::NestTableProps:
    case RtfDestination::ListOverrideTable:
    case RtfDestination::ListTable:
    case RtfDestination::FontTable:
    case RtfDestination::ColourTable:
    case RtfDestination::StyleSheet:
    case RtfDestination::Normal:
    case RtfDestination::Skip:
        break;
    }
}

void RtfParser::commitFont()
{
    if (!m_dests.empty()) {
        m_fontTable.commit(m_dests.back().text);
        m_dests.back().text.clear();
    }
}

void RtfParser::commitStyle()
{
    if (!m_dests.empty()) {
        m_styleSheet.commit(m_dests.back().text);
        m_dests.back().text.clear();
    }
}

// ---- text --------------------------------------------------------------------------------------

const RtfCodePage& RtfParser::codePage() const
{
    if (!m_stack.empty()) {
        const RtfFont* font = m_fontTable.font(m_stack.back().chr.font);
        if (font && font->codePage != 0) {
            return RtfCodePage::get(font->codePage);
        }
    }
    return RtfCodePage::get(m_ansiCodePage);
}

void RtfParser::text(QByteArrayView bytes)
{
    if (m_stack.empty()) {
        return;
    }
    const RtfDestination dest = top().dest;
    if (dest == RtfDestination::Skip) {
        return;
    }
    if (dest == RtfDestination::Picture) {
        m_picture.addHex(bytes);
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
    const RtfCodePage& page = codePage();
    if (page.isMultiByte()) {
        for (const char byte : bytes) {
            multiByte(quint8(byte), page); // lead and trail bytes may be written as they are
        }
        return;
    }
    if (dest == RtfDestination::Normal) {
        if (!m_pending.isEmpty() &&
            (!(m_pendingState == top().chr) || m_pendingDepth != top().para.tableDepth)) {
            flush();
        }
        if (m_pending.isEmpty()) {
            m_pendingState = top().chr;
            m_pendingDepth = top().para.tableDepth;
        }
        codePage().append(bytes, m_pending);
        return;
    }
    QString decoded;
    codePage().append(bytes, decoded);
    destinationText(decoded);
}

void RtfParser::hexByte(quint8 value)
{
    if (m_stack.empty()) {
        return;
    }
    if (top().dest == RtfDestination::Picture) {
        // An escaped byte inside picture data is a byte of it.
        const char c = char(value);
        m_picture.addBytes(QByteArrayView(&c, 1));
        return;
    }
    multiByte(value, codePage());
}

void RtfParser::multiByte(quint8 value, const RtfCodePage& page)
{
    if (m_leadByte >= 0) {
        const quint8 lead = quint8(m_leadByte);
        m_leadByte = -1;
        for (const QChar c : page.decodePair(lead, value)) {
            character(c);
        }
    } else if (page.isLeadByte(value)) {
        m_leadByte = value;
    } else {
        character(page.decode(value));
    }
}

void RtfParser::character(QChar c)
{
    if (m_stack.empty()) {
        return;
    }
    const RtfDestination dest = top().dest;
    if (dest == RtfDestination::Skip || dest == RtfDestination::Picture) {
        return;
    }
    if (dest == RtfDestination::Normal) {
        if (!m_pending.isEmpty() &&
            (!(m_pendingState == top().chr) || m_pendingDepth != top().para.tableDepth)) {
            flush();
        }
        if (m_pending.isEmpty()) {
            m_pendingState = top().chr;
            m_pendingDepth = top().para.tableDepth;
        }
        m_pending.append(c);
        return;
    }
    destinationText(QStringView(&c, 1));
}

void RtfParser::destinationText(QStringView text)
{
    if (m_dests.empty()) {
        return;
    }
    DestinationText& context = m_dests.back();
    switch (context.kind) {
    case RtfDestination::FontTable:
    case RtfDestination::StyleSheet:
        for (QChar c : text) {
            if (c == QLatin1Char(';')) {
                context.kind == RtfDestination::FontTable ? commitFont() : commitStyle();
            } else if (context.text.size() < rtf::kMaxDestinationText) {
                context.text.append(c);
            }
        }
        return;
    case RtfDestination::ColourTable:
        for (QChar c : text) {
            if (c == QLatin1Char(';')) {
                m_fileColours.commit(m_colours);
            }
        }
        return;
    default:
        if (context.text.size() + text.size() <= rtf::kMaxDestinationText) {
            context.text.append(text);
        }
        return;
    }
}

void RtfParser::flush()
{
    if (m_pending.isEmpty()) {
        return;
    }
    const QTextCharFormat format = m_formats.charFormat(m_pendingState);
    if (m_pendingState.hidden) {
        m_builder.insertHidden(m_pending, format, m_pendingDepth);
    } else {
        m_builder.insertText(m_pending, format, m_pendingDepth);
    }
    m_paragraphHasContent = true;
    m_pending.clear();
}

void RtfParser::endParagraph()
{
    flush();
    RtfParagraph paragraph = m_formats.paragraph(top().para);
    paragraph.listMarker = m_paragraphHasMarker;
    m_builder.endParagraph(paragraph, m_formats.charFormat(top().chr), top().para.tableDepth);
    m_paragraphHasContent = false;
    m_paragraphHasMarker = false;
}

// \cell and \row end a cell and a row of the outermost table; \nestcell and \nestrow those of
// the table the paragraph's \itapN puts it in (at least a table inside a cell).
void RtfParser::tableWord(const RtfWord& word)
{
    flush();
    const int nestedDepth = std::max(2, top().para.tableDepth);
    if (word.keyword == RtfKeyword::Row) {
        m_builder.endRow(m_formatReader.row(), 1);
        return;
    }
    if (word.keyword == RtfKeyword::NestRow) {
        m_builder.endRow(m_formatReader.nestedRow(), nestedDepth);
        return;
    }
    RtfParagraph paragraph = m_formats.paragraph(top().para);
    paragraph.listMarker = m_paragraphHasMarker;
    m_builder.endCell(paragraph, m_formats.charFormat(top().chr),
                      word.keyword == RtfKeyword::Cell ? 1 : nestedDepth);
    m_paragraphHasContent = false;
    m_paragraphHasMarker = false;
}

void RtfParser::insertPicture()
{
    flush();
    const int depth = m_stack.empty() ? 0 : top().para.tableDepth;
    m_builder.insertImage(m_picture.finish(m_document, &m_result.warnings), depth);
}

void RtfParser::insertFootnoteReference(int number)
{
    if (m_stack.empty()) {
        return;
    }
    flush();
    RtfCharState mark = top().chr;
    mark.vertical = RtfVertical::Superscript;
    mark.hidden = false;
    QTextCharFormat format = m_formats.charFormat(mark);
    format.setProperty(TextProperty::FootnoteReference, number);
    m_builder.insertText(QString::number(number), format, top().para.tableDepth);
    m_paragraphHasContent = true;
}

// ---- control words -----------------------------------------------------------------------------

void RtfParser::controlSymbol(char symbol)
{
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        character(QLatin1Char(symbol));
        break;
    case '~':
        character(QChar(0x00A0)); // no-break space
        break;
    case '-':
        character(QChar(0x00AD)); // soft hyphen
        break;
    case '_':
        character(QChar(0x2011)); // no-break hyphen
        break;
    case '\t':
        character(QLatin1Char('\t'));
        break;
    default:
        break; // \* out of place, \:, \|, broken escapes
    }
}

void RtfParser::controlWord(const RtfToken& token)
{
    if (m_stack.empty()) {
        return;
    }
    m_leadByte = -1; // a lead byte's trail byte follows it at once
    const RtfKeywordEntry entry = RtfKeywords::find(token.word);
    const RtfWord word{entry.keyword, token.parameter, token.hasParameter};
    if (m_starred && !RtfKeywords::readsStarred(word.keyword)) {
        setDestination(RtfDestination::Skip);
        return;
    }
    RtfGroupState& group = top();
    if (group.dest == RtfDestination::Skip) {
        return;
    }
    if (group.dest == RtfDestination::Picture) {
        pictureWord(word);
        return;
    }
    switch (entry.group) {
    case RtfWordGroup::Document:
        documentWord(word);
        break;
    case RtfWordGroup::Destination:
        destinationWord(word);
        break;
    case RtfWordGroup::Character:
        specialCharacterWord(word);
        break;
    case RtfWordGroup::CharacterFormat:
        if (word.keyword == RtfKeyword::F && group.dest == RtfDestination::FontTable) {
            m_fontTable.startEntry(word.parameter);
        } else {
            m_formatReader.characterWord(word, group.chr);
        }
        break;
    case RtfWordGroup::ParagraphFormat:
        if (word.keyword == RtfKeyword::S && group.dest == RtfDestination::StyleSheet) {
            m_styleSheet.startEntry(word.parameter);
        } else if (word.keyword == RtfKeyword::Ls &&
                   group.dest == RtfDestination::ListOverrideTable) {
            m_lists.addOverride(word.parameter);
        } else {
            m_formatReader.paragraphWord(word, group.para);
        }
        break;
    case RtfWordGroup::Border:
        m_formatReader.borderWord(word, group.para);
        break;
    case RtfWordGroup::Table:
        m_formatReader.tableWord(word, group.dest == RtfDestination::NestTableProps);
        break;
    case RtfWordGroup::FontColour:
        fontColourWord(word);
        break;
    case RtfWordGroup::List:
        m_lists.word(word, group.dest);
        break;
    case RtfWordGroup::Picture: // a picture's words outside a picture
    case RtfWordGroup::None:
        break;
    }
}

void RtfParser::documentWord(const RtfWord& word)
{
    const int p = word.parameter;
    switch (word.keyword) {
    case RtfKeyword::Mac:
        m_ansiCodePage = kCodePageMac;
        break;
    case RtfKeyword::Pc:
        m_ansiCodePage = kCodePagePc;
        break;
    case RtfKeyword::Pca:
        m_ansiCodePage = kCodePagePca;
        break;
    case RtfKeyword::AnsiCpg:
        if (word.hasParameter && p > 0) {
            m_ansiCodePage = p;
        }
        break;
    case RtfKeyword::Deff:
        m_fontTable.setDefaultFont(p);
        break;
    default:
        if (int* field = RtfPageWords::field(word.keyword, m_result.pageLayout)) {
            *field = p;
            m_result.hasPageLayout = true;
        }
        break; // \rtf, \ansi
    }
}

void RtfParser::destinationWord(const RtfWord& word)
{
    const RtfDestination dest = top().dest;
    switch (word.keyword) {
    case RtfKeyword::FontTbl:
        setDestination(RtfDestination::FontTable);
        break;
    case RtfKeyword::ColorTbl:
        setDestination(RtfDestination::ColourTable);
        break;
    case RtfKeyword::StyleSheet:
        setDestination(RtfDestination::StyleSheet);
        break;
    case RtfKeyword::PnText:
    case RtfKeyword::ListText:
        m_paragraphHasMarker = true;
        setDestination(RtfDestination::Skip);
        break;
    case RtfKeyword::NestTableProps:
        setDestination(RtfDestination::NestTableProps);
        break;
    case RtfKeyword::Info:
    case RtfKeyword::SkipDestination:
    case RtfKeyword::NonShpPict:
    case RtfKeyword::LevelNumbers:
    case RtfKeyword::ListName:
        setDestination(RtfDestination::Skip);
        break;
    case RtfKeyword::Footnote:
        flush();
        setDestination(dest == RtfDestination::Normal ? RtfDestination::Footnote
                                                      : RtfDestination::Skip);
        break;
    case RtfKeyword::Pict:
        if (dest == RtfDestination::Footnote) {
            setDestination(RtfDestination::Skip); // notes keep their text only
            break;
        }
        flush();
        m_picture.start();
        setDestination(RtfDestination::Picture);
        break;
    case RtfKeyword::Field:
        flush();
        m_fields.open(depth());
        break;
    case RtfKeyword::FldInst:
        setDestination(RtfDestination::FieldInstruction);
        break;
    case RtfKeyword::FldRslt:
        if (dest == RtfDestination::Footnote) {
            break; // a field's result inside a note is the note's text
        }
        setDestination(RtfDestination::Normal);
        if (const std::optional<QString> target = m_fields.hyperlink()) {
            top().chr.href = *target;
        }
        break;
    case RtfKeyword::BkmkStart:
        setDestination(RtfDestination::BookmarkStart);
        break;
    case RtfKeyword::BkmkEnd:
        setDestination(RtfDestination::BookmarkEnd);
        break;
    case RtfKeyword::ListTable:
        setDestination(RtfDestination::ListTable);
        break;
    case RtfKeyword::List:
        if (dest == RtfDestination::ListTable) {
            m_lists.startList();
        }
        break;
    case RtfKeyword::ListLevel:
        if (dest == RtfDestination::ListTable) {
            m_lists.startLevel();
        }
        break;
    case RtfKeyword::LevelText:
        setDestination(RtfDestination::LevelText);
        break;
    case RtfKeyword::ListOverrideTable:
        setDestination(RtfDestination::ListOverrideTable);
        break;
    case RtfKeyword::ListOverride:
        m_lists.startOverride();
        break;
    case RtfKeyword::Pn:
        m_lists.startLegacy();
        setDestination(RtfDestination::PnDefinition);
        break;
    case RtfKeyword::PnTxtA:
        setDestination(RtfDestination::PnTextAfter);
        break;
    case RtfKeyword::PnTxtB:
        setDestination(RtfDestination::PnTextBefore);
        break;
    default:
        break; // shapes and objects: their pictures and results are read as they come
    }
}

void RtfParser::specialCharacterWord(const RtfWord& word)
{
    RtfGroupState& group = top();
    if (group.dest == RtfDestination::Footnote) {
        const RtfFootnotes::NoteWord kind = RtfFootnotes::noteWord(word.keyword);
        if (kind == RtfFootnotes::NoteWord::Break) {
            destinationText(u"\n");
        }
        if (kind != RtfFootnotes::NoteWord::Text) {
            return;
        }
    }
    switch (word.keyword) {
    case RtfKeyword::Chftn:
        if (group.dest == RtfDestination::Normal) {
            if (const int number = m_footnotes.addReference(); number > 0) {
                insertFootnoteReference(number);
            }
        }
        break;
    case RtfKeyword::Par:
    case RtfKeyword::Sect:
        endParagraph();
        break;
    case RtfKeyword::Page:
        flush();
        if (m_paragraphHasContent) {
            endParagraph();
        }
        m_builder.pageBreak();
        break;
    case RtfKeyword::Cell:
    case RtfKeyword::NestCell:
    case RtfKeyword::Row:
    case RtfKeyword::NestRow:
        tableWord(word);
        break;
    case RtfKeyword::U:
        if (word.hasParameter) {
            const int p = word.parameter;
            character(QChar(char16_t(p < 0 ? p + 65536 : p)));
            m_skip = group.uc;
        }
        break;
    case RtfKeyword::Uc:
        group.uc = qBound(0, word.parameter, kMaxUnicodeFallback);
        break;
    case RtfKeyword::Bin:
        if (word.hasParameter && word.parameter > 0) {
            m_tokens.takeBinary(word.parameter); // binary data outside a picture is not text
        }
        break;
    default:
        if (const QChar c = RtfKeywords::symbol(word.keyword); !c.isNull()) {
            character(c);
        }
        break;
    }
}

void RtfParser::fontColourWord(const RtfWord& word)
{
    const bool inFontTable = top().dest == RtfDestination::FontTable;
    switch (word.keyword) {
    case RtfKeyword::FCharset:
        if (inFontTable) {
            m_fontTable.setCharset(word.parameter);
        }
        break;
    case RtfKeyword::Cpg:
        if (inFontTable) {
            m_fontTable.setCodePage(word.parameter);
        }
        break;
    case RtfKeyword::Red:
        m_fileColours.setRed(word.parameter);
        break;
    case RtfKeyword::Green:
        m_fileColours.setGreen(word.parameter);
        break;
    case RtfKeyword::Blue:
        m_fileColours.setBlue(word.parameter);
        break;
    default:
        break;
    }
}

void RtfParser::pictureWord(const RtfWord& word)
{
    switch (word.keyword) {
    case RtfKeyword::Bin:
        if (word.hasParameter && word.parameter > 0) {
            m_picture.addBytes(m_tokens.takeBinary(word.parameter));
        }
        break;
    case RtfKeyword::SkipDestination:
        setDestination(RtfDestination::Skip);
        break;
    default:
        m_picture.word(word);
        break;
    }
}

} // namespace kestrum::text
