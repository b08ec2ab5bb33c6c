#pragma once

#include <QList>
#include <QLocale>
#include <QString>

namespace kestrum::timeline {

// The scale's date-time format texts: yyyy, yy, mmmm, mmm, mm/m (minutes right after an hour
// token), dd/d, hh/h, nn/n, ss/s; anything else stands as written.
class DateFormat
{
public:
    // One piece of a format: a token in Qt's date-time syntax ("MMM", "mm"), or literal text.
    struct Piece
    {
        bool token = false;
        QString text;
    };
    static QList<Piece> pieces(const QString& format);
    // The same format in Qt's date-time syntax, literals quoted.
    static QString toQtFormat(const QString& format);
    // A day count shown in `format`.
    static QString format(double dayCount, const QString& format,
                          const QLocale& locale = QLocale::system());
    // The user's short date format, in the scale's tokens ("dd/MM/yyyy" -> "dd/mm/yyyy").
    static QString shortDateFormat(const QLocale& locale = QLocale::system());
};

} // namespace kestrum::timeline
