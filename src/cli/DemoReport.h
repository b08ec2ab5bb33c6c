#pragma once

#include <QString>

namespace kestrum::store {
class TRMData;
}

namespace kestrum::cli {

// Builds the demo report: what an analyst's project looks like after a few weeks with the
// host application, with content in every page kind the program has.
class DemoReport
{
public:
    // Creates the project file anew (DBCreate) and fills it; the store is left open.
    static void build(store::TRMData& data, const QString& fileName);
};

} // namespace kestrum::cli
