#include "TRMEditBlockDlg.h"

#include "common/Rounding.h"
#include "common/ScopedFlag.h"
#include "editors/diagram/DiagramFontConvert.h"
#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramRenderer.h"
#include "ui/ColourSelector.h"
#include "ui/Dialogs.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace kestrum::diagram {

namespace {

// The first and third items carry a trailing TAB, as they always have.
const QStringList kShapeItems{QStringLiteral("Square\t"), QStringLiteral("Circle"),
                              QStringLiteral("Diamond\t"), QStringLiteral("Round Square")};
const QStringList kStyleItems{QStringLiteral("Solid"), QStringLiteral("Dash"),
                              QStringLiteral("Dot"), QStringLiteral("Dash Dot"),
                              QStringLiteral("Dash Dot Dot")};
constexpr int kMaxBlockSize = 10000;

QLabel* sampleLabel()
{
    auto* label = new QLabel(QStringLiteral("Sample font"));
    label->setObjectName(QStringLiteral("SampleFont"));
    label->setFrameShape(QFrame::Panel);
    label->setFrameShadow(QFrame::Sunken);
    label->setAlignment(Qt::AlignCenter);
    label->setMinimumHeight(36);
    return label;
}

void showFont(QLabel* sample, const DiagramFont& font)
{
    QFont f = toDialogFont(font);
    sample->setFont(f);
    QPalette p = sample->palette();
    const QColor c = common::toQColor(font.colour);
    p.setColor(QPalette::WindowText, c.isValid() ? c : Qt::black);
    sample->setPalette(p);
}

} // namespace

TRMEditBlockDlg::TRMEditBlockDlg(DiagramPageDocument& document, QWidget* parent)
    : QDialog(parent), m_document(document)
{
    setObjectName(QStringLiteral("RMEditBlockDlg"));
    setWindowTitle(QStringLiteral("Edit"));
    auto* layout = new QVBoxLayout(this);
    m_tabs = new QTabWidget;
    m_tabs->addTab(buildNodesTab(), QStringLiteral("Nodes"));
    m_tabs->addTab(buildLinksTab(), QStringLiteral("Links"));
    layout->addWidget(m_tabs);
    auto* close = new QPushButton(QStringLiteral("Close"));
    close->setObjectName(QStringLiteral("SpeedButton2"));
    connect(close, &QPushButton::clicked, this, &TRMEditBlockDlg::SpeedButton2Click);
    layout->addWidget(close, 0, Qt::AlignRight);
}

QWidget* TRMEditBlockDlg::buildNodesTab()
{
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_shapeList = new QComboBox;
    m_shapeList->addItems(kShapeItems);
    m_sizeSpin = new QSpinBox;
    m_sizeSpin->setRange(1, kMaxBlockSize);
    m_colourWell =
        new ui::ColourSelector(ui::ColourSelector::Kind::Background, QStringLiteral("Color"));
    auto* font = new QPushButton(QStringLiteral("Font"));
    font->setObjectName(QStringLiteral("BtnFont"));
    m_nodeSample = sampleLabel();
    m_blockText = new QLineEdit;
    form->addRow(QStringLiteral("Shape:"), m_shapeList);
    form->addRow(QStringLiteral("Size:"), m_sizeSpin);
    form->addRow(QStringLiteral("Color:"), m_colourWell);
    form->addRow(QStringLiteral("Font:"), font);
    form->addRow(QString(), m_nodeSample);
    form->addRow(QStringLiteral("Text:"), m_blockText);

    connect(m_shapeList, &QComboBox::currentIndexChanged, this, &TRMEditBlockDlg::ApplyChanges);
    connect(m_sizeSpin, &QSpinBox::valueChanged, this, &TRMEditBlockDlg::ApplyChanges);
    connect(m_colourWell, &ui::ColourSelector::colourSelected, this,
            &TRMEditBlockDlg::ApplyChanges);
    connect(m_blockText, &QLineEdit::textChanged, this, &TRMEditBlockDlg::ApplyChanges);
    connect(font, &QPushButton::clicked, this, &TRMEditBlockDlg::BtnFontClick);
    return page;
}

