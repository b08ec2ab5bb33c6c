// The main window's widgets: building the outline and the right panel, wiring them to the store,
// and keeping their layout in the settings.

#include "TKestrumM.h"

#include "app/AppSettings.h"
#include "app/EditorArea.h"
#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/PageDisplay.h"
#include "store/OutlineModel.h"
#include "store/TRMData.h"
#include "ui/Dialogs.h"

#include <QLabel>
#include <QMenu>
#include <QPalette>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::app {

using store::OutlineNode;

// ---- construction ------------------------------------------------------------------------------

void TKestrumM::buildCentralArea()
{
    m_model = new OutlineItemModel(m_data->outline(), this);
    auto* left = new QWidget(this);
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(0);
    m_outlineBar = new QToolBar(QStringLiteral("Outline"), left);
    m_outlineBar->setObjectName(QStringLiteral("OutlineBar"));
    m_outlineBar->setIconSize(QSize(18, 18));
    leftLayout->addWidget(m_outlineBar);
    m_tree = new OutlineView(left);
    m_tree->setObjectName(QStringLiteral("MainTree"));
    m_tree->setOutlineModel(m_model);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    leftLayout->addWidget(m_tree);

    auto* commentBox = new QWidget(this);
    auto* commentLayout = new QVBoxLayout(commentBox);
    commentLayout->setContentsMargins(6, 4, 6, 6);
    commentLayout->setSpacing(2);
    auto* commentLabel = new QLabel(QStringLiteral("Comment"), commentBox);
    QFont labelFont = commentLabel->font();
    labelFont.setBold(true);
    commentLabel->setFont(labelFont);
    commentLayout->addWidget(commentLabel);
    m_comment = new QPlainTextEdit(commentBox);
    m_comment->setObjectName(QStringLiteral("Comment"));
    m_comment->setPlaceholderText(QStringLiteral("Notes on this page"));
    // Off (folders, no project) it looks off: the window's grey behind grey text, not the
    // white of a field that only refuses typing.
    QPalette commentColours = m_comment->palette();
    commentColours.setColor(QPalette::Disabled, QPalette::Base,
                            commentColours.color(QPalette::Active, QPalette::Window));
    commentColours.setColor(QPalette::Disabled, QPalette::PlaceholderText, Qt::transparent);
    m_comment->setPalette(commentColours);
    commentLayout->addWidget(m_comment);

    m_editorContainer = new QWidget(this);
    m_editorContainer->setObjectName(QStringLiteral("EditorArea"));
    m_rightSplitter = new QSplitter(Qt::Vertical, this);
    m_rightSplitter->addWidget(m_editorContainer);
    m_rightSplitter->addWidget(commentBox);
    m_rightSplitter->setStretchFactor(0, 1);
    m_rightSplitter->setStretchFactor(1, 0);
    m_rightSplitter->setCollapsible(0, false);

    m_mainSplitter = new QSplitter(Qt::Horizontal, this);
    m_mainSplitter->addWidget(left);
    m_mainSplitter->addWidget(m_rightSplitter);
    m_mainSplitter->setStretchFactor(0, 0);
    m_mainSplitter->setStretchFactor(1, 1);
    m_mainSplitter->setSizes({300, 900});
    m_rightSplitter->setSizes({600, 140});
    setCentralWidget(m_mainSplitter);

    m_position = new QLabel(this);
    m_position->setObjectName(QStringLiteral("PositionPanel"));
    m_position->setMinimumWidth(70);
    statusBar()->addWidget(m_position);
    m_readOnlyLabel = new QLabel(this);
    m_readOnlyLabel->setObjectName(QStringLiteral("ReadOnlyPanel"));
    m_readOnlyLabel->hide();
    statusBar()->addPermanentWidget(m_readOnlyLabel);

    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (m_syncingSelection) {
                    return;
                }
                OutlineNode* node = m_model->nodeFor(current);
                if (node && node != m_data->outline().selected()) {
                    m_data->outline().setSelected(node);
                    ShowNode();
                }
            });
    connect(m_tree, &OutlineView::nodeDropped, this, &TKestrumM::MainTreeDragDrop);
    connect(m_tree, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        m_data->outline().setExpanded(m_model->nodeFor(index), true);
    });
    connect(m_tree, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        m_data->outline().setExpanded(m_model->nodeFor(index), false);
    });
    connect(m_tree, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        if (!m_data->isOpen()) {
            return;
        }
        if (OutlineNode* node = m_tree->nodeAt(pos); node && node != m_data->outline().selected()) {
            selectAndShow(node);
        }
        NodeOrderClick();
        m_contextMenu->popup(m_tree->viewport()->mapToGlobal(pos));
    });
}

void TKestrumM::connectStore()
{
    store::TRMData& data = *m_data;
    connect(&data, &store::TRMData::titleChanged, this,
            [this](const QString& title) { setWindowTitle(title); });
    connect(&data, &store::TRMData::aboutToClose, this, [this] {
        // The page on screen is written back before the project goes.
        if (m_display->contentModified() || m_display->commentModified()) {
            m_display->SaveModif();
        }
    });
    connect(&data, &store::TRMData::outlineLoaded, m_editors, &EditorArea::hideEditorMenus);
    connect(&data, &store::TRMData::selectionRestored, this, &TKestrumM::ShowNode);
    connect(&data, &store::TRMData::outlineSaved, this, &TKestrumM::CheckButtons);
    connect(&data, &store::TRMData::warning, this, [this](const QString& message) {
        if (m_inCommand) {
            ui::dialogs().warning(this, message);
        } else {
            statusBar()->showMessage(message, 10000);
        }
    });
    connect(&data.outline(), &store::OutlineModel::selectionChanged, this,
            &TKestrumM::syncSelectionToView);
    connect(&data.outline(), &store::OutlineModel::modelReset, this, &TKestrumM::syncExpansion);
    connect(&data.outline(), &store::OutlineModel::nodeChanged, this, [this](OutlineNode* node) {
        const QModelIndex index = m_model->indexFor(node);
        if (m_tree->isExpanded(index) != node->fields().expanded) {
            m_tree->setExpanded(index, node->fields().expanded);
        }
    });
}

// ---- layout ------------------------------------------------------------------------------------

void TKestrumM::restoreLayout()
{
    const AppSettings::Layout l = m_settings->layout();
    const QRect available = screen() ? screen()->availableGeometry() : QRect(0, 0, 1400, 900);
    if (l.geometry.width() > 200 && l.geometry.height() > 150 && available.intersects(l.geometry)) {
        setGeometry(l.geometry);
    } else {
        resize(qMin(1280, available.width()), qMin(800, available.height()));
    }
    if (l.leftPanelWidth > 50) {
        m_mainSplitter->setSizes({l.leftPanelWidth, qMax(200, width() - l.leftPanelWidth)});
    }
    if (l.commentHeight > 20) {
        m_rightSplitter->setSizes({qMax(100, height() - l.commentHeight), l.commentHeight});
    }
    if (l.state == 2) {
        setWindowState(Qt::WindowMaximized);
    }
}

void TKestrumM::saveLayout()
{
    AppSettings::Layout l;
    l.state = isMaximized() ? 2 : (isMinimized() ? 1 : 0);
    l.geometry = normalGeometry().isValid() ? normalGeometry() : geometry();
    l.leftPanelWidth = m_mainSplitter->sizes().value(0);
    l.commentHeight = m_rightSplitter->sizes().value(1);
    m_settings->setLayout(l);
    m_settings->save();
}

} // namespace kestrum::app
