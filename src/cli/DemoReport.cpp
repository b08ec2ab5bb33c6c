#include "DemoReport.h"

#include "DemoChartPage.h"

#include "cli/CommandTable.h"
#include "cli/DemoCloudPage.h"
#include "cli/DemoDiagramPage.h"
#include "cli/DemoImagePage.h"
#include "cli/DemoTimelinePage.h"
#include "cli/ProjectSession.h"
#include "common/Colour.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/GridStream.h"
#include "store/PageType.h"
#include "store/TRMData.h"

#include <QFile>

// The demo content is compiled into this static library; its resources need an explicit start.
static void initDemoResources()
{
    Q_INIT_RESOURCE(demo);
}

namespace kestrum::cli {

namespace {

using store::OutlineNode;
using store::OutlineNodeData;
namespace PageType = store::PageType;

QByteArray demoResource(const char* name)
{
    initDemoResources();
    QFile file(QStringLiteral(":/demo/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly)) {
        throw CliError{kExitBadInput,
                       QStringLiteral("the demo resource %1 is missing").arg(QLatin1String(name))};
    }
    return file.readAll();
}

// ---- demo tables, as the host hands them over ----------------------------------------------

namespace CellAlignment = grid::CellAlignment;
using grid::GridCellFormat;
using grid::GridDocument;

GridCellFormat headerFormat()
{
    GridCellFormat f;
    f.fontStyle = grid::FontStyle::Bold;
    f.background = common::rgbColour(0xDD, 0xE6, 0xF0);
    f.alignment = CellAlignment::Centre;
    return f;
}

GridDocument tableFrom(const QList<QStringList>& rows, const QList<int>& widths)
{
    GridDocument g;
    g.setSize(int(rows.front().size()), int(rows.size()));
    for (int r = 0; r < g.rowCount(); ++r) {
        g.setRowHeight(r, r == 0 ? GridDocument::kDefaultFixedRowHeight
                                 : GridDocument::kDefaultRowHeight);
        for (int c = 0; c < g.columnCount() && c < rows[r].size(); ++c) {
            g.setText(c, r, rows[r][c]);
        }
    }
    for (int c = 0; c < g.columnCount() && c < widths.size(); ++c) {
        g.setColumnWidth(c, widths[c]);
    }
    for (int c = 0; c < g.columnCount(); ++c) {
        g.setFormat(c, 0, headerFormat());
    }
    return g;
}

void alignNumbers(GridDocument& g, int firstCol)
{
    for (int r = g.fixedRows(); r < g.rowCount(); ++r) {
        for (int c = firstCol; c < g.columnCount(); ++c) {
            GridCellFormat f = g.format(c, r);
            f.alignment = CellAlignment::Right;
            g.setFormat(c, r, f);
        }
    }
}

void boldRow(GridDocument& g, int row)
{
    for (int c = 0; c < g.columnCount(); ++c) {
        GridCellFormat f = g.format(c, row);
        f.fontStyle |= grid::FontStyle::Bold;
        f.background = common::rgbColour(0xF2, 0xF2, 0xF2);
        g.setFormat(c, row, f);
    }
}

// Coded passages per code and organisation (six interviews in each).
QByteArray codeFrequencies()
{
    GridDocument g = tableFrom(
        {
            {"Code", "Logistics", "Software", "Public admin.", "Retail", "Passages", "Documents"},
            {"Communication rhythms", "4", "5", "2", "3", "14", "9"},
            {"Isolation and belonging", "2", "4", "1", "4", "11", "8"},
            {"Informal contact", "3", "4", "3", "2", "12", "10"},
            {"Autonomy", "2", "6", "1", "1", "10", "7"},
            {"Written communication", "1", "5", "3", "0", "9", "6"},
            {"Rituals and routines", "5", "3", "2", "4", "14", "11"},
            {"Trust", "2", "2", "3", "1", "8", "6"},
            {"Workload and calendars", "3", "4", "4", "2", "13", "9"},
            {"Total", "22", "33", "19", "17", "91", "24"},
        },
        {170, 70, 70, 95, 60, 70, 80});
    g.setFixedColumns(1);
    alignNumbers(g, 1);
    boldRow(g, g.rowCount() - 1);
    return grid::GridStream::write(g);
}

// Sense of belonging by whether the team kept a fixed weekly rhythm, with row percentages.
QByteArray belongingCrosstab()
{
    GridDocument g = tableFrom(
        {
            {"Fixed weekly rhythm", "Strong", "%", "Mixed", "%", "Weak", "%", "Total"},
            {"Yes", "12", "70.6%", "4", "23.5%", "1", "5.9%", "17"},
            {"No", "1", "14.3%", "2", "28.6%", "4", "57.1%", "7"},
            {"Total", "13", "54.2%", "6", "25.0%", "5", "20.8%", "24"},
        },
        {130, 55, 60, 55, 60, 55, 60, 50});
    g.setFixedColumns(1);
    alignNumbers(g, 1);
    for (int r = 1; r < g.rowCount(); ++r) {
        for (const int c : {2, 4, 6}) {
            GridCellFormat f = g.format(c, r);
            f.fontColour = common::rgbColour(0x1F, 0x49, 0x7D);
            f.fontStyle |= grid::FontStyle::Italic;
            g.setFormat(c, r, f);
        }
    }
    boldRow(g, g.rowCount() - 1);
    return grid::GridStream::write(g);
}

// Every passage with "quiet": left context, keyword, right context.
QByteArray keywordInContext()
{
    GridDocument g = tableFrom(
        {
            {"Document", "Left context", "Keyword", "Right context"},
            {"Interview 07, par. 31", "I miss the end of the day, when the office went", "quiet",
             "and you knew it was done."},
            {"Interview 14, par. 17", "In the office someone would have asked. Here you just go",
             "quiet", "and nothing happens."},
            {"Interview 02, par. 15", "On video the", "quiet", "ones disappear completely."},
            {"Interview 09, par. 6", "Some weeks are so", "quiet",
             "that I wonder if the team still exists."},
            {"Interview 22, par. 40", "We agreed on a", "quiet",
             "hour with no messages after four."},
        },
        {140, 340, 60, 260});
    for (int r = 1; r < g.rowCount(); ++r) {
        GridCellFormat left = g.format(1, r);
        left.alignment = CellAlignment::Right;
        g.setFormat(1, r, left);
        GridCellFormat key = g.format(2, r);
        key.alignment = CellAlignment::Centre;
        key.fontStyle = grid::FontStyle::Bold;
        key.fontColour = common::rgbColour(0xC0, 0x00, 0x00);
        g.setFormat(2, r, key);
    }
    return grid::GridStream::write(g);
}

class DemoBuilder
{
public:
    explicit DemoBuilder(store::TRMData& data) : m_data(data), m_outline(data.outline()) {}

    OutlineNode* folder(OutlineNode* parent, const QString& caption)
    {
        OutlineNodeData d;
        d.caption = caption;
        d.imageIndex = PageType::Folder;
        d.data = -1;
        d.expanded = true;
        return m_outline.addChild(parent, d);
    }

    // A page as the host hands it over: PageInfo carries the source fields, the title third.
    OutlineNode* page(OutlineNode* parent, qint32 type, const QString& title,
                      const QByteArray& content, const QString& comment = {},
                      const QString& info = {})
    {
        const qint32 id =
            checked(m_data.appendRecord(type, info.isEmpty() ? title : info, content, comment));
        OutlineNodeData d;
        d.caption = title;
        d.imageIndex = type;
        d.data = id;
        return m_outline.addChild(parent, d);
    }

    void mark(OutlineNode* node, common::TColor textColour)
    {
        m_outline.setColours(node, false, textColour, common::clWindow);
    }

private:
    store::TRMData& m_data;
    store::OutlineModel& m_outline;
};

} // namespace

void DemoReport::build(store::TRMData& data, const QString& fileName)
{
    checked(data.DBCreate(fileName));
    store::OutlineModel& outline = data.outline();
    OutlineNode* root = outline.root();

    // The new project's two empty documents make way for the report.
    while (root->hasChildren()) {
        OutlineNode* node = root->childAt(0);
        checked(data.DeleteRecord(node->data()));
        outline.removeNode(node);
    }
    outline.setCaption(root, QStringLiteral("Remote work and team cohesion"));

    DemoBuilder demo(data);
    OutlineNode* summary = demo.page(
        root, PageType::Text, QStringLiteral("Summary of findings"), demoResource("summary.rtf"),
        QStringLiteral("Draft for the steering group, version 2. Check the figures "
                       "against the survey before sending."));
    demo.mark(summary, common::clRed);

    OutlineNode* passages = demo.folder(root, QStringLiteral("Coded passages"));
    demo.page(passages, PageType::TextVariant5, QStringLiteral("Communication rhythms"),
              demoResource("communication.rtf"), QStringLiteral("14 passages, 9 documents"),
              QStringLiteral("Coded segments\tInterviews 2026\tCommunication rhythms\t14"));
    OutlineNode* isolation =
        demo.page(passages, PageType::TextVariant5, QStringLiteral("Isolation and belonging"),
                  demoResource("isolation.rtf"),
                  QStringLiteral("Strongest theme among newcomers; compare with tenure."),
                  QStringLiteral("Coded segments\tInterviews 2026\tIsolation and belonging\t11"));
    demo.mark(isolation, common::clGreen);

    OutlineNode* tables = demo.folder(root, QStringLiteral("Tables"));
    demo.page(
        tables, PageType::Grid, QStringLiteral("Code frequencies by organisation"),
        codeFrequencies(),
        QStringLiteral(
            "Passages coded per organisation; Documents counts interviews with at least one "
            "passage."),
        QStringLiteral("Code frequencies\tInterviews 2026\tCode frequencies by organisation\t8"));
    OutlineNode* crosstab = demo.page(
        tables, PageType::Grid, QStringLiteral("Belonging by weekly rhythm"), belongingCrosstab(),
        QStringLiteral("Row percentages. Small numbers: read as a pattern, not as a rate."),
        QStringLiteral("Crosstab\tInterviews 2026\tBelonging by weekly rhythm\t24"));
    demo.mark(crosstab, common::clGreen);
    demo.page(tables, PageType::Grid, QStringLiteral("Keyword in context: quiet"),
              keywordInContext(), {},
              QStringLiteral("Keyword in context\tInterviews 2026\tKeyword in context: quiet\t5"));

    OutlineNode* figures = demo.folder(root, QStringLiteral("Codebook and figures"));
    demo.page(figures, PageType::TextVariant6, QStringLiteral("Codebook (excerpt)"),
              demoResource("codebook.rtf"),
              QStringLiteral("Frequencies after the focused coding cycle."));
    demo.page(figures, PageType::Text, QStringLiteral("Isolation by date of joining"),
              demoResource("isolation-figure.rtf"),
              QStringLiteral("Figure drafted for the steering group; the hidden note in the text "
                             "lists what to check first."));
    demo.page(figures, PageType::Diagram, QStringLiteral("Concept map: belonging"),
              demoConceptDiagram(),
              QStringLiteral("Link labels are co-occurrence weights of the codes."),
              QStringLiteral("Concept map\tInterviews 2026\tConcept map: belonging\t14"));

    demo.page(
        figures, PageType::Chart, QStringLiteral("Code frequencies by interview group"),
        demoChartPage(),
        QStringLiteral("Grouped bars; swap the series to compare the groups within each code."),
        QStringLiteral("Chart\tInterviews 2026\tCode frequencies by interview group\t3"));
    demo.page(figures, PageType::Image, QStringLiteral("Belonging by tenure (chart snapshot)"),
              demoImageContent(), QStringLiteral("Snapshot of the survey chart, March 2026."));
    demo.page(figures, PageType::Timeline, QStringLiteral("Milestones of the transition"),
              demoTimelineContent(),
              QStringLiteral("From the office move to the survey; links point at the passages."),
              QStringLiteral("Timeline\tInterviews 2026\tMilestones of the transition\t9"));
    DemoCloudPage::add(data, figures);

    OutlineNode* method = demo.folder(root, QStringLiteral("Method"));
    OutlineNode* notes =
        demo.page(method, PageType::Text, QStringLiteral("Sampling and coding notes"),
                  demoResource("method.rtf"));
    demo.mark(notes, common::clBlue);

    outline.setExpanded(root, true);
    outline.setSelected(summary);
    checked(data.SaveTree());
}

namespace {

int runDemo(ArgList& args, CliIo& io)
{
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage, QStringLiteral("demo needs exactly one PROJECT")};
    }
    ProjectSession session(&io);
    DemoReport::build(session.data(), pos[0]);
    session.data().CloseFile();
    return kExitOk;
}

} // namespace

void registerDemoCommand(CommandTable& table)
{
    table.add({QStringLiteral("demo"), QStringLiteral("PROJECT"),
               QStringLiteral("write the demo report into PROJECT (replacing its pages)"), true,
               runDemo});
}

} // namespace kestrum::cli
