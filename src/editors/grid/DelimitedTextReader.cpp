#include "DelimitedTextReader.h"

#include "editors/grid/GridDocument.h"
#include "editors/grid/GridFileIo.h"
#include "editors/grid/TextDecoder.h"

#include <algorithm>

namespace kestrum::grid {

namespace {

constexpr QChar kQuote = QLatin1Char('"');
// Columns are widened to their content on import: about 7 pixels a character, measured over
// the first rows only.
constexpr int kWidthSampleRows = 1000;
constexpr int kMaxImportWidth = 300;

bool isLineEnd(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r');
}

Error tooLarge()
{
    return fail(QStringLiteral("the text holds more than a table can take (at most %1 rows, "
                               "%2 columns and %3 cells)")
                    .arg(GridDocument::kMaxRows)
                    .arg(GridDocument::kMaxColumns)
                    .arg(GridDocument::kMaxCells));
}

} // namespace

Status DelimitedTextReader::parse(const QString& text, QChar delimiter,
                                  std::vector<QStringList>* rows)
{
    rows->clear();
    const QChar* data = text.constData();
    const qsizetype n = text.size();
    qsizetype pos = 0;
    QStringList fields;
    qint64 cells = 0;
    int widest = 0;
    // Once a quote has been found unclosed, no closing quote exists further on.
    bool quotesExhausted = false;

    // Ends the row; fails when the rows go beyond what a table can take.
    auto endRow = [&]() -> bool {
        cells += fields.size();
        widest = std::max(widest, int(fields.size()));
        rows->push_back(std::move(fields));
        fields = QStringList();
        if (qint64(rows->size()) > GridDocument::kMaxRows || widest > GridDocument::kMaxColumns ||
            qint64(rows->size()) * widest > GridDocument::kMaxCells) {
            return false;
        }
        return true;
    };

    while (pos < n) {
        QString field;
        if (data[pos] == kQuote && !quotesExhausted) {
            // A quoted field: runs to the closing quote; "" inside stands for one quote.
            qsizetype j = pos + 1;
            QString content;
            bool closed = false;
            while (j < n) {
                const qsizetype next = text.indexOf(kQuote, j);
                if (next < 0) {
                    break;
                }
                content.append(data + j, next - j);
                if (next + 1 < n && data[next + 1] == kQuote) {
                    content.append(kQuote);
                    j = next + 2;
                    continue;
                }
                j = next + 1;
                closed = true;
                break;
            }
            if (closed) {
                field = std::move(content);
                pos = j;
            } else {
                quotesExhausted = true;
            }
        }
        // Unquoted text, or what follows a closing quote up to the delimiter, stands as written.
        const qsizetype start = pos;
        while (pos < n && data[pos] != delimiter && !isLineEnd(data[pos])) {
            ++pos;
        }
        if (pos > start) {
            field.append(data + start, pos - start);
        }
        fields.append(std::move(field));
        if (pos >= n) {
            break;
        }
        if (data[pos] == delimiter) {
            ++pos;
            if (pos >= n) {
                fields.append(QString()); // a delimiter at the very end: one more empty field
                break;
            }
            continue;
        }
        // A line end: CRLF, LF or CR.
        if (data[pos] == QLatin1Char('\r') && pos + 1 < n && data[pos + 1] == QLatin1Char('\n')) {
            ++pos;
        }
        ++pos;
        if (!endRow()) {
            return tooLarge();
        }
    }
    if (!fields.isEmpty() && !endRow()) {
        return tooLarge();
    }
    // Blank lines at the end of the file are not rows.
    while (!rows->empty() && rows->back().size() == 1 && rows->back().constFirst().isEmpty()) {
        rows->pop_back();
    }
    return {};
}

void DelimitedTextReader::fill(const std::vector<QStringList>& rows, GridDocument* grid)
{
    int columns = 1;
    for (const QStringList& row : rows) {
        columns = std::max(columns, int(row.size()));
    }
    const int rowCount = std::max(1, int(rows.size()));
    GridDocument out;
    out.setSize(columns, rowCount);
    out.setFixedRows(grid->fixedRows());
    out.setFixedColumns(grid->fixedColumns());
    out.setWordWrap(grid->wordWrap());
    for (int r = 0; r < rowCount; ++r) {
        out.setRowHeight(r, r < out.fixedRows() ? GridDocument::kDefaultFixedRowHeight
                                                : GridDocument::kDefaultRowHeight);
    }
    std::vector<int> longest(std::size_t(columns), 0);
    for (int r = 0; r < int(rows.size()); ++r) {
        const QStringList& row = rows[std::size_t(r)];
        for (int c = 0; c < int(row.size()); ++c) {
            out.setText(c, r, row[c]);
            if (r < kWidthSampleRows) {
                longest[std::size_t(c)] = std::max(longest[std::size_t(c)], int(row[c].size()));
            }
        }
    }
    for (int c = 0; c < columns; ++c) {
        const int wanted = longest[std::size_t(c)] * 7 + 12;
        out.setColumnWidth(c,
                           std::clamp(wanted, GridDocument::kDefaultColumnWidth, kMaxImportWidth));
    }
    *grid = std::move(out);
}

Status DelimitedTextReader::load(const QByteArray& bytes, QChar delimiter, GridDocument* grid)
{
    TextDecoder::Encoding encoding = TextDecoder::Encoding::Utf8;
    const QString text = TextDecoder::decode(bytes, &encoding);
    if (TextDecoder::looksBinary(bytes, encoding)) {
        return fail(QStringLiteral("it is not a text file (it holds binary data)"));
    }
    std::vector<QStringList> rows;
    if (const Status parsed = parse(text, delimiter, &rows); !parsed) {
        return parsed;
    }
    fill(rows, grid);
    return {};
}

Status DelimitedTextReader::loadFile(const QString& path, QChar delimiter, GridDocument* grid)
{
    const Result<QByteArray> bytes = readWholeFile(path, kMaxFileBytes);
    if (!bytes) {
        return fail(bytes.error());
    }
    if (const Status loaded = load(*bytes, delimiter, grid); !loaded) {
        return fail(QStringLiteral("Cannot import \"%1\": %2").arg(path, loaded.error()));
    }
    return {};
}

} // namespace kestrum::grid
