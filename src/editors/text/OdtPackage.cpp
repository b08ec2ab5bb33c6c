#include "OdtPackage.h"

#include <QBuffer>

// Qt has no public zip API; its own private reader and writer are the ones its document writer
// packs OpenDocument files with. They are used here only, so that the rest of the text library
// keeps to Qt's public API.
#include <QtGui/private/qzipreader_p.h>
#include <QtGui/private/qzipwriter_p.h>

namespace kestrum::text {

Result<QList<OdtPackage::Entry>> OdtPackage::read(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QZipReader reader(&buffer);
    if (!reader.isReadable() || reader.status() != QZipReader::NoError) {
        return fail(QStringLiteral("The OpenDocument package cannot be read."));
    }
    QList<Entry> entries;
    for (const QZipReader::FileInfo& info : reader.fileInfoList()) {
        if (!info.isFile) {
            continue;
        }
        Entry entry{info.filePath, reader.fileData(info.filePath)};
        if (reader.status() != QZipReader::NoError || entry.data.size() != info.size) {
            return fail(
                QStringLiteral("The file \"%1\" of the OpenDocument package cannot be read.")
                    .arg(info.filePath));
        }
        entries.append(std::move(entry));
    }
    if (entries.isEmpty()) {
        return fail(QStringLiteral("The OpenDocument package holds no files."));
    }
    return entries;
}

QByteArray OdtPackage::write(const QList<Entry>& entries)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QZipWriter writer(&buffer);
        for (const Entry& entry : entries) {
            writer.setCompressionPolicy(entry.name == QLatin1String("mimetype")
                                            ? QZipWriter::NeverCompress
                                            : QZipWriter::AutoCompress);
            writer.addFile(entry.name, entry.data);
        }
        writer.close();
    }
    return bytes;
}

} // namespace kestrum::text
