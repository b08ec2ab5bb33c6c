#include "XlsWriter.h"

#include "common/ByteStream.h"
#include "editors/grid/CompoundFileWriter.h"
#include "editors/grid/ExportColours.h"
#include "editors/grid/GridDocument.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrum::grid {

namespace {

constexpr int kMaxRecordData = 8224;
constexpr quint16 kBof = 0x0809;
constexpr quint16 kEof = 0x000A;
constexpr quint16 kCodePage = 0x0042;
constexpr quint16 kWindow1 = 0x003D;
constexpr quint16 kDateMode = 0x0022;
constexpr quint16 kFont = 0x0031;
constexpr quint16 kFormat = 0x041E;
constexpr quint16 kXf = 0x00E0;
constexpr quint16 kStyle = 0x0293;
constexpr quint16 kPalette = 0x0092;
constexpr quint16 kBoundSheet = 0x0085;
constexpr quint16 kSst = 0x00FC;
constexpr quint16 kContinue = 0x003C;
constexpr quint16 kExtSst = 0x00FF;
constexpr quint16 kColInfo = 0x007D;
constexpr quint16 kDimensions = 0x0200;
constexpr quint16 kRow = 0x0208;
constexpr quint16 kLabelSst = 0x00FD;
constexpr quint16 kNumber = 0x0203;
constexpr quint16 kBlank = 0x0201;
constexpr quint16 kWindow2 = 0x023E;
constexpr quint16 kPane = 0x0041;
constexpr quint16 kAutoColour = 0x7FFF;
constexpr quint16 kDefaultCellXf = 15;
constexpr quint16 kFirstCustomFormat = 164;
constexpr int kRowBlock = 32;

// The workbook's default colour palette, indices 8 to 63.
constexpr std::array<QRgb, 56> kDefaultPalette{
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF,
    0x800000, 0x008000, 0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080,
    0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF, 0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF,
    0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000, 0x008080, 0x0000FF,
    0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696,
    0x003366, 0x339966, 0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333,
};

void appendRecord(QByteArray& stream, quint16 type, const QByteArray& body)
{
    char head[4];
    qToLittleEndian(type, head);
    qToLittleEndian(quint16(body.size()), head + 2);
    stream.append(head, 4);
    stream.append(body);
}

// ShortXLUnicodeString (8-bit count) or XLUnicodeString (16-bit count), uncompressed when any
// character is beyond Latin-1.
void appendXlString(common::ByteWriter& w, const QString& text, bool shortCount)
{
    if (shortCount) {
        w.u8(quint8(text.size()));
    } else {
        w.u16(quint16(text.size()));
    }
    const bool wide =
        std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; });
    w.u8(wide ? 1 : 0);
    for (const QChar c : text) {
        if (wide) {
            w.u16(c.unicode());
        } else {
            w.u8(quint8(c.unicode()));
        }
    }
}

// A cell text that is a plain number, as written by people and by the host: digits with an
// optional sign and decimal point, at most 15 significant digits, optionally a percent sign.
struct NumberText
{
    bool isNumber = false;
    double value = 0;
    int decimals = 0;
    bool percent = false;
    int integerDigits = 0;
};

NumberText classifyNumber(const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(-?)(0|[1-9][0-9]*)(?:\\.([0-9]+))?(%?)$"));
    NumberText n;
    if (text.size() > 24) {
        return n;
    }
    const QRegularExpressionMatch m = pattern.match(text);
    if (!m.hasMatch()) {
        return n;
    }
    const QString integer = m.captured(2);
    const QString fraction = m.captured(3);
    const int significant =
        int(integer == QLatin1String("0") ? 0 : integer.size()) + int(fraction.size());
    if (significant > 15 || fraction.size() > 10) {
        return n;
    }
    bool ok = false;
    double v = QString(m.captured(1) + integer +
                       (fraction.isEmpty() ? QString() : QLatin1Char('.') + fraction))
                   .toDouble(&ok);
    if (!ok || (v == 0 && !m.captured(1).isEmpty())) {
        return n; // "-0" would come back as "0"
    }
    n.percent = !m.captured(4).isEmpty();
    if (n.percent) {
        v /= 100.0;
    }
    n.isNumber = true;
    n.value = v;
    n.decimals = int(fraction.size());
    n.integerDigits = int(integer.size());
    return n;
}

