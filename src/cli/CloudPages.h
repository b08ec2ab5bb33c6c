#pragma once

#include <QString>

namespace kestrum::store {
class OutlineNode;
class TRMData;
} // namespace kestrum::store

namespace kestrum::wordcloud {
class TprWordCloud;
}

namespace kestrum::cli {

// Word cloud pages made by the command-line tool: a laid-out cloud stored as a new page of an
// open project, with its outline node.
class CloudPages
{
public:
    // Appends the cloud's document as a word cloud page (PageInfo `info`, or the title when
    // empty) and a node captioned `title` as the last child of `parent`; writes the outline.
    static store::OutlineNode* append(store::TRMData& data, store::OutlineNode* parent,
                                      const QString& title, const QString& info,
                                      const wordcloud::TprWordCloud& cloud);
};

} // namespace kestrum::cli
