#pragma once

#include <QTextEdit>
#include <QTimer>

namespace kestrum::text {

class TextPageDocument;

// The editable view of a text page: word wrap at the window's width (no page layout), a single
// border, a red caret, hyperlinks underlined in blue (red, text and line, under the mouse),
// bookmarks underlined in green, hidden text hidden. Tab moves through table cells (adding a
// row after the last one); pictures are selected by a click and resized from their corner
// with their proportions kept; table columns are resized by dragging the line between them.
class WPView : public QTextEdit
{
    Q_OBJECT
public:
    static constexpr int kCaretWidth = 2;

    explicit WPView(QWidget* parent = nullptr);

    void setPageDocument(TextPageDocument* document);
    TextPageDocument* pageDocument() const { return m_page; }

    // What the decorations currently are (links and bookmarks, the hovered link in red).
    QString hoveredLink() const { return m_hoveredLink; }
    bool caretShown() const { return m_caretOn; }
    // The picture the user selected (its position in the document), or -1.
    int selectedPicture() const { return m_selectedPicture; }
    // Resizes the picture at `position` to `width` pixels, keeping its proportions.
    bool resizePicture(int position, qreal width);
    // Sets the width of a table column (pixels) as dragging its right border does.
    bool resizeTableColumn(int positionInTable, int column, qreal width);
    // Inserts a picture at the caret.
    void insertPicture(const QImage& image);
    // The rectangle (viewport coordinates) of the picture at `position`.
    QRect pictureRect(int position) const;

    // Rebuilds the link and bookmark decorations now.
    void refreshDecorations();

signals:
    void linkHovered(const QString& href);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    struct ColumnEdge
    {
        int tablePosition = -1;
        int column = -1;
        qreal left = 0; // content left of the column, viewport x
    };

    void restartCaret();
    void blink();
    int pictureAt(const QPoint& point) const;
    ColumnEdge columnEdgeAt(const QPoint& point) const;
    void paintListStarts(QPainter& painter);
    void paintParagraphBorders(QPainter& painter);

    TextPageDocument* m_page = nullptr;
    QTextDocument* m_standIn = nullptr; // shown while a page loads
    QTimer m_blink;
    QTimer m_decorationTimer;
    bool m_caretOn = true;
    QString m_hoveredLink;
    int m_selectedPicture = -1;
    bool m_resizingPicture = false;
    ColumnEdge m_resizingColumn;
    qreal m_dragStartX = 0;
    qreal m_dragStartWidth = 0;
};

} // namespace kestrum::text
