#include "Colour.h"

#include <QGuiApplication>
#include <QPalette>

#include <array>

namespace kestrum::common {

namespace {

struct NamedColour
{
    const char* name;
    TColor value;
};

constexpr std::array<NamedColour, 22> kStandardColours{{
    {"clBlack", clBlack},
    {"clMaroon", clMaroon},
    {"clGreen", clGreen},
    {"clOlive", clOlive},
    {"clNavy", clNavy},
    {"clPurple", clPurple},
    {"clTeal", clTeal},
    {"clGray", clGray},
    {"clSilver", clSilver},
    {"clRed", clRed},
    {"clLime", clLime},
    {"clYellow", clYellow},
    {"clBlue", clBlue},
    {"clFuchsia", clFuchsia},
    {"clAqua", clAqua},
    {"clWhite", clWhite},
    {"clMoneyGreen", clMoneyGreen},
    {"clSkyBlue", clSkyBlue},
    {"clCream", clCream},
    {"clMedGray", clMedGray},
    {"clNone", clNone},
    {"clDefault", clDefault},
}};

constexpr std::array<const char*, 0x1F> kSystemColourNames{
    "clScrollBar",
    "clBackground",
    "clActiveCaption",
    "clInactiveCaption",
    "clMenu",
    "clWindow",
    "clWindowFrame",
    "clMenuText",
    "clWindowText",
    "clCaptionText",
    "clActiveBorder",
    "clInactiveBorder",
    "clAppWorkSpace",
    "clHighlight",
    "clHighlightText",
    "clBtnFace",
    "clBtnShadow",
    "clGrayText",
    "clBtnText",
    "clInactiveCaptionText",
    "clBtnHighlight",
    "cl3DDkShadow",
    "cl3DLight",
    "clInfoText",
    "clInfoBk",
    nullptr,
    "clHotLight",
    "clGradientActiveCaption",
    "clGradientInactiveCaption",
    "clMenuHighlight",
    "clMenuBar",
};

QColor systemToQColor(int index, const QPalette& p)
{
    switch (index) {
    case 0x00:
        return p.color(QPalette::Button); // scroll bar
    case 0x01:
        return p.color(QPalette::Window); // desktop
    case 0x02:
        return p.color(QPalette::Highlight); // active caption
    case 0x03:
        return p.color(QPalette::Inactive, QPalette::Highlight);
    case 0x04:
        return p.color(QPalette::Window); // menu
    case 0x05:
        return p.color(QPalette::Base); // window
    case 0x06:
        return p.color(QPalette::Shadow); // window frame
    case 0x07:
        return p.color(QPalette::WindowText); // menu text
    case 0x08:
        return p.color(QPalette::Text); // window text
    case 0x09:
        return p.color(QPalette::HighlightedText); // caption text
    case 0x0A:
        return p.color(QPalette::Mid); // active border
    case 0x0B:
        return p.color(QPalette::Midlight); // inactive border
    case 0x0C:
        return p.color(QPalette::Dark); // application workspace
    case 0x0D:
        return p.color(QPalette::Highlight);
    case 0x0E:
        return p.color(QPalette::HighlightedText);
    case 0x0F:
        return p.color(QPalette::Button); // button face
    case 0x10:
        return p.color(QPalette::Dark); // button shadow
    case 0x11:
        return p.color(QPalette::Disabled, QPalette::Text);
    case 0x12:
        return p.color(QPalette::ButtonText);
    case 0x13:
        return p.color(QPalette::Inactive, QPalette::HighlightedText);
    case 0x14:
        return p.color(QPalette::Light); // button highlight
    case 0x15:
        return p.color(QPalette::Shadow);
    case 0x16:
        return p.color(QPalette::Midlight);
    case 0x17:
        return p.color(QPalette::ToolTipText);
    case 0x18:
        return p.color(QPalette::ToolTipBase);
    case 0x1A:
        return p.color(QPalette::Link); // hot light
    case 0x1B:
        return p.color(QPalette::Highlight);
    case 0x1C:
        return p.color(QPalette::Inactive, QPalette::Highlight);
    case 0x1D:
        return p.color(QPalette::Highlight); // menu highlight
    case 0x1E:
        return p.color(QPalette::Window); // menu bar
    default:
        return p.color(QPalette::Window);
    }
}

} // namespace

bool isSystemColour(TColor colour)
{
    return (quint32(colour) & 0xFF000000u) == 0xFF000000u;
}

QColor toQColor(TColor colour, const QPalette* palette)
{
    if (colour == clNone || colour == clDefault) {
        return {};
    }
    if (isSystemColour(colour)) {
        const QPalette p = palette ? *palette
                                   : (qobject_cast<QGuiApplication*>(QCoreApplication::instance())
                                          ? QGuiApplication::palette()
                                          : QPalette());
        return systemToQColor(int(quint32(colour) & 0xFF), p);
    }
    return QColor(redOf(colour), greenOf(colour), blueOf(colour));
}

TColor fromQColor(const QColor& colour)
{
    if (!colour.isValid()) {
        return clNone;
    }
    const QColor rgb = colour.toRgb();
    return rgbColour(rgb.red(), rgb.green(), rgb.blue());
}

QString colourToString(TColor colour)
{
    for (const auto& named : kStandardColours) {
        if (named.value == colour) {
            return QString::fromLatin1(named.name);
        }
    }
    if (isSystemColour(colour)) {
        const quint32 index = quint32(colour) & 0xFFFFFFu;
        if (index < kSystemColourNames.size() && kSystemColourNames[index]) {
            return QString::fromLatin1(kSystemColourNames[index]);
        }
    }
    return QStringLiteral("$%1").arg(quint32(colour), 8, 16, QLatin1Char('0')).toUpper();
}

bool colourFromString(const QString& text, TColor* colour)
{
    const QString t = text.trimmed();
    if (t.isEmpty()) {
        return false;
    }
    for (const auto& named : kStandardColours) {
        if (t.compare(QLatin1String(named.name), Qt::CaseInsensitive) == 0) {
            *colour = named.value;
            return true;
        }
    }
    for (std::size_t i = 0; i < kSystemColourNames.size(); ++i) {
        if (kSystemColourNames[i] &&
            t.compare(QLatin1String(kSystemColourNames[i]), Qt::CaseInsensitive) == 0) {
            *colour = systemColour(int(i));
            return true;
        }
    }
    bool ok = false;
    if (t.startsWith(QLatin1Char('$'))) {
        const quint32 v = t.mid(1).toUInt(&ok, 16);
        if (ok && t.size() <= 9) {
            *colour = TColor(v);
            return true;
        }
        return false;
    }
    if (t.startsWith(QLatin1Char('#')) && t.size() == 7) {
        const QColor c(t);
        if (c.isValid()) {
            *colour = fromQColor(c);
            return true;
        }
        return false;
    }
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        const quint32 v = t.mid(2).toUInt(&ok, 16);
        if (ok) {
            *colour = TColor(v);
        }
        return ok;
    }
    const qint64 v = t.toLongLong(&ok);
    if (ok && v >= std::numeric_limits<qint32>::min() && v <= std::numeric_limits<quint32>::max()) {
        *colour = TColor(quint32(v));
        return true;
    }
    return false;
}

const std::array<TColor, 20>& standardPalette()
{
    static constexpr std::array<TColor, 20> kPalette{
        clBlack, clMaroon, clGreen,      clOlive,   clNavy,   clPurple,  clTeal,
        clGray,  clSilver, clRed,        clLime,    clYellow, clBlue,    clFuchsia,
        clAqua,  clWhite,  clMoneyGreen, clSkyBlue, clCream,  clMedGray,
    };
    return kPalette;
}

} // namespace kestrum::common
