#pragma once

#include "editors/grid/widgets/GridFindDialog.h"

namespace kestrum::grid {

// The grid's replace dialog ("Replace text"): find, replace the found text, or replace all.
class GridReplaceDialog : public GridFindDialog
{
    Q_OBJECT
public:
    explicit GridReplaceDialog(QWidget* parent = nullptr);

    QString replacement() const;
    void setReplacement(const QString& text);

signals:
    void replaceRequested();
    void replaceAllRequested();

private:
    QLineEdit* m_replacement = nullptr;
};

} // namespace kestrum::grid
