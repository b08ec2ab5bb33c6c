#pragma once

#include "cli/HeadlessDocuments.h"
#include "store/TRMData.h"

namespace kestrum::cli {

struct CliIo;

// A store with headless page documents, its warnings going to standard error.
class ProjectSession
{
public:
    explicit ProjectSession(CliIo* io = nullptr);
    ~ProjectSession();

    store::TRMData& data() { return m_data; }
    HeadlessDocuments& documents() { return m_documents; }
    // Opens the project as the desktop does (which takes in any pending hand-off).
    store::TRMData& open(const QString& path);

private:
    HeadlessDocuments m_documents;
    store::TRMData m_data;
};

} // namespace kestrum::cli