struct FontKey
{
    QString name;
    int twips;
    quint8 style;
    quint16 colour;
    friend bool operator==(const FontKey&, const FontKey&) = default;
};
size_t qHash(const FontKey& k, size_t seed)
{
    return qHashMulti(seed, k.name, k.twips, k.style, k.colour);
}

struct XfKey
{
    quint16 font;
    quint16 format;
    quint8 alignment;
    bool wrap;
    quint16 fill; // palette index, 0 for none
    friend bool operator==(const XfKey&, const XfKey&) = default;
};
size_t qHash(const XfKey& k, size_t seed)
{
    return qHashMulti(seed, k.font, k.format, k.alignment, k.wrap, k.fill);
}

// Maps colours to palette indices: a colour of the default palette keeps its index, others
// take over entries no used colour needs; past 56 colours the nearest entry serves.
class PaletteBuilder
{
public:
    PaletteBuilder()
    {
        for (std::size_t i = 0; i < kDefaultPalette.size(); ++i) {
            m_entries[i] = kDefaultPalette[i];
        }
    }

    void want(const QColor& c) { m_wanted.insert(c.rgb() & 0xFFFFFF); }

    void assign()
    {
        std::array<bool, 56> taken{};
        for (const QRgb rgb : std::as_const(m_wanted)) {
            for (std::size_t i = 0; i < kDefaultPalette.size(); ++i) {
                if (kDefaultPalette[i] == rgb) {
                    taken[i] = true;
                    m_index.insert(rgb, quint16(8 + i));
                    break;
                }
            }
        }
        std::size_t next = 0;
        QList<QRgb> rest;
        for (const QRgb rgb : std::as_const(m_wanted)) {
            if (!m_index.contains(rgb)) {
                rest.append(rgb);
            }
        }
        std::sort(rest.begin(), rest.end());
        for (const QRgb rgb : rest) {
            while (next < taken.size() && taken[next]) {
                ++next;
            }
            if (next >= taken.size()) {
                break;
            }
            m_entries[next] = rgb;
            taken[next] = true;
            m_changed = true;
            m_index.insert(rgb, quint16(8 + next));
        }
    }

    quint16 index(const QColor& c) const
    {
        const QRgb rgb = c.rgb() & 0xFFFFFF;
        const auto found = m_index.constFind(rgb);
        if (found != m_index.constEnd()) {
            return found.value();
        }
        int best = 0;
        qint64 bestDistance = std::numeric_limits<qint64>::max();
        for (int i = 0; i < 56; ++i) {
            const qint64 dr = qRed(m_entries[std::size_t(i)]) - qRed(rgb);
            const qint64 dg = qGreen(m_entries[std::size_t(i)]) - qGreen(rgb);
            const qint64 db = qBlue(m_entries[std::size_t(i)]) - qBlue(rgb);
            const qint64 d = dr * dr + dg * dg + db * db;
            if (d < bestDistance) {
                bestDistance = d;
                best = i;
            }
        }
        return quint16(8 + best);
    }

    bool changed() const { return m_changed; }

    QByteArray record() const
    {
        common::ByteWriter w;
        w.u16(56);
        for (const QRgb rgb : m_entries) {
            w.u8(quint8(qRed(rgb)));
            w.u8(quint8(qGreen(rgb)));
            w.u8(quint8(qBlue(rgb)));
            w.u8(0);
        }
        return w.take();
    }

private:
    std::array<QRgb, 56> m_entries{};
    QSet<QRgb> m_wanted;
    QHash<QRgb, quint16> m_index;
    bool m_changed = false;
};

