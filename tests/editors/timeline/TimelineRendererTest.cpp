// The timeline's picture: layout, hit-testing, the scale's ticks, absurd ranges, and the
// picture files (the GIF writer read back by the picture library).

#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/GifWriter.h"
#include "editors/timeline/TimelineEvents.h"

#include <QBuffer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::timeline;

namespace {

const QSize kSize(800, 300);

TimelineModel sample()
{
    TimelineModel m;
    m.rangeFrom = 36526; // 2000
    m.rangeTo = 40179;   // 2010
    for (int i = 0; i < 4; ++i) {
        TimelineEvent e = m.newEvent();
        e.position = 37000 + i * 700;
        e.annotation = QStringLiteral("Event %1").arg(i);
        m.events.push_back(e);
    }
    TimelineEvent outside = m.newEvent();
    outside.position = 20000;
    outside.annotation = QStringLiteral("Before the window");
    m.events.push_back(outside);
    TimelineEvents::applyLayoutMode(m, LayoutMode::Alternate, kSize.height());
    return m;
}

} // namespace

class TimelineRendererTest : public QObject
{
    Q_OBJECT

private slots:
    void layoutPlacesBalloonsOnTheirSide()
    {
        const TimelineModel m = sample();
        const auto lay = TimelineRenderer::layout(m, kSize);
        QCOMPARE(lay.bar.top(), m.verticalMargin);
        QCOMPARE(lay.events.size(), std::size_t(4)); // the event before the window is not drawn
        for (const auto& g : lay.events) {
            const TimelineEvent& e = m.events[std::size_t(g.index)];
            const int x = int(std::lround(TimelineRenderer::xForPosition(m, kSize, e.position)));
            QVERIFY(std::abs(g.marker.boundingRect().center().x() - x) <= 1);
            if (e.annotationPosition == AnnotationPosition::Top) {
                QVERIFY(g.balloon.bottom() < lay.bar.top());
            } else {
                QVERIFY(g.balloon.top() > lay.bar.bottom());
            }
            QVERIFY(QRect(QPoint(0, 0), kSize).contains(g.balloon));
        }
        // Years 2000..2010 on a yearly scale: eleven labelled ticks.
        int majors = 0;
        for (const auto& t : lay.ticks) {
            majors += t.major ? 1 : 0;
        }
        QCOMPARE(majors, 11);
        QCOMPARE(lay.ticks.front().label, QStringLiteral("2000"));
    }

    void crowdedBalloonsStack()
    {
        TimelineModel m = sample();
        m.events.resize(4); // as many as there is room for above the bar
        for (TimelineEvent& e : m.events) {
            e.position = 38000; // all at one day
            TimelineEvents::placeEvent(e, AnnotationPosition::Top);
        }
        const auto lay = TimelineRenderer::layout(m, kSize);
        QCOMPARE(lay.events.size(), std::size_t(4));
        for (std::size_t i = 0; i < lay.events.size(); ++i) {
            for (std::size_t j = i + 1; j < lay.events.size(); ++j) {
                QVERIFY(!lay.events[i].balloon.intersects(lay.events[j].balloon));
            }
        }
    }

    void hitTestFindsWhatIsDrawn()
    {
        const TimelineModel m = sample();
        const auto lay = TimelineRenderer::layout(m, kSize);
        for (const auto& g : lay.events) {
            QCOMPARE(TimelineRenderer::hitTest(m, kSize, g.balloon.center()), g.index);
            QCOMPARE(TimelineRenderer::hitTest(m, kSize, g.marker.boundingRect().center()),
                     g.index);
        }
        QCOMPARE(TimelineRenderer::hitTest(m, kSize, QPoint(1, 1)), -1);
        QCOMPARE(TimelineRenderer::xForPosition(m, kSize, m.rangeFrom), double(m.horizontalMargin));
        QCOMPARE(TimelineRenderer::positionForX(m, kSize,
                                                TimelineRenderer::xForPosition(m, kSize, 38000.5)),
                 38000.5);
    }

    void absurdRangesDrawQuickly_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<int>("type");
        QTest::newRow("a billion days by minutes") << 0.0 << 1e9 << int(DivisionType::Minute);
        QTest::newRow("years past the calendar") << -1e12 << 1e12 << int(DivisionType::Year);
        QTest::newRow("empty window") << 100.0 << 100.0 << int(DivisionType::Day);
        QTest::newRow("reversed window") << 200.0 << 100.0 << int(DivisionType::Month);
        QTest::newRow("a millisecond")
            << 40000.0 << 40000.00000001 << int(DivisionType::Millisecond);
    }
    void absurdRangesDrawQuickly()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(int, type);
        TimelineModel m = sample();
        m.rangeFrom = from;
        m.rangeTo = to;
        m.divisionType = type;
        m.divisions = 1;
        m.subDivisions = 1000000;
        m.verticalMargin = -100000;
        m.horizontalMargin = 100000;
        const auto lay = TimelineRenderer::layout(m, kSize);
        QVERIFY(lay.ticks.size() <= std::size_t(2 * TimelineRenderer::kMaxTicks));
        const QImage image = TimelineRenderer::picture(m, kSize);
        QCOMPARE(image.size(), kSize);
    }

    void pictureShowsTheBackgroundAndBarColours()
    {
        TimelineModel m = sample();
        m.backgroundColor = m.backgroundColorTo = common::clRed;
        m.barColor = m.barColorTo = common::clLime;
        const QImage image = TimelineRenderer::picture(m, kSize);
        QCOMPARE(image.pixelColor(2, 2), QColor(Qt::red));
        const auto lay = TimelineRenderer::layout(m, kSize);
        QCOMPARE(image.pixelColor(lay.bar.left() + 3, lay.bar.bottom() - 3), QColor(Qt::green));
    }

    void picturesInEveryFormat_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("magic");
        QTest::newRow("png") << "png" << QByteArray("\x89PNG");
        QTest::newRow("jpg") << "jpg" << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("bmp") << "bmp" << QByteArray("BM");
        QTest::newRow("gif") << "gif" << QByteArray("GIF89a");
    }
    void picturesInEveryFormat()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, magic);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("t.") + format);
        QVERIFY(TimelineRenderer::savePicture(sample(), kSize, file, format).ok());
        QFile f(file);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.read(magic.size()) == magic);
        f.close();
        QImageReader reader(file);
        const QImage back = reader.read();
        QCOMPARE(back.size(), kSize);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 1); // no temporary left
    }

    void gifKeepsFewColoursExactly()
    {
        // Few colours: the palette is exact, so every pixel comes back as it was. The picture
        // is large enough for the LZW table to fill and restart several times.
        QImage image(613, 401, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int v = (x * 7 + y * 13 + (x * y) % 11) % 200;
                image.setPixel(x, y, qRgb(v, 255 - v, (v * 3) % 256));
            }
        }
        QByteArray bytes = GifWriter::write(image);
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer, "GIF");
        const QImage back = reader.read().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(back.size(), image.size());
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (back.pixel(x, y) != image.pixel(x, y)) {
                    QFAIL(qPrintable(QStringLiteral("pixel %1,%2 differs").arg(x).arg(y)));
                }
            }
        }
    }
};

QTEST_MAIN(TimelineRendererTest)
#include "TimelineRendererTest.moc"
