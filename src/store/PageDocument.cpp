#include "PageDocument.h"

namespace kestrum::store {

PageDocument::~PageDocument() = default;

Status PageDocument::importFile(const QString& path)
{
    return fail(QStringLiteral("Cannot import \"%1\": %2 pages cannot read outside files")
                    .arg(path, editorKindName(kind())));
}

bool PageDocument::storesImportImmediately(const QString&) const
{
    return true;
}

void PageDocument::setPageInfo(const QString&) {}

} // namespace kestrum::store
