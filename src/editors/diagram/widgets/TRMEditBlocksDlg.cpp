#include "TRMEditBlocksDlg.h"

#include "editors/diagram/DiagramFontConvert.h"
#include "editors/diagram/DiagramPageDocument.h"
#include "ui/ColourSelector.h"
#include "ui/Dialogs.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace kestrum::diagram {

namespace {

const QStringList kShapeItems{QStringLiteral("Square\t"), QStringLiteral("Circle"),
                              QStringLiteral("Diamond\t"), QStringLiteral("Round Square")};
const QStringList kStyleItems{QStringLiteral("Solid"), QStringLiteral("Dash"),
                              QStringLiteral("Dot"), QStringLiteral("Dash Dot"),
                              QStringLiteral("Dash Dot Dot")};

ui::ColourSelector* colourWell()
{
    return new ui::ColourSelector(ui::ColourSelector::Kind::Background, QStringLiteral("Color"));
}

} // namespace

TRMEditBlocksDlg::TRMEditBlocksDlg(DiagramPageDocument& document, QWidget* parent)
    : QDialog(parent), m_document(document)
{
    setObjectName(QStringLiteral("RMEditBlocksDlg"));
    setWindowTitle(QStringLiteral("Edit Blocks"));
    auto* layout = new QVBoxLayout(this);
    auto* tabs = new QTabWidget;
    tabs->addTab(buildBlocksTab(), QStringLiteral("Edit Blocks"));
    tabs->addTab(buildLinksTab(), QStringLiteral("Edit Links"));
    layout->addWidget(tabs);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* apply = new QPushButton(QStringLiteral("Apply"));
    apply->setObjectName(QStringLiteral("btnApply"));
    auto* close = new QPushButton(QStringLiteral("Close"));
    close->setObjectName(QStringLiteral("btnCancel"));
    buttons->addWidget(apply);
    buttons->addWidget(close);
    layout->addLayout(buttons);
    connect(apply, &QPushButton::clicked, this, &TRMEditBlocksDlg::btnApplyClick);
    connect(close, &QPushButton::clicked, this, &TRMEditBlocksDlg::btnCancelClick);
    setStyles(DiagramBlockStyles());
}

QWidget* TRMEditBlocksDlg::buildBlocksTab()
{
    auto* page = new QWidget;
    auto* row = new QHBoxLayout(page);
    const QStringList titles{QStringLiteral("Targets"), QStringLiteral("Level 1"),
                             QStringLiteral("Level 2")};
    for (int g = 0; g < 3; ++g) {
        auto* box = new QGroupBox(titles[g]);
        auto* form = new QFormLayout(box);
        GroupControls& c = m_controls[std::size_t(g)];
        c.colour = colourWell();
        c.shape = new QComboBox;
        c.shape->addItems(kShapeItems);
        c.size = new QSpinBox;
        c.size->setRange(1, 10000);
        auto* font = new QPushButton(QStringLiteral("Font"));
        font->setObjectName(QStringLiteral("Button%1").arg(g + 1));
        form->addRow(QStringLiteral("Color:"), c.colour);
        form->addRow(QStringLiteral("Shape:"), c.shape);
        form->addRow(QStringLiteral("Size:"), c.size);
        form->addRow(QString(), font);
        connect(font, &QPushButton::clicked, this, [this, g] { groupFontClick(g); });
        row->addWidget(box);
    }
    return page;
}

