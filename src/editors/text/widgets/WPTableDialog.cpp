#include "WPTableDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QSpinBox>

namespace kestrum::text {

namespace {

QSpinBox* box(QWidget* parent, const char* name, int min, int max)
{
    auto* spin = new QSpinBox(parent);
    spin->setObjectName(QLatin1String(name));
    spin->setRange(min, max);
    return spin;
}

} // namespace

WPTableDialog::WPTableDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WPTableDialog"));
    setWindowTitle(QStringLiteral("Create Table"));
    auto* form = new QFormLayout(this);
    m_rows = box(this, "rows", 1, 500);
    m_columns = box(this, "columns", 1, 63);
    m_border = box(this, "border", 0, 10);
    m_padding = box(this, "padding", 0, 30);
    form->addRow(QStringLiteral("Rows:"), m_rows);
    form->addRow(QStringLiteral("Columns:"), m_columns);
    form->addRow(QStringLiteral("Border (pixels):"), m_border);
    form->addRow(QStringLiteral("Cell padding (pixels):"), m_padding);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    setTable(Table());
}

void WPTableDialog::setTable(const Table& table)
{
    m_rows->setValue(table.rows);
    m_columns->setValue(table.columns);
    m_border->setValue(table.border);
    m_padding->setValue(table.padding);
}

WPTableDialog::Table WPTableDialog::table() const
{
    return {m_rows->value(), m_columns->value(), m_border->value(), m_padding->value()};
}

} // namespace kestrum::text
