#pragma once

#include <QDialog>
#include <QList>
#include <QTextOption>

class QComboBox;
class QDoubleSpinBox;
class QListWidget;

namespace kestrum::text {

// The tab stops of the selected paragraphs: positions in centimetres from the paragraph's
// frame, each left, right, centred or decimal.
class WPTabStopsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WPTabStopsDialog(QWidget* parent = nullptr);

    void setTabs(const QList<QTextOption::Tab>& tabs);
    QList<QTextOption::Tab> tabs() const { return m_tabs; }

    // What the buttons do.
    void setTab();
    void clearTab();
    void clearAll();

private:
    void refreshList();

    QList<QTextOption::Tab> m_tabs;
    QListWidget* m_list;
    QDoubleSpinBox* m_position;
    QComboBox* m_kind;
};

} // namespace kestrum::text
