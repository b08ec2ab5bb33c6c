#pragma once

#include <QtGlobal>

namespace kestrum::text {

// Paper size and margins of a rich-text document, in twips (1440 per inch). The editor shows
// text in normal (non-page) layout; these values serve printing and the written RTF.
struct PageLayout
{
    // A4 with 2.5 cm margins.
    int paperWidth = 11906;
    int paperHeight = 16838;
    int marginLeft = 1417;
    int marginRight = 1417;
    int marginTop = 1417;
    int marginBottom = 1417;

    static constexpr int kMinPaper = 1440;  // 1 inch
    static constexpr int kMaxPaper = 31680; // 22 inches, the largest RTF page
    bool landscape() const { return paperWidth > paperHeight; }
    int textWidth() const { return paperWidth - marginLeft - marginRight; }

    // Keeps every value within what a page can be: paper between 1 and 22 inches, margins
    // non-negative and leaving at least an inch of text.
    void normalise()
    {
        paperWidth = qBound(kMinPaper, paperWidth, kMaxPaper);
        paperHeight = qBound(kMinPaper, paperHeight, kMaxPaper);
        auto fit = [](int& a, int& b, int paper) {
            a = qMax(0, a);
            b = qMax(0, b);
            const int room = paper - 720;
            if (a + b > room) {
                a = qMin(a, room / 2);
                b = qMin(b, room - a);
            }
        };
        fit(marginLeft, marginRight, paperWidth);
        fit(marginTop, marginBottom, paperHeight);
    }

    friend bool operator==(const PageLayout&, const PageLayout&) = default;
};

} // namespace kestrum::text
