#include "TRMDiagramEditor.h"

#include "editors/diagram/DiagramBlockStyles.h"
#include "editors/diagram/DiagramExporter.h"
#include "editors/diagram/DiagramRenderer.h"
#include "editors/diagram/widgets/DiagramScene.h"
#include "editors/diagram/widgets/DiagramView.h"
#include "editors/diagram/widgets/TRMEditBlockDlg.h"
#include "editors/diagram/widgets/TRMEditBlocksDlg.h"
#include "editors/diagram/widgets/TRMSizingDlg.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QActionGroup>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPrinter>
#include <QSaveFile>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace kestrum::diagram {

namespace {

constexpr double kFitMargin = 10;

struct PictureFilter
{
    const char* label;
    const char* extension;
    const char* format;
    int quality;
};
// The save-picture dialog's filters, in order: the extension always becomes the filter's.
constexpr PictureFilter kPictureFilters[] = {
    {"PNG Image (*.png)", ".PNG", "PNG", -1},
    {"Bitmap (*.bmp)", ".BMP", "BMP", -1},
    {"JPEG Image (*.jpg)", ".JPG", "JPEG", 90},
};

} // namespace

TRMDiagramEditor::TRMDiagramEditor(QWidget* parent) : ui::EditorPanel(parent)
{
    setObjectName(QStringLiteral("RMDiagramEditor"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_scene = new DiagramScene(m_document, this);
    m_view = new DiagramView(this);
    m_view->setObjectName(QStringLiteral("atDiagram1"));
    m_view->setScene(m_scene);
    // A flat background.
    m_view->setFrameShape(QFrame::NoFrame);
    layout->addWidget(m_view);
    buildActions();

    connect(m_view, &DiagramView::rightButtonReleased, this,
            [this](const QPoint& at) { atDiagram1DControlMouseUp(Qt::RightButton, at); });
    connect(m_view, &DiagramView::clicked, this, &TRMDiagramEditor::atDiagram1Click);
    connect(m_view, &DiagramView::focusEntered, this, &TRMDiagramEditor::atDiagram1Enter);
    connect(m_scene, &DiagramScene::itemsMoved, this, &TRMDiagramEditor::atDiagram1AfterMove);
    connect(m_view, &DiagramView::rangeZoomRequested, this,
            [this](int percent, const QPointF& centre) {
                setZoom(percent);
                m_view->centerOn(centre);
            });
    connect(&m_document, &DiagramPageDocument::diagramChanged, this, [this] {
        if (m_view->zoom() != m_document.diagram().zoom()) {
            m_view->setZoom(m_document.diagram().zoom());
        }
    });
    connect(&m_document, &DiagramPageDocument::zoomChanged, m_view, &DiagramView::setZoom);
    connect(&m_document, &store::PageDocument::contentReset, this,
            &TRMDiagramEditor::followDocument);
    followDocument();
}

TRMDiagramEditor::~TRMDiagramEditor()
{
    // The view, the scene and the dialogs refer to the document: they go first.
    delete m_view;
    delete m_scene;
    delete m_editDialog;
    delete m_sizingDialog;
    delete m_blocksDialog;
}

QAction* TRMDiagramEditor::makeAction(const QString& name, const QString& text,
                                      const QString& themeIcon)
{
    auto* a = new QAction(text, this);
    a->setObjectName(name);
    if (!themeIcon.isEmpty()) {
        a->setIcon(QIcon::fromTheme(themeIcon));
    }
    m_actions.insert(name, a);
    return a;
}

void TRMDiagramEditor::buildActions()
{
    const auto on = [this](QAction* a, void (TRMDiagramEditor::*slot)()) {
        connect(a, &QAction::triggered, this, slot);
    };
    on(makeAction(QStringLiteral("btnDiagramSave"), QStringLiteral("Save picture"),
                  QStringLiteral("document-save")),
       &TRMDiagramEditor::btnDiagramSaveClick);
    on(makeAction(QStringLiteral("btnDiagramPrint"), QStringLiteral("Print"),
                  QStringLiteral("document-print")),
       &TRMDiagramEditor::btnDiagramPrintClick);
    QAction* zoomIn = makeAction(QStringLiteral("btnDiagramZoomIn"), QStringLiteral("Zoom in"),
                                 QStringLiteral("zoom-in"));
    zoomIn->setCheckable(true); // a toggle that may be up or down; every click zooms in
    on(zoomIn, &TRMDiagramEditor::btnDiagramZoomInClick);
    on(makeAction(QStringLiteral("btnDiagramZoomOut"), QStringLiteral("Zoom out"),
                  QStringLiteral("zoom-out")),
       &TRMDiagramEditor::btnDiagramZoomOutClick);
    on(makeAction(QStringLiteral("BtnDiagramPhoto"), QStringLiteral("Copy"),
                  QStringLiteral("edit-copy")),
       &TRMDiagramEditor::BtnDiagramPhotoClick);

    auto* modes = new QActionGroup(this);
    modes->setExclusive(true);
    const auto mode = [&](const QString& name, const QString& text,
                          void (TRMDiagramEditor::*slot)()) {
        QAction* a = makeAction(name, text);
        a->setCheckable(true);
        modes->addAction(a);
        on(a, slot);
        return a;
    };
    mode(QStringLiteral("btnDiagramSelect"), QStringLiteral("Select"),
         &TRMDiagramEditor::btnDiagramSelectClick)
        ->setChecked(true);
    mode(QStringLiteral("btnDiagramDrag"), QStringLiteral("Hand"),
         &TRMDiagramEditor::btnDiagramDragClick);
    mode(QStringLiteral("btnDiagramRange"), QStringLiteral("Zoom to range"),
         &TRMDiagramEditor::btnDiagramRangeClick);

    QAction* text = makeAction(QStringLiteral("btnDiagramText"), QStringLiteral("Link texts"));
    text->setCheckable(true);
    text->setChecked(true);
    on(text, &TRMDiagramEditor::btnDiagramTextClick);
    on(makeAction(QStringLiteral("btnDiagramSizing"), QStringLiteral("Sizing")),
       &TRMDiagramEditor::btnDiagramSizingClick);
    on(makeAction(QStringLiteral("btnDiagramCancel"), QStringLiteral("Cancel changes"),
                  QStringLiteral("edit-undo")),
       &TRMDiagramEditor::btnDiagramCancelClick);

    m_popupMenu = new QMenu(this);
    m_popupMenu->setObjectName(QStringLiteral("PopupMenu1"));
    QAction* del = makeAction(QStringLiteral("Delete1"), QStringLiteral("Delete"));
    on(del, &TRMDiagramEditor::Delete1Click);
    QAction* edit = makeAction(QStringLiteral("Edit1"), QStringLiteral("Edit..."));
    on(edit, &TRMDiagramEditor::Edit1Click);
    m_popupMenu->addAction(del);
    m_popupMenu->addAction(edit);

    m_copyMenu = new QMenu(this);
    m_copyMenu->setObjectName(QStringLiteral("PopupMenu2"));
    QAction* bitmap = makeAction(QStringLiteral("MenuItem1"), QStringLiteral("Copy as bitmap"));
    on(bitmap, &TRMDiagramEditor::MenuItem1Click);
    QAction* metafile = makeAction(QStringLiteral("MenuItem2"), QStringLiteral("Copy as metafile"));
    metafile->setToolTip(QStringLiteral("Copies the diagram as an SVG drawing"));
    on(metafile, &TRMDiagramEditor::MenuItem2Click);
    m_copyMenu->addAction(bitmap);
    m_copyMenu->addAction(metafile);

    // Commands without a toolbar button: keys on the surface.
    QAction* fit = makeAction(QStringLiteral("FitToCenter"), QStringLiteral("Fit to centre"));
    fit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_0));
    fit->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    on(fit, &TRMDiagramEditor::FitToCenter);
    QAction* styles =
        makeAction(QStringLiteral("EditBlockStyles"), QStringLiteral("Block styles..."));
    styles->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
    styles->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    on(styles, &TRMDiagramEditor::EditBlockStyles);
    addAction(fit);
    addAction(styles);
}

