#include "CloudPages.h"

#include "cli/CommandTable.h"
#include "store/OutlineModel.h"
#include "store/PageType.h"
#include "store/TRMData.h"
#include "wordcloud/TprWordCloud.h"

#include <QBuffer>

namespace kestrum::cli {

store::OutlineNode* CloudPages::append(store::TRMData& data, store::OutlineNode* parent,
                                       const QString& title, const QString& info,
                                       const wordcloud::TprWordCloud& cloud)
{
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    if (!cloud.SaveToStream(buffer)) {
        throw CliError{kExitBadInput, QStringLiteral("cannot write the word cloud document")};
    }
    const qint32 id = checked(data.appendRecord(store::PageType::WordCloud,
                                                info.isEmpty() ? title : info, content, QString()));
    store::OutlineNodeData node;
    node.caption = title;
    node.imageIndex = store::PageType::WordCloud;
    node.data = id;
    store::OutlineNode* added = data.outline().addChild(parent, node);
    checked(data.SaveTree());
    return added;
}

} // namespace kestrum::cli
