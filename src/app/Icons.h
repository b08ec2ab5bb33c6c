#pragma once

#include <QIcon>

namespace kestrum::app {

// The program's icon set (SVG resources).
namespace Icons {
// The outline icon of a page kind (image index).
QIcon forPageKind(qint32 imageIndex);
// A command icon by name: "new", "import", "delete", "up", "down", "promote", "demote", "keep",
// "rename", "colour", "expand", "collapse", "open", "newproject".
QIcon command(const char* name);
} // namespace Icons

} // namespace kestrum::app
