#include "DemoCloudPage.h"

#include "cli/CloudPages.h"
#include "cli/CommandTable.h"
#include "wordcloud/TprWordCloud.h"
#include "wordcloud/WordList.h"

#include <QFile>

// The demo content is compiled into the command-line library; its resources need an explicit
// start.
static void initDemoCloudResources()
{
    Q_INIT_RESOURCE(demo);
}

namespace kestrum::cli {

namespace {

const QSize kDemoCloudSize(760, 520);
constexpr quint64 kDemoSeed = 2026;
constexpr quint8 kDemoPalette = 12;

} // namespace

store::OutlineNode* DemoCloudPage::add(store::TRMData& data, store::OutlineNode* parent)
{
    initDemoCloudResources();
    QFile file(QStringLiteral(":/demo/words.tsv"));
    if (!file.open(QIODevice::ReadOnly)) {
        throw CliError{kExitBadInput, QStringLiteral("the demo resource words.tsv is missing")};
    }
    const auto list = wordcloud::WordList::read(file);
    if (!list) {
        throw CliError{kExitBadInput, QStringLiteral("words.tsv: %1").arg(list.error())};
    }
    wordcloud::TprWordCloud cloud;
    cloud.SetClientSize(kDemoCloudSize);
    cloud.SetRandomSeed(kDemoSeed);
    cloud.SetUsePalette(true);
    cloud.SetPalette(kDemoPalette);
    for (const wordcloud::WordList::Entry& entry : list->entries) {
        cloud.AddWord(entry.text, entry.weight);
    }
    cloud.GenerateCloud(true);
    return CloudPages::append(
        data, parent, QStringLiteral("Words of the coded passages"),
        QStringLiteral("Word cloud\tInterviews 2026\tWords of the coded passages\t%1")
            .arg(cloud.WordCount()),
        cloud);
}

} // namespace kestrum::cli
