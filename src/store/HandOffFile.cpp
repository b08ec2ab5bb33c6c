#include "HandOffFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <sys/stat.h>

namespace kestrum::store::HandOffFile {

namespace {
constexpr qint64 kMaxFirstLineBytes = 64 * 1024;
} // namespace

QString nameFor(const QString& projectFile, bool lowerCaseSupTest)
{
    const QDir folder = QFileInfo(projectFile).absoluteDir();
    QString name;
    if (projectFile.contains(QLatin1String(".session"))) {
        name = folder.filePath(QStringLiteral("session.new"));
    }
    const QString supTest = lowerCaseSupTest ? projectFile.toLower() : projectFile;
    if (supTest.contains(QLatin1String(".sup"))) {
        name = folder.filePath(QStringLiteral("TLTree.new"));
    }
    return name;
}

QString readFirstLine(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray bytes = file.read(kMaxFirstLineBytes);
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes.remove(0, 3);
    }
    const qsizetype eol = bytes.indexOf('\n');
    if (eol >= 0) {
        bytes.truncate(eol);
    }
    if (bytes.endsWith('\r')) {
        bytes.chop(1);
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString line = utf8.decode(bytes);
    if (utf8.hasError()) {
        line = QString::fromLatin1(bytes); // a host writing its own 8-bit code page
    }
    return line;
}

Stamp stamp(const QString& path)
{
    struct stat info
    {};
    Stamp s;
    if (::stat(QFile::encodeName(path).constData(), &info) == 0) {
        s.inode = quint64(info.st_ino);
        s.size = qint64(info.st_size);
        s.modifiedNs = qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
        s.changedNs = qint64(info.st_ctim.tv_sec) * 1000000000 + info.st_ctim.tv_nsec;
    }
    return s;
}

} // namespace kestrum::store::HandOffFile
