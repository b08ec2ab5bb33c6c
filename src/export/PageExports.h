#pragma once

#include "common/Result.h"
#include "store/PageKind.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kestrum::exports {

// One stored page as the exporters read it: its record, decompressed.
struct PageSource
{
    qint32 pageId = -1;
    qint32 pageType = -1;
    QByteArray content;
    QString info;
};

// A file format a page of one kind can be written to.
struct PageFormat
{
    QStringList extensions; // lower case, without the dot; the first is the usual one
    QString description;    // "Rich text", "Comma delimited"...
    // Writes the page to `outFile` (which the extension chose).
    std::function<Status(const PageSource& page, const QString& outFile)> write;
};

// What a page gives to a report written as HTML: the markup that goes between the report's
// headings, and the files it refers to (pictures), each written into the report's "_files"
// folder under the name given.
struct HtmlFragment
{
    QString html;
    std::vector<std::pair<QString, QByteArray>> files;
};

// Where the files of an HTML fragment go and how they are named.
struct HtmlFragmentOptions
{
    QString folderUrl;  // how the markup refers to the folder ("Report_files")
    QString filePrefix; // put before every file name, so that pages can share the folder
};

// How the pages of one kind are exported: single-page formats, and the pieces of the
// report-wide exports and of the global find.
struct PageExports
{
    std::vector<PageFormat> formats;
    std::function<Result<HtmlFragment>(const PageSource&, const HtmlFragmentOptions&)> html;
    // The page as an RTF document of its own (a report merges the bodies).
    std::function<Result<QByteArray>(const PageSource&)> rtf;
    // The words of the page that a find looks through, as plain text.
    std::function<Result<QString>(const PageSource&)> text;
};

// A page kind of the core: what the store knows of it and how it is exported.
struct CorePageKind
{
    store::PageKind page;
    PageExports exports;
};

// Every page kind of the core, in the order the file import rules need.
const std::vector<CorePageKind>& corePageKinds();
// The store's view of the same kinds.
const store::PageKindTable& pageKindTable();
const CorePageKind* coreKind(store::EditorKind kind);

// The format that writes pages of `pageType` to files ending in `extension`, if any.
const PageFormat* findPageFormat(qint32 pageType, const QString& extension);
// ".rtf .html ..." that pages of `pageType` can be written as.
QStringList exportExtensions(qint32 pageType);
// Writes `page` to `outFile` in the format its extension chooses; an error names the formats
// the page's kind has when the extension is not one of them.
Status exportPage(const PageSource& page, const QString& outFile);

} // namespace kestrum::exports
