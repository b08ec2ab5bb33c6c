#pragma once

#include "common/Result.h"
#include "store/OutlineNode.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"

#include <memory>

namespace kestrum::store {

// A project file opened only to read it: checked like on opening, its outline read, nothing
// written and no hand-off taken in. For tools, exports and tests.
class ProjectReader
{
public:
    ProjectReader() = default;
    // Opens the file read-only and reads its outline; fails when it is not a usable project.
    Status open(const QString& path);

    const QString& path() const { return m_db.path(); }
    PageTable& table() { return *m_table; }
    // The stored outline; null when the file has none yet.
    const OutlineNode* outline() const { return m_outline.get(); }

private:
    SqliteDatabase m_db;
    std::unique_ptr<PageTable> m_table;
    std::unique_ptr<OutlineNode> m_outline;
};

} // namespace kestrum::store
