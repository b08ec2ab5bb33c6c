// One Kestrum at a time: a second start hands its file to the first.

#include "app/SingleInstance.h"

#include <QLocalSocket>
#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <thread>

#include <unistd.h>

using kestrum::app::SingleInstance;

#if defined(__SANITIZE_ADDRESS__)
// Freed memory is overwritten, so that the uninstrumented Qt code that runs on in an object
// deleted beneath it (a socket gone while its signal is still being emitted) reads garbage and
// stops, instead of reading what the object held before.
extern "C" const char* __asan_default_options()
{
    return "max_free_fill_size=4096:free_fill_byte=190";
}
#endif

class SingleInstanceTest : public QObject
{
    Q_OBJECT
private slots:
    void secondStartHandsItsFileOver();
    void handlerRunningItsOwnLoopSurvivesTheNextStart();
    void startThatLeavesAtOnceWhileTheHandlerRunsALoop();
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

void SingleInstanceTest::startThatLeavesAtOnceWhileTheHandlerRunsALoop()
{
    // A second start writes its file and is gone before the window has answered; the window
    // opens the file with a message box (a nested event loop), in which the connection ends and
    // its socket is deleted. Nothing of that socket may still be running below the handler.
    const QString key = QStringLiteral("KestrumGone-%1").arg(QCoreApplication::applicationPid());
    SingleInstance first(key);
    QVERIFY(first.claim());
    QStringList opened;
    connect(&first, &SingleInstance::filesReceived, this, [&](const QStringList& files) {
        opened << files;
        // The message box stays up until the connection's socket has gone (if it is still
        // there), and a moment longer.
        QEventLoop messageBox;
        for (QLocalSocket* socket : first.findChildren<QLocalSocket*>()) {
            connect(socket, &QObject::destroyed, &messageBox,
                    [&] { QTimer::singleShot(50, &messageBox, &QEventLoop::quit); });
        }
        QTimer::singleShot(first.findChildren<QLocalSocket*>().isEmpty() ? 50 : 3000, &messageBox,
                           &QEventLoop::quit);
        messageBox.exec();
    });

    QLocalSocket second;
    second.connectToServer(QStringLiteral("%1-%2").arg(key).arg(getuid()));
    QVERIFY(second.waitForConnected(2000));
    second.write("/reports/Gone.kst\n");
    QVERIFY(second.waitForBytesWritten(2000));
    second.abort();

    QTRY_COMPARE_WITH_TIMEOUT(opened, QStringList({"/reports/Gone.kst"}), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(first.findChildren<QLocalSocket*>().isEmpty(), 5000);
    // The window goes on: events still run and a later start is still heard.
    QTest::qWait(50);
    SingleInstance third(key);
    std::atomic<int> handed{-1};
    std::thread starter(
        [&] { handed = third.handOver({QStringLiteral("/reports/Next.kst")}) ? 1 : 0; });
    QTRY_VERIFY_WITH_TIMEOUT(handed.load() != -1, 5000);
    starter.join();
    QCOMPARE(handed.load(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(opened.size(), 2, 5000);
}

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
