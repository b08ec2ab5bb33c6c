#include "TprWordCloud.h"
#include "common/ScopedFlag.h"

#include "CloudDocument.h"
#include "CloudPalettes.h"
#include "WordCloudLog.h"
#include "common/Rounding.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImageWriter>
#include <QMimeData>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrum::wordcloud {

using common::halfUp;
using common::roundHalfEven;
using common::TColor;

namespace {


// Client sizes beyond this are held there: pictures stay within what an image can hold.
constexpr int kMaxClientSide = 32767;
// The coverage fit never grows a font beyond this size.
constexpr qint32 kMaxFitSize = 32768;

} // namespace

TprWordCloud::TprWordCloud(QObject* parent) : QObject(parent) {}

TprWordCloud::~TprWordCloud() = default;

// ---------------------------------------------------------------------------------- words

void TprWordCloud::noteWeight(qint32 weight)
{
    m_maxWeight = std::max(m_maxWeight, weight);
    m_minWeight = std::min(m_minWeight, weight);
}

int TprWordCloud::AddWord(const QString& text, qint32 weight)
{
    if (text.isEmpty() || weight < 1 || m_generating) {
        return -1;
    }
    noteWeight(weight);
    auto word = std::make_unique<TprWord>(this, text, weight, 0, m_placeCenter);
    word->SetBackgroundColor(BackgroundColor());
    word->SetShadow(m_shadow);
    m_words.push_back(std::move(word));
    return int(m_words.size()) - 1;
}

void TprWordCloud::RemoveWord(int index)
{
    if (m_generating || index < 0 || index >= WordCount()) {
        return;
    }
    if (m_selectedWord == m_words[std::size_t(index)].get()) {
        m_selectedWord = nullptr;
    }
    m_words.erase(m_words.begin() + index);
}

void TprWordCloud::ClearWords()
{
    if (m_generating) {
        return;
    }
    m_words.clear();
    m_selectedWord = nullptr;
    m_maxWeight = 0;
    m_minWeight = 2147483647;
    m_countVisibleWords = 0;
    m_shaper.prune();
}

TprWord* TprWordCloud::Word(int index) const
{
    return index >= 0 && index < WordCount() ? m_words[std::size_t(index)].get() : nullptr;
}

// ---------------------------------------------------------------------------------- areas

void TprWordCloud::SetClientSize(const QSize& size)
{
    m_clientSize = QSize(std::clamp(size.width(), 0, kMaxClientSide),
                         std::clamp(size.height(), 0, kMaxClientSide));
}

CloudRect TprWordCloud::GetCanvasDimension() const
{
    return {m_margins.Left(), m_margins.Top(), m_clientSize.width() - m_margins.Right(),
            m_clientSize.height() - m_margins.Bottom()};
}

qint64 TprWordCloud::CanvasArea() const
{
    const CloudRect area = GetCanvasDimension();
    if (m_cloudShape == Ellipse) {
        return qint64(std::trunc(std::numbers::pi * (area.width() / 2.0) * (area.height() / 2.0)));
    }
    return area.area();
}

// ---------------------------------------------------------------------------------- options

void TprWordCloud::SetCoverage(float coverage)
{
    if (std::isnan(coverage)) {
        return;
    }
    m_coverage = std::clamp(coverage, 0.01f, 1.0f);
}

void TprWordCloud::SetPlaceCenter(bool on)
{
    m_placeCenter = on;
    for (auto& word : m_words) {
        word->SetPlaceCenter(on);
    }
}

TColor TprWordCloud::BackgroundColor() const
{
    return m_parentColor ? m_parentBrushColor : m_backgroundColor;
}

void TprWordCloud::SetShadow(bool on)
{
    m_shadow = on;
    for (auto& word : m_words) {
        word->SetShadow(on);
    }
}

// ---------------------------------------------------------------------------------- sizing

void TprWordCloud::sortWords()
{
    std::stable_sort(m_words.begin(), m_words.end(),
                     [](const auto& a, const auto& b) { return a->Weight() > b->Weight(); });
}

void TprWordCloud::capWeights()
{
    const qint32 heaviest = m_words.front()->Weight();
    const double factor = heaviest <= 1024 ? 1.0 : 1024.0 / heaviest;
    for (auto& word : m_words) {
        word->SetFont(m_font);
        const qint32 weight = qint32(roundHalfEven(word->Weight() * factor));
        word->SetWeight(weight);
        word->SetSize(weight);
    }
    m_maxWeight = m_words.front()->Weight();
    m_minWeight = m_words.back()->Weight();
}

