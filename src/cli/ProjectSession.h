#pragma once

#include "store/TRMData.h"

namespace kestrum::cli {

struct CliIo;

// A store over the core's page kinds, its warnings going to standard error.
class ProjectSession
{
public:
    explicit ProjectSession(CliIo* io = nullptr);
    ~ProjectSession();

    store::TRMData& data() { return m_data; }
    // Opens the project as the desktop does (which takes in any pending hand-off).
    store::TRMData& open(const QString& path);

private:
    store::TRMData m_data;
};

} // namespace kestrum::cli
