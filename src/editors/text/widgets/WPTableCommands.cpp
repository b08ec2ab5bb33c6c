#include "WPTableCommands.h"

#include "editors/text/TextEditCommands.h"
#include "editors/text/TextProperties.h"
#include "editors/text/widgets/WPTableDialog.h"
#include "editors/text/widgets/WPView.h"
#include "ui/Dialogs.h"

namespace kestrum::text {

void WPTableCommands::createTable(QWidget* parent, const QString& title)
{
    WPTableDialog dialog(parent);
    dialog.setWindowTitle(title);
    if (ui::dialogs().exec(&dialog) != QDialog::Accepted) {
        return;
    }
    const WPTableDialog::Table t = dialog.table();
    m_view->setTextCursor(TextEditCommands(m_view->textCursor())
                              .insertTable({t.rows, t.columns, t.border, t.padding}));
}

void WPTableCommands::insertRow()
{
    TextEditCommands(m_view->textCursor()).insertRow();
}

void WPTableCommands::insertColumn()
{
    TextEditCommands(m_view->textCursor()).insertColumn();
}

void WPTableCommands::deleteRow()
{
    TextEditCommands(m_view->textCursor()).deleteRow();
}

void WPTableCommands::deleteColumn()
{
    TextEditCommands(m_view->textCursor()).deleteColumn();
}

void WPTableCommands::selectRow()
{
    m_view->setTextCursor(TextEditCommands(m_view->textCursor()).rowSelection());
}

void WPTableCommands::selectColumn()
{
    m_view->setTextCursor(TextEditCommands(m_view->textCursor()).columnSelection());
}

void WPTableCommands::toggleBorders(int sides)
{
    TextEditCommands(m_view->textCursor())
        .setBorders(sides, TextEditCommands::BorderChange::Toggle);
    m_view->viewport()->update();
}

void WPTableCommands::switchBorders(bool on)
{
    TextEditCommands(m_view->textCursor())
        .setBorders(BorderSide::All,
                    on ? TextEditCommands::BorderChange::On : TextEditCommands::BorderChange::Off);
    m_view->viewport()->update();
}

} // namespace kestrum::text
