#include "RtfPictureReader.h"

#include "editors/text/RtfTokenizer.h"
#include "editors/text/TextProperties.h"

#include <QBuffer>
#include <QImageReader>

namespace kestrum::text {

namespace {

// Picture extents (\picwN, \pichN) and goal sizes (\picwgoalN, twips) are clamped to these.
constexpr int kMaxExtent = 1 << 20;
constexpr int kMaxGoal = 1 << 22;
// Scales (\picscalexN, per cent) are clamped to 1..1000.
constexpr int kMaxScale = 1000;
// A displayed picture is never larger than this, in pixels.
constexpr double kMaxDisplay = 20000.0;
// Metafile extents are in hundredths of a millimetre.
constexpr double kPixelsPerHundredthMm = 96.0 / 2540.0;
// The image reader allocates at most this many megabytes for one picture.
constexpr int kAllocationLimitMb = 256;

// The size of a device-independent bitmap's header, and the file header a BMP file puts
// before it.
constexpr int kDibHeaderSize = 40;
constexpr int kBmpFileHeaderSize = 14;

quint32 littleEndian32(const QByteArray& bytes, int at)
{
    return quint8(bytes[at]) | quint8(bytes[at + 1]) << 8 | quint8(bytes[at + 2]) << 16 |
           quint32(quint8(bytes[at + 3])) << 24;
}

// A bitmap without its file header: give it one so the BMP reader takes it.
QByteArray withBmpFileHeader(QByteArray bytes)
{
    const quint32 headerSize = littleEndian32(bytes, 0);
    const quint16 bits = quint16(quint8(bytes[14]) | quint8(bytes[15]) << 8);
    quint32 colours = littleEndian32(bytes, 32);
    if (colours == 0 && bits <= 8) {
        colours = 1u << bits;
    }
    const quint32 offset =
        kBmpFileHeaderSize + qMin<quint32>(headerSize, 1024) + qMin<quint32>(colours, 256) * 4;
    const quint32 total = quint32(bytes.size()) + kBmpFileHeaderSize;
    QByteArray header("BM", 2);
    for (quint32 v : {total, 0u, offset}) {
        for (int i = 0; i < 4; ++i) {
            header.append(char((v >> (8 * i)) & 0xFF));
        }
    }
    bytes.prepend(header);
    return bytes;
}

} // namespace

void RtfPictureReader::word(const RtfWord& word)
{
    const int p = word.parameter;
    switch (word.keyword) {
    case RtfKeyword::PngBlip:
        m_picture.kind = PictureKind::Png;
        m_picture.header = "\\pngblip";
        break;
    case RtfKeyword::JpegBlip:
        m_picture.kind = PictureKind::Jpeg;
        m_picture.header = "\\jpegblip";
        break;
    case RtfKeyword::EmfBlip:
        m_picture.kind = PictureKind::Emf;
        m_picture.header = "\\emfblip";
        break;
    case RtfKeyword::WMetafile:
        m_picture.kind = PictureKind::Wmf;
        m_picture.header =
            "\\wmetafile" + QByteArray::number(word.hasParameter ? qBound(1, p, 8) : 8);
        break;
    case RtfKeyword::DiBitmap:
        m_picture.kind = PictureKind::Dib;
        break;
    case RtfKeyword::WBitmap:
        m_picture.kind = PictureKind::Bitmap;
        break;
    case RtfKeyword::MacPict:
        m_picture.kind = PictureKind::MacPict;
        m_picture.header = "\\macpict";
        break;
    case RtfKeyword::PmMetafile:
        m_picture.kind = PictureKind::Other;
        break;
    case RtfKeyword::PicW:
        m_picture.picw = qBound(0, p, kMaxExtent);
        break;
    case RtfKeyword::PicH:
        m_picture.pich = qBound(0, p, kMaxExtent);
        break;
    case RtfKeyword::PicWGoal:
        m_picture.goalWidth = qBound(0, p, kMaxGoal);
        break;
    case RtfKeyword::PicHGoal:
        m_picture.goalHeight = qBound(0, p, kMaxGoal);
        break;
    case RtfKeyword::PicScaleX:
        m_picture.scaleX = p;
        break;
    case RtfKeyword::PicScaleY:
        m_picture.scaleY = p;
        break;
    default:
        break;
    }
}

void RtfPictureReader::addHex(QByteArrayView text)
{
    if (m_picture.tooLarge) {
        return;
    }
    const qsizetype room = m_maxBytes - m_picture.data.size();
    if (text.size() / 2 > room + 1) {
        m_picture.tooLarge = true;
        m_picture.data.clear();
        return;
    }
    m_picture.data.reserve(m_picture.data.size() + text.size() / 2 + 1);
    for (char c : text) {
        const int v = hexDigitValue(c);
        if (v < 0) {
            continue; // blanks and stray characters between hex digits
        }
        if (m_picture.highNibble < 0) {
            m_picture.highNibble = v;
        } else {
            m_picture.data.append(char(m_picture.highNibble * 16 + v));
            m_picture.highNibble = -1;
        }
    }
    if (m_picture.data.size() > m_maxBytes) {
        m_picture.tooLarge = true;
        m_picture.data.clear();
    }
}

void RtfPictureReader::addBytes(QByteArrayView bytes)
{
    if (m_picture.tooLarge) {
        return;
    }
    if (m_picture.data.size() + bytes.size() > m_maxBytes) {
        m_picture.tooLarge = true;
        m_picture.data.clear();
        return;
    }
    m_picture.data.append(bytes);
}

QImage RtfPictureReader::decode(const Picture& picture)
{
    if (picture.kind != PictureKind::Png && picture.kind != PictureKind::Jpeg &&
        picture.kind != PictureKind::Dib && picture.kind != PictureKind::Bitmap) {
        return {};
    }
    QByteArray bytes = picture.data;
    if (picture.kind == PictureKind::Dib && bytes.size() >= kDibHeaderSize) {
        bytes = withBmpFileHeader(std::move(bytes));
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAllocationLimit(kAllocationLimitMb);
    return reader.read();
}

QTextImageFormat RtfPictureReader::finish(QTextDocument* document, QStringList* warnings)
{
    Picture picture = std::move(m_picture);
    m_picture = Picture();

    DocumentPictures::Picture info;
    info.kind = picture.kind;
    // Display size: the goal size in twips, scaled; else the picture's own size.
    const double sx = qBound(1, picture.scaleX, kMaxScale) / 100.0;
    const double sy = qBound(1, picture.scaleY, kMaxScale) / 100.0;
    double width = 0;
    double height = 0;
    if (picture.goalWidth > 0 && picture.goalHeight > 0) {
        width = twipsToPixels(qMin(picture.goalWidth, rtf::kMaxTwips * 4)) * sx;
        height = twipsToPixels(qMin(picture.goalHeight, rtf::kMaxTwips * 4)) * sy;
    }

    if (picture.tooLarge) {
        *warnings << QStringLiteral("A picture larger than %1 MB was left out.")
                         .arg(m_maxBytes / (1024 * 1024));
        info.kind = PictureKind::Other;
        info.displaySize = QSizeF(width, height);
        return DocumentPictures::addPlaceholder(document, info,
                                                QStringLiteral("Picture too large"));
    }

    const QImage image = decode(picture);
    if (width <= 0 || height <= 0) {
        if (!image.isNull()) {
            width = image.width() * sx;
            height = image.height() * sy;
        } else if (picture.picw > 0 && picture.pich > 0) {
            const bool metric =
                picture.kind == PictureKind::Emf || picture.kind == PictureKind::Wmf;
            width = (metric ? picture.picw * kPixelsPerHundredthMm : picture.picw) * sx;
            height = (metric ? picture.pich * kPixelsPerHundredthMm : picture.pich) * sy;
        }
    }
    info.displaySize = QSizeF(qMin(width, kMaxDisplay), qMin(height, kMaxDisplay));
    info.data = picture.data;
    if (!picture.header.isEmpty()) {
        info.header = QString::fromLatin1(picture.header);
        if (picture.picw > 0 && picture.pich > 0) {
            info.header += QStringLiteral("\\picw%1\\pich%2").arg(picture.picw).arg(picture.pich);
        }
    }

    if (!image.isNull()) {
        if (picture.kind == PictureKind::Dib || picture.kind == PictureKind::Bitmap) {
            // Written back as PNG: the original bitmap bytes are not kept.
            info.kind = PictureKind::Png;
            info.data.clear();
            info.header.clear();
        }
        return DocumentPictures::add(document, image, info);
    }
    if (picture.kind == PictureKind::Png || picture.kind == PictureKind::Jpeg) {
        *warnings << QStringLiteral("A damaged picture is shown as a placeholder.");
    }
    const QString label = picture.kind == PictureKind::None
                              ? QStringLiteral("Picture")
                              : DocumentPictures::kindName(picture.kind);
    return DocumentPictures::addPlaceholder(document, info, label);
}

} // namespace kestrum::text
