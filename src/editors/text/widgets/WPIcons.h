#pragma once

#include <QIcon>
#include <QString>

namespace kestrum::text {

// Icons of the editor's toolbar actions: the desktop theme's where it has one, else drawn.
class WPIcons
{
public:
    // Names: "bold", "italic", "underline", "strike", "subscript", "superscript", "left",
    // "center", "right", "justify", "bullets", "numbers", "outdent", "indent", "undo", "redo",
    // "cut", "copy", "paste", "table", "print", "find".
    static QIcon icon(const QString& name);
};

} // namespace kestrum::text
