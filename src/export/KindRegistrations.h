#pragma once

#include "export/PageExports.h"

namespace kestrum::exports {

// Each page kind's registration, written in its own file of this folder.
CorePageKind textPageKind();
CorePageKind gridPageKind();
CorePageKind chartPageKind();
CorePageKind imagePageKind();
CorePageKind timelinePageKind();
CorePageKind diagramPageKind();
CorePageKind wordCloudPageKind();

} // namespace kestrum::exports
