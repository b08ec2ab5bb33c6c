#pragma once

#include "app/EditorArea.h"

namespace kestrum::app {

// The editors of this build for each page kind (kinds without one show a placeholder).
EditorFactories defaultEditorFactories();

} // namespace kestrum::app
