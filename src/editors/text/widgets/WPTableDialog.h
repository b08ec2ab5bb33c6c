#pragma once

#include <QDialog>

class QSpinBox;

namespace kestrum::text {

// A new table: rows, columns, border width and cell padding (pixels).
class WPTableDialog : public QDialog
{
    Q_OBJECT
public:
    struct Table
    {
        int rows = 2;
        int columns = 3;
        int border = 1;
        int padding = 4;
    };

    explicit WPTableDialog(QWidget* parent = nullptr);

    void setTable(const Table& table);
    Table table() const;

private:
    QSpinBox* m_rows;
    QSpinBox* m_columns;
    QSpinBox* m_border;
    QSpinBox* m_padding;
};

} // namespace kestrum::text
