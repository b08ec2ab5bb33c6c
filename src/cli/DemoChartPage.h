#pragma once

#include <QByteArray>

namespace kestrum::cli {

// The demo report's chart page: code frequencies per interview group, as grouped bars (the
// chart stream).
QByteArray demoChartPage();

} // namespace kestrum::cli
