#include "ChartEditorDialog.h"

#include "ui/Dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <limits>

namespace kestrum::chart {

namespace {

const char* const kKindNames[kSeriesKindCount] = {"Bar",  "Horizontal bar", "Pie",
                                                  "Line", "Point",          "3D point"};

QDoubleSpinBox* numberBox(double value)
{
    auto* box = new QDoubleSpinBox;
    box->setRange(-1e12, 1e12);
    box->setDecimals(4);
    box->setValue(value);
    return box;
}

} // namespace

ChartEditorDialog::ChartEditorDialog(const Chart& chart, QWidget* parent)
    : QDialog(parent), m_chart(chart)
{
    setObjectName(QStringLiteral("ChartEditorDialog"));
    setWindowTitle(QStringLiteral("Edit chart"));
    auto* tabs = new QTabWidget(this);
    tabs->addTab(chartTab(), QStringLiteral("Chart"));
    tabs->addTab(seriesTab(), QStringLiteral("Series"));
    tabs->addTab(axesTab(), QStringLiteral("Axes"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
    if (!m_chart.series.empty()) {
        m_seriesList->setCurrentRow(0);
    }
}

void ChartEditorDialog::paintSwatch(QPushButton* button, common::TColor colour)
{
    QPixmap swatch(24, 14);
    const QColor c = common::toQColor(colour);
    swatch.fill(c.isValid() ? c : QColor(Qt::transparent));
    button->setIcon(QIcon(swatch));
    button->setText(colour == common::clDefault ? QStringLiteral("Automatic")
                                                : common::colourToString(colour));
}

void ChartEditorDialog::chooseColour(common::TColor& colour, QPushButton* button)
{
    const auto chosen =
        ui::dialogs().getColour(this, common::toQColor(colour), QStringLiteral("Colour"));
    if (chosen && chosen->isValid()) {
        colour = common::fromQColor(*chosen);
        paintSwatch(button, colour);
    }
}

QWidget* ChartEditorDialog::chartTab()
{
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_title = new QLineEdit(m_chart.title);
    form->addRow(QStringLiteral("Title:"), m_title);
    m_panelColour = new QPushButton;
    paintSwatch(m_panelColour, m_chart.panelColour);
    connect(m_panelColour, &QPushButton::clicked, this,
            [this] { chooseColour(m_chart.panelColour, m_panelColour); });
    form->addRow(QStringLiteral("Panel colour:"), m_panelColour);
    m_legend = new QCheckBox(QStringLiteral("Legend"));
    m_legend->setChecked(m_chart.legendVisible);
    form->addRow(m_legend);
    m_dataTable = new QCheckBox(QStringLiteral("Data table"));
    m_dataTable->setChecked(m_chart.dataTableVisible);
    form->addRow(m_dataTable);
    m_view3D = new QCheckBox(QStringLiteral("3D view"));
    m_view3D->setChecked(m_chart.view3D.enabled);
    form->addRow(m_view3D);
    return page;
}

QWidget* ChartEditorDialog::seriesTab()
{
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    m_seriesList = new QListWidget;
    for (int s = 0; s < m_chart.seriesCount(); ++s) {
        const QString& t = m_chart.series[std::size_t(s)].title;
        m_seriesList->addItem(t.isEmpty() ? QStringLiteral("Series %1").arg(s + 1) : t);
    }
    layout->addWidget(m_seriesList, 1);
    auto* form = new QFormLayout;
    m_seriesTitle = new QLineEdit;
    form->addRow(QStringLiteral("Title:"), m_seriesTitle);
    m_seriesKind = new QComboBox;
    for (const char* name : kKindNames) {
        m_seriesKind->addItem(QLatin1String(name));
    }
    form->addRow(QStringLiteral("Kind:"), m_seriesKind);
    m_seriesColour = new QPushButton;
    connect(m_seriesColour, &QPushButton::clicked, this, [this] {
        if (m_current >= 0) {
            chooseColour(m_chart.series[std::size_t(m_current)].colour, m_seriesColour);
        }
    });
    form->addRow(QStringLiteral("Colour:"), m_seriesColour);
    m_eachPoint = new QCheckBox(QStringLiteral("One colour per point"));
    form->addRow(m_eachPoint);
    m_seriesMarks = new QCheckBox(QStringLiteral("Marks"));
    form->addRow(m_seriesMarks);
    m_seriesActive = new QCheckBox(QStringLiteral("Shown"));
    form->addRow(m_seriesActive);
    layout->addLayout(form, 2);
    connect(m_seriesList, &QListWidget::currentRowChanged, this, [this](int row) {
        storeSeries(m_chart);
        showSeries(row);
    });
    connect(m_seriesTitle, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (QListWidgetItem* item = m_seriesList->currentItem()) {
            item->setText(text);
        }
    });
    showSeries(-1);
    return page;
}

void ChartEditorDialog::showSeries(int row)
{
    m_current = row >= 0 && row < m_chart.seriesCount() ? row : -1;
    const bool any = m_current >= 0;
    for (QWidget* w : std::initializer_list<QWidget*>{m_seriesTitle, m_seriesKind, m_seriesColour,
                                                      m_eachPoint, m_seriesMarks, m_seriesActive}) {
        w->setEnabled(any);
    }
    if (!any) {
        return;
    }
    const ChartSeries& s = m_chart.series[std::size_t(m_current)];
    m_seriesTitle->setText(s.title);
    m_seriesKind->setCurrentIndex(int(s.kind));
    paintSwatch(m_seriesColour, s.colour);
    m_eachPoint->setChecked(s.colourEachPoint);
    m_seriesMarks->setChecked(s.marks.visible);
    m_seriesActive->setChecked(s.active);
}

void ChartEditorDialog::storeSeries(Chart& into) const
{
    if (m_current < 0 || m_current >= into.seriesCount()) {
        return;
    }
    ChartSeries& s = into.series[std::size_t(m_current)];
    s.title = m_seriesTitle->text();
    s.kind = SeriesKind(std::clamp(m_seriesKind->currentIndex(), 0, int(kSeriesKindCount) - 1));
    s.colourEachPoint = m_eachPoint->isChecked();
    s.marks.visible = m_seriesMarks->isChecked();
    s.active = m_seriesActive->isChecked();
}

QWidget* ChartEditorDialog::axisBox(const QString& caption, const ChartAxis& axis, AxisControls& c)
{
    auto* box = new QGroupBox(caption);
    auto* form = new QFormLayout(box);
    c.automatic = new QCheckBox(QStringLiteral("Automatic"));
    c.automatic->setChecked(axis.automatic);
    form->addRow(c.automatic);
    c.minimum = numberBox(axis.minimum);
    c.maximum = numberBox(axis.maximum);
    c.increment = numberBox(axis.increment);
    c.increment->setMinimum(0);
    form->addRow(QStringLiteral("Minimum:"), c.minimum);
    form->addRow(QStringLiteral("Maximum:"), c.maximum);
    form->addRow(QStringLiteral("Increment:"), c.increment);
    auto follow = [c](bool automatic) {
        c.minimum->setEnabled(!automatic);
        c.maximum->setEnabled(!automatic);
        c.increment->setEnabled(!automatic);
    };
    follow(axis.automatic);
    connect(c.automatic, &QCheckBox::toggled, this, follow);
    c.inverted = new QCheckBox(QStringLiteral("Inverted"));
    c.inverted->setChecked(axis.inverted);
    form->addRow(c.inverted);
    c.grid = new QCheckBox(QStringLiteral("Grid"));
    c.grid->setChecked(axis.gridVisible);
    form->addRow(c.grid);
    c.labelAngle = new QSpinBox;
    c.labelAngle->setRange(0, 359);
    c.labelAngle->setValue(axis.labelAngle);
    form->addRow(QStringLiteral("Label angle:"), c.labelAngle);
    c.title = new QLineEdit(axis.title);
    form->addRow(QStringLiteral("Title:"), c.title);
    return box;
}

QWidget* ChartEditorDialog::axesTab()
{
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    layout->addWidget(axisBox(QStringLiteral("Left axis"), m_chart.leftAxis, m_left));
    layout->addWidget(axisBox(QStringLiteral("Bottom axis"), m_chart.bottomAxis, m_bottom));
    return page;
}

void ChartEditorDialog::readAxis(const AxisControls& c, ChartAxis& axis) const
{
    axis.automatic = c.automatic->isChecked();
    axis.minimum = c.minimum->value();
    axis.maximum = std::max(c.maximum->value(), axis.minimum);
    axis.increment = c.increment->value();
    axis.inverted = c.inverted->isChecked();
    axis.gridVisible = c.grid->isChecked();
    axis.labelAngle = c.labelAngle->value();
    axis.title = c.title->text();
}

Chart ChartEditorDialog::chart() const
{
    Chart c = m_chart;
    storeSeries(c);
    c.title = m_title->text();
    c.legendVisible = m_legend->isChecked();
    c.dataTableVisible = m_dataTable->isChecked();
    c.view3D.enabled = m_view3D->isChecked();
    readAxis(m_left, c.leftAxis);
    readAxis(m_bottom, c.bottomAxis);
    return c;
}

} // namespace kestrum::chart
