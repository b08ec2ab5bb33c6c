#pragma once

#include "store/PageType.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace kestrum::store {

class PageDocument;

// What the core knows of one page kind: its name, its outline icon, how to make a document of
// it without widgets, and which files become pages of it. Each kind fills one of these in its
// own folder; the tables built from them are the only place that lists the kinds.
struct PageKind
{
    EditorKind kind = EditorKind::None;
    // The page types shown by this kind's editor (text has four).
    std::vector<qint32> pageTypes;
    // A short English name for messages and tools ("text", "table", "chart").
    QString name;
    // The outline icon's resource path (":/icons/...").
    QString icon;
    // A document of this kind without widgets: imports, exports and headless tools use it.
    std::function<std::unique_ptr<PageDocument>()> makeDocument;
    // File extensions (upper case, with the dot: ".WSX") that become pages of this kind when a
    // file is added. The match is a substring test against their concatenation, in table order.
    QStringList importExtensions;
    // A page added as this kind is stored at once, even empty or when its source file cannot
    // be read.
    bool storedWhenAdded = false;
    // Loading a missing page clears the editor of this kind (otherwise it keeps what it shows).
    bool clearedWhenMissing = false;
};

// The page kinds of a build, in registration order.
class PageKindTable
{
public:
    PageKindTable() = default;
    explicit PageKindTable(std::vector<PageKind> kinds);

    void add(PageKind kind);
    const PageKind* find(EditorKind kind) const;
    const PageKind* forPageType(qint32 pageType) const { return find(editorKindFor(pageType)); }
    const std::vector<PageKind>& kinds() const { return m_kinds; }

    // The page type a file becomes when it is added (text when no kind claims its extension).
    qint32 pageTypeForFile(const QString& fileName) const;
    // A new document of the kind; null when the kind is not in the table.
    std::unique_ptr<PageDocument> makeDocument(EditorKind kind) const;

private:
    std::vector<PageKind> m_kinds;
};

} // namespace kestrum::store
