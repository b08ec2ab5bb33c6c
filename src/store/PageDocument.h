#pragma once

#include "common/Result.h"
#include "store/PageType.h"

#include <QByteArray>
#include <QObject>
#include <QString>

namespace kestrum::store {

// The contract between the store and a page editor. Each page kind has one document object
// that owns the format of its content: it writes its whole content as bytes, reads it back,
// clears itself and imports outside files. The store knows editors only through this class, so
// the desktop registers the documents behind its editors and headless tools register their own.
class PageDocument : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~PageDocument() override;

    virtual EditorKind kind() const = 0;

    // The whole content in the kind's stored format.
    virtual Result<QByteArray> writeContent() = 0;
    // Replaces the content. On failure the document is left cleared.
    virtual Status readContent(const QByteArray& in) = 0;
    virtual void clear() = 0;

    // Loads an outside file (by its extension) as the content. The default refuses.
    virtual Status importFile(const QString& path);
    // Whether a freshly imported file is written into its new page at once. A kind may leave
    // some imports unsaved until the page is left modified.
    virtual bool storesImportImmediately(const QString& path) const;
    // The page's PageInfo, for kinds whose reading depends on it.
    virtual void setPageInfo(const QString& info);

signals:
    // The user changed the content (not emitted while loading).
    void contentChanged();
    // The content was replaced or cleared by the store (a page was loaded): views refresh,
    // nothing is marked modified. Documents that views follow by themselves need not emit it.
    void contentReset();
};

} // namespace kestrum::store