void TRMDiagramEditor::populateToolBar(QToolBar* toolBar)
{
    m_toolBar = toolBar;
    for (const char* name :
         {"btnDiagramSave", "btnDiagramPrint", "btnDiagramZoomIn", "btnDiagramZoomOut",
          "BtnDiagramPhoto", "btnDiagramSelect", "btnDiagramDrag", "btnDiagramRange",
          "btnDiagramText", "btnDiagramSizing", "btnDiagramCancel"}) {
        toolBar->addAction(action(QLatin1String(name)));
    }
}

void TRMDiagramEditor::followDocument()
{
    m_view->setZoom(m_document.diagram().zoom());
    // The text button shows whether the first link's text is shown.
    QAction* text = action(QStringLiteral("btnDiagramText"));
    const QSignalBlocker block(text);
    text->setChecked(m_document.diagram().linkTextsVisible());
}

void TRMDiagramEditor::setZoom(int zoom)
{
    m_document.setZoom(zoom);
}

QPoint TRMDiagramEditor::belowButton(QAction* a) const
{
    QWidget* button = m_toolBar ? m_toolBar->widgetForAction(a) : nullptr;
    if (!button) {
        return mapToGlobal(QPoint(0, 0));
    }
    return button->mapToGlobal(QPoint(0, button->height()));
}