void TprWordCloud::fitSizesToCoverage()
{
    const CloudRect area = GetCanvasDimension();
    const qint64 target = qint64(std::trunc(double(CanvasArea()) * double(m_currentCoverage)));
    if (target == 0) {
        return;
    }
    qint64 total = 0;
    for (const auto& word : m_words) {
        total += word->BoundsRect().area();
    }
    const double ratio = double(total) / double(target);
    if (ratio == 0) {
        return;
    }
    double shrink = 1.0;
    for (std::size_t i = 0; i < m_words.size(); ++i) {
        TprWord& word = *m_words[i];
        qint64 t = qint64(std::trunc(double(word.BoundsRect().area()) / ratio));
        if (t < 0) {
            t = 1;
        }

        // Binary search over 1..1024 for the size whose box area is the target.
        qint32 size = 512;
        qint32 low = 0;
        qint32 high = 1024;
        for (;;) {
            if (size < 2) {
                size = 1;
                break;
            }
            if (size == low || size == high) {
                break;
            }
            word.SetSize(size);
            const qint64 a = word.BoundsRect().area();
            if (a == t) {
                break;
            }
            if (a > t) {
                high = size;
                size = low + (size - low) / 2;
            } else {
                low = size;
                size = size + (high - size) / 2;
            }
        }
        word.SetSize(size);
        while (word.BoundsRect().area() < t && size < kMaxFitSize) {
            word.SetSize(++size);
        }
        while (word.BoundsRect().area() > t && size >= 2) {
            word.SetSize(--size);
        }

        size = std::max<qint32>(1, qint32(std::trunc(size * shrink)));
        word.SetSize(size);
        if (i == 0) {
            // The heaviest word must fit with ten pixels to spare; the others shrink alike.
            const qint32 before = size;
            while ((word.BoundsRect().width() + 10 > area.width() ||
                    word.BoundsRect().height() + 10 > area.height()) &&
                   size >= 2) {
                word.SetSize(--size);
            }
            shrink = double(size) / double(before);
        }
        word.SetDefaultSize();
    }
}

void TprWordCloud::reproportionToWeight()
{
    qint64 weights = 0;
    qint64 sizes = 0;
    for (const auto& word : m_words) {
        weights += word->Weight();
        sizes += word->FontSize();
    }
    if (weights == 0) {
        return;
    }
    for (auto& word : m_words) {
        const qint64 size = roundHalfEven(double(word->Weight()) * double(sizes) / double(weights));
        word->SetSize(qint32(std::clamp<qint64>(size, 1, kMaxFitSize)));
        word->SetDefaultSize();
    }
}

// ---------------------------------------------------------------------------------- layout

bool TprWordCloud::fits(const CloudRect& box, const CloudRect& area) const
{
    if (m_cloudShape != Ellipse) {
        return box.left >= area.left && box.right <= area.right && box.top >= area.top &&
               box.bottom <= area.bottom;
    }
    const double a = area.width() / 2.0;
    const double b = area.height() / 2.0;
    const double cx = area.left + a;
    const double cy = area.top + b;
    auto inside = [&](double x, double y) {
        const double u = (x - cx) / a;
        const double v = (y - cy) / b;
        return u * u + v * v <= 1.0;
    };
    return inside(box.left, box.top) && inside(box.right, box.bottom);
}

namespace {

struct StepRange
{
    qint64 first;
    qint64 last; // empty when last < first
};

qint32 floorDiv32(qint32 a, qint32 b)
{
    qint32 q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0))) {
        --q;
    }
    return q;
}

qint32 ceilDiv32(qint32 a, qint32 b)
{
    return -floorDiv32(-a, b);
}

// The steps k for which from <= k * v <= to (v != 0). Positions on a walk stay within a few
// million pixels, so 32-bit division (much quicker than 64-bit) is exact here.
StepRange stepsWithin(qint64 v, qint64 from, qint64 to)
{
    const qint32 v32 = qint32(v);
    const qint32 f = qint32(std::clamp<qint64>(from, -(1 << 30), 1 << 30));
    const qint32 t = qint32(std::clamp<qint64>(to, -(1 << 30), 1 << 30));
    if (v32 > 0) {
        return {ceilDiv32(f, v32), floorDiv32(t, v32)};
    }
    return {ceilDiv32(-t, -v32), floorDiv32(-f, -v32)};
}

