#include "TextExporter.h"

#include "editors/text/DocumentPictures.h"
#include "editors/text/HiddenTextObject.h"
#include "editors/text/ListItemNumbers.h"
#include "editors/text/ListNumbering.h"
#include "editors/text/OdtPackage.h"
#include "editors/text/RtfWriter.h"
#include "editors/text/TextProperties.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentWriter>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <map>
#include <set>

namespace kestrum::text {

namespace {

// Plain text: the spaces of one list level, and the deepest level indented.
constexpr int kPlainListIndent = 4;
constexpr int kMaxPlainListLevels = 9;

Status saveBytes(const QString& fileName, const QByteArray& bytes)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(fileName, file.errorString()));
    }
    return {};
}

QString htmlEscape(const QString& text)
{
    return text.toHtmlEscaped();
}

// The names of the picture resources a document uses, with their formats.
std::vector<QTextImageFormat> pictureFormats(const QTextDocument& document)
{
    std::vector<QTextImageFormat> out;
    std::set<QString> seen;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (format.isImageFormat()) {
                const QTextImageFormat image = format.toImageFormat();
                if (seen.insert(image.name()).second) {
                    out.push_back(image);
                }
            }
        }
    }
    return out;
}

// The HTML of a document opens each list (<ol> or <ul>) at its first item, in the order of
// the blocks: lists that start elsewhere than 1 get their start attribute.
void addListStarts(const QTextDocument& document, QString& html)
{
    std::vector<int> starts;
    bool any = false;
    const ListItemNumbers numbers(document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextList* list = block.textList();
        if (list && numbers.itemNumber(block) == 0) {
            starts.push_back(ListNumbering::start(list->format()));
            any = any || starts.back() != 1;
        }
    }
    if (!any) {
        return;
    }
    static const QRegularExpression open(QStringLiteral("<(ol|ul)\\b"));
    QString out;
    qsizetype last = 0;
    std::size_t index = 0;
    auto it = open.globalMatch(html);
    while (it.hasNext() && index < starts.size()) {
        const QRegularExpressionMatch m = it.next();
        out += QStringView(html).mid(last, m.capturedEnd() - last);
        last = m.capturedEnd();
        if (starts[index] != 1) {
            out += QStringLiteral(" start=\"%1\"").arg(starts[index]);
        }
        ++index;
    }
    out += QStringView(html).mid(last);
    html = out;
}

QString plainBlockText(const QTextBlock& block, const ListItemNumbers& numbers)
{
    QString text = block.text();
    text.remove(QChar::ObjectReplacementCharacter);
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    if (const QTextList* list = block.textList()) {
        QString marker;
        switch (list->format().style()) {
        case QTextListFormat::ListDisc:
            marker = QChar(0x2022);
            break;
        case QTextListFormat::ListSquare:
            marker = QChar(0x25AA);
            break;
        case QTextListFormat::ListCircle:
            marker = QChar(0x25E6);
            break;
        default:
            marker = numbers.itemText(block);
            break;
        }
        // Each level below the first is indented by four spaces more.
        const int level = std::clamp(list->format().indent(), 1, kMaxPlainListLevels) - 1;
        text.prepend(QString(level * kPlainListIndent, QLatin1Char(' ')) + marker +
                     QLatin1Char(' '));
    }
    return text;
}

QString plainCell(const QTextDocument& document, const ListItemNumbers& numbers,
                  const QTextTableCell& cell);

// The texts of row `r`'s cells, one a cell; a cell spanning from the row above reads empty.
QStringList plainRow(const QTextDocument& document, const ListItemNumbers& numbers,
                     const QTextTable* table, int r)
{
    QStringList cells;
    for (int c = 0; c < table->columns();) {
        const QTextTableCell cell = table->cellAt(r, c);
        cells << (cell.row() == r ? plainCell(document, numbers, cell) : QString());
        c += std::max(1, cell.columnSpan());
    }
    return cells;
}

// A table inside a cell, on the cell's line: each row in brackets, its cells apart by " | ".
QString plainNestedTable(const QTextDocument& document, const ListItemNumbers& numbers,
                         const QTextTable* table)
{
    QStringList rows;
    for (int r = 0; r < table->rows(); ++r) {
        rows << QLatin1Char('[') +
                    plainRow(document, numbers, table, r).join(QLatin1String(" | ")) +
                    QLatin1Char(']');
    }
    return rows.join(QLatin1Char(' '));
}

