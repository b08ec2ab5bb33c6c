// One Kestrum at a time: a second start hands its file to the first.

#include "app/SingleInstance.h"

#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <thread>

using kestrum::app::SingleInstance;

class SingleInstanceTest : public QObject
{
    Q_OBJECT
private slots:
    void secondStartHandsItsFileOver();
    void handlerRunningItsOwnLoopSurvivesTheNextStart();
};

void SingleInstanceTest::secondStartHandsItsFileOver()
{
    const QString key = QStringLiteral("KestrumTest-%1").arg(QCoreApplication::applicationPid());
    SingleInstance first(key);
    QVERIFY(first.claim());
    QSignalSpy received(&first, &SingleInstance::filesReceived);

    SingleInstance second(key);
    QVERIFY(!second.claim());
    // The second start blocks while it hands over; the first answers from its event loop.
    std::atomic<int> handed{-1};
    std::thread starter(
        [&] { handed = second.handOver({QStringLiteral("/reports/Study.kst")}) ? 1 : 0; });
    QTRY_COMPARE_WITH_TIMEOUT(received.count(), 1, 5000);
    starter.join();
    QCOMPARE(handed.load(), 1);
    QCOMPARE(received.at(0).at(0).toStringList(), QStringList({"/reports/Study.kst"}));
}

void SingleInstanceTest::handlerRunningItsOwnLoopSurvivesTheNextStart()
{
    // The window answers a hand-over with a message box (a nested event loop) in which the
    // second start has already disconnected; then a third start hands over again.
    const QString key = QStringLiteral("KestrumNest-%1").arg(QCoreApplication::applicationPid());
    SingleInstance first(key);
    QVERIFY(first.claim());
    QStringList opened;
    connect(&first, &SingleInstance::filesReceived, this, [&](const QStringList& files) {
        opened << files;
        QEventLoop messageBox;
        QTimer::singleShot(300, &messageBox, &QEventLoop::quit);
        messageBox.exec();
    });
    for (const QString& file : {QStringLiteral("/r/empty.kst"), QStringLiteral("/r/b.kst")}) {
        SingleInstance next(key);
        std::atomic<int> handed{-1};
        std::thread starter([&] { handed = next.handOver({file}) ? 1 : 0; });
        QTRY_VERIFY_WITH_TIMEOUT(handed.load() != -1, 5000);
        starter.join();
        QCOMPARE(handed.load(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(opened.contains(file), 5000);
    }
    QCOMPARE(opened, QStringList({"/r/empty.kst", "/r/b.kst"}));
}

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
