#include "DefaultEditors.h"

namespace kestrum::app {

EditorFactories defaultEditorFactories()
{
    EditorFactories factories;
    return factories;
}

} // namespace kestrum::app
