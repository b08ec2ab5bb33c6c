#include "TprWordCloud.h"

#include "CloudDocument.h"
#include "CloudDocumentMapping.h"
#include "CloudLayout.h"
#include "CloudRenderer.h"
#include "common/ScopedFlag.h"

#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrum::wordcloud {

using common::TColor;

namespace {

// Client sizes beyond this are held there: pictures stay within what an image can hold.
constexpr int kMaxClientSide = 32767;

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
    // Words keep the copy they were created with; only words added from now on take this.
    m_placeCenter = on;
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

bool TprWordCloud::GenerateCloud(bool aResetPosition)
{
    const CloudRect area = GetCanvasDimension();
    if (m_generating || m_words.empty() || area.width() <= 0 || area.height() <= 0) {
        return false;
    }
    common::ScopedFlag generating(m_generating);
    const bool placedAll = CloudLayout(*this).run(aResetPosition);
    m_shaper.prune();
    emit Changed();
    return placedAll;
}

// ---------------------------------------------------------------------------------- painting

void TprWordCloud::ClearCanvas(QPainter& painter) const
{
    CloudRenderer(const_cast<TprWordCloud&>(*this)).clearCanvas(painter);
}

void TprWordCloud::AssignColors()
{
    CloudRenderer(*this).assignColors();
}

void TprWordCloud::PaintCloud(QPainter& painter)
{
    CloudRenderer(*this).paint(painter);
}

QImage TprWordCloud::SaveToBitmap()
{
    return CloudRenderer(*this).toBitmap();
}

bool TprWordCloud::SaveToMetafile(QIODevice& device)
{
    return CloudRenderer(*this).writeSvg(device);
}

bool TprWordCloud::SaveToMetafile(const QString& fileName)
{
    return CloudRenderer(*this).writeSvg(fileName);
}

Status TprWordCloud::SaveToPictureFile(const QString& fileName, const QString& format)
{
    return CloudRenderer(*this).writePictureFile(fileName, format);
}

void TprWordCloud::CopyToClipboardAsBitmap()
{
    CloudRenderer(*this).copyBitmap();
}

void TprWordCloud::CopyToClipboardAsMetafile()
{
    CloudRenderer(*this).copySvg();
}

// ---------------------------------------------------------------------------------- document

bool TprWordCloud::SaveToStream(QIODevice& device) const
{
    const QByteArray bytes = CloudDocument::write(CloudDocumentMapping::toDocument(*this));
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

Status TprWordCloud::LoadFromStream(QIODevice& device)
{
    m_loadWarnings.clear();
    if (m_generating) {
        return fail(QStringLiteral("a layout is running"));
    }
    ClearWords();
    const Result<CloudDocumentData> doc = CloudDocument::read(device, &m_loadWarnings);
    if (!doc) {
        emit Changed();
        return fail(doc.error());
    }
    CloudDocumentMapping::apply(*this, *doc);
    emit Changed();
    return {};
}

Status TprWordCloud::LoadFromFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        ClearWords();
        emit Changed();
        return fail(QStringLiteral("cannot open %1: %2").arg(fileName, file.errorString()));
    }
    return LoadFromStream(file);
}

void TprWordCloud::FitToCanvas(const CloudRect& from)
{
    CloudDocumentMapping::fitToCanvas(*this, from);
}

void TprWordCloud::AdoptLayout(const TprWordCloud& from)
{
    if (m_generating || &from == this) {
        return;
    }
    CloudDocumentMapping::adoptLayout(*this, from);
    emit Changed();
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
