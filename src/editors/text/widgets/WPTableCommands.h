#pragma once

class QString;
class QWidget;

namespace kestrum::text {

class WPView;

// The table and border commands of the text page, on the view's caret or selection.
class WPTableCommands
{
public:
    explicit WPTableCommands(WPView* view) : m_view(view) {}

    // "Create Table": asks for the table's size, then inserts it at the caret.
    void createTable(QWidget* parent, const QString& title);
    void insertRow();
    void insertColumn();
    void deleteRow();
    void deleteColumn();
    void selectRow();
    void selectColumn();
    // Turns the borders on `sides` (BorderSide bits) on where they are off, and off where on.
    void toggleBorders(int sides);
    // "Switch Borders On" / "Switch Borders Off": every side.
    void switchBorders(bool on);

private:
    WPView* m_view;
};

} // namespace kestrum::text
