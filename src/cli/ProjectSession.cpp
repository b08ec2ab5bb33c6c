#include "ProjectSession.h"

#include "cli/CommandTable.h"
#include "export/PageExports.h"

namespace kestrum::cli {

ProjectSession::ProjectSession(CliIo* io)
{
    m_data.setPageKinds(exports::pageKindTable());
    if (io) {
        QObject::connect(&m_data, &store::TRMData::warning, &m_data, [io](const QString& message) {
            io->err << "warning: " << message << '\n';
            io->err.flush();
        });
    }
}

ProjectSession::~ProjectSession() = default;

store::TRMData& ProjectSession::open(const QString& path)
{
    checked(m_data.DBOpen(path));
    return m_data;
}

} // namespace kestrum::cli