QWidget* TRMEditBlockDlg::buildLinksTab()
{
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_linkSizeSpin = new QSpinBox;
    m_linkSizeSpin->setRange(0, 1000);
    m_linkColourWell =
        new ui::ColourSelector(ui::ColourSelector::Kind::Background, QStringLiteral("Color"));
    m_styleList = new QComboBox;
    m_styleList->addItems(kStyleItems);
    auto* font = new QPushButton(QStringLiteral("Font"));
    font->setObjectName(QStringLiteral("Button1"));
    m_linkSample = sampleLabel();
    m_linkText = new QLineEdit;
    form->addRow(QStringLiteral("Size:"), m_linkSizeSpin);
    form->addRow(QStringLiteral("Color:"), m_linkColourWell);
    form->addRow(QStringLiteral("Style:"), m_styleList);
    form->addRow(QStringLiteral("Font:"), font);
    form->addRow(QString(), m_linkSample);
    form->addRow(QStringLiteral("Text:"), m_linkText);

    connect(m_linkSizeSpin, &QSpinBox::valueChanged, this, &TRMEditBlockDlg::ApplyChanges);
    connect(m_linkColourWell, &ui::ColourSelector::colourSelected, this,
            &TRMEditBlockDlg::ApplyChanges);
    connect(m_styleList, &QComboBox::currentIndexChanged, this, &TRMEditBlockDlg::ApplyChanges);
    connect(m_linkText, &QLineEdit::textChanged, this, &TRMEditBlockDlg::ApplyChanges);
    connect(font, &QPushButton::clicked, this, &TRMEditBlockDlg::Button1Click);
    return page;
}

int TRMEditBlockDlg::shapeIndexFor(quint8 shape)
{
    switch (shape) {
    case BlockShape::Ellipse:
        return 1;
    case BlockShape::RoundRect:
    case BlockShape::Diamond:
        return 2;
    case BlockShape::RoundSquare:
        return 3;
    default: // no shape, rectangle
        return 0;
    }
}

quint8 TRMEditBlockDlg::shapeForIndex(int index)
{
    switch (index) {
    case 1:
        return BlockShape::Ellipse;
    case 2:
        return BlockShape::Diamond;
    case 3:
        return BlockShape::RoundSquare;
    default:
        return BlockShape::Rectangle;
    }
}

void TRMEditBlockDlg::prepareFromSelection()
{
    common::ScopedFlag preparing(m_preparing);
    const DiagramDocument& d = m_document.diagram();
    m_blockText->setEnabled(false);
    int blocks = 0;
    for (const DiagramBlock& b : d.blocks()) {
        if (!b.selected) {
            continue;
        }
        ++blocks;
        m_sizeSpin->setValue(int(common::roundHalfEven(b.width)));
        const DiagramTextCell* cell = DiagramDocument::firstCell(b.cells);
        m_blockText->setText(blocks == 1 && cell ? cell->text : QString());
        m_shapeList->setCurrentIndex(shapeIndexFor(b.shape));
        m_colourWell->setColour(common::toQColor(b.colour));
        m_nodeFont = cell ? cell->font : DiagramFont{};
        showFont(m_nodeSample, m_nodeFont);
    }
    m_blockText->setEnabled(blocks == 1);

    int links = 0;
    for (const DiagramLink& l : d.links()) {
        if (!l.selected) {
            continue;
        }
        ++links;
        const DiagramTextCell* cell = DiagramDocument::firstCell(l.cells);
        m_linkText->setText(links == 1 && cell ? cell->text : QString());
        m_linkSizeSpin->setValue(l.penWidth);
        m_linkColourWell->setColour(common::toQColor(l.colour));
        m_linkFont = cell ? cell->font : DiagramFont{};
        showLinkSample();
        m_styleList->setCurrentIndex(l.style);
    }
    m_linkText->setEnabled(links == 1);
    m_tabs->setTabEnabled(0, blocks > 0);
    m_tabs->setTabEnabled(1, links > 0);
    m_tabs->setCurrentIndex(blocks == 0 && links > 0 ? 1 : 0);
}