// Along one leg of the spiral the box moves by `v` per step on one axis. The first step in
// 0..last at which the box lies inside the area's rectangle (a condition of both shapes) and
// off `collider`; -1 when every one of those steps is blocked anyway. Both conditions hold on
// one interval of steps each, so membership is a comparison; a division is needed only to find
// where the box enters the area from outside, or leaves a long collider.
qint64 firstOpenStep(const CloudRect& box, qint32 vx, qint32 vy, qint64 last, const CloudRect& area,
                     const CloudRect* collider)
{
    const bool alongX = vx != 0;
    const qint64 v = alongX ? vx : vy;
    // Fixed extent across the leg, moving extent along it.
    const qint64 crossLo = alongX ? box.top : box.left;
    const qint64 crossHi = alongX ? box.bottom : box.right;
    const qint64 lo = alongX ? box.left : box.top;
    const qint64 hi = alongX ? box.right : box.bottom;
    if (crossLo < (alongX ? area.top : area.left) ||
        crossHi > (alongX ? area.bottom : area.right)) {
        return -1;
    }
    const qint64 areaLo = alongX ? area.left : area.top;
    const qint64 areaHi = alongX ? area.right : area.bottom;
    auto inside = [&](qint64 k) { return lo + k * v >= areaLo && hi + k * v <= areaHi; };

    qint64 k = 0;
    if (!inside(0)) {
        k = std::max<qint64>(0, stepsWithin(v, areaLo - lo, areaHi - hi).first);
        if (k > last || !inside(k)) {
            return -1;
        }
    }
    if (!collider) {
        return k;
    }
    const qint64 cCrossLo = alongX ? collider->top : collider->left;
    const qint64 cCrossHi = alongX ? collider->bottom : collider->right;
    if (crossHi < cCrossLo || crossLo > cCrossHi) {
        return k;
    }
    const qint64 cLo = alongX ? collider->left : collider->top;
    const qint64 cHi = alongX ? collider->right : collider->bottom;
    auto onCollider = [&](qint64 j) { return !(hi + j * v < cLo || lo + j * v > cHi); };
    if (!onCollider(k)) {
        return k;
    }
    // Small words leave a collider within a step or two: count them; divide for the rest.
    constexpr int kCountedSteps = 4;
    qint64 j = k + 1;
    for (int n = 0; n < kCountedSteps && j <= last && onCollider(j); ++n) {
        ++j;
    }
    if (j <= last && onCollider(j)) {
        j = stepsWithin(v, cLo - hi, cHi - lo).last + 1;
    }
    return j <= last && inside(j) ? j : -1;
}

} // namespace

bool TprWordCloud::spiralWalk(TprWord& word, CollisionIndex& placed, bool resume, bool mirrored)
{
    qint32 dx = 0;
    qint32 dy = 0;
    qint32 legLength = 1;
    qint32 steps = 0;
    if (resume) {
        dx = m_dx;
        dy = m_dy;
        legLength = m_segLength;
        steps = m_segPassed;
    } else {
        switch (m_random.nextInt(4)) {
        case 0:
            dx = 1;
            dy = 0;
            break;
        case 1:
            dx = 0;
            dy = 1;
            break;
        case 2:
            dx = -1;
            dy = 0;
            break;
        default:
            dx = 0;
            dy = -1;
            break;
        }
    }
    const CloudRect area = GetCanvasDimension();
    const qint64 budget = CanvasArea();
    const qint32 stepX = mirrored ? -qint32(m_stepX) : qint32(m_stepX);
    const qint32 stepY = mirrored ? -qint32(m_stepY) : qint32(m_stepY);
    CloudRect box = word.BoundsRect();
    int collider = -1;
    bool blocked = true;

    // `count` blocked steps: move on along the spiral.
    auto advance = [&](qint64 count) {
        box =
            box.translated(qint32(qint64(stepX) * dx * count), qint32(qint64(stepY) * dy * count));
        steps += qint32(count);
        if (steps == legLength) {
            steps = 0;
            const qint32 turnedX = -dy;
            dy = dx;
            dx = turnedX;
            if (dy == 0) {
                ++legLength;
            }
        }
    };

    for (qint64 n = 0; n < budget;) {
        if (!m_referenceLayout && (dx == 0) != (dy == 0)) {
            // Steps off the area or on the remembered collider are blocked whatever the other
            // words: go straight to the first step along this leg that needs a real test.
            const qint64 last = std::min<qint64>(legLength - steps - 1, budget - n - 1);
            const qint64 k = firstOpenStep(box, stepX * dx, stepY * dy, last, area,
                                           collider >= 0 ? &placed.box(collider) : nullptr);
            if (k < 0) {
                advance(last + 1);
                n += last + 1;
                continue;
            }
            if (k > 0) {
                advance(k);
                n += k;
            }
        }
        ++n;
        // After a jump the box is known to be inside the area's rectangle and off the
        // remembered collider: only the ellipse and the other words remain to be asked about.
        const bool jumped = !m_referenceLayout && (dx == 0) != (dy == 0);
        blocked = jumped ? (m_cloudShape == Ellipse && !fits(box, area)) : !fits(box, area);
        if (!blocked) {
            if (!jumped && collider >= 0 && placed.box(collider).overlaps(box)) {
                blocked = true;
            } else if (const int hit = placed.firstOverlap(box); hit >= 0) {
                collider = hit;
                blocked = true;
            }
        }
        if (!blocked) {
            break;
        }
        advance(1);
    }
    word.SetStartingBoundsRect(box);
    m_segLength = legLength;
    m_segPassed = steps;
    m_dx = dx;
    m_dy = dy;
    return !blocked;
}

