// Text pages: the rich-text document, its imports and its exports.

#include "export/KindRegistrations.h"

#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"

#include <QFileInfo>
#include <QTextDocument>

namespace kestrum::exports {

namespace {

Result<std::unique_ptr<text::TextPageDocument>> readText(const PageSource& page)
{
    constexpr qint64 kMiB = 1024 * 1024;
    if (page.content.size() > text::TextExporter::kMaxPageBytes) {
        return fail(QStringLiteral("The page is too large to export: its content is %1 MiB, and "
                                   "text pages are exported up to %2 MiB.")
                        .arg((page.content.size() + kMiB - 1) / kMiB)
                        .arg(text::TextExporter::kMaxPageBytes / kMiB));
    }
    auto document = std::make_unique<text::TextPageDocument>();
    if (const Status read = document->readContent(page.content); !read) {
        return fail(QStringLiteral("the page cannot be read: ") + read.error());
    }
    return document;
}

Status writeTextFile(const PageSource& page, const QString& outFile)
{
    auto document = readText(page);
    if (!document) {
        return fail(document.error());
    }
    const auto format = text::TextExporter::formatForSuffix(QFileInfo(outFile).suffix());
    if (!format) {
        return fail(QStringLiteral("cannot write %1: unknown format").arg(outFile));
    }
    return (*document)->exportFile(outFile, *format);
}

} // namespace

CorePageKind textPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Text;
    kind.page.pageTypes = {store::PageType::Text, store::PageType::TextVariant5,
                           store::PageType::TextVariant6, store::PageType::TextVariant7};
    kind.page.name = QStringLiteral("text");
    kind.page.icon = QStringLiteral(":/icons/text.svg");
    kind.page.makeDocument = [] { return std::make_unique<text::TextPageDocument>(); };

    kind.exports.formats = {
        {{QStringLiteral("rtf")}, QStringLiteral("Rich text"), writeTextFile},
        {{QStringLiteral("html"), QStringLiteral("htm")},
         QStringLiteral("Web page"),
         writeTextFile},
        {{QStringLiteral("txt")}, QStringLiteral("Plain text"), writeTextFile},
        {{QStringLiteral("odt")}, QStringLiteral("OpenDocument text"), writeTextFile},
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions& options) -> Result<HtmlFragment> {
        auto document = readText(page);
        if (!document) {
            return fail(document.error());
        }
        // Pictures are embedded: the fragment carries no files of its own.
        Q_UNUSED(options);
        const Result<QByteArray> html =
            text::TextExporter::toHtml(*(*document)->textDocument(), {});
        if (!html) {
            return fail(html.error());
        }
        // The markup between <BODY> and </BODY>.
        QString body = QString::fromUtf8(*html);
        const qsizetype open = body.indexOf(QLatin1String("<BODY"), 0, Qt::CaseInsensitive);
        if (open >= 0) {
            const qsizetype start = body.indexOf(QLatin1Char('>'), open) + 1;
            const qsizetype end =
                body.lastIndexOf(QLatin1String("</BODY>"), -1, Qt::CaseInsensitive);
            body = body.mid(start, end >= start ? end - start : -1);
        }
        return HtmlFragment{body, {}};
    };
    kind.exports.rtf = [](const PageSource& page) -> Result<QByteArray> {
        auto document = readText(page);
        if (!document) {
            return fail(document.error());
        }
        return (*document)->writeContent();
    };
    kind.exports.text = [](const PageSource& page) -> Result<QString> {
        auto document = readText(page);
        if (!document) {
            return fail(document.error());
        }
        return text::TextExporter::toPlainText(*(*document)->textDocument());
    };
    return kind;
}

} // namespace kestrum::exports
