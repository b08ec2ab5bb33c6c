#pragma once

#include "common/Result.h"
#include "editors/text/PageLayout.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class QTextDocument;

namespace kestrum::text {

class ColourTable;

struct HtmlExportOptions
{
    // Pictures are written as files into this folder and referred to as `imageUrlPrefix` and the
    // file name; with no folder they are embedded in the HTML as data URLs.
    QString imageFolder;
    QString imageUrlPrefix;
    // Put before every picture file name, so that several pages can share one folder.
    QString imageFilePrefix;
    QString title;
};

// Writes a rich-text document to the formats a text page is exported to. Hidden text is left
// out of every format but RTF.
class TextExporter
{
public:
    enum class Format
    {
        Rtf,
        Html,
        PlainText,
        Odt
    };

    // Text pages whose stored content is larger than this are not exported: reading and writing
    // take time in proportion to the size, and memory about fifteen times the size for the
    // largest formats.
    static constexpr qint64 kMaxPageBytes = qint64(64) * 1024 * 1024;

    // The format of a file suffix ("rtf", "htm", "html", "txt", "odt"), if any.
    static std::optional<Format> formatForSuffix(const QString& suffix);

    // HTML in UTF-8, opening with "<HTML>" and a plain "<BODY>" (a report built from pages
    // cuts each page at its body); character and paragraph formats are inline styles.
    static Result<QByteArray> toHtml(const QTextDocument& document,
                                     const HtmlExportOptions& options);
    // Paragraphs as lines, table rows as tab-separated cells, list items with their markers.
    static QString toPlainText(const QTextDocument& document);
    static Status writeOdt(const QTextDocument& document, const QString& fileName);

    // Writes `fileName` in `format`; for HTML the pictures go to a folder named after the file
    // with "_files" added.
    static Status exportFile(const QTextDocument& document, const ColourTable& colours,
                             const PageLayout& layout, const QString& fileName, Format format);

    // A copy without hidden text, pictures kept.
    static std::unique_ptr<QTextDocument> visibleCopy(const QTextDocument& document);
    // The document itself when it has no hidden text, else its visible copy kept in `holder`.
    static const QTextDocument& visibleText(const QTextDocument& document,
                                            std::unique_ptr<QTextDocument>& holder);
};

} // namespace kestrum::text
