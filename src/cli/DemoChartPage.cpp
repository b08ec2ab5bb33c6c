#include "DemoChartPage.h"

#include "editors/chart/ChartStream.h"

#include <array>

namespace kestrum::cli {

QByteArray demoChartPage()
{
    using namespace chart;
    static constexpr std::array<const char*, 5> codes{"Communication rhythms", "Isolation", "Trust",
                                                      "Belonging", "Tools and channels"};
    struct Group
    {
        const char* name;
        std::array<double, 5> passages;
        common::TColor colour;
    };
    static constexpr std::array<Group, 3> groups{{
        {"Managers", {14, 6, 11, 8, 9}, common::rgbColour(0x4F, 0x81, 0xBD)},
        {"Staff", {22, 17, 9, 13, 15}, common::rgbColour(0xC0, 0x50, 0x4D)},
        {"Newcomers", {9, 21, 5, 19, 4}, common::rgbColour(0x9B, 0xBB, 0x59)},
    }};
    Chart c;
    c.title = QStringLiteral("Code frequencies by interview group");
    c.leftAxis.title = QStringLiteral("Coded passages");
    c.bottomAxis.title = QStringLiteral("Code");
    c.bottomAxis.gridVisible = false;
    c.valueScale = {0, 25, 5};
    for (const Group& g : groups) {
        ChartSeries s;
        s.kind = SeriesKind::Bar;
        s.title = QString::fromLatin1(g.name);
        s.colour = g.colour;
        for (std::size_t i = 0; i < codes.size(); ++i) {
            ChartPoint p;
            p.x = double(i);
            p.y = g.passages[i];
            p.label = QString::fromLatin1(codes[i]);
            s.points.push_back(p);
        }
        c.series.push_back(std::move(s));
    }
    return ChartStream::write(c);
}

} // namespace kestrum::cli
