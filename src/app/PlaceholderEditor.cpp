#include "PlaceholderEditor.h"

#include "app/Icons.h"

#include <QAction>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::app {

namespace {

qint32 iconKind(store::EditorKind kind)
{
    switch (kind) {
    case store::EditorKind::Text:
        return store::PageType::Text;
    case store::EditorKind::Grid:
        return store::PageType::Grid;
    case store::EditorKind::Chart:
        return store::PageType::Chart;
    case store::EditorKind::Image:
        return store::PageType::Image;
    case store::EditorKind::Timeline:
        return store::PageType::Timeline;
    case store::EditorKind::Diagram:
        return store::PageType::Diagram;
    case store::EditorKind::WordCloud:
        return store::PageType::WordCloud;
    case store::EditorKind::None:
        break;
    }
    return -1;
}

} // namespace

PlaceholderEditor::PlaceholderEditor(store::EditorKind kind, QWidget* parent)
    : EditorPanel(parent), m_document(kind)
{
    setObjectName(QStringLiteral("Placeholder%1").arg(int(kind)));
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(2);
    auto* icon = new QLabel(this);
    icon->setPixmap(Icons::forPageKind(iconKind(kind)).pixmap(64, 64));
    icon->setAlignment(Qt::AlignCenter);
    layout->addWidget(icon);
    m_title = new QLabel(this);
    m_title->setAlignment(Qt::AlignCenter);
    QFont big = m_title->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    m_title->setFont(big);
    m_title->setText(tr("%1 page").arg(kindTitle()));
    layout->addWidget(m_title);
    m_detail = new QLabel(this);
    m_detail->setAlignment(Qt::AlignCenter);
    m_detail->setWordWrap(true);
    m_detail->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(m_detail);
    layout->addStretch(3);
    connect(&m_document, &store::PageDocument::contentChanged, this, &PlaceholderEditor::refresh);
    connect(&m_document, &store::PageDocument::contentReset, this, &PlaceholderEditor::refresh);
    refresh();
}

QString PlaceholderEditor::kindTitle() const
{
    const QString name = store::editorKindName(m_document.kind());
    return name.left(1).toUpper() + name.mid(1);
}

void PlaceholderEditor::populateToolBar(QToolBar* toolBar)
{
    QAction* label =
        toolBar->addAction(Icons::forPageKind(iconKind(m_document.kind())),
                           tr("%1 page: no editing tools in this version").arg(kindTitle()));
    label->setEnabled(false);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
}

void PlaceholderEditor::populateMenu(QMenu* menu)
{
    menu->addAction(
            tr("No %1 commands in this version").arg(store::editorKindName(m_document.kind())))
        ->setEnabled(false);
}

void PlaceholderEditor::refresh()
{
    m_detail->setText(
        tr("This version of Kestrum cannot edit %1 pages yet.\nThe page's content (%2) "
           "is kept exactly as it was handed over.")
            .arg(store::editorKindName(m_document.kind()),
                 QLocale().formattedDataSize(m_document.bytes().size())));
}

} // namespace kestrum::app