bool TprWordCloud::placeWord(TprWord& word, CollisionIndex& placed, bool resume, bool mirrored)
{
    if (spiralWalk(word, placed, resume, mirrored)) {
        return true;
    }
    if (!resume) {
        return false;
    }
    // A resumed walk that found nothing starts a fresh spiral from where it ended.
    m_segLength = 1;
    m_segPassed = 0;
    m_dx = 1;
    m_dy = 0;
    return spiralWalk(word, placed, false, mirrored);
}

bool TprWordCloud::generateOnce(bool resetPosition)
{
    const CloudRect area = GetCanvasDimension();
    m_cancel = false;
    sortWords();
    if (resetPosition) {
        m_currentCoverage = m_coverage;
    }
    m_stepX = quint8(std::clamp<qint64>(roundHalfEven(area.width() / 150.0), 1, 255));
    m_stepY = quint8(std::clamp<qint64>(roundHalfEven(area.height() / 150.0), 1, 255));
    m_startingCanvasRect = area;

    capWeights();
    fitSizesToCoverage();
    reproportionToWeight();
    for (auto& word : m_words) {
        word->SetVisible(false);
        if (resetPosition) {
            word->SetStartingPosition();
        }
    }

    m_countVisibleWords = 0;
    CollisionIndex placed;
    placed.reset(area,
                 m_referenceLayout ? CollisionIndex::Mode::LinearScan : CollisionIndex::Mode::Grid);
    m_segLength = 1;
    m_segPassed = 0;
    m_dx = -99;
    m_dy = -99;
    m_random.reseedFromClock();
    const int count = WordCount();
    const bool chain = m_placeCenter && m_continueFromLastWord;
    CloudRect lastPlaced;
    for (int i = 0; i < count; ++i) {
        if (m_cancel) {
            break;
        }
        emit OnProgress(int(qint64(i + 1) * 100 / count));
        TprWord& word = *m_words[std::size_t(i)];
        bool mirrored = false;
        if (!chain) {
            if (m_direction == Mirrored) {
                mirrored = true;
            } else if (m_direction != Forward) {
                mirrored = m_random.nextInt(2) == 1;
            }
        }
        bool resume = false;
        if (chain && i > count / 10 && placed.count() % 8 != 0) {
            const CloudRect box = word.BoundsRect();
            word.SetBoundsRect({lastPlaced.left, lastPlaced.top, lastPlaced.left + box.width(),
                                lastPlaced.top + box.height()});
            resume = true;
        }
        if (!placeWord(word, placed, resume, mirrored)) {
            break;
        }
        placed.add(word.BoundsRect());
        word.SetVisible(true);
        lastPlaced = word.StartingBoundsRect();
        m_countVisibleWords = placed.count();
    }
    m_countVisibleWords = placed.count();
    return m_countVisibleWords == count;
}

