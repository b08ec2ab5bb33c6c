#include "WPPageSetupDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>

#include <cmath>

namespace kestrum::text {

namespace {

constexpr double kTwipsPerCm = 1440.0 / 2.54;

struct Paper
{
    const char* name;
    int width; // twips, portrait
    int height;
};

constexpr Paper kPapers[] = {
    {"A4", 11906, 16838},     {"A5", 8391, 11906},     {"A3", 16838, 23811},
    {"Letter", 12240, 15840}, {"Legal", 12240, 20160},
};

QDoubleSpinBox* centimetres(QWidget* parent, const char* name, double max)
{
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(0, max);
    box->setDecimals(2);
    box->setSingleStep(0.1);
    box->setSuffix(QStringLiteral(" cm"));
    return box;
}

int twips(const QDoubleSpinBox* box)
{
    return int(std::lround(box->value() * kTwipsPerCm));
}

} // namespace

WPPageSetupDialog::WPPageSetupDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WPPageSetupDialog"));
    setWindowTitle(QStringLiteral("Page setup"));
    auto* form = new QFormLayout(this);
    m_paper = new QComboBox(this);
    m_paper->setObjectName(QStringLiteral("paper"));
    for (const Paper& p : kPapers) {
        m_paper->addItem(QLatin1String(p.name));
    }
    m_paper->addItem(QStringLiteral("Custom"));
    form->addRow(QStringLiteral("Paper:"), m_paper);
    m_orientation = new QComboBox(this);
    m_orientation->setObjectName(QStringLiteral("orientation"));
    m_orientation->addItems({QStringLiteral("Portrait"), QStringLiteral("Landscape")});
    form->addRow(QStringLiteral("Orientation:"), m_orientation);
    const double maxPaper = PageLayout::kMaxPaper / kTwipsPerCm;
    m_width = centimetres(this, "paperWidth", maxPaper);
    m_height = centimetres(this, "paperHeight", maxPaper);
    form->addRow(QStringLiteral("Width:"), m_width);
    form->addRow(QStringLiteral("Height:"), m_height);
    m_top = centimetres(this, "marginTop", 20);
    m_bottom = centimetres(this, "marginBottom", 20);
    m_left = centimetres(this, "marginLeft", 20);
    m_right = centimetres(this, "marginRight", 20);
    form->addRow(QStringLiteral("Top margin:"), m_top);
    form->addRow(QStringLiteral("Bottom margin:"), m_bottom);
    form->addRow(QStringLiteral("Left margin:"), m_left);
    form->addRow(QStringLiteral("Right margin:"), m_right);
    connect(m_paper, &QComboBox::currentIndexChanged, this, &WPPageSetupDialog::paperChosen);
    connect(m_orientation, &QComboBox::currentIndexChanged, this,
            &WPPageSetupDialog::orientationChosen);
    auto custom = [this] {
        if (!m_updating) {
            m_updating = true;
            m_paper->setCurrentIndex(m_paper->count() - 1);
            m_updating = false;
        }
    };
    connect(m_width, &QDoubleSpinBox::valueChanged, this, custom);
    connect(m_height, &QDoubleSpinBox::valueChanged, this, custom);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

void WPPageSetupDialog::paperChosen()
{
    const int index = m_paper->currentIndex();
    if (m_updating || index < 0 || index >= int(std::size(kPapers))) {
        return;
    }
    m_updating = true;
    const Paper& p = kPapers[index];
    const bool landscape = m_orientation->currentIndex() == 1;
    m_width->setValue((landscape ? p.height : p.width) / kTwipsPerCm);
    m_height->setValue((landscape ? p.width : p.height) / kTwipsPerCm);
    m_updating = false;
}

void WPPageSetupDialog::orientationChosen()
{
    const bool landscape = m_orientation->currentIndex() == 1;
    if ((m_width->value() > m_height->value()) == landscape) {
        return;
    }
    const int paper = m_paper->currentIndex();
    m_updating = true;
    const double w = m_width->value();
    m_width->setValue(m_height->value());
    m_height->setValue(w);
    m_paper->setCurrentIndex(paper);
    m_updating = false;
}

void WPPageSetupDialog::setPageLayout(const PageLayout& layout)
{
    m_updating = true;
    m_orientation->setCurrentIndex(layout.landscape() ? 1 : 0);
    m_width->setValue(layout.paperWidth / kTwipsPerCm);
    m_height->setValue(layout.paperHeight / kTwipsPerCm);
    m_top->setValue(layout.marginTop / kTwipsPerCm);
    m_bottom->setValue(layout.marginBottom / kTwipsPerCm);
    m_left->setValue(layout.marginLeft / kTwipsPerCm);
    m_right->setValue(layout.marginRight / kTwipsPerCm);
    int paper = m_paper->count() - 1;
    const int w = std::min(layout.paperWidth, layout.paperHeight);
    const int h = std::max(layout.paperWidth, layout.paperHeight);
    for (int i = 0; i < int(std::size(kPapers)); ++i) {
        if (std::abs(kPapers[i].width - w) < 20 && std::abs(kPapers[i].height - h) < 20) {
            paper = i;
        }
    }
    m_paper->setCurrentIndex(paper);
    m_updating = false;
}

PageLayout WPPageSetupDialog::pageLayout() const
{
    PageLayout layout;
    const int index = m_paper->currentIndex();
    if (index >= 0 && index < int(std::size(kPapers))) {
        // Named sizes to the twip, not through centimetres.
        const Paper& p = kPapers[index];
        const bool landscape = m_orientation->currentIndex() == 1;
        layout.paperWidth = landscape ? p.height : p.width;
        layout.paperHeight = landscape ? p.width : p.height;
    } else {
        layout.paperWidth = twips(m_width);
        layout.paperHeight = twips(m_height);
    }
    layout.marginTop = twips(m_top);
    layout.marginBottom = twips(m_bottom);
    layout.marginLeft = twips(m_left);
    layout.marginRight = twips(m_right);
    layout.normalise();
    return layout;
}

} // namespace kestrum::text
