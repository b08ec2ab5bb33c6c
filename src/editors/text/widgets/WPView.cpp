#include "WPView.h"

#include "editors/text/DocumentPictures.h"
#include "editors/text/HiddenTextObject.h"
#include "editors/text/ListNumbering.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/TextProperties.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

namespace kestrum::text {

namespace {

constexpr int kHandle = 7;
constexpr qreal kEdgeTolerance = 3;

QTextCharFormat charAt(const QTextDocument* document, int position)
{
    QTextCursor cursor(const_cast<QTextDocument*>(document));
    cursor.setPosition(position);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    return cursor.charFormat();
}

} // namespace

WPView::WPView(QWidget* parent) : QTextEdit(parent)
{
    setObjectName(QStringLiteral("WPView"));
    setLineWrapMode(QTextEdit::WidgetWidth);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(1);
    setUndoRedoEnabled(true);
    setAcceptRichText(true);
    setTabChangesFocus(false);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    // The caret is drawn by paintEvent, in red.
    setCursorWidth(0);

    const int flash = QGuiApplication::styleHints()->cursorFlashTime();
    m_blink.setInterval(flash > 0 ? flash / 2 : 500);
    connect(&m_blink, &QTimer::timeout, this, &WPView::blink);
    m_decorationTimer.setSingleShot(true);
    m_decorationTimer.setInterval(60);
    connect(&m_decorationTimer, &QTimer::timeout, this, &WPView::refreshDecorations);
    connect(this, &QTextEdit::cursorPositionChanged, this, [this] {
        restartCaret();
        if (m_selectedPicture >= 0 &&
            !(textCursor().hasSelection() && textCursor().selectionStart() == m_selectedPicture &&
              textCursor().selectionEnd() == m_selectedPicture + 1)) {
            m_selectedPicture = -1;
            viewport()->update();
        }
    });
}

void WPView::setPageDocument(TextPageDocument* document)
{
    m_page = document;
    if (!m_standIn) {
        m_standIn = new QTextDocument(this);
    }
    QTextDocument* text = document->textDocument();
    setFont(text->defaultFont());
    setDocument(text);
    setCursorWidth(0);
    HiddenTextObject::registerOn(text);
    connect(text, &QTextDocument::contentsChange, this, [this] { m_decorationTimer.start(); });
    // While a page loads the view shows an empty stand-in: the page's layout then meets the
    // whole new content at once and lays it out lazily, screen by screen, and nothing asks
    // it for the end of a long page (the caret, the selection) before it is needed.
    connect(document, &TextPageDocument::aboutToLoad, this, [this] {
        if (this->document() != m_standIn) {
            setDocument(m_standIn);
        }
    });
    connect(document, &TextPageDocument::loaded, this, [this] {
        if (this->document() == m_standIn) {
            setDocument(m_page->textDocument());
            setCursorWidth(0);
        }
        // A page opens at its top.
        moveCursor(QTextCursor::Start);
        m_selectedPicture = -1;
        m_hoveredLink.clear();
        refreshDecorations();
    });
    refreshDecorations();
}

// ---- decorations -------------------------------------------------------------------------------

void WPView::refreshDecorations()
{
    m_decorationTimer.stop();
    QList<ExtraSelection> selections;
    QTextDocument* doc = document();
    auto add = [&](int start, int end, const QColor& line, const QColor& text) {
        ExtraSelection selection;
        selection.cursor = QTextCursor(doc);
        selection.cursor.setPosition(start);
        selection.cursor.setPosition(end, QTextCursor::KeepAnchor);
        selection.format.setUnderlineStyle(QTextCharFormat::SingleUnderline);
        selection.format.setUnderlineColor(line);
        if (text.isValid()) {
            selection.format.setForeground(text);
        }
        selections << selection;
    };
    QString href;
    int start = -1;
    int end = -1;
    auto closeLink = [&] {
        if (start >= 0) {
            const bool hovered = href == m_hoveredLink;
            add(start, end, hovered ? QColor(Qt::red) : QColor(Qt::blue),
                hovered ? QColor(Qt::red) : QColor());
        }
        start = -1;
        href.clear();
    };
    for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            if (!format.isAnchor()) {
                closeLink();
                continue;
            }
            const QString link = format.anchorHref();
            if (!link.isEmpty()) {
                if (link != href || fragment.position() != end) {
                    closeLink();
                    href = link;
                    start = fragment.position();
                }
                end = fragment.position() + fragment.length();
            } else {
                closeLink();
                if (!format.anchorNames().isEmpty()) {
                    add(fragment.position(), fragment.position() + fragment.length(),
                        QColor(Qt::darkGreen), QColor());
                }
            }
        }
        closeLink();
    }
    setExtraSelections(selections);
}

