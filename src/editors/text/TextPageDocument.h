#pragma once

#include "editors/text/ColourTable.h"
#include "editors/text/PageLayout.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextFormatDetector.h"
#include "editors/text/WordConverter.h"
#include "store/PageDocument.h"

#include <QStringList>

class QTextDocument;

namespace kestrum::text {

// The document of text pages: a QTextDocument with its colour table and page layout. Pages are
// written as RTF; reading detects RTF, HTML or plain text. Loading (clear, readContent, imports
// by the store) never reports a change; every edit afterwards does, through contentChanged.
class TextPageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit TextPageDocument(QObject* parent = nullptr);
    ~TextPageDocument() override;

    store::EditorKind kind() const override { return store::EditorKind::Text; }
    Result<QByteArray> writeContent() override;
    Status readContent(const QByteArray& in) override;
    void clear() override;
    // By the upper-cased extension's place in ".RTF.TXT.DOC.WPD.HTML": RTF, plain text, or the
    // word-processor converter (DOC, WPD, HTM, HTML); any other extension loads nothing.
    Status importFile(const QString& path) override;

    // The rich-text document (made on first use).
    QTextDocument* textDocument();
    const QTextDocument* textDocument() const;
    ColourTable& colours() { return m_colours; }
    const ColourTable& colours() const { return m_colours; }
    const PageLayout& pageLayout() const { return m_layout; }
    // A change made by the user (page setup): reported as an edit.
    void setPageLayout(const PageLayout& layout);
    bool isLoading() const { return m_loading > 0; }
    // What the last load read, and what it could read only in part.
    TextFormatDetector::Format loadedFormat() const { return m_loadedFormat; }
    const QStringList& warnings() const { return m_warnings; }

    // The editor's own open command: RTF, HTML and plain text by their content, anything else
    // through the converter. Like every load it reports no change; the caller decides.
    Status loadFile(const QString& path);
    // LoadExternalFile: a word-processor file through the converter, read as RTF. When the
    // file cannot be converted the document stays as it was.
    Status loadExternalFile(const QString& path);
    Status exportFile(const QString& path, TextExporter::Format format) const;
    // The page as HTML for a report (its pictures as the options say).
    Result<QByteArray> toHtml(const HtmlExportOptions& options) const;

    void setConverterOptions(const WordConverterOptions& options) { m_converterOptions = options; }
    const WordConverterOptions& converterOptions() const { return m_converterOptions; }

    // Reports an edit the text document does not see itself.
    void notifyChanged();

    static constexpr qint64 kMaxFileBytes = qint64(256) * 1024 * 1024;

signals:
    void pageLayoutChanged();
    // A page or file is about to be loaded (views park their caret at the start meanwhile).
    void aboutToLoad();
    // A page or file was loaded (the view resets what it shows around the text).
    void loaded();

private:
    class LoadScope;

    Status readBytes(const QByteArray& bytes, TextFormatDetector::Format format);
    static Result<QByteArray> readFile(const QString& path);
    void resetDocument();

    QTextDocument* m_document = nullptr;
    ColourTable m_colours;
    PageLayout m_layout;
    int m_loading = 0;
    TextFormatDetector::Format m_loadedFormat = TextFormatDetector::Format::Empty;
    QStringList m_warnings;
    WordConverterOptions m_converterOptions;
};

} // namespace kestrum::text