QByteArray xfRecord(quint16 font, quint16 format, quint16 flags, quint8 alignment, quint8 used,
                    quint16 fill)
{
    common::ByteWriter w;
    w.u16(font);
    w.u16(format);
    w.u16(flags);
    w.u8(alignment);
    w.u8(0); // rotation
    w.u8(0); // indent, shrink, reading order
    w.u8(used);
    w.u32(0);                             // no borders
    w.u32(fill ? (quint32(1) << 26) : 0); // solid pattern when filled
    w.u16(fill ? quint16(fill | (0x41 << 7)) : quint16(0x40 | (0x41 << 7)));
    return w.take();
}

QString sheetNameFrom(const QString& wanted)
{
    QString name = wanted;
    for (QChar& c : name) {
        if (QStringLiteral("[]:*?/\\").contains(c) || c.unicode() < 0x20) {
            c = QLatin1Char('_');
        }
    }
    name = name.left(31).trimmed();
    return name.isEmpty() ? QStringLiteral("Sheet1") : name;
}

// The shared string table, split over CONTINUE records where it outgrows one record, and the
// EXTSST index of it. `streamBase` is the offset in the workbook stream where SST begins.
void appendSharedStrings(QByteArray& stream, const QStringList& strings, quint32 references)
{
    const quint16 bucket = quint16(std::max<qsizetype>(8, (strings.size() + 127) / 128));
    common::ByteWriter index;
    index.u16(bucket);

    QByteArray body;
    quint16 type = kSst;
    auto flush = [&]() {
        appendRecord(stream, type, body);
        body.clear();
        type = kContinue;
    };
    {
        common::ByteWriter head;
        head.u32(references);
        head.u32(quint32(strings.size()));
        body = head.take();
    }
    for (qsizetype i = 0; i < strings.size(); ++i) {
        const QString& s = strings[i];
        const bool wide =
            std::any_of(s.begin(), s.end(), [](QChar c) { return c.unicode() > 0xFF; });
        const int charSize = wide ? 2 : 1;
        // The count and flags of a string never split; at least one character goes with them.
        if (body.size() + 3 + (s.isEmpty() ? 0 : charSize) > kMaxRecordData) {
            flush();
        }
        if (i % bucket == 0) {
            index.u32(quint32(stream.size() + 4 + body.size()));
            index.u16(quint16(4 + body.size()));
            index.u16(0);
        }
        common::ByteWriter w;
        w.u16(quint16(s.size()));
        w.u8(wide ? 1 : 0);
        body.append(w.data());
        qsizetype pos = 0;
        while (pos < s.size()) {
            const qsizetype room = (kMaxRecordData - body.size()) / charSize;
            if (room <= 0) {
                flush();
                body.append(char(wide ? 1 : 0)); // a continued string restates its flags
                continue;
            }
            const qsizetype n = std::min(room, s.size() - pos);
            for (qsizetype k = pos; k < pos + n; ++k) {
                const char16_t u = s[k].unicode();
                body.append(char(u & 0xFF));
                if (wide) {
                    body.append(char(u >> 8));
                }
            }
            pos += n;
        }
    }
    flush();
    appendRecord(stream, kExtSst, index.take());
}

} // namespace

