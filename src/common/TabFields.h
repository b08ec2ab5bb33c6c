#pragma once

#include <QString>

namespace kestrum::common {

// Field n (1-based) of a tab-separated text: the n - 1 leading fields are dropped, each up to
// and including its tab (when no tab is left while dropping, the result is empty); the rest
// is cut before its first tab.
QString tabField(const QString& text, int n);

// TAB shown as the two characters "\t" (and backslash doubled), for one-line output.
QString escapeTabs(const QString& text);

} // namespace kestrum::common
