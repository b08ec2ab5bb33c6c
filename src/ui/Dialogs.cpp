#include "Dialogs.h"

#include "ui/QtDialogs.h"

namespace kestrum::ui {

namespace {
Dialogs* g_installed = nullptr;
} // namespace

Dialogs::~Dialogs() = default;

Dialogs& dialogs()
{
    static QtDialogs real;
    return g_installed ? *g_installed : real;
}

void setDialogs(Dialogs* dialogs)
{
    g_installed = dialogs;
}

QString joinFilters(const QStringList& filters)
{
    return filters.join(QStringLiteral(";;"));
}

} // namespace kestrum::ui
