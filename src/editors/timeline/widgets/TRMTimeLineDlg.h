#pragma once

#include "editors/timeline/EventSelection.h"
#include "editors/timeline/TimelinePageDocument.h"
#include "ui/EditorPanel.h"

#include <QHash>
#include <QPoint>

class QAction;
class QActionGroup;
class QMenu;
class QScrollBar;
class QTimer;
class QToolButton;
class QWidget;

namespace kestrum::timeline {

class TimelineView;
class TRMTimeLineOptionsDlg;

// The timeline page ("Timeline"): its toolbar panel, the timeline control, the scroll bar under
// it, the events' context menu and the options dialog. Events arrive only in a page's text;
// the page can delete and restyle them, zoom, scroll, lay them out, copy and save the picture.
class TRMTimeLineDlg : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMTimeLineDlg(QWidget* parent = nullptr);
    ~TRMTimeLineDlg() override;

    store::PageDocument& document() override { return m_document; }

    TimelinePageDocument& timelineDocument() { return m_document; }
    TimelineModel& model() { return m_document.model(); }
    TimelineView* timeLine() const { return m_timeLine; }
    QScrollBar* scrollBar() const { return m_scrollBar; }
    QMenu* popupMenu() const { return m_popupMenu; }
    QWidget* panel() const { return m_panel; }
    QToolButton* button(const QString& name) const { return m_buttons.value(name); }
    QAction* menuItem(const QString& name) const { return m_menuItems.value(name); }
    TRMTimeLineOptionsDlg* optionsDialog() const { return m_options; }
    const EventSelection& selection() const { return m_selection; }
    int layoutMode() const { return m_layoutMode; }
    bool eventClicked() const { return m_eventClicked; }
    // Field 4 of the link record last looked at by "Show location..." (nothing more is done).
    const QString& lastLocation() const { return m_lastLocation; }
    // How many times the context menu was asked for.
    int menuRequests() const { return m_menuRequests; }

    // ---- operations
    void AdjustScale();
    void RefreshButtons();
    // Applies the layout mode (margin, sides, sorting in mode 1).
    void PositionClick();
    void AdjustPosition(int mode);
    void ZoomInBtnClick();
    void ZoomOutBtnClick();
    void ScrollbarChange(int position);
    void TimeLineScrollTimeLine(double start);
    void TimeLineResize();
    void TimeLineIndicatorClick(int index);
    void TimeLineMouseMove(QPoint global);
    void TimeLineMouseUp(Qt::MouseButton button);
    void Timer1Timer();
    void PopupMenu1Popup();
    void Delete1Click();
    void Ontop1Click();
    void Atthebottom1Click();
    void Color1Click();
    void Followlink1Click();
    void TrackingBtnClick();
    void MoveToLocation();
    void SaveChart2Click();
    void CopyChart2Click();
    void BitBtn3Click();
    void SpeedButton1Click();
    void Panel1Click();
    void FormActivate();

    // The copy goes through this file in the temporary folder.
    static QString copyFileName();
    // The visible range and scale, as "Panel1Click" shows them.
    QString rangeMessage() const;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QToolButton* addButton(const QString& name, const QString& hint, const QIcon& icon,
                           void (TRMTimeLineDlg::*slot)());
    QAction* addMenuItem(QMenu* menu, const QString& name, const QString& text,
                         void (TRMTimeLineDlg::*slot)());
    void setScrollBar(int position, int pageSize);
    void changed();
    TimelineEvent* selectedEvent();

    TimelinePageDocument m_document;
    TimelineView* m_timeLine = nullptr;
    QScrollBar* m_scrollBar = nullptr;
    QWidget* m_panel = nullptr;
    QMenu* m_popupMenu = nullptr;
    QActionGroup* m_positionGroup = nullptr;
    QTimer* m_timer = nullptr;
    TRMTimeLineOptionsDlg* m_options = nullptr;
    QHash<QString, QToolButton*> m_buttons;
    QHash<QString, QAction*> m_menuItems;
    EventSelection m_selection;
    int m_layoutMode = 1;
    bool m_eventClicked = false;
    QPoint m_lastPointer;
    QString m_lastLocation;
    QString m_saveFolder;
    int m_menuRequests = 0;
};

} // namespace kestrum::timeline
