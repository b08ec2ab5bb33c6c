#include "Icons.h"

#include "store/PageType.h"

#include <QHash>

static void initIconResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace kestrum::app::Icons {

namespace {

QIcon load(const QString& name)
{
    static bool initialised = false;
    if (!initialised) {
        initIconResources();
        initialised = true;
    }
    static QHash<QString, QIcon> cache;
    auto it = cache.find(name);
    if (it == cache.end()) {
        it = cache.insert(name, QIcon(QStringLiteral(":/icons/%1.svg").arg(name)));
    }
    return *it;
}

} // namespace

QIcon forPageKind(qint32 imageIndex)
{
    namespace PageType = store::PageType;
    switch (imageIndex) {
    case PageType::Text:
        return load(QStringLiteral("text"));
    case PageType::TextVariant5:
    case PageType::TextVariant6:
    case PageType::TextVariant7:
        return load(QStringLiteral("passage"));
    case PageType::Grid:
        return load(QStringLiteral("table"));
    case PageType::Chart:
        return load(QStringLiteral("chart"));
    case PageType::Image:
        return load(QStringLiteral("image"));
    case PageType::Timeline:
        return load(QStringLiteral("timeline"));
    case PageType::OutlineRoot:
        return load(QStringLiteral("project"));
    case PageType::Folder:
        return load(QStringLiteral("folder"));
    case PageType::Diagram:
        return load(QStringLiteral("diagram"));
    case PageType::WordCloud:
        return load(QStringLiteral("wordcloud"));
    default:
        return load(QStringLiteral("unknown"));
    }
}

QIcon command(const char* name)
{
    return load(QLatin1String(name));
}

} // namespace kestrum::app::Icons
