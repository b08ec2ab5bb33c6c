#include "TRMTagOptionsDlg.h"

#include "common/ScopedFlag.h"
#include "ui/Dialogs.h"
#include "wordcloud/CloudPalettes.h"
#include "wordcloud/TprWordCloud.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace kestrum::wordcloud_page {

namespace {

using common::TColor;

// Colours of the schemes as 0xBBGGRR.
constexpr TColor kMulticolorStart = 0x0000FF;
constexpr TColor kMulticolorMiddle = 0xFF0000;
constexpr TColor kMulticolorEnd = 0x00FF00;
constexpr TColor kWarmStart = 0x8DE9F3;
constexpr TColor kWarmEnd = 0x0000FF;
constexpr TColor kCoolStart = 0x829643;
constexpr TColor kCoolEnd = 0xA46242;
constexpr TColor kGrayStart = 0x000000;
constexpr TColor kGrayMiddle = 0x808080;
constexpr TColor kGrayEnd = 0xC0C0C0;

// A font change lays the cloud out again at this coverage (the engine lowers it until the
// words fit).
constexpr float kFontChangeCoverage = 0.99f;
// The font dialog opens at this size, whatever the cloud's.
constexpr int kFontDialogSize = 16;

constexpr int kFontBold = 1;
constexpr int kFontItalic = 2;
constexpr int kFontUnderline = 4;
constexpr int kFontStrikeOut = 8;

} // namespace

TRMTagOptionsDlg::SchemeColours TRMTagOptionsDlg::schemeColours(Scheme scheme)
{
    switch (scheme) {
    case Multicolor:
        return {kMulticolorStart, kMulticolorMiddle, kMulticolorEnd, true};
    case Warm:
        // The middle box is checked with no middle colour: the ramp has none.
        return {kWarmStart, common::clNone, kWarmEnd, true};
    case Cool:
        return {kCoolStart, common::clNone, kCoolEnd, false};
    case GrayScale:
        return {kGrayStart, kGrayMiddle, kGrayEnd, false};
    case Custom:
        break;
    }
    return {common::clNone, common::clNone, common::clNone, false};
}

QString TRMTagOptionsDlg::fontLabel(const QString& name, qint32 style)
{
    QString label = name;
    if (style & kFontBold) {
        label += QStringLiteral(" Bold");
    }
    if (style & kFontItalic) {
        label += QStringLiteral(" Italic");
    }
    return label;
}

