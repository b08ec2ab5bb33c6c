#include "DefaultEditors.h"

#include "editors/grid/TRMGridEditor.h"
#include "editors/text/TRMWPEditor.h"

namespace kestrum::app {

EditorFactories defaultEditorFactories()
{
    EditorFactories factories;
    factories.make[std::size_t(store::EditorKind::Text)] = [](QWidget* parent) -> ui::EditorPanel* {
        return new text::TRMWPEditor(parent);
    };
    factories.make[std::size_t(store::EditorKind::Grid)] = [](QWidget* parent) -> ui::EditorPanel* {
        return new grid::TRMGridEditor(parent);
    };
    return factories;
}

} // namespace kestrum::app
