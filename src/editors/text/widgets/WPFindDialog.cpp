#include "WPFindDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace kestrum::text {

WPFindDialog::WPFindDialog(Mode mode, QWidget* parent) : QDialog(parent)
{
    setObjectName(mode == Mode::Find ? QStringLiteral("WPFindDialog")
                                     : QStringLiteral("WPReplaceDialog"));
    setWindowTitle(mode == Mode::Find ? QStringLiteral("Find") : QStringLiteral("Replace"));
    auto* form = new QFormLayout(this);
    m_find = new QLineEdit(this);
    m_find->setObjectName(QStringLiteral("findText"));
    form->addRow(QStringLiteral("Find what:"), m_find);
    m_replace = new QLineEdit(this);
    m_replace->setObjectName(QStringLiteral("replaceText"));
    if (mode == Mode::Replace) {
        form->addRow(QStringLiteral("Replace with:"), m_replace);
    } else {
        m_replace->hide();
    }
    m_case = new QCheckBox(QStringLiteral("Match case"), this);
    m_case->setObjectName(QStringLiteral("matchCase"));
    m_words = new QCheckBox(QStringLiteral("Whole words only"), this);
    m_words->setObjectName(QStringLiteral("wholeWords"));
    m_backwards = new QCheckBox(QStringLiteral("Search backwards"), this);
    m_backwards->setObjectName(QStringLiteral("backwards"));
    form->addRow(m_case);
    form->addRow(m_words);
    form->addRow(m_backwards);

    auto* buttons = new QDialogButtonBox(this);
    auto* next = buttons->addButton(QStringLiteral("Find Next"), QDialogButtonBox::ActionRole);
    next->setObjectName(QStringLiteral("findNext"));
    next->setDefault(true);
    connect(next, &QPushButton::clicked, this, &WPFindDialog::findNext);
    if (mode == Mode::Replace) {
        auto* one = buttons->addButton(QStringLiteral("Replace"), QDialogButtonBox::ActionRole);
        one->setObjectName(QStringLiteral("replace"));
        connect(one, &QPushButton::clicked, this, &WPFindDialog::replaceOne);
        auto* all = buttons->addButton(QStringLiteral("Replace All"), QDialogButtonBox::ActionRole);
        all->setObjectName(QStringLiteral("replaceAll"));
        connect(all, &QPushButton::clicked, this, &WPFindDialog::replaceAll);
    }
    auto* close = buttons->addButton(QDialogButtonBox::Close);
    close->setObjectName(QStringLiteral("close"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    form->addRow(buttons);
    auto enable = [this, buttons] {
        for (QAbstractButton* b : buttons->buttons()) {
            if (b->objectName() != QLatin1String("close")) {
                b->setEnabled(!m_find->text().isEmpty());
            }
        }
    };
    connect(m_find, &QLineEdit::textChanged, this, enable);
    enable();
}

QString WPFindDialog::findText() const
{
    return m_find->text();
}

QString WPFindDialog::replaceText() const
{
    return m_replace->text();
}

void WPFindDialog::setFindText(const QString& text)
{
    m_find->setText(text);
    m_find->selectAll();
}

void WPFindDialog::setReplaceText(const QString& text)
{
    m_replace->setText(text);
}

FindOptions WPFindDialog::options() const
{
    FindOptions options;
    options.caseSensitive = m_case->isChecked();
    options.wholeWords = m_words->isChecked();
    options.backwards = m_backwards->isChecked();
    return options;
}

} // namespace kestrum::text