// ---- caret -------------------------------------------------------------------------------------

void WPView::restartCaret()
{
    m_caretOn = true;
    if (hasFocus()) {
        m_blink.start();
    }
    viewport()->update();
}

void WPView::blink()
{
    m_caretOn = !m_caretOn;
    const QRect caret = cursorRect();
    viewport()->update(QRect(caret.x() - 2, caret.y(), kCaretWidth + 4, caret.height()));
}

void WPView::focusInEvent(QFocusEvent* event)
{
    QTextEdit::focusInEvent(event);
    restartCaret();
}

void WPView::focusOutEvent(QFocusEvent* event)
{
    QTextEdit::focusOutEvent(event);
    m_blink.stop();
    m_caretOn = false;
    viewport()->update();
}

// ---- painting ----------------------------------------------------------------------------------

void WPView::paintEvent(QPaintEvent* event)
{
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    paintListStarts(painter);
    paintParagraphBorders(painter);
    if (m_selectedPicture >= 0) {
        const QRect r = pictureRect(m_selectedPicture);
        if (r.isValid()) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DashLine));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(r.adjusted(0, 0, -1, -1));
            painter.fillRect(
                QRect(r.right() - kHandle + 1, r.bottom() - kHandle + 1, kHandle, kHandle),
                palette().color(QPalette::Highlight));
        }
    }
    if (m_resizingColumn.column >= 0 || m_resizingPicture) {
        painter.setPen(QPen(Qt::darkGray, 1, Qt::DotLine));
        const int x = mapFromGlobal(QCursor::pos()).x() - viewport()->x();
        painter.drawLine(x, 0, x, viewport()->height());
    }
    if (m_caretOn && hasFocus() && !isReadOnly()) {
        const QRect caret = cursorRect();
        painter.fillRect(QRect(caret.x(), caret.y(), kCaretWidth, caret.height()), Qt::red);
    }
}

void WPView::paintListStarts(QPainter& painter)
{
    // The document's layout numbers every list from 1: the items of a list that starts
    // elsewhere get their own number painted over it, where the layout puts it.
    const QPointF offset(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    const QTextBlock first = cursorForPosition(QPoint(0, 0)).block();
    const QTextBlock last =
        cursorForPosition(QPoint(viewport()->width(), viewport()->height())).block();
    const QColor background = viewport()->palette().color(viewport()->backgroundRole());
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        const QTextList* list = block.textList();
        QTextLayout* layout = block.layout();
        if (list && ListNumbering::start(list->format()) != 1 && layout &&
            layout->lineCount() > 0) {
            const QString drawn = list->itemText(block);
            const QString number = ListNumbering::itemText(block);
            if (!drawn.isEmpty() && drawn != number) {
                const QFont font(block.charFormat().font(), viewport());
                const QFontMetricsF metrics(font);
                const QTextLine line = layout->lineAt(0);
                const QPoint pos = (offset + layout->position()).toPoint() +
                                   line.naturalTextRect().topLeft().toPoint();
                const qreal space = metrics.horizontalAdvance(QLatin1Char(' '));
                const qreal widest =
                    std::max(metrics.horizontalAdvance(drawn), metrics.horizontalAdvance(number));
                painter.fillRect(
                    QRectF(pos.x() - space - widest - 2, pos.y(), widest + 2, line.height()),
                    background);
                QTextLayout marker(number, font, viewport());
                QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
                option.setTextDirection(block.textDirection());
                marker.setTextOption(option);
                marker.beginLayout();
                QTextLine markerLine = marker.createLine();
                if (markerLine.isValid()) {
                    markerLine.setLeadingIncluded(true);
                }
                marker.endLayout();
                painter.setPen(palette().color(QPalette::Text));
                marker.draw(&painter, QPointF(pos.x() - space - metrics.horizontalAdvance(number),
                                              pos.y() + line.ascent() - metrics.ascent()));
            }
        }
        if (block == last) {
            break;
        }
    }
}

