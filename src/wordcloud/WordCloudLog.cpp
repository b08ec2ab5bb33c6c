#include "WordCloudLog.h"

namespace kestrum::wordcloud {

Q_LOGGING_CATEGORY(lcWordCloud, "kestrum.wordcloud", QtInfoMsg)

} // namespace kestrum::wordcloud