// The text of a cell on one line: its paragraphs and inner tables apart by spaces.
QString plainCell(const QTextDocument& document, const ListItemNumbers& numbers,
                  const QTextTableCell& cell)
{
    QStringList parts;
    for (auto it = cell.begin(); !it.atEnd(); ++it) {
        if (const QTextFrame* child = it.currentFrame()) {
            if (const auto* table = qobject_cast<const QTextTable*>(child)) {
                parts << plainNestedTable(document, numbers, table);
            } else {
                for (QTextBlock b = document.findBlock(child->firstPosition());
                     b.isValid() && b.position() <= child->lastPosition(); b = b.next()) {
                    parts << plainBlockText(b, numbers);
                }
            }
        } else {
            parts << plainBlockText(it.currentBlock(), numbers);
        }
    }
    // Empty paragraphs (Qt keeps one before a table in a cell) take no space of their own.
    parts.removeIf([](const QString& part) { return part.isEmpty(); });
    return parts.join(QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

void plainFrame(const QTextDocument& document, const ListItemNumbers& numbers,
                const QTextFrame* frame, QStringList& lines)
{
    for (auto it = frame->begin(); !it.atEnd(); ++it) {
        if (const QTextFrame* child = it.currentFrame()) {
            if (const auto* table = qobject_cast<const QTextTable*>(child)) {
                for (int r = 0; r < table->rows(); ++r) {
                    lines << plainRow(document, numbers, table, r).join(QLatin1Char('\t'));
                }
            } else {
                plainFrame(document, numbers, child, lines);
            }
        } else {
            lines << plainBlockText(it.currentBlock(), numbers);
        }
    }
}

// The hidden runs of a document as (position, length), in document order; at most `limit`.
std::vector<std::pair<int, int>> hiddenRuns(const QTextDocument& document,
                                            std::size_t limit = std::size_t(-1))
{
    std::vector<std::pair<int, int>> runs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!HiddenTextObject::isHidden(fragment.charFormat())) {
                continue;
            }
            if (!runs.empty() && runs.back().first + runs.back().second == fragment.position()) {
                runs.back().second += fragment.length();
            } else if (runs.size() == limit) {
                return runs;
            } else {
                runs.emplace_back(fragment.position(), fragment.length());
            }
        }
    }
    return runs;
}

// The first numbers of the document's numbered lists that start elsewhere than 1, by the index
// of the list's format. OpenDocument numbers from 1 up, so a list starting at 0 keeps 1.
std::map<int, int> odtListStarts(const QTextDocument& document)
{
    std::map<int, int> starts;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (const QTextList* list = block.textList()) {
            const int start = ListNumbering::start(list->format());
            if (start > 1) {
                starts[list->formatIndex()] = start;
            }
        }
    }
    return starts;
}

// Qt's OpenDocument writer names the list style of each list "L" and the index of the list's
// format, with one level style per list, and writes no first number; the numbered level style
// of each list in `starts` gets its start value.
QByteArray withListStarts(QByteArray content, const std::map<int, int>& starts)
{
    static constexpr char kLevel[] = "<text:list-level-style-number";
    for (const auto& [formatIndex, start] : starts) {
        const QByteArray style =
            "<text:list-style style:name=\"L" + QByteArray::number(formatIndex) + "\">";
        const qsizetype at = content.indexOf(style);
        if (at < 0) {
            continue;
        }
        const qsizetype end = content.indexOf("</text:list-style>", at);
        const qsizetype level = content.indexOf(kLevel, at);
        if (level < 0 || end < 0 || level > end) {
            continue;
        }
        content.insert(level + qsizetype(sizeof(kLevel) - 1),
                       " text:start-value=\"" + QByteArray::number(start) + '"');
    }
    return content;
}

} // namespace

