#include "TRMNewNoteDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kestrum::app {

TRMNewNoteDlg::TRMNewNoteDlg(bool rootSelected, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("TRMNewNoteDlg"));
    setWindowTitle(QStringLiteral("New Item"));

    auto* content = new QGroupBox(QStringLiteral("Content:"), this);
    m_document = new QRadioButton(QStringLiteral(" Document"), content);
    m_folder = new QRadioButton(QStringLiteral(" Folder"), content);
    m_document->setChecked(true);
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->addWidget(m_document);
    contentLayout->addWidget(m_folder);

    auto* location = new QGroupBox(QStringLiteral("Location:"), this);
    m_under = new QRadioButton(QStringLiteral(" Under current item"), location);
    m_after = new QRadioButton(QStringLiteral(" After current item"), location);
    m_under->setChecked(true);
    m_after->setEnabled(!rootSelected);
    auto* locationLayout = new QVBoxLayout(location);
    locationLayout->addWidget(m_under);
    locationLayout->addWidget(m_after);

    m_title = new QLineEdit(QStringLiteral("{untitled}"), this);
    m_title->setObjectName(QStringLiteral("Title"));
    m_title->selectAll();
    m_title->setMinimumWidth(280);

    auto* groups = new QHBoxLayout;
    groups->addWidget(content);
    groups->addWidget(location);
    auto* titleRow = new QFormLayout;
    titleRow->addRow(QStringLiteral("Title:"), m_title);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(groups);
    layout->addLayout(titleRow);
    layout->addWidget(buttons);
    m_title->setFocus();
}

bool TRMNewNoteDlg::folder() const
{
    return m_folder->isChecked();
}

bool TRMNewNoteDlg::after() const
{
    return m_after->isChecked() && m_after->isEnabled();
}

QString TRMNewNoteDlg::title() const
{
    return m_title->text();
}

} // namespace kestrum::app
