#include "OverviewPanel.h"

#include "app/Icons.h"
#include "store/OutlineNode.h"
#include "store/PageType.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrum::app {

OverviewPanel::OverviewPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("OverviewPanel"));
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(2);
    m_icon = new QLabel(this);
    m_icon->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_icon);
    m_title = new QLabel(this);
    m_title->setAlignment(Qt::AlignCenter);
    QFont big = m_title->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    big.setBold(true);
    m_title->setFont(big);
    m_title->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_title);
    m_detail = new QLabel(this);
    m_detail->setAlignment(Qt::AlignCenter);
    m_detail->setWordWrap(true);
    m_detail->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(m_detail);
    m_buttons = new QWidget(this);
    auto* row = new QHBoxLayout(m_buttons);
    row->addStretch();
    auto* create = new QPushButton(Icons::command("newproject"), tr("New project..."), m_buttons);
    auto* open = new QPushButton(Icons::command("open"), tr("Open project..."), m_buttons);
    row->addWidget(create);
    row->addWidget(open);
    row->addStretch();
    connect(create, &QPushButton::clicked, this, &OverviewPanel::newProjectRequested);
    connect(open, &QPushButton::clicked, this, &OverviewPanel::openProjectRequested);
    layout->addWidget(m_buttons);
    layout->addStretch(3);
    connect(m_detail, &QLabel::linkActivated, this, &OverviewPanel::recentProjectRequested);
}

void OverviewPanel::showNode(const store::OutlineNode* node)
{
    m_buttons->hide();
    m_detail->setTextFormat(Qt::PlainText);
    m_title->setTextFormat(Qt::PlainText);
    if (!node) {
        m_icon->clear();
        m_title->clear();
        m_detail->clear();
        return;
    }
    m_icon->setPixmap(Icons::forPageKind(node->imageIndex()).pixmap(72, 72));
    m_title->setText(node->caption().isEmpty() ? tr("(untitled)") : node->caption());
    int pages = 0;
    int folders = 0;
    store::visitInOrder(node, [&](const store::OutlineNode* n, int) {
        if (n == node) {
            return;
        }
        (n->imageIndex() == store::PageType::Folder ? folders : pages)++;
    });
    QString detail;
    if (node->imageIndex() == store::PageType::Folder || !node->parent()) {
        const QString pageCount = pages == 1 ? tr("1 page") : tr("%1 pages").arg(pages);
        const QString folderCount =
            folders == 1 ? tr(" in 1 folder") : tr(" in %1 folders").arg(folders);
        const bool empty = pages == 0 && folders == 0;
        if (!node->parent()) {
            detail = empty ? tr("This report is empty. Use Items > New... or Import files... to "
                                "add pages.")
                           : tr("Report with ") + pageCount + (folders ? folderCount : QString());
        } else {
            detail = empty ? tr("This folder is empty. Use Items > New... or Import files... to "
                                "add pages.")
                           : pageCount + (folders ? folderCount : QString());
        }
    } else {
        detail = tr("This kind of page has no editor.");
    }
    m_detail->setText(detail);
}

void OverviewPanel::showNoProject(const QStringList& recentProjects)
{
    m_icon->setPixmap(Icons::forPageKind(store::PageType::OutlineRoot).pixmap(72, 72));
    m_title->setText(tr("No project is open"));
    QString detail = tr("Create a new report project or open an existing one.");
    if (!recentProjects.isEmpty()) {
        detail += QStringLiteral("<br><br>") + tr("Recent projects:");
        for (const QString& path : recentProjects.mid(0, 5)) {
            detail += QStringLiteral("<br><a href=\"%1\">%2</a>")
                          .arg(path.toHtmlEscaped(), QFileInfo(path).fileName().toHtmlEscaped());
        }
    }
    m_detail->setTextFormat(Qt::RichText);
    m_detail->setText(detail);
    m_buttons->show();
}

} // namespace kestrum::app
