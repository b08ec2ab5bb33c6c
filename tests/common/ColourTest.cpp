// Colours stored as 0x00BBGGRR, system colours and their text form.

#include "common/Colour.h"

#include <QGuiApplication>
#include <QPalette>
#include <QtTest>

using namespace kestrum::common;

class ColourTest : public QObject
{
    Q_OBJECT
private slots:
    void redSitsInTheLowByte();
    void markersAreNotColours();
    void systemColoursFollowThePalette();
    void textForm_data();
    void textForm();
    void parsesEveryAcceptedSpelling_data();
    void parsesEveryAcceptedSpelling();
    void refusesGarbage();
};

void ColourTest::redSitsInTheLowByte()
{
    QCOMPARE(fromQColor(QColor(255, 0, 0)), TColor(0x0000FF));
    QCOMPARE(fromQColor(QColor(0x12, 0x34, 0x56)), TColor(0x563412));
    QCOMPARE(toQColor(0x563412), QColor(0x12, 0x34, 0x56));
    QCOMPARE(redOf(0x563412), 0x12);
    QCOMPARE(blueOf(0x563412), 0x56);
}

void ColourTest::markersAreNotColours()
{
    QVERIFY(!toQColor(clNone).isValid());
    QVERIFY(!toQColor(clDefault).isValid());
    QCOMPARE(fromQColor(QColor()), clNone);
    QVERIFY(!isSystemColour(clNone));
    QVERIFY(isSystemColour(clWindow));
}

void ColourTest::systemColoursFollowThePalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(10, 20, 30));
    palette.setColor(QPalette::Text, QColor(40, 50, 60));
    QCOMPARE(toQColor(clWindow, &palette), QColor(10, 20, 30));
    QCOMPARE(toQColor(clWindowText, &palette), QColor(40, 50, 60));
}

void ColourTest::textForm_data()
{
    QTest::addColumn<int>("colour");
    QTest::addColumn<QString>("text");
    QTest::newRow("standard") << int(clRed) << "clRed";
    QTest::newRow("aqua") << int(clAqua) << "clAqua";
    QTest::newRow("none") << int(clNone) << "clNone";
    QTest::newRow("system window") << int(clWindow) << "clWindow";
    QTest::newRow("other value") << 0x00984E00 << "$00984E00";
}

void ColourTest::textForm()
{
    QFETCH(int, colour);
    QFETCH(QString, text);
    QCOMPARE(colourToString(colour), text);
    TColor back = 0;
    QVERIFY(colourFromString(text, &back));
    QCOMPARE(back, TColor(colour));
}

void ColourTest::parsesEveryAcceptedSpelling_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("colour");
    QTest::newRow("identifier any case") << "CLYELLOW" << int(clYellow);
    QTest::newRow("dollar hex") << "$000000FF" << int(clRed);
    QTest::newRow("html hex") << "#FF0000" << int(clRed);
    QTest::newRow("0x hex") << "0xFFFF00" << int(clAqua);
    QTest::newRow("decimal") << "255" << int(clRed);
    QTest::newRow("negative decimal system colour") << "-16777211" << int(clWindow);
}

void ColourTest::parsesEveryAcceptedSpelling()
{
    QFETCH(QString, text);
    QFETCH(int, colour);
    TColor parsed = 0;
    QVERIFY(colourFromString(text, &parsed));
    QCOMPARE(parsed, TColor(colour));
}

void ColourTest::refusesGarbage()
{
    TColor parsed = 7;
    for (const char* bad : {"", "clPink", "$", "$1234567890", "#12", "0xZZ", "12abc"}) {
        QVERIFY2(!colourFromString(QString::fromLatin1(bad), &parsed), bad);
    }
    QCOMPARE(parsed, TColor(7));
}

QTEST_MAIN(ColourTest)
#include "ColourTest.moc"