void WPView::paintParagraphBorders(QPainter& painter)
{
    QTextDocument* doc = document();
    const QPointF offset(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    const QTextBlock first = cursorForPosition(QPoint(0, 0)).block();
    const QTextBlock last =
        cursorForPosition(QPoint(viewport()->width(), viewport()->height())).block();
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        const int sides = format.intProperty(TextProperty::BorderSides);
        QTextLayout* layout = block.layout();
        if (sides != 0 && layout && layout->lineCount() > 0) {
            const QPointF position = layout->position() + offset;
            const QTextLine firstLine = layout->lineAt(0);
            const QTextLine lastLine = layout->lineAt(layout->lineCount() - 1);
            const qreal space = twipsToPixels(format.intProperty(TextProperty::BorderSpacing));
            const qreal left = position.x() + format.leftMargin() - space;
            const qreal right = position.x() + firstLine.x() + firstLine.width() + space;
            const qreal top = position.y() + firstLine.y() - space;
            const qreal bottom = position.y() + lastLine.y() + lastLine.height() + space;
            QColor colour = format.property(TextProperty::BorderColour).value<QColor>();
            if (!colour.isValid()) {
                colour = palette().color(QPalette::Text);
            }
            const qreal width =
                std::max(1.0, twipsToPixels(format.hasProperty(TextProperty::BorderWidth)
                                                ? format.intProperty(TextProperty::BorderWidth)
                                                : 15));
            Qt::PenStyle style = Qt::SolidLine;
            switch (format.intProperty(TextProperty::BorderStyle)) {
            case QTextFrameFormat::BorderStyle_Dotted:
                style = Qt::DotLine;
                break;
            case QTextFrameFormat::BorderStyle_Dashed:
                style = Qt::DashLine;
                break;
            default:
                break;
            }
            painter.setPen(QPen(colour, width, style, Qt::FlatCap));
            if (sides & BorderSide::Top) {
                painter.drawLine(QPointF(left, top), QPointF(right, top));
            }
            if (sides & BorderSide::Bottom) {
                painter.drawLine(QPointF(left, bottom), QPointF(right, bottom));
            }
            if (sides & BorderSide::Left) {
                painter.drawLine(QPointF(left, top), QPointF(left, bottom));
            }
            if (sides & BorderSide::Right) {
                painter.drawLine(QPointF(right, top), QPointF(right, bottom));
            }
            if (format.intProperty(TextProperty::BorderStyle) ==
                QTextFrameFormat::BorderStyle_Double) {
                painter.setPen(QPen(colour, 1));
                if (sides & BorderSide::Bottom) {
                    painter.drawLine(QPointF(left, bottom + width + 2),
                                     QPointF(right, bottom + width + 2));
                }
                if (sides & BorderSide::Top) {
                    painter.drawLine(QPointF(left, top - width - 2),
                                     QPointF(right, top - width - 2));
                }
            }
        }
        if (block == last) {
            break;
        }
    }
    Q_UNUSED(doc);
}

// ---- pictures ----------------------------------------------------------------------------------

QRect WPView::pictureRect(int position) const
{
    const QTextCharFormat format = charAt(document(), position);
    if (!format.isImageFormat()) {
        return {};
    }
    const QTextImageFormat image = format.toImageFormat();
    const QTextBlock block = document()->findBlock(position);
    QTextLayout* layout = block.layout();
    if (!layout || layout->lineCount() == 0) {
        return {};
    }
    const QTextLine line = layout->lineForTextPosition(position - block.position());
    if (!line.isValid()) {
        return {};
    }
    const QPointF origin =
        layout->position() - QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const qreal x = origin.x() + line.cursorToX(position - block.position());
    const qreal baseline = origin.y() + line.y() + line.ascent();
    const qreal width =
        image.width() > 0 ? image.width() : DocumentPictures::image(*document(), image).width();
    const qreal height =
        image.height() > 0 ? image.height() : DocumentPictures::image(*document(), image).height();
    return QRectF(x, baseline - height, width, height).toAlignedRect();
}

int WPView::pictureAt(const QPoint& point) const
{
    const int position = cursorForPosition(point).position();
    for (int p : {position, position - 1}) {
        if (p >= 0 && pictureRect(p).contains(point)) {
            return p;
        }
    }
    return -1;
}

bool WPView::resizePicture(int position, qreal width)
{
    const QTextCharFormat format = charAt(document(), position);
    if (!format.isImageFormat() || width < 4) {
        return false;
    }
    QTextImageFormat image = format.toImageFormat();
    const QImage picture = DocumentPictures::image(*document(), image);
    const qreal oldWidth = image.width() > 0 ? image.width() : picture.width();
    const qreal oldHeight = image.height() > 0 ? image.height() : picture.height();
    if (oldWidth <= 0 || oldHeight <= 0) {
        return false;
    }
    image.setWidth(width);
    image.setHeight(oldHeight * width / oldWidth);
    QTextCursor cursor(document());
    cursor.setPosition(position);
    cursor.setPosition(position + 1, QTextCursor::KeepAnchor);
    cursor.setCharFormat(image);
    viewport()->update();
    return true;
}

