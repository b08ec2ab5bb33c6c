#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace kestrum::text {

// The files of an OpenDocument package (a zip archive), in their order. Qt's document writer
// only writes whole packages; this lets the exporter take one apart, change a file and put it
// back together.
class OdtPackage
{
public:
    struct Entry
    {
        QString name;
        QByteArray data;
    };

    // The files of the package in `bytes` with their uncompressed contents; an error when the
    // bytes are not a readable zip archive.
    static Result<QList<Entry>> read(const QByteArray& bytes);
    // A package of `entries` in their order: "mimetype" stored uncompressed (as the format
    // requires of the first file), the others compressed where that makes them smaller.
    static QByteArray write(const QList<Entry>& entries);
};

} // namespace kestrum::text
