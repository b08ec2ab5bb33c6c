#include "ChartPageDocument.h"

#include "editors/chart/ChartExporter.h"
#include "editors/chart/ChartStream.h"

namespace kestrum::chart {

ChartPageDocument::ChartPageDocument(QObject* parent) : store::PageDocument(parent) {}

Result<QByteArray> ChartPageDocument::writeContent()
{
    return ChartStream::write(m_chart);
}

Status ChartPageDocument::readContent(const QByteArray& in)
{
    if (in.isEmpty()) {
        clear();
        return {};
    }
    Result<Chart> loaded = ChartStream::read(in);
    if (!loaded) {
        clear();
        return fail(loaded.error());
    }
    m_chart = std::move(*loaded);
    emit contentReset();
    emit chartChanged();
    return {};
}

void ChartPageDocument::clear()
{
    m_chart = Chart();
    emit contentReset();
    emit chartChanged();
}

Status ChartPageDocument::importFile(const QString& path)
{
    Result<Chart> loaded = ChartExporter::readFile(path);
    if (!loaded) {
        clear();
        return fail(loaded.error());
    }
    m_chart = std::move(*loaded);
    emit contentReset();
    emit chartChanged();
    return {};
}

void ChartPageDocument::edit(const std::function<void(Chart&)>& change)
{
    change(m_chart);
    emit chartChanged();
    emit contentChanged();
}

void ChartPageDocument::changeView(const std::function<void(Chart&)>& change)
{
    change(m_chart);
    emit chartChanged();
}

void ChartPageDocument::replace(Chart chart)
{
    m_chart = std::move(chart);
    emit chartChanged();
    emit contentChanged();
}

} // namespace kestrum::chart
