// Word cloud pages: the XML cloud document, drawn again at its stored size for every export.

#include "export/KindRegistrations.h"

#include "editors/wordcloud_page/CloudPageDocument.h"
#include "editors/wordcloud_page/CloudPageExporter.h"

namespace kestrum::exports {

namespace {

using wordcloud_page::CloudPageExporter;

PageFormat cloudFormat(QStringList extensions, const QString& description)
{
    return {std::move(extensions), description,
            [](const PageSource& page, const QString& outFile) -> Status {
                return CloudPageExporter::writeFile(page.content, outFile);
            }};
}

} // namespace

CorePageKind wordCloudPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::WordCloud;
    kind.page.pageTypes = {store::PageType::WordCloud};
    kind.page.name = QStringLiteral("word cloud");
    kind.page.icon = QStringLiteral(":/icons/wordcloud.svg");
    kind.page.makeDocument = [] { return std::make_unique<wordcloud_page::CloudPageDocument>(); };

    kind.exports.formats = {
        cloudFormat({QStringLiteral("png")}, QStringLiteral("Portable Network Graphic")),
        cloudFormat({QStringLiteral("bmp")}, QStringLiteral("Windows Bitmap")),
        cloudFormat({QStringLiteral("jpg"), QStringLiteral("jpeg")}, QStringLiteral("JPEG")),
        cloudFormat({QStringLiteral("svg")}, QStringLiteral("SVG picture")),
        cloudFormat({QStringLiteral("xml")}, QStringLiteral("Word cloud document")),
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions& options) -> Result<HtmlFragment> {
        auto png = CloudPageExporter::png(page.content);
        if (!png) {
            return fail(png.error());
        }
        const QString name =
            QStringLiteral("%1cloud%2.png").arg(options.filePrefix).arg(page.pageId);
        HtmlFragment fragment;
        fragment.html = QStringLiteral("<IMG SRC=\"%1/%2\" ALT=\"%3\">")
                            .arg(options.folderUrl, name, page.info.toHtmlEscaped());
        fragment.files.emplace_back(name, *png);
        return fragment;
    };
    kind.exports.rtf = [](const PageSource& page) { return CloudPageExporter::rtf(page.content); };
    kind.exports.text = [](const PageSource& page) {
        return CloudPageExporter::text(page.content);
    };
    return kind;
}

} // namespace kestrum::exports
