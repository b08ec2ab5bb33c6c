#include "TRMWordCloudEditor.h"

#include "CloudCanvas.h"
#include "TRMTagOptionsDlg.h"
#include "editors/wordcloud_page/CloudLayoutJob.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImageWriter>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QStyle>
#include <QThread>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace kestrum::wordcloud_page {

namespace {

constexpr int kProgressPollMs = 50;
constexpr int kJpegQuality = 90;

struct PictureKind
{
    const char* extension;
    const char* format;
    int quality;
};

// By the save dialog's 1-based filter index.
constexpr PictureKind kPictureKinds[] = {
    {".PNG", "png", -1},
    {".BMP", "bmp", -1},
    {".JPG", "jpeg", kJpegQuality},
};

QString withExtension(const QString& fileName, const QString& extension)
{
    const QFileInfo info(fileName);
    const QString suffix = info.suffix();
    const QString base =
        suffix.isEmpty() ? fileName : fileName.left(fileName.size() - suffix.size() - 1);
    return base + extension;
}

} // namespace

TRMWordCloudEditor::TRMWordCloudEditor(QWidget* parent) : ui::EditorPanel(parent)
{
    m_canvas = new CloudCanvas(m_document, this);
    m_canvas->setObjectName(QStringLiteral("WordCloud"));

    m_progressRow = new QWidget(this);
    m_progressRow->setObjectName(QStringLiteral("LayoutProgress"));
    auto* row = new QHBoxLayout(m_progressRow);
    row->setContentsMargins(6, 2, 6, 2);
    m_progressLabel = new QLabel(QStringLiteral("Laying out the words..."), m_progressRow);
    m_progress = new QProgressBar(m_progressRow);
    m_progress->setRange(0, 100);
    m_cancel = new QPushButton(QStringLiteral("Cancel"), m_progressRow);
    m_cancel->setObjectName(QStringLiteral("CancelLayout"));
    row->addWidget(m_progressLabel);
    row->addWidget(m_progress, 1);
    row->addWidget(m_cancel);
    m_progressRow->hide();
    connect(m_cancel, &QPushButton::clicked, this, &TRMWordCloudEditor::cancelLayout);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_canvas, 1);
    layout->addWidget(m_progressRow);

    QStyle* style = QApplication::style();
    connect(makeAction(QStringLiteral("BtnSaveCloud"), QStringLiteral("Save picture..."),
                       style->standardIcon(QStyle::SP_DialogSaveButton)),
            &QAction::triggered, this, &TRMWordCloudEditor::SaveCloud);
    connect(makeAction(QStringLiteral("BtnPrintCloud"), QStringLiteral("Print..."),
                       style->standardIcon(QStyle::SP_FileDialogDetailedView)),
            &QAction::triggered, this, &TRMWordCloudEditor::PrintWordCloud);
    connect(makeAction(QStringLiteral("BtnCloudOptions"), QStringLiteral("Options..."),
                       style->standardIcon(QStyle::SP_FileDialogContentsView)),
            &QAction::triggered, this, &TRMWordCloudEditor::BtnCloudOptionsClick);

    m_copyMenu = new QMenu(this);
    QAction* bitmap =
        makeAction(QStringLiteral("CopyAsBitmap"), QStringLiteral("Copy as bitmap"), QIcon());
    connect(bitmap, &QAction::triggered, this, [this] { cloud().CopyToClipboardAsBitmap(); });
    QAction* metafile =
        makeAction(QStringLiteral("CopyAsMetafile"), QStringLiteral("Copy as metafile"), QIcon());
    metafile->setToolTip(QStringLiteral("Copies the picture as SVG"));
    connect(metafile, &QAction::triggered, this, [this] { cloud().CopyToClipboardAsMetafile(); });
    m_copyMenu->addAction(bitmap);
    m_copyMenu->addAction(metafile);
    QAction* photo = makeAction(QStringLiteral("BtnCloudPhoto"), QStringLiteral("Copy"),
                                style->standardIcon(QStyle::SP_DialogApplyButton));
    connect(photo, &QAction::triggered, this, &TRMWordCloudEditor::BtnCloudPhotoClick);

    m_popupMenu = new QMenu(this);
    m_popupMenu->addAction(action(QStringLiteral("BtnSaveCloud")));
    m_popupMenu->addAction(action(QStringLiteral("BtnPrintCloud")));
    m_popupMenu->addSeparator();
    m_popupMenu->addAction(bitmap);
    m_popupMenu->addAction(metafile);
    m_popupMenu->addSeparator();
    m_popupMenu->addAction(action(QStringLiteral("BtnCloudOptions")));
    connect(m_canvas, &CloudCanvas::contextMenuAt, this,
            [this](const QPoint& at) { m_popupMenu->popup(at); });

    connect(&m_document, &store::PageDocument::contentReset, this,
            &TRMWordCloudEditor::onContentReset);
    m_progressTimer.setInterval(kProgressPollMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &TRMWordCloudEditor::pollProgress);
}

