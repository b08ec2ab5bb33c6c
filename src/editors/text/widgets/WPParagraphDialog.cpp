#include "WPParagraphDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>

namespace kestrum::text {

namespace {

constexpr double kPixelsPerCm = 96.0 / 2.54;
constexpr double kPixelsPerPoint = 96.0 / 72.0;

enum LineSpacing
{
    Single,
    OneAndHalf,
    Double,
    AtLeast,
    Exactly,
    Multiple
};

QDoubleSpinBox* spin(QWidget* parent, const char* name, double min, double max,
                     const QString& suffix)
{
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(min, max);
    box->setDecimals(2);
    box->setSingleStep(suffix == QLatin1String(" cm") ? 0.25 : 1.0);
    box->setSuffix(suffix);
    return box;
}

} // namespace

WPParagraphDialog::WPParagraphDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WPParagraphDialog"));
    setWindowTitle(QStringLiteral("Paragraphs"));
    auto* form = new QFormLayout(this);
    m_alignment = new QComboBox(this);
    m_alignment->setObjectName(QStringLiteral("alignment"));
    m_alignment->addItem(QStringLiteral("Left"), int(Qt::AlignLeft));
    m_alignment->addItem(QStringLiteral("Center"), int(Qt::AlignHCenter));
    m_alignment->addItem(QStringLiteral("Right"), int(Qt::AlignRight));
    m_alignment->addItem(QStringLiteral("Justified"), int(Qt::AlignJustify));
    form->addRow(QStringLiteral("Alignment:"), m_alignment);
    m_left = spin(this, "leftIndent", 0, 50, QStringLiteral(" cm"));
    m_right = spin(this, "rightIndent", 0, 50, QStringLiteral(" cm"));
    m_first = spin(this, "firstLine", -50, 50, QStringLiteral(" cm"));
    m_before = spin(this, "spaceBefore", 0, 500, QStringLiteral(" pt"));
    m_after = spin(this, "spaceAfter", 0, 500, QStringLiteral(" pt"));
    form->addRow(QStringLiteral("Left indent:"), m_left);
    form->addRow(QStringLiteral("Right indent:"), m_right);
    form->addRow(QStringLiteral("First line:"), m_first);
    form->addRow(QStringLiteral("Space before:"), m_before);
    form->addRow(QStringLiteral("Space after:"), m_after);
    m_lineSpacing = new QComboBox(this);
    m_lineSpacing->setObjectName(QStringLiteral("lineSpacing"));
    m_lineSpacing->addItems({QStringLiteral("Single"), QStringLiteral("1.5 lines"),
                             QStringLiteral("Double"), QStringLiteral("At least"),
                             QStringLiteral("Exactly"), QStringLiteral("Multiple")});
    m_lineValue = spin(this, "lineSpacingValue", 0, 500, QString());
    form->addRow(QStringLiteral("Line spacing:"), m_lineSpacing);
    form->addRow(QStringLiteral("At:"), m_lineValue);
    connect(m_lineSpacing, &QComboBox::currentIndexChanged, this,
            &WPParagraphDialog::updateValueBox);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    updateValueBox();
}

void WPParagraphDialog::updateValueBox()
{
    const int kind = m_lineSpacing->currentIndex();
    m_lineValue->setEnabled(kind >= AtLeast);
    m_lineValue->setSuffix(kind == Multiple ? QStringLiteral(" lines") : QStringLiteral(" pt"));
    if (kind == Multiple && m_lineValue->value() > 10) {
        m_lineValue->setValue(1.15);
    }
}

void WPParagraphDialog::setFormat(const QTextBlockFormat& format)
{
    const int align = int(format.alignment() & Qt::AlignHorizontal_Mask);
    int index = 0;
    for (int i = 0; i < m_alignment->count(); ++i) {
        if (m_alignment->itemData(i).toInt() & align) {
            index = i;
        }
    }
    m_alignment->setCurrentIndex(index);
    m_left->setValue(format.leftMargin() / kPixelsPerCm);
    m_right->setValue(format.rightMargin() / kPixelsPerCm);
    m_first->setValue(format.textIndent() / kPixelsPerCm);
    m_before->setValue(format.topMargin() / kPixelsPerPoint);
    m_after->setValue(format.bottomMargin() / kPixelsPerPoint);
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        if (qFuzzyCompare(format.lineHeight(), 150.0)) {
            m_lineSpacing->setCurrentIndex(OneAndHalf);
        } else if (qFuzzyCompare(format.lineHeight(), 200.0)) {
            m_lineSpacing->setCurrentIndex(Double);
        } else if (qFuzzyCompare(format.lineHeight(), 100.0)) {
            m_lineSpacing->setCurrentIndex(Single);
        } else {
            m_lineSpacing->setCurrentIndex(Multiple);
            m_lineValue->setValue(format.lineHeight() / 100.0);
        }
        break;
    case QTextBlockFormat::MinimumHeight:
        m_lineSpacing->setCurrentIndex(AtLeast);
        m_lineValue->setValue(format.lineHeight() / kPixelsPerPoint);
        break;
    case QTextBlockFormat::FixedHeight:
        m_lineSpacing->setCurrentIndex(Exactly);
        m_lineValue->setValue(format.lineHeight() / kPixelsPerPoint);
        break;
    default:
        m_lineSpacing->setCurrentIndex(Single);
        break;
    }
    updateValueBox();
}

QTextBlockFormat WPParagraphDialog::format() const
{
    QTextBlockFormat format;
    format.setAlignment(Qt::Alignment(m_alignment->currentData().toInt()));
    format.setLeftMargin(m_left->value() * kPixelsPerCm);
    format.setRightMargin(m_right->value() * kPixelsPerCm);
    format.setTextIndent(m_first->value() * kPixelsPerCm);
    format.setTopMargin(m_before->value() * kPixelsPerPoint);
    format.setBottomMargin(m_after->value() * kPixelsPerPoint);
    switch (m_lineSpacing->currentIndex()) {
    case OneAndHalf:
        format.setLineHeight(150, QTextBlockFormat::ProportionalHeight);
        break;
    case Double:
        format.setLineHeight(200, QTextBlockFormat::ProportionalHeight);
        break;
    case AtLeast:
        format.setLineHeight(m_lineValue->value() * kPixelsPerPoint,
                             QTextBlockFormat::MinimumHeight);
        break;
    case Exactly:
        format.setLineHeight(m_lineValue->value() * kPixelsPerPoint, QTextBlockFormat::FixedHeight);
        break;
    case Multiple:
        format.setLineHeight(std::max(0.5, m_lineValue->value()) * 100,
                             QTextBlockFormat::ProportionalHeight);
        break;
    default:
        format.setLineHeight(0, QTextBlockFormat::SingleHeight);
        break;
    }
    return format;
}

} // namespace kestrum::text
