#pragma once

#include <QByteArray>

namespace kestrum::cli {

// The demo report's image page: a figure the host sent as a snapshot (a 24-bit bitmap).
QByteArray demoImageContent();

} // namespace kestrum::cli
