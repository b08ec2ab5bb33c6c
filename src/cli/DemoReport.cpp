#include "DemoReport.h"

#include "cli/CommandTable.h"
#include "cli/ProjectSession.h"
#include "common/Colour.h"
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
        throw CliError{kExitBadInput, QStringLiteral("the demo resource %1 is missing").arg(QLatin1String(name))};
    }
    return file.readAll();
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
        const qint32 id = m_data.appendRecord(type, info.isEmpty() ? title : info, content, comment);
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
    data.DBCreate(fileName);
    store::OutlineModel& outline = data.outline();
    OutlineNode* root = outline.root();

    // The new project's two empty documents make way for the report.
    while (root->hasChildren()) {
        OutlineNode* node = root->childAt(0);
        data.DeleteRecord(node->data());
        outline.removeNode(node);
    }
    outline.setCaption(root, QStringLiteral("Remote work and team cohesion"));

    DemoBuilder demo(data);
    OutlineNode* summary =
        demo.page(root, PageType::Text, QStringLiteral("Summary of findings"), demoResource("summary.rtf"),
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

    OutlineNode* figures = demo.folder(root, QStringLiteral("Tables and figures"));
    demo.page(figures, PageType::TextVariant6, QStringLiteral("Codebook (excerpt)"),
              demoResource("codebook.rtf"), QStringLiteral("Frequencies after the focused coding cycle."));
    demo.page(figures, PageType::Text, QStringLiteral("Isolation by date of joining"),
              demoResource("isolation-figure.rtf"),
              QStringLiteral("Figure drafted for the steering group; the hidden note in the text "
                             "lists what to check first."));

    OutlineNode* method = demo.folder(root, QStringLiteral("Method"));
    OutlineNode* notes = demo.page(method, PageType::Text, QStringLiteral("Sampling and coding notes"),
                                   demoResource("method.rtf"));
    demo.mark(notes, common::clBlue);

    outline.setExpanded(root, true);
    outline.setSelected(summary);
    data.SaveTree();
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
