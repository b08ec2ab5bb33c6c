#include "GridNumberFormat.h"

#include <QLocale>
#include <QRegularExpression>

namespace kestrum::grid {

QString GridNumberFormat::displayText(const QString& text)
{
    // A float: digits with a decimal separator (the point or the user's own) or an exponent.
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*([+-]?)(\\d*)(?:([.,])(\\d*))?(?:[eE]([+-]?\\d{1,3}))?\\s*$"));
    const QRegularExpressionMatch m = pattern.match(text);
    if (!m.hasMatch()) {
        return text;
    }
    const QString whole = m.captured(2);
    const QString fraction = m.captured(4);
    const bool hasSeparator = m.capturedLength(3) > 0;
    const bool hasExponent = m.capturedLength(5) > 0;
    if (whole.isEmpty() && fraction.isEmpty()) {
        return text;
    }
    if (!hasSeparator && !hasExponent) {
        return text; // a whole number
    }
    const QLocale locale = QLocale::system();
    if (hasSeparator && m.captured(3) != QStringLiteral(".") &&
        m.captured(3) != locale.decimalPoint()) {
        return text; // "1,5" where the comma is not the decimal separator
    }
    QString normal = m.captured(1) + (whole.isEmpty() ? QStringLiteral("0") : whole);
    if (!fraction.isEmpty()) {
        normal += QLatin1Char('.') + fraction;
    }
    if (hasExponent) {
        normal += QLatin1Char('e') + m.captured(5);
    }
    bool ok = false;
    const double value = QLocale::c().toDouble(normal, &ok);
    if (!ok) {
        return text;
    }
    // "%.2f": no thousands separators, the user's decimal separator.
    QString shown = QLocale::c().toString(value, 'f', kDecimals);
    shown.replace(QLatin1Char('.'), locale.decimalPoint());
    return shown;
}

} // namespace kestrum::grid
