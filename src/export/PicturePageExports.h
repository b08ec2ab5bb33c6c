#pragma once

#include "export/PageExports.h"

#include <QImage>

namespace kestrum::exports {

// The report-wide exports of the kinds that show one picture (image and timeline pages).
class PicturePageExports
{
public:
    // An <IMG> referring to a PNG file of the picture, placed in the fragment's files.
    static Result<HtmlFragment> html(const QImage& picture, const PageSource& page,
                                     const HtmlFragmentOptions& options, const QString& baseName);
    // An RTF document holding the picture as PNG (\pict\pngblip, hexadecimal).
    static Result<QByteArray> rtf(const QImage& picture);
};

} // namespace kestrum::exports
