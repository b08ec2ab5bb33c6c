#include "ChartPageDocument.h"

#include "editors/chart/ChartExporter.h"
#include "editors/chart/ChartStream.h"

namespace kestrum::chart {

ChartPageDocument::ChartPageDocument(QObject* parent) : store::PageDocument(parent) {}

bool ChartPageDocument::writeContent(QByteArray& out, QString*)
{
    out = ChartStream::write(m_chart);
    return true;
}

bool ChartPageDocument::readContent(const QByteArray& in, QString* error)
{
    if (in.isEmpty()) {
        clear();
        return true;
    }
    Result<Chart> loaded = ChartStream::read(in);
    if (!loaded) {
        if (error) {
            *error = loaded.error();
        }
        clear();
        return false;
    }
    m_chart = std::move(*loaded);
    emit contentReset();
    emit chartChanged();
    return true;
}

void ChartPageDocument::clear()
{
    m_chart = Chart();
    emit contentReset();
    emit chartChanged();
}

bool ChartPageDocument::importFile(const QString& path, QString* error)
{
    Result<Chart> loaded = ChartExporter::readFile(path);
    if (!loaded) {
        if (error) {
            *error = loaded.error();
        }
        clear();
        return false;
    }
    m_chart = std::move(*loaded);
    emit contentReset();
    emit chartChanged();
    return true;
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
