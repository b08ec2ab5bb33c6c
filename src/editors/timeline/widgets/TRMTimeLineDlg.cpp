#include "TRMTimeLineDlg.h"

#include "common/TabFields.h"
#include "editors/timeline/DateFormat.h"
#include "editors/timeline/TimelineEvents.h"
#include "editors/timeline/TimelineNavigation.h"
#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/widgets/TRMTimeLineOptionsDlg.h"
#include "editors/timeline/widgets/TimelineView.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace kestrum::timeline {

namespace {

constexpr int kClickTimerMs = 10;
constexpr int kMenuDrop = 40; // the context menu opens this far below the pointer
constexpr int kActiveHintPauseMs = 800;
constexpr int kHintPauseMs = 100;

// The layout buttons' pictures: a bar with balloons above, alternating, or below.
QIcon layoutIcon(int mode)
{
    QPixmap pm(20, 20);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.fillRect(QRect(1, 8, 18, 4), QColor(0x98, 0x4E, 0x00).lighter(150));
    const QColor balloon(0x98, 0x4E, 0x00);
    for (int i = 0; i < 3; ++i) {
        const bool top =
            mode == LayoutMode::AllOnTop || (mode == LayoutMode::Alternate && i % 2 == 0);
        p.fillRect(QRect(1 + i * 6, top ? 1 : 14, 5, 5), balloon);
    }
    return QIcon(pm);
}

QIcon glyphIcon(const QString& glyph)
{
    QPixmap pm(20, 20);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    QFont f = p.font();
    f.setPixelSize(16);
    f.setBold(true);
    p.setFont(f);
    p.setPen(QColor(0x30, 0x30, 0x30));
    p.drawText(pm.rect(), Qt::AlignCenter, glyph);
    return QIcon(pm);
}

} // namespace