bool TprWordCloud::GenerateCloud(bool aResetPosition)
{
    const CloudRect area = GetCanvasDimension();
    if (m_generating || m_words.empty() || area.width() <= 0 || area.height() <= 0) {
        return false;
    }
    common::ScopedFlag generating(m_generating);
    bool placedAll = generateOnce(aResetPosition);
    while (!placedAll) {
        qCDebug(lcWordCloud).nospace().noquote() << "Coverage Too High: " << m_currentCoverage;
        if (!m_autoResizeCoverage) {
            break;
        }
        m_currentCoverage = float(double(m_currentCoverage) - 0.05);
        if (!(m_currentCoverage > 0)) {
            break;
        }
        for (auto& word : m_words) {
            word->SetStartingBoundsRect({});
            word->SetSize(word->Weight());
            word->SetStartingPosition();
        }
        placedAll = generateOnce(false);
    }
    m_shaper.prune();
    emit Changed();
    return placedAll;
}

// ---------------------------------------------------------------------------------- painting

void TprWordCloud::ClearCanvas(QPainter& painter) const
{
    const QColor background = common::toQColor(BackgroundColor());
    painter.fillRect(QRect(QPoint(0, 0), m_clientSize),
                     background.isValid() ? background : QColor(Qt::white));
}

void TprWordCloud::AssignColors()
{
    if (m_usePalette) {
        const QList<TColor>& colours =
            m_palette == CloudPalettes::kCustom && !m_customColors.isEmpty()
                ? m_customColors
                : CloudPalettes::colours(m_palette);
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            m_words[i]->SetTextColor(colours[qsizetype(i % std::size_t(colours.size()))]);
        }
    } else {
        m_gradient.GenerateColors();
        const qint64 span = qint64(m_maxWeight) - qint64(m_minWeight);
        for (auto& word : m_words) {
            const int p = span == 0
                              ? 100
                              : int(std::clamp<qint64>(
                                    roundHalfEven(double(qint64(word->Weight()) - m_minWeight) /
                                                  double(span) * 100.0),
                                    -1, 101));
            word->SetTextColor(m_gradient.GetColor(p));
        }
    }
    for (auto& word : m_words) {
        word->SetBackgroundColor(BackgroundColor());
    }
}

void TprWordCloud::PaintCloud(QPainter& painter)
{
    ClearCanvas(painter);
    AssignColors();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.setPen(Qt::NoPen);
    const TColor surface = BackgroundColor();
    for (const auto& word : m_words) {
        if (word->Visible()) {
            word->Paint(painter, surface);
        }
    }
    painter.restore();
}

QImage TprWordCloud::SaveToBitmap()
{
    if (m_clientSize.isEmpty()) {
        return {};
    }
    QImage image(m_clientSize, QImage::Format_RGB32);
    QPainter painter(&image);
    PaintCloud(painter);
    painter.end();
    return image;
}

