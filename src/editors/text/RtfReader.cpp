#include "RtfReader.h"

#include "editors/text/RtfParser.h"

#include <QTextCursor>
#include <QTextDocument>

namespace kestrum::text {

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
    RtfParser parser(rtf, document, colours, m_options);
    RtfReadResult result = parser.run();
    edit.endEditBlock();
    return result;
}

} // namespace kestrum::text