QWidget* TRMEditBlocksDlg::buildLinksTab()
{
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_linkColour = colourWell();
    m_linkSample = new QLabel(QStringLiteral("Sample font"));
    m_linkSample->setFrameShape(QFrame::Panel);
    m_linkSample->setFrameShadow(QFrame::Sunken);
    m_linkSample->setAlignment(Qt::AlignCenter);
    m_linkSample->setMinimumHeight(36);
    m_linkStyle = new QComboBox;
    m_linkStyle->addItems(kStyleItems);
    m_linkSize = new QSpinBox;
    m_linkSize->setRange(0, 1000);
    m_linkSizeColour = colourWell();
    auto* font = new QPushButton(QStringLiteral("Font"));
    font->setObjectName(QStringLiteral("Button4"));
    form->addRow(QStringLiteral("Color:"), m_linkColour);
    form->addRow(QStringLiteral("Font:"), m_linkSample);
    form->addRow(QStringLiteral("Style:"), m_linkStyle);
    form->addRow(QStringLiteral("Size:"), m_linkSize);
    form->addRow(QStringLiteral("Color:"), m_linkSizeColour);
    form->addRow(QString(), font);
    connect(font, &QPushButton::clicked, this, &TRMEditBlocksDlg::Button4Click);
    return page;
}

DiagramBlockStyles TRMEditBlocksDlg::styles() const
{
    DiagramBlockStyles s;
    for (int g = 0; g < 3; ++g) {
        const GroupControls& c = m_controls[std::size_t(g)];
        BlockStyle& b = s.groups()[std::size_t(g)];
        b.size = c.size->value();
        b.shapeIndex = c.shape->currentIndex();
        b.colour = common::fromQColor(c.colour->colour());
        b.font = m_groupFonts[std::size_t(g)];
    }
    s.links().font = m_linkFont;
    s.links().penStyle = m_linkStyle->currentIndex();
    s.links().size = m_linkSize->value();
    s.links().colour = common::fromQColor(m_linkColour->colour());
    return s;
}

void TRMEditBlocksDlg::setStyles(const DiagramBlockStyles& styles)
{
    for (int g = 0; g < 3; ++g) {
        const GroupControls& c = m_controls[std::size_t(g)];
        const BlockStyle& b = styles.groups()[std::size_t(g)];
        c.size->setValue(b.size);
        // An index outside the list leaves no item chosen (applied as an ellipse).
        c.shape->setCurrentIndex(b.shapeIndex >= 0 && b.shapeIndex < c.shape->count() ? b.shapeIndex
                                                                                      : -1);
        c.colour->setColour(common::toQColor(b.colour));
        m_groupFonts[std::size_t(g)] = b.font;
    }
    m_linkFont = styles.links().font;
    m_linkSample->setFont(toDialogFont(m_linkFont));
    m_linkStyle->setCurrentIndex(styles.links().penStyle >= 0 &&
                                         styles.links().penStyle < m_linkStyle->count()
                                     ? styles.links().penStyle
                                     : -1);
}

void TRMEditBlocksDlg::SaveSettings(const QString& fileName)
{
    const Status saved = styles().SaveSettings(fileName);
    if (!saved) {
        ui::dialogs().warning(this, saved.error());
    }
}

void TRMEditBlocksDlg::ReadSettings(const QString& fileName)
{
    DiagramBlockStyles s;
    s.ReadSettings(fileName);
    setStyles(s);
}

void TRMEditBlocksDlg::ApplyChanges()
{
    if (!isVisible()) {
        return;
    }
    const DiagramBlockStyles s = styles();
    m_document.change([&](DiagramDocument& d) { s.apply(d, m_groups); });
}

void TRMEditBlocksDlg::groupFontClick(int group)
{
    DiagramFont& font = m_groupFonts[std::size_t(group)];
    if (const auto chosen = ui::dialogs().getFont(this, toDialogFont(font))) {
        font = fromDialogFont(*chosen, font.colour);
    }
    ApplyChanges();
}

void TRMEditBlocksDlg::Button4Click()
{
    if (const auto chosen = ui::dialogs().getFont(this, m_linkSample->font())) {
        m_linkFont = fromDialogFont(*chosen, m_linkFont.colour);
        m_linkSample->setFont(toDialogFont(m_linkFont));
    }
    ApplyChanges();
}

void TRMEditBlocksDlg::btnCancelClick()
{
    done(QDialog::Accepted);
}

} // namespace kestrum::diagram
