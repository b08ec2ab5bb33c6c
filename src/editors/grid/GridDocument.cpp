#include "GridDocument.h"

#include <algorithm>

namespace kestrum::grid {

GridDocument::GridDocument()
{
    reset();
}

const GridCellFormat& GridDocument::defaultFormat()
{
    static const GridCellFormat format;
    return format;
}

void GridDocument::reset()
{
    m_rows = kDefaultRowCount;
    m_cols = kDefaultColumnCount;
    m_texts.assign(std::size_t(m_rows) * std::size_t(m_cols), QString());
    m_formatIds.assign(m_texts.size(), 0);
    m_formats.assign(1, defaultFormat());
    m_formatLookup.clear();
    m_formatLookup.insert(defaultFormat(), 0);
    m_colWidths.assign(std::size_t(m_cols), kDefaultColumnWidth);
    m_rowHeights.assign(std::size_t(m_rows), kDefaultRowHeight);
    m_rowHeights[0] = kDefaultFixedRowHeight;
    m_hidden.assign(std::size_t(m_cols), 0);
    m_fixedRows = 1;
    m_fixedCols = 0;
    m_wordWrap = false;
}

void GridDocument::setSize(int columns, int rows)
{
    columns = std::clamp(columns, 1, kMaxColumns);
    rows = std::clamp(rows, 1, kMaxRows);
    if (qint64(columns) * rows > kMaxCells) {
        rows = std::max(1, int(kMaxCells / columns));
    }
    if (columns != m_cols) {
        std::vector<int> sources(std::size_t(columns), -1);
        for (int c = 0; c < std::min(columns, m_cols); ++c) {
            sources[std::size_t(c)] = c;
        }
        rebuildColumns(sources);
    }
    if (rows != m_rows) {
        m_texts.resize(std::size_t(rows) * std::size_t(m_cols));
        m_formatIds.resize(m_texts.size(), 0);
        m_rowHeights.resize(std::size_t(rows), kDefaultRowHeight);
        m_rows = rows;
    }
    m_fixedRows = std::min(m_fixedRows, m_rows);
}

void GridDocument::rebuildColumns(const std::vector<int>& sourceColumns)
{
    const int columns = int(sourceColumns.size());
    std::vector<QString> texts(std::size_t(m_rows) * std::size_t(columns));
    std::vector<quint32> ids(texts.size(), 0);
    std::vector<int> widths(std::size_t(columns), kDefaultColumnWidth);
    std::vector<char> hidden(std::size_t(columns), 0);
    for (int c = 0; c < columns; ++c) {
        const int from = sourceColumns[std::size_t(c)];
        if (from < 0) {
            continue;
        }
        widths[std::size_t(c)] = m_colWidths[std::size_t(from)];
        hidden[std::size_t(c)] = m_hidden[std::size_t(from)];
        for (int r = 0; r < m_rows; ++r) {
            const std::size_t to = std::size_t(r) * std::size_t(columns) + std::size_t(c);
            texts[to] = std::move(m_texts[index(from, r)]);
            ids[to] = m_formatIds[index(from, r)];
        }
    }
    m_texts = std::move(texts);
    m_formatIds = std::move(ids);
    m_colWidths = std::move(widths);
    m_hidden = std::move(hidden);
    m_cols = columns;
    m_fixedCols = std::min(m_fixedCols, m_cols);
}

void GridDocument::setFixedRows(int count)
{
    m_fixedRows = std::clamp(count, 0, m_rows);
}

void GridDocument::setFixedColumns(int count)
{
    m_fixedCols = std::clamp(count, 0, m_cols);
}

quint32 GridDocument::addFormat(const GridCellFormat& format)
{
    const auto found = m_formatLookup.constFind(format);
    if (found != m_formatLookup.constEnd()) {
        return found.value();
    }
    const quint32 id = quint32(m_formats.size());
    m_formats.push_back(format);
    m_formatLookup.insert(format, id);
    return id;
}

void GridDocument::setFormat(int col, int row, const GridCellFormat& format)
{
    m_formatIds[index(col, row)] = addFormat(format);
}

void GridDocument::setFormatId(int col, int row, quint32 id)
{
    m_formatIds[index(col, row)] = id < m_formats.size() ? id : 0;
}

void GridDocument::setColumnWidth(int col, int width)
{
    m_colWidths[std::size_t(col)] = std::clamp(width, 0, kMaxSize);
}

void GridDocument::setRowHeight(int row, int height)
{
    m_rowHeights[std::size_t(row)] = std::clamp(height, 0, kMaxSize);
}

void GridDocument::unhideAllColumns()
{
    std::fill(m_hidden.begin(), m_hidden.end(), 0);
}

bool GridDocument::hasHiddenColumns() const
{
    return std::any_of(m_hidden.begin(), m_hidden.end(), [](char h) { return h != 0; });
}

std::vector<int> GridDocument::visibleColumns() const
{
    std::vector<int> out;
    out.reserve(std::size_t(m_cols));
    for (int c = 0; c < m_cols; ++c) {
        if (!m_hidden[std::size_t(c)]) {
            out.push_back(c);
        }
    }
    return out;
}

void GridDocument::insertRows(int at, int count)
{
    at = std::clamp(at, 0, m_rows);
    count = std::min(count, kMaxRows - m_rows);
    count = int(std::min<qint64>(count, kMaxCells / m_cols - m_rows));
    if (count <= 0) {
        return;
    }
    const auto pos = std::ptrdiff_t(at) * m_cols;
    const auto n = std::size_t(count) * std::size_t(m_cols);
    m_texts.insert(m_texts.begin() + pos, n, QString());
    m_formatIds.insert(m_formatIds.begin() + pos, n, 0);
    m_rowHeights.insert(m_rowHeights.begin() + at, std::size_t(count), kDefaultRowHeight);
    m_rows += count;
}

void GridDocument::removeRows(int at, int count)
{
    at = std::clamp(at, 0, m_rows - 1);
    count = std::min(count, m_rows - at);
    count = std::min(count, m_rows - 1);
    if (count <= 0) {
        return;
    }
    const auto first = std::ptrdiff_t(at) * m_cols;
    const auto last = first + std::ptrdiff_t(count) * m_cols;
    m_texts.erase(m_texts.begin() + first, m_texts.begin() + last);
    m_formatIds.erase(m_formatIds.begin() + first, m_formatIds.begin() + last);
    m_rowHeights.erase(m_rowHeights.begin() + at, m_rowHeights.begin() + at + count);
    m_rows -= count;
    m_fixedRows = std::min(m_fixedRows, m_rows);
}

void GridDocument::insertColumns(int at, int count)
{
    at = std::clamp(at, 0, m_cols);
    count = std::min(count, kMaxColumns - m_cols);
    count = int(std::min<qint64>(count, kMaxCells / m_rows - m_cols));
    if (count <= 0) {
        return;
    }
    std::vector<int> sources;
    sources.reserve(std::size_t(m_cols + count));
    for (int c = 0; c < at; ++c) {
        sources.push_back(c);
    }
    sources.insert(sources.end(), std::size_t(count), -1);
    for (int c = at; c < m_cols; ++c) {
        sources.push_back(c);
    }
    rebuildColumns(sources);
}

void GridDocument::removeColumns(int at, int count)
{
    at = std::clamp(at, 0, m_cols - 1);
    count = std::min(count, m_cols - at);
    count = std::min(count, m_cols - 1);
    if (count <= 0) {
        return;
    }
    std::vector<int> sources;
    sources.reserve(std::size_t(m_cols - count));
    for (int c = 0; c < m_cols; ++c) {
        if (c < at || c >= at + count) {
            sources.push_back(c);
        }
    }
    rebuildColumns(sources);
}

void GridDocument::moveRow(int from, int to)
{
    if (from == to || from < 0 || to < 0 || from >= m_rows || to >= m_rows) {
        return;
    }
    const auto width = std::ptrdiff_t(m_cols);
    auto rotate = [&](auto& cells) {
        auto base = cells.begin();
        if (from < to) {
            std::rotate(base + from * width, base + (from + 1) * width, base + (to + 1) * width);
        } else {
            std::rotate(base + to * width, base + from * width, base + (from + 1) * width);
        }
    };
    rotate(m_texts);
    rotate(m_formatIds);
    auto heights = m_rowHeights.begin();
    if (from < to) {
        std::rotate(heights + from, heights + from + 1, heights + to + 1);
    } else {
        std::rotate(heights + to, heights + from, heights + from + 1);
    }
}

void GridDocument::moveColumn(int from, int to)
{
    if (from == to || from < 0 || to < 0 || from >= m_cols || to >= m_cols) {
        return;
    }
    std::vector<int> sources(static_cast<std::size_t>(m_cols));
    for (int c = 0; c < m_cols; ++c) {
        sources[std::size_t(c)] = c;
    }
    if (from < to) {
        std::rotate(sources.begin() + from, sources.begin() + from + 1, sources.begin() + to + 1);
    } else {
        std::rotate(sources.begin() + to, sources.begin() + from, sources.begin() + from + 1);
    }
    rebuildColumns(sources);
}

void GridDocument::reorderRows(int first, const std::vector<int>& order)
{
    if (first < 0 || first + qint64(order.size()) > m_rows) {
        return;
    }
    const std::size_t width = std::size_t(m_cols);
    std::vector<QString> texts(order.size() * width);
    std::vector<quint32> ids(texts.size());
    std::vector<int> heights(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const int from = order[i];
        heights[i] = m_rowHeights[std::size_t(from)];
        for (std::size_t c = 0; c < width; ++c) {
            texts[i * width + c] = m_texts[std::size_t(from) * width + c];
            ids[i * width + c] = m_formatIds[std::size_t(from) * width + c];
        }
    }
    const std::size_t base = std::size_t(first) * width;
    std::move(texts.begin(), texts.end(), m_texts.begin() + std::ptrdiff_t(base));
    std::copy(ids.begin(), ids.end(), m_formatIds.begin() + std::ptrdiff_t(base));
    std::copy(heights.begin(), heights.end(), m_rowHeights.begin() + first);
}

void GridDocument::clearTexts(const GridRect& rect)
{
    const int left = std::max(0, rect.left);
    const int top = std::max(0, rect.top);
    const int right = std::min(m_cols - 1, rect.right);
    const int bottom = std::min(m_rows - 1, rect.bottom);
    for (int r = top; r <= bottom; ++r) {
        for (int c = left; c <= right; ++c) {
            m_texts[index(c, r)].clear();
        }
    }
}

bool GridDocument::sameContent(const GridDocument& other) const
{
    if (m_rows != other.m_rows || m_cols != other.m_cols || m_fixedRows != other.m_fixedRows ||
        m_fixedCols != other.m_fixedCols || m_wordWrap != other.m_wordWrap ||
        m_colWidths != other.m_colWidths || m_rowHeights != other.m_rowHeights ||
        m_hidden != other.m_hidden || m_texts != other.m_texts) {
        return false;
    }
    for (std::size_t i = 0; i < m_formatIds.size(); ++i) {
        if (m_formats[m_formatIds[i]] != other.m_formats[other.m_formatIds[i]]) {
            return false;
        }
    }
    return true;
}

} // namespace kestrum::grid
