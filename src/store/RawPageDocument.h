#pragma once

#include "store/PageDocument.h"

namespace kestrum::store {

// A document that keeps a page's content bytes exactly as stored. It serves the kinds that
// have no document of their own yet, so every page still round-trips through the store.
class RawPageDocument : public PageDocument
{
    Q_OBJECT
public:
    explicit RawPageDocument(EditorKind kind, QObject* parent = nullptr);

    EditorKind kind() const override { return m_kind; }
    Result<QByteArray> writeContent() override;
    Status readContent(const QByteArray& in) override;
    void clear() override;
    Status importFile(const QString& path) override;
    void setPageInfo(const QString& info) override { m_pageInfo = info; }

    const QByteArray& bytes() const { return m_bytes; }
    void setBytes(const QByteArray& bytes);
    const QString& pageInfo() const { return m_pageInfo; }

    static constexpr qint64 kMaxImportBytes = qint64(512) * 1024 * 1024;

private:
    EditorKind m_kind;
    QByteArray m_bytes;
    QString m_pageInfo;
};

} // namespace kestrum::store
