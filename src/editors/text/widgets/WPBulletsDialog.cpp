#include "WPBulletsDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

namespace kestrum::text {

WPBulletsDialog::WPBulletsDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WPBulletsDialog"));
    setWindowTitle(QStringLiteral("Bullets and numbering"));
    auto* form = new QFormLayout(this);
    m_style = new QComboBox(this);
    m_style->setObjectName(QStringLiteral("style"));
    m_style->addItem(QStringLiteral("None"), int(QTextListFormat::ListStyleUndefined));
    m_style->addItem(QStringLiteral("\u2022 Bullet"), int(QTextListFormat::ListDisc));
    m_style->addItem(QStringLiteral("\u25E6 Circle"), int(QTextListFormat::ListCircle));
    m_style->addItem(QStringLiteral("\u25AA Square"), int(QTextListFormat::ListSquare));
    m_style->addItem(QStringLiteral("1, 2, 3"), int(QTextListFormat::ListDecimal));
    m_style->addItem(QStringLiteral("a, b, c"), int(QTextListFormat::ListLowerAlpha));
    m_style->addItem(QStringLiteral("A, B, C"), int(QTextListFormat::ListUpperAlpha));
    m_style->addItem(QStringLiteral("i, ii, iii"), int(QTextListFormat::ListLowerRoman));
    m_style->addItem(QStringLiteral("I, II, III"), int(QTextListFormat::ListUpperRoman));
    form->addRow(QStringLiteral("Marker:"), m_style);
    m_level = new QSpinBox(this);
    m_level->setObjectName(QStringLiteral("level"));
    m_level->setRange(1, 9);
    form->addRow(QStringLiteral("Level:"), m_level);
    m_prefix = new QLineEdit(this);
    m_prefix->setObjectName(QStringLiteral("prefix"));
    m_prefix->setMaxLength(10);
    m_suffix = new QLineEdit(QStringLiteral("."), this);
    m_suffix->setObjectName(QStringLiteral("suffix"));
    m_suffix->setMaxLength(10);
    form->addRow(QStringLiteral("Before the number:"), m_prefix);
    form->addRow(QStringLiteral("After the number:"), m_suffix);
    connect(m_style, &QComboBox::currentIndexChanged, this, &WPBulletsDialog::updateNumbering);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    updateNumbering();
}

void WPBulletsDialog::updateNumbering()
{
    const int style = m_style->currentData().toInt();
    const bool numbered =
        style <= QTextListFormat::ListDecimal && style >= QTextListFormat::ListUpperRoman;
    m_prefix->setEnabled(numbered);
    m_suffix->setEnabled(numbered);
    m_level->setEnabled(style != QTextListFormat::ListStyleUndefined);
}

void WPBulletsDialog::setListFormat(const std::optional<QTextListFormat>& format)
{
    const int style = format ? int(format->style()) : int(QTextListFormat::ListStyleUndefined);
    m_style->setCurrentIndex(std::max(0, m_style->findData(style)));
    m_level->setValue(format ? std::clamp(format->indent(), 1, 9) : 1);
    if (format) {
        m_prefix->setText(format->numberPrefix());
        m_suffix->setText(format->hasProperty(QTextFormat::ListNumberSuffix)
                              ? format->numberSuffix()
                              : QStringLiteral("."));
    }
    updateNumbering();
}

std::optional<QTextListFormat> WPBulletsDialog::listFormat() const
{
    const auto style = QTextListFormat::Style(m_style->currentData().toInt());
    if (style == QTextListFormat::ListStyleUndefined) {
        return std::nullopt;
    }
    QTextListFormat format;
    format.setStyle(style);
    format.setIndent(m_level->value());
    if (m_prefix->isEnabled()) {
        format.setNumberPrefix(m_prefix->text());
        format.setNumberSuffix(m_suffix->text());
    }
    return format;
}

} // namespace kestrum::text
