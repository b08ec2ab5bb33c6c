#pragma once

// A rich-text document as the RTF tests read and write it: the document, its colour table and
// page layout, and what the reader reported.

#include "editors/text/ColourTable.h"
#include "editors/text/RtfReader.h"
#include "editors/text/RtfWriter.h"

#include <QByteArray>
#include <QTextDocument>

#include <memory>

namespace kestrum::text::test_support {

struct Doc
{
    std::unique_ptr<QTextDocument> document = std::make_unique<QTextDocument>();
    ColourTable colours;
    PageLayout layout;
    RtfReadResult result;
};

inline QByteArray write(const Doc& doc)
{
    return RtfWriter(*doc.document, doc.colours, doc.layout).write();
}

inline std::unique_ptr<Doc> read(const QByteArray& rtf)
{
    auto out = std::make_unique<Doc>();
    out->result = RtfReader().read(rtf, out->document.get(), &out->colours);
    if (out->result.hasPageLayout) {
        out->layout = out->result.pageLayout;
    }
    return out;
}

inline std::unique_ptr<Doc> roundTrip(const Doc& doc)
{
    return read(write(doc));
}

} // namespace kestrum::text::test_support
