#pragma once

#include "CloudFont.h"
#include "CloudRandom.h"
#include "CloudRect.h"
#include "CollisionIndex.h"
#include "TextShaper.h"
#include "TprGradient.h"
#include "TprMargins.h"
#include "TprWord.h"
#include "common/Result.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QSize>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class QIODevice;
class QPainter;

namespace kestrum::wordcloud {

struct CloudDocumentData;

// The word cloud: a list of weighted words, laid out without overlap on a drawing area,
// coloured by palette or gradient, painted, exported and stored as an XML document.
//
// It is not a widget: it has a client size, paints onto any QPainter and is driven by whoever
// hosts it (the host forwards clicks to ClickWord and repaints on Changed).
class TprWordCloud : public QObject
{
    Q_OBJECT
public:
    enum Shape : quint8
    {
        Rectangle = 0,
        Ellipse = 1
    };
    enum SpiralDirection : quint8
    {
        RandomSense = 0,
        Forward = 1,
        Mirrored = 2
    };

    explicit TprWordCloud(QObject* parent = nullptr);
    ~TprWordCloud() override;

    // --- words
    // Appends a word; -1 (nothing added) for an empty text or a weight below 1.
    int AddWord(const QString& text, qint32 weight);
    void RemoveWord(int index);
    void ClearWords();
    int WordCount() const { return int(m_words.size()); }
    TprWord* Word(int index) const;
    const std::vector<std::unique_ptr<TprWord>>& Words() const { return m_words; }
    qint32 MaxWeight() const { return m_maxWeight; }
    qint32 MinWeight() const { return m_minWeight; }

    // --- client area and drawing area
    void SetClientSize(const QSize& size);
    QSize ClientSize() const { return m_clientSize; }
    TprMargins& Margins() { return m_margins; }
    const TprMargins& Margins() const { return m_margins; }
    // The client area less the margins.
    CloudRect GetCanvasDimension() const;
    // The drawing area of the last layout (or of the loaded document).
    CloudRect StartingCanvasRect() const { return m_startingCanvasRect; }
    // Area of the allowed shape in square pixels (ellipse: pi * a * b, truncated).
    qint64 CanvasArea() const;

    // --- options
    const CloudFont& Font() const { return m_font; }
    void SetFont(const CloudFont& font) { m_font = font; }
    float Coverage() const { return m_coverage; }
    // Kept within 0.01 .. 1.0.
    void SetCoverage(float coverage);
    float CurrentCoverage() const { return m_currentCoverage; }
    quint8 CloudShape() const { return m_cloudShape; }
    void SetCloudShape(quint8 shape) { m_cloudShape = shape; }
    bool PlaceCenter() const { return m_placeCenter; }
    // Also sets every word's copy.
    void SetPlaceCenter(bool on);
    bool ContinueFromLastWord() const { return m_continueFromLastWord; }
    void SetContinueFromLastWord(bool on) { m_continueFromLastWord = on; }
    quint8 Direction() const { return m_direction; }
    void SetDirection(quint8 direction) { m_direction = direction; }
    bool AutoResizeCoverage() const { return m_autoResizeCoverage; }
    void SetAutoResizeCoverage(bool on) { m_autoResizeCoverage = on; }
    bool Cancel() const { return m_cancel; }
    // Set from an OnProgress handler to stop the layout after the current word.
    void SetCancel(bool on) { m_cancel = on; }
    quint8 StepX() const { return m_stepX; }
    quint8 StepY() const { return m_stepY; }
    qint32 CountVisibleWords() const { return m_countVisibleWords; }

    common::TColor BackgroundColor() const;
    void SetBackgroundColor(common::TColor colour) { m_backgroundColor = colour; }
    bool ParentColor() const { return m_parentColor; }
    void SetParentColor(bool on) { m_parentColor = on; }
    // The parent window's brush colour, used as BackgroundColor while ParentColor is set.
    void SetParentBrushColor(common::TColor colour) { m_parentBrushColor = colour; }
    bool Shadow() const { return m_shadow; }
    // Also sets every word's Shadow.
    void SetShadow(bool on);
    bool UsePalette() const { return m_usePalette; }
    void SetUsePalette(bool on) { m_usePalette = on; }
    quint8 Palette() const { return m_palette; }
    void SetPalette(quint8 palette) { m_palette = palette; }
    const QList<common::TColor>& CustomColors() const { return m_customColors; }
    void SetCustomColor(const QList<common::TColor>& colours) { m_customColors = colours; }
    TprGradient& Gradient() { return m_gradient; }
    const TprGradient& Gradient() const { return m_gradient; }

