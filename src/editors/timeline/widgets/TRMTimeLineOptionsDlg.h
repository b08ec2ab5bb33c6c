#pragma once

#include "editors/timeline/TimelineModel.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLabel;
class QPushButton;

namespace kestrum::timeline {

class ColourWell;

// "Timeline Options": the fonts of the date labels and the balloons, the fills, the default
// balloon colour and round corners. It changes the timeline directly; the page's text is
// written when the page is saved.
class TRMTimeLineOptionsDlg : public QDialog
{
    Q_OBJECT
public:
    // `timeline` is the page's model; `refresh` repaints the timeline control.
    TRMTimeLineOptionsDlg(TimelineModel* timeline, std::function<void()> refresh,
                          QWidget* parent = nullptr);

    // Loads the wells, the sample panels and the check box from the timeline (the page runs it
    // each time it shows the dialog).
    void FormActivate();
    // The colour wells and the check box into the timeline (run when "Round corners" is
    // clicked).
    void AdjustColors();
    void TimeLineFontClick();
    void AnnotationFontClick();
    void CloseBtnClick() { accept(); }

    ColourWell* well(const QString& name) const;
    QLabel* datePanel() const { return m_datePanel; }
    QLabel* annotationPanel() const { return m_annotationPanel; }
    QCheckBox* roundCorners() const { return m_round; }

    static FontStyle fromFont(const QFont& font, const FontStyle& base);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TimelineModel* m_timeline;
    std::function<void()> m_refresh;
    QLabel* m_datePanel = nullptr;
    QLabel* m_annotationPanel = nullptr;
    QCheckBox* m_round = nullptr;
    ColourWell* m_background = nullptr;
    ColourWell* m_backgroundTo = nullptr;
    ColourWell* m_bar = nullptr;
    ColourWell* m_barTo = nullptr;
    ColourWell* m_annotations = nullptr;
};

} // namespace kestrum::timeline
