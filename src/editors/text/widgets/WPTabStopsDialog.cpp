#include "WPTabStopsDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>

#include <algorithm>

namespace kestrum::text {

namespace {

constexpr double kPixelsPerCm = 96.0 / 2.54;

QString kindName(QTextOption::TabType type)
{
    switch (type) {
    case QTextOption::RightTab:
        return QStringLiteral("Right");
    case QTextOption::CenterTab:
        return QStringLiteral("Centre");
    case QTextOption::DelimiterTab:
        return QStringLiteral("Decimal");
    default:
        return QStringLiteral("Left");
    }
}

} // namespace

WPTabStopsDialog::WPTabStopsDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WPTabStopsDialog"));
    setWindowTitle(QStringLiteral("Tab stops"));
    auto* form = new QFormLayout(this);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("tabList"));
    form->addRow(m_list);
    m_position = new QDoubleSpinBox(this);
    m_position->setObjectName(QStringLiteral("position"));
    m_position->setRange(0, 50);
    m_position->setSingleStep(0.25);
    m_position->setSuffix(QStringLiteral(" cm"));
    form->addRow(QStringLiteral("Position:"), m_position);
    m_kind = new QComboBox(this);
    m_kind->setObjectName(QStringLiteral("kind"));
    for (auto type : {QTextOption::LeftTab, QTextOption::RightTab, QTextOption::CenterTab,
                      QTextOption::DelimiterTab}) {
        m_kind->addItem(kindName(type), int(type));
    }
    form->addRow(QStringLiteral("Alignment:"), m_kind);
    auto* row = new QHBoxLayout;
    auto* set = new QPushButton(QStringLiteral("Set"), this);
    set->setObjectName(QStringLiteral("setButton"));
    auto* clear = new QPushButton(QStringLiteral("Clear"), this);
    clear->setObjectName(QStringLiteral("clearButton"));
    auto* clearAllButton = new QPushButton(QStringLiteral("Clear All"), this);
    clearAllButton->setObjectName(QStringLiteral("clearAllButton"));
    row->addWidget(set);
    row->addWidget(clear);
    row->addWidget(clearAllButton);
    form->addRow(row);
    connect(set, &QPushButton::clicked, this, &WPTabStopsDialog::setTab);
    connect(clear, &QPushButton::clicked, this, &WPTabStopsDialog::clearTab);
    connect(clearAllButton, &QPushButton::clicked, this, &WPTabStopsDialog::clearAll);
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0 && row < m_tabs.size()) {
            m_position->setValue(m_tabs[row].position / kPixelsPerCm);
            m_kind->setCurrentIndex(m_kind->findData(int(m_tabs[row].type)));
        }
    });
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

void WPTabStopsDialog::setTabs(const QList<QTextOption::Tab>& tabs)
{
    m_tabs = tabs;
    refreshList();
}

void WPTabStopsDialog::setTab()
{
    const qreal position = m_position->value() * kPixelsPerCm;
    const auto type = QTextOption::TabType(m_kind->currentData().toInt());
    // A stop at the same place (to the pixel) is replaced.
    m_tabs.erase(std::remove_if(m_tabs.begin(), m_tabs.end(),
                                [&](const QTextOption::Tab& t) {
                                    return std::abs(t.position - position) < 0.5;
                                }),
                 m_tabs.end());
    m_tabs << QTextOption::Tab(position, type,
                               type == QTextOption::DelimiterTab ? QChar('.') : QChar());
    std::sort(m_tabs.begin(), m_tabs.end(),
              [](const auto& a, const auto& b) { return a.position < b.position; });
    refreshList();
}

void WPTabStopsDialog::clearTab()
{
    const int row = m_list->currentRow();
    if (row >= 0 && row < m_tabs.size()) {
        m_tabs.removeAt(row);
        refreshList();
    }
}

void WPTabStopsDialog::clearAll()
{
    m_tabs.clear();
    refreshList();
}

void WPTabStopsDialog::refreshList()
{
    m_list->clear();
    for (const QTextOption::Tab& tab : m_tabs) {
        m_list->addItem(QStringLiteral("%1 cm  %2")
                            .arg(tab.position / kPixelsPerCm, 0, 'f', 2)
                            .arg(kindName(tab.type)));
    }
}

} // namespace kestrum::text
