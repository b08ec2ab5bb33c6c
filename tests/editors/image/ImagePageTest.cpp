// Image pages: the stored 24-bit bitmap, depth conversion, damaged and huge bitmaps, picture
// files (reader choice, forced extensions, JPEG quality), zoom steps, and pages through the
// kind table and a real project file.

#include "ResultChecks.h"
#include "editors/image/BmpFile.h"
#include "editors/image/ImagePageDocument.h"
#include "editors/image/ImageZoom.h"
#include "editors/image/PictureFiles.h"
#include "export/PageExports.h"
#include "store/TRMData.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::image;

namespace {

QImage sample(int w = 5, int h = 3)
{
    QImage image(w, h, QImage::Format_RGB888);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            image.setPixelColor(x, y, QColor(x * 40, y * 70, (x + y) * 20));
        }
    }
    return image;
}

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.write(image);
    return bytes;
}

quint32 le32(const QByteArray& b, int at)
{
    return quint32(quint8(b[at])) | quint32(quint8(b[at + 1])) << 8 |
           quint32(quint8(b[at + 2])) << 16 | quint32(quint8(b[at + 3])) << 24;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

class ImagePageTest : public QObject
{
    Q_OBJECT

private slots:
    void bitmapIsAComplete24BitFile()
    {
        const QByteArray bmp = BmpFile::write(sample());
        QVERIFY(bmp.startsWith("BM"));
        QCOMPARE(le32(bmp, 2), quint32(bmp.size()));
        QCOMPARE(le32(bmp, 10), 54u);
        QCOMPARE(le32(bmp, 18), 5u);
        QCOMPARE(le32(bmp, 22), 3u);
        QCOMPARE(quint8(bmp[28]), quint8(24));
        QCOMPARE(bmp.size(), 54 + 3 * 16); // rows of 15 bytes padded to 16
        // Bottom-up, blue first: the first stored pixel is the bottom-left one.
        const QColor bottomLeft = sample().pixelColor(0, 2);
        QCOMPARE(quint8(bmp[54]), quint8(bottomLeft.blue()));
        QCOMPARE(quint8(bmp[56]), quint8(bottomLeft.red()));
        const Result<QImage> back = BmpFile::read(bmp);
        QVERIFY(back.ok());
        QCOMPARE(back->format(), QImage::Format_RGB888);
        QCOMPARE(*back, sample());
    }

    void emptyPictureIsAZeroByZeroBitmap()
    {
        const QByteArray bmp = BmpFile::write(QImage());
        QCOMPARE(bmp.size(), 54);
        const Result<QImage> back = BmpFile::read(bmp);
        QVERIFY(back.ok());
        QVERIFY(back->isNull());
    }

    void anyStoredDepthIsConvertedOnLoad_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QImage indexed = sample().convertToFormat(QImage::Format_Indexed8);
        QImage mono = sample().convertToFormat(QImage::Format_Mono);
        QImage argb = sample().convertToFormat(QImage::Format_ARGB32);
        QTest::newRow("8 bits") << encoded(indexed, "BMP");
        QTest::newRow("1 bit") << encoded(mono, "BMP");
        QTest::newRow("32 bits") << encoded(argb, "BMP");
    }
    void anyStoredDepthIsConvertedOnLoad()
    {
        QFETCH(QByteArray, bytes);
        ImagePageDocument doc;
        QString error;
        const Status read = doc.readContent(bytes);
        error = read.error();
        QVERIFY2(read, qPrintable(read.error()));
        QCOMPARE(doc.picture().format(), QImage::Format_RGB888);
        QCOMPARE(doc.picture().size(), QSize(5, 3));
        QByteArray out;
        const auto written = doc.writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        out = *written;
        QCOMPARE(quint8(out[28]), quint8(24));
    }

    void damagedAndHugeBitmapsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const QByteArray good = BmpFile::write(sample());
        QByteArray huge = good;
        huge[18] = char(0x00); // width 0x7FFF0000
        huge[20] = char(0xFF);
        huge[21] = char(0x7F);
        QByteArray tall = good;
        tall[22] = char(0x00); // height -2^31
        tall[25] = char(0x80);
        QByteArray badHeader = good;
        badHeader[14] = char(20);
        QTest::newRow("not a bitmap")
            << QByteArray("GIF89a........................") << "not a Windows bitmap";
        QTest::newRow("truncated header") << good.left(20) << "not a Windows bitmap";
        QTest::newRow("truncated pixels") << good.left(60) << "damaged";
        QTest::newRow("huge width") << huge << "more than a page holds";
        QTest::newRow("huge negative height") << tall << "more than a page holds";
        QTest::newRow("header size") << badHeader << "header is damaged";
        // The old 12-byte header, 28778 by 101 pixels claimed, 12 bytes of pixels.
        QTest::newRow("old header cut short")
            << QByteArray::fromBase64("Qk0qAAAAAAAAABoAAAAMAAAAanBlAAEAGABBAQMEBQYyAAABAgM=")
            << "pixels are cut short";
    }
    void damagedAndHugeBitmapsAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        ImagePageDocument doc;
        doc.setPicture(sample());
        QString error;
        const Status read2 = doc.readContent(bytes);
        error = read2.error();
        QVERIFY(!read2);
        QVERIFY2(error.contains(message), qPrintable(read2.error()));
        QVERIFY(doc.picture().isNull());
    }

    void pngWithAlphaBecomesOpaque()
    {
        QTemporaryDir dir;
        QImage argb(4, 4, QImage::Format_ARGB32);
        argb.fill(Qt::transparent);
        argb.setPixelColor(1, 1, QColor(255, 0, 0, 255));
        argb.setPixelColor(2, 2, QColor(0, 0, 255, 128));
        const QString file = dir.filePath(QStringLiteral("alpha.png"));
        QVERIFY(argb.save(file));
        const Result<QImage> read = PictureFiles::LoadPictureFile(file);
        QVERIFY(read.ok());
        QCOMPARE(read->format(), QImage::Format_RGB888);
        QVERIFY(!read->hasAlphaChannel());
        QCOMPARE(read->pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(read->pixelColor(1, 1), QColor(Qt::red));
        const QColor half = read->pixelColor(2, 2);
        QVERIFY(half.red() > 100 && half.red() < 150 && half.blue() == 255);
    }

    void readerIsChosenByTheName()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("shots.png")));
        // A JPEG inside a folder named ".png": the PNG reader is chosen, and refuses it.
        const QString jpegInPngFolder = dir.filePath(QStringLiteral("shots.png/photo"));
        writeFile(jpegInPngFolder, encoded(sample(), "JPEG"));
        QVERIFY(!PictureFiles::LoadPictureFile(jpegInPngFolder).ok());
        // The same bytes without a telling name go to the general loader, which reads them.
        const QString plain = dir.filePath(QStringLiteral("photo"));
        writeFile(plain, encoded(sample(), "JPEG"));
        QVERIFY(PictureFiles::LoadPictureFile(plain).ok());
        // ".jp" anywhere chooses the JPEG reader, whatever the rest of the name.
        const QString jpegName = dir.filePath(QStringLiteral("x.jpeg.bmp"));
        writeFile(jpegName, encoded(sample(), "BMP"));
        QVERIFY(!PictureFiles::LoadPictureFile(jpegName).ok());
        const Result<QImage> gif = [&] {
            const QString f = dir.filePath(QStringLiteral("a.GIF"));
            writeFile(f, encoded(sample(), "BMP")); // not a GIF
            return PictureFiles::LoadPictureFile(f);
        }();
        QVERIFY(!gif.ok());
        QVERIFY(gif.error().contains(QLatin1String("Cannot read the picture")));
    }

    void savingForcesTheFilterExtension()
    {
        QCOMPARE(PictureFiles::forcedFileName(QStringLiteral("/a.b/picture.png"), 3),
                 QStringLiteral("/a.b/picture.JPG"));
        QCOMPARE(PictureFiles::forcedFileName(QStringLiteral("/a.b/picture"), 1),
                 QStringLiteral("/a.b/picture.PNG"));
        QCOMPARE(PictureFiles::forcedFileName(QStringLiteral("x.tar.gz"), 2),
                 QStringLiteral("x.tar.BMP"));
        QCOMPARE(PictureFiles::forcedFileName(QStringLiteral("x"), 4), QString());

        QTemporaryDir dir;
        const Result<QString> written = PictureFiles::SavePicture(
            sample(64, 48), dir.filePath(QStringLiteral("picture.png")), 3);
        QVERIFY(written.ok());
        QCOMPARE(*written, dir.filePath(QStringLiteral("picture.JPG")));
        QFile f(*written);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.readAll().startsWith("\xFF\xD8\xFF"));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("picture.png"))));
    }

    void zoomSteps()
    {
        int z = ImageZoom::kInitial;
        QList<int> seen;
        for (int i = 0; i < 10; ++i) {
            z = ImageZoom::zoomOut(z);
            seen << z;
        }
        QCOMPARE(seen, (QList<int>{90, 80, 70, 60, 50, 40, 30, 20, 20, 20}));
        QCOMPARE(ImageZoom::zoomIn(20), 30);
        QCOMPARE(ImageZoom::zoomIn(75), 80);  // round(8.5) is 8: halves go to even
        QCOMPARE(ImageZoom::zoomIn(65), 80);  // round(7.5) is 8
        QCOMPARE(ImageZoom::zoomOut(35), 20); // round(2.5) is 2
        QCOMPARE(ImageZoom::viewSize(150, QSize(5, 3)), QSize(8, 4)); // 7.5 -> 8, 4.5 -> 4
        QCOMPARE(ImageZoom::statusText(110), QStringLiteral(" 110%"));
    }

    void pagesThroughTheKindTableAndAProject()
    {
        std::unique_ptr<store::PageDocument> doc =
            exports::pageKindTable().makeDocument(store::EditorKind::Image);
        QVERIFY(dynamic_cast<ImagePageDocument*>(doc.get()));
        const QByteArray bmp = BmpFile::write(sample());
        QVERIFY(doc->readContent(bmp));
        QByteArray out;
        const auto written = doc->writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        out = *written;
        QCOMPARE(out, bmp);

        QTemporaryDir dir;
        const QString png = dir.filePath(QStringLiteral("figure.png"));
        QVERIFY(sample().save(png));
        const QString wmf = dir.filePath(QStringLiteral("drawing.wmf"));
        writeFile(wmf, QByteArray("\xD7\xCD\xC6\x9A not really a metafile"));
        store::TRMData data;
        data.setPageKinds(exports::pageKindTable());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
        QSignalSpy warnings(&data, &store::TRMData::warning);
        store::OutlineNode* good = data.AppendFile(png, data.outline().root(), true).value();
        store::OutlineNode* bad = data.AppendFile(wmf, data.outline().root(), true).value();
        QCOMPARE(good->imageIndex(), store::PageType::Image);
        QCOMPARE(bad->imageIndex(), store::PageType::Image);
        QCOMPARE(warnings.count(), 1);
        // Both pages are stored at once: the picture, and an empty picture for the file that
        // could not be read.
        QCOMPARE(data.table()->readContent(good->data()).value().value_or(QByteArray()), bmp);
        QCOMPARE(data.table()->readContent(bad->data()).value().value_or(QByteArray()),
                 BmpFile::write(QImage()));
        ImagePageDocument page;
        QVERIFY(data.GetImage(good->data(), page).value());
        QCOMPARE(page.picture(), sample());
    }

    void reportExports()
    {
        const exports::CorePageKind* kind = exports::coreKind(store::EditorKind::Image);
        exports::PageSource page{7, store::PageType::Image, BmpFile::write(sample()), {}};
        const auto html = kind->exports.html(page, {QStringLiteral("R_files"), QString()});
        QVERIFY(html.ok());
        QCOMPARE(html->html,
                 QStringLiteral("<IMG SRC=\"R_files/image7.png\" WIDTH=5 HEIGHT=3 ALT=\"\">"));
        QImage back;
        QVERIFY(back.loadFromData(html->files.at(0).second, "PNG"));
        QCOMPARE(back.convertToFormat(QImage::Format_RGB888), sample());
        const auto rtf = kind->exports.rtf(page);
        QVERIFY(rtf.ok() && rtf->contains("\\pngblip\\picw5\\pich3"));
        page.content = "BM damaged";
        QVERIFY(!kind->exports.text(page).ok());
    }
};

QTEST_MAIN(ImagePageTest)
#include "ImagePageTest.moc"
