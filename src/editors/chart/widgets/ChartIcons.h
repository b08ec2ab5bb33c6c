#pragma once

#include <QIcon>
#include <QString>

namespace kestrum::chart {

// The chart toolbar's icons, drawn at run time as small glyphs of what each command does.
class ChartIcons
{
public:
    // The icon of the command named `name` ("HBarBtn", "PieBtn"...); a null icon for others.
    static QIcon forCommand(const QString& name);
};

} // namespace kestrum::chart
