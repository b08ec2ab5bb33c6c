// cloud: lays a word list out as a word cloud and writes it as a picture or a cloud document,
// or renders a stored cloud document again without a new layout.

#include "cli/CloudPages.h"
#include "cli/CommandTable.h"
#include "cli/ProjectSession.h"

#include "common/Colour.h"
#include "common/TabFields.h"
#include "store/OutlineModel.h"
#include "store/TRMData.h"
#include "wordcloud/CloudPalettes.h"
#include "wordcloud/TprWordCloud.h"
#include "wordcloud/WordList.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace kestrum::cli {

namespace {

using wordcloud::TprWordCloud;

constexpr int kMaxSide = 10000;
const QSize kDefaultSize(800, 600);

QSize parseSize(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\d{1,9})[xX](\\d{1,9})$"));
    const QRegularExpressionMatch m = pattern.match(text.trimmed());
    const int w = m.hasMatch() ? m.captured(1).toInt() : 0;
    const int h = m.hasMatch() ? m.captured(2).toInt() : 0;
    if (w < 1 || h < 1 || w > kMaxSide || h > kMaxSide) {
        throw CliError{kExitUsage,
                       QStringLiteral("--size wants WIDTHxHEIGHT, each 1 to %1, not \"%2\"")
                           .arg(kMaxSide)
                           .arg(text)};
    }
    return {w, h};
}

common::TColor parseColour(const QString& text, bool allowNone)
{
    const QString t = text.trimmed();
    if (allowNone && (t.isEmpty() || t.compare(QLatin1String("none"), Qt::CaseInsensitive) == 0)) {
        return common::clNone;
    }
    common::TColor colour = 0;
    if (!common::colourFromString(t, &colour) || colour == common::clNone ||
        colour == common::clDefault) {
        throw CliError{kExitUsage,
                       QStringLiteral("--gradient: \"%1\" is not a colour (use #RRGGBB, "
                                      "$00BBGGRR, a decimal value or a name such as clRed)")
                           .arg(text)};
    }
    return colour;
}

QString coverageText(float coverage)
{
    return QString::number(double(coverage), 'g', 6);
}

void printWarnings(CliIo& io, const QString& source, const QStringList& warnings)
{
    constexpr int kShown = 10;
    for (int i = 0; i < warnings.size() && i < kShown; ++i) {
        io.err << "kestrum-cli cloud: " << source << ": " << warnings[i] << '\n';
    }
    if (warnings.size() > kShown) {
        io.err << "kestrum-cli cloud: " << source << ": " << (warnings.size() - kShown)
               << " more lines left out\n";
    }
}

void writeOutput(TprWordCloud& cloud, const QString& out, const QString& extension)
{
    if (extension == QLatin1String("xml")) {
        if (!cloud.SaveToFile(out)) {
            throw CliError{kExitBadInput, QStringLiteral("cannot write %1").arg(out)};
        }
        return;
    }
    if (const Status saved = cloud.SaveToPictureFile(out, extension); !saved) {
        throw CliError{kExitBadInput, saved.error()};
    }
}

int renderDocument(ArgList& args, CliIo& io, const QString& docFile, const QString& out,
                   const QString& extension)
{
    const std::optional<QString> size = args.takeOption(QStringLiteral("--size"));
    if (!args.positional().isEmpty()) {
        throw CliError{kExitUsage,
                       QStringLiteral("--doc takes no word list and only --out and --size")};
    }
    TprWordCloud cloud;
    // Read without a drawing area first, so that the stored places are kept as they are.
    if (const Status loaded = cloud.LoadFromFile(docFile); !loaded) {
        throw CliError{kExitBadInput, QStringLiteral("%1: %2").arg(docFile, loaded.error())};
    }
    printWarnings(io, docFile, cloud.LoadWarnings());
    const wordcloud::CloudRect stored = cloud.StartingCanvasRect();
    QSize client = kDefaultSize;
    if (size) {
        client = parseSize(*size);
    } else if (stored.width() > 0 && stored.height() > 0) {
        client = QSize(std::clamp(stored.right + cloud.Margins().Right(), 1, kMaxSide),
                       std::clamp(stored.bottom + cloud.Margins().Bottom(), 1, kMaxSide));
    }
    cloud.SetClientSize(client);
    cloud.FitToCanvas(stored);
    writeOutput(cloud, out, extension);
    io.out << cloud.WordCount() << '\t' << cloud.CountVisibleWords() << '\t'
           << coverageText(cloud.Coverage()) << '\t' << "0.0" << '\n';
    return kExitOk;
}