TRMTagOptionsDlg::TRMTagOptionsDlg(wordcloud::TprWordCloud& cloud, QWidget* parent)
    : QDialog(parent), m_cloud(cloud)
{
    setObjectName(QStringLiteral("TRMTagOptionsDlg"));
    setWindowTitle(QStringLiteral("Tag Cloud Options"));
    m_tabs = new QTabWidget(this);
    m_tabs->addTab(buildColourTab(), QStringLiteral("Text Color"));
    m_tabs->addTab(buildFontTab(), QStringLiteral("Text Font"));
    m_tabs->addTab(buildShapeTab(), QStringLiteral("Shape"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(buttons);
    FormActivate();
}

QWidget* TRMTagOptionsDlg::buildColourTab()
{
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    m_isColorEach = new QRadioButton(QStringLiteral("Color each with palette:"), page);
    m_isColorEach->setObjectName(QStringLiteral("isColorEach"));
    m_isColorEach->setChecked(true);
    m_colorPalette = new QComboBox(page);
    m_colorPalette->setObjectName(QStringLiteral("ColorPalette"));
    m_colorPalette->addItems(wordcloud::CloudPalettes::names());
    m_isGradient = new QRadioButton(QStringLiteral("Gradient scheme:"), page);
    m_isGradient->setObjectName(QStringLiteral("isGradient"));
    m_colorScheme = new QComboBox(page);
    m_colorScheme->setObjectName(QStringLiteral("ColorScheme"));
    m_colorScheme->addItems({QStringLiteral("Multicolor"), QStringLiteral("Warm"),
                             QStringLiteral("Cool"), QStringLiteral("Gray Scale"),
                             QStringLiteral("Custom")});
    auto* group = new QButtonGroup(page);
    group->addButton(m_isColorEach);
    group->addButton(m_isGradient);

    static const char* const kWellNames[] = {"oStartColor", "oMiddleColor", "oEndColor"};
    for (int i = 0; i < 3; ++i) {
        m_wellButtons[i] = new QPushButton(page);
        m_wellButtons[i]->setObjectName(QLatin1String(kWellNames[i]));
        m_wellButtons[i]->setFixedSize(48, 22);
        connect(m_wellButtons[i], &QPushButton::clicked, this, [this, i] { pickWell(i); });
    }
    m_isMiddle = new QCheckBox(QStringLiteral("Middle:"), page);
    m_isMiddle->setObjectName(QStringLiteral("IsMiddle"));

    grid->addWidget(m_isColorEach, 0, 0, 1, 2);
    grid->addWidget(m_colorPalette, 0, 2, 1, 2);
    grid->addWidget(m_isGradient, 1, 0, 1, 2);
    grid->addWidget(m_colorScheme, 1, 2, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("From:"), page), 2, 0);
    grid->addWidget(m_wellButtons[StartWell], 2, 1);
    grid->addWidget(m_isMiddle, 3, 0);
    grid->addWidget(m_wellButtons[MiddleWell], 3, 1);
    grid->addWidget(new QLabel(QStringLiteral("To:"), page), 4, 0);
    grid->addWidget(m_wellButtons[EndWell], 4, 1);
    grid->setRowStretch(5, 1);

    connect(m_colorPalette, &QComboBox::currentIndexChanged, this,
            &TRMTagOptionsDlg::ColorPaletteChange);
    connect(m_isColorEach, &QRadioButton::clicked, this, &TRMTagOptionsDlg::isColorEachClick);
    connect(m_isGradient, &QRadioButton::clicked, this, &TRMTagOptionsDlg::isGradientClick);
    connect(m_colorScheme, &QComboBox::currentIndexChanged, this,
            &TRMTagOptionsDlg::ColorSchemeChange);
    connect(m_isMiddle, &QCheckBox::clicked, this, &TRMTagOptionsDlg::ColorChange);
    return page;
}

QWidget* TRMTagOptionsDlg::buildFontTab()
{
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    m_fontLabel = new QLabel(page);
    m_fontLabel->setObjectName(QStringLiteral("FontName"));
    m_changeFont = new QPushButton(QStringLiteral("Edit..."), page);
    m_changeFont->setObjectName(QStringLiteral("ChangeFont"));
    // The label says "Shadown": it is shown as written.
    m_isShadow = new QCheckBox(QStringLiteral("Shadown"), page);
    m_isShadow->setObjectName(QStringLiteral("isShadow"));
    m_isShadow->setChecked(true);
    // Kept hidden: the shadow's size has no effect.
    m_shadowSizeLabel = new QLabel(QStringLiteral("Shadow:"), page);
    m_shadowSize = new QSpinBox(page);
    m_shadowSize->setObjectName(QStringLiteral("ShadowSize"));
    m_shadowSize->setRange(0, 10);
    m_shadowSize->setValue(1);
    m_shadowSizeLabel->hide();
    m_shadowSize->hide();

    grid->addWidget(new QLabel(QStringLiteral("Font:"), page), 0, 0);
    grid->addWidget(m_fontLabel, 0, 1);
    grid->addWidget(m_changeFont, 0, 2);
    grid->addWidget(m_isShadow, 1, 0, 1, 2);
    grid->addWidget(m_shadowSizeLabel, 2, 0);
    grid->addWidget(m_shadowSize, 2, 1);
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(1, 1);

    connect(m_changeFont, &QPushButton::clicked, this, &TRMTagOptionsDlg::ChangeFontClick);
    connect(m_isShadow, &QCheckBox::clicked, this, &TRMTagOptionsDlg::isShadowClick);
    return page;
}

QWidget* TRMTagOptionsDlg::buildShapeTab()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* form = new QGroupBox(QStringLiteral("Form:"), page);
    auto* formLayout = new QVBoxLayout(form);
    m_isRectangular = new QRadioButton(QStringLiteral("Rectangular"), form);
    m_isRectangular->setObjectName(QStringLiteral("isRectangular"));
    m_isRectangular->setChecked(true);
    m_isEllipse = new QRadioButton(QStringLiteral("Ellipse"), form);
    m_isEllipse->setObjectName(QStringLiteral("isEllipse"));
    formLayout->addWidget(m_isRectangular);
    formLayout->addWidget(m_isEllipse);

    auto* start = new QGroupBox(QStringLiteral("Starting position:"), page);
    auto* startLayout = new QVBoxLayout(start);
    m_isFromCenter = new QRadioButton(QStringLiteral("From center"), start);
    m_isFromCenter->setObjectName(QStringLiteral("isFromCenter"));
    m_isFromCenter->setChecked(true);
    m_isRandom = new QRadioButton(QStringLiteral("Random"), start);
    m_isRandom->setObjectName(QStringLiteral("isRandom"));
    startLayout->addWidget(m_isFromCenter);
    startLayout->addWidget(m_isRandom);

    layout->addWidget(form);
    layout->addWidget(start);
    layout->addStretch(1);
    for (QRadioButton* radio : {m_isRectangular, m_isEllipse, m_isFromCenter, m_isRandom}) {
        connect(radio, &QRadioButton::clicked, this, &TRMTagOptionsDlg::UpdateWordCloud);
    }
    return page;
}

