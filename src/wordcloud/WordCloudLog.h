#pragma once

#include <QLoggingCategory>

namespace kestrum::wordcloud {

// Debug output of the word cloud engine ("Coverage Too High: ..." when a layout run fails).
// Off by default; QT_LOGGING_RULES="kestrum.wordcloud.debug=true" shows it.
Q_DECLARE_LOGGING_CATEGORY(lcWordCloud)

} // namespace kestrum::wordcloud
