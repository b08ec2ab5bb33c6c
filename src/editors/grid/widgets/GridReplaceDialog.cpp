#include "GridReplaceDialog.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrum::grid {

GridReplaceDialog::GridReplaceDialog(QWidget* parent)
    : GridFindDialog(QStringLiteral("Replace text"), parent)
{
    m_replacement = new QLineEdit(this);
    m_replacement->setObjectName(QStringLiteral("replaceText"));
    fields()->addRow(QStringLiteral("Replace with:"), m_replacement);
    auto* replace = new QPushButton(QStringLiteral("Replace"), this);
    replace->setObjectName(QStringLiteral("replace"));
    auto* replaceAll = new QPushButton(QStringLiteral("Replace All"), this);
    replaceAll->setObjectName(QStringLiteral("replaceAll"));
    buttons()->insertWidget(1, replace);
    buttons()->insertWidget(2, replaceAll);
    replace->setEnabled(false);
    replaceAll->setEnabled(false);
    connect(textEdit(), &QLineEdit::textChanged, this, [replace, replaceAll](const QString& text) {
        replace->setEnabled(!text.isEmpty());
        replaceAll->setEnabled(!text.isEmpty());
    });
    connect(replace, &QPushButton::clicked, this, &GridReplaceDialog::replaceRequested);
    connect(replaceAll, &QPushButton::clicked, this, &GridReplaceDialog::replaceAllRequested);
}

QString GridReplaceDialog::replacement() const
{
    return m_replacement->text();
}

void GridReplaceDialog::setReplacement(const QString& text)
{
    m_replacement->setText(text);
}

} // namespace kestrum::grid
