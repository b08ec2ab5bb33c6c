#pragma once

#include "editors/text/PageLayout.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

class QTextDocument;

namespace kestrum::text {

class ColourTable;

struct RtfReadOptions
{
    // Groups nested deeper than this are skipped with all they hold.
    int maxGroupDepth = 200;
    // A picture larger than this (decoded bytes) is shown as a placeholder without its data.
    qint64 maxPictureBytes = qint64(64) * 1024 * 1024;
};

struct RtfReadResult
{
    bool ok = false;
    QString error;              // why nothing was read (not RTF at all)
    bool hasPageLayout = false; // the file gave a paper size or margins
    PageLayout pageLayout;
    QStringList warnings; // what was read only in part
};

// Reads RTF into a QTextDocument: fonts, colours, character and paragraph formats, tab stops,
// borders, lists (both list tables and the older \pn form), tables, PNG and JPEG pictures (other
// pictures as placeholders), hyperlinks, bookmarks, hidden text, page size and margins, Unicode
// and single-byte code pages. Unknown destinations are skipped; truncated or hostile input reads
// as far as it makes sense and never runs past its bounds.
class RtfReader
{
public:
    explicit RtfReader(RtfReadOptions options = {});

    // Replaces the content of `document`; colours used are entered into `colours`.
    RtfReadResult read(QByteArrayView rtf, QTextDocument* document, ColourTable* colours) const;
    // Whether the bytes start (after blanks and a byte-order mark) with "{\rtf".
    static bool looksLikeRtf(QByteArrayView data);

private:
    RtfReadOptions m_options;
};

} // namespace kestrum::text