TRMWordCloudEditor::~TRMWordCloudEditor()
{
    if (m_job) {
        m_job->abandon();
    }
    if (m_thread) {
        m_thread->wait();
        delete m_thread;
    }
}

QAction* TRMWordCloudEditor::makeAction(const QString& name, const QString& text, const QIcon& icon)
{
    auto* a = new QAction(icon, text, this);
    a->setObjectName(name);
    m_actions.insert(name, a);
    return a;
}

void TRMWordCloudEditor::populateToolBar(QToolBar* toolBar)
{
    m_toolBar = toolBar;
    toolBar->addAction(action(QStringLiteral("BtnSaveCloud")));
    toolBar->addAction(action(QStringLiteral("BtnPrintCloud")));
    toolBar->addAction(action(QStringLiteral("BtnCloudPhoto")));
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("BtnCloudOptions")));
}

QPrinter* TRMWordCloudEditor::printer()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    }
    return m_printer.get();
}

const QStringList& TRMWordCloudEditor::pictureFilters()
{
    // The third label reads "*,jpg": it is shown as written.
    static const QStringList filters{QStringLiteral("Portable Network Graphic (*.png)"),
                                     QStringLiteral("Windows Bitmap (*.bmp)"),
                                     QStringLiteral("JPEG (*,jpg) (*.jpg)")};
    return filters;
}

QImage TRMWordCloudEditor::pictureAsShown()
{
    if (cloud().ClientSize() != m_canvas->size() && !m_canvas->size().isEmpty()) {
        m_canvas->fitCloud();
    }
    return cloud().SaveToBitmap();
}

void TRMWordCloudEditor::SaveCloud()
{
    const QImage picture = pictureAsShown();
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("Save picture");
    request.directory = m_saveFolder;
    request.filters = pictureFilters();
    request.filterIndex = 1;
    const auto choice = ui::dialogs().getSaveFileName(this, request);
    if (!choice) {
        return;
    }
    m_saveFolder = QFileInfo(choice->fileName).absolutePath();
    const int index = std::clamp(choice->filterIndex, 1, int(std::size(kPictureKinds)));
    const PictureKind& kind = kPictureKinds[index - 1];
    const QString fileName = withExtension(choice->fileName, QLatin1String(kind.extension));
    QSaveFile file(fileName);
    QImageWriter writer(&file, kind.format);
    writer.setQuality(kind.quality);
    QImage image = picture;
    if (!file.open(QIODevice::WriteOnly) || !writer.write(image) || !file.commit()) {
        ui::dialogs().warning(this, QStringLiteral("Cannot save %1!").arg(fileName));
    }
}