// Appends the laid-out cloud to PROJECT as a word cloud page under node `under`; prints the
// new node as "add" does.
void appendPage(CliIo& io, const TprWordCloud& cloud, const QString& project, int under,
                const QString& title)
{
    ProjectSession session(&io);
    store::TRMData& data = session.open(project);
    store::OutlineNode* parent = data.outline().nodeAt(under);
    if (!parent) {
        throw CliError{kExitBadInput, QStringLiteral("the outline has no node %1").arg(under)};
    }
    store::OutlineNode* node = CloudPages::append(data, parent, title, QString(), cloud);
    io.out << data.outline().indexOf(node) << '\t' << node->level() << '\t' << node->imageIndex()
           << '\t' << node->data() << '\t' << common::escapeTabs(node->caption()) << '\n';
    data.CloseFile();
}

int runCloud(ArgList& args, CliIo& io)
{
    const std::optional<QString> out = args.takeOption(QStringLiteral("--out"));
    const std::optional<QString> page = args.takeOption(QStringLiteral("--page"));
    const std::optional<int> under = args.takeIntOption(QStringLiteral("--under"));
    const std::optional<QString> title = args.takeOption(QStringLiteral("--title"));
    if (!out && !page) {
        throw CliError{kExitUsage, QStringLiteral("--out FILE is required (or --page PROJECT)")};
    }
    if (!page && (under || title)) {
        throw CliError{kExitUsage, QStringLiteral("--under and --title go with --page")};
    }
    const QString extension = out ? QFileInfo(*out).suffix().toLower() : QString();
    static const QStringList known{QStringLiteral("png"), QStringLiteral("bmp"),
                                   QStringLiteral("jpg"), QStringLiteral("jpeg"),
                                   QStringLiteral("svg"), QStringLiteral("xml")};
    if (out && !known.contains(extension)) {
        throw CliError{
            kExitUsage,
            QStringLiteral("--out: the extension chooses the format: .png .bmp .jpg .svg or .xml")};
    }
    if (const std::optional<QString> doc = args.takeOption(QStringLiteral("--doc"))) {
        if (!out || page) {
            throw CliError{kExitUsage, QStringLiteral("--doc goes with --out, not --page")};
        }
        return renderDocument(args, io, *doc, *out, extension);
    }

    TprWordCloud cloud;
    cloud.SetClientSize(kDefaultSize);
    if (const auto size = args.takeOption(QStringLiteral("--size"))) {
        cloud.SetClientSize(parseSize(*size));
    }
    if (const auto coverage = args.takeOption(QStringLiteral("--coverage"))) {
        bool ok = false;
        const double f = coverage->toDouble(&ok);
        if (!ok || !(f >= 0.01 && f <= 1.0)) {
            throw CliError{kExitUsage,
                           QStringLiteral("--coverage wants a fraction from 0.01 to 1, not \"%1\"")
                               .arg(*coverage)};
        }
        cloud.SetCoverage(float(f));
    }
    if (const auto shape = args.takeOption(QStringLiteral("--shape"))) {
        if (*shape == QLatin1String("rect")) {
            cloud.SetCloudShape(TprWordCloud::Rectangle);
        } else if (*shape == QLatin1String("ellipse")) {
            cloud.SetCloudShape(TprWordCloud::Ellipse);
        } else {
            throw CliError{kExitUsage,
                           QStringLiteral("--shape is rect or ellipse, not \"%1\"").arg(*shape)};
        }
    }
    if (args.takeFlag(QStringLiteral("--random"))) {
        cloud.SetPlaceCenter(false);
    }
    const std::optional<int> palette = args.takeIntOption(QStringLiteral("--palette"));
    const std::optional<QString> gradient = args.takeOption(QStringLiteral("--gradient"));
    if (palette && gradient) {
        throw CliError{kExitUsage, QStringLiteral("--palette and --gradient exclude each other")};
    }
    if (palette) {
        if (*palette < 0 || *palette >= wordcloud::CloudPalettes::kBuiltInCount) {
            throw CliError{kExitUsage, QStringLiteral("--palette is a number from 0 to %1")
                                           .arg(wordcloud::CloudPalettes::kBuiltInCount - 1)};
        }
        cloud.SetUsePalette(true);
        cloud.SetPalette(quint8(*palette));
    }
    if (gradient) {
        const QStringList parts = gradient->split(QLatin1Char(','));
        if (parts.size() != 3) {
            throw CliError{
                kExitUsage,
                QStringLiteral("--gradient wants START,MIDDLE,END (MIDDLE may be empty)")};
        }
        cloud.SetUsePalette(false);
        cloud.Gradient().SetStartColor(parseColour(parts[0], false));
        cloud.Gradient().SetMiddleColor(parseColour(parts[1], true));
        cloud.Gradient().SetEndColor(parseColour(parts[2], false));
    }
    if (const auto font = args.takeOption(QStringLiteral("--font"))) {
        wordcloud::CloudFont f = cloud.Font();
        f.name = *font;
        cloud.SetFont(f);
    }
    if (const auto seed = args.takeOption(QStringLiteral("--seed"))) {
        bool ok = false;
        const quint64 s = seed->toULongLong(&ok);
        if (!ok) {
            throw CliError{kExitUsage,
                           QStringLiteral("--seed wants a whole number, not \"%1\"").arg(*seed)};
        }
        cloud.SetRandomSeed(s);
    }
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage,
                       QStringLiteral("cloud needs one WORDS.tsv (or --doc CLOUD.xml)")};
    }

    QFile file(pos[0]);
    if (!file.open(QIODevice::ReadOnly)) {
        throw CliError{kExitBadInput,
                       QStringLiteral("cannot open %1: %2").arg(pos[0], file.errorString())};
    }
    const Result<wordcloud::WordList::Result> list = wordcloud::WordList::read(file);
    if (!list) {
        throw CliError{kExitBadInput, QStringLiteral("%1: %2").arg(pos[0], list.error())};
    }
    QStringList notes = list->warnings;
    for (const wordcloud::WordList::Entry& entry : list->entries) {
        if (cloud.AddWord(entry.text, entry.weight) < 0) {
            notes << (entry.text.isEmpty()
                          ? QStringLiteral("line %1: empty word; left out").arg(entry.line)
                          : QStringLiteral("line %1: weight %2 is below 1; left out")
                                .arg(entry.line)
                                .arg(entry.weight));
        }
    }
    printWarnings(io, pos[0], notes);
    if (cloud.WordCount() == 0) {
        throw CliError{kExitBadInput, QStringLiteral("%1 has no usable words").arg(pos[0])};
    }

    QElapsedTimer timer;
    timer.start();
    cloud.GenerateCloud(true);
    const double ms = timer.nsecsElapsed() / 1e6;
    if (out) {
        writeOutput(cloud, *out, extension);
    }
    io.out << cloud.WordCount() << '\t' << cloud.CountVisibleWords() << '\t'
           << coverageText(cloud.CurrentCoverage()) << '\t' << QString::number(ms, 'f', 1) << '\n';
    if (page) {
        appendPage(io, cloud, *page, under.value_or(0),
                   title.value_or(QFileInfo(pos[0]).completeBaseName()));
    }
    return kExitOk;
}

} // namespace

void registerCloudCommand(CommandTable& table)
{
    table.add(
        {QStringLiteral("cloud"),
         QStringLiteral("WORDS.tsv (--out FILE | --page PROJECT [--under INDEX] [--title T]) "
                        "[--size WxH] [--coverage F] [--shape rect|ellipse] "
                        "[--random] [--palette N | --gradient START,MIDDLE,END] [--font NAME] "
                        "[--seed S] | --doc CLOUD.xml --out FILE [--size WxH]"),
         QStringLiteral("lay out a word cloud from word<TAB>weight lines (or render a stored "
                        "cloud document) to .png .bmp .jpg .svg or .xml, or append it to "
                        "PROJECT as a word cloud page under node INDEX (default the root); "
                        "prints words, placed, final coverage, layout milliseconds (and the "
                        "new node as add does)"),
         true, runCloud});
}

} // namespace kestrum::cli
