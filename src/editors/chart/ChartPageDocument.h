#pragma once

#include "editors/chart/Chart.h"
#include "store/PageDocument.h"

#include <functional>

namespace kestrum::chart {

// The document of chart pages: the chart the store reads pages into (content: the chart
// stream) and the page's chart-info text (its PageInfo, "None" until a page is read), which
// may carry a fitted curve.
class ChartPageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit ChartPageDocument(QObject* parent = nullptr);

    // ---- PageDocument
    store::EditorKind kind() const override { return store::EditorKind::Chart; }
    Result<QByteArray> writeContent() override;
    // An empty content is an empty chart.
    Status readContent(const QByteArray& in) override;
    void clear() override;
    // A chart file (".WSX", in the native format). A file that cannot be read leaves the
    // chart empty.
    Status importFile(const QString& path) override;
    void setPageInfo(const QString& info) override { m_chartInfo = info; }

    const Chart& chart() const { return m_chart; }
    const QString& chartInfo() const { return m_chartInfo; }

    // A change by the user: the page is modified.
    void edit(const std::function<void(Chart&)>& change);
    // A change of the view only (rotation while animating): redrawn, not modified.
    void changeView(const std::function<void(Chart&)>& change);
    // A whole chart replaced by the user (a chart file opened into the page).
    void replace(Chart chart);

signals:
    // The chart changed in any way: views repaint.
    void chartChanged();

private:
    Chart m_chart;
    QString m_chartInfo = QStringLiteral("None");
};

} // namespace kestrum::chart
