#pragma once

#include "editors/text/RtfDocumentBuilder.h"
#include "editors/text/RtfFieldStack.h"
#include "editors/text/RtfFileColours.h"
#include "editors/text/RtfFontTable.h"
#include "editors/text/RtfFootnotes.h"
#include "editors/text/RtfFormatMapper.h"
#include "editors/text/RtfFormatReader.h"
#include "editors/text/RtfListTable.h"
#include "editors/text/RtfPictureReader.h"
#include "editors/text/RtfReader.h"
#include "editors/text/RtfReaderState.h"
#include "editors/text/RtfStyleSheet.h"
#include "editors/text/RtfTokenizer.h"

#include <QString>

#include <vector>

class QTextDocument;

namespace kestrum::text {

class ColourTable;
class RtfCodePage;

// One reading of an RTF stream: the group stack, the destinations, and the text in between.
// Each control word goes, by the group the keyword table gives it, to one handler; the
// destinations that hold tables (fonts, colours, styles, lists), pictures and fields have
// their own classes.
class RtfParser
{
public:
    RtfParser(QByteArrayView input, QTextDocument* document, ColourTable* colours,
              const RtfReadOptions& options);

    RtfReadResult run();

private:
    struct DestinationText
    {
        RtfDestination kind;
        std::size_t depth;
        QString text;
    };

    RtfGroupState& top() { return m_stack.back(); }
    std::size_t depth() const { return m_stack.size(); }

    void groupStart();
    void groupEnd();
    void setDestination(RtfDestination dest);
    void finishDestination(const DestinationText& context);
    void text(QByteArrayView bytes);
    void hexByte(quint8 value);
    void character(QChar c);
    void multiByte(quint8 value, const RtfCodePage& page);
    void destinationText(QStringView text);
    void commitFont();
    void commitStyle();

    void controlSymbol(char symbol);
    void controlWord(const RtfToken& token);
    void documentWord(const RtfWord& word);
    void destinationWord(const RtfWord& word);
    void specialCharacterWord(const RtfWord& word);
    void fontColourWord(const RtfWord& word);
    void pictureWord(const RtfWord& word);

    const RtfCodePage& codePage() const;
    void flush();
    void endParagraph();
    void tableWord(const RtfWord& word);
    void insertPicture();
    void insertFootnoteReference(int number);

    RtfTokenizer m_tokens;
    QTextDocument* m_document;
    ColourTable* m_colours;
    RtfReadOptions m_options;
    RtfDocumentBuilder m_builder;
    RtfReadResult m_result;

    std::vector<RtfGroupState> m_stack;
    RtfGroupState m_lastClosed;
    int m_overflow = 0;
    std::vector<DestinationText> m_dests;
    bool m_starred = false;
    bool m_groupJustOpened = false;
    int m_skip = 0;
    int m_ansiCodePage;
    int m_leadByte = -1; // the first byte of a two-byte character, waiting for its second

    RtfFontTable m_fontTable;
    RtfFileColours m_fileColours;
    RtfStyleSheet m_styleSheet;
    RtfListTable m_lists;
    RtfFieldStack m_fields;
    RtfFootnotes m_footnotes;
    RtfPictureReader m_picture;
    RtfFormatReader m_formatReader;
    RtfFormatMapper m_formats;

    QString m_pending;
    RtfCharState m_pendingState;
    int m_pendingDepth = 0; // the table depth of the pending text
    bool m_paragraphHasContent = false;
    bool m_paragraphHasMarker = false; // {\listtext ..} or {\pntext ..} since the last \par
};

} // namespace kestrum::text
