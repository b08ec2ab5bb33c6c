#include "WPBordersDialog.h"

#include "editors/text/TextProperties.h"
#include "ui/Dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QPushButton>
#include <QTextFrameFormat>

#include <cmath>

namespace kestrum::text {

WPBordersDialog::WPBordersDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WPBordersDialog"));
    setWindowTitle(QStringLiteral("Borders"));
    auto* form = new QFormLayout(this);
    auto* sides = new QGridLayout;
    m_top = new QCheckBox(QStringLiteral("Top"), this);
    m_top->setObjectName(QStringLiteral("top"));
    m_bottom = new QCheckBox(QStringLiteral("Bottom"), this);
    m_bottom->setObjectName(QStringLiteral("bottom"));
    m_left = new QCheckBox(QStringLiteral("Left"), this);
    m_left->setObjectName(QStringLiteral("left"));
    m_right = new QCheckBox(QStringLiteral("Right"), this);
    m_right->setObjectName(QStringLiteral("right"));
    sides->addWidget(m_top, 0, 0);
    sides->addWidget(m_bottom, 0, 1);
    sides->addWidget(m_left, 1, 0);
    sides->addWidget(m_right, 1, 1);
    form->addRow(QStringLiteral("Sides:"), sides);
    m_style = new QComboBox(this);
    m_style->setObjectName(QStringLiteral("style"));
    m_style->addItem(QStringLiteral("Solid"), int(QTextFrameFormat::BorderStyle_Solid));
    m_style->addItem(QStringLiteral("Dotted"), int(QTextFrameFormat::BorderStyle_Dotted));
    m_style->addItem(QStringLiteral("Dashed"), int(QTextFrameFormat::BorderStyle_Dashed));
    m_style->addItem(QStringLiteral("Double"), int(QTextFrameFormat::BorderStyle_Double));
    form->addRow(QStringLiteral("Line:"), m_style);
    m_width = new QDoubleSpinBox(this);
    m_width->setObjectName(QStringLiteral("width"));
    m_width->setRange(0.25, 12);
    m_width->setSingleStep(0.25);
    m_width->setSuffix(QStringLiteral(" pt"));
    form->addRow(QStringLiteral("Width:"), m_width);
    m_spacing = new QDoubleSpinBox(this);
    m_spacing->setObjectName(QStringLiteral("spacing"));
    m_spacing->setRange(0, 31);
    m_spacing->setSuffix(QStringLiteral(" pt"));
    form->addRow(QStringLiteral("From text:"), m_spacing);
    m_colourButton = new QPushButton(QStringLiteral("Colour..."), this);
    m_colourButton->setObjectName(QStringLiteral("colour"));
    connect(m_colourButton, &QPushButton::clicked, this, &WPBordersDialog::chooseColour);
    form->addRow(QStringLiteral("Colour:"), m_colourButton);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    setBorder(Border());
}

void WPBordersDialog::chooseColour()
{
    if (const auto colour = ui::dialogs().getColour(
            this, m_colour.isValid() ? m_colour : QColor(Qt::black), windowTitle())) {
        m_colour = *colour;
        showColour();
    }
}

void WPBordersDialog::showColour()
{
    QPixmap swatch(16, 16);
    swatch.fill(m_colour.isValid() ? m_colour : palette().color(QPalette::Text));
    m_colourButton->setIcon(QIcon(swatch));
}

void WPBordersDialog::setBorder(const Border& border)
{
    m_top->setChecked(border.sides & BorderSide::Top);
    m_bottom->setChecked(border.sides & BorderSide::Bottom);
    m_left->setChecked(border.sides & BorderSide::Left);
    m_right->setChecked(border.sides & BorderSide::Right);
    m_style->setCurrentIndex(std::max(0, m_style->findData(border.style)));
    m_width->setValue(border.width / 20.0);
    m_spacing->setValue(border.spacing / 20.0);
    m_colour = border.colour;
    showColour();
}

WPBordersDialog::Border WPBordersDialog::border() const
{
    Border out;
    out.sides = (m_top->isChecked() ? BorderSide::Top : 0) |
                (m_bottom->isChecked() ? BorderSide::Bottom : 0) |
                (m_left->isChecked() ? BorderSide::Left : 0) |
                (m_right->isChecked() ? BorderSide::Right : 0);
    out.style = m_style->currentData().toInt();
    out.width = int(std::lround(m_width->value() * 20));
    out.spacing = int(std::lround(m_spacing->value() * 20));
    out.colour = m_colour;
    return out;
}

} // namespace kestrum::text
