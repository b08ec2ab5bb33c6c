#include "TRMChartEditor.h"

#include "editors/chart/ChartCommands.h"
#include "editors/chart/ChartMotion.h"
#include "editors/chart/ChartRenderer.h"
#include "editors/chart/widgets/ChartEditorDialog.h"
#include "editors/chart/widgets/ChartIcons.h"
#include "editors/chart/widgets/ChartView.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPrinter>
#include <QRandomGenerator>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::chart {

namespace {

struct SaveFilter
{
    const char* label;
    const char* extension;
    ChartFileFormat format;
};

// The metafile entries write SVG on this platform and say so.
constexpr SaveFilter kSaveFilters[] = {
    {"Tavlo Chart (*.WSX)", ".WSX", ChartFileFormat::Native},
    {"Windows Bitmap (*.BMP)", ".BMP", ChartFileFormat::Bmp},
    {"Windows Meta File, written as SVG (*.WMF)", ".WMF", ChartFileFormat::Svg},
    {"Windows Enhanced Meta File, written as SVG (*.EMF)", ".EMF", ChartFileFormat::Svg},
    {"PNG file (*.PNG)", ".PNG", ChartFileFormat::Png},
    {"JPeg file (*.JPG *.JPEG)", ".JPG", ChartFileFormat::Jpeg},
};
constexpr int kSaveFilterCount = int(sizeof(kSaveFilters) / sizeof(kSaveFilters[0]));

} // namespace

ChartMotion& TRMChartEditor::motion()
{
    static ChartMotion state;
    return state;
}

TRMChartEditor::TRMChartEditor(QWidget* parent) : ui::EditorPanel(parent)
{
    setObjectName(QStringLiteral("TRMChartEditor"));
    m_view = new ChartView(m_document, motion(), this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);

    m_timer.setObjectName(QStringLiteral("Timer1"));
    m_timer.setInterval(100);
    connect(&m_timer, &QTimer::timeout, this, &TRMChartEditor::Timer1Timer);
    m_coin = [] { return int(QRandomGenerator::global()->bounded(2)); };

    buildActions();
    m_copyMenu = new QMenu(this);
    m_copyMenu->setObjectName(QStringLiteral("PopupMenu1"));
    m_copyMenu->addAction(action(QStringLiteral("Asbitmap1")));
    m_copyMenu->addAction(action(QStringLiteral("AsMetafile1")));
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { m_copyMenu->popup(m_view->mapToGlobal(pos)); });

    connect(&m_document, &store::PageDocument::contentReset, this,
            &TRMChartEditor::InitializeChart);
    connect(m_view, &ChartView::rotated, &m_document, [this] {
        m_view->setCursor(Qt::ArrowCursor);
        emit m_document.contentChanged();
    });
    InitializeChart();
}

TRMChartEditor::~TRMChartEditor() = default;

QAction* TRMChartEditor::addAction(const QString& name, const QString& text, const QString& tip,
                                   void (TRMChartEditor::*slot)(), bool checkable)
{
    auto* a = new QAction(text, this);
    a->setObjectName(name);
    a->setToolTip(tip);
    a->setCheckable(checkable);
    a->setIcon(ChartIcons::forCommand(name));
    connect(a, &QAction::triggered, this, slot);
    m_actions.insert(name, a);
    return a;
}

