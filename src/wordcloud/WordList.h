#pragma once

#include "common/Result.h"

#include <QList>
#include <QString>
#include <QStringList>

class QIODevice;

namespace kestrum::wordcloud {

// A word list as tab-separated text, one "word<TAB>weight" per line (UTF-8, any line ends).
// The reader only splits and parses: which words a cloud accepts is AddWord's decision.
class WordList
{
public:
    static constexpr qint64 kMaxBytes = 16 * 1024 * 1024;
    static constexpr int kMaxEntries = 100000;

    struct Entry
    {
        QString text;  // trimmed; may be empty
        qint32 weight; // clamped to the 32-bit range; may be 0 or negative
        int line;      // 1-based
    };

    struct Result
    {
        QList<Entry> entries;
        QStringList warnings; // lines left out, and why
    };

    // Fails only when the bytes cannot be read at all (too large).
    static kestrum::Result<Result> read(QIODevice& device);
};

} // namespace kestrum::wordcloud
