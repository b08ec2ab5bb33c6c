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

bool TextPageDocument::writeContent(QByteArray& out, QString*)
{
    if (!m_document) {
        out = RtfWriter::emptyDocument(m_layout);
        return true;
    }
    RtfWriter writer(*m_document, m_colours, m_layout);
    out = writer.write();
    m_colours = writer.colours();
    return true;
}

bool TextPageDocument::readContent(const QByteArray& in, QString* error)
{
    return readBytes(in, TextFormatDetector::detect(in), error);
}

bool TextPageDocument::readBytes(const QByteArray& bytes, TextFormatDetector::Format format,
                                 QString* error)
{
    LoadScope scope(*this);
    resetDocument();
    QTextDocument* document = textDocument();
    m_loadedFormat = format;
    switch (format) {
    case TextFormatDetector::Format::Empty:
        return true;
    case TextFormatDetector::Format::Rtf: {
        const RtfReadResult result = RtfReader().read(bytes, document, &m_colours);
        if (!result.ok) {
            resetDocument();
            if (error) {
                *error = result.error;
            }
            return false;
        }
        if (result.hasPageLayout) {
            m_layout = result.pageLayout;
        }
        m_warnings = result.warnings;
        return true;
    }
    case TextFormatDetector::Format::Html:
        document->setHtml(TextFormatDetector::decodeHtml(bytes));
        return true;
    case TextFormatDetector::Format::PlainText:
        document->setPlainText(TextFormatDetector::decodePlainText(bytes));
        return true;
    }
    return false;
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

bool TextPageDocument::readFile(const QString& path, QByteArray* bytes, QString* error)
{
    QFile file(path);
    const QString name = QFileInfo(path).fileName();
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = QStringLiteral("Cannot open \"%1\": %2").arg(name, file.errorString());
        }
        return false;
    }
    if (file.size() > kMaxFileBytes) {
        if (error) {
            *error = QStringLiteral("Cannot read \"%1\": the file is larger than %2 MB.")
                         .arg(name)
                         .arg(kMaxFileBytes / (1024 * 1024));
        }
        return false;
    }
    *bytes = file.readAll();
    return true;
}

bool TextPageDocument::importFile(const QString& path, QString* error)
{
    const QString suffix = QFileInfo(path).suffix();
    const qsizetype place =
        suffix.isEmpty()
            ? -1
            : QStringLiteral(".RTF.TXT.DOC.WPD.HTML").indexOf(QLatin1Char('.') + suffix.toUpper());
    if (place < 0) {
        clear();
        if (error) {
            *error =
                QStringLiteral(
                    "\"%1\" was not imported: text pages read RTF, TXT, DOC, WPD and HTML files.")
                    .arg(QFileInfo(path).fileName());
        }
        return false;
    }
    if (place >= 8) {
        if (!loadExternalFile(path, error)) {
            clear(); // an imported page stays empty
            return false;
        }
        return true;
    }
    QByteArray bytes;
    if (!readFile(path, &bytes, error)) {
        clear();
        return false;
    }
    if (place < 4) {
        // Rich text; a file that is not RTF after all is read for what it is.
        return readBytes(bytes, TextFormatDetector::detect(bytes), error);
    }
    return readBytes(bytes,
                     bytes.isEmpty() ? TextFormatDetector::Format::Empty
                                     : TextFormatDetector::Format::PlainText,
                     error);
}

bool TextPageDocument::loadFile(const QString& path, QString* error)
{
    QByteArray bytes;
    const QFileInfo info(path);
    const QString suffix = info.suffix().toLower();
    const bool ownFormat = suffix == QLatin1String("rtf") || suffix == QLatin1String("txt") ||
                           suffix == QLatin1String("htm") || suffix == QLatin1String("html") ||
                           suffix == QLatin1String("text") || suffix.isEmpty();
    if (!ownFormat) {
        // Word-processor files unless they turn out to be RTF (a ".doc" that is RTF inside).
        QFile file(path);
        if (file.open(QIODevice::ReadOnly) && RtfReader::looksLikeRtf(file.read(64))) {
            return readFile(path, &bytes, error) &&
                   readBytes(bytes, TextFormatDetector::Format::Rtf, error);
        }
        return loadExternalFile(path, error);
    }
    if (!readFile(path, &bytes, error)) {
        return false;
    }
    TextFormatDetector::Format format = TextFormatDetector::detect(bytes);
    if (suffix == QLatin1String("txt") && format == TextFormatDetector::Format::Html) {
        format = TextFormatDetector::Format::PlainText;
    }
    return readBytes(bytes, format, error);
}

bool TextPageDocument::loadExternalFile(const QString& path, QString* error)
{
    // Nothing is touched until the converter has given RTF: a failed load leaves the page as it
    // was.
    QByteArray rtf;
    const WordConverter converter(m_converterOptions);
    if (!converter.convertToRtf(path, &rtf, error)) {
        return false;
    }
    if (!RtfReader::looksLikeRtf(rtf)) {
        if (error) {
            *error = QStringLiteral("\"%1\" could not be converted: the converter gave no RTF.")
                         .arg(QFileInfo(path).fileName());
        }
        return false;
    }
    return readBytes(rtf, TextFormatDetector::Format::Rtf, error);
}

bool TextPageDocument::exportFile(const QString& path, TextExporter::Format format,
                                  QString* error) const
{
    return TextExporter::exportFile(*textDocument(), m_colours, m_layout, path, format, error);
}

QByteArray TextPageDocument::toHtml(const HtmlExportOptions& options, QString* error) const
{
    return TextExporter::toHtml(*textDocument(), options, error);
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
