#pragma once

#include "editors/diagram/DiagramItems.h"

#include <QFont>

namespace kestrum::diagram {

// A diagram font as the font dialog shows it (points), and the dialog's answer back; the
// colour, which a QFont does not hold, is kept from `colour`.
QFont toDialogFont(const DiagramFont& font);
DiagramFont fromDialogFont(const QFont& font, common::TColor colour);

} // namespace kestrum::diagram
