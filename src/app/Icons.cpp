#include "Icons.h"

#include "export/PageExports.h"
#include "store/PageType.h"

#include <QHash>

static void initIconResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace kestrum::app::Icons {

namespace {

QIcon loadPath(const QString& path)
{
    static bool initialised = false;
    if (!initialised) {
        initIconResources();
        initialised = true;
    }
    static QHash<QString, QIcon> cache;
    auto it = cache.find(path);
    if (it == cache.end()) {
        it = cache.insert(path, QIcon(path));
    }
    return *it;
}

QIcon load(const QString& name)
{
    return loadPath(QStringLiteral(":/icons/%1.svg").arg(name));
}

} // namespace

QIcon forPageKind(qint32 imageIndex)
{
    namespace PageType = store::PageType;
    switch (imageIndex) {
    case PageType::TextVariant5:
    case PageType::TextVariant6:
    case PageType::TextVariant7:
        return load(QStringLiteral("passage"));
    case PageType::OutlineRoot:
        return load(QStringLiteral("project"));
    case PageType::Folder:
        return load(QStringLiteral("folder"));
    default:
        break;
    }
    if (const store::PageKind* kind = exports::pageKindTable().forPageType(imageIndex)) {
        return loadPath(kind->icon);
    }
    return load(QStringLiteral("unknown"));
}

QIcon command(const char* name)
{
    return load(QLatin1String(name));
}

} // namespace kestrum::app::Icons
