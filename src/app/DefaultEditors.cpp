#include "DefaultEditors.h"

#include "editors/grid/TRMGridEditor.h"

namespace kestrum::app {

EditorFactories defaultEditorFactories()
{
    EditorFactories factories;
    factories.make[std::size_t(store::EditorKind::Grid)] = [](QWidget* parent) -> EditorPanel* {
        return new grid::TRMGridEditor(parent);
    };
    return factories;
}

} // namespace kestrum::app