void TRMChartEditor::buildActions()
{
    // The copy button pops the copy menu up at its lower left corner.
    auto* photo = new QAction(QStringLiteral("Copy"), this);
    photo->setObjectName(QStringLiteral("PhotoBtn"));
    photo->setToolTip(QStringLiteral("Copy the chart to the clipboard"));
    photo->setIcon(ChartIcons::forCommand(photo->objectName()));
    m_actions.insert(photo->objectName(), photo);
    connect(photo, &QAction::triggered, this, [this, photo] {
        QWidget* button = nullptr;
        for (QObject* o : photo->associatedObjects()) {
            auto* widget = qobject_cast<QWidget*>(o);
            if (widget && !qobject_cast<QMenu*>(widget)) {
                button = widget;
            }
        }
        const QPoint at = button ? button->mapToGlobal(QPoint(0, button->height()))
                                 : m_view->mapToGlobal(QPoint(0, 0));
        m_copyMenu->popup(at);
    });
    addAction(QStringLiteral("Asbitmap1"), QStringLiteral("Copy as bitmap"),
              QStringLiteral("Copy the chart as a bitmap"), &TRMChartEditor::Copyasbitmap1Click);
    addAction(QStringLiteral("AsMetafile1"), QStringLiteral("Copy as Metafile"),
              QStringLiteral("Copy the chart as a drawing (SVG)"),
              &TRMChartEditor::CopyasMetafile1Click);
    addAction(QStringLiteral("ChartEdit"), QStringLiteral("Edit chart..."),
              QStringLiteral("Titles, colours, series and axes"), &TRMChartEditor::EditChartClick);
    addAction(QStringLiteral("ChartExport"), QStringLiteral("Save chart..."),
              QStringLiteral("Save the chart as a chart file or a picture"),
              &TRMChartEditor::SaveChartToDisk);
    addAction(QStringLiteral("ChartImport"), QStringLiteral("Open chart..."),
              QStringLiteral("Replace the chart by a chart file"), &TRMChartEditor::OpenChartClick);
    addAction(QStringLiteral("ChartPrint"), QStringLiteral("Print chart..."),
              QStringLiteral("Print preview of the chart"), &TRMChartEditor::PrintChartClick);
    addAction(QStringLiteral("RotationBtn"), QStringLiteral("Rotate"),
              QStringLiteral("Turn the chart with the mouse"), &TRMChartEditor::RotateBtnClick,
              true);
    addAction(QStringLiteral("ZoomInBtn"), QStringLiteral("Zoom in"),
              QStringLiteral("Drag a rectangle to zoom"), &TRMChartEditor::ZoomInClick, true);
    addAction(QStringLiteral("ZoomOutBtn"), QStringLiteral("Zoom out"),
              QStringLiteral("Undo the zoom"), &TRMChartEditor::ZoomOutClick);
    addAction(QStringLiteral("BaseLineBtn"), QStringLiteral("Base lines"),
              QStringLiteral("Lines from the points to the floor"), &TRMChartEditor::BLinesClick,
              true);
    addAction(QStringLiteral("ViewWalls"), QStringLiteral("Walls"),
              QStringLiteral("Show the 3D walls"), &TRMChartEditor::ViewWallsClick, true);
    addAction(QStringLiteral("AnimateBtn"), QStringLiteral("Animate"),
              QStringLiteral("Swing the 3D chart"), &TRMChartEditor::AnimateClick, true);
    addAction(QStringLiteral("View3D"), QStringLiteral("3D"), QStringLiteral("3D view"),
              &TRMChartEditor::View3DClick, true);
    addAction(QStringLiteral("HBarBtn"), QStringLiteral("Horizontal bars"),
              QStringLiteral("Horizontal bars"), &TRMChartEditor::SwitchHBar, true);
    addAction(QStringLiteral("VBarBtn"), QStringLiteral("Vertical bars"),
              QStringLiteral("Vertical bars"), &TRMChartEditor::SwitchVBar, true);
    addAction(QStringLiteral("PieBtn"), QStringLiteral("Pie"), QStringLiteral("Pie"),
              &TRMChartEditor::SwitchPie, true);
    addAction(QStringLiteral("SwapSeriesBtn"), QStringLiteral("Swap series"),
              QStringLiteral("Exchange series and categories"), &TRMChartEditor::SwapSeries);
    addAction(QStringLiteral("GroupBarBtn"), QStringLiteral("Grouped bars"),
              QStringLiteral("Every series as bars"), &TRMChartEditor::SwitchGroupBars, true);
    addAction(QStringLiteral("GroupLineBtn"), QStringLiteral("Grouped lines"),
              QStringLiteral("Every series as a line"), &TRMChartEditor::SwitchGroupLines, true);
}

void TRMChartEditor::populateToolBar(QToolBar* toolBar)
{
    for (const char* name : {"PhotoBtn", "ChartEdit", "ChartExport", "ChartImport", "ChartPrint"}) {
        toolBar->addAction(action(QLatin1String(name)));
    }
    toolBar->addSeparator();
    for (const char* name : {"HBarBtn", "VBarBtn", "PieBtn"}) {
        toolBar->addAction(action(QLatin1String(name)));
    }
    toolBar->addSeparator();
    for (const char* name : {"GroupBarBtn", "GroupLineBtn", "SwapSeriesBtn"}) {
        toolBar->addAction(action(QLatin1String(name)));
    }
    toolBar->addSeparator();
    for (const char* name : {"View3D", "RotationBtn", "AnimateBtn", "ViewWalls", "BaseLineBtn",
                             "ZoomInBtn", "ZoomOutBtn"}) {
        toolBar->addAction(action(QLatin1String(name)));
    }
}

