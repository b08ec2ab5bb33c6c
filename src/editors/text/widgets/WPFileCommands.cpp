#include "WPFileCommands.h"

#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"
#include "ui/Dialogs.h"
#include "ui/WaitCursor.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace kestrum::text {

namespace {

using ui::WaitCursor;

const QStringList& importFilters()
{
    static const QStringList filters = {
        QStringLiteral("Rich Text Format (*.rtf)"),
        QStringLiteral("HTML (*.htm *.html)"),
        QStringLiteral("Plain text (*.txt)"),
        QStringLiteral("Word processor documents (*.doc *.docx *.odt *.wpd)"),
        QStringLiteral("All files (*)"),
    };
    return filters;
}

struct ExportFilter
{
    const char* label;
    const char* suffix;
    TextExporter::Format format;
};

constexpr ExportFilter kExportFilters[] = {
    {"Rich Text Format (*.rtf)", "rtf", TextExporter::Format::Rtf},
    {"HTML (*.htm *.html)", "html", TextExporter::Format::Html},
    {"Plain text (*.txt)", "txt", TextExporter::Format::PlainText},
    {"OpenDocument Text (*.odt)", "odt", TextExporter::Format::Odt},
};

} // namespace

WPFileCommands::WPFileCommands(TextPageDocument* document, QWidget* parent, Translate text)
    : m_document(document), m_parent(parent), m_text(std::move(text))
{}

bool WPFileCommands::loadWithMessage(const QString& path, bool external)
{
    Status loaded;
    {
        WaitCursor wait;
        WordConverterOptions options = m_document->converterOptions();
        options.idle = [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
        m_document->setConverterOptions(options);
        loaded = external ? m_document->loadExternalFile(path) : m_document->loadFile(path);
    }
    if (!loaded) {
        ui::dialogs().warning(m_parent, loaded.error());
        return false;
    }
    m_document->notifyChanged();
    return true;
}

void WPFileCommands::importFile()
{
    ui::Dialogs::FileRequest request;
    request.caption = m_text("Import...");
    request.filters = importFilters();
    const auto choice = ui::dialogs().getOpenFileName(m_parent, request);
    if (choice) {
        loadWithMessage(choice->fileName, false);
    }
}

void WPFileCommands::openFile()
{
    ui::Dialogs::FileRequest request;
    request.caption = m_text("Open");
    request.filters = importFilters();
    const auto choice = ui::dialogs().getOpenFileName(m_parent, request);
    if (choice && loadWithMessage(choice->fileName, false)) {
        m_fileName = choice->fileName;
    }
}

void WPFileCommands::exportFile()
{
    ui::Dialogs::FileRequest request;
    request.caption = m_text("Export...");
    for (const ExportFilter& filter : kExportFilters) {
        request.filters << QLatin1String(filter.label);
    }
    request.defaultSuffix = QStringLiteral("rtf");
    const auto choice = ui::dialogs().getSaveFileName(m_parent, request);
    if (!choice) {
        return;
    }
    QString path = choice->fileName;
    const int index = std::clamp(choice->filterIndex, 1, int(std::size(kExportFilters))) - 1;
    TextExporter::Format format = kExportFilters[index].format;
    if (const auto bySuffix = TextExporter::formatForSuffix(QFileInfo(path).suffix())) {
        format = *bySuffix;
    } else {
        path += QLatin1Char('.') + QLatin1String(kExportFilters[index].suffix);
    }
    WaitCursor wait;
    if (const Status written = m_document->exportFile(path, format); !written) {
        ui::dialogs().warning(m_parent, written.error());
    }
}

void WPFileCommands::saveFile()
{
    if (m_fileName.isEmpty()) {
        ui::Dialogs::FileRequest request;
        request.caption = m_text("Save");
        request.filters = {QStringLiteral("Rich Text Format (*.rtf)")};
        request.defaultSuffix = QStringLiteral("rtf");
        const auto choice = ui::dialogs().getSaveFileName(m_parent, request);
        if (!choice) {
            return;
        }
        m_fileName = choice->fileName;
    }
    const auto format = TextExporter::formatForSuffix(QFileInfo(m_fileName).suffix())
                            .value_or(TextExporter::Format::Rtf);
    if (const Status written = m_document->exportFile(m_fileName, format); !written) {
        ui::dialogs().warning(m_parent, written.error());
    }
}

void WPFileCommands::newDocument()
{
    m_document->clear();
    m_fileName.clear();
    m_document->notifyChanged();
}

} // namespace kestrum::text