bool TprWordCloud::SaveToMetafile(QIODevice& device)
{
    if (m_clientSize.isEmpty()) {
        return false;
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setSize(m_clientSize);
    svg.setViewBox(QRect(QPoint(0, 0), m_clientSize));
    svg.setTitle(QStringLiteral("Word cloud"));
    QPainter painter;
    if (!painter.begin(&svg)) {
        return false;
    }
    PaintCloud(painter);
    if (!painter.end()) {
        return false;
    }
    // The generator gives the size in millimetres at its own resolution; a picture of pixels
    // states its size in pixels, so every viewer shows it at the size of the cloud.
    QByteArray bytes = buffer.data();
    static const QRegularExpression size(
        QStringLiteral(" width=\"[0-9.]+mm\" height=\"[0-9.]+mm\""));
    const QString header = QString::fromUtf8(bytes.left(1024));
    const QRegularExpressionMatch m = size.match(header);
    if (m.hasMatch()) {
        const QByteArray pixels = QStringLiteral(" width=\"%1\" height=\"%2\"")
                                      .arg(m_clientSize.width())
                                      .arg(m_clientSize.height())
                                      .toUtf8();
        bytes.replace(header.left(m.capturedStart()).toUtf8().size(), m.capturedLength(), pixels);
    }
    return device.write(bytes) == bytes.size();
}

bool TprWordCloud::SaveToMetafile(const QString& fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    return SaveToMetafile(file) && file.commit();
}

bool TprWordCloud::SaveToPictureFile(const QString& fileName, const QString& format, QString* error)
{
    auto fail = [&](const QString& text) {
        if (error) {
            *error = text;
        }
        return false;
    };
    const QString f = format.toLower();
    if (m_clientSize.isEmpty()) {
        return fail(QStringLiteral("the cloud has no size"));
    }
    if (f == QLatin1String("svg")) {
        return SaveToMetafile(fileName) ? true
                                        : fail(QStringLiteral("cannot write %1").arg(fileName));
    }
    QByteArray writerFormat;
    int quality = -1;
    if (f == QLatin1String("png")) {
        writerFormat = "png";
    } else if (f == QLatin1String("bmp")) {
        writerFormat = "bmp";
    } else if (f == QLatin1String("jpg") || f == QLatin1String("jpeg")) {
        writerFormat = "jpeg";
        quality = 90;
    } else {
        return fail(QStringLiteral("unknown picture format \"%1\"").arg(format));
    }
    QImageWriter writer(fileName, writerFormat);
    writer.setQuality(quality);
    if (!writer.write(SaveToBitmap())) {
        return fail(QStringLiteral("cannot write %1: %2").arg(fileName, writer.errorString()));
    }
    return true;
}

void TprWordCloud::CopyToClipboardAsBitmap()
{
    QGuiApplication::clipboard()->setImage(SaveToBitmap());
}

void TprWordCloud::CopyToClipboardAsMetafile()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!SaveToMetafile(buffer)) {
        return;
    }
    auto* mime = new QMimeData;
    mime->setData(QStringLiteral("image/svg+xml"), buffer.data());
    QGuiApplication::clipboard()->setMimeData(mime);
}

// ---------------------------------------------------------------------------------- document

CloudDocumentData TprWordCloud::toDocument() const
{
    CloudDocumentData doc;
    doc.backgroundColor = m_backgroundColor;
    doc.coverage = m_coverage;
    doc.shadow = m_shadow;
    if (m_usePalette) {
        doc.palette = m_palette;
    }
    doc.startColor = m_gradient.StartColor();
    doc.middleColor = m_gradient.MiddleColor();
    doc.endColor = m_gradient.EndColor();
    doc.fontName = m_font.name;
    doc.fontCharset = m_font.charset;
    doc.fontColor = m_font.color;
    doc.fontSize = m_font.size;
    doc.fontStyle = m_font.style;
    doc.startingBounds = m_startingCanvasRect;
    for (const auto& word : m_words) {
        CloudDocumentWord w;
        w.text = word->Text();
        w.textColor = word->TextColor();
        w.weight = word->Weight();
        w.fontSize = word->FontSize();
        w.bounds = word->StartingBoundsRect();
        doc.words.append(w);
    }
    return doc;
}

bool TprWordCloud::SaveToStream(QIODevice& device) const
{
    const QByteArray bytes = CloudDocument::write(toDocument());
    return device.write(bytes) == bytes.size();
}

bool TprWordCloud::SaveToFile(const QString& fileName) const
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    return SaveToStream(file) && file.commit();
}

bool TprWordCloud::LoadFromStream(QIODevice& device)
{
    m_lastError.clear();
    m_loadWarnings.clear();
    if (m_generating) {
        m_lastError = QStringLiteral("a layout is running");
        return false;
    }
    ClearWords();
    const std::optional<CloudDocumentData> doc =
        CloudDocument::read(device, &m_lastError, &m_loadWarnings);
    if (!doc) {
        emit Changed();
        return false;
    }
    applyDocument(*doc);
    emit Changed();
    return true;
}

bool TprWordCloud::LoadFromFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_lastError = QStringLiteral("cannot open %1: %2").arg(fileName, file.errorString());
        ClearWords();
        emit Changed();
        return false;
    }
    return LoadFromStream(file);
}