void TRMChartEditor::populateMenu(QMenu* menu)
{
    menu->addAction(action(QStringLiteral("ChartEdit")));
    QMenu* copy = menu->addMenu(QStringLiteral("Copy"));
    copy->addAction(action(QStringLiteral("Asbitmap1")));
    copy->addAction(action(QStringLiteral("AsMetafile1")));
    menu->addAction(action(QStringLiteral("ChartExport")));
    menu->addAction(action(QStringLiteral("ChartImport")));
    menu->addAction(action(QStringLiteral("ChartPrint")));
    menu->addSeparator();
    for (const char* name :
         {"HBarBtn", "VBarBtn", "PieBtn", "GroupBarBtn", "GroupLineBtn", "SwapSeriesBtn"}) {
        menu->addAction(action(QLatin1String(name)));
    }
    menu->addSeparator();
    for (const char* name : {"View3D", "RotationBtn", "AnimateBtn", "ViewWalls", "BaseLineBtn",
                             "ZoomInBtn", "ZoomOutBtn"}) {
        menu->addAction(action(QLatin1String(name)));
    }
}

bool TRMChartEditor::checked(const QString& name) const
{
    return action(name)->isChecked();
}

void TRMChartEditor::InitializeChart()
{
    m_savedPanel = m_document.chart().panelColour;
    refreshToolBar();
}

void TRMChartEditor::refreshToolBar()
{
    const Chart& c = m_document.chart();
    const ChartButtons b =
        ChartButtons::forChart(c, motion().rotationMode, checked(QStringLiteral("AnimateBtn")));
    auto set = [this](const char* name, bool enabled, std::optional<bool> down = std::nullopt) {
        QAction* a = action(QLatin1String(name));
        a->setEnabled(enabled);
        if (down) {
            a->setChecked(*down);
        }
    };
    set("ZoomInBtn", b.zoomEnabled);
    set("ZoomOutBtn", b.zoomEnabled);
    set("RotationBtn", b.rotateEnabled, b.rotateDown);
    set("AnimateBtn", b.animateEnabled);
    set("ViewWalls", b.wallsEnabled, b.wallsDown);
    set("BaseLineBtn", b.baseLineEnabled, b.baseLineDown);
    set("View3D", b.view3DEnabled, b.view3DDown);
    set("HBarBtn", b.kindEnabled, b.hBarDown);
    set("VBarBtn", b.kindEnabled, b.vBarDown);
    set("PieBtn", b.kindEnabled, b.pieDown);
    set("SwapSeriesBtn", b.groupEnabled);
    set("GroupBarBtn", b.groupEnabled, b.groupBarsDown);
    set("GroupLineBtn", b.groupEnabled, b.groupLinesDown);
    if (b.timerRunning) {
        m_timer.start();
    } else {
        m_timer.stop();
    }
    m_view->setRotationAllowed(b.rotateEnabled);
    m_view->setCursor(motion().rotationMode && b.rotateEnabled ? Qt::OpenHandCursor
                                                               : Qt::ArrowCursor);
}

void TRMChartEditor::SwitchHBar()
{
    m_document.edit(ChartCommands::switchHBar);
    refreshToolBar();
}

void TRMChartEditor::SwitchVBar()
{
    m_document.edit(ChartCommands::switchVBar);
    refreshToolBar();
}

void TRMChartEditor::SwitchPie()
{
    m_document.edit(ChartCommands::switchPie);
    refreshToolBar();
}

void TRMChartEditor::SwitchGroupBars()
{
    m_document.edit(ChartCommands::switchGroupBars);
    refreshToolBar();
}

void TRMChartEditor::SwitchGroupLines()
{
    m_document.edit(ChartCommands::switchGroupLines);
    refreshToolBar();
}

void TRMChartEditor::SwapSeries()
{
    m_document.edit(ChartCommands::swapSeries);
    refreshToolBar();
}

void TRMChartEditor::BLinesClick()
{
    const bool down = checked(QStringLiteral("BaseLineBtn"));
    m_document.edit([down](Chart& c) { ChartCommands::setBaseLines(c, down); });
}

void TRMChartEditor::ViewWallsClick()
{
    const bool down = checked(QStringLiteral("ViewWalls"));
    const common::TColor saved = m_savedPanel;
    m_document.edit([down, saved](Chart& c) {
        ChartCommands::setWalls(c, down);
        c.panelColour = down ? saved : common::clWhite;
    });
}

void TRMChartEditor::View3DClick()
{
    const bool down = checked(QStringLiteral("View3D"));
    m_document.edit([down](Chart& c) { c.view3D.enabled = down; });
    refreshToolBar();
}

void TRMChartEditor::RotateBtnClick()
{
    motion().rotationMode = checked(QStringLiteral("RotationBtn"));
    m_view->setZoomAllowed(false);
    action(QStringLiteral("ZoomInBtn"))->setChecked(false);
    m_view->update();
    refreshToolBar();
}

void TRMChartEditor::ZoomInClick()
{
    motion().rotationMode = false;
    action(QStringLiteral("RotationBtn"))->setChecked(false);
    const bool down = checked(QStringLiteral("ZoomInBtn"));
    m_view->setZoomAllowed(down);
    m_view->setCursor(down ? Qt::SizeAllCursor : Qt::ArrowCursor);
    m_view->update();
    emit m_document.contentChanged();
}

