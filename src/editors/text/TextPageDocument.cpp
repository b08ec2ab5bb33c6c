#include "TextPageDocument.h"

#include "editors/text/RtfReader.h"
#include "editors/text/RtfWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QTextDocument>

namespace kestrum::text {

// While a page is loaded: no change is reported, and the undo history starts afresh after it.
// A view's layout sleeps meanwhile (a null page size makes it skip every change) and wakes up
// to the whole new content at once, which it lays out lazily, from the top, screen by screen.
class TextPageDocument::LoadScope
{
public:
    explicit LoadScope(TextPageDocument& owner) : m_owner(owner)
    {
        if (m_owner.m_loading++ == 0) {
            emit m_owner.aboutToLoad();
        }
        QTextDocument* document = m_owner.textDocument();
        document->setUndoRedoEnabled(false);
        m_pageSize = document->pageSize();
        document->setPageSize(QSizeF(0, 0));
    }
    ~LoadScope()
    {
        QTextDocument* document = m_owner.textDocument();
        document->setPageSize(m_pageSize);
        document->setUndoRedoEnabled(true);
        document->setModified(false);
        if (--m_owner.m_loading == 0) {
            emit m_owner.loaded();
        }
    }
    LoadScope(const LoadScope&) = delete;
    LoadScope& operator=(const LoadScope&) = delete;

private:
    TextPageDocument& m_owner;
    QSizeF m_pageSize;
};

TextPageDocument::TextPageDocument(QObject* parent) : store::PageDocument(parent) {}

TextPageDocument::~TextPageDocument() = default;

QTextDocument* TextPageDocument::textDocument()
{
    if (!m_document) {
        m_document = new QTextDocument(this);
        QFont font(QStringLiteral("Arial"));
        font.setPointSizeF(11);
        m_document->setDefaultFont(font);
        // contentsChanged, unlike contentsChange, comes without a layout too (headless).
        connect(m_document, &QTextDocument::contentsChanged, this, [this] {
            if (m_loading == 0) {
                emit contentChanged();
            }
        });
    }
    return m_document;
}

const QTextDocument* TextPageDocument::textDocument() const
{
    return const_cast<TextPageDocument*>(this)->textDocument();
}

void TextPageDocument::resetDocument()
{
    QTextDocument* document = textDocument();
    document->clear();
    document->setProperty("kestrumPictureCounter", 0);
    m_colours.reset();
    m_layout = PageLayout();
    m_warnings.clear();
    m_loadedFormat = TextFormatDetector::Format::Empty;
}

Result<QByteArray> TextPageDocument::writeContent()
{
    if (!m_document) {
        return RtfWriter::emptyDocument(m_layout);
    }
    RtfWriter writer(*m_document, m_colours, m_layout);
    QByteArray out = writer.write();
    m_colours = writer.colours();
    return out;
}

Status TextPageDocument::readContent(const QByteArray& in)
{
    return readBytes(in, TextFormatDetector::detect(in));
}

Status TextPageDocument::readBytes(const QByteArray& bytes, TextFormatDetector::Format format)
{
    LoadScope scope(*this);
    resetDocument();
    QTextDocument* document = textDocument();
    m_loadedFormat = format;
    switch (format) {
    case TextFormatDetector::Format::Empty:
        return {};
    case TextFormatDetector::Format::Rtf: {
        const RtfReadResult result = RtfReader().read(bytes, document, &m_colours);
        if (!result.ok) {
            resetDocument();
            return fail(result.error);
        }
        if (result.hasPageLayout) {
            m_layout = result.pageLayout;
        }
        m_warnings = result.warnings;
        return {};
    }
    case TextFormatDetector::Format::Html:
        document->setHtml(TextFormatDetector::decodeHtml(bytes));
        return {};
    case TextFormatDetector::Format::PlainText:
        document->setPlainText(TextFormatDetector::decodePlainText(bytes));
        return {};
    }
    return fail(QStringLiteral("the text is in an unknown format"));
}

void TextPageDocument::clear()
{
    if (!m_document) {
        // Nothing was ever loaded: stay without a text document (headless tools that only
        // create empty pages never need one).
        m_colours.reset();
        m_layout = PageLayout();
        m_warnings.clear();
        m_loadedFormat = TextFormatDetector::Format::Empty;
        return;
    }
    LoadScope scope(*this);
    resetDocument();
}

Result<QByteArray> TextPageDocument::readFile(const QString& path)
{
    QFile file(path);
    const QString name = QFileInfo(path).fileName();
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot open \"%1\": %2").arg(name, file.errorString()));
    }
    if (file.size() > kMaxFileBytes) {
        return fail(QStringLiteral("Cannot read \"%1\": the file is larger than %2 MB.")
                        .arg(name)
                        .arg(kMaxFileBytes / (1024 * 1024)));
    }
    return file.readAll();
}