TRMTimeLineDlg::TRMTimeLineDlg(QWidget* parent) : ui::EditorPanel(parent)
{
    setObjectName(QStringLiteral("TRMTimeLineDlg"));
    setWindowTitle(QStringLiteral("Timeline"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_panel = new QWidget(this);
    m_panel->setObjectName(QStringLiteral("Panel1"));
    m_panel->installEventFilter(this);
    auto* bar = new QHBoxLayout(m_panel);
    bar->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_panel);

    m_timeLine = new TimelineView(&m_document.model(), this);
    layout->addWidget(m_timeLine, 1);
    m_scrollBar = new QScrollBar(Qt::Horizontal, this);
    m_scrollBar->setObjectName(QStringLiteral("Scrollbar"));
    m_scrollBar->setRange(0, TimelineNavigation::kScrollBarMax);
    m_scrollBar->setPageStep(20);
    layout->addWidget(m_scrollBar);

    const QStyle* s = style();
    bar->addWidget(addButton(QStringLiteral("ZoomInBtn"), {}, glyphIcon(QStringLiteral("+")),
                             &TRMTimeLineDlg::ZoomInBtnClick));
    bar->addWidget(addButton(QStringLiteral("ZoomOutBtn"), {}, glyphIcon(QStringLiteral("\u2212")),
                             &TRMTimeLineDlg::ZoomOutBtnClick));
    bar->addWidget(addButton(QStringLiteral("SpeedButton1"), QStringLiteral("Edit chart"),
                             s->standardIcon(QStyle::SP_FileDialogDetailedView),
                             &TRMTimeLineDlg::SpeedButton1Click));
    QToolButton* tracking = addButton(
        QStringLiteral("TrackingBtn"), QStringLiteral("Synchronize timeline with main window"),
        s->standardIcon(QStyle::SP_BrowserReload), &TRMTimeLineDlg::TrackingBtnClick);
    tracking->setCheckable(true);
    tracking->setChecked(true);
    bar->addWidget(tracking);
    bar->addSpacing(8);
    m_positionGroup = new QActionGroup(this);
    m_positionGroup->setExclusive(true);
    for (int mode = 0; mode < 3; ++mode) {
        const QString name = QStringLiteral("Pos%1").arg(mode);
        auto* action = new QAction(layoutIcon(mode), QStringLiteral("Edit chart"), m_positionGroup);
        action->setObjectName(name);
        action->setCheckable(true);
        action->setData(mode); // the button's tag: its layout mode
        action->setChecked(mode == LayoutMode::Alternate);
        auto* button = new QToolButton(m_panel);
        button->setObjectName(name);
        button->setAutoRaise(true);
        button->setDefaultAction(action);
        connect(action, &QAction::triggered, this, [this, mode] { AdjustPosition(mode); });
        m_buttons.insert(name, button);
        bar->addWidget(button);
    }
    bar->addSpacing(8);
    bar->addWidget(addButton(QStringLiteral("CopyChart2"), QStringLiteral("Copy to clipboard"),
                             QIcon::fromTheme(QStringLiteral("edit-copy"),
                                              s->standardIcon(QStyle::SP_DialogApplyButton)),
                             &TRMTimeLineDlg::CopyChart2Click));
    bar->addWidget(addButton(QStringLiteral("SaveChart2"), QStringLiteral("Save to file"),
                             s->standardIcon(QStyle::SP_DialogSaveButton),
                             &TRMTimeLineDlg::SaveChart2Click));
    bar->addWidget(addButton(QStringLiteral("BitBtn3"), QStringLiteral("Print "),
                             QIcon::fromTheme(QStringLiteral("document-print"),
                                              s->standardIcon(QStyle::SP_ComputerIcon)),
                             &TRMTimeLineDlg::BitBtn3Click));
    bar->addStretch(1);

    m_popupMenu = new QMenu(this);
    m_popupMenu->setObjectName(QStringLiteral("PopupMenu1"));
    addMenuItem(m_popupMenu, QStringLiteral("Delete1"), QStringLiteral("Delete"),
                &TRMTimeLineDlg::Delete1Click);
    QMenu* position = m_popupMenu->addMenu(QStringLiteral("Position"));
    m_menuItems.insert(QStringLiteral("Position1"), position->menuAction());
    auto* sides = new QActionGroup(this);
    for (QAction* item :
         {addMenuItem(position, QStringLiteral("Ontop1"), QStringLiteral("Above"),
                      &TRMTimeLineDlg::Ontop1Click),
          addMenuItem(position, QStringLiteral("Atthebottom1"), QStringLiteral("Below"),
                      &TRMTimeLineDlg::Atthebottom1Click)}) {
        item->setCheckable(true);
        sides->addAction(item);
    }
    addMenuItem(m_popupMenu, QStringLiteral("Color1"), QStringLiteral("Change color..."),
                &TRMTimeLineDlg::Color1Click);
    addMenuItem(m_popupMenu, QStringLiteral("Followlink1"), QStringLiteral("Show location..."),
                &TRMTimeLineDlg::Followlink1Click)
        ->setEnabled(false);
    connect(m_popupMenu, &QMenu::aboutToShow, this, &TRMTimeLineDlg::PopupMenu1Popup);

    m_timer = new QTimer(this);
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setSingleShot(true);
    m_timer->setInterval(kClickTimerMs);
    connect(m_timer, &QTimer::timeout, this, &TRMTimeLineDlg::Timer1Timer);

    m_options = new TRMTimeLineOptionsDlg(
        &m_document.model(), [this] { m_timeLine->update(); }, this);

    connect(m_scrollBar, &QScrollBar::valueChanged, this, &TRMTimeLineDlg::ScrollbarChange);
    connect(m_timeLine, &TimelineView::scrolled, this, &TRMTimeLineDlg::TimeLineScrollTimeLine);
    connect(m_timeLine, &TimelineView::resized, this, &TRMTimeLineDlg::TimeLineResize);
    connect(m_timeLine, &TimelineView::indicatorClicked, this,
            &TRMTimeLineDlg::TimeLineIndicatorClick);
    connect(m_timeLine, &TimelineView::pointerMoved, this, &TRMTimeLineDlg::TimeLineMouseMove);
    connect(m_timeLine, &TimelineView::mouseReleased, this, &TRMTimeLineDlg::TimeLineMouseUp);

    // A page read by the store: nothing selected, the layout mode applied again.
    connect(&m_document, &store::PageDocument::contentReset, this, [this] {
        m_selection.reset();
        PositionClick();
        RefreshButtons();
        if (!m_document.loadWarning().isEmpty()) {
            ui::dialogs().warning(this, m_document.loadWarning());
        }
    });
    RefreshButtons();
}

TRMTimeLineDlg::~TRMTimeLineDlg() = default;

QToolButton* TRMTimeLineDlg::addButton(const QString& name, const QString& hint, const QIcon& icon,
                                       void (TRMTimeLineDlg::*slot)())
{
    auto* button = new QToolButton(m_panel);
    button->setObjectName(name);
    button->setAutoRaise(true);
    button->setIcon(icon);
    button->setToolTip(hint);
    connect(button, &QToolButton::clicked, this, slot);
    m_buttons.insert(name, button);
    return button;
}

QAction* TRMTimeLineDlg::addMenuItem(QMenu* menu, const QString& name, const QString& text,
                                     void (TRMTimeLineDlg::*slot)())
{
    QAction* item = menu->addAction(text);
    item->setObjectName(name);
    connect(item, &QAction::triggered, this, slot);
    m_menuItems.insert(name, item);
    return item;
}

void TRMTimeLineDlg::changed()
{
    m_timeLine->update();
    m_document.markModified();
}

TimelineEvent* TRMTimeLineDlg::selectedEvent()
{
    const int index = m_selection.selected();
    if (index < 0 || std::size_t(index) >= model().events.size()) {
        return nullptr;
    }
    return &model().events[std::size_t(index)];
}

void TRMTimeLineDlg::setScrollBar(int position, int pageSize)
{
    const QSignalBlocker block(m_scrollBar);
    m_scrollBar->setPageStep(std::max(0, pageSize));
    m_scrollBar->setValue(position);
}

// ---- scale, zoom, scroll

void TRMTimeLineDlg::AdjustScale()
{
    const int pageSize = TimelineNavigation::AdjustScale(model(), DateFormat::shortDateFormat());
    setScrollBar(m_scrollBar->value(), pageSize);
    m_timeLine->update();
}

void TRMTimeLineDlg::RefreshButtons()
{
    m_buttons.value(QStringLiteral("ZoomOutBtn"))
        ->setEnabled(TimelineNavigation::canZoomOut(model()));
    m_timeLine->update();
}

void TRMTimeLineDlg::ZoomInBtnClick()
{
    for (int i = 0; i < TimelineNavigation::kZoomSteps; ++i) {
        TimelineNavigation::zoomInStep(model());
        m_timeLine->repaint();
        QCoreApplication::processEvents();
    }
    RefreshButtons();
    AdjustScale();
    m_document.markModified();
}

void TRMTimeLineDlg::ZoomOutBtnClick()
{
    for (int i = 0; i < TimelineNavigation::kZoomSteps; ++i) {
        TimelineNavigation::zoomOutStep(model());
        m_timeLine->repaint();
        QCoreApplication::processEvents();
    }
    RefreshButtons();
    AdjustScale();
    m_document.markModified();
}

void TRMTimeLineDlg::ScrollbarChange(int position)
{
    TimelineNavigation::scrollTo(model(), position);
    RefreshButtons();
}

void TRMTimeLineDlg::TimeLineScrollTimeLine(double start)
{
    const auto bar = TimelineNavigation::scrollBarAfterDrag(model(), start);
    setScrollBar(bar.position, bar.pageSize);
}

// ---- layout modes

void TRMTimeLineDlg::PositionClick()
{
    TimelineEvents::applyLayoutMode(model(), m_layoutMode, m_timeLine->height());
    m_timeLine->update();
}

void TRMTimeLineDlg::AdjustPosition(int mode)
{
    m_layoutMode = mode;
    if (QAction* action = m_buttons.value(QStringLiteral("Pos%1").arg(mode))->defaultAction()) {
        action->setChecked(true);
    }
    PositionClick();
    m_document.markModified();
}

void TRMTimeLineDlg::TimeLineResize()
{
    model().verticalMargin = TimelineEvents::verticalMarginFor(m_layoutMode, m_timeLine->height());
}

// ---- selection

void TRMTimeLineDlg::TimeLineIndicatorClick(int index)
{
    m_eventClicked = true;
    if (m_selection.click(model(), index)) {
        ++m_menuRequests;
        m_popupMenu->popup(m_lastPointer + QPoint(0, kMenuDrop));
    }
    if (m_selection.selected() >= 0) {
        MoveToLocation();
    }
    m_timeLine->update();
}

void TRMTimeLineDlg::TimeLineMouseMove(QPoint global)
{
    m_lastPointer = global;
}

void TRMTimeLineDlg::TimeLineMouseUp(Qt::MouseButton button)
{
    if (button == Qt::LeftButton) {
        m_eventClicked = false;
        m_timer->start();
    } else if (button == Qt::RightButton && m_selection.selected() >= 0) {
        const int selected = m_selection.selected();
        TimeLineIndicatorClick(selected);
        TimeLineIndicatorClick(selected);
    }
}

void TRMTimeLineDlg::Timer1Timer()
{
    if (!m_eventClicked && m_selection.selected() >= 0) {
        m_selection.deselect(model());
        m_timeLine->update();
    }
    m_timer->stop();
}

// ---- context menu

void TRMTimeLineDlg::PopupMenu1Popup()
{
    const TimelineEvent* e = selectedEvent();
    if (!e) {
        return;
    }
    const QString link =
        e->tag >= 0 && e->tag < model().links.size() ? model().links.at(e->tag) : QString();
    m_menuItems.value(QStringLiteral("Followlink1"))
        ->setEnabled(common::tabField(link, 4).startsWith(QLatin1Char('2')));
    const bool below = e->annotationPosition == AnnotationPosition::Bottom;
    m_menuItems.value(QStringLiteral("Atthebottom1"))->setChecked(below);
    m_menuItems.value(QStringLiteral("Ontop1"))->setChecked(!below);
    m_menuItems.value(QStringLiteral("Position1"))
        ->setEnabled(m_layoutMode == LayoutMode::Alternate);
}

void TRMTimeLineDlg::Delete1Click()
{
    if (!selectedEvent()) {
        return;
    }
    m_selection.deleteSelected(model());
    changed();
}

void TRMTimeLineDlg::Ontop1Click()
{
    if (TimelineEvent* e = selectedEvent()) {
        TimelineEvents::placeEvent(*e, AnnotationPosition::Top);
        changed();
    }
}

void TRMTimeLineDlg::Atthebottom1Click()
{
    if (TimelineEvent* e = selectedEvent()) {
        TimelineEvents::placeEvent(*e, AnnotationPosition::Bottom);
        changed();
    }
}

void TRMTimeLineDlg::Color1Click()
{
    TimelineEvent* e = selectedEvent();
    if (!e) {
        return;
    }
    const auto chosen = ui::dialogs().getColour(this, common::toQColor(e->annotationColor));
    if (!chosen) {
        return;
    }
    const TColor c = common::fromQColor(*chosen);
    e->annotationColor = c;
    e->color = c;
    e->colorTo = c;
    changed();
}

void TRMTimeLineDlg::Followlink1Click()
{
    const TimelineEvent* e = selectedEvent();
    const QString link =
        e && e->tag >= 0 && e->tag < model().links.size() ? model().links.at(e->tag) : QString();
    m_lastLocation = common::tabField(link, 4);
}

void TRMTimeLineDlg::TrackingBtnClick()
{
    if (m_buttons.value(QStringLiteral("TrackingBtn"))->isChecked()) {
        MoveToLocation();
    }
}

void TRMTimeLineDlg::MoveToLocation()
{
    // Showing an event's place in the main window is left to the host application: the
    // synchronise button and a selection change have no further effect here.
}

// ---- picture, print, options, range

void TRMTimeLineDlg::SaveChart2Click()
{
    static const char* const kExtensions[] = {"png", "jpg", "bmp", "gif"};
    ui::Dialogs::FileRequest request;
    request.directory = m_saveFolder;
    request.filters = {QStringLiteral("PNG file (*.png)"),
                       QStringLiteral("JPEG Image File (*.jpg)"), QStringLiteral("Bitmaps (*.bmp)"),
                       QStringLiteral("GIF Image (*.gif)")};
    const auto choice = ui::dialogs().getSaveFileName(this, request);
    if (!choice || choice->filterIndex < 1 || choice->filterIndex > 4) {
        return;
    }
    const QString format = QLatin1String(kExtensions[choice->filterIndex - 1]);
    const QFileInfo info(choice->fileName);
    QString name = info.fileName();
    if (name.lastIndexOf(QLatin1Char('.')) >= 0) {
        name.truncate(name.lastIndexOf(QLatin1Char('.')));
    }
    const QString file = info.dir().filePath(name + QLatin1Char('.') + format);
    m_saveFolder = info.absolutePath();
    const Status saved = TimelineRenderer::savePicture(model(), m_timeLine->size(), file, format);
    if (!saved) {
        ui::dialogs().warning(this, saved.error());
    }
}

QString TRMTimeLineDlg::copyFileName()
{
    return QDir(QDir::tempPath()).filePath(QStringLiteral("Temp.bmp"));
}

void TRMTimeLineDlg::CopyChart2Click()
{
    // The picture goes through a bitmap file in the temporary folder, which is left in place.
    const QString file = copyFileName();
    const Status saved =
        TimelineRenderer::savePicture(model(), m_timeLine->size(), file, QStringLiteral("bmp"));
    QImage picture;
    if (!saved || !picture.load(file, "BMP")) {
        ui::dialogs().warning(this, saved ? QStringLiteral("Cannot read \"%1\"").arg(file)
                                          : saved.error());
        return;
    }
    QApplication::clipboard()->setImage(picture);
}

void TRMTimeLineDlg::BitBtn3Click()
{
    ui::dialogs().information(this, QStringLiteral("Not available yet!"));
}

void TRMTimeLineDlg::SpeedButton1Click()
{
    m_options->FormActivate();
    ui::dialogs().exec(m_options);
    m_timeLine->update();
    m_document.markModified();
}

QString TRMTimeLineDlg::rangeMessage() const
{
    const TimelineModel& m = m_document.model();
    const QString shortDate = DateFormat::shortDateFormat();
    return DateFormat::format(m.rangeFrom, shortDate) + QStringLiteral(" to ") +
           DateFormat::format(m.rangeTo, shortDate) + QStringLiteral("\r\n") +
           QString::number(m.divisions) + QStringLiteral("  ") + QString::number(m.subDivisions);
}

void TRMTimeLineDlg::Panel1Click()
{
    ui::dialogs().information(this, rangeMessage());
    TimelineModel& m = model();
    m.divisionType = DivisionType::Month;
    m.divisions = 12;
    m.subDivisions = 12;
    m.divisionFormat = QStringLiteral("yyyy");
    m_timeLine->update();
}

void TRMTimeLineDlg::FormActivate()
{
    m_timeLine->setHintPause(kActiveHintPauseMs);
    TimelineEvents::sortEvents(model());
    PositionClick();
}

void TRMTimeLineDlg::showEvent(QShowEvent* event)
{
    EditorPanel::showEvent(event);
    FormActivate();
}

void TRMTimeLineDlg::hideEvent(QHideEvent* event)
{
    m_timeLine->setHintPause(kHintPauseMs);
    EditorPanel::hideEvent(event);
}

bool TRMTimeLineDlg::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_panel && event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        Panel1Click();
        return true;
    }
    return EditorPanel::eventFilter(watched, event);
}

} // namespace kestrum::timeline
