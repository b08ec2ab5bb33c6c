#pragma once

#include "store/PageType.h"

#include <QObject>

#include <array>

namespace kestrum::store {
class PageDocument;
class TRMData;
} // namespace kestrum::store

namespace kestrum::cli {

// One page document per editor kind, without widgets, registered on a store: what the
// command-line tool loads pages into and saves them from.
class HeadlessDocuments : public QObject
{
    Q_OBJECT
public:
    explicit HeadlessDocuments(QObject* parent = nullptr);

    void registerOn(store::TRMData& data) const;
    store::PageDocument* document(store::EditorKind kind) const;

private:
    std::array<store::PageDocument*, store::kEditorKindCount> m_documents{};
};

} // namespace kestrum::cli
