#include "TRMImageEditor.h"

#include "editors/image/ImageZoom.h"
#include "editors/image/PictureFiles.h"
#include "editors/image/widgets/ImageView.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::image {

namespace {
int s_zoom = ImageZoom::kInitial;
} // namespace

int TRMImageEditor::zoom()
{
    return s_zoom;
}

void TRMImageEditor::setZoomPercent(int percent)
{
    s_zoom = percent;
}

TRMImageEditor::TRMImageEditor(QWidget* parent) : ui::EditorPanel(parent)
{
    setObjectName(QStringLiteral("TRMImageEditor"));
    setWindowTitle(QStringLiteral("Image Editor"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_scrollBox = new QScrollArea(this);
    m_scrollBox->setObjectName(QStringLiteral("ScrollBox1"));
    m_scrollBox->setWidgetResizable(false);
    m_view = new ImageView;
    m_scrollBox->setWidget(m_view);
    layout->addWidget(m_scrollBox);

    m_popupMenu = new QMenu(this);
    m_popupMenu->setObjectName(QStringLiteral("PopupMenu1"));
    QAction* open = m_popupMenu->addAction(QStringLiteral("Open file"));
    open->setObjectName(QStringLiteral("Load1"));
    m_actions.insert(open->objectName(), open);
    connect(open, &QAction::triggered, this, &TRMImageEditor::Load1Click);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { m_popupMenu->popup(m_view->mapToGlobal(at)); });
    m_scrollBox->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_scrollBox, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { m_popupMenu->popup(m_scrollBox->mapToGlobal(at)); });

    addAction(QStringLiteral("SaveImageBtn"), QStringLiteral("Save to file"),
              &TRMImageEditor::SaveImageBtnClick)
        ->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    addAction(QStringLiteral("CutImageBtn"), QStringLiteral("Copy to clipboard"),
              &TRMImageEditor::CutImageBtnClick)
        ->setIcon(QIcon::fromTheme(QStringLiteral("edit-copy"),
                                   style()->standardIcon(QStyle::SP_FileDialogDetailedView)));
    addAction(QStringLiteral("ZoomInImageBtn"), QStringLiteral("Zoom in"),
              &TRMImageEditor::ZoomInImageBtnClick)
        ->setIcon(
            QIcon::fromTheme(QStringLiteral("zoom-in"), style()->standardIcon(QStyle::SP_ArrowUp)));
    addAction(QStringLiteral("ZoomOutImageBtn"), QStringLiteral("Zoom out"),
              &TRMImageEditor::ZoomOutImageBtnClick)
        ->setIcon(QIcon::fromTheme(QStringLiteral("zoom-out"),
                                   style()->standardIcon(QStyle::SP_ArrowDown)));

    // A page read by the store shows at the current zoom.
    connect(&m_document, &store::PageDocument::contentReset, this, [this] {
        m_view->setPicture(m_document.picture());
        SetZoom();
    });
}

QAction* TRMImageEditor::addAction(const QString& name, const QString& text,
                                   void (TRMImageEditor::*slot)())
{
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setToolTip(text);
    connect(action, &QAction::triggered, this, slot);
    m_actions.insert(name, action);
    return action;
}

void TRMImageEditor::populateToolBar(QToolBar* toolBar)
{
    for (const char* name : {"SaveImageBtn", "CutImageBtn", "ZoomInImageBtn", "ZoomOutImageBtn"}) {
        toolBar->addAction(m_actions.value(QLatin1String(name)));
    }
}

void TRMImageEditor::SetZoom()
{
    m_view->resize(ImageZoom::viewSize(s_zoom, m_document.picture().size()));
    m_view->update();
}

void TRMImageEditor::showStatus(const QString& text)
{
    // The main window's first status panel.
    if (auto* panel = window()->findChild<QLabel*>(QStringLiteral("PositionPanel"))) {
        panel->setText(text);
    }
    emit statusText(text);
}

void TRMImageEditor::ZoomIn()
{
    s_zoom = ImageZoom::zoomIn(s_zoom);
    SetZoom();
    showStatus(ImageZoom::statusText(s_zoom));
}

void TRMImageEditor::ZoomOut()
{
    s_zoom = ImageZoom::zoomOut(s_zoom);
    SetZoom();
    showStatus(ImageZoom::statusText(s_zoom));
}

bool TRMImageEditor::LoadPictureFile(const QString& fileName)
{
    if (const Status imported = m_document.importFile(fileName); !imported) {
        ui::dialogs().warning(this, imported.error());
        return false;
    }
    m_document.setPicture(m_document.picture()); // the page changed
    return true;
}

void TRMImageEditor::Load1Click()
{
    ui::Dialogs::FileRequest request;
    request.filters = PictureFiles::openFilters();
    const auto choice = ui::dialogs().getOpenFileName(this, request);
    if (!choice) {
        return;
    }
    LoadPictureFile(choice->fileName);
}

void TRMImageEditor::SavePicture(const QImage& picture)
{
    ui::Dialogs::FileRequest request;
    request.directory = m_saveFolder;
    request.filters = PictureFiles::saveFilters();
    const auto choice = ui::dialogs().getSaveFileName(this, request);
    if (!choice) {
        return;
    }
    m_saveFolder = QFileInfo(choice->fileName).absolutePath();
    const Result<QString> written =
        PictureFiles::SavePicture(picture, choice->fileName, choice->filterIndex);
    if (!written) {
        ui::dialogs().warning(this, written.error());
    }
}

void TRMImageEditor::SaveImageBtnClick()
{
    SavePicture(m_document.picture());
}

void TRMImageEditor::CutImageBtnClick()
{
    // It copies: the picture stays on the page.
    QApplication::clipboard()->setImage(m_document.picture());
}

} // namespace kestrum::image
