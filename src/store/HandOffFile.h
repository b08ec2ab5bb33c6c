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

// What identifies one writing of a hand-off file (inode, size, modification and change times
// to the nanosecond). The intake deletes the file only when it is still the one it read, so
// that a hand-off written while pages were being taken in is not lost.
struct Stamp
{
    quint64 inode = 0;
    qint64 size = -1;
    qint64 modifiedNs = 0;
    qint64 changedNs = 0;
    bool operator==(const Stamp&) const = default;
};
Stamp stamp(const QString& path);

} // namespace HandOffFile
} // namespace kestrum::store
