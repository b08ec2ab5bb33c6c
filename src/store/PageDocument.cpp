#include "PageDocument.h"

namespace kestrum::store {

PageDocument::~PageDocument() = default;

bool PageDocument::importFile(const QString& path, QString* error)
{
    if (error) {
        *error = QStringLiteral("Cannot import \"%1\": %2 pages cannot read outside files")
                     .arg(path, editorKindName(kind()));
    }
    return false;
}

bool PageDocument::storesImportImmediately(const QString&) const
{
    return true;
}

void PageDocument::setPageInfo(const QString&) {}

} // namespace kestrum::store
