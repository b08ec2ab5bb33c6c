#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace kestrum::store {
class OutlineNode;
}

namespace kestrum::app {

// What the right-hand side shows when no editor does: a folder or the project node with what
// it holds, or, with no project open, the way to open or create one.
class OverviewPanel : public QWidget
{
    Q_OBJECT
public:
    explicit OverviewPanel(QWidget* parent = nullptr);

    void showNode(const store::OutlineNode* node);
    void showNoProject(const QStringList& recentProjects);

signals:
    void newProjectRequested();
    void openProjectRequested();
    void recentProjectRequested(const QString& path);

private:
    QLabel* m_icon = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_detail = nullptr;
    QWidget* m_buttons = nullptr;
};

} // namespace kestrum::app