void TRMWordCloudEditor::PrintWordCloud()
{
    const QImage picture = pictureAsShown();
    if (picture.isNull()) {
        return;
    }
    QPrinter* p = printer();
    if (!ui::dialogs().print(this, p)) {
        return;
    }
    QPainter painter;
    if (!painter.begin(p)) {
        ui::dialogs().warning(this, QStringLiteral("Cannot print!"));
        return;
    }
    // One picture, as large as the page allows, keeping its proportions, centred.
    const QRect page = p->pageLayout().paintRectPixels(p->resolution());
    const QSize fitted = picture.size().scaled(page.size(), Qt::KeepAspectRatio);
    const QRect target(
        QPoint((page.width() - fitted.width()) / 2, (page.height() - fitted.height()) / 2), fitted);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, picture);
    painter.end();
}

void TRMWordCloudEditor::BtnCloudPhotoClick()
{
    QPoint at = m_canvas->mapToGlobal(QPoint(0, 0));
    if (m_toolBar) {
        if (QWidget* button = m_toolBar->widgetForAction(action(QStringLiteral("BtnCloudPhoto")))) {
            at = button->mapToGlobal(QPoint(0, button->height()));
        }
    }
    m_copyMenu->popup(at);
}

void TRMWordCloudEditor::BtnCloudOptionsClick()
{
    TRMTagOptionsDlg dialog(cloud(), this);
    connect(&dialog, &TRMTagOptionsDlg::repaintRequested, m_canvas, qOverload<>(&QWidget::update));
    connect(&dialog, &TRMTagOptionsDlg::modified, &m_document, &CloudPageDocument::markModified);
    connect(&dialog, &TRMTagOptionsDlg::layoutRequested, this,
            &TRMWordCloudEditor::UpdateWordCloud);
    ui::dialogs().exec(&dialog);
}

// ---------------------------------------------------------------------------- layout thread

void TRMWordCloudEditor::UpdateWordCloud()
{
    if (m_job) {
        m_layoutPending = true;
        return;
    }
    if (cloud().WordCount() == 0) {
        return;
    }
    if (cloud().ClientSize() != m_canvas->size() && !m_canvas->size().isEmpty()) {
        m_canvas->fitCloud();
    }
    m_job = std::make_unique<CloudLayoutJob>(cloud());
    m_jobAbandoned = false;
    CloudLayoutJob* job = m_job.get();
    m_thread = QThread::create([job] { job->run(); });
    connect(m_thread, &QThread::finished, this, &TRMWordCloudEditor::onLayoutThreadFinished);
    m_progress->setValue(0);
    m_progressRow->show();
    m_canvas->setCursor(Qt::BusyCursor);
    m_progressTimer.start();
    m_thread->start();
}

void TRMWordCloudEditor::cancelLayout()
{
    if (m_job) {
        m_job->requestCancel();
    }
}

void TRMWordCloudEditor::waitForLayout()
{
    while (m_job || m_layoutPending) {
        if (m_thread) {
            m_thread->wait();
        }
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

void TRMWordCloudEditor::pollProgress()
{
    if (m_job) {
        m_progress->setValue(m_job->progress());
    }
}

void TRMWordCloudEditor::onLayoutThreadFinished()
{
    m_progressTimer.stop();
    m_thread->deleteLater();
    m_thread = nullptr;
    const std::unique_ptr<CloudLayoutJob> job = std::move(m_job);
    m_progressRow->hide();
    m_canvas->unsetCursor();
    if (!m_jobAbandoned) {
        job->applyTo(cloud());
        m_canvas->fitCloud();
        m_document.markModified();
    }
    emit layoutFinished();
    if (m_layoutPending) {
        m_layoutPending = false;
        UpdateWordCloud();
    }
}

void TRMWordCloudEditor::onContentReset()
{
    if (m_job) {
        // Another page was loaded: the running layout belongs to the page that was left.
        m_jobAbandoned = true;
        m_layoutPending = false;
        m_job->abandon();
    }
    if (!m_canvas->size().isEmpty()) {
        m_canvas->fitCloud();
    }
    m_canvas->update();
}

} // namespace kestrum::wordcloud_page
