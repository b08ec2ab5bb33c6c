// The one list of the core's page kinds. Adding a kind: one line here, one in the desktop's
// list (app/DesktopKinds.cpp).

#include "export/KindRegistrations.h"
#include "export/PageExports.h"

#include <QFileInfo>

namespace kestrum::exports {

const std::vector<CorePageKind>& corePageKinds()
{
    // A file's extension is matched against the kinds in this order (chart before table and
    // image: ".T" and ".W" are read as charts).
    static const std::vector<CorePageKind> kinds{
        textPageKind(),     chartPageKind(),   gridPageKind(),      imagePageKind(),
        timelinePageKind(), diagramPageKind(), wordCloudPageKind(),
    };
    return kinds;
}

const store::PageKindTable& pageKindTable()
{
    static const store::PageKindTable table = [] {
        store::PageKindTable t;
        for (const CorePageKind& kind : corePageKinds()) {
            t.add(kind.page);
        }
        return t;
    }();
    return table;
}

const CorePageKind* coreKind(store::EditorKind kind)
{
    for (const CorePageKind& entry : corePageKinds()) {
        if (entry.page.kind == kind) {
            return &entry;
        }
    }
    return nullptr;
}

const PageFormat* findPageFormat(qint32 pageType, const QString& extension)
{
    const CorePageKind* kind = coreKind(store::editorKindFor(pageType));
    if (!kind) {
        return nullptr;
    }
    const QString ext = extension.toLower();
    for (const PageFormat& format : kind->exports.formats) {
        if (format.extensions.contains(ext)) {
            return &format;
        }
    }
    return nullptr;
}

QStringList exportExtensions(qint32 pageType)
{
    QStringList out;
    if (const CorePageKind* kind = coreKind(store::editorKindFor(pageType))) {
        for (const PageFormat& format : kind->exports.formats) {
            for (const QString& ext : format.extensions) {
                out << QLatin1Char('.') + ext;
            }
        }
    }
    return out;
}

Status exportPage(const PageSource& page, const QString& outFile)
{
    const PageFormat* format = findPageFormat(page.pageType, QFileInfo(outFile).suffix());
    if (!format) {
        const QStringList known = exportExtensions(page.pageType);
        const QString kindName = store::pageKindName(page.pageType);
        return fail(known.isEmpty()
                        ? QStringLiteral("page %1 is a %2 page, which cannot be exported yet")
                              .arg(page.pageId)
                              .arg(kindName)
                        : QStringLiteral("page %1 is a %2 page; it can be written as %3")
                              .arg(page.pageId)
                              .arg(kindName, known.join(QLatin1Char(' '))));
    }
    return format->write(page, outFile);
}

} // namespace kestrum::exports