void WPView::insertPicture(const QImage& image)
{
    if (image.isNull()) {
        return;
    }
    DocumentPictures::Picture picture;
    picture.kind = PictureKind::Png;
    QBuffer buffer(&picture.data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    picture.header =
        QStringLiteral("\\pngblip\\picw%1\\pich%2").arg(image.width()).arg(image.height());
    // A picture never runs wider than the text.
    const qreal room = std::max(64.0, viewport()->width() - 2 * document()->documentMargin() - 8);
    QSizeF size = image.size();
    if (size.width() > room) {
        size = QSizeF(room, size.height() * room / size.width());
    }
    picture.displaySize = size;
    textCursor().insertImage(DocumentPictures::add(document(), image, picture));
}

bool WPView::canInsertFromMimeData(const QMimeData* source) const
{
    return source->hasImage() || QTextEdit::canInsertFromMimeData(source);
}

void WPView::insertFromMimeData(const QMimeData* source)
{
    if (source->hasImage() && !source->hasHtml()) {
        insertPicture(qvariant_cast<QImage>(source->imageData()));
        return;
    }
    QTextEdit::insertFromMimeData(source);
}

// ---- table columns -----------------------------------------------------------------------------

WPView::ColumnEdge WPView::columnEdgeAt(const QPoint& point) const
{
    const QTextCursor cursor = cursorForPosition(point);
    QTextTable* table = cursor.currentTable();
    if (!table) {
        return {};
    }
    const int row = table->cellAt(cursor).row();
    if (row < 0) {
        return {};
    }
    const qreal padding = table->format().cellPadding();
    const qreal dx = -horizontalScrollBar()->value();
    QAbstractTextDocumentLayout* layout = document()->documentLayout();
    auto contentLeft = [&](int column) {
        const QTextTableCell cell = table->cellAt(row, column);
        return layout->blockBoundingRect(cell.firstCursorPosition().block()).x() + dx;
    };
    for (int c = 1; c < table->columns(); ++c) {
        const QTextTableCell cell = table->cellAt(row, c);
        if (cell.column() != c) {
            continue; // inside a merged cell
        }
        const qreal edge = contentLeft(c) - padding;
        if (std::abs(point.x() - edge) <= kEdgeTolerance) {
            ColumnEdge found;
            found.tablePosition = table->firstPosition();
            found.column = table->cellAt(row, c - 1).column();
            found.left = contentLeft(found.column) - padding;
            return found;
        }
    }
    return {};
}

bool WPView::resizeTableColumn(int positionInTable, int column, qreal width)
{
    QTextCursor cursor(document());
    cursor.setPosition(positionInTable);
    QTextTable* table = cursor.currentTable();
    if (!table || column < 0 || column >= table->columns() || width < 8) {
        return false;
    }
    QTextTableFormat format = table->format();
    QList<QTextLength> widths = format.columnWidthConstraints();
    QAbstractTextDocumentLayout* layout = document()->documentLayout();
    const qreal padding = format.cellPadding();
    // Columns without a fixed width take the width they have now.
    for (int c = 0; c < table->columns(); ++c) {
        if (c < widths.size() && widths[c].type() == QTextLength::FixedLength) {
            continue;
        }
        qreal measured = 100;
        const QTextTableCell cell = table->cellAt(0, c);
        const QTextBlock block = cell.firstCursorPosition().block();
        if (block.layout() && block.layout()->lineCount() > 0) {
            const QTextLine line = block.layout()->lineAt(0);
            measured = line.x() + line.width() + 2 * padding;
            if (cell.columnSpan() > 1) {
                measured /= cell.columnSpan();
            }
        }
        Q_UNUSED(layout);
        while (widths.size() <= c) {
            widths << QTextLength();
        }
        widths[c] = QTextLength(QTextLength::FixedLength, measured);
    }
    widths[column] = QTextLength(QTextLength::FixedLength, width);
    format.setColumnWidthConstraints(widths);
    table->setFormat(format);
    return true;
}

// ---- input -------------------------------------------------------------------------------------

void WPView::keyPressEvent(QKeyEvent* event)
{
    restartCaret();
    const bool plainTab = (event->key() == Qt::Key_Tab &&
                           !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)));
    const bool backTab = event->key() == Qt::Key_Backtab;
    if (!isReadOnly() && (plainTab || backTab) &&
        !(event->modifiers() & Qt::ShiftModifier && plainTab)) {
        QTextCursor cursor = textCursor();
        if (QTextTable* table = cursor.currentTable()) {
            const QTextTableCell cell = table->cellAt(cursor);
            int row = cell.row();
            int column = cell.column();
            if (plainTab) {
                column += cell.columnSpan();
                if (column >= table->columns()) {
                    column = 0;
                    ++row;
                }
                if (row >= table->rows()) {
                    table->appendRows(1);
                }
            } else {
                --column;
                if (column < 0) {
                    column = table->columns() - 1;
                    --row;
                }
                if (row < 0) {
                    row = 0;
                    column = 0;
                }
            }
            QTextCursor target = table->cellAt(row, column).firstCursorPosition();
            target.movePosition(QTextCursor::EndOfBlock);
            setTextCursor(target);
            event->accept();
            return;
        }
    }
    if (m_selectedPicture >= 0 &&
        (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
        QTextCursor cursor(document());
        cursor.setPosition(m_selectedPicture);
        cursor.setPosition(m_selectedPicture + 1, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        m_selectedPicture = -1;
        event->accept();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void WPView::mousePressEvent(QMouseEvent* event)
{
    restartCaret();
    const QPoint point = event->position().toPoint();
    if (event->button() == Qt::LeftButton) {
        if (m_selectedPicture >= 0) {
            const QRect r = pictureRect(m_selectedPicture);
            if (QRect(r.right() - kHandle, r.bottom() - kHandle, kHandle + 2, kHandle + 2)
                    .contains(point)) {
                m_resizingPicture = true;
                m_dragStartX = point.x();
                m_dragStartWidth = r.width();
                event->accept();
                return;
            }
        }
        const ColumnEdge edge = columnEdgeAt(point);
        if (edge.column >= 0) {
            m_resizingColumn = edge;
            m_dragStartX = point.x();
            event->accept();
            return;
        }
        const int picture = pictureAt(point);
        if (picture >= 0 && picture == m_selectedPicture) {
            // A press on the selected picture: the view may drag it elsewhere.
            QTextEdit::mousePressEvent(event);
            return;
        }
        if (picture >= 0) {
            setFocus(Qt::MouseFocusReason);
            QTextCursor cursor(document());
            cursor.setPosition(picture);
            cursor.setPosition(picture + 1, QTextCursor::KeepAnchor);
            setTextCursor(cursor);
            m_selectedPicture = picture;
            viewport()->update();
            event->accept();
            return;
        }
        if ((event->modifiers() & Qt::ControlModifier) && !anchorAt(point).isEmpty()) {
            const QString href = anchorAt(point);
            if (href.startsWith(QLatin1Char('#'))) {
                scrollToAnchor(href.mid(1));
            } else {
                QDesktopServices::openUrl(QUrl(href));
            }
            event->accept();
            return;
        }
    }
    QTextEdit::mousePressEvent(event);
}

void WPView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (m_resizingPicture || m_resizingColumn.column >= 0) {
        viewport()->update();
        event->accept();
        return;
    }
    const QString href = anchorAt(point);
    if (href != m_hoveredLink) {
        m_hoveredLink = href;
        refreshDecorations();
        emit linkHovered(href);
    }
    Qt::CursorShape shape = Qt::IBeamCursor;
    if (!href.isEmpty()) {
        shape = Qt::PointingHandCursor;
    } else if (columnEdgeAt(point).column >= 0) {
        shape = Qt::SplitHCursor;
    } else if (m_selectedPicture >= 0) {
        const QRect r = pictureRect(m_selectedPicture);
        if (QRect(r.right() - kHandle, r.bottom() - kHandle, kHandle + 2, kHandle + 2)
                .contains(point)) {
            shape = Qt::SizeFDiagCursor;
        }
    }
    viewport()->setCursor(shape);
    QTextEdit::mouseMoveEvent(event);
}

void WPView::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (m_resizingPicture) {
        m_resizingPicture = false;
        resizePicture(m_selectedPicture,
                      std::max<qreal>(8, m_dragStartWidth + point.x() - m_dragStartX));
        event->accept();
        return;
    }
    if (m_resizingColumn.column >= 0) {
        const ColumnEdge edge = m_resizingColumn;
        m_resizingColumn = ColumnEdge();
        resizeTableColumn(edge.tablePosition + 1, edge.column,
                          std::max<qreal>(8, point.x() - edge.left));
        viewport()->update();
        event->accept();
        return;
    }
    QTextEdit::mouseReleaseEvent(event);
}

void WPView::leaveEvent(QEvent* event)
{
    if (!m_hoveredLink.isEmpty()) {
        m_hoveredLink.clear();
        refreshDecorations();
    }
    QTextEdit::leaveEvent(event);
}

} // namespace kestrum::text
