// Table pages: the grid stream, delimited and grid-file imports, and every table format.

#include "export/KindRegistrations.h"

#include "editors/grid/GridDocument.h"
#include "editors/grid/GridExporter.h"
#include "editors/grid/GridPageDocument.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/HtmlTableWriter.h"
#include "editors/grid/RtfTableWriter.h"

namespace kestrum::exports {

namespace {

Result<grid::GridDocument> readGrid(const PageSource& page)
{
    grid::GridDocument document;
    if (!page.content.isEmpty()) {
        if (const Status read = grid::GridStream::read(page.content, &document); !read) {
            return fail(read.error());
        }
    }
    return document;
}

PageFormat gridFormat(QStringList extensions, const QString& description, int format)
{
    return {std::move(extensions), description,
            [format](const PageSource& page, const QString& outFile) -> Status {
                auto document = readGrid(page);
                if (!document) {
                    return fail(document.error());
                }
                return grid::GridExporter::exportGrid(&*document, outFile, format);
            }};
}

} // namespace

CorePageKind gridPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Grid;
    kind.page.pageTypes = {store::PageType::Grid};
    kind.page.name = QStringLiteral("table");
    kind.page.icon = QStringLiteral(":/icons/table.svg");
    kind.page.makeDocument = [] { return std::make_unique<grid::GridPageDocument>(); };
    kind.page.importExtensions = {QStringLiteral(".TAB"), QStringLiteral(".CSV"),
                                  QStringLiteral(".GRID2")};

    using namespace grid::ExportFormat;
    kind.exports.formats = {
        gridFormat({QStringLiteral("txt")}, QStringLiteral("Text (padded columns)"), Ascii),
        gridFormat({QStringLiteral("tab")}, QStringLiteral("Tab delimited"), TabDelimited),
        gridFormat({QStringLiteral("csv")}, QStringLiteral("Comma delimited"), CommaDelimited),
        gridFormat({QStringLiteral("xls")}, QStringLiteral("Excel 97-2003"), Excel),
        gridFormat({QStringLiteral("doc")}, QStringLiteral("Word (RTF table)"), Word),
        gridFormat({QStringLiteral("htm"), QStringLiteral("html")}, QStringLiteral("Web page"),
                   Html),
        gridFormat({QStringLiteral("xml")}, QStringLiteral("XML"), Xml),
        gridFormat({QStringLiteral("wgf")}, QStringLiteral("Grid file"), Native),
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions&) -> Result<HtmlFragment> {
        auto document = readGrid(page);
        if (!document) {
            return fail(document.error());
        }
        return HtmlFragment{grid::HtmlTableWriter::tableHtml(*document), {}};
    };
    kind.exports.rtf = [](const PageSource& page) -> Result<QByteArray> {
        auto document = readGrid(page);
        if (!document) {
            return fail(document.error());
        }
        return grid::RtfTableWriter::write(*document);
    };
    kind.exports.text = [](const PageSource& page) -> Result<QString> {
        auto document = readGrid(page);
        if (!document) {
            return fail(document.error());
        }
        // Each row's visible cells, tab-separated: what a find looks through.
        QString out;
        const std::vector<int> columns = document->visibleColumns();
        for (int r = 0; r < document->rowCount(); ++r) {
            for (std::size_t i = 0; i < columns.size(); ++i) {
                if (i > 0) {
                    out += QLatin1Char('\t');
                }
                out += document->text(columns[i], r);
            }
            out += QLatin1Char('\n');
        }
        return out;
    };
    return kind;
}

} // namespace kestrum::exports