std::optional<TextExporter::Format> TextExporter::formatForSuffix(const QString& suffix)
{
    const QString s = suffix.toLower();
    if (s == QLatin1String("rtf")) {
        return Format::Rtf;
    }
    if (s == QLatin1String("htm") || s == QLatin1String("html")) {
        return Format::Html;
    }
    if (s == QLatin1String("txt")) {
        return Format::PlainText;
    }
    if (s == QLatin1String("odt")) {
        return Format::Odt;
    }
    return std::nullopt;
}

std::unique_ptr<QTextDocument> TextExporter::visibleCopy(const QTextDocument& document)
{
    std::unique_ptr<QTextDocument> copy(document.clone());
    for (const QTextImageFormat& image : pictureFormats(document)) {
        const QVariant resource =
            document.resource(QTextDocument::ImageResource, QUrl(image.name()));
        if (resource.isValid()) {
            copy->addResource(QTextDocument::ImageResource, QUrl(image.name()), resource);
        }
    }
    // Hidden runs are object characters: remove them run by run from the end backwards (the
    // positions before a removal stay put), with no undo history to keep.
    copy->setUndoRedoEnabled(false);
    const std::vector<std::pair<int, int>> runs = hiddenRuns(*copy);
    QTextCursor cursor(copy.get());
    // One edit block: a cursor outside one lays its paragraph out at every move.
    cursor.beginEditBlock();
    for (auto it = runs.rbegin(); it != runs.rend(); ++it) {
        cursor.setPosition(it->first);
        cursor.setPosition(it->first + it->second, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }
    cursor.endEditBlock();
    return copy;
}

const QTextDocument& TextExporter::visibleText(const QTextDocument& document,
                                               std::unique_ptr<QTextDocument>& holder)
{
    if (hiddenRuns(document, 1).empty()) {
        // Copying a document costs as much as reading it again: only when there is hidden text.
        return document;
    }
    holder = visibleCopy(document);
    return *holder;
}

Result<QByteArray> TextExporter::toHtml(const QTextDocument& document,
                                        const HtmlExportOptions& options)
{
    std::unique_ptr<QTextDocument> holder;
    const QTextDocument* copy = &visibleText(document, holder);
    QString html = copy->toHtml();
    addListStarts(*copy, html);

    // Pictures: files beside the document or data URLs.
    QHash<QString, QString> sources;
    int counter = 0;
    for (const QTextImageFormat& image : pictureFormats(*copy)) {
        const QImage picture = DocumentPictures::image(*copy, image);
        const auto kind = PictureKind(image.intProperty(TextProperty::PictureKind));
        const QByteArray original = image.property(TextProperty::PictureData).toByteArray();
        QByteArray bytes;
        QString suffix = QStringLiteral("png");
        QString mime = QStringLiteral("image/png");
        if ((kind == PictureKind::Png || kind == PictureKind::Jpeg) && !original.isEmpty()) {
            bytes = original;
            if (kind == PictureKind::Jpeg) {
                suffix = QStringLiteral("jpg");
                mime = QStringLiteral("image/jpeg");
            }
        } else if (!picture.isNull()) {
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::WriteOnly);
            picture.save(&buffer, "PNG");
        } else {
            continue;
        }
        ++counter;
        if (options.imageFolder.isEmpty()) {
            sources.insert(image.name(), QStringLiteral("data:%1;base64,%2")
                                             .arg(mime, QString::fromLatin1(bytes.toBase64())));
        } else {
            const QString fileName = QStringLiteral("%1picture%2.%3")
                                         .arg(options.imageFilePrefix)
                                         .arg(counter)
                                         .arg(suffix);
            if (!QDir().mkpath(options.imageFolder)) {
                return fail(QStringLiteral("Cannot create the picture folder \"%1\".")
                                .arg(options.imageFolder));
            }
            if (const Status saved = saveBytes(QDir(options.imageFolder).filePath(fileName), bytes);
                !saved) {
                return fail(saved.error());
            }
            sources.insert(image.name(), options.imageUrlPrefix + fileName);
        }
    }
    if (!sources.isEmpty()) {
        static const QRegularExpression img(QStringLiteral("<img src=\"([^\"]*)\""));
        QString replaced;
        qsizetype last = 0;
        auto it = img.globalMatch(html);
        while (it.hasNext()) {
            const QRegularExpressionMatch m = it.next();
            const QString name = m.captured(1);
            const QString source = sources.value(name.toHtmlEscaped(), sources.value(name));
            replaced += QStringView(html).mid(last, m.capturedStart(1) - last);
            replaced += source.isEmpty() ? name : source.toHtmlEscaped();
            last = m.capturedEnd(1);
        }
        replaced += QStringView(html).mid(last);
        html = replaced;
    }

    // Keep the body's content and its style; write a plain head and "<BODY>".
    QString bodyStyle;
    QString body = html;
    static const QRegularExpression bodyTag(QStringLiteral("<body([^>]*)>"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch open = bodyTag.match(html);
    if (open.hasMatch()) {
        static const QRegularExpression style(QStringLiteral("style=\"([^\"]*)\""));
        const QRegularExpressionMatch s = style.match(open.captured(1));
        if (s.hasMatch()) {
            bodyStyle = s.captured(1);
        }
        const qsizetype close = html.lastIndexOf(QLatin1String("</body>"), -1, Qt::CaseInsensitive);
        body = html.mid(open.capturedEnd(), (close < 0 ? html.size() : close) - open.capturedEnd());
    }
    QString out;
    out += QStringLiteral(
        "<HTML><HEAD>\n<META http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\">\n");
    if (!options.title.isEmpty()) {
        out += QStringLiteral("<TITLE>") + htmlEscape(options.title) + QStringLiteral("</TITLE>\n");
    }
    out += QStringLiteral(
        "<STYLE type=\"text/css\">p, li { white-space: pre-wrap; }</STYLE>\n</HEAD>\n<BODY>\n");
    out += QStringLiteral("<DIV style=\"") + bodyStyle + QStringLiteral("\">");
    out += body;
    out += QStringLiteral("</DIV>\n</BODY>\n</HTML>\n");
    return out.toUtf8();
}

QString TextExporter::toPlainText(const QTextDocument& document)
{
    std::unique_ptr<QTextDocument> copy;
    const QTextDocument& visible = visibleText(document, copy);
    QStringList lines;
    plainFrame(visible, ListItemNumbers(visible), visible.rootFrame(), lines);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

Status TextExporter::writeOdt(const QTextDocument& document, const QString& fileName)
{
    std::unique_ptr<QTextDocument> copy;
    const QTextDocument& visible = visibleText(document, copy);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QTextDocumentWriter writer(&buffer, "odf");
    if (!writer.write(&visible)) {
        return fail(QStringLiteral("Cannot write \"%1\" as OpenDocument text.").arg(fileName));
    }
    const std::map<int, int> starts = odtListStarts(visible);
    if (starts.empty()) {
        return saveBytes(fileName, bytes);
    }
    Result<QList<OdtPackage::Entry>> entries = OdtPackage::read(bytes);
    if (!entries) {
        return fail(QStringLiteral("Cannot write \"%1\" as OpenDocument text: %2")
                        .arg(fileName, entries.error()));
    }
    for (OdtPackage::Entry& entry : *entries) {
        if (entry.name == QLatin1String("content.xml")) {
            entry.data = withListStarts(entry.data, starts);
        }
    }
    return saveBytes(fileName, OdtPackage::write(*entries));
}

Status TextExporter::exportFile(const QTextDocument& document, const ColourTable& colours,
                                const PageLayout& layout, const QString& fileName, Format format)
{
    switch (format) {
    case Format::Rtf:
        return saveBytes(fileName, RtfWriter(document, colours, layout).write());
    case Format::Html: {
        const QFileInfo info(fileName);
        HtmlExportOptions options;
        const QString folder = info.completeBaseName() + QStringLiteral("_files");
        options.imageFolder = info.absoluteDir().filePath(folder);
        options.imageUrlPrefix = QStringLiteral("./") + folder + QLatin1Char('/');
        options.title = info.completeBaseName();
        const Result<QByteArray> html = toHtml(document, options);
        if (!html) {
            return fail(html.error());
        }
        return saveBytes(fileName, *html);
    }
    case Format::PlainText:
        return saveBytes(fileName, toPlainText(document).toUtf8());
    case Format::Odt:
        return writeOdt(document, fileName);
    }
    return fail(QStringLiteral("Cannot write \"%1\": unknown format.").arg(fileName));
}

} // namespace kestrum::text