void TprWordCloud::applyDocument(const CloudDocumentData& doc)
{
    if (doc.backgroundColor) {
        m_backgroundColor = *doc.backgroundColor;
    }
    if (doc.coverage) {
        SetCoverage(*doc.coverage);
    }
    if (doc.shadow) {
        SetShadow(*doc.shadow);
    }
    if (doc.palette) {
        m_palette = quint8(*doc.palette);
        m_usePalette = true;
    } else {
        m_usePalette = false;
    }
    if (doc.startColor) {
        m_gradient.SetStartColor(*doc.startColor);
    }
    if (doc.middleColor) {
        m_gradient.SetMiddleColor(*doc.middleColor);
    }
    if (doc.endColor) {
        m_gradient.SetEndColor(*doc.endColor);
    }
    if (doc.fontName) {
        m_font.name = *doc.fontName;
    }
    if (doc.fontCharset) {
        m_font.charset = *doc.fontCharset;
    }
    if (doc.fontColor) {
        m_font.color = *doc.fontColor;
    }
    if (doc.fontSize) {
        m_font.size = *doc.fontSize;
    }
    if (doc.fontStyle) {
        m_font.style = *doc.fontStyle;
    }
    if (doc.startingBounds) {
        m_startingCanvasRect = *doc.startingBounds;
    }

    for (const CloudDocumentWord& w : doc.words) {
        noteWeight(w.weight);
        auto word = std::make_unique<TprWord>(this, w.text, w.weight, w.textColor, m_placeCenter);
        word->SetBackgroundColor(BackgroundColor());
        word->SetShadow(m_shadow);
        word->SetSize(w.fontSize.value_or(w.weight));
        if (w.bounds) {
            word->SetStartingBoundsRect(*w.bounds);
        }
        m_words.push_back(std::move(word));
    }

    // The document does not say which words were placed. A layout places a prefix of the list
    // on boxes that neither overlap nor touch, so that prefix is what is shown.
    CloudRect extent = m_startingCanvasRect;
    for (const auto& word : m_words) {
        const CloudRect& b = word->BoundsRect();
        extent = {std::min(extent.left, b.left), std::min(extent.top, b.top),
                  std::max(extent.right, b.right), std::max(extent.bottom, b.bottom)};
    }
    CollisionIndex shown;
    shown.reset(extent, CollisionIndex::Mode::Grid);
    for (auto& word : m_words) {
        const CloudRect& box = word->BoundsRect();
        if (box.isEmpty() || shown.firstOverlap(box) >= 0) {
            break;
        }
        shown.add(box);
        word->SetVisible(true);
    }
    m_countVisibleWords = shown.count();

    if (m_startingCanvasRect.width() > 0 && m_startingCanvasRect.height() > 0) {
        FitToCanvas(m_startingCanvasRect);
    }
}

void TprWordCloud::FitToCanvas(const CloudRect& from)
{
    const CloudRect area = GetCanvasDimension();
    if (from.width() <= 0 || from.height() <= 0 || area.width() <= 0 || area.height() <= 0) {
        return;
    }
    const double scale =
        std::min(double(area.width()) / from.width(), double(area.height()) / from.height());
    const qint32 scaledWidth = qint32(std::trunc(from.width() * scale));
    const qint32 scaledHeight = qint32(std::trunc(from.height() * scale));
    const qint32 left = area.left + halfUp(area.width() - scaledWidth);
    const qint32 top = area.top + halfUp(area.height() - scaledHeight);
    // Every edge goes through the same increasing map, so boxes that were apart stay apart.
    auto mapX = [&](qint32 x) {
        return left + qint32(roundHalfEven((qint64(x) - from.left) * scale));
    };
    auto mapY = [&](qint32 y) {
        return top + qint32(roundHalfEven((qint64(y) - from.top) * scale));
    };
    for (auto& word : m_words) {
        const CloudRect& b = word->StartingBoundsRect();
        word->SetStartingBoundsRect({mapX(b.left), mapY(b.top), mapX(b.right), mapY(b.bottom)});
        word->ScaleOutline(word->OutlineScale() * scale);
    }
    m_startingCanvasRect = area;
}

// ---------------------------------------------------------------------------------- clicks

TprWord* TprWordCloud::WordAt(const QPoint& point) const
{
    for (auto it = m_words.rbegin(); it != m_words.rend(); ++it) {
        const TprWord& word = **it;
        const CloudRect& b = word.BoundsRect();
        if (word.Visible() && point.x() >= b.left && point.x() < b.right && point.y() >= b.top &&
            point.y() < b.bottom) {
            return it->get();
        }
    }
    return nullptr;
}

bool TprWordCloud::ClickWord(const QPoint& point, Qt::MouseButton button,
                             Qt::KeyboardModifiers shift)
{
    TprWord* word = WordAt(point);
    if (!word) {
        return false;
    }
    m_selectedWord = word;
    emit OnClickWord(button, shift, point.x(), point.y(), word);
    return true;
}

} // namespace kestrum::wordcloud