void TRMEditBlockDlg::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    FormActivate();
}

void TRMEditBlockDlg::paintTextBoxes()
{
    for (QLineEdit* box : {m_blockText, m_linkText}) {
        QPalette p = box->palette();
        p.setColor(QPalette::Base, box->isEnabled() ? palette().color(QPalette::Base)
                                                    : palette().color(QPalette::Button));
        box->setPalette(p);
    }
}

void TRMEditBlockDlg::FormActivate()
{
    paintTextBoxes();
    m_linksToEdit.clear();
    const auto& links = m_document.diagram().links();
    for (int i = 0; i < int(links.size()); ++i) {
        if (links[std::size_t(i)].selected) {
            m_linksToEdit.push_back(i);
        }
    }
    if (!m_linksToEdit.empty()) {
        m_document.changeQuietly([this](DiagramDocument& d) {
            for (int i : m_linksToEdit) {
                d.links()[std::size_t(i)].selected = false;
            }
        });
    }
}

void TRMEditBlockDlg::ApplyChanges()
{
    if (!isVisible() || m_preparing) {
        return;
    }
    const int size = m_sizeSpin->value();
    const bool blockText = m_blockText->isEnabled();
    const QString text = m_blockText->text();
    const quint8 shape = shapeForIndex(m_shapeList->currentIndex());
    const common::TColor colour = common::fromQColor(m_colourWell->colour());
    const bool linkTextEnabled = m_linkText->isEnabled();
    const QString linkText = m_linkText->text();
    const int penWidth = m_linkSizeSpin->value();
    const common::TColor penColour = common::fromQColor(m_linkColourWell->colour());
    const int style = std::clamp(m_styleList->currentIndex(), 0, int(PenStyle::Last));
    m_document.change([&](DiagramDocument& d) {
        for (DiagramBlock& b : d.blocks()) {
            if (!b.selected) {
                continue;
            }
            b.width = size;
            b.height = b.width; // blocks are kept square
            DiagramTextCell& cell = DiagramDocument::firstCell(b.cells);
            if (blockText) {
                cell.text = text;
            }
            b.shape = shape;
            b.colour = colour;
            cell.font = m_nodeFont;
        }
        for (int i : m_linksToEdit) {
            if (i < 0 || i >= int(d.links().size())) {
                continue;
            }
            DiagramLink& l = d.links()[std::size_t(i)];
            DiagramTextCell& cell = DiagramDocument::firstCell(l.cells);
            if (linkTextEnabled) {
                cell.text = linkText;
            }
            l.penWidth = penWidth;
            l.colour = penColour;
            cell.font = m_linkFont;
            l.style = quint8(style);
        }
    });
}

void TRMEditBlockDlg::BtnFontClick()
{
    if (const auto font = ui::dialogs().getFont(this, toDialogFont(m_nodeFont))) {
        m_nodeFont = fromDialogFont(*font, m_nodeFont.colour);
        showFont(m_nodeSample, m_nodeFont);
    }
    ApplyChanges();
}

void TRMEditBlockDlg::Button1Click()
{
    if (const auto font = ui::dialogs().getFont(this, toDialogFont(m_linkFont))) {
        m_linkFont = fromDialogFont(*font, m_linkFont.colour);
        showLinkSample();
    }
    ApplyChanges();
}

void TRMEditBlockDlg::showLinkSample()
{
    showFont(m_linkSample, m_linkFont);
}

void TRMEditBlockDlg::SpeedButton2Click()
{
    done(QDialog::Accepted);
}

} // namespace kestrum::diagram
