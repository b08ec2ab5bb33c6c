#pragma once

// Laid-out clouds for the word cloud page tests.

#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QByteArray>

namespace kestrum::wordcloud_page::samples {

// `count` words with falling weights ("w0" heaviest), laid out on `client` with `seed`.
inline void fillCloud(wordcloud::TprWordCloud& cloud, int count, QSize client = {400, 300},
                      quint64 seed = 7)
{
    cloud.SetClientSize(client);
    cloud.SetRandomSeed(seed);
    for (int i = 0; i < count; ++i) {
        cloud.AddWord(QStringLiteral("w%1").arg(i), std::max(1, 200 - 7 * i));
    }
}

inline QByteArray documentOf(const wordcloud::TprWordCloud& cloud)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    cloud.SaveToStream(buffer);
    return bytes;
}

// The document of a cloud of `count` words laid out on `client`.
inline QByteArray laidOutDocument(int count, QSize client = {400, 300}, quint64 seed = 7)
{
    wordcloud::TprWordCloud cloud;
    fillCloud(cloud, count, client, seed);
    cloud.GenerateCloud(true);
    return documentOf(cloud);
}

} // namespace kestrum::wordcloud_page::samples
