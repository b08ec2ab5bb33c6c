#include "DiagramBlockStyles.h"

#include "common/IniFile.h"
#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramStream.h"

#include <algorithm>

namespace kestrum::diagram {

namespace {

const QString kLinksSection = QStringLiteral("LinksOptions");
const QString kDefaultFontName = QStringLiteral("Segoe UI");
constexpr std::array<common::TColor, 3> kDefaultColours{0x0000FF, 0xDA985C, 0xC0DCC0};

} // namespace

DiagramBlockStyles::DiagramBlockStyles()
{
    for (int g = 0; g < 3; ++g) {
        m_groups[std::size_t(g)].colour = kDefaultColours[std::size_t(g)];
    }
}

QString DiagramBlockStyles::sectionOf(int group)
{
    switch (group) {
    case kTargets:
        return QStringLiteral("TargetBlocks");
    case kLevel1:
        return QStringLiteral("Level1Blocks");
    default:
        return QStringLiteral("Level2Blocks");
    }
}

quint8 DiagramBlockStyles::shapeForIndex(int index)
{
    switch (index) {
    case 0:
        return BlockShape::Rectangle;
    case 2:
        return BlockShape::Diamond;
    case 3:
        return BlockShape::RoundSquare;
    default:
        return BlockShape::Ellipse;
    }
}

void DiagramBlockStyles::read(const common::IniFile& ini)
{
    for (int g = 0; g < 3; ++g) {
        const QString section = sectionOf(g);
        BlockStyle& s = m_groups[std::size_t(g)];
        s.size = ini.readInteger(section, QStringLiteral("Size"), 30);
        s.shapeIndex = ini.readInteger(section, QStringLiteral("Shape"), 1);
        s.font.name = ini.readString(section, QStringLiteral("FontName"), kDefaultFontName);
        // Level 2 takes its font style from level 1's section.
        const QString styleSection = g == kLevel2 ? sectionOf(kLevel1) : section;
        s.font.style =
            quint8(ini.readInteger(styleSection, QStringLiteral("FontStyle"), 0) & FontStyle::All);
        s.font.size = ini.readInteger(section, QStringLiteral("FontSize"), 8);
        s.font.colour = ini.readInteger(section, QStringLiteral("FontColor"), 0);
        s.colour =
            ini.readInteger(section, QStringLiteral("Color"), kDefaultColours[std::size_t(g)]);
    }
    m_links.font.name = ini.readString(kLinksSection, QStringLiteral("FontName"), kDefaultFontName);
    // The link font style comes from the targets' section.
    m_links.font.style = quint8(
        ini.readInteger(sectionOf(kTargets), QStringLiteral("FontStyle"), 0) & FontStyle::All);
    m_links.font.size = ini.readInteger(kLinksSection, QStringLiteral("FontSize"), 6);
    m_links.font.colour = ini.readInteger(kLinksSection, QStringLiteral("FontColor"), 0);
    m_links.penStyle = ini.readInteger(kLinksSection, QStringLiteral("Style"), 0);
}

void DiagramBlockStyles::write(common::IniFile& ini) const
{
    for (int g = 0; g < 3; ++g) {
        const QString section = sectionOf(g);
        const BlockStyle& s = m_groups[std::size_t(g)];
        ini.writeInteger(section, QStringLiteral("Size"), s.size);
        ini.writeInteger(section, QStringLiteral("Shape"), s.shapeIndex);
        ini.writeString(section, QStringLiteral("FontName"), s.font.name);
        ini.writeInteger(section, QStringLiteral("FontStyle"), s.font.style);
        ini.writeInteger(section, QStringLiteral("FontSize"), s.font.size);
        ini.writeInteger(section, QStringLiteral("FontColor"), s.font.colour);
        ini.writeInteger(section, QStringLiteral("Color"), s.colour);
    }
    ini.writeString(kLinksSection, QStringLiteral("FontName"), m_links.font.name);
    ini.writeInteger(kLinksSection, QStringLiteral("FontStyle"), m_links.font.style);
    ini.writeInteger(kLinksSection, QStringLiteral("FontSize"), m_links.font.size);
    ini.writeInteger(kLinksSection, QStringLiteral("FontColor"), m_links.font.colour);
    ini.writeInteger(kLinksSection, QStringLiteral("Style"), m_links.penStyle);
}

void DiagramBlockStyles::ReadSettings(const QString& fileName)
{
    common::IniFile ini(fileName);
    static_cast<void>(ini.load()); // a missing or unreadable file reads as the defaults
    read(ini);
}

Status DiagramBlockStyles::SaveSettings(const QString& fileName) const
{
    common::IniFile ini(fileName);
    static_cast<void>(ini.load()); // other sections of the file stay
    write(ini);
    if (const Status saved = ini.save(); !saved) {
        return fail(
            QStringLiteral("cannot write the block styles to %1: %2").arg(fileName, saved.error()));
    }
    return {};
}

void DiagramBlockStyles::apply(DiagramDocument& diagram, const BlockGroups& groups) const
{
    auto& blocks = diagram.blocks();
    for (int g = 0; g < 3; ++g) {
        const BlockStyle& s = m_groups[std::size_t(g)];
        for (int index : groups.blocks[std::size_t(g)]) {
            if (index < 0 || index >= int(blocks.size())) {
                continue;
            }
            DiagramBlock& b = blocks[std::size_t(index)];
            // Values from a damaged settings file are brought within what a diagram holds.
            b.width = std::clamp(double(s.size), 0.0, DiagramStream::kMaxCoordinate);
            b.height = b.width;
            b.shape = shapeForIndex(s.shapeIndex);
            b.colour = s.colour;
            DiagramFont& font = DiagramDocument::firstCell(b.cells).font;
            font = s.font;
            font.size = std::clamp(font.size, 1, DiagramStream::kMaxFontSize);
        }
    }
    const quint8 penStyle = m_links.penStyle >= 0 && m_links.penStyle <= PenStyle::Last
                                ? quint8(m_links.penStyle)
                                : PenStyle::Solid;
    for (DiagramLink& l : diagram.links()) {
        DiagramFont& font = DiagramDocument::firstCell(l.cells).font;
        font = m_links.font;
        font.size = std::clamp(font.size, 1, DiagramStream::kMaxFontSize);
        l.style = penStyle;
    }
}

BlockGroups DiagramBlockStyles::groupsOf(const DiagramDocument& diagram)
{
    const int n = int(diagram.blocks().size());
    std::vector<int> group(std::size_t(n), -1);
    std::vector<bool> hasOut(std::size_t(n), false);
    std::vector<bool> hasIn(std::size_t(n), false);
    const auto valid = [n](int i) { return i >= 0 && i < n; };
    for (const DiagramLink& l : diagram.links()) {
        if (valid(l.source) && valid(l.target) && l.source != l.target) {
            hasOut[std::size_t(l.source)] = true;
            hasIn[std::size_t(l.target)] = true;
        }
    }
    BlockGroups groups;
    for (int i = 0; i < n; ++i) {
        if (hasIn[std::size_t(i)] && !hasOut[std::size_t(i)]) {
            group[std::size_t(i)] = kTargets;
        }
    }
    for (int level = kLevel1; level <= kLevel2; ++level) {
        for (const DiagramLink& l : diagram.links()) {
            if (valid(l.source) && valid(l.target) && group[std::size_t(l.source)] < 0 &&
                group[std::size_t(l.target)] == level - 1) {
                group[std::size_t(l.source)] = level;
            }
        }
    }
    for (int i = 0; i < n; ++i) {
        if (group[std::size_t(i)] >= 0) {
            groups.blocks[std::size_t(group[std::size_t(i)])].push_back(i);
        }
    }
    return groups;
}

} // namespace kestrum::diagram
