#pragma once

#include "store/PageType.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kestrum::cli {

// How `export-page` writes a page of one kind to a file with a given extension.
struct PageExporter
{
    store::EditorKind kind;
    QStringList extensions; // lower case, without the dot
    // Writes the page; throws CliError when it cannot.
    std::function<void(const QByteArray& content, const QString& pageInfo, const QString& outFile)> write;
};

class PageExporterTable
{
public:
    void add(PageExporter exporter) { m_exporters.push_back(std::move(exporter)); }
    const PageExporter* find(store::EditorKind kind, const QString& extension) const;
    QStringList extensionsFor(store::EditorKind kind) const;

private:
    std::vector<PageExporter> m_exporters;
};

// Each page kind registers the formats it can be exported to.
void registerExportPageCommand(class CommandTable& table, const PageExporterTable& exporters);
// Grid pages: .txt .tab .csv .xls .doc .htm .html .xml .wgf.
void registerGridPageExporters(PageExporterTable& exporters);
void registerTextPageExporters(PageExporterTable& table);

} // namespace kestrum::cli