// ---- dialogs -----------------------------------------------------------------------------------

TRMEditBlockDlg* TRMDiagramEditor::editBlockDialog()
{
    if (!m_editDialog) {
        m_editDialog = new TRMEditBlockDlg(m_document, this);
    }
    return m_editDialog;
}

TRMSizingDlg* TRMDiagramEditor::sizingDialog()
{
    if (!m_sizingDialog) {
        m_sizingDialog = new TRMSizingDlg(m_document, m_sizing, this);
    }
    return m_sizingDialog;
}

TRMEditBlocksDlg* TRMDiagramEditor::editBlocksDialog()
{
    if (!m_blocksDialog) {
        m_blocksDialog = new TRMEditBlocksDlg(m_document, this);
    }
    return m_blocksDialog;
}

QString TRMDiagramEditor::blockStylesFile()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QDir().mkpath(folder);
    return QDir(folder).filePath(QStringLiteral("DiagramBlocks.ini"));
}

// ---- pictures ----------------------------------------------------------------------------------

QImage TRMDiagramEditor::picture() const
{
    return DiagramRenderer::toImage(m_document.diagram());
}

QByteArray TRMDiagramEditor::svgPicture() const
{
    return DiagramExporter::svg(m_document.diagram());
}

void TRMDiagramEditor::savePicture(const QImage& picture)
{
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("Save picture");
    for (const PictureFilter& f : kPictureFilters) {
        request.filters << QLatin1String(f.label);
    }
    const auto choice = ui::dialogs().getSaveFileName(this, request);
    if (!choice) {
        return;
    }
    const int index = std::clamp(choice->filterIndex, 1, int(std::size(kPictureFilters))) - 1;
    const PictureFilter& filter = kPictureFilters[index];
    const QFileInfo info(choice->fileName);
    const QString fileName =
        info.dir().filePath(info.completeBaseName() + QLatin1String(filter.extension));
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, filter.format, filter.quality) ||
        !file.commit()) {
        ui::dialogs().warning(this, QStringLiteral("Cannot save data!"));
    }
}

void TRMDiagramEditor::paintOnPrinter(QPrinter* printer) const
{
    QPainter painter(printer);
    const QRectF page = printer->pageLayout().paintRectPixels(printer->resolution());
    const QSize size = DiagramRenderer::pictureSize(m_document.diagram());
    // The picture's pixels at the printer's resolution, smaller when it does not fit.
    double scale = printer->resolution() / 96.0;
    scale = std::min({scale, page.width() / size.width(), page.height() / size.height()});
    painter.scale(scale, scale);
    DiagramRenderer::paintPicture(painter, m_document.diagram());
}

// ---- commands ----------------------------------------------------------------------------------