void TRMTagOptionsDlg::showEvent(QShowEvent* event)
{
    FormActivate();
    QDialog::showEvent(event);
}

void TRMTagOptionsDlg::FormActivate()
{
    common::ScopedFlag loading(m_loading);
    m_colorPalette->setCurrentIndex(
        std::clamp(int(m_cloud.Palette()), 0, m_colorPalette->count() - 1));
    m_fontLabel->setText(fontLabel(m_cloud.Font().name, m_cloud.Font().style));
    m_isShadow->setChecked(m_cloud.Shadow());
    (m_cloud.CloudShape() == wordcloud::TprWordCloud::Ellipse ? m_isEllipse : m_isRectangular)
        ->setChecked(true);
    (m_cloud.PlaceCenter() ? m_isFromCenter : m_isRandom)->setChecked(true);
    (m_cloud.UsePalette() ? m_isColorEach : m_isGradient)->setChecked(true);
    m_isMiddle->setChecked(m_cloud.Gradient().MiddleColor() != common::clNone);
    setWell(StartWell, m_cloud.Gradient().StartColor());
    setWell(MiddleWell, m_cloud.Gradient().MiddleColor());
    setWell(EndWell, m_cloud.Gradient().EndColor());
    m_wellButtons[MiddleWell]->setEnabled(m_isMiddle->isChecked());
}

void TRMTagOptionsDlg::setWell(int well, TColor colour)
{
    m_wells[well] = colour;
    const QColor c = common::toQColor(colour);
    m_wellButtons[well]->setStyleSheet(
        c.isValid() ? QStringLiteral("background-color: %1;").arg(c.name()) : QString());
}

void TRMTagOptionsDlg::pickWell(int well)
{
    const QColor initial = common::toQColor(m_wells[well]);
    const auto colour = ui::dialogs().getColour(this, initial.isValid() ? initial : Qt::white);
    if (colour) {
        chooseWellColour(well, common::fromQColor(*colour));
    }
}

void TRMTagOptionsDlg::chooseWellColour(int well, TColor colour)
{
    setWell(well, colour);
    ColorChange();
}

void TRMTagOptionsDlg::ColorPaletteChange()
{
    if (m_loading) {
        return;
    }
    // Choosing a palette does not switch the palette colouring on.
    m_cloud.SetPalette(quint8(std::max(0, m_colorPalette->currentIndex())));
    emit repaintRequested();
    emit modified();
}

