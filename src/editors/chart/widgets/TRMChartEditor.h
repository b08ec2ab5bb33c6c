#pragma once

#include "editors/chart/ChartButtons.h"
#include "editors/chart/ChartExporter.h"
#include "editors/chart/ChartPageDocument.h"
#include "ui/EditorPanel.h"

#include <QHash>
#include <QTimer>

#include <functional>
#include <memory>

class QAction;
class QMenu;
class QPrinter;
class QToolBar;

namespace kestrum::chart {

class ChartMotion;
class ChartView;

// The chart page editor: the chart view, the commands of the main window's chart toolbar
// (ChartBar) and chart menu (ChartMenu), the copy menu, import, export, printing, 3D rotation
// by the mouse and the animation timer. One editor serves every chart page; the store loads
// pages into its document and saves them from it.
class TRMChartEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMChartEditor(QWidget* parent = nullptr);
    ~TRMChartEditor() override;

    // ---- EditorPanel
    store::PageDocument& document() override { return m_document; }
    void populateToolBar(QToolBar* toolBar) override;
    void populateMenu(QMenu* menu) override;

    ChartPageDocument& chartDocument() { return m_document; }
    ChartView* view() const { return m_view; }
    QMenu* copyMenu() const { return m_copyMenu; }
    // The editor's commands by object name ("HBarBtn", "RotationBtn", "Asbitmap1"...).
    QAction* action(const QString& name) const { return m_actions.value(name); }
    QTimer& animationTimer() { return m_timer; }
    // The interaction state shared by every chart of the program.
    static ChartMotion& motion();
    // The random source of the animation (0 or 1); replaceable for tests.
    void setCoin(std::function<int()> coin) { m_coin = std::move(coin); }
    QPrinter* printer();

    // ---- operations
    // Binds the chart to the toolbar after every load: button states, the timer, the saved
    // panel colour.
    void InitializeChart();
    void SwitchHBar();
    void SwitchVBar();
    void SwitchPie();
    void SwitchGroupBars();
    void SwitchGroupLines();
    void SwapSeries();
    // The chart file `fileName` replaces the chart.
    bool LoadChart(const QString& fileName);
    // The export dialog; the chosen filter decides the format, a name without an extension
    // takes the filter's.
    void SaveChartToDisk();
    void Copyasbitmap1Click();
    void CopyasMetafile1Click();
    void EditChartClick();
    void OpenChartClick();
    void PrintChartClick();
    void RotateBtnClick();
    void ZoomInClick();
    void ZoomOutClick();
    void BLinesClick();
    void ViewWallsClick();
    void AnimateClick();
    void View3DClick();
    void Timer1Timer();

    // The export dialog's filters, and the extension each one appends.
    static QStringList saveFilters();
    static QString filterExtension(int filterIndex);
    static ChartFileFormat filterFormat(int filterIndex);

private:
    QAction* addAction(const QString& name, const QString& text, const QString& tip,
                       void (TRMChartEditor::*slot)(), bool checkable = false);
    void buildActions();
    void refreshToolBar();
    bool checked(const QString& name) const;
    void paintForPrint(QPrinter* printer);

    ChartPageDocument m_document;
    ChartView* m_view = nullptr;
    QMenu* m_copyMenu = nullptr;
    QHash<QString, QAction*> m_actions;
    QTimer m_timer;
    std::function<int()> m_coin;
    common::TColor m_savedPanel = common::clWhite;
    std::unique_ptr<QPrinter> m_printer;
};

} // namespace kestrum::chart
