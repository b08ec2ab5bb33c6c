#pragma once

#include "editors/grid/GridFinder.h"

#include <QDialog>

class QCheckBox;
class QFormLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace kestrum::grid {

// The grid's find dialog ("Find text"). "Find Next" searches without closing the dialog; the
// editor answers findNextRequested.
class GridFindDialog : public QDialog
{
    Q_OBJECT
public:
    explicit GridFindDialog(QWidget* parent = nullptr);

    QString text() const;
    void setText(const QString& text);
    GridFindOptions options() const;

    QPushButton* findNextButton() const { return m_findNext; }

signals:
    void findNextRequested();

protected:
    GridFindDialog(const QString& caption, QWidget* parent);
    QFormLayout* fields() const { return m_fields; }
    QVBoxLayout* buttons() const { return m_buttons; }
    QLineEdit* textEdit() const { return m_text; }

private:
    void build(const QString& caption);

    QLineEdit* m_text = nullptr;
    QCheckBox* m_matchCase = nullptr;
    QCheckBox* m_wholeCell = nullptr;
    QPushButton* m_findNext = nullptr;
    QFormLayout* m_fields = nullptr;
    QVBoxLayout* m_buttons = nullptr;
};

} // namespace kestrum::grid
