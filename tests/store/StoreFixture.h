#pragma once

// Helpers shared by the store tests: a store with raw page documents for every kind, a fixed
// clock, and direct access to project files the way a host program has it.

#include "ResultChecks.h"
#include "common/Result.h"
#include "export/PageExports.h"
#include "store/PageKind.h"
#include "store/PageTable.h"
#include "store/RawPageDocument.h"
#include "store/SqliteDatabase.h"
#include "store/TRMData.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <memory>

namespace kestrum::test {

// 46000.5 is 9 December 2025, 12:00.
constexpr double kFixedNow = 46000.5;

class StoreWithDocuments
{
public:
    StoreWithDocuments()
    {
        // The program's page kinds (file rules, missing-page rules) over raw documents.
        store::PageKindTable kinds;
        for (store::PageKind entry : exports::pageKindTable().kinds()) {
            const store::EditorKind kind = entry.kind;
            m_documents[std::size_t(kind)] = std::make_unique<store::RawPageDocument>(kind);
            entry.makeDocument = [kind] { return std::make_unique<store::RawPageDocument>(kind); };
            kinds.add(entry);
        }
        data.setPageKinds(kinds);
        data.setClock([] { return kFixedNow; });
    }

    store::RawPageDocument& document(store::EditorKind kind)
    {
        return *m_documents[std::size_t(kind)];
    }

    store::TRMData data;

private:
    std::array<std::unique_ptr<store::RawPageDocument>, store::kEditorKindCount> m_documents;
};

// A second connection to a project file, as the host program holds it.
class HostConnection
{
public:
    explicit HostConnection(const QString& path)
    {
        KREQUIRE_OK(db.open(path, store::SqliteDatabase::OpenMode::ReadWrite));
        table = std::make_unique<store::PageTable>(db);
    }
    store::SqliteDatabase db;
    std::unique_ptr<store::PageTable> table;
};

inline QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        f.write(bytes);
    }
}

} // namespace kestrum::test
