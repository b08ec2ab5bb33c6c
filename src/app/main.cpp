// kestrum: the desktop organiser of analysis reports.

#include "app/AppSettings.h"
#include "app/SingleInstance.h"
#include "app/TKestrumM.h"

#include <QApplication>
#include <QFileInfo>
#include <QStyleFactory>

using namespace kestrum::app;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrum"));
    QApplication::setOrganizationName(QStringLiteral("Ondrel Research"));
    QApplication::setApplicationVersion(QStringLiteral(KESTRUM_VERSION));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    QStringList files = QApplication::arguments().mid(1);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const QString& f) { return f.startsWith(QLatin1Char('-')); }),
                files.end());

    // One Kestrum at a time: a second start hands its file to the running one.
    SingleInstance instance(QStringLiteral("Kestrum"));
    if (!instance.claim()) {
        if (instance.handOver(files)) {
            return 0;
        }
        // The running instance does not answer: go on as the only one.
    }

    TKestrumM::Options options;
    TKestrumM window(std::move(options));
    QObject::connect(
        &instance, &SingleInstance::filesReceived, &window, [&window](const QStringList& received) {
            if (!received.isEmpty()) {
                window.openProject(received.first());
            }
            window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
            window.raise();
            window.activateWindow();
        });
    window.show();

    const QString first = !files.isEmpty() ? files.first() : window.settings().lastProject();
    if (!first.isEmpty() && QFileInfo::exists(first)) {
        window.openProject(first);
    }
    return QApplication::exec();
}
