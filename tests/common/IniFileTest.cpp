// The settings-file class: keys with spaces, letter case, and lines it leaves alone.

#include "common/IniFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using kestrum::Status;
using kestrum::common::IniFile;

class IniFileTest : public QObject
{
    Q_OBJECT
private slots:
    void keysWithSpacesAndAnyCase();
    void writingKeepsOtherLines();
    void addsKeysAndSections();
    void fileRoundTripKeepsLineEndingsAndEncoding();
    void missingFileIsEmpty();
    void booleansAndIntegers();
};

void IniFileTest::keysWithSpacesAndAnyCase()
{
    IniFile ini;
    ini.parse(QStringLiteral("[OPTIONS]\nPublic File Name = C:\\Reports\\Study.kst \n"
                             "[other]\nPublic File Name=wrong\n"));
    QCOMPARE(ini.readString(QStringLiteral("options"), QStringLiteral("public file name")),
             QStringLiteral("C:\\Reports\\Study.kst"));
    QCOMPARE(ini.readString(QStringLiteral("OPTIONS"), QStringLiteral("Missing"),
                            QStringLiteral("dflt")),
             QStringLiteral("dflt"));
    QVERIFY(ini.hasKey(QStringLiteral("Other"), QStringLiteral("PUBLIC FILE NAME")));
}

void IniFileTest::writingKeepsOtherLines()
{
    IniFile ini;
    ini.parse(QStringLiteral(
        "; written by the host\n[OPTIONS]\nLanguage=FR\n\n; end\n[Window]\nTop=3\n"));
    ini.writeString(QStringLiteral("OPTIONS"), QStringLiteral("SUP Modified"), QStringLiteral("T"));
    ini.writeString(QStringLiteral("window"), QStringLiteral("top"), QStringLiteral("40"));
    QCOMPARE(ini.toText(),
             QStringLiteral("; written by the host\n[OPTIONS]\nLanguage=FR\nSUP Modified=T\n\n"
                            "; end\n[Window]\nTop=40\n"));
}

void IniFileTest::addsKeysAndSections()
{
    IniFile ini;
    ini.writeString(QStringLiteral("MAIN"), QStringLiteral("LEFT"), QStringLiteral("12"));
    ini.writeString(QStringLiteral("MAIN"), QStringLiteral("TOP"), QStringLiteral("7"));
    ini.writeString(QStringLiteral("OPTIONS"), QStringLiteral("Language"), QStringLiteral("a\nb"));
    QCOMPARE(ini.sections(), QStringList({QStringLiteral("MAIN"), QStringLiteral("OPTIONS")}));
    QCOMPARE(ini.keys(QStringLiteral("main")),
             QStringList({QStringLiteral("LEFT"), QStringLiteral("TOP")}));
    // A value never breaks the line structure.
    QCOMPARE(ini.readString(QStringLiteral("OPTIONS"), QStringLiteral("Language")),
             QStringLiteral("a b"));
    ini.deleteKey(QStringLiteral("MAIN"), QStringLiteral("left"));
    QVERIFY(!ini.hasKey(QStringLiteral("MAIN"), QStringLiteral("LEFT")));
}

void IniFileTest::fileRoundTripKeepsLineEndingsAndEncoding()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Study.WPJ"));
    {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        // Windows line endings and a Latin-1 "é" (0xE9), as an older host writes them.
        f.write("[OPTIONS]\r\nPublic File Name=Caf\xE9.kst\r\n");
    }
    IniFile ini(path);
    QVERIFY(ini.load());
    QCOMPARE(ini.readString(QStringLiteral("OPTIONS"), QStringLiteral("Public File Name")),
             QStringLiteral("Café.kst"));
    ini.writeString(QStringLiteral("OPTIONS"), QStringLiteral("SUP Modified"), QStringLiteral("T"));
    QVERIFY(ini.save());
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(),
             QByteArray("[OPTIONS]\r\nPublic File Name=Caf\xE9.kst\r\nSUP Modified=T\r\n"));
}

void IniFileTest::missingFileIsEmpty()
{
    QTemporaryDir dir;
    IniFile ini(dir.filePath(QStringLiteral("none.ini")));
    const Status loaded = ini.load();
    QVERIFY2(loaded, qPrintable(loaded.error()));
    QVERIFY(ini.sections().isEmpty());
}

void IniFileTest::booleansAndIntegers()
{
    IniFile ini;
    ini.parse(QStringLiteral("[S]\na=T\nb=0\nc=yes\nd=maybe\nn=42\nbad=4x\n"));
    QVERIFY(ini.readBool(QStringLiteral("S"), QStringLiteral("a"), false));
    QVERIFY(!ini.readBool(QStringLiteral("S"), QStringLiteral("b"), true));
    QVERIFY(ini.readBool(QStringLiteral("S"), QStringLiteral("c"), false));
    QVERIFY(ini.readBool(QStringLiteral("S"), QStringLiteral("d"), true));
    QCOMPARE(ini.readInteger(QStringLiteral("S"), QStringLiteral("n"), 0), 42);
    QCOMPARE(ini.readInteger(QStringLiteral("S"), QStringLiteral("bad"), -1), -1);
}

QTEST_GUILESS_MAIN(IniFileTest)
#include "IniFileTest.moc"
