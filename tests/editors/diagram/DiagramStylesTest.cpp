// Block styles: the settings file (defaults, the two cross-overs on reading, damaged values),
// applying styles to groups of blocks and links, and the grouping read from the links.

#include "DiagramSamples.h"
#include "common/IniFile.h"
#include "editors/diagram/DiagramBlockStyles.h"
#include "editors/diagram/DiagramDocument.h"

#include <QTemporaryDir>
#include <QTest>

using namespace kestrum::diagram;
using kestrum::common::IniFile;

namespace {

// Every value different from the defaults and from the other groups.
DiagramBlockStyles distinctStyles()
{
    DiagramBlockStyles s;
    for (int g = 0; g < 3; ++g) {
        BlockStyle& b = s.groups()[std::size_t(g)];
        b.size = 40 + g;
        b.shapeIndex = g + 1;
        b.colour = 0x101010 * (g + 1);
        b.font = DiagramFont{QStringLiteral("Font %1").arg(g), 9 + g, quint8(1 << g), 0x20 + g};
    }
    s.links().font = DiagramFont{QStringLiteral("Link font"), 7, FontStyle::StrikeOut, 0x00AA00};
    s.links().penStyle = PenStyle::Dot;
    return s;
}

} // namespace

class DiagramStylesTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private slots:
    void missingFileReadsTheDefaults()
    {
        DiagramBlockStyles s = distinctStyles();
        s.ReadSettings(m_dir.filePath(QStringLiteral("none.ini")));
        const std::array<int, 3> colours{255, 14325852, 12639424};
        for (int g = 0; g < 3; ++g) {
            const BlockStyle& b = s.groups()[std::size_t(g)];
            QCOMPARE(b.size, 30);
            QCOMPARE(b.shapeIndex, 1);
            QCOMPARE(b.font, (DiagramFont{QStringLiteral("Segoe UI"), 8, 0, 0}));
            QCOMPARE(b.colour, colours[std::size_t(g)]);
        }
        QCOMPARE(s.links().font, (DiagramFont{QStringLiteral("Segoe UI"), 6, 0, 0}));
        QCOMPARE(s.links().penStyle, 0);
        QVERIFY(s == DiagramBlockStyles());
    }

    void savedStylesReadBackWithTheTwoCrossOvers()
    {
        const QString file = m_dir.filePath(QStringLiteral("styles.ini"));
        const DiagramBlockStyles saved = distinctStyles();
        QVERIFY(saved.SaveSettings(file).ok());

        // Written to their own sections...
        IniFile ini(file);
        QVERIFY(ini.load());
        QCOMPARE(ini.readInteger(QStringLiteral("Level2Blocks"), QStringLiteral("FontStyle"), -1),
                 4);
        QCOMPARE(ini.readInteger(QStringLiteral("LinksOptions"), QStringLiteral("FontStyle"), -1),
                 8);
        QCOMPARE(ini.readInteger(QStringLiteral("TargetBlocks"), QStringLiteral("Color"), -1),
                 0x101010);
        QCOMPARE(ini.readString(QStringLiteral("Level1Blocks"), QStringLiteral("FontName")),
                 QStringLiteral("Font 1"));

        // ...but read from level 1's and the targets' sections.
        DiagramBlockStyles read;
        read.ReadSettings(file);
        DiagramBlockStyles expected = saved;
        expected.groups()[DiagramBlockStyles::kLevel2].font.style = 2; // level 1's
        expected.links().font.style = 1;                               // the targets'
        QCOMPARE(read.groups()[2].font.style, quint8(2));
        QCOMPARE(read.links().font.style, quint8(1));
        QVERIFY(read == expected);
    }

    void savingKeepsOtherSections()
    {
        const QString file = m_dir.filePath(QStringLiteral("shared.ini"));
        IniFile other(file);
        other.writeString(QStringLiteral("OPTIONS"), QStringLiteral("Language"),
                          QStringLiteral("FR"));
        QVERIFY(other.save());
        QVERIFY(distinctStyles().SaveSettings(file).ok());
        IniFile ini(file);
        QVERIFY(ini.load());
        QCOMPARE(ini.readString(QStringLiteral("OPTIONS"), QStringLiteral("Language")),
                 QStringLiteral("FR"));
    }

    void damagedSettingsReadAsDefaultsAndApplySafely()
    {
        const QString file = m_dir.filePath(QStringLiteral("damaged.ini"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("[TargetBlocks]\nSize=big\nShape=7\nFontSize=-4\n\x01\x02garbage\n"
                "[Level1Blocks]\nSize=-20\nColor=12x\n[LinksOptions]\nStyle=42\n");
        f.close();
        DiagramBlockStyles s;
        s.ReadSettings(file);
        QCOMPARE(s.groups()[0].size, 30);         // not a number: the default
        QCOMPARE(s.groups()[0].shapeIndex, 7);    // a number, out of the list
        QCOMPARE(s.groups()[1].colour, 14325852); // not a number
        DiagramDocument d = kestrum::test::sampleRing();
        BlockGroups groups;
        groups.blocks[0] = {0};
        groups.blocks[1] = {1, 99, -1}; // indices outside the diagram are passed over
        s.apply(d, groups);
        QCOMPARE(d.blocks()[0].shape, BlockShape::Ellipse); // unknown index: ellipse
        QCOMPARE(d.blocks()[0].cells.front().font.size, 1); // brought into range
        QCOMPARE(d.blocks()[1].width, 0.0);                 // a negative size: none
        QCOMPARE(d.links()[0].style, PenStyle::Solid);
    }

    void applyStylesGroupsThenEveryLink()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        d.links()[1].style = PenStyle::Dash;
        DiagramBlockStyles s = distinctStyles();
        s.groups()[2].shapeIndex = -1; // no shape chosen
        BlockGroups groups;
        groups.blocks[0] = {2};
        groups.blocks[2] = {0, 3};
        s.apply(d, groups);
        QCOMPARE(d.blocks()[2].width, 40.0);
        QCOMPARE(d.blocks()[2].height, 40.0);
        QCOMPARE(d.blocks()[2].shape, BlockShape::Ellipse); // index 1
        QCOMPARE(d.blocks()[2].colour, 0x101010);
        QCOMPARE(d.blocks()[2].cells.front().font, s.groups()[0].font);
        QCOMPARE(d.blocks()[2].cells.front().text, QStringLiteral("C")); // texts stay
        QCOMPARE(d.blocks()[0].shape, BlockShape::Ellipse);              // no selection
        QCOMPARE(d.blocks()[3].width, 42.0);
        QCOMPARE(d.blocks()[1], kestrum::test::sampleRing().blocks()[1]); // in no group
        for (const DiagramLink& l : d.links()) {
            QCOMPARE(l.style, PenStyle::Dot);
            QCOMPARE(l.cells.front().font, s.links().font);
        }
    }

    void shapeIndicesMapToShapes()
    {
        QCOMPARE(DiagramBlockStyles::shapeForIndex(0), BlockShape::Rectangle);
        QCOMPARE(DiagramBlockStyles::shapeForIndex(1), BlockShape::Ellipse);
        QCOMPARE(DiagramBlockStyles::shapeForIndex(2), BlockShape::Diamond);
        QCOMPARE(DiagramBlockStyles::shapeForIndex(3), BlockShape::RoundSquare);
        QCOMPARE(DiagramBlockStyles::shapeForIndex(-1), BlockShape::Ellipse);
    }

    void emptyGroupsChangeOnlyTheLinks()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        const DiagramDocument before = d;
        distinctStyles().apply(d, BlockGroups{});
        QCOMPARE(d.blocks(), before.blocks());
        QCOMPARE(d.links()[0].style, PenStyle::Dot);
    }

    void groupsFollowTheLinks()
    {
        // 0 target; 1, 2 lead to it; 3 leads to 1; 4 leads to 3 (level 3: no group); 5 alone.
        DiagramDocument d;
        for (int i = 0; i < 6; ++i) {
            d.blocks().push_back(kestrum::test::sampleBlock(QString::number(i), i * 10, 0));
        }
        for (auto [s, t] : {std::pair{1, 0}, {2, 0}, {3, 1}, {4, 3}, {0, 0}}) {
            d.links().push_back(kestrum::test::sampleLink(s, t));
        }
        const BlockGroups g = DiagramBlockStyles::groupsOf(d);
        QCOMPARE(g.blocks[0], (std::vector<int>{0}));
        QCOMPARE(g.blocks[1], (std::vector<int>{1, 2}));
        QCOMPARE(g.blocks[2], (std::vector<int>{3}));
        // A ring has no block that leads nowhere: no groups.
        const BlockGroups ring = DiagramBlockStyles::groupsOf(kestrum::test::sampleRing());
        QVERIFY(ring.blocks[0].empty() && ring.blocks[1].empty() && ring.blocks[2].empty());
    }
};

QTEST_GUILESS_MAIN(DiagramStylesTest)
#include "DiagramStylesTest.moc"
