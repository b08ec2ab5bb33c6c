#pragma once

class QTextCharFormat;
class QTextDocument;

namespace kestrum::common {
class RtfEmitter;
}

namespace kestrum::text {

// A picture of the document as an RTF {\pict} group: the bytes it was read with when it came
// from RTF, PNG otherwise, with its display size as the goal size.
class RtfPictureWriter
{
public:
    // Writes nothing for an image the document does not hold.
    static void write(common::RtfEmitter& rtf, const QTextDocument& document,
                      const QTextCharFormat& format);
};

} // namespace kestrum::text