    // --- layout
    // Lays every word out; true when all were placed. With AutoResizeCoverage a failed run
    // retries at 0.05 less coverage while the coverage stays above 0.
    bool GenerateCloud(bool aResetPosition);
    // A fixed seed makes layouts reproducible (the clock then stands still at that value).
    void SetRandomSeed(std::optional<quint64> seed) { m_random.setFixedSeed(seed); }
    std::optional<quint64> RandomSeed() const { return m_random.fixedSeed(); }
    // The reference layout tests every spiral step one by one against a plain scan of the
    // placed boxes. The normal layout finds the same places faster: along each straight leg of
    // the spiral it looks the first free position up in a bitmap of the placed boxes.
    void SetReferenceLayout(bool on) { m_referenceLayout = on; }

    // --- painting and export
    // Background, word colours, then every visible word, heaviest first, in client coordinates.
    void PaintCloud(QPainter& painter);
    // Fills the client area with the background colour.
    void ClearCanvas(QPainter& painter) const;
    // Gives every word its colour from the palette or the gradient.
    void AssignColors();
    QImage SaveToBitmap();
    // The picture as SVG: each distinct glyph once as a path, the words referring to them.
    bool SaveToMetafile(QIODevice& device);
    bool SaveToMetafile(const QString& fileName);
    // PNG, BMP or JPEG (quality 90) by `format` ("png", "bmp", "jpg"), or SVG ("svg").
    Status SaveToPictureFile(const QString& fileName, const QString& format);
    void CopyToClipboardAsBitmap();
    void CopyToClipboardAsMetafile();

    // --- the cloud document
    bool SaveToStream(QIODevice& device) const;
    bool SaveToFile(const QString& fileName) const;
    // Clears the words, then reads a document; fails when it is refused.
    Status LoadFromStream(QIODevice& device);
    Status LoadFromFile(const QString& fileName);
    // Values a loaded document had out of range, and what was done with them.
    QStringList LoadWarnings() const { return m_loadWarnings; }
    // Moves and scales the words laid out on `from` into the current drawing area, centred.
    void FitToCanvas(const CloudRect& from);
    // Takes the words of `from` as it laid them out (texts, weights, sizes, boxes, which are
    // shown) with its drawing area and reached coverage; keeps this cloud's other options.
    void AdoptLayout(const TprWordCloud& from);

    // --- clicks
    // The visible word whose box holds `point` (client coordinates), or null.
    TprWord* WordAt(const QPoint& point) const;
    // A click from the host: the word under `point` becomes SelectedWord and OnClickWord is
    // raised. False when no word is there.
    bool ClickWord(const QPoint& point, Qt::MouseButton button, Qt::KeyboardModifiers shift);
    TprWord* SelectedWord() const { return m_selectedWord; }

    TextShaper& Shaper() { return m_shaper; }

signals:
    // Before each word of a layout; a handler may call SetCancel(true).
    void OnProgress(int percentDone);
    void OnClickWord(Qt::MouseButton button, Qt::KeyboardModifiers shift, int x, int y,
                     kestrum::wordcloud::TprWord* word);
    // The picture changed (a layout ended, a document was loaded): repaint.
    void Changed();

private:
    friend class TprWord;
    friend class CloudLayout;
    friend class CloudRenderer;
    friend class CloudDocumentMapping;

    void noteWeight(qint32 weight);

    std::vector<std::unique_ptr<TprWord>> m_words;
    qint32 m_maxWeight = 0;
    qint32 m_minWeight = 2147483647;
    CloudFont m_font;
    float m_coverage = 0.6f;
    float m_currentCoverage = 0.6f;

    QSize m_clientSize;
    TprMargins m_margins;
    CloudRect m_startingCanvasRect;
    quint8 m_cloudShape = Rectangle;
    bool m_placeCenter = true;
    bool m_continueFromLastWord = true;
    quint8 m_direction = RandomSense;
    bool m_autoResizeCoverage = true;
    bool m_cancel = false;
    quint8 m_stepX = 1;
    quint8 m_stepY = 1;
    qint32 m_countVisibleWords = 0;
    bool m_generating = false;

    common::TColor m_backgroundColor = common::clWhite;
    bool m_parentColor = false;
    common::TColor m_parentBrushColor = common::clBtnFace;
    bool m_shadow = true;
    bool m_usePalette = false;
    quint8 m_palette = 0;
    QList<common::TColor> m_customColors;
    TprGradient m_gradient;

    CloudRandom m_random;
    bool m_referenceLayout = false;
    TextShaper m_shaper;
    TprWord* m_selectedWord = nullptr;
    QStringList m_loadWarnings;
};

} // namespace kestrum::wordcloud
