#pragma once

#include <QHash>
#include <QString>

class QTextBlock;
class QTextCharFormat;
class QTextDocument;

namespace kestrum::common {
class RtfEmitter;
}

namespace kestrum::text {

// The footnotes of a document being written. The reader keeps a note as a reference mark in
// the text (a superscript number marked TextProperty::FootnoteReference) and a numbered
// paragraph at the end (marked TextProperty::FootnoteNumber). This writes each reference as
// an RTF footnote holding the text of its paragraph; the paragraphs themselves are not written.
class RtfFootnoteWriter
{
public:
    explicit RtfFootnoteWriter(const QTextDocument& document);

    static bool isNote(const QTextBlock& block);
    static bool isReference(const QTextCharFormat& format);

    // The reference mark and its note: {\super\chftn}{\footnote ...}. The caller's character
    // state is unchanged after it.
    void writeReference(common::RtfEmitter& rtf, const QTextCharFormat& format) const;

private:
    QHash<int, QString> m_notes; // number -> note text
};

} // namespace kestrum::text