Status TextPageDocument::importFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    const qsizetype place =
        suffix.isEmpty()
            ? -1
            : QStringLiteral(".RTF.TXT.DOC.WPD.HTML").indexOf(QLatin1Char('.') + suffix.toUpper());
    if (place < 0) {
        clear();
        return fail(
            QStringLiteral(
                "\"%1\" was not imported: text pages read RTF, TXT, DOC, WPD and HTML files.")
                .arg(QFileInfo(path).fileName()));
    }
    if (place >= 8) {
        if (const Status loaded = loadExternalFile(path); !loaded) {
            clear(); // an imported page stays empty
            return loaded;
        }
        return {};
    }
    const Result<QByteArray> bytes = readFile(path);
    if (!bytes) {
        clear();
        return fail(bytes.error());
    }
    if (place < 4) {
        // Rich text; a file that is not RTF after all is read for what it is.
        return readBytes(*bytes, TextFormatDetector::detect(*bytes));
    }
    return readBytes(*bytes, bytes->isEmpty() ? TextFormatDetector::Format::Empty
                                              : TextFormatDetector::Format::PlainText);
}

Status TextPageDocument::loadFile(const QString& path)
{
    const QFileInfo info(path);
    const QString suffix = info.suffix().toLower();
    const bool ownFormat = suffix == QLatin1String("rtf") || suffix == QLatin1String("txt") ||
                           suffix == QLatin1String("htm") || suffix == QLatin1String("html") ||
                           suffix == QLatin1String("text") || suffix.isEmpty();
    if (!ownFormat) {
        // Word-processor files unless they turn out to be RTF (a ".doc" that is RTF inside).
        QFile file(path);
        if (file.open(QIODevice::ReadOnly) && RtfReader::looksLikeRtf(file.read(64))) {
            const Result<QByteArray> bytes = readFile(path);
            if (!bytes) {
                return fail(bytes.error());
            }
            return readBytes(*bytes, TextFormatDetector::Format::Rtf);
        }
        return loadExternalFile(path);
    }
    const Result<QByteArray> bytes = readFile(path);
    if (!bytes) {
        return fail(bytes.error());
    }
    TextFormatDetector::Format format = TextFormatDetector::detect(*bytes);
    if (suffix == QLatin1String("txt") && format == TextFormatDetector::Format::Html) {
        format = TextFormatDetector::Format::PlainText;
    }
    return readBytes(*bytes, format);
}

Status TextPageDocument::loadExternalFile(const QString& path)
{
    // Nothing is touched until the converter has given RTF: a failed load leaves the page as it
    // was.
    const WordConverter converter(m_converterOptions);
    const Result<QByteArray> rtf = converter.convertToRtf(path);
    if (!rtf) {
        return fail(rtf.error());
    }
    if (!RtfReader::looksLikeRtf(*rtf)) {
        return fail(QStringLiteral("\"%1\" could not be converted: the converter gave no RTF.")
                        .arg(QFileInfo(path).fileName()));
    }
    return readBytes(*rtf, TextFormatDetector::Format::Rtf);
}

Status TextPageDocument::exportFile(const QString& path, TextExporter::Format format) const
{
    return TextExporter::exportFile(*textDocument(), m_colours, m_layout, path, format);
}

Result<QByteArray> TextPageDocument::toHtml(const HtmlExportOptions& options) const
{
    return TextExporter::toHtml(*textDocument(), options);
}

void TextPageDocument::setPageLayout(const PageLayout& layout)
{
    PageLayout normalised = layout;
    normalised.normalise();
    if (normalised == m_layout) {
        return;
    }
    m_layout = normalised;
    emit pageLayoutChanged();
    notifyChanged();
}

void TextPageDocument::notifyChanged()
{
    if (m_loading == 0) {
        emit contentChanged();
    }
}

} // namespace kestrum::text
