#include "GridFindDialog.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrum::grid {

GridFindDialog::GridFindDialog(QWidget* parent) : QDialog(parent)
{
    build(QStringLiteral("Find text"));
}

GridFindDialog::GridFindDialog(const QString& caption, QWidget* parent) : QDialog(parent)
{
    build(caption);
}

void GridFindDialog::build(const QString& caption)
{
    setWindowTitle(caption);
    setObjectName(caption == QLatin1String("Find text") ? QStringLiteral("GridFindDialog")
                                                        : QStringLiteral("GridReplaceDialog"));
    auto* layout = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    m_fields = new QFormLayout;
    m_text = new QLineEdit(this);
    m_text->setObjectName(QStringLiteral("findText"));
    m_fields->addRow(QStringLiteral("Find what:"), m_text);
    left->addLayout(m_fields);
    m_matchCase = new QCheckBox(QStringLiteral("Match case"), this);
    m_matchCase->setObjectName(QStringLiteral("matchCase"));
    m_wholeCell = new QCheckBox(QStringLiteral("Whole cell only"), this);
    m_wholeCell->setObjectName(QStringLiteral("wholeCell"));
    left->addWidget(m_matchCase);
    left->addWidget(m_wholeCell);
    left->addStretch();
    layout->addLayout(left, 1);

    m_buttons = new QVBoxLayout;
    m_findNext = new QPushButton(QStringLiteral("Find Next"), this);
    m_findNext->setObjectName(QStringLiteral("findNext"));
    m_findNext->setDefault(true);
    m_findNext->setEnabled(false);
    m_buttons->addWidget(m_findNext);
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("close"));
    m_buttons->addWidget(close);
    m_buttons->addStretch();
    layout->addLayout(m_buttons);

    connect(m_text, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_findNext->setEnabled(!text.isEmpty()); });
    connect(m_findNext, &QPushButton::clicked, this, &GridFindDialog::findNextRequested);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
}

QString GridFindDialog::text() const
{
    return m_text->text();
}

void GridFindDialog::setText(const QString& text)
{
    m_text->setText(text);
}

GridFindOptions GridFindDialog::options() const
{
    return {m_matchCase->isChecked(), m_wholeCell->isChecked()};
}

} // namespace kestrum::grid