void TRMDiagramEditor::atDiagram1DControlMouseUp(Qt::MouseButton button, const QPoint& globalPos)
{
    if (button != Qt::RightButton) {
        return;
    }
    const DiagramDocument& d = m_document.diagram();
    if (d.anyBlockSelected() || d.anyLinkSelected()) {
        m_popupMenu->popup(globalPos);
    }
}

void TRMDiagramEditor::Delete1Click()
{
    m_document.change([](DiagramDocument& d) { d.deleteSelected(); });
}

void TRMDiagramEditor::Edit1Click()
{
    TRMEditBlockDlg* dialog = editBlockDialog();
    dialog->prepareFromSelection();
    ui::dialogs().exec(dialog);
    m_document.markModified();
}

void TRMDiagramEditor::MenuItem1Click()
{
    QGuiApplication::clipboard()->setImage(picture());
}

void TRMDiagramEditor::MenuItem2Click()
{
    auto* data = new QMimeData;
    data->setData(QStringLiteral("image/svg+xml"), svgPicture());
    QGuiApplication::clipboard()->setMimeData(data);
}

void TRMDiagramEditor::FitToCenter()
{
    const QSize area = m_view->viewport()->size();
    const int zoom = m_document.diagram().fitZoom(QSizeF(area), kFitMargin);
    m_document.change([&](DiagramDocument& d) {
        d.setZoom(zoom);
        d.centreHorizontally(area.width());
    });
}

void TRMDiagramEditor::EditBlockStyles()
{
    TRMEditBlocksDlg* dialog = editBlocksDialog();
    const QString file = blockStylesFile();
    dialog->setGroups(DiagramBlockStyles::groupsOf(m_document.diagram()));
    dialog->ReadSettings(file);
    ui::dialogs().exec(dialog);
    dialog->SaveSettings(file);
}

void TRMDiagramEditor::btnDiagramSaveClick()
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setImage(picture());
    QImage loaded = clipboard->image();
    if (loaded.isNull()) {
        loaded = picture(); // a clipboard that keeps no pictures
    }
    savePicture(loaded);
}

void TRMDiagramEditor::btnDiagramPrintClick()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    }
    if (ui::dialogs().printSetup(this, m_printer.get())) {
        ui::dialogs().printPreview(this, m_printer.get(),
                                   [this](QPrinter* printer) { paintOnPrinter(printer); });
    }
}

void TRMDiagramEditor::btnDiagramZoomInClick()
{
    setZoom(DiagramDocument::zoomedIn(m_document.diagram().zoom()));
    m_diagramChanged = true;
}

void TRMDiagramEditor::btnDiagramZoomOutClick()
{
    setZoom(DiagramDocument::zoomedOut(m_document.diagram().zoom()));
    m_diagramChanged = true;
}

void TRMDiagramEditor::BtnDiagramPhotoClick()
{
    m_copyMenu->popup(belowButton(action(QStringLiteral("BtnDiagramPhoto"))));
}

void TRMDiagramEditor::btnDiagramSelectClick()
{
    m_view->setMode(DiagramView::Mode::Pointer);
}

void TRMDiagramEditor::btnDiagramDragClick()
{
    m_document.changeQuietly([](DiagramDocument& d) { d.selectAll(false); });
    m_view->setMode(DiagramView::Mode::Hand);
}

void TRMDiagramEditor::btnDiagramRangeClick()
{
    m_view->setMode(DiagramView::Mode::Range);
    m_diagramChanged = true;
}

void TRMDiagramEditor::btnDiagramTextClick()
{
    const bool shown = action(QStringLiteral("btnDiagramText"))->isChecked();
    m_document.change([shown](DiagramDocument& d) { d.setLinkTextsVisible(shown); });
    m_diagramChanged = true;
}

void TRMDiagramEditor::btnDiagramSizingClick()
{
    TRMSizingDlg* dialog = sizingDialog();
    dialog->move(belowButton(action(QStringLiteral("btnDiagramSizing"))));
    m_diagramChanged = true;
    ui::dialogs().exec(dialog);
}

void TRMDiagramEditor::btnDiagramCancelClick()
{
    m_diagramChanged = false;
    emit reloadRequested();
}

} // namespace kestrum::diagram