Result<QByteArray> XlsWriter::workbookStream(const GridDocument& grid, const XlsOptions& options)
{
    if (grid.rowCount() > kMaxRows || grid.columnCount() > kMaxColumns) {
        return fail(
            QStringLiteral("the table has %1 rows and %2 columns; an .XLS sheet holds at most "
                           "%3 rows and %4 columns")
                .arg(grid.rowCount())
                .arg(grid.columnCount())
                .arg(kMaxRows)
                .arg(kMaxColumns));
    }
    const int rows = grid.rowCount();
    const int cols = grid.columnCount();

    // Colours first: the palette decides the indices fonts and fills refer to.
    PaletteBuilder palette;
    QHash<quint32, bool> formatSeen;
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            const quint32 id = grid.formatId(c, r);
            if (formatSeen.contains(id)) {
                continue;
            }
            formatSeen.insert(id, true);
            const GridCellFormat& f = grid.formatAt(id);
            if (const auto fc = exportFontColour(f.fontColour)) {
                palette.want(*fc);
            }
            if (const auto bc = exportBackground(f.background)) {
                palette.want(*bc);
            }
        }
    }
    palette.assign();

    // Fonts, number formats and cell formats, pooled.
    QList<FontKey> fonts;
    QHash<FontKey, quint16> fontIndex;
    const FontKey defaultFont{GridCellFormat::defaultFontName(),
                              GridCellFormat::kDefaultFontSize * 20, 0, kAutoColour};
    fontIndex.insert(defaultFont, 0);
    auto fontFor = [&](const GridCellFormat& f) -> quint16 {
        quint16 colour = kAutoColour;
        if (const auto fc = exportFontColour(f.fontColour)) {
            colour = palette.index(*fc);
        }
        const FontKey key{f.fontName.left(31), f.fontSize * 20,
                          quint8(f.fontStyle & FontStyle::All), colour};
        const auto found = fontIndex.constFind(key);
        if (found != fontIndex.constEnd()) {
            return found.value();
        }
        fonts.append(key);
        // Index 4 does not exist in this file format: the fifth font record is index 5.
        const quint16 index = quint16(fonts.size() + 4);
        fontIndex.insert(key, index);
        return index;
    };
    QHash<QString, quint16> customFormats;
    QStringList customFormatOrder;
    auto numberFormatFor = [&](const NumberText& n) -> quint16 {
        if (!n.isNumber) {
            return 0;
        }
        if (!n.percent && n.decimals == 0) {
            return n.integerDigits > 10 ? 1 : 0;
        }
        if (!n.percent && n.decimals == 2) {
            return 2;
        }
        if (n.percent && n.decimals == 0) {
            return 9;
        }
        if (n.percent && n.decimals == 2) {
            return 10;
        }
        QString code = QStringLiteral("0");
        if (n.decimals > 0) {
            code += QLatin1Char('.') + QString(n.decimals, QLatin1Char('0'));
        }
        if (n.percent) {
            code += QLatin1Char('%');
        }
        const auto found = customFormats.constFind(code);
        if (found != customFormats.constEnd()) {
            return found.value();
        }
        const quint16 id = quint16(kFirstCustomFormat + customFormatOrder.size());
        customFormats.insert(code, id);
        customFormatOrder.append(code);
        return id;
    };
    QList<XfKey> xfs;
    QHash<XfKey, quint16> xfIndex;
    auto xfFor = [&](const GridCellFormat& f, quint16 numberFormat) -> quint16 {
        quint16 fill = 0;
        if (const auto bc = exportBackground(f.background)) {
            fill = palette.index(*bc);
        }
        const XfKey key{fontFor(f), numberFormat, f.alignment, grid.wordWrap(), fill};
        if (key == XfKey{0, 0, CellAlignment::Left, false, 0}) {
            return kDefaultCellXf;
        }
        const auto found = xfIndex.constFind(key);
        if (found != xfIndex.constEnd()) {
            return found.value();
        }
        xfs.append(key);
        const quint16 index = quint16(kDefaultCellXf + xfs.size());
        xfIndex.insert(key, index);
        return index;
    };

    // The sheet's cells, with the strings they share.
    QStringList strings;
    QHash<QString, quint32> stringIndex;
    quint32 references = 0;
    QByteArray cells;
    auto cellRecords = [&](int r) {
        for (int c = 0; c < cols; ++c) {
            const QString& text = grid.text(c, r);
            const quint32 formatId = grid.formatId(c, r);
            if (text.isEmpty() && formatId == 0) {
                continue;
            }
            const GridCellFormat& f = grid.formatAt(formatId);
            const NumberText number = classifyNumber(text);
            const quint16 xf = xfFor(f, numberFormatFor(number));
            common::ByteWriter w;
            w.u16(quint16(r));
            w.u16(quint16(c));
            w.u16(xf);
            if (text.isEmpty()) {
                appendRecord(cells, kBlank, w.take());
            } else if (number.isNumber) {
                w.f64(number.value);
                appendRecord(cells, kNumber, w.take());
            } else {
                const QString s = text.left(kMaxTextLength);
                auto found = stringIndex.constFind(s);
                if (found == stringIndex.constEnd()) {
                    found = stringIndex.insert(s, quint32(strings.size()));
                    strings.append(s);
                }
                ++references;
                w.u32(found.value());
                appendRecord(cells, kLabelSst, w.take());
            }
        }
    };
    QByteArray sheetBody;
    for (int first = 0; first < rows; first += kRowBlock) {
        const int last = std::min(rows, first + kRowBlock);
        for (int r = first; r < last; ++r) {
            common::ByteWriter w;
            w.u16(quint16(r));
            w.u16(0);
            w.u16(quint16(cols));
            w.u16(quint16(std::clamp(grid.rowHeight(r) * 15, 1, 8191)));
            w.u16(0);
            w.u16(0);
            // Reserved byte 1, custom height (fUnsynced), default cell format 15.
            w.u32(0x0100u | 0x0040u | (quint32(kDefaultCellXf) << 16));
            appendRecord(sheetBody, kRow, w.take());
        }
        cells.clear();
        for (int r = first; r < last; ++r) {
            cellRecords(r);
        }
        sheetBody.append(cells);
    }

    // ---- globals
    QByteArray globals;
    {
        common::ByteWriter w;
        w.u16(0x0600);
        w.u16(0x0005);
        w.u16(0x0DBB);
        w.u16(0x07CC);
        w.u32(0);
        w.u32(6);
        appendRecord(globals, kBof, w.take());
    }
    {
        common::ByteWriter w;
        w.u16(0x04B0); // UTF-16
        appendRecord(globals, kCodePage, w.take());
    }
    {
        common::ByteWriter w;
        w.u16(0);
        w.u16(0);
        w.u16(0x4000);
        w.u16(0x2000);
        w.u16(0x0038);
        w.u16(0);
        w.u16(0);
        w.u16(1);
        w.u16(0x0258);
        appendRecord(globals, kWindow1, w.take());
    }
    {
        common::ByteWriter w;
        w.u16(0); // dates from 1900
        appendRecord(globals, kDateMode, w.take());
    }
    auto fontRecord = [](const FontKey& k) {
        common::ByteWriter w;
        w.u16(quint16(std::clamp(k.twips, 20, 8191)));
        w.u16((k.style & FontStyle::Italic) ? 0x0002 : 0x0000);
        w.u16(k.colour);
        w.u16((k.style & FontStyle::Bold) ? 700 : 400);
        w.u16(0);
        w.u8((k.style & FontStyle::Underline) ? 1 : 0);
        w.u8(0);
        w.u8(0);
        w.u8(0);
        appendXlString(w, k.name, true);
        return w.take();
    };
    for (int i = 0; i < 4; ++i) {
        appendRecord(globals, kFont, fontRecord(defaultFont));
    }
    for (const FontKey& k : std::as_const(fonts)) {
        appendRecord(globals, kFont, fontRecord(k));
    }
    for (qsizetype i = 0; i < customFormatOrder.size(); ++i) {
        common::ByteWriter w;
        w.u16(quint16(kFirstCustomFormat + i));
        appendXlString(w, customFormatOrder[i], false);
        appendRecord(globals, kFormat, w.take());
    }
    // Fifteen style formats (the Normal style and the built-in ones), then the default cell
    // format, then the cells' own.
    appendRecord(globals, kXf, xfRecord(0, 0, 0xFFF5, 0x20, 0x00, 0));
    for (int i = 1; i < 15; ++i) {
        const quint16 font = (i == 1 || i == 2) ? 1 : (i == 3 || i == 4) ? 2 : 0;
        appendRecord(globals, kXf, xfRecord(font, 0, 0xFFF5, 0x20, 0xF4, 0));
    }
    appendRecord(globals, kXf, xfRecord(0, 0, 0x0001, 0x20, 0x00, 0));
    for (const XfKey& k : std::as_const(xfs)) {
        // Left-aligned cells take the sheet's general alignment: text to the left, numbers to
        // the right, as spreadsheet users expect.
        quint8 alignment = 0x20; // bottom
        alignment |= k.alignment == CellAlignment::Right    ? 3
                     : k.alignment == CellAlignment::Centre ? 2
                                                            : 0;
        if (k.wrap) {
            alignment |= 0x08;
        }
        appendRecord(globals, kXf, xfRecord(k.font, k.format, 0x0001, alignment, 0xFC, k.fill));
    }
    {
        common::ByteWriter w;
        w.u16(0x8000); // built-in style, format 0
        w.u8(0);       // Normal
        w.u8(0xFF);
        appendRecord(globals, kStyle, w.take());
    }
    if (palette.changed()) {
        appendRecord(globals, kPalette, palette.record());
    }
    const qsizetype sheetOffsetField = globals.size() + 4;
    {
        common::ByteWriter w;
        w.u32(0); // patched below
        w.u8(0);  // visible
        w.u8(0);  // worksheet
        appendXlString(w, sheetNameFrom(options.sheetName), true);
        appendRecord(globals, kBoundSheet, w.take());
    }
    appendSharedStrings(globals, strings, references);
    appendRecord(globals, kEof, {});
    qToLittleEndian(quint32(globals.size()), globals.data() + sheetOffsetField);

    // ---- the worksheet
    QByteArray sheet;
    {
        common::ByteWriter w;
        w.u16(0x0600);
        w.u16(0x0010);
        w.u16(0x0DBB);
        w.u16(0x07CC);
        w.u32(0);
        w.u32(6);
        appendRecord(sheet, kBof, w.take());
    }
    for (int c = 0; c < cols; ++c) {
        common::ByteWriter w;
        w.u16(quint16(c));
        w.u16(quint16(c));
        // Width in 1/256 of a digit of the default font (7 pixels, plus 5 of padding).
        const double chars = std::max(0.0, (grid.columnWidth(c) - 5) / 7.0);
        w.u16(quint16(std::min(65535.0, std::round(chars * 256))));
        w.u16(kDefaultCellXf);
        w.u16(grid.isColumnHidden(c) || grid.columnWidth(c) == 0 ? 0x0001 : 0x0000);
        w.u16(0);
        appendRecord(sheet, kColInfo, w.take());
    }
    {
        common::ByteWriter w;
        w.u32(0);
        w.u32(quint32(rows));
        w.u16(0);
        w.u16(quint16(cols));
        w.u16(0);
        appendRecord(sheet, kDimensions, w.take());
    }
    sheet.append(sheetBody);
    const int frozenRows = std::min(grid.fixedRows(), rows - 1);
    const int frozenCols = std::min(grid.fixedColumns(), cols - 1);
    const bool frozen = frozenRows > 0 || frozenCols > 0;
    {
        common::ByteWriter w;
        w.u16(quint16(0x06B6 | (frozen ? 0x0108 : 0)));
        w.u16(0);
        w.u16(0);
        w.u16(0x40);
        w.u16(0);
        w.u16(0);
        w.u16(0);
        w.u32(0);
        appendRecord(sheet, kWindow2, w.take());
    }
    if (frozen) {
        common::ByteWriter w;
        w.u16(quint16(std::max(0, frozenCols)));
        w.u16(quint16(std::max(0, frozenRows)));
        w.u16(quint16(std::max(0, frozenRows)));
        w.u16(quint16(std::max(0, frozenCols)));
        w.u16(frozenRows > 0 && frozenCols > 0 ? 0 : frozenRows > 0 ? 2 : 1);
        appendRecord(sheet, kPane, w.take());
    }
    appendRecord(sheet, kEof, {});

    return globals + sheet;
}

Result<QByteArray> XlsWriter::write(const GridDocument& grid, const XlsOptions& options)
{
    const Result<QByteArray> stream = workbookStream(grid, options);
    if (!stream) {
        return fail(stream.error());
    }
    return CompoundFileWriter::build(QStringLiteral("Workbook"), *stream);
}

} // namespace kestrum::grid
