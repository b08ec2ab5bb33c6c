#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace kestrum::common {

// Writes RTF bytes: control words, groups and text, with one rule for text. Printable ASCII
// is written as it is (\, { and } escaped); a tab is \tab; a line break (LF, CR, CR LF, the
// line and paragraph separators) is \line; no-break space, soft hyphen and no-break hyphen are
// \~, \- and \_; other characters of Windows-1252 are \'hh (documents declare \ansicpg1252);
// every other UTF-16 unit, each half of a surrogate pair included, is \uN with '?' as the one
// fallback character (\uc1). Other control characters (DEL included) and the object
// replacement character have no text of their own and are left out. The output is 7-bit.
class RtfEmitter
{
public:
    void clear();
    void reserve(qsizetype size) { m_out.reserve(size); }
    qsizetype size() const { return m_out.size(); }
    const QByteArray& bytes() const { return m_out; }

    // \word and \wordN; text that follows is set off by a space when it needs one.
    void word(const char* controlWord)
    {
        m_out.append('\\');
        m_out.append(controlWord);
        m_delimit = true;
    }
    void word(const char* controlWord, int parameter)
    {
        word(controlWord);
        m_out.append(QByteArray::number(parameter));
    }
    // Ready-made control words ("\\pard\\intbl"): written as they are, delimited like a word.
    void words(QByteArrayView controlWords)
    {
        m_out.append(controlWords);
        m_delimit = !controlWords.isEmpty();
    }
    // Bytes as they are (braces, ';', new lines): nothing needs delimiting after them.
    void raw(QByteArrayView bytes)
    {
        m_out.append(bytes);
        m_delimit = false;
    }
    // \'hh (a byte of a level text, for instance).
    void hexByte(int value);
    // Binary data as hexadecimal digits, `perLine` bytes to a line.
    void hexData(QByteArrayView data, int perLine = 64);
    // Text, escaped by the rule above.
    void text(QStringView text);

    // Text escaped by the rule above, on its own.
    static QByteArray escape(QStringView text);

private:
    QByteArray m_out;
    bool m_delimit = false;
};

} // namespace kestrum::common
