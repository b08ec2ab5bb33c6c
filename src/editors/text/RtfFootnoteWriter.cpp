#include "RtfFootnoteWriter.h"

#include "common/RtfEmitter.h"
#include "editors/text/TextProperties.h"

#include <QTextBlock>
#include <QTextDocument>

namespace kestrum::text {

RtfFootnoteWriter::RtfFootnoteWriter(const QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!isNote(block)) {
            continue;
        }
        const int number = block.blockFormat().intProperty(TextProperty::FootnoteNumber);
        QString text = block.text();
        // The paragraph starts with the note's number and a space.
        const QString prefix = QString::number(number);
        if (text.startsWith(prefix)) {
            text.remove(0, prefix.size());
        }
        m_notes.insert(number, text.trimmed());
    }
}

bool RtfFootnoteWriter::isNote(const QTextBlock& block)
{
    return block.blockFormat().hasProperty(TextProperty::FootnoteNumber);
}

bool RtfFootnoteWriter::isReference(const QTextCharFormat& format)
{
    return format.hasProperty(TextProperty::FootnoteReference);
}

void RtfFootnoteWriter::writeReference(common::RtfEmitter& rtf, const QTextCharFormat& format) const
{
    const int number = format.intProperty(TextProperty::FootnoteReference);
    rtf.raw("{");
    rtf.words("\\super\\chftn");
    rtf.raw("}{");
    rtf.words("\\footnote\\pard\\plain");
    rtf.raw("{");
    rtf.words("\\super\\chftn");
    rtf.raw("}");
    rtf.text(QString(QLatin1Char(' ')) + m_notes.value(number));
    rtf.raw("}");
}

} // namespace kestrum::text
