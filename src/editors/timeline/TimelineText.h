#pragma once

#include "common/Result.h"
#include "editors/timeline/TimelineModel.h"

#include <QByteArray>
#include <QString>

namespace kestrum::timeline {

// Bounds on what one page text may make the reader allocate.
struct TimelineTextLimits
{
    qsizetype maxChars = 64 * 1024 * 1024;
    qsizetype maxEvents = 200000;
};

// The timeline page's stored text: keyed lines of TAB-separated fields, CR LF between lines.
// The writer and the reader are not each other's inverse on purpose (image index, annotation
// colour, rounding and fonts do not come back); see docs/formats.md.
class TimelineText
{
public:
    // The page text of `model` (its events and link list included).
    static QString SaveTimeLineToString(const TimelineModel& model);
    // Empties the events and the link list of `model`, then applies `text`. A number or colour
    // that does not convert stops the load with an error; the lines before it stay applied.
    static Status LoadTimeLinefromString(TimelineModel& model, const QString& text,
                                         const TimelineTextLimits& limits = {});

    // The same through a text file (UTF-8 written; read as for page content).
    static Status SaveTimeLineToFile(const TimelineModel& model, const QString& fileName);
    static Status LoadTimeLineFromFile(TimelineModel& model, const QString& fileName,
                                       const TimelineTextLimits& limits = {});

    // Page content bytes <-> text: UTF-8 out; in, UTF-8 (a byte-order mark is skipped) or,
    // when the bytes are not UTF-8, Latin-1 as older hosts wrote.
    static QByteArray encode(const QString& text);
    static QString decode(const QByteArray& bytes);

    // " Segoe UI Bold 9": a blank, the name, " Bold", " Italic", a blank and the point size.
    static QString fontText(const FontStyle& font);
    // Field n (1 to 255) of a line; fields past the last TAB are empty.
    static QString field(const QString& line, int n);
    // Replaces every occurrence of `what`, first to last, but only once when `with` contains
    // `what` itself.
    static QString replaceAll(QString text, const QString& what, const QString& with);
    // General floating-point text, 15 significant digits, the system's decimal separator.
    static QString floatText(double value);
    // The reverse; false for anything that is not a finite number.
    static bool readFloat(const QString& text, double* value);
};

} // namespace kestrum::timeline
