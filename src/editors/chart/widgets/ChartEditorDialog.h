#pragma once

#include "editors/chart/Chart.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;

namespace kestrum::chart {

// The chart editor dialog: the chart's title, panel colour, legend, data table and 3D view;
// each series' title, kind, colour, marks and visibility; the left and bottom axes' ranges,
// titles, grids, inversion and label angles. It works on a copy that chart() returns.
class ChartEditorDialog : public QDialog
{
    Q_OBJECT
public:
    explicit ChartEditorDialog(const Chart& chart, QWidget* parent = nullptr);

    // The chart with the dialog's settings (read when the dialog was accepted).
    Chart chart() const;

    // The controls, by what they set (tests set them as a user would).
    QLineEdit* titleEdit() const { return m_title; }
    QListWidget* seriesList() const { return m_seriesList; }
    QLineEdit* seriesTitleEdit() const { return m_seriesTitle; }
    QComboBox* seriesKindBox() const { return m_seriesKind; }
    QPushButton* seriesColourButton() const { return m_seriesColour; }
    QPushButton* panelColourButton() const { return m_panelColour; }

    struct AxisControls
    {
        QCheckBox* automatic = nullptr;
        QDoubleSpinBox* minimum = nullptr;
        QDoubleSpinBox* maximum = nullptr;
        QDoubleSpinBox* increment = nullptr;
        QCheckBox* inverted = nullptr;
        QCheckBox* grid = nullptr;
        QSpinBox* labelAngle = nullptr;
        QLineEdit* title = nullptr;
    };
    const AxisControls& leftAxisControls() const { return m_left; }
    const AxisControls& bottomAxisControls() const { return m_bottom; }

private:
    QWidget* chartTab();
    QWidget* seriesTab();
    QWidget* axesTab();
    QWidget* axisBox(const QString& caption, const ChartAxis& axis, AxisControls& controls);
    void readAxis(const AxisControls& controls, ChartAxis& axis) const;
    void showSeries(int row);
    // The shown series' controls into `into`.
    void storeSeries(Chart& into) const;
    void chooseColour(common::TColor& colour, QPushButton* button);
    static void paintSwatch(QPushButton* button, common::TColor colour);

    Chart m_chart;
    int m_current = -1;
    QLineEdit* m_title = nullptr;
    QPushButton* m_panelColour = nullptr;
    QCheckBox* m_legend = nullptr;
    QCheckBox* m_dataTable = nullptr;
    QCheckBox* m_view3D = nullptr;
    QListWidget* m_seriesList = nullptr;
    QLineEdit* m_seriesTitle = nullptr;
    QComboBox* m_seriesKind = nullptr;
    QPushButton* m_seriesColour = nullptr;
    QCheckBox* m_seriesActive = nullptr;
    QCheckBox* m_seriesMarks = nullptr;
    QCheckBox* m_eachPoint = nullptr;
    AxisControls m_left;
    AxisControls m_bottom;
};

} // namespace kestrum::chart