void TRMChartEditor::ZoomOutClick()
{
    m_view->undoZoom();
}

void TRMChartEditor::AnimateClick()
{
    if (checked(QStringLiteral("AnimateBtn"))) {
        motion().startAnimation(m_document.chart());
        m_timer.start();
    } else {
        m_timer.stop();
    }
}

void TRMChartEditor::Timer1Timer()
{
    m_document.changeView([this](Chart& c) { motion().tick(c, m_coin); });
}

void TRMChartEditor::Copyasbitmap1Click()
{
    m_document.changeView([](Chart& c) { c.panelColour = common::clWhite; });
    QApplication::clipboard()->setImage(m_view->toImage());
    m_document.changeView([](Chart& c) { c.panelColour = common::clBtnFace; });
}

void TRMChartEditor::CopyasMetafile1Click()
{
    m_document.changeView([](Chart& c) { c.panelColour = common::clWhite; });
    Result<QByteArray> svg = ChartExporter::picture(m_document.chart(), ChartFileFormat::Svg,
                                                    m_view->size(), m_view->renderOptions());
    if (svg) {
        auto* data = new QMimeData;
        data->setData(QStringLiteral("image/svg+xml"), *svg);
        data->setImageData(m_view->toImage());
        QApplication::clipboard()->setMimeData(data);
    }
    m_document.changeView([](Chart& c) { c.panelColour = common::clBtnFace; });
}

QStringList TRMChartEditor::saveFilters()
{
    QStringList out;
    for (const SaveFilter& f : kSaveFilters) {
        out << QLatin1String(f.label);
    }
    return out;
}

QString TRMChartEditor::filterExtension(int filterIndex)
{
    return QLatin1String(kSaveFilters[std::clamp(filterIndex, 1, kSaveFilterCount) - 1].extension);
}

ChartFileFormat TRMChartEditor::filterFormat(int filterIndex)
{
    return kSaveFilters[std::clamp(filterIndex, 1, kSaveFilterCount) - 1].format;
}

void TRMChartEditor::SaveChartToDisk()
{
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("Save chart");
    request.filters = saveFilters();
    request.filterIndex = 1;
    const auto choice = ui::dialogs().getSaveFileName(this, request);
    if (!choice) {
        return;
    }
    QString fileName = choice->fileName;
    if (QFileInfo(fileName).suffix().isEmpty()) {
        fileName += filterExtension(choice->filterIndex);
    }
    RenderOptions options = m_view->renderOptions();
    const Status written = ChartExporter::write(
        m_document.chart(), fileName, filterFormat(choice->filterIndex), m_view->size(), options);
    if (!written) {
        ui::dialogs().warning(this, written.error());
    }
}

bool TRMChartEditor::LoadChart(const QString& fileName)
{
    Result<Chart> loaded = ChartExporter::readFile(fileName);
    if (!loaded) {
        ui::dialogs().warning(this, loaded.error());
        return false;
    }
    m_view->undoZoom();
    m_document.replace(std::move(*loaded));
    InitializeChart();
    return true;
}

void TRMChartEditor::OpenChartClick()
{
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("Open chart");
    request.filters = {QStringLiteral("Tavlo chart (*.WSX)")};
    const auto choice = ui::dialogs().getOpenFileName(this, request);
    if (choice) {
        LoadChart(choice->fileName);
    }
}

void TRMChartEditor::EditChartClick()
{
    ChartEditorDialog dialog(m_document.chart(), this);
    if (ui::dialogs().exec(&dialog) == QDialog::Accepted) {
        m_document.edit([&dialog](Chart& c) { c = dialog.chart(); });
        InitializeChart();
    } else {
        emit m_document.contentChanged();
    }
}

QPrinter* TRMChartEditor::printer()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    }
    return m_printer.get();
}

void TRMChartEditor::paintForPrint(QPrinter* device)
{
    QPainter painter(device);
    // The chart at the view's size, scaled to the page so that its text keeps its proportions.
    const QSize size = m_view->size().expandedTo(QSize(400, 300));
    const QRect page = painter.viewport();
    const double scale =
        std::min(page.width() / double(size.width()), page.height() / double(size.height()));
    painter.scale(scale, scale);
    ChartRenderer::paint(painter, QRectF(QPointF(0, 0), QSizeF(size)), m_document.chart(),
                         m_view->renderOptions());
}

void TRMChartEditor::PrintChartClick()
{
    QPrinter* p = printer();
    p->setPageMargins(QMarginsF(5, 5, 5, 5), QPageLayout::Millimeter);
    ui::dialogs().printPreview(this, p, [this](QPrinter* device) { paintForPrint(device); });
}

} // namespace kestrum::chart
