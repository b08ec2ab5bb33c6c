// Diagram pages: the diagram stream, and pictures of it (PNG, JPEG, BMP, SVG, PDF).

#include "export/KindRegistrations.h"

#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramExporter.h"
#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramStream.h"

namespace kestrum::exports {

namespace {

Result<diagram::DiagramDocument> readDiagram(const PageSource& page)
{
    if (page.content.isEmpty()) {
        return diagram::DiagramDocument();
    }
    return diagram::DiagramStream::read(page.content);
}

PageFormat pictureFormat(QStringList extensions, const QString& description)
{
    return {std::move(extensions), description,
            [](const PageSource& page, const QString& outFile) -> Status {
                auto document = readDiagram(page);
                if (!document) {
                    return fail(document.error());
                }
                return diagram::DiagramExporter::writeFile(*document, outFile);
            }};
}

} // namespace

CorePageKind diagramPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Diagram;
    kind.page.pageTypes = {store::PageType::Diagram};
    kind.page.name = QStringLiteral("diagram");
    kind.page.icon = QStringLiteral(":/icons/diagram.svg");
    kind.page.makeDocument = [] { return std::make_unique<diagram::DiagramPageDocument>(); };

    kind.exports.formats = {
        pictureFormat({QStringLiteral("png")}, QStringLiteral("PNG picture")),
        pictureFormat({QStringLiteral("jpg"), QStringLiteral("jpeg")},
                      QStringLiteral("JPEG picture")),
        pictureFormat({QStringLiteral("bmp")}, QStringLiteral("Bitmap")),
        pictureFormat({QStringLiteral("svg")}, QStringLiteral("SVG drawing")),
        pictureFormat({QStringLiteral("pdf")}, QStringLiteral("PDF document")),
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions& options) -> Result<HtmlFragment> {
        auto document = readDiagram(page);
        if (!document) {
            return fail(document.error());
        }
        const QString name = options.filePrefix + QStringLiteral("diagram%1.png").arg(page.pageId);
        HtmlFragment fragment;
        fragment.html =
            QStringLiteral("<IMG SRC=\"%1/%2\" ALT=\"Diagram\">").arg(options.folderUrl, name);
        fragment.files.emplace_back(name, diagram::DiagramExporter::png(*document));
        return fragment;
    };
    kind.exports.rtf = [](const PageSource& page) -> Result<QByteArray> {
        auto document = readDiagram(page);
        if (!document) {
            return fail(document.error());
        }
        return diagram::DiagramExporter::rtf(*document);
    };
    kind.exports.text = [](const PageSource& page) -> Result<QString> {
        auto document = readDiagram(page);
        if (!document) {
            return fail(document.error());
        }
        return diagram::DiagramExporter::text(*document);
    };
    return kind;
}

} // namespace kestrum::exports
