#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace kestrum::text {

struct WordConverterOptions
{
    // The converter program; empty: found on the search path ("soffice", then "libreoffice").
    // The environment variable KESTRUM_SOFFICE, when set, names it instead.
    QString program;
    int timeoutMs = 120000;
    // Called about every 50 ms while the conversion runs (a desktop lets its window repaint).
    std::function<void()> idle;
};

// The word-processor file converter: turns DOC, WPD, HTML and other word-processor files into
// RTF with LibreOffice running headless, in a temporary folder with a private profile, so that
// runs never collide with each other or with the user's own LibreOffice. Without LibreOffice,
// nothing is converted and the error says so.
class WordConverter
{
public:
    explicit WordConverter(WordConverterOptions options = {});

    // The program that would run, or empty when none is installed.
    QString program() const;
    bool isAvailable() const { return !program().isEmpty(); }

    // Converts `sourceFile` to RTF.
    Result<QByteArray> convertToRtf(const QString& sourceFile) const;

    static constexpr qint64 kMaxSourceBytes = qint64(256) * 1024 * 1024;

private:
    WordConverterOptions m_options;
};

} // namespace kestrum::text
