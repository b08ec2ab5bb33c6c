// Timeline pages: the page text; exported as a picture (PNG, JPEG, BMP, GIF) or as the text.

#include "export/KindRegistrations.h"

#include "editors/timeline/TimelineEvents.h"
#include "editors/timeline/TimelinePageDocument.h"
#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/TimelineText.h"
#include "export/PicturePageExports.h"

#include <QSaveFile>

namespace kestrum::exports {

namespace {

using timeline::TimelineModel;

// Pictures of a stored page are drawn at this size, laid out as the page opens (balloons
// alternating above and below the bar).
const QSize kPictureSize(1000, 420);

Result<TimelineModel> readTimeline(const PageSource& page)
{
    TimelineModel model;
    const Status loaded = timeline::TimelineText::LoadTimeLinefromString(
        model, timeline::TimelineText::decode(page.content));
    if (!loaded) {
        return fail(QStringLiteral("page %1: %2").arg(page.pageId).arg(loaded.error()));
    }
    return model;
}

Result<QImage> timelinePicture(const PageSource& page)
{
    Result<TimelineModel> model = readTimeline(page);
    if (!model) {
        return fail(model.error());
    }
    timeline::TimelineEvents::applyLayoutMode(*model, timeline::LayoutMode::Alternate,
                                              kPictureSize.height());
    return timeline::TimelineRenderer::picture(*model, kPictureSize);
}

PageFormat pictureFormat(QStringList extensions, const QString& description, QString format)
{
    return {std::move(extensions), description,
            [format](const PageSource& page, const QString& outFile) -> Status {
                Result<TimelineModel> model = readTimeline(page);
                if (!model) {
                    return fail(model.error());
                }
                timeline::TimelineEvents::applyLayoutMode(*model, timeline::LayoutMode::Alternate,
                                                          kPictureSize.height());
                return timeline::TimelineRenderer::savePicture(*model, kPictureSize, outFile,
                                                               format);
            }};
}

} // namespace

CorePageKind timelinePageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Timeline;
    kind.page.pageTypes = {store::PageType::Timeline};
    kind.page.name = QStringLiteral("timeline");
    kind.page.icon = QStringLiteral(":/icons/timeline.svg");
    kind.page.makeDocument = [] { return std::make_unique<timeline::TimelinePageDocument>(); };
    kind.page.clearedWhenMissing = true; // only the events go

    kind.exports.formats = {
        pictureFormat({QStringLiteral("png")}, QStringLiteral("PNG file"), QStringLiteral("png")),
        pictureFormat({QStringLiteral("jpg"), QStringLiteral("jpeg")},
                      QStringLiteral("JPEG Image File"), QStringLiteral("jpg")),
        pictureFormat({QStringLiteral("bmp")}, QStringLiteral("Bitmaps"), QStringLiteral("bmp")),
        pictureFormat({QStringLiteral("gif")}, QStringLiteral("GIF Image"), QStringLiteral("gif")),
        {{QStringLiteral("txt")},
         QStringLiteral("Timeline text"),
         [](const PageSource& page, const QString& outFile) -> Status {
             Result<TimelineModel> model = readTimeline(page);
             if (!model) {
                 return fail(model.error());
             }
             return timeline::TimelineText::SaveTimeLineToFile(*model, outFile);
         }},
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions& options) -> Result<HtmlFragment> {
        Result<QImage> picture = timelinePicture(page);
        if (!picture) {
            return fail(picture.error());
        }
        return PicturePageExports::html(*picture, page, options, QStringLiteral("timeline"));
    };
    kind.exports.rtf = [](const PageSource& page) -> Result<QByteArray> {
        Result<QImage> picture = timelinePicture(page);
        if (!picture) {
            return fail(picture.error());
        }
        return PicturePageExports::rtf(*picture);
    };
    // The events' balloon texts and hints, one event a line, in page order.
    kind.exports.text = [](const PageSource& page) -> Result<QString> {
        Result<TimelineModel> model = readTimeline(page);
        if (!model) {
            return fail(model.error());
        }
        QString out;
        for (const timeline::TimelineEvent& e : model->events) {
            out += e.annotation + QLatin1Char('\t') + e.hint + QLatin1Char('\n');
        }
        return out;
    };
    return kind;
}

} // namespace kestrum::exports
