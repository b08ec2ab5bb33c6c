// Pictures of the main window for looking at it: `WindowShots PROJECT OUTDIR` writes a PNG
// per outline node, shown as a click would show it.
// Not a test: run it by hand, with or without a display.

#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/TKestrumM.h"
#include "store/OutlineModel.h"
#include "store/TRMData.h"

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QScreen>
#include <QTimer>

using namespace kestrum;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    if (argc < 3) {
        qWarning("usage: WindowShots PROJECT OUTDIR");
        return 2;
    }
    const QString project = QString::fromLocal8Bit(argv[1]);
    const QDir out(QString::fromLocal8Bit(argv[2]));
    QDir().mkpath(out.path());

    app::TKestrumM::Options options;
    options.settingsPath = out.filePath(QStringLiteral("Kestrum.INI"));
    options.pollHandOff = false;
    options.restoreLayout = false;
    app::TKestrumM window(std::move(options));
    window.resize(1280, 800);
    window.show();
    if (!window.openProject(project)) {
        return 1;
    }
    auto shot = [&](const QString& name) {
        QApplication::processEvents();
        window.grab().save(out.filePath(name + QStringLiteral(".png")));
    };
    auto selectCaption = [&](auto predicate) {
        for (store::OutlineNode* node : window.data().outline().nodesInOrder()) {
            if (predicate(node)) {
                window.outlineView()->setCurrentIndex(window.outlineModel()->indexFor(node));
                return true;
            }
        }
        return false;
    };
    shot(QStringLiteral("opened"));
    const int count = window.data().outline().count();
    for (int i = 0; i < count; ++i) {
        const store::OutlineNode* wanted = window.data().outline().nodeAt(i);
        selectCaption([wanted](const store::OutlineNode* n) { return n == wanted; });
        shot(QStringLiteral("node-%1").arg(i, 2, 10, QLatin1Char('0')));
    }
    return 0;
}
