#include "TRMTimeLineOptionsDlg.h"

#include "editors/timeline/TimelineEvents.h"
#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/TimelineText.h"
#include "editors/timeline/widgets/ColourWell.h"
#include "ui/Dialogs.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrum::timeline {

namespace {

QLabel* samplePanel(const QString& name, QWidget* parent)
{
    auto* panel = new QLabel(QStringLiteral("Sample font"), parent);
    panel->setObjectName(name);
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setAlignment(Qt::AlignCenter);
    panel->setMinimumSize(180, 28);
    return panel;
}

} // namespace

TRMTimeLineOptionsDlg::TRMTimeLineOptionsDlg(TimelineModel* timeline, std::function<void()> refresh,
                                             QWidget* parent)
    : QDialog(parent), m_timeline(timeline), m_refresh(std::move(refresh))
{
    setObjectName(QStringLiteral("TRMTimeLineOptionsDlg"));
    setWindowTitle(QStringLiteral("Timeline Options"));
    auto* layout = new QVBoxLayout(this);

    auto* fonts = new QGroupBox(QStringLiteral("Fonts"), this);
    auto* fontGrid = new QGridLayout(fonts);
    m_datePanel = samplePanel(QStringLiteral("TimeLineFontPanel"), fonts);
    m_annotationPanel = samplePanel(QStringLiteral("AnnotationFontPanel"), fonts);
    auto* dateButton = new QPushButton(QStringLiteral("..."), fonts);
    dateButton->setObjectName(QStringLiteral("TimeLineFontBtn"));
    auto* annotationButton = new QPushButton(QStringLiteral("..."), fonts);
    annotationButton->setObjectName(QStringLiteral("AnnotationFontBtn"));
    fontGrid->addWidget(new QLabel(QStringLiteral("Date labels:"), fonts), 0, 0);
    fontGrid->addWidget(m_datePanel, 0, 1);
    fontGrid->addWidget(dateButton, 0, 2);
    fontGrid->addWidget(new QLabel(QStringLiteral("Annotation:"), fonts), 1, 0);
    fontGrid->addWidget(m_annotationPanel, 1, 1);
    fontGrid->addWidget(annotationButton, 1, 2);
    connect(dateButton, &QPushButton::clicked, this, &TRMTimeLineOptionsDlg::TimeLineFontClick);
    connect(annotationButton, &QPushButton::clicked, this,
            &TRMTimeLineOptionsDlg::AnnotationFontClick);
    m_datePanel->installEventFilter(this);
    m_annotationPanel->installEventFilter(this);
    layout->addWidget(fonts);

    auto* colours = new QGroupBox(QStringLiteral("Colors"), this);
    auto* colourGrid = new QGridLayout(colours);
    auto well = [&](const QString& name, const QString& label, int row, int column) {
        auto* w = new ColourWell(colours);
        w->setObjectName(name);
        colourGrid->addWidget(new QLabel(label, colours), row, column);
        colourGrid->addWidget(w, row, column + 1);
        return w;
    };
    m_background = well(QStringLiteral("BackgroundColor"), QStringLiteral("Background:"), 0, 0);
    m_backgroundTo = well(QStringLiteral("BackgroundColorTo"), QStringLiteral("To:"), 0, 2);
    m_bar = well(QStringLiteral("TimelineColor"), QStringLiteral("Timeline:"), 1, 0);
    m_barTo = well(QStringLiteral("TimelineColorTo"), QStringLiteral("To:"), 1, 2);
    m_annotations = well(QStringLiteral("AnnotationColor"), QStringLiteral("Annotations:"), 2, 0);
    m_round = new QCheckBox(QStringLiteral("Round corners"), colours);
    m_round->setObjectName(QStringLiteral("RoundCorners"));
    colourGrid->addWidget(m_round, 2, 2, 1, 2);
    connect(m_round, &QCheckBox::clicked, this, &TRMTimeLineOptionsDlg::AdjustColors);
    layout->addWidget(colours);

    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("CloseBtn"));
    connect(close, &QPushButton::clicked, this, &TRMTimeLineOptionsDlg::CloseBtnClick);
    layout->addWidget(close, 0, Qt::AlignRight);
}

ColourWell* TRMTimeLineOptionsDlg::well(const QString& name) const
{
    return findChild<ColourWell*>(name);
}

FontStyle TRMTimeLineOptionsDlg::fromFont(const QFont& font, const FontStyle& base)
{
    FontStyle f = base;
    f.name = font.family();
    f.pointSize = font.pointSizeF() > 0 ? font.pointSizeF() : base.pointSize;
    f.bold = font.bold();
    f.italic = font.italic();
    f.underline = font.underline();
    f.strikeOut = font.strikeOut();
    return f;
}

bool TRMTimeLineOptionsDlg::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        if (watched == m_datePanel) {
            TimeLineFontClick();
            return true;
        }
        if (watched == m_annotationPanel) {
            AnnotationFontClick();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void TRMTimeLineOptionsDlg::FormActivate()
{
    m_background->setColour(m_timeline->backgroundColor);
    m_backgroundTo->setColour(m_timeline->backgroundColorTo);
    m_bar->setColour(m_timeline->barColor);
    m_barTo->setColour(m_timeline->barColorTo);
    m_annotations->setColour(m_timeline->defaultIndicator.annotationColor);
    m_datePanel->setFont(TimelineRenderer::toFont(m_timeline->divisionFont));
    m_datePanel->setText(TimelineText::fontText(m_timeline->divisionFont));
    m_annotationPanel->setFont(TimelineRenderer::toFont(m_timeline->annotationFont));
    m_annotationPanel->setText(TimelineText::fontText(m_timeline->annotationFont));
    m_round->setChecked(m_timeline->defaultIndicator.annotationRounded);
}

void TRMTimeLineOptionsDlg::AdjustColors()
{
    TimelineEvents::AdjustColors(*m_timeline, {m_background->colour(), m_backgroundTo->colour(),
                                               m_bar->colour(), m_barTo->colour(),
                                               m_annotations->colour(), m_round->isChecked()});
    m_refresh();
}

void TRMTimeLineOptionsDlg::TimeLineFontClick()
{
    const auto font = ui::dialogs().getFont(this, m_datePanel->font());
    if (!font) {
        return;
    }
    m_timeline->divisionFont = fromFont(*font, m_timeline->divisionFont);
    m_timeline->subDivisionFont = fromFont(*font, m_timeline->subDivisionFont);
    m_datePanel->setFont(*font);
    m_datePanel->setText(TimelineText::fontText(m_timeline->divisionFont));
    m_refresh();
}

void TRMTimeLineOptionsDlg::AnnotationFontClick()
{
    const auto font = ui::dialogs().getFont(this, m_annotationPanel->font());
    if (!font) {
        return;
    }
    m_timeline->annotationFont = fromFont(*font, m_timeline->annotationFont);
    m_annotationPanel->setFont(*font);
    m_annotationPanel->setText(TimelineText::fontText(m_timeline->annotationFont));
    m_refresh(); // the balloons are laid out again with the new font
}

} // namespace kestrum::timeline
