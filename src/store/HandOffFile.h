#pragma once

#include <QString>

namespace kestrum::store {

// The small file a host program drops beside a project to say that it appended pages.
namespace HandOffFile {

// "session.new" beside a session project (".session" in its name, letter case as written),
// "TLTree.new" beside a kept-items project (".sup" in its name; lower-cased first when
// `lowerCaseSupTest`); the later test wins. Empty for any other project.
QString nameFor(const QString& projectFile, bool lowerCaseSupTest);

// The first line of a hand-off file (without its line break), read with a bound; empty when the
// file is empty or cannot be read.
QString readFirstLine(const QString& path);

} // namespace HandOffFile
} // namespace kestrum::store
