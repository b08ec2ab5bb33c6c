// The real dialogs behind ui::Dialogs open at a size the user can work with.

#include "ui/QtDialogs.h"

#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QFontMetrics>
#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QLocale>
#include <QScreen>
#include <QTimer>
#include <QTreeView>
#include <QtTest>

#include <functional>

using kestrum::ui::Dialogs;
using kestrum::ui::QtDialogs;

class QtDialogsTest : public QObject
{
    Q_OBJECT
private slots:
    void editTitleBoxIsWideEnoughForALongTitle();
    void fileDialogsOpenAtAUsefulSize();

private:
    // Runs `look` on the modal dialog once it is up; `look` closes it.
    static void whenModal(std::function<void(QWidget*)> look);
};

void QtDialogsTest::whenModal(std::function<void(QWidget*)> look)
{
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, look] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            poll->stop();
            poll->deleteLater();
            look(dialog);
        }
    });
    poll->start(10);
}

void QtDialogsTest::editTitleBoxIsWideEnoughForALongTitle()
{
    QtDialogs dialogs;
    QWidget parent;
    parent.resize(300, 200);
    const QFontMetrics metrics(parent.font());
    const int screenWidth = QGuiApplication::primaryScreen()->availableGeometry().width();

    // A short title still gets a box of 80 characters; OK hands the edited text back.
    int width = 0;
    QString shown;
    whenModal([&](QWidget* dialog) {
        auto* edit = dialog->findChild<QLineEdit*>();
        QVERIFY(edit);
        width = edit->width();
        shown = edit->text();
        edit->setText(QStringLiteral("Interview codes"));
        static_cast<QDialog*>(dialog)->accept();
    });
    const auto answer = dialogs.getText(&parent, QStringLiteral("Edit title"),
                                        QStringLiteral("Type the new title"), QStringLiteral("A"));
    QCOMPARE(shown, QStringLiteral("A"));
    QCOMPARE(answer, std::optional<QString>(QStringLiteral("Interview codes")));
    QVERIFY2(width >= qMin(80 * metrics.averageCharWidth(), screenWidth * 9 / 10),
             qPrintable(QString::number(width)));

    // A title longer than that: the box grows with it, up to the screen; Cancel gives nothing.
    const QString longTitle = QStringLiteral("Remote work and the household: ") +
                              QStringLiteral("codes by case, ").repeated(4);
    whenModal([&](QWidget* dialog) {
        width = dialog->findChild<QLineEdit*>()->width();
        QVERIFY(dialog->frameGeometry().width() <= screenWidth);
        static_cast<QDialog*>(dialog)->reject();
    });
    QCOMPARE(dialogs.getText(&parent, QStringLiteral("Edit title"),
                             QStringLiteral("Type the new title"), longTitle),
             std::nullopt);
    QVERIFY2(width >= qMin(metrics.horizontalAdvance(longTitle), screenWidth * 9 / 10),
             qPrintable(QString::number(width)));
}

void QtDialogsTest::fileDialogsOpenAtAUsefulSize()
{
    QtDialogs dialogs;
    QWidget parent;
    const QSize screen = QGuiApplication::primaryScreen()->availableGeometry().size();
    const QSize expected(qMin(960, screen.width() * 9 / 10), qMin(600, screen.height() * 9 / 10));
    Dialogs::FileRequest request;
    request.caption = QStringLiteral("Open project");
    request.filters = {QStringLiteral("Kestrum projects (*.kst)")};
    QStringList seen;
    const auto look = [&](QWidget* dialog) {
        QVERIFY(qobject_cast<QFileDialog*>(dialog));
        QVERIFY2(dialog->width() >= expected.width() && dialog->height() >= expected.height(),
                 qPrintable(QStringLiteral("%1x%2").arg(dialog->width()).arg(dialog->height())));
        // The detail columns show a date and time in full, not cut short.
        const auto* details = dialog->findChild<QTreeView*>();
        QVERIFY(details);
        const QFontMetrics metrics(details->font());
        const QString date =
            QLocale().toString(QDateTime(QDate(2026, 11, 22), QTime(16, 56)), QLocale::ShortFormat);
        QVERIFY2(details->header()->sectionSize(3) > metrics.horizontalAdvance(date),
                 qPrintable(QString::number(details->header()->sectionSize(3))));
        QVERIFY(details->header()->sectionSize(0) > details->header()->sectionSize(3));
        seen << dialog->windowTitle();
        static_cast<QDialog*>(dialog)->reject();
    };
    whenModal(look);
    QVERIFY(!dialogs.getOpenFileName(&parent, request));
    whenModal(look);
    QVERIFY(!dialogs.getOpenFileNames(&parent, request));
    request.caption = QStringLiteral("Export page");
    whenModal(look);
    QVERIFY(!dialogs.getSaveFileName(&parent, request));
    QCOMPARE(seen, QStringList({"Open project", "Open project", "Export page"}));
}

QTEST_MAIN(QtDialogsTest)
#include "QtDialogsTest.moc"
