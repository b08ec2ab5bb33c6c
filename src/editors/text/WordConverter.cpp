#include "WordConverter.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

namespace kestrum::text {

namespace {

constexpr qint64 kMaxRtfBytes = qint64(512) * 1024 * 1024;

} // namespace

WordConverter::WordConverter(WordConverterOptions options) : m_options(std::move(options)) {}

QString WordConverter::program() const
{
    QString wanted = m_options.program;
    if (wanted.isEmpty()) {
        wanted = qEnvironmentVariable("KESTRUM_SOFFICE");
    }
    if (!wanted.isEmpty()) {
        const QFileInfo info(wanted);
        if (info.isAbsolute() || wanted.contains(QLatin1Char('/'))) {
            return info.isFile() && info.isExecutable() ? info.absoluteFilePath() : QString();
        }
        return QStandardPaths::findExecutable(wanted);
    }
    for (const QString& name : {QStringLiteral("soffice"), QStringLiteral("libreoffice")}) {
        const QString found = QStandardPaths::findExecutable(name);
        if (!found.isEmpty()) {
            return found;
        }
    }
    const QString bundled = QStandardPaths::findExecutable(
        QStringLiteral("soffice"), {QStringLiteral("/usr/lib/libreoffice/program"),
                                    QStringLiteral("/opt/libreoffice/program")});
    return bundled;
}

Result<QByteArray> WordConverter::convertToRtf(const QString& sourceFile) const
{
    const QFileInfo source(sourceFile);
    const QString name = source.fileName();
    if (!source.isFile()) {
        return fail(QStringLiteral("Cannot read \"%1\": the file does not exist.").arg(name));
    }
    if (source.size() > kMaxSourceBytes) {
        return fail(QStringLiteral("Cannot read \"%1\": the file is larger than %2 MB.")
                        .arg(name)
                        .arg(kMaxSourceBytes / (1024 * 1024)));
    }
    const QString converter = program();
    if (converter.isEmpty()) {
        return fail(QStringLiteral("Cannot read \"%1\": no word-processor converter is installed. "
                                   "Install LibreOffice to read DOC, WPD and HTML files.")
                        .arg(name));
    }

    QTemporaryDir work(QDir::tempPath() + QStringLiteral("/kestrum-convert-XXXXXX"));
    if (!work.isValid()) {
        return fail(QStringLiteral("Cannot read \"%1\": no temporary folder (%2).")
                        .arg(name, work.errorString()));
    }
    // A plain copy of the source: odd file names and lock files stay out of the user's folder.
    QString suffix = source.suffix().toLower();
    if (suffix.isEmpty()) {
        suffix = QStringLiteral("doc");
    }
    const QString input = work.filePath(QStringLiteral("document.") + suffix);
    if (!QFile::copy(sourceFile, input)) {
        return fail(
            QStringLiteral("Cannot read \"%1\": it cannot be copied for conversion.").arg(name));
    }
    const QString outDir = work.filePath(QStringLiteral("out"));
    QDir().mkpath(outDir);
    const QString profile =
        QUrl::fromLocalFile(work.filePath(QStringLiteral("profile"))).toString();

    QProcess process;
    process.setProgram(converter);
    process.setArguments({QStringLiteral("-env:UserInstallation=") + profile,
                          QStringLiteral("--headless"), QStringLiteral("--norestore"),
                          QStringLiteral("--convert-to"), QStringLiteral("rtf:Rich Text Format"),
                          QStringLiteral("--outdir"), outDir, input});
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(work.path());
    process.start();
    if (!process.waitForStarted(10000)) {
        return fail(QStringLiteral("Cannot read \"%1\": the converter did not start (%2).")
                        .arg(name, process.errorString()));
    }
    QElapsedTimer timer;
    timer.start();
    while (!process.waitForFinished(50)) {
        if (process.state() == QProcess::NotRunning) {
            break;
        }
        if (timer.elapsed() > m_options.timeoutMs) {
            process.kill();
            process.waitForFinished(5000);
            return fail(QStringLiteral(
                            "Cannot read \"%1\": the converter did not finish within %2 seconds.")
                            .arg(name)
                            .arg(m_options.timeoutMs / 1000));
        }
        if (m_options.idle) {
            m_options.idle();
        }
    }
    const QByteArray output = process.readAll().left(2000);
    const QString result = QDir(outDir).filePath(QStringLiteral("document.rtf"));
    QFile file(result);
    if (process.exitStatus() != QProcess::NormalExit || !file.exists()) {
        const QString detail = QString::fromLocal8Bit(output).trimmed();
        return fail(QStringLiteral("Cannot read \"%1\": the converter could not read it%2")
                        .arg(name, detail.isEmpty()
                                       ? QStringLiteral(".")
                                       : QStringLiteral(" (") + detail + QStringLiteral(").")));
    }
    if (file.size() > kMaxRtfBytes || !file.open(QIODevice::ReadOnly)) {
        return fail(
            QStringLiteral("Cannot read \"%1\": the converted document cannot be read.").arg(name));
    }
    return file.readAll();
}

} // namespace kestrum::text
