// Chart pages: the chart stream, ".WSX" chart files taken in, and the chart as a native file
// or a picture.

#include "export/KindRegistrations.h"

#include "editors/chart/ChartExporter.h"
#include "editors/chart/ChartPageDocument.h"
#include "editors/chart/ChartStream.h"

#include <QFileInfo>

namespace kestrum::exports {

namespace {

Result<chart::Chart> readChart(const PageSource& page)
{
    if (page.content.isEmpty()) {
        return chart::Chart();
    }
    Result<chart::Chart> read = chart::ChartStream::read(page.content);
    if (!read) {
        return fail(QStringLiteral("the page cannot be read: ") + read.error());
    }
    return read;
}

chart::RenderOptions renderOptions(const PageSource& page)
{
    chart::RenderOptions options;
    options.chartInfo = page.info;
    return options;
}

Status writeChartFile(const PageSource& page, const QString& outFile)
{
    Result<chart::Chart> c = readChart(page);
    if (!c) {
        return fail(c.error());
    }
    const auto format = chart::ChartExporter::formatForSuffix(QFileInfo(outFile).suffix());
    if (!format) {
        return fail(QStringLiteral("\"%1\" is not a chart file format").arg(outFile));
    }
    return chart::ChartExporter::write(*c, outFile, *format, chart::ChartExporter::kDefaultSize,
                                       renderOptions(page));
}

QString htmlEscaped(const QString& text)
{
    return text.toHtmlEscaped();
}

} // namespace

CorePageKind chartPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Chart;
    kind.page.pageTypes = {store::PageType::Chart};
    kind.page.name = QStringLiteral("chart");
    kind.page.icon = QStringLiteral(":/icons/chart.svg");
    kind.page.makeDocument = [] { return std::make_unique<chart::ChartPageDocument>(); };
    kind.page.importExtensions = {QStringLiteral(".WSX"), QStringLiteral(".TEE")};
    kind.page.storedWhenAdded = true;

    kind.exports.formats = {
        {{QStringLiteral("wsx")}, QStringLiteral("Chart file"), writeChartFile},
        {{QStringLiteral("png")}, QStringLiteral("PNG picture"), writeChartFile},
        {{QStringLiteral("jpg"), QStringLiteral("jpeg")},
         QStringLiteral("JPEG picture"),
         writeChartFile},
        {{QStringLiteral("bmp")}, QStringLiteral("Bitmap"), writeChartFile},
        {{QStringLiteral("svg")}, QStringLiteral("SVG drawing"), writeChartFile},
        {{QStringLiteral("pdf")}, QStringLiteral("PDF document"), writeChartFile},
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions& options) -> Result<HtmlFragment> {
        Result<chart::Chart> c = readChart(page);
        if (!c) {
            return fail(c.error());
        }
        const QSize size = chart::ChartExporter::kDefaultSize;
        Result<QByteArray> png = chart::ChartExporter::picture(*c, chart::ChartFileFormat::Png,
                                                               size, renderOptions(page));
        if (!png) {
            return fail(png.error());
        }
        const QString name = options.filePrefix + QStringLiteral("chart%1.png").arg(page.pageId);
        HtmlFragment fragment;
        fragment.html = QStringLiteral("<IMG SRC=\"%1/%2\" WIDTH=%3 HEIGHT=%4 ALT=\"%5\">")
                            .arg(options.folderUrl, name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(htmlEscaped(c->title));
        fragment.files.emplace_back(name, *png);
        return fragment;
    };
    kind.exports.rtf = [](const PageSource& page) -> Result<QByteArray> {
        Result<chart::Chart> c = readChart(page);
        if (!c) {
            return fail(c.error());
        }
        const QSize size = chart::ChartExporter::kDefaultSize;
        Result<QByteArray> png = chart::ChartExporter::picture(*c, chart::ChartFileFormat::Png,
                                                               size, renderOptions(page));
        if (!png) {
            return fail(png.error());
        }
        // Sizes in twips at 96 pixels per inch.
        QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\n{\\pard{\\pict\\pngblip";
        rtf += "\\picw" + QByteArray::number(size.width()) + "\\pich" +
               QByteArray::number(size.height()) + "\\picwgoal" +
               QByteArray::number(size.width() * 15) + "\\pichgoal" +
               QByteArray::number(size.height() * 15) + "\n";
        const QByteArray hex = png->toHex();
        for (qsizetype i = 0; i < hex.size(); i += 128) {
            rtf += hex.mid(i, 128) + "\n";
        }
        rtf += "}\\par}\n}\n";
        return rtf;
    };
    kind.exports.text = [](const PageSource& page) -> Result<QString> {
        Result<chart::Chart> c = readChart(page);
        if (!c) {
            return fail(c.error());
        }
        // The chart's words: titles, series titles and point labels, one per line.
        QStringList words;
        auto add = [&words](const QString& w) {
            if (!w.trimmed().isEmpty()) {
                words << w;
            }
        };
        add(c->title);
        add(c->leftAxis.title);
        add(c->bottomAxis.title);
        add(c->depthAxis.title);
        for (const chart::ChartSeries& s : c->series) {
            add(s.title);
            for (const chart::ChartPoint& p : s.points) {
                add(p.label);
            }
        }
        words.removeDuplicates();
        return words.join(QLatin1Char('\n'));
    };
    return kind;
}

} // namespace kestrum::exports