void TRMTagOptionsDlg::isColorEachClick()
{
    if (m_loading) {
        return;
    }
    m_cloud.SetUsePalette(true);
    emit repaintRequested();
    emit modified();
}

void TRMTagOptionsDlg::ColorSchemeChange()
{
    if (m_loading) {
        return;
    }
    const auto scheme = Scheme(m_colorScheme->currentIndex());
    {
        common::ScopedFlag loading(m_loading);
        m_isGradient->setChecked(true);
        if (scheme != Custom) {
            const SchemeColours colours = schemeColours(scheme);
            setWell(StartWell, colours.start);
            setWell(MiddleWell, colours.middle);
            setWell(EndWell, colours.end);
            m_isMiddle->setChecked(colours.isMiddle);
            m_wellButtons[MiddleWell]->setEnabled(colours.isMiddle);
        }
    }
    isGradientClick();
}

void TRMTagOptionsDlg::ColorChange()
{
    if (m_loading) {
        return;
    }
    {
        common::ScopedFlag loading(m_loading);
        m_colorScheme->setCurrentIndex(Custom);
        m_wellButtons[MiddleWell]->setEnabled(m_isMiddle->isChecked());
    }
    isGradientClick();
}

void TRMTagOptionsDlg::isGradientClick()
{
    if (m_loading) {
        return;
    }
    {
        common::ScopedFlag loading(m_loading);
        m_isGradient->setChecked(true);
    }
    m_cloud.SetUsePalette(false);
    m_cloud.Gradient().SetStartColor(m_wells[StartWell]);
    m_cloud.Gradient().SetEndColor(m_wells[EndWell]);
    m_cloud.Gradient().SetMiddleColor(m_isMiddle->isChecked() ? m_wells[MiddleWell]
                                                              : common::clNone);
    emit repaintRequested();
    emit modified();
}

void TRMTagOptionsDlg::ChangeFontClick()
{
    if (m_loading) {
        return;
    }
    const wordcloud::CloudFont current = m_cloud.Font();
    QFont initial(current.name);
    initial.setPointSize(kFontDialogSize);
    initial.setBold(current.style & kFontBold);
    initial.setItalic(current.style & kFontItalic);
    initial.setUnderline(current.style & kFontUnderline);
    initial.setStrikeOut(current.style & kFontStrikeOut);
    const auto chosen = ui::dialogs().getFont(this, initial);
    if (!chosen) {
        return;
    }
    wordcloud::CloudFont font = current;
    font.name = chosen->family();
    font.size = chosen->pointSize() > 0 ? chosen->pointSize() : kFontDialogSize;
    font.style = (chosen->bold() ? kFontBold : 0) | (chosen->italic() ? kFontItalic : 0) |
                 (chosen->underline() ? kFontUnderline : 0) |
                 (chosen->strikeOut() ? kFontStrikeOut : 0);
    m_cloud.SetFont(font);
    m_fontLabel->setText(fontLabel(font.name, font.style));
    // Every font change starts again from near full coverage.
    m_cloud.SetCoverage(kFontChangeCoverage);
    UpdateWordCloud();
    emit modified();
}

void TRMTagOptionsDlg::UpdateWordCloud()
{
    if (m_loading) {
        return;
    }
    m_cloud.SetCloudShape(m_isRectangular->isChecked() ? wordcloud::TprWordCloud::Rectangle
                                                       : wordcloud::TprWordCloud::Ellipse);
    m_cloud.SetPlaceCenter(m_isFromCenter->isChecked());
    m_cloud.SetShadow(m_isShadow->isChecked());
    emit layoutRequested();
    emit modified();
}

void TRMTagOptionsDlg::isShadowClick()
{
    if (m_loading) {
        return;
    }
    m_cloud.SetShadow(m_isShadow->isChecked());
    emit repaintRequested();
}

} // namespace kestrum::wordcloud_page
