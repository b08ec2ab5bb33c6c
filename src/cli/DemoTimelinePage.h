#pragma once

#include <QByteArray>

namespace kestrum::cli {

// The demo report's timeline page: the study's milestones from the office move to the survey,
// as the host hands a timeline over (page text, with link records).
QByteArray demoTimelineContent();

} // namespace kestrum::cli
