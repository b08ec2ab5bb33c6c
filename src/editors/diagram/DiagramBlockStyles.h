#pragma once

#include "common/Result.h"
#include "editors/diagram/DiagramItems.h"

#include <array>
#include <vector>

namespace kestrum::common {
class IniFile;
}

namespace kestrum::diagram {

class DiagramDocument;

// The styles the block styling dialog gives to three groups of blocks (targets, level 1,
// level 2) and to every link, and the settings file that keeps them.
struct BlockStyle
{
    int size = 30;
    // The shape list's index: 0 "Square", 1 "Circle", 2 "Diamond", 3 "Round Square"; any
    // other value (none chosen) styles blocks as ellipses.
    int shapeIndex = 1;
    common::TColor colour = 0;
    DiagramFont font;

    bool operator==(const BlockStyle&) const = default;
};

struct LinkStyle
{
    DiagramFont font{QStringLiteral("Segoe UI"), 6, 0, 0};
    int penStyle = 0; // the style list's index
    // Shown by the dialog, neither applied nor stored.
    int size = 1;
    common::TColor colour = 0;

    bool operator==(const LinkStyle&) const = default;
};

// Which blocks are targets, level 1 and level 2 (block indices), as the diagram's grouping
// gives them.
struct BlockGroups
{
    std::array<std::vector<int>, 3> blocks;
};

class DiagramBlockStyles
{
public:
    static constexpr int kTargets = 0;
    static constexpr int kLevel1 = 1;
    static constexpr int kLevel2 = 2;

    DiagramBlockStyles();

    std::array<BlockStyle, 3>& groups() { return m_groups; }
    const std::array<BlockStyle, 3>& groups() const { return m_groups; }
    LinkStyle& links() { return m_links; }
    const LinkStyle& links() const { return m_links; }
    bool operator==(const DiagramBlockStyles&) const = default;

    // The section of each group: "TargetBlocks", "Level1Blocks", "Level2Blocks".
    static QString sectionOf(int group);
    // The block shape that a shape list index stands for.
    static quint8 shapeForIndex(int index);

    // Reads the styles; missing keys (or file) give the defaults. The level-2 font style is
    // read from "Level1Blocks" and the link font style from "TargetBlocks", as the format has
    // always done, although both are written to their own sections.
    void read(const common::IniFile& ini);
    void write(common::IniFile& ini) const;
    // The same through a file (`ReadSettings` / `SaveSettings`).
    void ReadSettings(const QString& fileName);
    Status SaveSettings(const QString& fileName) const;

    // Styles each group's blocks (size, square, shape, colour, font), then every link's font
    // and pen style. Indices outside the diagram are passed over.
    void apply(DiagramDocument& diagram, const BlockGroups& groups) const;

    // The grouping read from the links: targets are blocks that links lead to and that lead
    // nowhere, level 1 the blocks with a link to a target, level 2 the blocks with a link to a
    // level-1 block; each block in the first group it qualifies for.
    static BlockGroups groupsOf(const DiagramDocument& diagram);

private:
    std::array<BlockStyle, 3> m_groups;
    LinkStyle m_links;
};

} // namespace kestrum::diagram
