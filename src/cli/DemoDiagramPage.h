#pragma once

#include <QByteArray>

namespace kestrum::cli {

// The demo report's concept diagram: one target theme, the themes that lead to it (level 1)
// and the codes under those (level 2), joined by links that carry their weights.
QByteArray demoConceptDiagram();

} // namespace kestrum::cli
