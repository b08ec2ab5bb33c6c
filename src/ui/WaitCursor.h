#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace kestrum::ui {

// The wait cursor for the lifetime of a scope (long work on the interface thread).
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace kestrum::ui
